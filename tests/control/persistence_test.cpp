// Saving and loading: property bags, streams, storages; what is missing, unknown, damaged or hostile.
#include <gtest/gtest.h>
#include <olectl.h>

#include <random>

#include "Qvx.h"
#include "common/property_stream.h"
#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/files.h"
#include "tests/support/property_change.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

using property_stream::Bytes;

ComPtr<IUnknown> New(REFCLSID id) { return ServerUnderTest::Get().Create(id); }

// Leaves a control as a host would: every property has another value, some of them a certain one.
void Use(REFCLSID id, IDispatch* automation) {
    struct Set {
        const CLSID& id;
        const wchar_t* member;
        Variant value;
    };
    const Set certain[] = {
        {CLSID_Button, L"Caption", Variant(u"&Sauv\u00E9 \u6F22")},
        {CLSID_RButton, L"MaskColor", Variant(static_cast<long>(0x80000018))},
        {CLSID_ComboGrid, L"FormatString", Variant(u"No|<Name            |>Price")},
        {CLSID_ComboGrid, L"Rows", Variant(5)},
        {CLSID_ComboGrid, L"KeyColumn", Variant(2)},
        {CLSID_TextEdit, L"MaxLength", Variant(9)},
        {CLSID_TextEdit, L"DataType", Variant(2)},
        {CLSID_TextEdit, L"DecimalPlaces", Variant(3)},
        {CLSID_TextEdit, L"Text", Variant(u"-12.5")},
        {CLSID_TextEdit, L"MinValue", Variant(-100.25)},
    };
    ForEachProperty(automation, [&](const Function& member, const std::vector<VARIANT>& index) {
        Change(automation, member, index);
    });
    for (const Set& set : certain) {
        if (set.id == id) Put(automation, set.member, {set.value});
    }
}

ComPtr<IUnknown> Used(REFCLSID id) {
    auto control = New(id);
    EXPECT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    Use(id, control.As<IDispatch>().get());
    return control;
}

class SavedControl : public ::testing::TestWithParam<const CLSID*> {
  protected:
    const CLSID& id_ = *GetParam();
    const ComPtr<IUnknown> original_ = Used(id_);
};

INSTANTIATE_TEST_SUITE_P(Controls, SavedControl, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(SavedControl, ComesBackTheSameThroughEveryStore) {
    const auto bag = SaveToBag(original_.get());
    const Bytes stream = SaveToStream(original_.get());
    EXPECT_FALSE(bag->entries.empty());
    // What has been used before has the stored state as well, and nothing to save.
    const auto throughBag = Used(id_);
    ASSERT_EQ(S_OK, LoadFromBag(throughBag.get(), bag.get()));
    EXPECT_EQ(S_FALSE, throughBag.As<IPersistStreamInit>()->IsDirty());
    EXPECT_EQ(bag->Print(), SaveToBag(throughBag.get())->Print());
    const auto throughStream = New(id_);
    ASSERT_EQ(S_OK, LoadFromStream(throughStream.get(), stream));
    EXPECT_EQ(stream, SaveToStream(throughStream.get()));
    EXPECT_EQ(bag->Print(), SaveToBag(throughStream.get())->Print());
    ULARGE_INTEGER size{};
    EXPECT_EQ(S_OK, throughStream.As<IPersistStreamInit>()->GetSizeMax(&size));
    EXPECT_EQ(stream.size(), size.QuadPart);
    // A storage holds the same stream.
    ComPtr<ILockBytes> memory;
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, memory.put()));
    ASSERT_EQ(S_OK, StgCreateDocfileOnILockBytes(memory.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0,
                                                 storage.put()));
    const auto persistStorage = original_.As<IPersistStorage>();
    ASSERT_EQ(S_OK, persistStorage->Save(storage.get(), FALSE));
    ASSERT_EQ(S_OK, persistStorage->SaveCompleted(nullptr));
    const auto throughStorage = New(id_);
    ASSERT_EQ(S_OK, throughStorage.As<IPersistStorage>()->Load(storage.get()));
    EXPECT_EQ(stream, SaveToStream(throughStorage.get()));
    EXPECT_EQ(CO_E_ALREADYINITIALIZED, throughStorage.As<IPersistStorage>()->Load(storage.get()));
    EXPECT_EQ(S_OK, throughStorage.As<IPersistStorage>()->HandsOffStorage());
}

// The steps of programs whose documents are files of storages: one for the document, one in it for each object.
TEST_P(SavedControl, LivesInADocument) {
    constexpr DWORD open = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
    const CreatableClasses classes;
    const Text path = TemporaryPath(u"qvx-document.tmp");
    ComPtr<IStorage> file;
    ASSERT_EQ(S_OK, StgCreateDocfile(Wide(path), STGM_CREATE | STGM_TRANSACTED | open, 0, file.put()));
    const auto place = [&](const wchar_t* name) {
        ComPtr<IStorage> storage;
        EXPECT_EQ(S_OK, file->CreateStorage(name, STGM_CREATE | open, 0, 0, storage.put()));
        return storage;
    };
    ComPtr<IStorage> first = place(L"First");
    ComPtr<IUnknown> control;
    ASSERT_EQ(S_OK, OleCreate(id_, IID_IUnknown, OLERENDER_NONE, nullptr, nullptr, first.get(), control.put_void()));
    Use(id_, control.As<IDispatch>().get());
    const Bytes used = SaveToStream(original_.get());
    const auto persist = control.As<IPersistStorage>();
    EXPECT_EQ(S_OK, persist->IsDirty());
    // A copy elsewhere saves nothing here.
    EXPECT_EQ(S_OK, OleSave(persist.get(), place(L"Copy").get(), FALSE));
    EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
    EXPECT_EQ(S_OK, persist->IsDirty());
    EXPECT_EQ(S_OK, OleSave(persist.get(), first.get(), TRUE));
    EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    // Under another name: the control lets go of its old storage, and writes to the new one from then on.
    ComPtr<IStorage> second = place(L"Second");
    ASSERT_EQ(S_OK, LoadFromBag(control.get(), MakeObject<MemoryBag>().get()));
    EXPECT_EQ(S_OK, OleSave(persist.get(), second.get(), FALSE));
    EXPECT_EQ(S_OK, persist->HandsOffStorage());
    EXPECT_EQ(S_OK, persist->SaveCompleted(second.get()));
    ASSERT_EQ(S_OK, LoadFromBag(control.get(), SaveToBag(original_.get()).get()));
    EXPECT_EQ(S_OK, persist->Save(nullptr, TRUE));
    EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
    EXPECT_EQ(S_OK, persist->HandsOffStorage());
    EXPECT_EQ(S_OK, file->Commit(STGC_DEFAULT));
    first.reset();
    second.reset();
    file.reset();
    ASSERT_EQ(S_OK, StgOpenStorage(Wide(path), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr, 0, file.put()))
        << "nobody holds the file";
    for (const wchar_t* name : {L"First", L"Copy", L"Second"}) {
        ComPtr<IStorage> saved;
        ASSERT_EQ(S_OK, file->OpenStorage(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr, 0, saved.put()));
        ComPtr<IUnknown> loaded;
        ASSERT_EQ(S_OK, OleLoad(saved.get(), IID_IUnknown, nullptr, loaded.put_void()));
        EXPECT_EQ(used, SaveToStream(loaded.get()));
        EXPECT_EQ(S_FALSE, loaded.As<IPersistStorage>()->IsDirty());
    }
    file.reset();
    DeleteFileW(Wide(path));
}

TEST_P(SavedControl, TellsNothingOfItselfWhileItIsRead) {
    Container container(HostInMode(true));
    container.Place(New(id_));
    container.Activate();
    const auto events = MakeObject<EventRecorder>();
    const Connection connection(container.Control(), EventsOf(container.Control()), events.get());
    EXPECT_EQ(S_OK, LoadFromBag(container.Control(), SaveToBag(original_.get()).get()));
    EXPECT_EQ(S_OK, LoadFromStream(container.Control(), SaveToStream(original_.get())));
    EXPECT_EQ(0u, events->events.size());
}

TEST_P(SavedControl, UnknownKeysAreIgnored) {
    // Also of a kind that is not known yet. Bags are read by the keys that are known.
    const Bytes stream = SaveToStream(original_.get());
    const auto header = property_stream::ReadHeader(stream);
    ASSERT_TRUE(header);
    auto records = property_stream::ReadRecords(*header, std::span(stream).subspan(property_stream::headerSize));
    ASSERT_TRUE(records);
    records->insert(records->begin(), {u"FromTheFuture", PropertyValue(Text(u"x"))});
    records->emplace_back(u"Odd", PropertyValue());
    const auto other = New(id_);
    ASSERT_EQ(S_OK, LoadFromStream(other.get(), property_stream::Write(*records)));
    EXPECT_EQ(stream, SaveToStream(other.get()));
}

// Every prefix of a stream is refused cleanly, and leaves the control as it was.
TEST_P(SavedControl, TruncatedStreamsAreRefused) {
    const Bytes stream = SaveToStream(original_.get());
    const auto control = New(id_);
    ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    const Bytes fresh = SaveToStream(control.get());
    for (size_t length = 0; length < stream.size(); length += 1 + length / 16) {
        const Bytes cut(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_TRUE(FAILED(LoadFromStream(control.get(), cut))) << length << " of " << stream.size();
    }
    EXPECT_EQ(fresh, SaveToStream(control.get()));
}

// Damaged in a thousand ways: never a crash, never a leak, always a control that can be used and saved.
TEST_P(SavedControl, SurvivesAThousandMutatedStreams) {
    const Bytes good = SaveToStream(original_.get());
    std::mt19937 random(20240301);
    const auto mutate = [&] {
        Bytes bytes = good;
        const auto edits = 1 + random() % 8;
        for (unsigned i = 0; i < edits && !bytes.empty(); ++i) {
            const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size());
            const auto kind = random() % 5;
            if (kind == 0) bytes.erase(place);
            if (kind == 1) bytes.insert(place, static_cast<std::uint8_t>(random()));
            if (kind > 1) *place = kind == 2 ? 0xFF : static_cast<std::uint8_t>(random());
        }
        return bytes;
    };
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    int accepted = 0;
    const auto round = [&] {
        const auto control = New(id_);
        ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
        if (SUCCEEDED(LoadFromStream(control.get(), mutate()))) ++accepted;
        const Bytes saved = SaveToStream(control.get());
        const auto again = New(id_);
        ASSERT_EQ(S_OK, LoadFromStream(again.get(), saved));
        ASSERT_EQ(S_OK, LoadFromBag(again.get(), SaveToBag(control.get()).get()));
    };
    ExpectNothingLeftBehind(500, round);
    EXPECT_GT(accepted, 0) << "some damage is only another value";
    EXPECT_EQ(idle, ServerUnderTest::Get().CanUnload());
}

// A stream that promises gigabytes costs nothing, and one of another version is not guessed at.
TEST(Streams, HostileHeadersAreRefused) {
    const Bytes good = SaveToStream(Used(CLSID_Button).get());
    const auto with = [&](size_t at, std::initializer_list<int> values) {
        Bytes bytes = good;
        for (const int value : values) bytes[at++] = static_cast<std::uint8_t>(value);
        return bytes;
    };
    const auto control = New(CLSID_Button);
    EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.get(), with(0, {'X'})));
    EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.get(), with(4, {2, 0})));
    EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.get(), with(8, {0xFF, 0xFF, 0xFF, 0xFF})));
    EXPECT_EQ(STG_E_READFAULT, LoadFromStream(control.get(), with(8, {0xFF, 0xFF, 0xFF, 0})));
    EXPECT_EQ(STG_E_DOCFILECORRUPT, LoadFromStream(control.get(), with(6, {0xFF, 0xFF})));
    EXPECT_EQ(S_OK, LoadFromStream(control.get(), good));
}

// --- What a bag gives and does not give ---

// Stores are written by people as well: values of other types, and values that no control takes.
TEST(Bags, OddValuesAreReadOrReplacedByDefaults) {
    struct Case {
        const wchar_t* key;
        Variant stored;
        const wchar_t* member;
        Variant expected;
    };
    const Case cases[] = {
        {L"AutoTab", Variant(0), L"AutoTab", Variant(false)},
        {L"AutoTab", Variant(u"rubbish"), L"AutoTab", Variant(true)},
        {L"DateFormat", Variant(7), L"DateFormat", Variant(u"7")},
        {L"KeyColumn", Variant(u"3"), L"KeyColumn", Variant(3)},
        {L"KeyColumn", Variant(u"third"), L"KeyColumn", Variant(-1)},
        {L"BackColor", Variant(2147483653.0), L"BackColor", Variant(u"2147483653")},
        {L"Rows", Variant(-4), L"Rows", Variant(3)},
        {L"ScrollBars", Variant(99), L"ScrollBars", Variant(3)},
    };
    for (const Case& c : cases) {
        auto bag = MakeObject<MemoryBag>();
        bag->Set(c.key, c.stored);
        const auto control = New(CLSID_ComboGrid);
        ASSERT_EQ(S_OK, LoadFromBag(control.get(), bag.get())) << Bstr(FromWide(c.key)).get();
        EXPECT_EQ(c.expected.ToText(), Call(control.As<IDispatch>().get(), c.member).ToText())
            << Bstr(FromWide(c.key)).get();
    }
}

// A bag that refuses to take a value is the host's trouble, told to the host.
TEST(Bags, FailuresToWriteAreReported) {
    class Full final : public ComObject<IPropertyBag> {
      public:
        STDMETHODIMP Read(LPCOLESTR, VARIANT*, IErrorLog*) override { return E_INVALIDARG; }
        STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return STG_E_MEDIUMFULL; }

      private:
        ~Full() override = default;
    };
    EXPECT_EQ(STG_E_MEDIUMFULL,
              Used(CLSID_Button).As<IPersistPropertyBag>()->Save(MakeObject<Full>().get(), TRUE, TRUE));
}

}  // namespace
}  // namespace qvx::test
