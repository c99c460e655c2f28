// Wraps the system's accessible object of one of its controls under another name.
#include <memory>
#include <utility>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/members.h"
#include "win/accessible.h"
#include "win/window_text.h"

namespace qvx {

namespace {

enum class ControlKind { edit, list, other };

ControlKind KindOf(HWND window) {
    wchar_t name[32]{};
    GetClassNameW(window, name, 32);
    if (lstrcmpiW(name, L"EDIT") == 0) return ControlKind::edit;
    return lstrcmpiW(name, L"COMBOLBOX") == 0 ? ControlKind::list : ControlKind::other;
}

Text ChosenEntry(HWND list) {
    const LRESULT index = SendMessageW(list, LB_GETCURSEL, 0, 0);
    const LRESULT length = index < 0 ? index : SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length <= 0) return {};
    Text text(static_cast<std::size_t>(length) + 1, u'\0');
    const LRESULT copied =
        SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(WideBuffer(text)));
    text.resize(copied > 0 ? static_cast<std::size_t>(copied) : 0);
    return text;
}

class NamedAccessible final : public ComObject<AccessibleDispatch, IOleWindow> {
  public:
    NamedAccessible(HWND window, std::shared_ptr<const Text> name) : window_(window), name_(std::move(name)) {
        Check(CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible), inner_.put_void()));
    }

    STDMETHODIMP get_accName(VARIANT child, BSTR* out) override {
        if (!IsSelf(child)) return inner_->get_accName(child, out);
        return Guard([&] {
            *Required(out) = nullptr;
            CheckWindow();
            *out = NewBstr(*name_);
        });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* out) override {
        return Guard([&]() -> HRESULT {
            *Required(out) = nullptr;
            const HRESULT result = inner_->get_accValue(child, out);
            const ControlKind kind = KindOf(window_);
            if (*out || !IsSelf(child) || kind == ControlKind::other || !IsWindow(window_)) return result;
            // The text of a password field must not be read out.
            if (GetWindowLongW(window_, GWL_STYLE) & ES_PASSWORD && kind == ControlKind::edit) return E_ACCESSDENIED;
            *out = NewBstr(kind == ControlKind::edit ? WindowText(window_) : ChosenEntry(window_));
            return S_OK;
        });
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* out) override {
        return Guard([&]() -> HRESULT {
            VariantInit(Required(out));
            const HRESULT result = inner_->get_accRole(child, out);
            // The system's object does not know this kind of control.
            if (SUCCEEDED(result) && IsSelf(child) && out->vt == VT_I4 && out->lVal == ROLE_SYSTEM_CLIENT) {
                const ControlKind kind = KindOf(window_);
                if (kind == ControlKind::edit) out->lVal = ROLE_SYSTEM_TEXT;
                if (kind == ControlKind::list) out->lVal = ROLE_SYSTEM_LIST;
            }
            return result;
        });
    }

    // All other members are the system's.
    // clang-format off
    STDMETHODIMP get_accParent(IDispatch** out) override { return inner_->get_accParent(out); }
    STDMETHODIMP get_accChildCount(long* out) override { return inner_->get_accChildCount(out); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** out) override { return inner_->get_accChild(child, out); }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* out) override { return inner_->get_accDescription(child, out); }
    STDMETHODIMP get_accState(VARIANT child, VARIANT* out) override { return inner_->get_accState(child, out); }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* out) override { return inner_->get_accHelp(child, out); }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override { return inner_->get_accHelpTopic(file, child, topic); }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* out) override { return inner_->get_accKeyboardShortcut(child, out); }
    STDMETHODIMP get_accFocus(VARIANT* out) override { return inner_->get_accFocus(out); }
    STDMETHODIMP get_accSelection(VARIANT* out) override { return inner_->get_accSelection(out); }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* out) override { return inner_->get_accDefaultAction(child, out); }
    STDMETHODIMP accSelect(long flags, VARIANT child) override { return inner_->accSelect(flags, child); }
    STDMETHODIMP accLocation(long* left, long* top, long* width, long* height, VARIANT child) override { return inner_->accLocation(left, top, width, height, child); }
    STDMETHODIMP accNavigate(long direction, VARIANT start, VARIANT* out) override { return inner_->accNavigate(direction, start, out); }
    STDMETHODIMP accHitTest(long x, long y, VARIANT* out) override { return inner_->accHitTest(x, y, out); }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override { return inner_->accDoDefaultAction(child); }
    STDMETHODIMP put_accName(VARIANT child, BSTR name) override { return inner_->put_accName(child, name); }
    STDMETHODIMP put_accValue(VARIANT child, BSTR value) override { return inner_->put_accValue(child, value); }
    // clang-format on

    STDMETHODIMP GetWindow(HWND* out) override {
        return Guard([&] {
            *Required(out) = nullptr;
            CheckWindow();
            *out = window_;
        });
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  private:
    ~NamedAccessible() override = default;

    static bool IsSelf(const VARIANT& child) { return child.vt == VT_I4 && child.lVal == CHILDID_SELF; }
    void CheckWindow() const {
        if (!IsWindow(window_)) throw ComError(CO_E_OBJNOTCONNECTED);
    }

    HWND window_;
    std::shared_ptr<const Text> name_;
    ComPtr<IAccessible> inner_;
};

}  // namespace

LRESULT AccessibleNameSubclass::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_GETOBJECT && !name_->empty()) {
        const auto make = [this] { return ComPtr<IAccessible>(MakeObject<NamedAccessible>(Handle(), name_)); };
        if (const auto answer = AnswerGetObject(wParam, lParam, make)) return *answer;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx
