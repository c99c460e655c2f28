// The common parts of the library's push button controls: `I` is the dual interface, `Element` the implementation in a
// window. Windows only.
#pragma once

#include <olectl.h>

#include <utility>

#include "Qvx.h"
#include "com/font_object.h"
#include "com/members.h"
#include "common/keys.h"
#include "dialogs/about_dialog.h"
#include "kit/control.h"
#include "widgets/button/access_key.h"
#include "widgets/button/push_value.h"
#include "win/window.h"

namespace qvx::buttons {

template <typename I, typename Element>
class PushControl : public Control<I> {
  public:
    STDMETHODIMP get_Caption(BSTR* result) override {
        return Give(result, [&] { return button_.Look().caption; });
    }
    STDMETHODIMP put_Caption(BSTR value) override {
        return this->Put(u"Caption", [&] {
            button_.SetCaption(Text(FromBstr(value)));
            this->AccessKeysChanged();
        });
    }
    STDMETHODIMP get_Font(IFontDisp** result) override {
        return Give(result, [&] { return font_.Get(); });
    }
    STDMETHODIMP put_Font(IFontDisp* value) override {
        return Guard([&] { font_.Set(value, true); });
    }
    STDMETHODIMP putref_Font(IFontDisp* value) override {
        return Guard([&] { font_.Set(value, false); });
    }
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().foreColor; });
    }
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override {
        return this->Put(u"ForeColor", [&] { button_.SetForeColor(value); });
    }
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().backColor; });
    }
    STDMETHODIMP put_BackColor(OLE_COLOR value) override {
        return this->Put(u"BackColor", [&] { button_.SetBackColor(value); });
    }
    STDMETHODIMP get_BorderColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().borderColor; });
    }
    STDMETHODIMP put_BorderColor(OLE_COLOR value) override {
        return this->Put(u"BorderColor", [&] { button_.SetBorderColor(value); });
    }
    STDMETHODIMP get_FocusRect(VARIANT_BOOL* result) override {
        return Give(result, [&] { return button_.Look().focusRect; });
    }
    STDMETHODIMP put_FocusRect(VARIANT_BOOL value) override {
        return this->Put(u"FocusRect", [&] { button_.SetFocusRect(value != VARIANT_FALSE); });
    }
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override {
        return Give(result, [&] { return button_.Look().enabled; });
    }
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override {
        return this->Put(u"Enabled", [&] {
            button_.SetEnabled(value != VARIANT_FALSE);
            this->AccessKeysChanged();
        });
    }
    // Throws run-time error 387 at design time.
    STDMETHODIMP put_Value(VARIANT_BOOL value) override {
        return Guard([&] {
            RequireValueSettable(this->UserMode());
            const auto keep = this->KeepAlive();
            this->Changed(u"Value");
            if (value != VARIANT_FALSE) {
                button_.Click();
            }
            ValueSet(value != VARIANT_FALSE);
        });
    }
    STDMETHODIMP get_hWnd(long* result) override {
        return Give(result, [&] { return this->WindowNumber(); });
    }
    STDMETHODIMP get_hDC(long* result) override {
        return Give(result, [&] { return this->DeviceContextNumber(); });
    }
    STDMETHODIMP DRAWFocus() override {
        return Guard([&] { button_.DrawFocus(); });
    }
    STDMETHODIMP ShowAbout() override {
        return Guard([&] {
            const ControlBase::DialogScope dialog(*this);
            ShowAboutBox(this->WindowHandle());
        });
    }

  protected:
    explicit PushControl(const ControlClass& controlClass)
        : Control<I>(controlClass), font_([this] {
              button_.SetFont(font_.Value());
              this->Changed(u"Font");
          }) {
        button_.onClick = [this] { this->Fire(u"Click"); };
    }
    ~PushControl() override = default;

    // Returns the caption of a new button.
    virtual Text DefaultCaption() const = 0;
    // `Value` was set, and the resulting click has been made.
    virtual void ValueSet(bool) {}

    void OnWindowCreated(HWND window) override { button_.Attach(window); }
    void OnWindowGoing() override { button_.Attach(nullptr); }
    std::optional<LRESULT> OnWindowMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED) {
            this->Invalidate();
            return std::nullopt;
        }
        if (Element::IsNews(message) || (message == WM_GETOBJECT && this->UserMode())) {
            return button_.HandleMessage(message, wParam, lParam);
        }
        // The host is asked only if its answer matters.
        if (!Element::IsInput(message) || !TakesInput()) {
            return std::nullopt;
        }
        return button_.HandleMessage(message, wParam, lParam);
    }
    void OnResize(Size size) override { button_.Resize(size); }
    void OnAfterRead() override { ambientFont_.Remember(this->Host()); }
    void OnAmbientChange(DISPID property) override {
        if (property == DISPID_AMBIENT_FONT) {
            if (const auto font = ambientFont_.Followed(this->Host(), font_.Value())) LoadFont(*font);
        }
        this->Invalidate();
    }
    void OnFocus(bool focused) override { button_.FocusChanged(focused); }
    void DrawControl(Surface& surface, const Rect&) override { button_.Paint(surface); }
    Text AccessKeys() override {
        const char16_t key = AccessKey(button_.Look().caption);
        return key && button_.Look().enabled ? Text(1, key) : Text();
    }
    void OnAccessKey(int key) override {
        const auto pressable = [this] { return button_.Look().enabled && TakesInput(); };
        if (!pressable()) {
            return;
        }
        if (key != keys::enter && key != keys::escape) {
            this->TakeFocus();
            // The handlers of the control that lost the focus may have disabled or released the button.
            if (!pressable()) {
                return;
            }
        }
        button_.AccessKeyPress(key);
    }
    bool WantsKey(const MSG& message) override {
        switch (message.message) {
            case WM_KEYDOWN:
                return button_.Wants(static_cast<int>(message.wParam), ShiftState());
            case WM_CHAR:
                return button_.Wants(static_cast<int>(message.wParam), 0) && message.wParam <= keys::space;
            case WM_KEYUP:
                return message.wParam == VK_SPACE;
            default:
                return false;
        }
    }

    // A designer only displays its controls, and a host whose program is halted must not have input handled.
    bool TakesInput() const { return this->UserMode() && !this->Host().UiDead(); }
    void LoadFont(const FontSpec& font) {
        font_.Load(font);
        button_.SetFont(font);
    }

    // The common rows of the property table; each control adds them in its own order.
    template <typename C>
    class Rows : public PropertyRows<C> {
      public:
        void Caption() {
            this->String(
                u"Caption", [](PushControl& c) { return c.DefaultCaption(); },
                [](PushControl& c) { return c.button_.Look().caption; },
                [](PushControl& c, Text v) { c.button_.SetCaption(std::move(v)); });
        }
        void Font() {
            PropertyRows<C>::Font(
                u"Font", [](PushControl& c) { return c.Host().Font(); }, [](PushControl& c) { return c.font_.Value(); },
                [](PushControl& c, const FontSpec& v) { c.LoadFont(v); });
        }
        void ForeColor() {
            this->Color(
                u"ForeColor", colors::buttonText, [](PushControl& c) { return c.button_.Look().foreColor; },
                [](PushControl& c, OleColor v) { c.button_.SetForeColor(v); });
        }
        void BackColor() {
            this->Color(
                u"BackColor", colors::buttonFace, [](PushControl& c) { return c.button_.Look().backColor; },
                [](PushControl& c, OleColor v) { c.button_.SetBackColor(v); });
        }
        void BorderColor(OleColor fallback) {
            this->Color(
                u"BorderColor", fallback, [](PushControl& c) { return c.button_.Look().borderColor; },
                [](PushControl& c, OleColor v) { c.button_.SetBorderColor(v); });
        }
        void FocusRect() {
            this->Bool(
                u"FocusRect", true, [](PushControl& c) { return c.button_.Look().focusRect; },
                [](PushControl& c, bool v) { c.button_.SetFocusRect(v); });
        }
        void Enabled() {
            this->Bool(
                u"Enabled", true, [](PushControl& c) { return c.button_.Look().enabled; },
                [](PushControl& c, bool v) { c.button_.SetEnabled(v); });
        }
    };

    Element button_;
    FontProperty font_;

  private:
    AmbientFont ambientFont_;
};

}  // namespace qvx::buttons
