#include "kit/in_place_activation.h"

#include <utility>

#include "com/guard.h"

namespace qvx {

InPlaceActivation::Place InPlaceActivation::Begin(const ComPtr<IOleClientSite>& client,
                                                  const std::function<bool(HWND)>& enter) {
    const auto site = client.As<IOleInPlaceSite>();
    if (!site || site->CanInPlaceActivate() != S_OK) throw ComError(E_FAIL);
    // End resets this too, because the host may cancel the activation while it is being notified.
    beginning_ = true;
    struct Undo {
        bool& beginning;
        IOleInPlaceSite* notified;
        ~Undo() {
            beginning = false;
            if (notified) notified->OnInPlaceDeactivate();
        }
    } undo{beginning_, nullptr};
    Check(site->OnInPlaceActivate());
    // Until the control is in its place, any failure undoes the host's activation.
    undo.notified = site.get();
    HWND parent = nullptr;
    Check(site->GetWindow(&parent));
    Place place;
    OLEINPLACEFRAMEINFO frameInfo{};
    frameInfo.cb = sizeof frameInfo;
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> window;
    Check(site->GetWindowContext(frame.put(), window.put(), &place.position, &place.clip, &frameInfo));
    if (!beginning_ || !parent || !enter(parent)) throw ComError(E_FAIL);
    undo.notified = nullptr;
    site_ = site;
    frame_ = std::move(frame);
    window_ = std::move(window);
    active_ = true;
    return place;
}

void InPlaceActivation::BeginUi(IOleInPlaceActiveObject& object, const wchar_t* name) {
    if (!active_ || uiActive_) return;
    const auto site = site_;
    uiActive_ = true;
    if (FAILED(site->OnUIActivate())) uiActive_ = false;
    // Containers differ in which of these they implement; typing works without any of them. Each call may deactivate
    // the control again, and the rest are then skipped.
    const auto announce = [&](const auto& window) {
        if (uiActive_ && window) window->SetActiveObject(&object, name);
        if (uiActive_ && window) window->SetBorderSpace(nullptr);
    };
    announce(ComPtr<IOleInPlaceFrame>(frame_));
    announce(ComPtr<IOleInPlaceUIWindow>(window_));
}

void InPlaceActivation::EndUi() {
    if (!std::exchange(uiActive_, false)) return;
    const auto site = site_;
    const auto frame = frame_;
    const auto window = window_;
    if (frame) frame->SetActiveObject(nullptr, nullptr);
    if (window) window->SetActiveObject(nullptr, nullptr);
    if (site) site->OnUIDeactivate(FALSE);
}

void InPlaceActivation::End(const std::function<void()>& leave) {
    beginning_ = false;
    if (!active_) return;
    EndUi();
    if (!std::exchange(active_, false)) return;  // one of those calls has deactivated the control already
    const ComPtr<IOleInPlaceSite> site = std::move(site_);
    frame_.reset();
    window_.reset();
    leave();
    if (site) site->OnInPlaceDeactivate();
}

}  // namespace qvx
