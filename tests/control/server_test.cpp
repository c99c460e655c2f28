// The component server: factories, unloading, what it writes into the registry.
#include <windows.h>

#include <gtest/gtest.h>
#include <olectl.h>

#include <map>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

using Snapshot = std::map<std::wstring, std::wstring>;  // "key|name" to text; "key|" for a key's default value

void Collect(HKEY root, const std::wstring& path, Snapshot& into) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    into[path] = L"(key)";
    for (DWORD i = 0;; ++i) {
        wchar_t name[256];
        BYTE data[2048]{};
        DWORD nameSize = static_cast<DWORD>(std::size(name));
        DWORD dataSize = sizeof data - sizeof(wchar_t);
        DWORD type = 0;
        if (RegEnumValueW(key, i, name, &nameSize, nullptr, &type, data, &dataSize) != ERROR_SUCCESS) break;
        into[path + L"|" + name] = type == REG_SZ ? reinterpret_cast<const wchar_t*>(data) : L"(data)";
    }
    for (DWORD i = 0;; ++i) {
        wchar_t name[256];
        DWORD size = static_cast<DWORD>(std::size(name));
        if (RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        Collect(root, path.empty() ? name : path + L"\\" + name, into);
    }
    RegCloseKey(key);
}

Snapshot UserClasses() {
    Snapshot all;
    Collect(HKEY_CURRENT_USER, L"Software\\Classes", all);
    return all;
}

bool KeyExists(const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

// Creates a key if there is none, with a value if it has a name or a text.
void WriteKey(const std::wstring& path, const wchar_t* name, const wchar_t* value, DWORD options = 0, REGSAM view = 0) {
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, options, KEY_WRITE | view,
                                             nullptr, &key, nullptr));
    if (value)
        RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                       static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
}

class Registration : public ::testing::Test {
  protected:
    void SetUp() override {
        // A developer's own registration for this user is put back afterwards.
        registered_ = KeyExists(L"Software\\Classes\\Qvx.Button");
        if (registered_) ServerUnderTest::Get().Install(false, L"user");
    }
    void TearDown() override {
        if (registered_) ServerUnderTest::Get().Install(true, L"user");
    }

  private:
    bool registered_ = false;
};

TEST_F(Registration, WritesTheKeysThatHostsLookFor) {
    const auto& server = ServerUnderTest::Get();
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    const Snapshot written = UserClasses();
    const auto value = [&](const std::wstring& path) {
        const auto found = written.find(L"Software\\Classes\\" + path);
        return found == written.end() ? std::wstring(L"(none)") : found->second;
    };
    for (const auto& control : server.Controls()) {
        const std::wstring id = Spell(control.id);
        const std::wstring plain = L"Qvx." + control.name;
        const std::wstring base = L"CLSID\\" + id;
        EXPECT_EQ(id, value(plain + L"\\CLSID|"));
        EXPECT_EQ(plain + L".1", value(plain + L"\\CurVer|"));
        EXPECT_EQ(id, value(plain + L".1\\CLSID|"));
        EXPECT_EQ(plain + L".1", value(base + L"\\ProgID|"));
        EXPECT_EQ(plain, value(base + L"\\VersionIndependentProgID|"));
        EXPECT_EQ(server.Path(), value(base + L"\\InprocServer32|"));
        EXPECT_EQ(L"Apartment", value(base + L"\\InprocServer32|ThreadingModel"));
        EXPECT_EQ(L"(key)", value(base + L"\\Control"));
        EXPECT_EQ(L"(none)", value(base + L"\\Insertable"));
        EXPECT_EQ(L"(none)", value(base + L"\\Implemented Categories")) << "not marked safe for scripting";
        EXPECT_EQ(L"1.0", value(base + L"\\Version|"));
        EXPECT_EQ(Spell(LIBID_Qvx), value(base + L"\\TypeLib|"));
        EXPECT_EQ(0u, value(base + L"\\ToolboxBitmap32|").find(server.Path() + L", "));
        // The status in the registry is the one the object gives.
        DWORD status = 0;
        EXPECT_EQ(S_OK, server.Create(control.id).As<IOleObject>()->GetMiscStatus(DVASPECT_CONTENT, &status));
        EXPECT_EQ(std::to_wstring(status), value(base + L"\\MiscStatus\\1|"));
        EXPECT_EQ(L"0", value(base + L"\\MiscStatus|"));
    }
    // A property page is a class without a name for scripts.
    const std::pair<const wchar_t*, const wchar_t*> pages[] = {
        {L"{4DE5F516-0402-49F2-93DB-DEAC18CC289F}", L"The pictures of a form's menus"},
        {L"{4DE5F517-0402-49F2-93DB-DEAC18CC289F}", L"The columns of a grid"}};
    for (const auto& [id, description] : pages) {
        const std::wstring page = std::wstring(L"CLSID\\") + id;
        EXPECT_EQ(description, value(page + L"|"));
        EXPECT_EQ(server.Path(), value(page + L"\\InprocServer32|"));
        EXPECT_EQ(L"Apartment", value(page + L"\\InprocServer32|ThreadingModel"));
        EXPECT_EQ(L"(none)", value(page + L"\\ProgID|"));
    }
    EXPECT_EQ(S_OK, server.Install(false, L"user"));
}

TEST_F(Registration, RemovesExactlyWhatItWrote) {
    const auto& server = ServerUnderTest::Get();
    // Lists that all servers share may have been made by the first registration on a fresh profile.
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    ASSERT_EQ(S_OK, server.Install(false, L"user"));
    const Snapshot before = UserClasses();
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    EXPECT_GT(UserClasses().size(), before.size() + 20);
    ASSERT_EQ(S_OK, server.Install(false, L"user"));
    EXPECT_EQ(before, UserClasses());
    // Twice is no failure. A key that somebody else put a value into stays, with that value alone.
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    const std::wstring path = L"Software\\Classes\\CLSID\\" + Spell(server.Controls().at(0).id);
    WriteKey(path, L"Note", L"mine");
    for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(S_OK, server.Install(false, L"user"));
    Snapshot left;
    Collect(HKEY_CURRENT_USER, path, left);
    EXPECT_EQ((Snapshot{{path, L"(key)"}, {path + L"|Note", L"mine"}}), left);
    RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
}

// What cannot be written to its end puts back what was there: an earlier version goes on working.
TEST_F(Registration, AFailedOneLeavesTheEarlierOneAsItWas) {
    const auto& server = ServerUnderTest::Get();
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    const std::wstring classes = L"Software\\Classes\\CLSID\\";
    for (const auto& control : server.Controls()) {
        WriteKey(classes + Spell(control.id) + L"\\InprocServer32", nullptr, L"C:\\Earlier\\Qvx.ocx");
    }
    // The page comes last. Nothing that lasts can be written below a key that does not.
    const std::wstring page = classes + L"{4DE5F516-0402-49F2-93DB-DEAC18CC289F}";
    ASSERT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, page.c_str()));
    WriteKey(page, L"Note", L"not ours", REG_OPTION_VOLATILE);
    const Snapshot before = UserClasses();
    EXPECT_TRUE(FAILED(server.Install(true, L"user")));
    EXPECT_EQ(before, UserClasses());
    RegDeleteTreeW(HKEY_CURRENT_USER, page.c_str());
    EXPECT_EQ(S_OK, server.Install(true, L"user"));
    EXPECT_EQ(S_OK, server.Install(false, L"user"));
}

// Programs of the other width find their classes by the same names.
TEST_F(Registration, LeavesTheNamesToTheOtherWidth) {
    constexpr REGSAM other = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    const auto& server = ServerUnderTest::Get();
    ASSERT_EQ(S_OK, server.Install(false, L"user"));
    const std::wstring id = L"Software\\Classes\\CLSID\\" + Spell(server.Controls().at(0).id);
    const std::wstring module = id + L"\\InprocServer32";
    // A profile that no 32-bit program has used yet may have no place for its classes.
    const std::wstring place = L"Software\\Classes\\Wow6432Node";
    const bool placeThere = KeyExists(place);
    WriteKey(place, nullptr, nullptr, 0, KEY_WOW64_64KEY);
    WriteKey(module, nullptr, nullptr, 0, other);
    const bool apart = !KeyExists(module);
    ASSERT_EQ(S_OK, server.Install(true, L"user"));
    ASSERT_EQ(S_OK, server.Install(false, L"user"));
    const bool classLeft = KeyExists(module);
    const bool nameLeft = KeyExists(L"Software\\Classes\\Qvx.Button\\CLSID");
    RegDeleteKeyExW(HKEY_CURRENT_USER, module.c_str(), other, 0);
    RegDeleteKeyExW(HKEY_CURRENT_USER, id.c_str(), other, 0);
    RegDeleteKeyExW(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID", other, 0);
    if (!placeThere) RegDeleteKeyExW(HKEY_CURRENT_USER, place.c_str(), KEY_WOW64_64KEY, 0);
    ASSERT_EQ(S_OK, server.Install(false, L"user"));
    if (!apart) GTEST_SKIP() << "both widths share their classes here";
    EXPECT_FALSE(classLeft);
    EXPECT_TRUE(nameLeft);
    EXPECT_FALSE(KeyExists(L"Software\\Classes\\Qvx.Button")) << "the last one takes them along";
}

TEST(Server, CanBeUnloadedWhenNothingLives) {
    const auto& server = ServerUnderTest::Get();
    const CLSID id = server.Controls().at(0).id;
    EXPECT_EQ(S_OK, server.CanUnload());
    {
        const auto control = server.Create(id);
        EXPECT_EQ(S_FALSE, server.CanUnload());
    }
    EXPECT_EQ(S_OK, server.CanUnload());
    for (const BOOL lock : {TRUE, FALSE}) {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(S_OK, server.ClassObject(id, IID_IClassFactory, factory.put_void()));
        factory->LockServer(lock);
        factory.reset();
        EXPECT_EQ(lock ? S_FALSE : S_OK, server.CanUnload());
    }
}

// The rules of identity that hosts build on: one IUnknown, every interface leads to every other.
TEST(Server, InterfacesOfAControlBelongTogether) {
    const IID interfaces[] = {
        IID_IDispatch,           IID_IOleObject,
        IID_IOleWindow,          IID_IOleInPlaceObject,
        IID_IOleControl,         IID_IViewObject,
        IID_IViewObject2,        IID_IOleInPlaceActiveObject,
        IID_IViewObjectEx,       IID_IPersist,
        IID_IPersistPropertyBag, IID_IPersistStreamInit,
        IID_IPersistStream,      IID_IPersistStorage,
        IID_IProvideClassInfo,   IID_IConnectionPointContainer,
        IID_IProvideClassInfo2,  IID_ISpecifyPropertyPages,
        IID_IQuickActivate,      IID_ISupportErrorInfo,
        IID_IDataObject,
    };
    for (const auto& control : ServerUnderTest::Get().Controls()) {
        const auto object = ServerUnderTest::Get().Create(control.id);
        for (const IID& from : interfaces) {
            ComPtr<IUnknown> one;
            ASSERT_EQ(S_OK, object->QueryInterface(from, one.put_void())) << Bstr(FromWide(Spell(from).c_str())).get();
            EXPECT_TRUE(one.As<IUnknown>() == object);
            for (const IID& to : interfaces) {
                ComPtr<IUnknown> other;
                EXPECT_EQ(S_OK, one->QueryInterface(to, other.put_void()));
            }
        }
        CLSID id = CLSID_NULL;
        EXPECT_EQ(S_OK, object.As<IPersistPropertyBag>()->GetClassID(&id));
        EXPECT_TRUE(id == control.id);
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(S_OK, ServerUnderTest::Get().ClassObject(control.id, IID_IClassFactory, factory.put_void()));
        void* none = &factory;
        EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(object.get(), IID_IUnknown, &none));
        EXPECT_EQ(nullptr, none);
        EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IStorage, &none));
        // Scripts of untrusted pages must not get hold of a control as safe.
        ComPtr<IUnknown> safety;
        const IID objectSafety{0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};
        EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(objectSafety, safety.put_void()));
    }
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

}  // namespace
}  // namespace qvx::test
