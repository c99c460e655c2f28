// The property list beside a form under design, with somebody at the keyboard.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "designer/properties/property_list_window.h"
#include "tests/control/host_form.h"
#include "tests/support/input.h"
#include "win/focus_memory.h"
#include "win/window_text.h"

namespace qvx::host::designer {

using test::Call;
using test::Settle;
using test::TypeKey;
using test::WaitFor;

class PropertyFrameWindow final : public Window {
  public:
    explicit PropertyFrameWindow(Size size) {
        Create(WindowClass{L"QvxPropertyTestFrame"}, L"Properties", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
               {700, 40, 700 + size.width, 40 + size.height}, nullptr);
    }

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_ACTIVATE && focus_.OnActivate(Handle(), wParam)) return 0;
        return Default(message, wParam, lParam);
    }

    FocusMemory focus_;
};

inline constexpr char listedForm[] =
    "Begin Form frmTest\r\n   Caption = \"Test\"\r\n   ClientWidth = 6000\r\n   ClientHeight = 3000\r\n"
    "   Begin Qvx.Button cmdOk\r\n      Caption = \"OK\"\r\n      Width = 1200\r\n      Height = 375\r\n   End\r\n"
    "   Begin Qvx.Button cmdNo\r\n      Caption = \"No\"\r\n      Left = 1500\r\n      Width = 1200\r\n"
    "      Height = 375\r\n   End\r\n"
    "   Begin Qvx.TextEdit txtName\r\n      Top = 600\r\n      Width = 1200\r\n      Height = 375\r\n   End\r\n"
    "   Begin Qvx.ComboGrid grdItems\r\n      Top = 1200\r\n      Width = 2400\r\n      Height = 900\r\n   End\r\n"
    "   Begin Label lblName\r\n      Caption = \"Name\"\r\n      Left = 3000\r\n      Width = 900\r\n   End\r\n"
    "End\r\n";

class PropertyListTest : public HostFormTest {
  protected:
    PropertyListTest() : frame_({300, 520}) {
        options_.design = true;
        Load(listedForm);
        list_ = std::make_unique<PropertyListWindow>();
        list_->onBeforeChange = [this] { notifications_ += u"before "; };
        list_->onChanged = [this](TextView name) { notifications_ += u"changed:" + Text(name) + u" "; };
        EXPECT_TRUE(list_->Create(frame_.Handle(), frame_.ClientArea()));
        EXPECT_TRUE(test::BringToFront(frame_.Handle()));
    }

    PropertyListWindow::Subject SubjectOf(TextView name) {
        FormControl* control = form_->FindControl(name);
        const auto own = control->Inner();
        return {Text(name), ComPtr<IDispatch>(control->Extended()), own, own};
    }
    void Show(const std::vector<TextView>& names) {
        std::vector<PropertyListWindow::Subject> subjects;
        for (const TextView name : names) subjects.push_back(SubjectOf(name));
        list_->Show(std::move(subjects), {u"frmTest", u"cmdOk", u"cmdNo", u"txtName", u"grdItems", u"lblName"});
    }
    const PropertyRow& Row(TextView name) {
        const auto row = list_->Table()->FindRow(name);
        EXPECT_TRUE(row) << test::Narrow(name);
        static const PropertyRow none;
        return row ? list_->Table()->Rows()[*row] : none;
    }
    bool Has(TextView name) { return list_->Table()->FindRow(name).has_value(); }
    Variant Value(TextView control, const wchar_t* name) {
        return Call(form_->FindControl(control)->Inner().get(), name);
    }
    // Goes to a property, into its value, as somebody with the keyboard.
    void Edit(TextView name) {
        list_->GoTo(name);
        SetFocus(list_->RowsWindow());
        Keys({VK_TAB});
    }
    void Type(const char* keys) {
        test::TypeKeys(keys);
        Settle();
    }
    // Presses keys one after the other.
    void Keys(const std::initializer_list<int>& keys) {
        for (const int key : keys) TypeKey(key);
        Settle();
    }
    // Types a property's value.
    void Enter(TextView name, const char* value) {
        Edit(name);
        Type(value);
        Keys({VK_RETURN});
    }
    Text FocusText() { return WindowText(GetFocus()); }

    PropertyFrameWindow frame_;
    std::unique_ptr<PropertyListWindow> list_;
    Text notifications_;
};

}  // namespace qvx::host::designer
