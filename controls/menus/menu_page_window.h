// The contents of the menu property page: a grid with a row for each menu, its key and its picture.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "controls/menus/menu_host_win32.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "win/picture_object.h"
#include "win/window.h"

namespace qvx::menus {

// Rows and pictures exist without a window too; the window may be created and destroyed any number of times.
class MenuPageWindow final : public Window, private flexgrid::GridWindowEvents {
  public:
    // `onChange`: the user has assigned a picture to a row or removed it. `hold` keeps the owner of this window alive
    // during a call.
    MenuPageWindow(std::function<void()> onChange, std::function<std::shared_ptr<void>()> hold);
    ~MenuPageWindow() override;

    // Creates a row for each key, in this order, with the picture of that key if there is one.
    void Fill(const std::vector<Text>& keys, const std::vector<KeyedPicture>& pictures);
    // Returns the pictures of the rows that have one, with their keys.
    std::vector<KeyedPicture> Pictures() const;

    // Creates the window, hidden, in pixels of the parent. Throws ComError when the system refuses.
    void CreateIn(HWND parent, const RECT& bounds);
    void MoveTo(const RECT& bounds);
    void TakeFocus() const;
    // Passes a key message to the grid before the frame around the page uses it. Returns false for keys that the grid
    // does not use.
    bool TranslateKey(MSG& message) const;

    // Returns the size in pixels at the screen's resolution.
    static Size WantedSize();

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::shared_ptr<void> Hold() override { return hold_(); }
    void Click() override;
    void KeyDown(short& keyCode, short& shift) override;
    void MouseUp(short button, short shift, float x, float y) override;

    void Layout();
    // Fits the window into the part of the bounds that the parent shows.
    void Fit() const;
    // Returns the row of the cursor; 0 where there is no row of a menu.
    int CurrentRow() const;
    void ChooseFile();
    void SetPicture(int row, IPictureDisp* picture);
    void FitRow(int row, const Picture* picture);

    std::function<void()> onChange_;
    std::function<std::shared_ptr<void>()> hold_;
    flexgrid::FlexGridWindow grid_;
    RECT bounds_{};           // as the parent gave them
    std::vector<Text> keys_;  // of the rows after the fixed one
    float releasedAt_ = 0;    // twips from the top
};

}  // namespace qvx::menus
