// The control kit: everything that hosts expect of any control. tests/control/lamp_control.h shows a whole control that
// is written with it.
//
// The control's window exists from the moment it is first needed; while the control is not active in place, it is
// hidden in a window of the library. The functions that a control overrides are called on the host's single thread.
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
#include "kit/control_extent.h"
#include "kit/host_services.h"
#include "kit/in_place_activation.h"
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
                    public IDataObject,
                    public ISupportErrorInfo {
  public:
    ControlBase(const ControlBase&) = delete;
    ControlBase& operator=(const ControlBase&) = delete;

    const HostServices& Host() const { return host_; }
    // Returns the persisted properties in their order; there is one table for all controls of a class.
    virtual const PropertyTable& Properties() = 0;

    // Returns the control's window and creates it if needed; null only when the system refuses one.
    HWND EnsureWindow(HWND parent = nullptr);
    // Returns the window if there is one, else null.
    HWND WindowHandle() const;
    // Return the values of the hWnd and hDC properties; both create the window if needed and are 0 without one.
    long WindowNumber();
    long DeviceContextNumber();
    // Returns the size of the control in pixels of its window.
    Size PixelSize() const;
    // Whether the control runs, as opposed to being designed.
    bool UserMode() const { return host_.UserMode(); }
    // Gives a new control its initial state. Without a host this is repeated once there is one to take defaults from.
    void InitialiseNew();
    // Keeps the control alive for the length of a scope, for code that continues after a call to the host.
    ComPtr<IUnknown> KeepAlive() { return ComPtr<IUnknown>(Unknown()); }

    // Follows the keyboard focus, which the control's own window messages and its inner windows report: compares it
    // with the state known so far and calls OnFocus on a change. `moving` is the window that takes the focus, null when
    // the focus goes elsewhere.
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
    // IDataObject
    STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override;
    STDMETHODIMP GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
    STDMETHODIMP QueryGetData(FORMATETC* format) override;
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) override;
    STDMETHODIMP SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
    STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
    STDMETHODIMP DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) override;
    STDMETHODIMP DUnadvise(DWORD connection) override;
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA** advises) override;
    // ISupportErrorInfo
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

  protected:
    // `interfaceId` identifies the dual interface.
    ControlBase(const ControlClass& controlClass, const IID& interfaceId);
    virtual ~ControlBase();

    // --- What a control calls. ---

    // Marks the control as changed, notifies listeners, and repaints it: the last call of a setter, with the property's
    // name as the type library spells it. Does nothing while properties are being read.
    void Changed(TextView name);
    // Asks for the control to be repainted, whether it is active or not.
    void Invalidate();
    // Calls the host's handlers of the event, named as the type library spells it. Does nothing while the host has
    // frozen events, nor while properties are being read, because a form that is only half loaded has no handlers yet.
    // Throws nothing; what handlers write into by-reference arguments is in the caller's variables afterwards.
    void Fire(TextView event, EventArguments arguments = {});
    // Whether Fire would reach any handler: for events that are raised thousands of times.
    bool HasListeners() const { return RaisesEvents() && connections_.HasListeners(); }
    bool RaisesEvents() const { return frozen_ == 0 && loading_ == 0; }
    // Notifies the host that AccessKeys returns something else than before.
    void AccessKeysChanged();
    // Requests another size, in pixels, for a control that knows better than its host how large it has to be. An active
    // control's host is asked to move it; if the host does nothing, and for an inactive control, the size is simply
    // set. OnResize may call it, and is called again with the new size.
    void RequestPixelSize(Size pixels);
    // Whether the control is active in place: its window is in the window of the host.
    bool InPlaceActive() const { return inPlace_.Active(); }
    // Whether the host has finished setting the control up: by initialising it, by loading it, or by activating it
    // without either.
    bool IsSetUp() const { return setUp_; }
    // Whether the keyboard focus is in the control's window or inside it.
    bool HasFocus() const { return focused_; }
    // Takes the keyboard focus; a control that is active in place becomes user-interface active first.
    void TakeFocus();
    // Asks the host to move the focus to the next or the previous control, as the Tab key does; false when it does not.
    bool MoveFocusOn(bool backwards);

    // Surrounds a modal dialog that the control opens: the host disables its own other windows, and the control stays
    // alive whatever happens meanwhile.
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

    // Returns the size of a new control, in pixels at 96 dots per inch.
    virtual Size DefaultPixelSize() const { return {81, 33}; }
    // Sets every property of the table to its default, for a new control that is not loaded.
    virtual void InitProperties();
    // Called before the row with that key is read. The rows before it have already been applied.
    virtual void OnBeforeRead(TextView) {}
    // Whether a stored value that the control refuses ends the loading, with the error returned to the host; otherwise
    // the value is treated as absent.
    virtual bool ReportsRefusedValues() const { return false; }
    // Called after all rows have been read.
    virtual void OnAfterRead() {}
    // Creates the inner windows in the control's window. Called again if the host destroyed the first window, and after
    // OnWindowGoing when UserMode has changed.
    virtual void OnWindowCreated(HWND) {}
    // Destroys the inner windows; the control's window is destroyed next, or stays.
    virtual void OnWindowGoing() {}
    // Handles messages of the control's own window before the kit does, which continues for nullopt. The kit handles
    // WM_PAINT unless this function answers it.
    virtual std::optional<LRESULT> OnWindowMessage(UINT, WPARAM, LPARAM) { return std::nullopt; }
    // Whether inner windows cover all of the control's own window, which then has nothing to paint.
    virtual bool IsCovered() { return false; }
    // Returns the shape that a window of that size is cut to, in its own pixels; null for the whole window.
    virtual UniqueRegion WindowShape(Size) const { return {}; }
    // Receives the size in pixels; also called once when the window is created, and before a control without a window
    // is drawn.
    virtual void OnResize(Size) {}
    // Called every time the control becomes visible in its place.
    virtual void OnShow() {}
    // Receives the ambient property that changed; DISPID_UNKNOWN when several did.
    virtual void OnAmbientChange(DISPID) {}
    // Called after the keyboard focus has entered the control (true) or left it (false).
    virtual void OnFocus(bool) {}
    // Returns the window that gets the focus when the host gives it to the control.
    virtual HWND FocusWindow() { return WindowHandle(); }
    // Draws the whole picture of the control, from (0, 0) to its size: for painting, printing and the pictures of
    // designers.
    virtual void DrawControl(Surface& surface, const Rect& area) = 0;
    // Returns the characters that press the control together with Alt.
    virtual Text AccessKeys() { return {}; }
    // Receives an access key (in lower case), or 13 or 27 when the host uses the control as its default or cancel
    // button.
    virtual void OnAccessKey(int) {}
    // Whether the control uses a key itself, before the host uses it to move the focus. Such keys arrive as usual
    // window messages.
    virtual bool WantsKey(const MSG&) { return false; }
    // Returns the class identifiers of the control's property pages.
    virtual std::span<const CLSID> PropertyPages() const { return {}; }
    // Called last, before the object is destroyed; host and window still exist.
    virtual void OnTerminate() {}

    // --- For Control<I>. ---
    HRESULT QueryKitInterface(REFIID iid, void** object);
    ULONG AddReference() { return references_.Add(); }
    ULONG ReleaseReference();
    // Returns the control's identity, without a reference of its own.
    virtual IUnknown* Unknown() = 0;

  private:
    friend class ControlWindow;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint(HWND window);
    void OnWindowGone();

    void Activate(bool withUi);
    void ActivateUi();
    void Deactivate();
    void MoveWindowTo(const RECT& position, const RECT& clip);
    // Cuts the window to the control's shape, within the part of it that the container shows.
    void CutWindow(Size size);
    // Gives a control without a size its default size.
    void EnsureSize();
    void SetPixelSize(Size pixels);
    void TakeExtent(const SIZEL& extent);
    void ViewChanged();
    // Sends the present picture to containers that keep one, with ADVF_DATAONSTOP for the last time.
    void DataChanged(DWORD flags = 0);
    void Terminate();

    // Recreates the inner windows if the host has changed between designing and running while the control has a window.
    void FollowUserMode();

    class Loading;
    void ReadFrom(const PropertySource& source);
    // The properties that differ from their defaults.
    std::vector<std::pair<Text, PropertyValue>> ChangedProperties();
    void FinishLoading();
    void LoadStream(IStream* stream);
    std::vector<std::uint8_t> BytesForStream();

    const ControlClass& class_;
    const IID& interfaceId_;
    ReferenceCount references_;
    HostServices host_;
    ConnectionPoints connections_;
    std::unique_ptr<ControlWindow> window_;
    InPlaceActivation inPlace_;
    ComPtr<IOleAdviseHolder> advises_;
    ComPtr<IDataAdviseHolder> dataAdvises_;
    ComPtr<IAdviseSink> viewSink_;
    DWORD viewAspects_ = 0;
    DWORD viewFlags_ = 0;
    HACCEL accelerators_ = nullptr;
    ComPtr<IStorage> storage_;
    bool savedInPlace_ = false;  // the last Save went to the control's own storage
    ControlExtent extent_;
    int frozen_ = 0;
    std::optional<Rect> clip_;  // what the container shows, in pixels of the window; nothing if it shows all
    bool cut_ = false;          // the window has a region
    int loading_ = 0;
    bool setUp_ = false;
    bool windowMode_ = false;  // the UserMode for which the inner windows were created
    bool focused_ = false;
    bool dirty_ = false;
    bool resizing_ = false;  // the control itself has requested it
    // Initialised without a host, and no property has been set since; repeated once there is a host, because defaults
    // come from it.
    bool initPending_ = false;
    bool terminated_ = false;
};

}  // namespace qvx
