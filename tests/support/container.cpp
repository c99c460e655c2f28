#include "tests/support/container.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include <algorithm>

#include "com/font_object.h"
#include "com/guard.h"
#include "com/wide_text.h"

namespace qvx::test {

// --- MemoryBag ---

STDMETHODIMP MemoryBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog*) {
    const Variant* found = Find(name);
    if (!found) return E_INVALIDARG;
    const VARTYPE wanted = value->vt;
    Variant copy(*found);
    if (wanted != VT_EMPTY && wanted != copy.Type() && copy.Type() != VT_DISPATCH && copy.Type() != VT_UNKNOWN) {
        const auto converted = copy.To(wanted);
        if (!converted) return DISP_E_TYPEMISMATCH;
        copy = *converted;
    }
    *value = copy.detach();
    return S_OK;
}

STDMETHODIMP MemoryBag::Write(LPCOLESTR name, VARIANT* value) {
    Set(name, Variant(*value));
    return S_OK;
}

const Variant* MemoryBag::Find(const std::wstring& name) const {
    for (const auto& [key, value] : entries) {
        if (lstrcmpiW(key.c_str(), name.c_str()) == 0) return &value;
    }
    return nullptr;
}

void MemoryBag::Set(const std::wstring& name, Variant value) {
    if (auto* kept = const_cast<Variant*>(Find(name))) {
        *kept = std::move(value);
    } else {
        entries.emplace_back(name, std::move(value));
    }
}

Text MemoryBag::Print() const {
    Text lines;
    for (const auto& [key, value] : entries) {
        lines += Text(FromWide(key)) + u"=";
        if (const auto font = value.ToObject<IFont>()) {
            const FontSpec look = ReadFontObject(font.get());
            lines += look.face + u" " + Variant(look.points).ToText().value_or(u"?");
        } else {
            lines += value.ToText().value_or(u"?");
        }
        lines += u"\n";
    }
    return lines;
}

// --- EventRecorder ---

size_t EventRecorder::Count(DISPID id) const { return static_cast<size_t>(std::ranges::count(events, id, &Event::id)); }

STDMETHODIMP EventRecorder::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                   UINT*) {
    return Guard([&] {
        Event event{member, {}};
        for (UINT i = arguments->cArgs; i-- > 0;) event.arguments.emplace_back(arguments->rgvarg[i]);
        events.push_back(std::move(event));
        if (onEvent) {
            const auto handler = onEvent;  // a handler may replace itself
            handler(member, *arguments);
        }
    });
}

STDMETHODIMP PropertyListener::OnChanged(DISPID property) {
    changed.push_back(property);
    return S_OK;
}
STDMETHODIMP PropertyListener::OnRequestEdit(DISPID) { return S_OK; }

// --- Connections ---

Connection::Connection(IUnknown* control, REFIID iid, IUnknown* sink) {
    const auto container = Query<IConnectionPointContainer>(control);
    EXPECT_TRUE(container);
    EXPECT_EQ(S_OK, container->FindConnectionPoint(iid, point_.put()));
    EXPECT_EQ(S_OK, point_->Advise(sink, &cookie_));
}

void Connection::Disconnect() {
    if (cookie_) point_->Unadvise(std::exchange(cookie_, 0));
}

IID EventsOf(IUnknown* control) {
    GUID id = GUID_NULL;
    const auto info = Query<IProvideClassInfo2>(control);
    EXPECT_TRUE(info);
    EXPECT_EQ(S_OK, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &id));
    return id;
}

// --- The site and its frame ---

using NoteCall = std::function<HRESULT(const char*)>;

class Frame final : public ComObject<IOleInPlaceFrame> {
  public:
    Frame(HWND window, NoteCall note) : window_(window), note_(std::move(note)) {}
    ComPtr<IOleInPlaceActiveObject> active;

    STDMETHODIMP GetWindow(HWND* window) override {
        *window = window_;
        return S_OK;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override {
        active = ComPtr<IOleInPlaceActiveObject>(object);
        return note_(object ? "SetActiveObject" : "SetActiveObject(none)");
    }
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL enable) override {
        return note_(enable ? "EnableModeless(True)" : "EnableModeless(False)");
    }
    STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  private:
    ~Frame() override = default;
    HWND window_;
    NoteCall note_;
};

class Site final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleControlSite, UntypedDispatch, IAdviseSink> {
  public:
    Site(HWND window, Container::Options options) : options_(std::move(options)), window_(window) {
        frame_ = MakeObject<Frame>(window, [this](const char* call) { return Note(call); });
    }

    std::vector<std::string> calls;
    Container::Options& Settings() { return options_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IOleControlSite && !options_.controlSite) return E_NOINTERFACE;
        if (iid == IID_IDispatch && options_.ambients.empty()) return E_NOINTERFACE;
        if (iid == IID_IOleWindow) return QueryInterface(IID_IOleInPlaceSite, object);
        return ComObject::QueryInterface(iid, object);
    }

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return Note("SaveObject"); }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP ShowObject() override { return Note("ShowObject"); }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    // IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND* window) override {
        *window = window_;
        return S_OK;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return Note("OnInPlaceActivate"); }
    STDMETHODIMP OnUIActivate() override { return Note("OnUIActivate"); }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO info) override {
        *frame = nullptr;
        *window = nullptr;
        if (const HRESULT answer = Answer("GetWindowContext"); FAILED(answer)) return answer;
        *frame = frame_.copy();
        *position = options_.bounds;
        GetClientRect(window_, clip);
        info->fMDIApp = FALSE;
        info->hwndFrame = window_;
        info->haccel = nullptr;
        info->cAccelEntries = 0;
        return S_OK;
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return Note("OnUIDeactivate"); }
    STDMETHODIMP OnInPlaceDeactivate() override { return Note("OnInPlaceDeactivate"); }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }
    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return Note("OnControlInfoChanged"); }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetExtendedControl(IDispatch** out) override {
        *out = options_.extended.copy();
        return *out ? S_OK : E_NOTIMPL;
    }
    STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override {
        return options_.usesKey && options_.usesKey(*message, modifiers) ? S_OK : S_FALSE;
    }
    STDMETHODIMP OnFocus(BOOL got) override { return Note(got ? "OnFocus(True)" : "OnFocus(False)"); }
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
    // IDispatch: the ambient properties
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        const auto found = options_.ambients.find(member);
        if (found == options_.ambients.end()) return DISP_E_MEMBERNOTFOUND;
        *result = Variant(found->second).detach();
        return S_OK;
    }
    // IAdviseSink
    STDMETHODIMP_(void) OnDataChange(FORMATETC*, STGMEDIUM*) override { calls.push_back("OnDataChange"); }
    STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override { calls.push_back("OnViewChange"); }
    STDMETHODIMP_(void) OnRename(IMoniker*) override {}
    STDMETHODIMP_(void) OnSave() override { calls.push_back("OnSave"); }
    STDMETHODIMP_(void) OnClose() override { calls.push_back("OnClose"); }

  private:
    ~Site() override = default;
    HRESULT Answer(const char* call) {
        // A copy, since the answer may change the settings.
        const auto answer = options_.answer;
        return answer ? answer(call) : S_OK;
    }
    HRESULT Note(const char* call) {
        calls.emplace_back(call);
        return Answer(call);
    }

    Container::Options options_;
    HWND window_;
    ComPtr<Frame> frame_;
};

// --- Container ---

Container::Container(Options options) {
    static const bool registered = [] {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        windowClass.lpszClassName = L"TestContainer";
        return RegisterClassW(&windowClass) != 0;
    }();
    EXPECT_TRUE(registered);
    window_ = CreateWindowW(L"TestContainer", L"Bare container", WS_OVERLAPPEDWINDOW, 20, 20, 500, 400, nullptr,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
    EXPECT_TRUE(window_);
    ShowWindow(window_, SW_SHOW);
    site_ = MakeObject<Site>(window_, std::move(options));
}

Container::~Container() {
    Close();
    DestroyWindow(window_);
}

HRESULT Container::PutIn(const ComPtr<IUnknown>& control) {
    control_ = control;
    return control_.As<IOleObject>()->SetClientSite(site_.get());
}

void Container::Place(const ComPtr<IUnknown>& control, const std::function<void(IUnknown*)>& prepare) {
    const auto object = control.As<IOleObject>();
    ASSERT_TRUE(object);
    DWORD misc = 0;
    ASSERT_EQ(S_OK, object->GetMiscStatus(DVASPECT_CONTENT, &misc));
    EXPECT_TRUE(misc & OLEMISC_SETCLIENTSITEFIRST);
    ASSERT_EQ(S_OK, PutIn(control));
    if (prepare) {
        prepare(control_.get());
    } else {
        ASSERT_EQ(S_OK, control_.As<IPersistStreamInit>()->InitNew());
    }
}

HRESULT Container::DoVerb(LONG verb) {
    return control_.As<IOleObject>()->DoVerb(verb, nullptr, site_.get(), 0, window_, &site_->Settings().bounds);
}

void Container::MoveTo(const RECT& bounds) {
    site_->Settings().bounds = bounds;
    RECT clip{};
    GetClientRect(window_, &clip);
    EXPECT_EQ(S_OK, control_.As<IOleInPlaceObject>()->SetObjectRects(&bounds, &clip));
}

Container::Options HostInMode(bool userMode) {
    Container::Options options;
    options.ambients = {{DISPID_AMBIENT_USERMODE, Variant(userMode)}, {DISPID_AMBIENT_DISPLAYNAME, Variant(u"Thing1")}};
    return options;
}

void Container::Close() {
    if (!control_) return;
    const auto object = control_.As<IOleObject>();
    EXPECT_EQ(S_OK, object->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ(S_OK, object->SetClientSite(nullptr));
    control_.reset();
}

HWND Container::ControlWindow() const {
    HWND window = nullptr;
    if (control_) control_.As<IOleInPlaceObject>()->GetWindow(&window);
    return window;
}

void Container::SetAmbient(DISPID property, Variant value) {
    site_->Settings().ambients[property] = std::move(value);
    if (control_) {
        EXPECT_EQ(S_OK, control_.As<IOleControl>()->OnAmbientPropertyChange(property));
    }
}

std::vector<std::string>& Container::Calls() { return site_->calls; }

void Pump(int rounds) {
    MSG message;
    for (int i = 0; i < rounds && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// --- Streams and bags ---

ComPtr<IStream> StreamOf(const std::vector<std::uint8_t>& bytes) {
    ComPtr<IStream> stream;
    EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    ULONG written = 0;
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    EXPECT_EQ(bytes.size(), written);
    stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    return stream;
}

std::vector<std::uint8_t> BytesOf(IStream* stream) {
    STATSTG state{};
    EXPECT_EQ(S_OK, stream->Stat(&state, STATFLAG_NONAME));
    std::vector<std::uint8_t> bytes(static_cast<size_t>(state.cbSize.QuadPart));
    EXPECT_EQ(S_OK, stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    ULONG got = 0;
    stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got);
    EXPECT_EQ(bytes.size(), got);
    return bytes;
}

std::vector<std::uint8_t> SaveToStream(IUnknown* control) {
    const auto stream = StreamOf({});
    EXPECT_EQ(S_OK, Query<IPersistStreamInit>(control)->Save(stream.get(), TRUE));
    return BytesOf(stream.get());
}

HRESULT LoadFromStream(IUnknown* control, const std::vector<std::uint8_t>& bytes) {
    return Query<IPersistStreamInit>(control)->Load(StreamOf(bytes).get());
}

ComPtr<MemoryBag> SaveToBag(IUnknown* control) {
    auto bag = MakeObject<MemoryBag>();
    EXPECT_EQ(S_OK, Query<IPersistPropertyBag>(control)->Save(bag.get(), TRUE, FALSE));
    return bag;
}

HRESULT LoadFromBag(IUnknown* control, IPropertyBag* bag) {
    return Query<IPersistPropertyBag>(control)->Load(bag, nullptr);
}

}  // namespace qvx::test
