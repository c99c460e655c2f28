// Measures forms of many controls, beside as many of the system's own windows: how long it takes to open a form in a
// process with and without the library, and, for each control, to create, load, show and close many of it. A cost that
// grows faster than the number of controls shows in the cost of one.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/windows/host_form.h"

namespace qvx::bench {
namespace {

BOOL CALLBACK CountWindow(HWND, LPARAM counted) {
    ++*reinterpret_cast<int*>(counted);
    return TRUE;
}

void RequireWindows(HWND form, std::size_t atLeast, const char* peer) {
    int count = 0;
    EnumChildWindows(form, &CountWindow, reinterpret_cast<LPARAM>(&count));
    CheckSameWork(static_cast<std::size_t>(count) >= atLeast, peer, "showing windows");
}

// When this returns, the form is drawn.
void Finish(HostForm& form) {
    UpdateWindow(form.Window());
    HandleMessages();
    GdiFlush();
}

// ---- Controls ------------------------------------------------------------------------------------------------------

using Bytes = std::vector<BYTE>;

Bytes StoredState(REFCLSID id) {
    HostForm form;
    ControlSite site(form);
    Require(SUCCEEDED(site.Create(id)), "creating a control");
    Reference<IPersistStreamInit> state;
    Reference<IStream> stream;
    Require(SUCCEEDED(state.Query(site.Control())), "IPersistStreamInit");
    Require(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()) == S_OK, "a stream");
    Require(state->Save(stream.Get(), TRUE) == S_OK, "saving");
    STATSTG status{};
    stream->Stat(&status, STATFLAG_NONAME);
    Bytes bytes(static_cast<std::size_t>(status.cbSize.QuadPart));
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    state.Reset();
    site.Close();
    return bytes;
}

void Load(IUnknown* control, const Bytes& bytes) {
    Reference<IStream> stream;
    Reference<IPersistStreamInit> state;
    Require(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()) == S_OK, "a stream");
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    Require(SUCCEEDED(state.Query(control)) && state->Load(stream.Get()) == S_OK, "loading");
}

// A control with the state that a form has stored for it.
struct Stored {
    CLSID id;
    Bytes state;
};

Stored StoredControl(REFCLSID id) { return {id, StoredState(id)}; }

class ControlsForm {
  public:
    ~ControlsForm() { Close(); }
    HostForm& Form() { return form_; }
    void Create(const Stored& control) {
        sites_.push_back(std::make_unique<ControlSite>(form_));
        Require(SUCCEEDED(sites_.back()->Create(control.id)), "creating a control");
    }
    void LoadAt(std::size_t index, const Stored& control) { Load(sites_[index]->Control(), control.state); }
    void Show() {
        for (std::size_t i = 0; i < sites_.size(); ++i)
            Require(SUCCEEDED(sites_[i]->Show(HostForm::Place(static_cast<int>(i)))), "showing");
        Finish(form_);
    }
    void Close() {
        for (const auto& site : sites_) site->Close();
        sites_.clear();
        HandleMessages();
    }

  private:
    HostForm form_;
    std::vector<std::unique_ptr<ControlSite>> sites_;
};

// ---- Windows of the system -----------------------------------------------------------------------------------------

struct SystemWindow {
    const wchar_t* windowClass;
    DWORD style = 0;
    bool rounded = false;
};

class WindowsForm {
  public:
    HostForm& Form() { return form_; }
    void Create(const SystemWindow& kind) {
        const RECT place = HostForm::Place(static_cast<int>(windows_.size()));
        windows_.push_back(CreateWindowW(kind.windowClass, L"Text", WS_CHILD | WS_BORDER | kind.style, place.left,
                                         place.top, place.right - place.left, place.bottom - place.top, form_.Window(),
                                         nullptr, nullptr, nullptr));
        if (kind.rounded) SetWindowRgn(windows_.back(), CreateRoundRectRgn(0, 0, 90, 36, 12, 12), FALSE);
    }
    void Show() {
        for (const HWND window : windows_) ShowWindow(window, SW_SHOWNA);
        Finish(form_);
    }
    void Close() {
        for (const HWND window : windows_) DestroyWindow(window);
        windows_.clear();
        HandleMessages();
    }

  private:
    HostForm form_;
    std::vector<HWND> windows_;
};

// ---- Opening a form ------------------------------------------------------------------------------------------------

constexpr const char* controlsName = "Controls";
constexpr const char* windowsName = "System windows";

// What is next on the form, by the number of those before: a form for data entry, or text fields only.
template <class Kind>
using Choice = std::function<const Kind&(int index)>;

double OpenControls(const Choice<Stored>& choose, int count, bool cold) {
    const Stopwatch watch;
    const auto server = cold ? std::make_unique<LoadedServer>() : nullptr;
    ControlsForm form;
    for (int i = 0; i < count; ++i) {
        form.Create(choose(i));
        form.LoadAt(static_cast<std::size_t>(i), choose(i));
    }
    form.Show();
    const double seconds = watch.Seconds();
    RequireWindows(form.Form().Window(), static_cast<std::size_t>(count), controlsName);
    return seconds;
}

double OpenWindows(const Choice<SystemWindow>& choose, int count) {
    const Stopwatch watch;
    WindowsForm form;
    for (int i = 0; i < count; ++i) form.Create(choose(i));
    form.Show();
    const double seconds = watch.Seconds();
    RequireWindows(form.Form().Window(), static_cast<std::size_t>(count), windowsName);
    return seconds;
}

void OpenWorks(const HostOptions& options) {
    std::vector<Stored> stored;
    {
        const LoadedServer server;
        for (const CLSID& id : {CLSID_TextEdit, CLSID_Button, CLSID_RButton, CLSID_ComboGrid, CLSID_FlatBorder,
                                CLSID_CMenus, CLSID_Backup})
            stored.push_back(StoredControl(id));
    }
    const SystemWindow windows[] = {
        {L"EDIT"},   {L"BUTTON"}, {L"BUTTON", 0, true}, {L"EDIT", ES_MULTILINE | WS_HSCROLL | WS_VSCROLL},
        {L"STATIC"}, {L"STATIC"}, {L"STATIC"}};
    // Of ten: four fields, two buttons, and one of each of the others, the last two in turn.
    const auto kind = [](int index) {
        constexpr std::size_t kinds[] = {0, 1, 0, 3, 0, 2, 0, 1, 4, 5};
        return kinds[index % 10] + (index % 20 == 19 ? 1U : 0U);
    };
    const Choice<Stored> mixed = [&](int index) -> const Stored& { return stored[kind(index)]; };
    const Choice<Stored> fields = [&](int) -> const Stored& { return stored[0]; };
    const Choice<SystemWindow> mixedWindows = [&](int index) -> const SystemWindow& { return windows[kind(index)]; };
    const Choice<SystemWindow> fieldWindows = [&](int) -> const SystemWindow& { return windows[0]; };
    for (const int count : {1, 20, options.quick ? 60 : 200}) {
        for (const bool mix : {true, false}) {
            for (const bool cold : {true, false}) {
                const auto warm = cold ? nullptr : std::make_unique<LoadedServer>();
                std::vector<double> ours;
                std::vector<double> system;
                for (std::size_t run = 0; run < (count > 20 ? 5 : options.Samples()); ++run) {
                    ours.push_back(OpenControls(mix ? mixed : fields, count, cold));
                    system.push_back(OpenWindows(mix ? mixedWindows : fieldWindows, count));
                }
                const std::string work = std::string(mix ? "open_mix" : "open_fields") + (cold ? "_cold" : "_warm");
                Report(work.c_str(), static_cast<std::size_t>(count), controlsName, ours);
                Report(work.c_str(), static_cast<std::size_t>(count), windowsName, system);
            }
        }
    }
}

// ---- The steps of a form's life, for each control ------------------------------------------------------------------

struct Steps {
    std::vector<double> create, load, show, close;
};

Steps MeasureControls(REFCLSID id, int count, std::size_t runs) {
    const Stored control = StoredControl(id);
    Steps steps;
    for (std::size_t run = 0; run < runs; ++run) {
        ControlsForm form;
        steps.create.push_back(Sampled(1, [&] {
            for (int i = 0; i < count; ++i) form.Create(control);
        })[0]);
        steps.load.push_back(Sampled(1, [&] {
            for (int i = 0; i < count; ++i) form.LoadAt(static_cast<std::size_t>(i), control);
        })[0]);
        steps.show.push_back(Sampled(1, [&] { form.Show(); })[0]);
        RequireWindows(form.Form().Window(), static_cast<std::size_t>(count), controlsName);
        steps.close.push_back(Sampled(1, [&] { form.Close(); })[0]);
    }
    return steps;
}

// A window of the system has neither a state to load nor a step between creating and showing it.
Steps MeasureWindows(const SystemWindow& kind, int count, std::size_t runs) {
    Steps steps;
    for (std::size_t run = 0; run < runs; ++run) {
        WindowsForm form;
        steps.create.push_back(Sampled(1, [&] {
            for (int i = 0; i < count; ++i) form.Create(kind);
        })[0]);
        steps.show.push_back(Sampled(1, [&] { form.Show(); })[0]);
        RequireWindows(form.Form().Window(), static_cast<std::size_t>(count), windowsName);
        steps.close.push_back(Sampled(1, [&] { form.Close(); })[0]);
    }
    return steps;
}

void StepWorks(const HostOptions& options) {
    const LoadedServer server;
    struct Subject {
        const char* name;
        std::function<Steps(int count, std::size_t runs)> measure;
    };
    const auto controls = [](REFCLSID id) {
        return [&id](int count, std::size_t runs) { return MeasureControls(id, count, runs); };
    };
    const auto windows = [](const SystemWindow& kind) {
        return [kind](int count, std::size_t runs) { return MeasureWindows(kind, count, runs); };
    };
    const Subject subjects[] = {
        {"EDIT", windows({L"EDIT"})},
        {"EDIT with two scroll bars", windows({L"EDIT", ES_MULTILINE | WS_HSCROLL | WS_VSCROLL})},
        {"BUTTON", windows({L"BUTTON"})},
        {"BUTTON with a rounded region", windows({L"BUTTON", 0, true})},
        {"Button", controls(CLSID_Button)},
        {"RButton", controls(CLSID_RButton)},
        {"TextEdit", controls(CLSID_TextEdit)},
        {"ComboGrid", controls(CLSID_ComboGrid)},
        {"FlatBorder", controls(CLSID_FlatBorder)},
        {"CMenus", controls(CLSID_CMenus)},
        {"Backup", controls(CLSID_Backup)},
    };
    for (const Subject& subject : subjects) {
        if (!options.kind.empty() && options.kind != subject.name) continue;
        for (const int count : options.quick ? std::vector<int>{20} : std::vector<int>{20, 80}) {
            const Steps steps = subject.measure(count, 5);
            const auto report = [&](const char* work, const std::vector<double>& samples) {
                if (!samples.empty()) Report(work, static_cast<std::size_t>(count), subject.name, samples);
            };
            report("form_create", steps.create);
            report("form_load", steps.load);
            report("form_show", steps.show);
            report("form_close", steps.close);
        }
    }
}

}  // namespace
}  // namespace qvx::bench

int main(int argc, char** argv) {
    using namespace qvx::bench;
    const HostOptions options(argc, argv);
    Require(SUCCEEDED(OleInitialize(nullptr)), "OLE");
    if (options.Wants("open")) OpenWorks(options);
    if (options.Wants("steps")) StepWorks(options);
    std::puts("done");
    OleUninitialize();
}
