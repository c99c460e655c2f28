// What the system is told and asked: key strokes, the open dialog's record, the short date pattern.
#include <gtest/gtest.h>

#include "common/file_dialogs.h"
#include "common/locale.h"
#include "common/send_key.h"

namespace qvx {
namespace {

TEST(SendKey, StrokesInOrder) {
    using Strokes = std::vector<KeyStroke>;
    EXPECT_EQ(KeyStrokes(9, 0), (Strokes{{9, false}, {9, true}}));
    EXPECT_EQ(KeyStrokes(9, -1), (Strokes{{9, false}, {9, true}}));
    EXPECT_EQ(KeyStrokes(9, 16), (Strokes{{16, false}, {9, false}, {9, true}, {16, true}}));
    EXPECT_EQ(KeyStrokes(0x109, 0), (Strokes{{9, false}, {9, true}})) << "a key is one byte";
}

TEST(OpenFileRequest, Values) {
    using namespace std::string_view_literals;
    const OpenFileRequest request = MakeOpenFileRequest(u"Restore", u"C:\\data");
    EXPECT_EQ(request.filter, u"Backup Files (*.qvx)\0*.qvx\0\0"sv);
    EXPECT_EQ(request.file.size(), 250U);
    EXPECT_EQ(request.file.substr(0, 9), u"C:\\data\0\0"sv);
    EXPECT_EQ(request.maxFile, 255U);
    EXPECT_EQ(request.defaultExtension, u"*.qvx");
    EXPECT_EQ(request.flags, 6148U);
    const Text cut = MakeOpenFileRequest(u"", Text(400, u'x')).file;
    EXPECT_EQ(cut.size(), 250U);
    EXPECT_EQ(cut.back(), u'\0') << "a long name still ends inside the buffer";
}

TEST(OpenFileRequest, Pictures) {
    using namespace std::string_view_literals;
    const OpenFileRequest request = MakePictureFileRequest();
    EXPECT_EQ(request.filter, u"(Bitmaps)\0*.bmp\0(ICons)\0*.ico\0\0"sv);
    EXPECT_EQ(request.file.find_first_not_of(u'\0'), Text::npos) << "no name at first";
    EXPECT_GE(request.maxFile, 260u);
    EXPECT_EQ(request.title, u"");
}

TEST(OpenFileRequest, ChosenFile) {
    using namespace std::string_view_literals;
    EXPECT_EQ(ChosenFile(true, u"a.qvx\0rest\0"sv), u"a.qvx");
    EXPECT_EQ(ChosenFile(false, u"a.qvx\0"sv), u"");
    EXPECT_EQ(ChosenFile(true, u"no end"sv), u"");
}

TEST(ShortDatePattern, OrderAndSeparator) {
    struct {
        const char16_t* pattern;
        ShortDateOrder order;
        const char16_t* separator;
    } const cases[] = {
        {u"M/d/yyyy", ShortDateOrder::monthDayYear, u"/"},      {u"dd.MM.yyyy", ShortDateOrder::dayMonthYear, u"."},
        {u"yyyy-MM-dd", ShortDateOrder::yearMonthDay, u"-"},    {u"d. M. yyyy", ShortDateOrder::dayMonthYear, u"."},
        {u"gg yyyy/MM/dd", ShortDateOrder::yearMonthDay, u"/"}, {u"dd'-'MM'-'yy", ShortDateOrder::dayMonthYear, u"-"},
        {u"d MMM yyyy", ShortDateOrder::dayMonthYear, u"/"},    {u"", ShortDateOrder::dayMonthYear, u"/"},
        {u"MM yyyy", ShortDateOrder::dayMonthYear, u"/"},
    };
    for (const auto& c : cases) {
        const DateSettings settings = DateSettingsOf(c.pattern, 2024);
        EXPECT_EQ(settings.order, c.order)
            << std::string(c.pattern, c.pattern + std::char_traits<char16_t>::length(c.pattern));
        EXPECT_EQ(settings.separator, c.separator);
        EXPECT_EQ(settings.currentYear, 2024);
    }
}

}  // namespace
}  // namespace qvx
