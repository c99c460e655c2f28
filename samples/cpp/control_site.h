// A control in a window, in plain COM: the site that a container provides to it, and what the container does with it.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <functional>
#include <utility>

// Owns a reference to a COM object.
template <class Interface>
class Reference {
  public:
    Reference() = default;
    ~Reference() { Reset(); }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    Interface* operator->() const { return object_; }
    Interface* Get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    void Reset() {
        if (Interface* old = std::exchange(object_, nullptr)) old->Release();
    }
    // For calls that return an object.
    Interface** Put() {
        Reset();
        return &object_;
    }
    HRESULT Query(IUnknown* object) {
        return object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(Put()));
    }

  private:
    Interface* object_ = nullptr;
};

class ControlSite;

// The window that controls are in.
class Container {
  public:
    virtual HWND Window() = 0;
    // A control has received the focus.
    virtual void FocusEntered(ControlSite& site) = 0;
    // Moves the focus to the next control in the tab order, or to the previous one.
    virtual void MoveFocus(ControlSite& from, bool backwards) = 0;

  protected:
    ~Container() = default;
};

// Receives the events of a control by their numbers in the type library. Arguments are in reverse order.
using EventHandler = std::function<void(DISPID event, const DISPPARAMS& arguments)>;

class ControlSite final : public IOleClientSite, public IOleInPlaceSite, public IOleControlSite, public IDispatch {
  public:
    explicit ControlSite(Container& container) : container_(container) {}

    // Creates the control and initialises it. The caller then sets its properties, and shows it.
    HRESULT Create(REFCLSID id);
    HRESULT Show(const RECT& place);
    HRESULT Listen(REFIID events, EventHandler handler);
    void MoveTo(const RECT& place);
    void Focus();
    // Ends everything that holds the control or this site.
    void Close();

    IUnknown* Control() const { return object_.Get(); }
    // Offers a key to the control that has the focus; true if the control, or the site for it, has used the key.
    bool OfferKey(MSG& key);
    // Whether the key, pressed with Alt, is the control's access key.
    bool IsAccessKey(const MSG& key);
    // Whether the control uses the Enter key itself.
    bool UsesEnter();
    // Presses the control by its access key, or as the default button with Enter.
    void Press(MSG& key);

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    // The window owns its sites and closes them before it ends.
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    // IOleClientSite
    STDMETHODIMP SaveObject() override { return S_OK; }
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    STDMETHODIMP GetContainer(IOleContainer** container) override;
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    // IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO info) override;
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
    STDMETHODIMP OnPosRectChange(LPCRECT wanted) override;
    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetExtendedControl(IDispatch** control) override;
    STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG* key, DWORD modifiers) override;
    STDMETHODIMP OnFocus(BOOL entered) override;
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
    // IDispatch: the ambient properties, which are asked for by their numbers
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

  private:
    CONTROLINFO Info();

    Container& container_;
    RECT place_{};
    Reference<IOleObject> object_;
    Reference<IOleInPlaceObject> inPlace_;
    Reference<IOleInPlaceActiveObject> keys_;
    Reference<IOleControl> control_;
    Reference<IConnectionPoint> point_;
    DWORD connection_ = 0;
};
