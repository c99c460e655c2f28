// The common parts of objects of the system's accessibility interface: late binding through the system's own type
// library, the checks at the interface, and the way in which a window returns its object.
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

// An accessible object of the library's own, for a whole window or a part of one. A class provides its properties as
// plain values and throws ComError for what it refuses. CheckConnected throws CO_E_OBJNOTCONNECTED once the described
// part is gone, since clients may keep the object for as long as they like. `child` is 0 for the object itself, or the
// number of one of its children.
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

    // The window that the object belongs to, or null when that is gone.
    virtual HWND LiveWindow() const = 0;
    virtual void CheckConnected() const;
    // By default, the object of the window itself with its frame.
    virtual ComPtr<IDispatch> Parent();
    virtual long ChildCount() { return 0; }
    // Returns an object for a child; null refuses the number.
    virtual ComPtr<IDispatch> Child(long /*child*/) { return nullptr; }
    virtual std::optional<Text> Name(long child) = 0;
    virtual std::optional<Text> Value(long /*child*/) { return std::nullopt; }
    virtual std::optional<Text> Description(long /*child*/) { return std::nullopt; }
    virtual std::optional<Text> Shortcut(long /*child*/) { return std::nullopt; }
    virtual std::optional<Text> DefaultAction(long /*child*/) { return std::nullopt; }
    virtual long Role(long child) = 0;
    virtual long State(long child) = 0;
    // In screen pixels.
    virtual Rect Location(long child) = 0;
    // Returns a child's object or number, 0 for the object itself, empty when nothing is hit.
    virtual Variant HitTest(Point screen) = 0;
    virtual Variant Focus() { return {}; }
    virtual Variant Selection() { return {}; }
    virtual Variant Navigate(long /*direction*/, long /*child*/) { return {}; }
    virtual void Select(long flags, long child);
    virtual void DoDefaultAction(long child);
    virtual void SetValue(long child, TextView value);

  private:
    // Returns the number in a child argument; throws E_INVALIDARG for anything else.
    long Checked(const VARIANT& child) const;
    template <typename Ask>
    HRESULT Say(const VARIANT& child, BSTR* out, Ask ask);
    template <typename Ask>
    HRESULT Give(VARIANT* out, Ask ask);
};

// Handles WM_GETOBJECT: returns the object that `make` creates when the message asks for the object of the window's
// client area, otherwise nullopt.
std::optional<LRESULT> AnswerGetObject(WPARAM wParam, LPARAM lParam, const std::function<ComPtr<IAccessible>()>& make);

// Notifies assistive programs of an event in a window's client area or in a child of it.
void NotifyAssistive(DWORD event, HWND window, long child);

// Returns the text of the label that comes directly before a window in its parent, without the mark of its access key;
// empty if there is none.
Text LabelBefore(HWND window);

// Gives one of the system's controls an accessible name of our own instead of its text or label. Its other properties
// remain the system's; where the system provides no value for a text or a list, this class does.
class AccessibleNameSubclass final : public WindowSubclass {
  public:
    AccessibleNameSubclass() = default;

    const Text& Name() const { return *name_; }
    void SetName(TextView name) { *name_ = name; }

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Shared with the objects that clients hold, so that they follow changes of the name.
    std::shared_ptr<Text> name_ = std::make_shared<Text>();
};

}  // namespace qvx
