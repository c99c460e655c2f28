// Measures forms of many controls: how long it takes to create, load, show and close them, beside as many of the
// system's own windows. A cost that grows faster than the number of controls shows in the cost of one.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Qvx.h"
#include "samples/cpp/control_site.h"

namespace {

using ClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

void Require(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

// Makes the library's classes known to this process, without the registry.
void OfferClasses(const wchar_t* server, const std::vector<CLSID>& ids) {
    const HMODULE module = LoadLibraryW(server);
    Require(module != nullptr, "loading Qvx.ocx");
    const auto getClassObject =
        reinterpret_cast<ClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    for (const CLSID& id : ids) {
        Reference<IUnknown> factory;
        Require(getClassObject(id, IID_IUnknown, reinterpret_cast<void**>(factory.Put())) == S_OK, "a class object");
        DWORD cookie = 0;
        Require(CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie) == S_OK,
                "offering a class");
    }
}

double Now() {
    LARGE_INTEGER count{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return 1000.0 * static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

class Form final : public Container {
  public:
    Form()
        : window_(CreateWindowW(L"STATIC", L"Form", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 1000, 900, nullptr,
                                nullptr, nullptr, nullptr)) {
        ShowWindow(window_, SW_SHOW);
        HandleMessages();
    }
    ~Form() { DestroyWindow(window_); }
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    HWND Window() override { return window_; }
    void FocusEntered(ControlSite&) override {}
    void MoveFocus(ControlSite&, bool) override {}

    static RECT Place(int index) {
        const int x = index % 10 * 95;
        const int y = index / 10 % 20 * 40;
        return {x, y, x + 90, y + 36};
    }

  private:
    HWND window_;
};

// The steps of a form's life, in milliseconds.
struct Times {
    double create = 0;
    double load = 0;
    double show = 0;
    double close = 0;
    int windows = 0;  // in the form, all levels
};

BOOL CALLBACK CountWindow(HWND, LPARAM counted) {
    ++*reinterpret_cast<int*>(counted);
    return TRUE;
}

int CountWindows(HWND form) {
    int count = 0;
    EnumChildWindows(form, &CountWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

template <typename Step>
double Timed(Step step) {
    const double start = Now();
    step();
    return Now() - start;
}

std::vector<BYTE> StoredState(REFCLSID id) {
    Form form;
    ControlSite site(form);
    Require(SUCCEEDED(site.Create(id)), "creating a control");
    Reference<IPersistStreamInit> state;
    Reference<IStream> stream;
    Require(SUCCEEDED(state.Query(site.Control())), "IPersistStreamInit");
    Require(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()) == S_OK, "a stream");
    Require(state->Save(stream.Get(), TRUE) == S_OK, "saving");
    STATSTG status{};
    stream->Stat(&status, STATFLAG_NONAME);
    std::vector<BYTE> bytes(static_cast<std::size_t>(status.cbSize.QuadPart));
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    state.Reset();
    site.Close();
    return bytes;
}

void Load(IUnknown* control, const std::vector<BYTE>& bytes) {
    Reference<IStream> stream;
    Reference<IPersistStreamInit> state;
    Require(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()) == S_OK, "a stream");
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    Require(SUCCEEDED(state.Query(control)) && state->Load(stream.Get()) == S_OK, "loading");
}

Times MeasureControls(REFCLSID id, int count) {
    const std::vector<BYTE> stored = StoredState(id);
    Form form;
    std::vector<std::unique_ptr<ControlSite>> sites;
    Times times;
    times.create = Timed([&] {
        for (int i = 0; i < count; ++i) {
            sites.push_back(std::make_unique<ControlSite>(form));
            Require(SUCCEEDED(sites.back()->Create(id)), "creating a control");
        }
    });
    times.load = Timed([&] {
        for (const auto& site : sites) Load(site->Control(), stored);
    });
    times.show = Timed([&] {
        for (int i = 0; i < count; ++i)
            Require(SUCCEEDED(sites[static_cast<std::size_t>(i)]->Show(Form::Place(i))), "showing");
        UpdateWindow(form.Window());
        HandleMessages();
    });
    times.windows = CountWindows(form.Window());
    times.close = Timed([&] {
        for (const auto& site : sites) site->Close();
        sites.clear();
        HandleMessages();
    });
    return times;
}

// A window of the system has neither a state to load nor a step between creating and showing it.
Times MeasureWindows(const wchar_t* windowClass, DWORD style, bool rounded, int count) {
    Form form;
    std::vector<HWND> windows;
    Times times;
    times.create = Timed([&] {
        for (int i = 0; i < count; ++i) {
            const RECT place = Form::Place(i);
            windows.push_back(CreateWindowW(windowClass, L"Text", WS_CHILD | WS_BORDER | style, place.left, place.top,
                                            place.right - place.left, place.bottom - place.top, form.Window(), nullptr,
                                            nullptr, nullptr));
            if (rounded) SetWindowRgn(windows.back(), CreateRoundRectRgn(0, 0, 90, 36, 12, 12), FALSE);
        }
    });
    times.show = Timed([&] {
        for (const HWND window : windows) ShowWindow(window, SW_SHOWNA);
        UpdateWindow(form.Window());
        HandleMessages();
    });
    times.windows = CountWindows(form.Window());
    times.close = Timed([&] {
        for (const HWND window : windows) DestroyWindow(window);
        HandleMessages();
    });
    return times;
}

struct Subject {
    const char* name;
    std::function<Times(int)> measure;
};

void Report(const Subject& subject, int count) {
    const Times times = subject.measure(count);
    const double all = times.create + times.load + times.show + times.close;
    std::printf("%-12s %6d %9.1f %9.1f %9.1f %9.1f %9.3f %8d\n", subject.name, count, times.create, times.load,
                times.show, times.close, all / count, times.windows);
    std::fflush(stdout);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    Require(argc == 2, "naming Qvx.ocx on the command line");
    Require(SUCCEEDED(OleInitialize(nullptr)), "OLE");
    OfferClasses(argv[1], {CLSID_Button, CLSID_RButton, CLSID_TextEdit, CLSID_ComboGrid, CLSID_FlatBorder, CLSID_CMenus,
                           CLSID_Backup});
    const auto controls = [](REFCLSID id) { return [&id](int count) { return MeasureControls(id, count); }; };
    const auto windows = [](const wchar_t* name, DWORD style = 0, bool rounded = false) {
        return [=](int count) { return MeasureWindows(name, style, rounded, count); };
    };
    const Subject subjects[] = {
        {"EDIT", windows(L"EDIT")},
        {"EDIT, bars", windows(L"EDIT", ES_MULTILINE | WS_HSCROLL | WS_VSCROLL)},
        {"BUTTON", windows(L"BUTTON")},
        {"BUTTON, cut", windows(L"BUTTON", 0, true)},
        {"Button", controls(CLSID_Button)},
        {"RButton", controls(CLSID_RButton)},
        {"TextEdit", controls(CLSID_TextEdit)},
        {"ComboGrid", controls(CLSID_ComboGrid)},
        {"FlatBorder", controls(CLSID_FlatBorder)},
        {"CMenus", controls(CLSID_CMenus)},
        {"Backup", controls(CLSID_Backup)},
    };
    std::printf("%-12s %6s %9s %9s %9s %9s %9s %8s\n", "ms", "count", "create", "load", "show", "close", "each",
                "windows");
    for (const Subject& subject : subjects) {
        subject.measure(10);  // fills the caches
        for (const int count : {50, 200, 800}) Report(subject, count);
    }
    OleUninitialize();
    return 0;
}
