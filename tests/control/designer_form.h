// The forms designer over a small form in a folder of its own, with real controls, a mouse and keys.
#pragma once

#include <gtest/gtest.h>
#include <olectl.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "com/wide_text.h"
#include "designer/designer_window.h"
#include "tests/control/host_form.h"
#include "tests/support/input.h"
#include "win/dpi.h"
#include "win/window_text.h"

namespace qvx::host::designer {

using test::Call;
using test::Invoke;
using test::Narrow;
using test::Read;
using test::Settle;
using test::TypeKey;
using test::WaitFor;
using test::Write;

inline constexpr char formText[] =
    "' Kept as it is.\r\nBegin Form frmTest\r\n   Caption = \"Test\"\r\n   ClientWidth = 6000\r\n"
    "   ClientHeight = 4200\r\n   BackColor = &H00E0F0FF&\r\n   ForeColor = &H00000080&\r\n"
    "   BeginProperty Font\r\n      Name = \"Tahoma\"\r\n      Size = 14\r\n   EndProperty\r\n"
    "   Begin Qvx.Button cmdOk\r\n      Caption = \"OK\"\r\n      Left = 240\r\n      Top = 240\r\n"
    "      Width = 1200\r\n      Height = 360\r\n   End\r\n"
    "   Begin Frame fraBox\r\n      Left = 2400\r\n      Top = 240\r\n      Width = 3000\r\n      Height = 1800\r\n"
    "      Begin Label lblIn\r\n         Left = 240\r\n         Top = 480\r\n         Width = 960\r\n"
    "         Height = 240\r\n      End\r\n   End\r\n"
    "End\r\n";

// One pixel.
inline const std::string dotPicture(
    "BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\4\0\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\xFF\0\0\0",
    58);

// From a person's thread: one of the designer's editors or the frame of pages, once it takes keys.
inline HWND WaitForEditor() { return test::WaitForWindow(L"QvxDesignEditor"); }

class DesignerTest : public ::testing::Test {
  protected:
    DesignerTest() {
        source_.UseFile(Text(FromWide(test::ServerUnderTest::Get().Path())));
        for (const Text& folder : {root_, folder_}) CreateDirectoryW(Wide(folder), nullptr);
        questions_.ask = [this](HWND, const Text& question, UINT) {
            asked_.push_back(question);
            return answer_;
        };
        questions_.browse = [this](HWND, const Text&, const Text& address) {
            browsed_.push_back(address);
            return true;
        };
        questions_.file = [this](HWND, bool, const Text&, const Text&) { return file_; };
        Open(formText);
    }
    ~DesignerTest() override {
        designer_.reset();
        test::TakeQuit();
        test::RemoveFolder(root_);
    }

    void Open(const std::string& text) {
        Write(path_, text);
        designer_.reset();
        designer_ = std::make_unique<DesignerWindow>(Options{}, source_, reporter_, questions_);
        designer_->Open(path_);
        designer_->Show();
        EXPECT_TRUE(test::BringToFront(designer_->Handle()));
        Settle();
    }
    FormControl* Control(TextView name, int index = -1) {
        return designer_->Session().Picture().FindControl(name, index);
    }
    ComPtr<IDispatch> Members(TextView name) { return Control(name)->Inner(); }
    TwipsRect Bounds(TextView name, int index = -1) {
        const Block* block = designer_->Session().Form().Find({Text(name), index});
        EXPECT_TRUE(block) << Narrow(name);
        return block ? Document::BoundsOf(*block) : TwipsRect{};
    }
    std::vector<int> PlaceOf(TextView name) {
        const TwipsRect bounds = Bounds(name);
        return {bounds.left, bounds.top, bounds.width, bounds.height};
    }
    std::vector<Text> Names() {
        std::vector<Text> names;
        for (const ObjectId& id : designer_->Session().Form().Controls()) names.push_back(TitleOf(id));
        return names;
    }
    std::string Saved() {
        EXPECT_TRUE(designer_->Do(Command::save));
        return Read(path_);
    }
    // Twips of the form's inside on the screen.
    POINT At(int x, int y) {
        POINT point{TwipsToPixels(x, ScreenDpi().x), TwipsToPixels(y, ScreenDpi().y)};
        ClientToScreen(designer_->Session().Picture().Handle(), &point);
        return point;
    }
    void Drag(POINT from, POINT to) {
        test::MoveMouseTo(from);
        Settle(50);
        test::LeftButton(true);
        Settle(50);
        test::MoveMouseTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        Settle(50);
        test::MoveMouseTo(to);
        Settle(50);
        test::LeftButton(false);
        Settle();
    }
    void Click(POINT at) { Drag(at, at); }
    void Arm(TextView className) {
        const auto& tools = designer_->Views().Toolbox().Tools();
        const auto found =
            std::find_if(tools.begin(), tools.end(), [&](const Tool& tool) { return tool.className == className; });
        ASSERT_NE(found, tools.end()) << Narrow(className);
        SendMessageW(designer_->Views().Toolbox().List(), LB_SETCURSEL, static_cast<WPARAM>(found - tools.begin()), 0);
    }
    void Place(const Text& className, const TwipsRect& where = {360, 2400, 1200, 600}) {
        designer_->Session().PlaceControl(className, std::nullopt, &where);
    }

    TestClasses source_;
    Reporter reporter_{true};
    Questions questions_;
    std::vector<Text> asked_;
    std::vector<Text> browsed_;
    int answer_ = IDNO;
    Text file_;
    const Text root_ = test::TemporaryPath(u"qvx_designer\\");
    const Text folder_ = root_ + u"forms";
    const Text path_ = folder_ + u"\\test.frm";
    std::unique_ptr<DesignerWindow> designer_;
};

}  // namespace qvx::host::designer
