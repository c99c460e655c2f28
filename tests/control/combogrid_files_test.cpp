// Export and import through the members, with files on a disk.
#include <gtest/gtest.h>

#include "Qvx.h"
#include "common/utf8.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/files.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridFiles : public TemporaryFolder {
  protected:
    int Export(TextView name, const std::vector<Variant>& more = {}) {
        std::vector<Variant> arguments{Variant(In(name))};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return ErrorOf(form.grid.get(), L"ExportFile", DISPATCH_METHOD, arguments);
    }

    F form;
};

TEST_F(ComboGridFiles, WritesWhatItReadsAgain) {
    form.Fill({{u"Nut, \u0416", u"8", u"1.5", u"Mar/2024", u"Apple"}, {u"Bolt", u"7", u"2", u"", u"Cherry"}});
    ASSERT_EQ(Export(u"stock.csv"), 0);
    const std::string header = "\xEF\xBB\xBFNo,Name,Qty,Rate,Month,Item,Locked,Skip\r\n";
    const std::string rows =
        ",\"Nut, \xD0\x96\",8,1.5,Mar/2024,Apple,,\r\n"
        ",Bolt,7,2,,Cherry,,\r\n";
    EXPECT_EQ(Read(In(u"stock.csv")), header + rows);
    Call(form.grid.get(), L"RemoveAllRecords");
    form.Log();
    EXPECT_EQ(Call(form.grid.get(), L"ImportCsv", {Variant(In(u"stock.csv"))}).ToLong(), 2);
    EXPECT_EQ(form.Column(F::name), "Nut, ?/Bolt/");
    EXPECT_EQ(form.Column(F::month), "Mar/2024//");
    EXPECT_NE(form.Log().find("16(1, Locked, , The column cannot be edited)\n"), std::string::npos);
    Call(form.grid.get(), L"Undo");
    EXPECT_EQ(form.Column(F::name), "/");
    for (const TextView name : {u"a.html", u"a.xlsx"}) {
        EXPECT_EQ(Export(name), 0);
        EXPECT_GT(Read(In(name)).size(), 500U);
    }
}

TEST_F(ComboGridFiles, KeepsTheOldFileOnErrors) {
    Write(In(u"old.csv"), "old");
    const struct {
        TextView name;
        std::vector<Variant> more;
        int number;
    } cases[] = {
        {u"old.csv", {Variant(u"pdf")}, 5},
        {u"old.csv", {Variant(u""), Variant(u"")}, 5},
        {u"old.csv", {Variant(u""), Variant(u","), Variant(u"latin")}, 5},
        {u"old", {}, 5},
        {u"none\\old.csv", {}, 76},
        {u"", {Variant(u"csv")}, 75},
    };
    for (const auto& c : cases) EXPECT_EQ(Export(c.name, c.more), c.number) << Narrow(c.name);
    {
        const OpenElsewhere open(In(u"old.csv"), GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(Export(u"old.csv"), 70);
    }
    SetFileAttributesW(Wide(In(u"old.csv")), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Export(u"old.csv"), 70);
    EXPECT_EQ(Read(In(u"old.csv")), "old");
    EXPECT_FALSE(IsThere(In(u"old.csv.~new")));
}

TEST_F(ComboGridFiles, KeepsTheOldFileWhenAnExportIsCancelled) {
    Write(In(u"old.xlsx"), "old");
    Put(form.grid.get(), L"Rows", {Variant(1'000'001)});
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id != grid_event::exportProgress) return;
        EXPECT_EQ(arguments.rgvarg[1].lVal, 1'000'000);
        Answer(arguments, true);
    };
    EXPECT_EQ(Export(u"old.xlsx"), 0);
    EXPECT_EQ(form.events->Count(grid_event::exportProgress), 1U);
    EXPECT_EQ(Read(In(u"old.xlsx")), "old");
    EXPECT_FALSE(IsThere(In(u"old.xlsx.~new")));
}

}  // namespace
}  // namespace qvx::test
