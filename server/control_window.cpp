#include "server/control_window.h"

namespace qvx {

namespace {
const WindowClass parkingClass{L"QvxParking"};
// Its own device context, because hosts ask for it by number and draw on it.
const WindowClass controlClass{L"QvxControl", CS_DBLCLKS | CS_OWNDC};
}  // namespace

std::shared_ptr<ParkingWindow> ParkingWindow::OfThisThread() {
    thread_local std::weak_ptr<ParkingWindow> current;
    auto parking = current.lock();
    if (!parking) {
        parking = std::make_shared<ParkingWindow>();
        if (!parking->CreateParking()) return nullptr;
        current = parking;
    }
    return parking;
}

bool ParkingWindow::CreateParking() { return Create(parkingClass, L"", WS_POPUP, WS_EX_TOOLWINDOW, {}, nullptr); }

bool ControlWindow::CreateParked(Size size) {
    return parking_ && Create(controlClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0,
                              {0, 0, size.width, size.height}, parking_->Handle());
}

void ControlWindow::Park() {
    ShowWindow(Handle(), SW_HIDE);
    if (parking_->Handle()) SetParent(Handle(), parking_->Handle());
}

}  // namespace qvx
