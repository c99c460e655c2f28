// Pages in a window before they are printed.
#pragma once

#include <array>
#include <functional>

#include "common/text.h"
#include "widgets/button/button_window.h"
#include "win/gdi_surface.h"
#include "win/modal.h"
#include "win/window.h"

namespace qvx::dialogs {

class PagePreviewWindow final : public Window {
  public:
    // Returns a page, counted from 0 and at most the last one, as a metafile of A4 paper that is valid until the next
    // call. Both numbers may be set: what is shown may change meanwhile.
    using DrawPage = std::function<HENHMETAFILE(int& page, int& pages)>;

    PagePreviewWindow(DrawPage draw, bool rightToLeft) : draw_(std::move(draw)), rightToLeft_(rightToLeft) {}
    ~PagePreviewWindow() override { Destroy(); }

    // Shows the pages over `owner` (may be null) until the user closes the window; returns whether to print them.
    bool Run(HWND owner, const Text& title);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override;

  private:
    bool Open(HWND owner, const Text& title);
    void PlaceButtons();
    void Paint();
    void Show(int page);
    void Close(bool print);
    bool BeforeDispatch(const MSG& message);
    bool TakeKey(int key);
    void MoveFocus(bool back);
    std::size_t Focused() const;
    int Bar() const;

    DrawPage draw_;
    bool rightToLeft_;
    Dpi dpi_;
    HENHMETAFILE file_ = nullptr;
    int page_ = 0;
    int pages_ = 1;
    bool print_ = false;
    bool closed_ = false;
    ModalScope* modal_ = nullptr;
    BackBuffer buffer_;
    BackBuffer large_;
    std::array<buttons::ButtonWindow, 4> buttons_;
};

}  // namespace qvx::dialogs
