// The window in which a property page has its contents, inside the frame that a host opens around its pages.
#pragma once

#include <windows.h>

#include <memory>

#include "common/font_spec.h"
#include "drawing/surface.h"
#include "win/window.h"

namespace qvx {

// The object that a page's window belongs to.
class PageOwner {
  public:
    // The user has changed something.
    virtual void Changed() = 0;
    // Keeps the owner alive for the length of a call.
    virtual std::shared_ptr<void> Hold() = 0;

  protected:
    ~PageOwner() = default;
};

// The contents exist without a window too; the window may be created and destroyed any number of times.
class PageWindow : public Window {
  public:
    PageWindow(const WindowClass& windowClass, PageOwner& owner) : windowClass_(windowClass), owner_(owner) {}

    // Creates the window, hidden, in pixels of the parent. Throws ComError when the system refuses.
    void CreateIn(HWND parent, const RECT& bounds);
    void MoveTo(const RECT& bounds);
    virtual void TakeFocus() const = 0;
    // Uses a key message before the frame around the page does; returns false for keys that the page does not use.
    virtual bool TranslateKey(MSG& message) = 0;
    // Finishes an entry that the user is still typing.
    virtual void FinishEntry() {}

  protected:
    // Creates the windows inside; false when the system refuses.
    virtual bool Build() = 0;
    // Positions them. Called without a window or with nothing built, too.
    virtual void Layout() = 0;
    // Draws what is between them.
    virtual void Draw(Surface&, Dpi) const {}
    PageOwner& Owner() const { return owner_; }

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    static const FontSpec font;
    static constexpr int margin = 7;  // pixels at 96 dots per inch

  private:
    // Fits the window into the part of the bounds that the parent shows.
    void Fit() const;

    WindowClass windowClass_;
    PageOwner& owner_;
    RECT bounds_{};  // as the parent gave them
};

}  // namespace qvx
