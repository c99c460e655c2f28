#include "kit/control_window.h"

#include "com/thread_shared.h"

namespace qvx {

namespace {
const WindowClass parkingClass{L"QvxParking"};
// The window has a device context of its own, because hosts read its number and draw on it.
const WindowClass controlClass{L"QvxControl", CS_DBLCLKS | CS_OWNDC};
}  // namespace

std::shared_ptr<ParkingWindow> ParkingWindow::OfThisThread() {
    auto parking = ThreadShared<ParkingWindow>::Get();
    // A thread that ended with controls left destroyed its windows with it, and another thread may have the same number
    // now.
    if (GetWindowThreadProcessId(parking->Handle(), nullptr) != GetCurrentThreadId()) {
        parking->Destroy();
        if (!parking->CreateParking()) return nullptr;
    }
    return parking;
}

bool ParkingWindow::CreateParking() { return Create(parkingClass, L"", WS_POPUP, WS_EX_TOOLWINDOW, {}, nullptr); }

bool ControlWindow::CreateHidden(Size size, HWND parent) {
    return parking_ && Create(controlClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0,
                              {0, 0, size.width, size.height}, parent ? parent : parking_->Handle());
}

void ControlWindow::Park() {
    ShowWindow(Handle(), SW_HIDE);
    // The window must not stay in a parent that is no longer the control's; another one is created when it is needed.
    if (!SetParent(Handle(), parking_->Handle())) Destroy();
}

}  // namespace qvx
