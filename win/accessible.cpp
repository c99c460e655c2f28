#include "win/accessible.h"

#include "com/bstr.h"
#include "com/guard.h"
#include "com/members.h"
#include "common/caption.h"
#include "win/window_text.h"

namespace qvx {

namespace {

// The system's type library that describes IAccessible; it has only one version.
constexpr GUID accessibilityLibrary{0x1EA4DBF0, 0x3C3B, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

ComPtr<ITypeInfo> AccessibleTypeInfo() {
    ComPtr<ITypeLib> library;
    Check(LoadRegTypeLib(accessibilityLibrary, 1, 1, LOCALE_NEUTRAL, library.put()));
    ComPtr<ITypeInfo> info;
    Check(library->GetTypeInfoOfGuid(__uuidof(IAccessible), info.put()));
    return info;
}

}  // namespace

// ---- IDispatch -----------------------------------------------------------------------------------------------------

STDMETHODIMP AccessibleDispatch::GetTypeInfoCount(UINT* count) {
    return Guard([&] { *Required(count) = 1; });
}

STDMETHODIMP AccessibleDispatch::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    return Guard([&]() -> HRESULT {
        *Required(info) = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        *info = AccessibleTypeInfo().detach();
        return S_OK;
    });
}

STDMETHODIMP AccessibleDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    return Guard([&] { return AccessibleTypeInfo()->GetIDsOfNames(names, count, ids); });
}

STDMETHODIMP AccessibleDispatch::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                        EXCEPINFO* exception, UINT* argumentInError) {
    return Guard([&] {
        return AccessibleTypeInfo()->Invoke(static_cast<IAccessible*>(this), member, flags, arguments, result,
                                            exception, argumentInError);
    });
}

// ---- AccessibleObject ----------------------------------------------------------------------------------------------

void AccessibleObject::CheckConnected() const {
    if (!LiveWindow()) throw ComError(CO_E_OBJNOTCONNECTED);
}

long AccessibleObject::Checked(const VARIANT& child) const {
    CheckConnected();
    if (child.vt == VT_I4) return child.lVal;
    if (child.vt == VT_EMPTY || child.vt == VT_ERROR) return CHILDID_SELF;
    throw ComError(E_INVALIDARG);
}

template <typename Ask>
HRESULT AccessibleObject::Say(const VARIANT& child, BSTR* out, Ask ask) {
    return Guard([&]() -> HRESULT {
        *Required(out) = nullptr;
        const std::optional<Text> text = ask(Checked(child));
        if (!text) return S_FALSE;
        *out = NewBstr(*text);
        return S_OK;
    });
}

template <typename Ask>
HRESULT AccessibleObject::Give(VARIANT* out, Ask ask) {
    return Guard([&]() -> HRESULT {
        VariantInit(Required(out));
        CheckConnected();
        Variant value = ask();
        const bool empty = value.Empty();
        *out = value.detach();
        return empty ? S_FALSE : S_OK;
    });
}

ComPtr<IDispatch> AccessibleObject::Parent() {
    ComPtr<IDispatch> parent;
    Check(AccessibleObjectFromWindow(LiveWindow(), static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                     parent.put_void()));
    return parent;
}

STDMETHODIMP AccessibleObject::get_accParent(IDispatch** out) {
    return Guard([&] {
        *Required(out) = nullptr;
        CheckConnected();
        *out = Parent().detach();
    });
}

STDMETHODIMP AccessibleObject::get_accChildCount(long* out) {
    return Guard([&] {
        *Required(out) = 0;
        CheckConnected();
        *out = ChildCount();
    });
}

STDMETHODIMP AccessibleObject::get_accChild(VARIANT child, IDispatch** out) {
    return Guard([&]() -> HRESULT {
        *Required(out) = nullptr;
        const long number = Checked(child);
        if (number == CHILDID_SELF) {
            AddRef();
            *out = this;
            return S_OK;
        }
        *out = Child(number).detach();
        return *out ? S_OK : E_INVALIDARG;
    });
}

STDMETHODIMP AccessibleObject::get_accName(VARIANT child, BSTR* out) {
    return Say(child, out, [this](long number) { return Name(number); });
}

STDMETHODIMP AccessibleObject::get_accValue(VARIANT child, BSTR* out) {
    return Say(child, out, [this](long number) { return Value(number); });
}

STDMETHODIMP AccessibleObject::get_accDescription(VARIANT child, BSTR* out) {
    return Say(child, out, [this](long id) { return Description(id); });
}

STDMETHODIMP AccessibleObject::get_accRole(VARIANT child, VARIANT* out) {
    return Give(out, [&] { return Variant(Role(Checked(child))); });
}

STDMETHODIMP AccessibleObject::get_accState(VARIANT child, VARIANT* out) {
    return Give(out, [&] { return Variant(State(Checked(child))); });
}

STDMETHODIMP AccessibleObject::get_accHelp(VARIANT child, BSTR* out) { return get_accDescription(child, out); }

STDMETHODIMP AccessibleObject::get_accHelpTopic(BSTR* file, VARIANT child, long* topic) {
    return Guard([&]() -> HRESULT {
        *Required(file) = nullptr;
        *Required(topic) = 0;
        Checked(child);
        return S_FALSE;
    });
}

STDMETHODIMP AccessibleObject::get_accKeyboardShortcut(VARIANT child, BSTR* out) {
    return Say(child, out, [this](long number) { return Shortcut(number); });
}

STDMETHODIMP AccessibleObject::get_accFocus(VARIANT* out) {
    return Give(out, [this] { return Focus(); });
}

STDMETHODIMP AccessibleObject::get_accSelection(VARIANT* out) {
    return Give(out, [this] { return Selection(); });
}

STDMETHODIMP AccessibleObject::get_accDefaultAction(VARIANT child, BSTR* out) {
    return Say(child, out, [this](long number) { return DefaultAction(number); });
}

STDMETHODIMP AccessibleObject::accSelect(long flags, VARIANT child) {
    return Guard([&] { Select(flags, Checked(child)); });
}

STDMETHODIMP AccessibleObject::accLocation(long* left, long* top, long* width, long* height, VARIANT child) {
    return Guard([&] {
        for (long* out : {left, top, width, height}) *Required(out) = 0;
        const Rect area = Location(Checked(child));
        *left = area.left;
        *top = area.top;
        *width = area.Width();
        *height = area.Height();
    });
}

STDMETHODIMP AccessibleObject::accNavigate(long direction, VARIANT start, VARIANT* out) {
    return Give(out, [&] { return Navigate(direction, Checked(start)); });
}

STDMETHODIMP AccessibleObject::accHitTest(long x, long y, VARIANT* out) {
    return Give(out, [&] { return HitTest({static_cast<int>(x), static_cast<int>(y)}); });
}

STDMETHODIMP AccessibleObject::accDoDefaultAction(VARIANT child) {
    return Guard([&] { DoDefaultAction(Checked(child)); });
}

STDMETHODIMP AccessibleObject::put_accName(VARIANT, BSTR) { return DISP_E_MEMBERNOTFOUND; }

STDMETHODIMP AccessibleObject::put_accValue(VARIANT child, BSTR value) {
    return Guard([&] { SetValue(Checked(child), FromBstr(value)); });
}

STDMETHODIMP AccessibleObject::GetWindow(HWND* out) {
    return Guard([&] {
        *Required(out) = nullptr;
        CheckConnected();
        *out = LiveWindow();
    });
}

STDMETHODIMP AccessibleObject::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }

void AccessibleObject::Select(long, long) { throw ComError(DISP_E_MEMBERNOTFOUND); }
void AccessibleObject::DoDefaultAction(long) { throw ComError(DISP_E_MEMBERNOTFOUND); }
void AccessibleObject::SetValue(long, TextView) { throw ComError(DISP_E_MEMBERNOTFOUND); }

// ---- Windows -------------------------------------------------------------------------------------------------------

std::optional<LRESULT> AnswerGetObject(WPARAM wParam, LPARAM lParam, const std::function<ComPtr<IAccessible>()>& make) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) return std::nullopt;
    const ComPtr<IAccessible> object = make();
    if (!object) return std::nullopt;
    return LresultFromObject(__uuidof(IAccessible), wParam, object.get());
}

void NotifyAssistive(DWORD event, HWND window, long child) {
    if (window) NotifyWinEvent(event, window, OBJID_CLIENT, child);
}

Text LabelBefore(HWND window) {
    const HWND label = window ? ::GetWindow(window, GW_HWNDPREV) : nullptr;
    wchar_t kind[16]{};
    if (!label || !GetClassNameW(label, kind, 16) || lstrcmpiW(kind, L"STATIC") != 0 || !IsWindowVisible(label))
        return {};
    return WithoutAccessMark(WindowText(label));
}

}  // namespace qvx
