// Controls in hosts that make them, set their properties and show them, and neither initialise nor load them.
#include <gtest/gtest.h>
#include <olectl.h>

#include <algorithm>
#include <set>

#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/narrow.h"
#include "tests/support/property_change.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

class NeverInitialised : public ::testing::TestWithParam<const CLSID*> {
  protected:
    static ComPtr<IUnknown> New() { return ServerUnderTest::Get().Create(*GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Controls, NeverInitialised, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(NeverInitialised, ActivationKeepsWhatWasSetBefore) {
    for (const bool sitedFirst : {false, true}) {
        int changed = 0;
        ForEachProperty(New().As<IDispatch>().get(), [&](const Function& member, const std::vector<VARIANT>& index) {
            const auto control = New();
            const auto automation = control.As<IDispatch>();
            Container container(HostInMode(true));
            if (sitedFirst) container.Place(control, [](IUnknown*) {});
            const auto set = Change(automation.get(), member, index);
            if (!sitedFirst) container.Place(control, [](IUnknown*) {});
            if (!set) return;
            ++changed;
            container.Activate();
            EXPECT_EQ(set, Read(automation.get(), member, index)) << member.name;
        });
        EXPECT_GT(changed, 0);
    }
}

// It has the state that it would have been initialised to.
TEST_P(NeverInitialised, StartsOutAsIfInitialised) {
    const auto fresh = New();
    const auto initialised = New();
    ASSERT_EQ(S_OK, initialised.As<IPersistStreamInit>()->InitNew());
    for (const Function& member : FunctionsOf(fresh.As<IDispatch>().get())) {
        if (member.kind != INVOKE_PROPERTYGET || member.Arguments() != 0 || member.name == "hWnd" ||
            member.name == "hDC")
            continue;
        SCOPED_TRACE(member.name);
        EXPECT_EQ(Read(initialised.As<IDispatch>().get(), member, {}), Read(fresh.As<IDispatch>().get(), member, {}));
    }
    EXPECT_EQ(S_FALSE, fresh.As<IPersistStreamInit>()->IsDirty());
    EXPECT_EQ(SaveToStream(initialised.get()), SaveToStream(fresh.get()));
}

class NamedProperties : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, NamedProperties, ::testing::ValuesIn(EachControlId()), ControlName);

// A control names its properties in its setters and in its table; the type library has the numbers.
TEST_P(NamedProperties, AreReportedByTheirNumbersAndKeptUnderTheirNames) {
    Container container(HostInMode(true));
    container.Place(ServerUnderTest::Get().Create(*GetParam()));
    const auto automation = container.Automation();
    const auto listener = MakeObject<PropertyListener>();
    const Connection connection(container.Control(), IID_IPropertyNotifySink, listener.get());
    std::set<std::wstring> names;
    for (const Function& member : FunctionsOf(automation.get())) names.insert(member.WideName());
    ForEachProperty(automation.get(), [&](const Function& member, const std::vector<VARIANT>& index) {
        listener->changed.clear();
        if (!Change(automation.get(), member, index)) return;
        SCOPED_TRACE(member.name);
        const auto reported = [&](DISPID id) {
            return std::count(listener->changed.begin(), listener->changed.end(), id);
        };
        EXPECT_GT(reported(member.id), 0);
        EXPECT_EQ(0, reported(DISPID_UNKNOWN));
    });
    const auto bag = MakeObject<MemoryBag>();
    ASSERT_EQ(S_OK, container.Automation().As<IPersistPropertyBag>()->Save(bag.get(), TRUE, FALSE));
    EXPECT_FALSE(bag->entries.empty());
    for (const auto& [key, value] : bag->entries) {
        // Where a property has an index, the value for 0 is kept.
        const bool indexed = key.back() == L'0' && names.contains(key.substr(0, key.size() - 1));
        EXPECT_TRUE(names.contains(key) || indexed) << Narrow(FromWide(key.c_str()));
    }
}

}  // namespace
}  // namespace qvx::test
