// What tests of whole forms share: a form from text with its script, and a control whose behaviour they choose.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <vector>

#include "com/object.h"
#include "host/running_form_window.h"
#include "tests/support/files.h"
#include "tests/support/inert_object.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"
#include "tests/support/source_folder.h"

namespace qvx::host {

// A file of the sources, by the path that Windows programs know it by.
inline Text SourceFile(TextView path) {
    const std::string_view folder = test::sourceFolder;
    Text file = u"Z:" + Text(folder.begin(), folder.end()) + Text(path);
    std::replace(file.begin(), file.end(), u'/', u'\\');
    return file;
}

// A component that has no window, loads and saves as it is told, and keeps count of what its form does to it.
template <class... Others>
class ScriptedObject : public test::InertObject<IPersistPropertyBag, Others...> {
  public:
    HRESULT loads = S_OK;
    std::function<HRESULT()> saves = [] { return S_OK; };
    bool closed = false;
    ComPtr<IOleClientSite> site;

    STDMETHODIMP SetClientSite(IOleClientSite* given) override {
        site = ComPtr<IOleClientSite>(given);
        return S_OK;
    }
    STDMETHODIMP Close(DWORD) override {
        closed = true;
        return S_OK;
    }
    STDMETHODIMP GetClassID(CLSID* id) override {
        *id = {};
        return S_OK;
    }
    STDMETHODIMP InitNew() override { return S_OK; }
    STDMETHODIMP Load(IPropertyBag*, IErrorLog*) override { return loads; }
    STDMETHODIMP Save(IPropertyBag*, BOOL, BOOL) override { return saves(); }

  protected:
    ~ScriptedObject() override = default;
};

class ScriptedControl final : public ScriptedObject<> {
    ~ScriptedControl() override = default;
};

// The classes of the server under test, and "Test.NAME" for objects of the test itself.
class TestClasses final : public ClassSource {
  public:
    std::map<Text, ComPtr<IUnknown>> objects;
    ComPtr<IUnknown> Create(const Text& className) const override {
        const auto own = objects.find(className);
        return own == objects.end() ? ClassSource::Create(className) : own->second;
    }
};

// A form without a script beside it in files: both are given as text. What the script has to say it puts into Form.Tag.
class HostFormTest : public ::testing::Test {
  protected:
    HostFormTest() { source_.UseFile(Text(FromWide(test::ServerUnderTest::Get().Path()))); }
    ~HostFormTest() override {
        form_.reset();
        // The last form of a program ends its message loop; there are more tests to come.
        test::TakeQuit();
    }

    void Load(const std::string& text) {
        form_ = std::make_unique<RunningForm>(FormFile::Parse(text), options_, folder_, source_, reporter_);
        form_->Build();
    }
    bool Start(TextView script) { return form_->Start(u"test.vbs", script); }
    void Load(const std::string& text, TextView script) {
        Load(text);
        ASSERT_TRUE(Start(script));
    }
    Text Said() { return form_->Look().tag; }
    Text ActiveName() {
        form_->Keyboard().FollowFocus();
        return form_->Keyboard().Active() ? form_->Keyboard().Active()->Title() : Text();
    }
    bool Key(UINT message, WPARAM key, bool dispatches = false) {
        MSG input{GetFocus(), message, key, message == WM_SYSCHAR ? 1 << 29 : 1, 0, {}};
        const bool used = form_->Keyboard().TranslateKey(input);
        if (!used && dispatches) DispatchMessageW(&input);
        return used;
    }
    // A key that is pressed while others are held down. What the form has no use for goes to the window that it is for.
    bool Press(int key, const std::vector<int>& held) {
        BYTE before[256] = {};
        GetKeyboardState(before);
        BYTE state[256] = {};
        for (const int down : held) state[down] = 0x80;
        SetKeyboardState(state);
        const bool used = Key(WM_KEYDOWN, static_cast<WPARAM>(key), true);
        SetKeyboardState(before);
        return used;
    }
    Text SavedPath() const { return folder_ + u"qvx_host_test.frm"; }
    std::string SavedBytes() {
        form_->Save(SavedPath());
        return test::Read(SavedPath());
    }

    Options options_;
    TestClasses source_;
    Reporter reporter_{true};
    Text folder_ = test::TemporaryPath({});
    std::unique_ptr<RunningForm> form_;
};

}  // namespace qvx::host
