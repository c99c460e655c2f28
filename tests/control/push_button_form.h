// A push button control in a container, pressed in every way.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <olectl.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/support/container.h"
#include "tests/support/input.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {

constexpr auto setRefused = static_cast<HRESULT>(0x800A0183);  // 387

class PushButtonForm : public ::testing::Test {
  public:
    explicit PushButtonForm(REFCLSID id, bool userMode = true, ComPtr<IDispatch> extended = nullptr) {
        Container::Options options;
        options.extended = std::move(extended);
        options.ambients = {{DISPID_AMBIENT_USERMODE, Variant(userMode)},
                            {DISPID_AMBIENT_DISPLAYNAME, Variant(u"cmdSave")}};
        options.bounds = {20, 20, 120, 44};
        options.answer = [this](const std::string& call) {
            if (onCall_) onCall_(call);
            return S_OK;
        };
        container_ = std::make_unique<Container>(options);
        container_->Place(ServerUnderTest::Get().Create(id));
        button_ = container_->Automation();
        recorder_ = MakeObject<EventRecorder>();
        connection_ =
            std::make_unique<Connection>(container_->Control(), EventsOf(container_->Control()), recorder_.get());
    }
    void Activate() {
        // Where the pointer was left by another test it would be over the button.
        MoveMouseTo({2, 2});
        Settle();
        container_->Activate();
        ASSERT_TRUE(BringToFront(container_->Window()));
        window_ = container_->ControlWindow();
        ASSERT_TRUE(window_);
    }
    void Focus() {
        container_->ActivateUi();
        ASSERT_TRUE(WaitFor([&] { return GetFocus() == window_; }));
        // The display may hand over its focus later, and a key that goes down before then is released at that moment.
        Settle();
    }
    size_t Clicks() const { return recorder_->Count(DISPID_CLICK); }
    // Lets everything that was sent arrive.
    static void Settle() {
        WaitFor([] { return false; }, 150);
    }
    POINT At(int x, int y) const {
        POINT point{x, y};
        ClientToScreen(window_, &point);
        return point;
    }

    HRESULT Mnemonic(WPARAM key) const {
        MSG message{};
        message.message = WM_SYSKEYDOWN;
        message.wParam = key;
        return Query<IOleControl>(container_->Control())->OnMnemonic(&message);
    }
    // A press as the system delivers it, without the way there.
    void PressDirectly() const { SendMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 12)); }
    void ReleaseDirectly() const { SendMessageW(window_, WM_LBUTTONUP, 0, MAKELPARAM(50, 12)); }

    std::function<void(const std::string&)> onCall_;
    std::unique_ptr<Container> container_;
    ComPtr<IDispatch> button_;
    ComPtr<EventRecorder> recorder_;
    std::unique_ptr<Connection> connection_;
    HWND window_ = nullptr;
};

}  // namespace qvx::test
