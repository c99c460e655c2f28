// The module's life: loaded by the first class identifier, gone when nothing of it is left.
#include "tests/control/module/apartment.h"
#include "tests/control/module/form_thread.h"
#include "tests/support/resource_counts.h"

namespace qvx::test {
namespace {

bool ModuleIsLoaded() { return GetModuleHandleW(L"Qvx.ocx") != nullptr; }

// Where the tests usually run, the system's own modules for printers and common controls leave handles and graphics
// objects behind each time they are loaded, so they stay.
class SystemModules {
  public:
    ~SystemModules() {
        for (const HMODULE module : modules_) FreeLibrary(module);
    }

  private:
    const HMODULE modules_[2] = {LoadLibraryW(L"winspool.drv"), LoadLibraryW(L"comctl32.dll")};
};

// How many graphics objects the system itself keeps of as many threads in which its edit control had the focus.
long KeptOfThreadsThatEdit(int count) {
    const long before = CountResources().gdiObjects;
    for (int i = 0; i < count; ++i) {
        ApartmentThread thread(COINIT_APARTMENTTHREADED, [] {
            const Container container(HostInMode(true));
            SetFocus(CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 80, 20, container.Window(), nullptr,
                                   nullptr, nullptr));
            // The display hands over its focus in a while.
            for (int wait = 0; wait < 6; ++wait, Sleep(5)) Pump();
        });
        EXPECT_TRUE(thread.Ends());
    }
    return std::max(0L, CountResources().gdiObjects - before);
}

// A hundred rounds in all, and neither windows nor graphics objects of the module stay.
TEST(Unload, CanBeDoneAHundredTimes) {
    const SystemModules stay;
    ASSERT_FALSE(ModuleIsLoaded());
    const auto rounds = [](int count) {
        for (int i = 0; i < count; ++i) {
            // A text box takes drops. Where the tests usually run, the system gives each apartment that does a place to
            // be called at, keeps it for ever, and has room for 63 of them in a process.
            const bool drops = i % 5 == 0;
            {
                ApartmentThread thread(COINIT_APARTMENTTHREADED, [drops] {
                    Form form;
                    for (const CLSID* id : EachControlId()) {
                        if (drops || *id != CLSID_TextEdit) form.UseControl(*id);
                    }
                    EXPECT_TRUE(ModuleIsLoaded());
                });
                ASSERT_TRUE(thread.Ends());
            }
            CoFreeUnusedLibraries();
            ASSERT_FALSE(ModuleIsLoaded());
        }
    };
    rounds(50);
    const ResourceCounts before = CountResources();
    rounds(50);
    const ResourceCounts after = CountResources();
    EXPECT_LE(after.windows, before.windows);
    KeptOfThreadsThatEdit(10);  // fills the system's caches
    EXPECT_LE(after.gdiObjects, before.gdiObjects + KeptOfThreadsThatEdit(50));
    EXPECT_LE(after.userObjects, before.userObjects);
}

// Of the system's kernel, open in this process: tried one by one, as the system's count is always 0 where the tests
// usually run.
long KernelHandles() {
    constexpr ULONG_PTR last = 0x4000;
    long count = 0;
    for (ULONG_PTR number = 4; number <= last; number += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) ? 1 : 0;
    }
    return count;
}

// What the module has made for a thread goes with the module, and not with the thread.
TEST(Unload, LeavesNothingInTheThreadThatUsedIt) {
    const SystemModules stay;
    ApartmentThread thread(COINIT_APARTMENTTHREADED, [] {
        Form form;
        // For a hundred rounds in all. Text boxes take drops, which leaves something of the system's behind.
        const auto rounds = [&](int count) {
            for (int i = 0; i < count; ++i) {
                for (const CLSID* id : EachControlId()) {
                    if (*id != CLSID_TextEdit) form.UseControl(*id);
                }
                CoFreeUnusedLibrariesEx(0, 0);
                ASSERT_FALSE(ModuleIsLoaded());
            }
        };
        rounds(50);
        const long handles = KernelHandles();
        const ResourceCounts before = CountResources();
        rounds(50);
        EXPECT_LE(KernelHandles(), handles);
        // Some of it is what the system keeps of each loading.
        EXPECT_LT(CountResources().heapBytes - before.heapBytes, 50 * 4096);
    });
    EXPECT_TRUE(thread.Ends());
}

}  // namespace
}  // namespace qvx::test
