// Threads with COM, as programs have them that do more than one thing at a time.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <ole2.h>

#include <functional>

#include "com/pointer.h"
#include "tests/support/container.h"

namespace qvx::test {

// A thread that initialises COM, does its work and ends.
class ApartmentThread {
  public:
    ApartmentThread(COINIT kind, std::function<void()> work) : kind_(kind), work_(std::move(work)) {
        thread_ = CreateThread(nullptr, 0, Run, this, 0, nullptr);
    }
    // A thread that hangs holds on to this object, and nothing can go on: the program ends.
    ~ApartmentThread() {
        if (!Ends()) {
            std::fprintf(stderr, "A thread does not end.\n");
            TerminateProcess(GetCurrentProcess(), 3);
        }
        CloseHandle(thread_);
    }
    ApartmentThread(const ApartmentThread&) = delete;
    ApartmentThread& operator=(const ApartmentThread&) = delete;

    // Handles the messages of this thread meanwhile: other apartments may be waiting for its objects. The limit is for
    // hangs.
    bool Ends() {
        const ULONGLONG limit = GetTickCount64() + 60000;
        while (GetTickCount64() < limit) {
            if (MsgWaitForMultipleObjects(1, &thread_, FALSE, 1000, QS_ALLINPUT) == WAIT_OBJECT_0) return true;
            Pump();
        }
        return false;
    }

  private:
    static DWORD WINAPI Run(void* self) {
        auto& thread = *static_cast<ApartmentThread*>(self);
        // As programs with a window do it, with the clipboard and drag and drop.
        const bool window = thread.kind_ == COINIT_APARTMENTTHREADED;
        EXPECT_EQ(S_OK, window ? OleInitialize(nullptr) : CoInitializeEx(nullptr, thread.kind_));
        thread.work_();
        window ? OleUninitialize() : CoUninitialize();
        return 0;
    }

    COINIT kind_;
    std::function<void()> work_;
    HANDLE thread_;
};

// A new object of a class that the system finds by its identifier.
inline ComPtr<IUnknown> CreateByClass(REFCLSID id) {
    ComPtr<IUnknown> object;
    EXPECT_EQ(S_OK, CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()));
    return object;
}

}  // namespace qvx::test
