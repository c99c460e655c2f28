// What every object of the system's accessibility interface shares: late binding through the system's own type library,
// the checks at the edge, and the way a window gives its object out.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <functional>
#include <memory>
#include <optional>

#include "com/object.h"
#include "com/variant.h"
#include "common/text.h"
#include "win/window.h"

namespace qvx {

// IDispatch of IAccessible.
class AccessibleDispatch : public IAccessible {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  protected:
    ~AccessibleDispatch() = default;
};

template <>
struct InterfaceTraits<AccessibleDispatch> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IAccessible) || iid == __uuidof(IDispatch); }
};

// An object of our own, for a whole window or a part of one. A class says what it has in plain values; it throws
// ComError for what it refuses, and CheckConnected throws CO_E_OBJNOTCONNECTED once what it tells of is gone, which
// clients may hold on to for as long as they like. `child` is 0 for the object itself, or one of its children's
// numbers.
class AccessibleObject : public ComObject<AccessibleDispatch, IOleWindow> {
  public:
    STDMETHODIMP get_accParent(IDispatch** out) final;
    STDMETHODIMP get_accChildCount(long* out) final;
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** out) final;
    STDMETHODIMP get_accName(VARIANT child, BSTR* out) final;
    STDMETHODIMP get_accValue(VARIANT child, BSTR* out) final;
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* out) final;
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* out) final;
    STDMETHODIMP get_accState(VARIANT child, VARIANT* out) final;
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* out) final;
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, long* topic) final;
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* out) final;
    STDMETHODIMP get_accFocus(VARIANT* out) final;
    STDMETHODIMP get_accSelection(VARIANT* out) final;
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* out) final;
    STDMETHODIMP accSelect(long flags, VARIANT child) final;
    STDMETHODIMP accLocation(long* left, long* top, long* width, long* height, VARIANT child) final;
    STDMETHODIMP accNavigate(long direction, VARIANT start, VARIANT* out) final;
    STDMETHODIMP accHitTest(long x, long y, VARIANT* out) final;
    STDMETHODIMP accDoDefaultAction(VARIANT child) final;
    STDMETHODIMP put_accName(VARIANT child, BSTR name) final;
    STDMETHODIMP put_accValue(VARIANT child, BSTR value) final;
    STDMETHODIMP GetWindow(HWND* out) final;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) final;

  protected:
    ~AccessibleObject() override = default;

    // The window that it belongs to, or null when that is gone.
    virtual HWND LiveWindow() const = 0;
    virtual void CheckConnected() const;
    // The window's own object, with its frame, by default.
    virtual ComPtr<IDispatch> Parent();
    virtual long ChildCount() { return 0; }
    // An object for a child; null refuses the number.
    virtual ComPtr<IDispatch> Child(long /*child*/) { return nullptr; }
    virtual std::optional<Text> Name(long child) = 0;
    virtual std::optional<Text> Value(long /*child*/) { return std::nullopt; }
    virtual std::optional<Text> Shortcut(long /*child*/) { return std::nullopt; }
    virtual std::optional<Text> DefaultAction(long /*child*/) { return std::nullopt; }
    virtual long Role(long child) = 0;
    virtual long State(long child) = 0;
    // Screen pixels.
    virtual Rect Location(long child) = 0;
    // A child's object or number, 0 for the object itself, empty for nothing.
    virtual Variant HitTest(Point screen) = 0;
    virtual Variant Focus() { return {}; }
    virtual Variant Selection() { return {}; }
    virtual Variant Navigate(long /*direction*/, long /*child*/) { return {}; }
    virtual void Select(long flags, long child);
    virtual void DoDefaultAction(long child);
    virtual void SetValue(long child, TextView value);

  private:
    // The number in a child argument; E_INVALIDARG for anything else.
    long Checked(const VARIANT& child) const;
    template <typename Ask>
    HRESULT Say(const VARIANT& child, BSTR* out, Ask ask);
    template <typename Ask>
    HRESULT Give(VARIANT* out, Ask ask);
};

// The answer to WM_GETOBJECT with the object that `make` gives, when the message asks for the one of the window's
// client area.
std::optional<LRESULT> AnswerGetObject(WPARAM wParam, LPARAM lParam, const std::function<ComPtr<IAccessible>()>& make);

// Tells assistive programs of something that has happened to a window's client area or to a child of it.
void NotifyAssistive(DWORD event, HWND window, long child);

// The label that stands in front of a window in its parent, without the mark of its access key; empty for none.
Text LabelBefore(HWND window);

// Gives one of the system's controls a name of our own, in place of the text or the label that it would be called by.
// The rest of what the system says of it stays; where it says nothing of a text's or a list's value, that is said too.
class AccessibleNameSubclass final : public WindowSubclass {
  public:
    AccessibleNameSubclass() = default;

    const Text& Name() const { return *name_; }
    void SetName(TextView name) { *name_ = name; }

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Shared with the objects given out, so that they follow it.
    std::shared_ptr<Text> name_ = std::make_shared<Text>();
};

}  // namespace qvx
