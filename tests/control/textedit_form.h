// A TextEdit control in a bare container of its own, with somebody who types into it.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <olectl.h>

#include <memory>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/input.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {

class TextEditForm {
  public:
    explicit TextEditForm(bool userMode = true, RECT bounds = {20, 20, 220, 60}) {
        Container::Options options;
        options.ambients = {{DISPID_AMBIENT_USERMODE, Variant(userMode)},
                            {DISPID_AMBIENT_DISPLAYNAME, Variant(u"TextEdit1")}};
        options.bounds = bounds;
        container = std::make_unique<Container>(options);
        container->Place(ServerUnderTest::Get().Create(CLSID_TextEdit));
        box = container->Automation();
        recorder = MakeObject<EventRecorder>();
        connection = std::make_unique<Connection>(container->Control(), EventsOf(container->Control()), recorder.get());
    }

    void Focus() {
        container->ActivateUi();
        ASSERT_TRUE(BringToFront(container->Window()));
        SetFocus(Edit());
        ASSERT_TRUE(WaitFor([&] { return GetFocus() == Edit(); }));
    }
    // The system's edit control inside.
    HWND Edit() const { return FindWindowExW(container->ControlWindow(), nullptr, L"EDIT", nullptr); }
    ComPtr<IDispatch> Inner() const { return Call(box.get(), L"TextBox").ToObject<IDispatch>(); }
    Text Shown() const { return Call(box.get(), L"Text").ToText().value_or(u"?"); }
    void Set(const wchar_t* name, Variant value) const { Put(box.get(), name, {std::move(value)}); }

    // The message queue is empty after the keys.
    static void Type(const char* text) {
        TypeKeys(text);
        Settle();
    }
    static void Key(int key, const std::initializer_list<int>& modifiers = {}) {
        TypeKey(key, modifiers);
        Settle();
    }

    std::unique_ptr<Container> container;
    ComPtr<IDispatch> box;
    ComPtr<EventRecorder> recorder;
    std::unique_ptr<Connection> connection;
};

}  // namespace qvx::test
