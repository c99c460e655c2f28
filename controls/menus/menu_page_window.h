// The inside of the menu property page: a grid with a row for each menu, its key and its picture.
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

// Rows and pictures are there without a window too; the window may be made and destroyed as often as one likes.
class MenuPageWindow final : public Window, private flexgrid::GridWindowEvents {
  public:
    // `onChange`: the user has given a row another picture, or taken it away. `hold` keeps the owner of this window
    // alive for the length of a call.
    MenuPageWindow(std::function<void()> onChange, std::function<std::shared_ptr<void>()> hold);
    ~MenuPageWindow() override;

    // A row for each key, in this order, with the picture of that key where there is one.
    void Fill(const std::vector<Text>& keys, const std::vector<KeyedPicture>& pictures);
    // What the rows hold, without those that have no picture.
    std::vector<KeyedPicture> Pictures() const;

    // Hidden, in pixels of the parent. Throws ComError when the system refuses.
    void CreateIn(HWND parent, const RECT& bounds);
    void MoveTo(const RECT& bounds);
    void TakeFocus() const;
    // A key message for the grid, before the frame around the page uses it. False for keys that the grid has no use
    // for.
    bool TranslateKey(MSG& message) const;

    // In pixels of the screen's resolution.
    static Size WantedSize();

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::shared_ptr<void> Hold() override { return hold_(); }
    void Click() override;
    void KeyDown(short& keyCode, short& shift) override;
    void MouseUp(short button, short shift, float x, float y) override;

    void Layout();
    // Into the part of the bounds that the parent shows.
    void Fit() const;
    // The row of the cursor; 0 where there is none for a menu.
    int CurrentRow() const;
    void ChooseFile();
    void SetPicture(int row, IPictureDisp* picture);
    void FitRow(int row, const Picture* picture);

    std::function<void()> onChange_;
    std::function<std::shared_ptr<void>()> hold_;
    flexgrid::FlexGridWindow grid_;
    RECT bounds_{};           // as the parent gave them
    std::vector<Text> keys_;  // of the rows behind the fixed one
    float releasedAt_ = 0;    // twips from the top
};

}  // namespace qvx::menus
