// The contents of the menu property page: a grid with a row for each menu, its key and its picture.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "controls/menus/menu_host_win32.h"
#include "kit/page_window.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "win/picture_object.h"

namespace qvx::menus {

class MenuPageWindow final : public PageWindow, private flexgrid::GridWindowEvents {
  public:
    explicit MenuPageWindow(PageOwner& owner);
    ~MenuPageWindow() override;

    // Creates a row for each key, in this order, with the picture of that key if there is one.
    void Fill(const std::vector<Text>& keys, const std::vector<KeyedPicture>& pictures);
    // Returns the pictures of the rows that have one, with their keys.
    std::vector<KeyedPicture> Pictures() const;

    void TakeFocus() const override;
    // Passes the keys that the grid uses to it.
    bool TranslateKey(MSG& message) override;

  protected:
    bool Build() override;
    void Layout() override;
    void Draw(Surface& surface, Dpi dpi) const override;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::shared_ptr<void> Hold() override { return Owner().Hold(); }
    void Click() override;
    void KeyDown(short& keyCode, short& shift) override;
    void MouseUp(short button, short shift, float x, float y) override;

    // Returns the row of the cursor; 0 where there is no row of a menu.
    int CurrentRow() const;
    void ChooseFile();
    void SetPicture(int row, IPictureDisp* picture);
    void FitRow(int row, const Picture* picture);

    flexgrid::FlexGridWindow grid_;
    std::vector<Text> keys_;  // of the rows after the fixed one
    float releasedAt_ = 0;    // twips from the top
};

}  // namespace qvx::menus
