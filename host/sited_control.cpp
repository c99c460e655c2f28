#include "host/sited_control.h"

#include <olectl.h>

#include "com/guard.h"
#include "com/variant.h"
#include "common/ascii.h"
#include "common/himetric.h"
#include "common/run_time_error.h"
#include "host/control_site_object.h"
#include "host/form_window.h"
#include "host/property_bag_object.h"

namespace qvx::host {

namespace {

SIZEL ToHimetric(const TwipsRect& bounds) {
    return {ScaleRounded(bounds.width, himetricPerInch, twipsPerInch),
            ScaleRounded(bounds.height, himetricPerInch, twipsPerInch)};
}

}  // namespace

// Is notified of every change of a property, by the control itself or from outside.
class SitedControl::ChangeSink final : public ComObject<IPropertyNotifySink> {
  public:
    explicit ChangeSink(SitedControl& control) : control_(&control) {}

    bool Connect(IUnknown* source) {
        ComPtr<IConnectionPointContainer> container;
        if (FAILED(source->QueryInterface(IID_IConnectionPointContainer, container.put_void()))) return false;
        return SUCCEEDED(container->FindConnectionPoint(IID_IPropertyNotifySink, point_.put())) &&
               SUCCEEDED(point_->Advise(this, &cookie_));
    }
    void Disconnect() {
        control_ = nullptr;
        if (point_ && cookie_) point_->Unadvise(cookie_);
        point_.reset();
        cookie_ = 0;
    }

    STDMETHODIMP OnChanged(DISPID) override {
        return Guard([&] {
            if (control_) control_->NoteChange();
        });
    }
    STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

  private:
    ~ChangeSink() override = default;
    SitedControl* control_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

SitedControl::SitedControl(HostForm& form, const Block& block, FormControl* container, bool fresh)
    : FormControl(form, block, container) {
    try {
        object_ = form.Classes().Create(ClassName());
        Load(block, fresh);
    } catch (const ComError& error) {
        Unload();
        const bool unknown = error.Result() == REGDB_E_CLASSNOTREG;
        throw FormFileError(block.lineNumber,
                            u"cannot create \"" + Name() + u"\": the class \"" + ClassName() + u"\" " +
                                (unknown ? u"is not registered (is its component file installed, or given with --ocx?)"
                                         : u"fails with " + FailureText(error.Result())));
    }
}

SitedControl::~SitedControl() { Unload(); }

void SitedControl::Unload() {
    if (changes_) changes_->Disconnect();
    if (events_) events_->Disconnect();
    if (inPlace_ && activated_) inPlace_->InPlaceDeactivate();
    if (ole_) {
        ole_->Close(OLECLOSE_NOSAVE);
        ole_->SetClientSite(nullptr);
    }
    if (site_) site_->Forget();
}

void SitedControl::Load(const Block& block, bool fresh) {
    ole_ = object_.As<IOleObject>();
    if (!ole_) throw ComError(E_NOINTERFACE);
    control_ = object_.As<IOleControl>();
    inPlace_ = object_.As<IOleInPlaceObject>();
    active_ = object_.As<IOleInPlaceActiveObject>();
    persist_ = object_.As<IPersistPropertyBag>();
    members_ = object_.As<IDispatch>();
    site_ = MakeObject<Site>(*this, Form());
    ole_->GetMiscStatus(DVASPECT_CONTENT, &status_);
    // Some controls declare that they need their site before they read their properties.
    const bool siteFirst = (status_ & OLEMISC_SETCLIENTSITEFIRST) != 0;
    if (siteFirst) Check(ole_->SetClientSite(site_.get()));
    SIZEL extent = ToHimetric(Bounds());
    ole_->SetExtent(DVASPECT_CONTENT, &extent);
    // Changes while the control is loaded are not the user's.
    if (control_) control_->FreezeEvents(TRUE);
    LoadProperties(block, fresh);
    if (!siteFirst) Check(ole_->SetClientSite(site_.get()));
    ole_->SetHostNames(L"qvxhost", Wide(Form().Look().caption));
    events_ = MakeObject<EventSink>(
        [this](const Text& event, const std::vector<VARIANT*>& arguments) { Form().Fire(*this, event, arguments); });
    events_->Connect(object_.get());
    Activate();
    if (control_) control_->FreezeEvents(FALSE);
    if (Form().Designer()) WatchChanges();
}

void SitedControl::WatchChanges() {
    changes_ = MakeObject<ChangeSink>(*this);
    if (!changes_->Connect(object_.get())) changes_.reset();
}

void SitedControl::LoadProperties(const Block& block, bool fresh) {
    if (fresh) {
        if (persist_) {
            Check(persist_->InitNew());
        } else if (const auto stream = object_.As<IPersistStreamInit>()) {
            Check(stream->InitNew());
        }
        return;
    }
    if (persist_) {
        const Lent<ReadingBag> bag(block, Form().Folder(), Form().Font().Value(), Form().Pictures());
        Check(persist_->Load(bag.get(), nullptr));
        known_ = bag->Asked();
        return;
    }
    // A control without property bags starts with its defaults, and gets the file's properties through its automation
    // members.
    if (const auto stream = object_.As<IPersistStreamInit>()) Check(stream->InitNew());
    for (const Entry& entry : block.entries) {
        if (entry.kind != Entry::Kind::property || !entry.value || !members_) continue;
        Text name = entry.name;
        wchar_t* spelled = WideBuffer(name);
        DISPID id = DISPID_UNKNOWN;
        if (FAILED(members_->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id))) continue;
        Variant value = ToVariant(*entry.value);
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{value.ptr(), &put, 1, 1};
        members_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr,
                         nullptr);
    }
}

HRESULT SitedControl::DoVerb(LONG verb, const MSG* message) {
    const RECT bounds = PixelBounds();
    MSG copy{};
    if (message) copy = *message;
    return ole_->DoVerb(verb, message ? &copy : nullptr, site_.get(), 0, Form().ParentWindow(*this), &bounds);
}

void SitedControl::Activate() {
    const bool nothingToShow = (status_ & OLEMISC_INVISIBLEATRUNTIME) && !Form().DesignMode();
    if (nothingToShow) return;
    Check(DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr));
    activated_ = true;
    if (!ShownAs(Visible())) ApplyVisible(false);
}

HWND SitedControl::Window() const {
    HWND window = nullptr;
    if (!activated_ || !inPlace_ || FAILED(inPlace_->GetWindow(&window))) return nullptr;
    return window;
}

void SitedControl::Focus(const MSG* message) {
    if (!activated_) return;
    DoVerb(OLEIVERB_UIACTIVATE, message);
    const HWND window = Window();
    const HWND focus = GetFocus();
    if (window && focus != window && !IsChild(window, focus)) SetFocus(window);
    Form().Keyboard().FollowFocus();
}

bool SitedControl::AcceptsFocus() const {
    const HWND window = Window();
    return window && IsWindowVisible(window) && IsWindowEnabled(window) && !(status_ & OLEMISC_NOUIACTIVATE);
}

bool SitedControl::Enabled() const {
    Variant value;
    DISPPARAMS none{};
    if (members_ && SUCCEEDED(members_->Invoke(DISPID_ENABLED, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                               &none, value.put(), nullptr, nullptr))) {
        return value.ToBool().value_or(true);
    }
    const HWND window = Window();
    return !window || IsWindowEnabled(window);
}

void SitedControl::SetEnabled(bool enabled) {
    Variant value(enabled);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{value.ptr(), &put, 1, 1};
    if (members_ && SUCCEEDED(members_->Invoke(DISPID_ENABLED, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                                               &parameters, nullptr, nullptr, nullptr))) {
        return;
    }
    if (const HWND window = Window()) EnableWindow(window, enabled);
}

bool SitedControl::TranslateKey(MSG& message) {
    if (!active_) return false;
    const ComPtr<IOleInPlaceActiveObject> active = active_;  // the key may close the form
    return active->TranslateAccelerator(&message) == S_OK;
}

CONTROLINFO SitedControl::Info() const {
    CONTROLINFO info{};
    info.cb = sizeof info;
    if (!control_ || FAILED(control_->GetControlInfo(&info))) info = {};
    return info;
}

std::vector<char16_t> SitedControl::AccessKeys() const {
    const CONTROLINFO info = Info();
    std::vector<char16_t> keys;
    if (!info.hAccel || !info.cAccel) return keys;
    std::vector<ACCEL> table(info.cAccel);
    const int count = CopyAcceleratorTableW(info.hAccel, table.data(), static_cast<int>(table.size()));
    for (int i = 0; i < count; ++i) {
        const ACCEL& entry = table[static_cast<std::size_t>(i)];
        if (!(entry.fVirt & FALT)) continue;
        // A virtual key of a letter is its capital.
        keys.push_back(LowerAscii(entry.key));
    }
    return keys;
}

void SitedControl::OnAccessKey(MSG& message) {
    if (control_) control_->OnMnemonic(&message);
}

bool SitedControl::TakesReturn() const { return (Info().dwFlags & CTRLINFO_EATS_RETURN) != 0; }

void SitedControl::OnLeft() {
    if (inPlace_ && activated_) inPlace_->UIDeactivate();
}

void SitedControl::OnAmbientChanged(DISPID property) {
    if (control_) control_->OnAmbientPropertyChange(property);
}

void SitedControl::ApplyBounds(const RECT& pixels) {
    SIZEL extent = ToHimetric(Bounds());
    ole_->SetExtent(DVASPECT_CONTENT, &extent);
    if (inPlace_ && activated_) inPlace_->SetObjectRects(&pixels, &pixels);
}

void SitedControl::ApplyVisible(bool visible) {
    if (activated_) DoVerb(visible ? OLEIVERB_SHOW : OLEIVERB_HIDE, nullptr);
    if (const HWND window = Window()) ShowWindow(window, visible ? SW_SHOWNA : SW_HIDE);
}

void SitedControl::SaveOwn(SavedProperties& saved) {
    if (!persist_) return;
    const Lent<WritingBag> bag(saved, Form().Pictures());
    const HRESULT result = persist_->Save(bag.get(), FALSE, TRUE);
    if (FAILED(result)) {
        throw RunTimeError(errors::invalidPropertyValue, u"cannot save \"" + Title() + u"\": " + FailureText(result));
    }
}

std::vector<CLSID> SitedControl::Pages() const {
    const auto specify = object_.As<ISpecifyPropertyPages>();
    CAUUID pages{};
    if (!specify || FAILED(specify->GetPages(&pages)) || !pages.pElems) return {};
    std::vector<CLSID> ids(pages.pElems, pages.pElems + pages.cElems);
    CoTaskMemFree(pages.pElems);
    return ids;
}

}  // namespace qvx::host
