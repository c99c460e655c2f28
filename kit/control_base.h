// The control kit: everything that hosts expect of any control. tests/control/lamp_control.h shows a whole control that
// is written with it.
//
// The control's window exists from the first need of it on; while the control is not active in place it lies hidden in
// a window of ours. Hooks are called on the host's one thread.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <memory>
#include <optional>
#include <span>

#include "com/connection_points.h"
#include "com/guard.h"
#include "com/object.h"
#include "common/geometry.h"
#include "drawing/surface.h"
#include "kit/control_class.h"
#include "kit/host_services.h"
#include "kit/property_table.h"
#include "win/handles.h"

namespace qvx {

class ControlWindow;

class ControlBase : public IOleObject,
                    public IOleInPlaceObject,
                    public IOleInPlaceActiveObject,
                    public IOleControl,
                    public IViewObjectEx,
                    public IPersistPropertyBag,
                    public IPersistStreamInit,
                    public IPersistStorage,
                    public IProvideClassInfo2,
                    public IConnectionPointContainer,
                    public ISpecifyPropertyPages,
                    public IQuickActivate,
                    public ISupportErrorInfo {
  public:
    ControlBase(const ControlBase&) = delete;
    ControlBase& operator=(const ControlBase&) = delete;

    const HostServices& Host() const { return host_; }
    // The persisted properties in their order; one table for all controls of a class.
    virtual const PropertyTable& Properties() = 0;

    // The control's window, made when it is not there yet; null only when the system refuses one.
    HWND EnsureWindow();
    // The window if there is one.
    HWND WindowHandle() const;
    // As the hWnd and hDC properties give them.
    long WindowNumber();
    long DeviceContextNumber();
    // Size of the control in pixels of its window.
    Size PixelSize() const;
    // Whether the control runs, as opposed to being designed.
    bool UserMode() const { return host_.UserMode(); }
    // Gives a new control its initial state; again once there is a host to take defaults from.
    void InitialiseNew();
    // Keeps the control alive for the length of a scope, for code that goes on after a call out to the host.
    ComPtr<IUnknown> KeepAlive() { return ComPtr<IUnknown>(Unknown()); }

    // What the control's own window messages and its inner windows report; the kit compares with what it knew and calls
    // OnFocus on a change. `moving` is the window that takes the focus, null when it goes elsewhere.
    void FocusMovesTo(HWND moving);

    // --- The system's interfaces follow; a control leaves them alone. ---

    // IPersist
    STDMETHODIMP GetClassID(CLSID* id) override;
    // IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite* site) override;
    STDMETHODIMP GetClientSite(IOleClientSite** site) override;
    STDMETHODIMP SetHostNames(LPCOLESTR application, LPCOLESTR object) override;
    STDMETHODIMP Close(DWORD saveOption) override;
    STDMETHODIMP SetMoniker(DWORD which, IMoniker* moniker) override;
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    STDMETHODIMP InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
    STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject** data) override;
    STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent,
                        LPCRECT position) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
    STDMETHODIMP Update() override;
    STDMETHODIMP IsUpToDate() override;
    STDMETHODIMP GetUserClassID(CLSID* id) override;
    STDMETHODIMP GetUserType(DWORD form, LPOLESTR* name) override;
    STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
    STDMETHODIMP Unadvise(DWORD connection) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** advises) override;
    STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE* palette) override;
    // IOleWindow
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
    // IOleInPlaceObject
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) override;
    STDMETHODIMP ReactivateAndUndo() override;
    // IOleInPlaceActiveObject
    STDMETHODIMP TranslateAccelerator(LPMSG message) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
    STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
    STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window, BOOL frame) override;
    STDMETHODIMP EnableModeless(BOOL enable) override;
    // IOleControl
    STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
    STDMETHODIMP OnMnemonic(LPMSG message) override;
    STDMETHODIMP OnAmbientPropertyChange(DISPID property) override;
    STDMETHODIMP FreezeEvents(BOOL freeze) override;
    // IViewObjectEx
    STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectData, DVTARGETDEVICE* device, HDC target, HDC dc,
                      LPCRECTL bounds, LPCRECTL windowBounds, BOOL(CALLBACK* proceed)(ULONG_PTR),
                      ULONG_PTR context) override;
    STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspectData, DVTARGETDEVICE* device, HDC target,
                             LOGPALETTE** colors) override;
    STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspectData, DWORD* key) override;
    STDMETHODIMP Unfreeze(DWORD key) override;
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;
    STDMETHODIMP GetRect(DWORD aspect, LPRECTL area) override;
    STDMETHODIMP GetViewStatus(DWORD* status) override;
    STDMETHODIMP QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG closeness, DWORD* result) override;
    STDMETHODIMP QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT area, LONG closeness, DWORD* result) override;
    STDMETHODIMP GetNaturalExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, HDC target, DVEXTENTINFO* extent,
                                  LPSIZEL size) override;
    // IPersistPropertyBag, IPersistStreamInit, IPersistStorage
    STDMETHODIMP InitNew() override;
    STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
    STDMETHODIMP Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;
    STDMETHODIMP IsDirty() override;
    STDMETHODIMP Load(LPSTREAM stream) override;
    STDMETHODIMP Save(LPSTREAM stream, BOOL clearDirty) override;
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
    STDMETHODIMP InitNew(IStorage* storage) override;
    STDMETHODIMP Load(IStorage* storage) override;
    STDMETHODIMP Save(IStorage* storage, BOOL sameAsLoad) override;
    STDMETHODIMP SaveCompleted(IStorage* storage) override;
    STDMETHODIMP HandsOffStorage() override;
    // IProvideClassInfo2
    STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
    STDMETHODIMP GetGUID(DWORD kind, GUID* id) override;
    // IConnectionPointContainer
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;
    // ISpecifyPropertyPages
    STDMETHODIMP GetPages(CAUUID* pages) override;
    // IQuickActivate
    STDMETHODIMP QuickActivate(QACONTAINER* container, QACONTROL* control) override;
    STDMETHODIMP SetContentExtent(LPSIZEL size) override;
    STDMETHODIMP GetContentExtent(LPSIZEL size) override;
    // ISupportErrorInfo
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

  protected:
    // `interfaceId` is the dual interface's.
    ControlBase(const ControlClass& controlClass, const IID& interfaceId);
    virtual ~ControlBase();

    // --- What a control calls. ---

    // A setter's last call, with the property's name as the type library spells it: the control is dirty, listeners
    // hear of it, and it is painted anew.
    void Changed(TextView name);
    // Asks for the control to be painted anew, active or not.
    void Invalidate();
    // Calls the host's handlers of the event, named as the type library spells it. Nothing while the host has frozen
    // events, nor while properties are being read: a form that is half there has no handlers yet. Throws nothing; what
    // handlers wrote into by-reference arguments is in the caller's variables afterwards.
    void Fire(TextView event, EventArguments arguments = {});
    // Whether Fire would reach anybody: for events that come by the thousand.
    bool HasListeners() const { return RaisesEvents() && connections_.HasListeners(); }
    bool RaisesEvents() const { return frozen_ == 0 && loading_ == 0; }
    // To be called when AccessKeys would answer otherwise than before.
    void AccessKeysChanged();
    // Asks for another size, in pixels, for a control that knows better than its host how large it has to be. An active
    // control's host is asked to move it; should the host do nothing, and for an inactive control, the size is just
    // taken. From OnResize, which comes again with the new size.
    void RequestPixelSize(Size pixels);
    bool InPlaceActive() const { return inPlaceActive_; }
    // Whether the host has finished setting the control up: by initialising it, by loading it, or by activating it
    // without either.
    bool IsSetUp() const { return setUp_; }
    // Whether the keyboard focus is in the control's window or inside it.
    bool HasFocus() const { return focused_; }
    // Takes the keyboard focus, made user-interface active first.
    void TakeFocus();
    // Asks the host to move the focus to the next or the previous control, as for a Tab; false when it does not.
    bool MoveFocusOn(bool backwards);

    // For the length of a modal dialog that the control opens: the host closes its own other windows to input, and
    // the control lives on whatever happens meanwhile.
    class DialogScope {
      public:
        explicit DialogScope(ControlBase& control);
        ~DialogScope();
        DialogScope(const DialogScope&) = delete;
        DialogScope& operator=(const DialogScope&) = delete;

      private:
        ComPtr<IUnknown> keep_;
        ComPtr<IOleInPlaceFrame> frame_;
    };

    // --- What a control overrides. ---

    // At 96 dots per inch.
    virtual Size DefaultPixelSize() const { return {81, 33}; }
    // A new control, not a loaded one. Sets every property of the table to its default.
    virtual void InitProperties();
    // Before the row with that key is read. Rows before it are applied already.
    virtual void OnBeforeRead(TextView) {}
    // Whether a stored value that the control refuses ends the loading, with the error told to the host; it is read as
    // absent otherwise.
    virtual bool ReportsRefusedValues() const { return false; }
    // After all rows were read.
    virtual void OnAfterRead() {}
    // The window is there; inner windows are made here. Called again if the host destroyed the first one, and after
    // OnWindowGoing when UserMode has changed.
    virtual void OnWindowCreated(HWND) {}
    // Inner windows go here; the window goes next or stays.
    virtual void OnWindowGoing() {}
    // Messages of the control's own window before the kit's handling, which goes on for nullopt. WM_PAINT is the kit's
    // unless answered here.
    virtual std::optional<LRESULT> OnWindowMessage(UINT, WPARAM, LPARAM) { return std::nullopt; }
    // Whether inner windows cover all of the control's own, which then has nothing to paint.
    virtual bool IsCovered() { return false; }
    // The shape that a window of that size is cut to, in its own pixels; null for all of it.
    virtual UniqueRegion WindowShape(Size) const { return {}; }
    // In pixels; also once when the window is made, and before a control without a window is drawn.
    virtual void OnResize(Size) {}
    // The control becomes visible in its place, every time.
    virtual void OnShow() {}
    // DISPID_UNKNOWN when several changed.
    virtual void OnAmbientChange(DISPID) {}
    virtual void OnFocus(bool) {}
    // Where the focus goes when the control gets it from its host.
    virtual HWND FocusWindow() { return WindowHandle(); }
    // The whole picture of the control, from (0, 0) to its size: painting, printing and designers' pictures alike.
    virtual void DrawControl(Surface& surface, const Rect& area) = 0;
    // The characters that press the control together with Alt.
    virtual Text AccessKeys() { return {}; }
    // An access key (lower case), or 13 or 27 when the host uses the control as its default or cancel button.
    virtual void OnAccessKey(int) {}
    // Keys that the control wants itself before the host uses them for moving the focus. They arrive as usual window
    // messages.
    virtual bool WantsKey(const MSG&) { return false; }
    virtual std::span<const CLSID> PropertyPages() const { return {}; }
    // The last call before the object goes, with host and window still there.
    virtual void OnTerminate() {}

    // --- For Control<I>. ---
    HRESULT QueryKitInterface(REFIID iid, void** object);
    ULONG AddReference() { return references_.Add(); }
    ULONG ReleaseReference();
    virtual IUnknown* Unknown() = 0;

  private:
    friend class ControlWindow;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint(HWND window);
    void OnWindowGone();

    void Activate(bool withUi);
    void ActivateInPlace();
    void ActivateUi();
    void Deactivate();
    void DeactivateUi();
    void MoveWindowTo(const RECT& position, const RECT& clip);
    // Cuts the window to the control's shape, within what the container lets show of it.
    void CutWindow(Size size);
    // Gives a control that nobody has sized its default size.
    void EnsureSize();
    void SetPixelSize(Size pixels);
    void TakeExtent(const SIZEL& extent);
    void ViewChanged();
    void Terminate();

    // A host that turns from designing to running, or back, with the control in its place.
    void FollowUserMode();

    class Loading;
    void ReadFrom(const PropertySource& source);
    std::vector<std::pair<Text, PropertyValue>> ChangedProperties();
    void LoadBag(IPropertyBag* bag, IErrorLog* log);
    void SaveBag(IPropertyBag* bag);
    void LoadStream(IStream* stream);
    void SaveStream(IStream* stream);
    std::vector<std::uint8_t> StreamBytes();

    const ControlClass& class_;
    const IID& interfaceId_;
    ReferenceCount references_;
    HostServices host_;
    ConnectionPoints connections_;
    std::unique_ptr<ControlWindow> window_;
    ComPtr<IOleInPlaceSite> inPlaceSite_;
    ComPtr<IOleInPlaceFrame> frame_;
    ComPtr<IOleInPlaceUIWindow> uiWindow_;
    ComPtr<IOleAdviseHolder> advises_;
    ComPtr<IAdviseSink> viewSink_;
    DWORD viewAspects_ = 0;
    DWORD viewFlags_ = 0;
    HACCEL accelerators_ = nullptr;
    ComPtr<IStorage> storage_;
    SIZEL extent_{};  // in 1/100 millimetre; pixels_ is the same size as far as rounding goes
    Size pixels_;
    int frozen_ = 0;
    std::optional<Rect> clip_;  // what the container lets show, in pixels of the window; nothing for all of it
    bool cut_ = false;          // the window has a region
    int loading_ = 0;
    bool setUp_ = false;
    bool windowMode_ = false;  // the UserMode that inner windows were made for
    bool activating_ = false;  // the host is being told, and may still call it off
    bool inPlaceActive_ = false;
    bool uiActive_ = false;
    bool focused_ = false;
    bool dirty_ = false;
    bool resizing_ = false;  // the control itself asked for it
    // Set up without a host, and nothing set since; done again once there is one, because defaults come from it.
    bool initPending_ = false;
    bool terminated_ = false;
};

}  // namespace qvx
