// The library's way into a process and out of it, with one object in between, beside a library of the system.
#include "bench/windows/host_form.h"

namespace qvx::bench {
namespace {

// The script engine, whose library is about as large.
constexpr CLSID scriptEngine{0xB54F3741, 0x5B07, 0x11CF, {0xA4, 0xB0, 0x00, 0xAA, 0x00, 0x4A, 0x55, 0xE8}};

// Creates an object of the library that is loaded for it alone.
void ComeAndGo(const std::wstring& path, REFCLSID id) {
    const HMODULE module = LoadLibraryW(path.c_str());
    Require(module != nullptr, "loading a library");
    {
        Reference<IClassFactory> factory;
        Require(Export<ClassObject>(module, "DllGetClassObject")(id, IID_IClassFactory,
                                                                 reinterpret_cast<void**>(factory.Put())) == S_OK,
                "DllGetClassObject");
        Reference<IUnknown> object;
        Require(factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(object.Put())) == S_OK,
                "creating an object");
    }
    // Some of the system's libraries always refuse, and can be unloaded nevertheless.
    Require(Export<CanUnload>(module, "DllCanUnloadNow")() == S_OK || id == scriptEngine, "releasing everything");
    FreeLibrary(module);
}

// The memory that the process has asked for, over its whole address space.
std::size_t CommittedBytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT) bytes += region.RegionSize;
    }
    return bytes;
}

void Measure(const char* work, const char* peer, const std::wstring& path, const wchar_t* module, REFCLSID id,
             std::size_t runs) {
    for (int run = 0; run < 20; ++run) ComeAndGo(path, id);
    CheckSameWork(GetModuleHandleW(module) == nullptr, peer, work);
    const std::size_t before = CommittedBytes();
    const std::vector<double> samples = Sampled(runs, [&] { ComeAndGo(path, id); });
    const std::size_t after = CommittedBytes();
    // The heap may have grown by a page or two for reasons of its own, but not with every run.
    constexpr std::size_t allowed = 64 * 1024;
    CheckSameWork(after <= before + allowed, peer, "loading and unloading without growing");
    Report(work, 1, peer, samples);
}

void MeasureBoth(const char* work, std::size_t runs) {
    Measure(work, "Qvx.ocx", ServerPath(), L"Qvx.ocx", CLSID_ComboGrid, runs);
    Measure(work, "vbscript.dll", L"vbscript.dll", L"vbscript.dll", scriptEngine, runs);
}

}  // namespace

void RunLibraryWorks(const HostOptions& options) {
    const std::size_t runs = options.quick ? 40 : 100;
    // In a process without windows, the system's libraries for them come and go with this one.
    MeasureBoth("library_bare", runs);
    std::vector<HMODULE> used;
    for (const wchar_t* name : {L"comctl32.dll", L"comdlg32.dll", L"shell32.dll", L"oleacc.dll", L"msimg32.dll",
                                L"version.dll", L"advapi32.dll"})
        used.push_back(LoadLibraryW(name));
    MeasureBoth("library", runs);
    for (const HMODULE module : used) FreeLibrary(module);
}

}  // namespace qvx::bench
