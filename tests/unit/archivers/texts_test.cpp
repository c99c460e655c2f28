#include <gtest/gtest.h>

#include "archivers/command_line.h"
#include "archivers/exit_code.h"
#include "archivers/file_names.h"
#include "archivers/file_time.h"

namespace qvx::archivers {
namespace {

TEST(ArchiverCommandLine, SplitsWordsWithoutReadingBackslashes) {
    const struct {
        TextView line;
        std::vector<Text> words;
    } cases[] = {
        {u"", {}},
        {u"PkZip.exe", {}},
        {u"\"C:\\Program Files\\PkZip.exe\"  a.zip\tb.mdb ", {u"a.zip", u"b.mdb"}},
        {u"C:\\PROGRA~1\\PkZip.exe -& A:\\AC-1-3~1.QVX C:\\D\\ACC.MDB",
         {u"-&", u"A:\\AC-1-3~1.QVX", u"C:\\D\\ACC.MDB"}},
        {u"PkunZip \"a b.zip\" \"C:\\my folder\\\"", {u"a b.zip", u"C:\\my folder\\"}},
        {u"PkunZip \"C:\\my folder\\\" \"next word\"", {u"C:\\my folder\\", u"next word"}},
        {u"x C:\\\"my folder\"\\a", {u"C:\\my folder\\a"}},
        {u"x \"\" a", {u"", u"a"}},
        {u"x \"open to the end", {u"open to the end"}},
    };
    for (const auto& test : cases)
        EXPECT_EQ(SplitCommandLine(test.line), test.words) << testing::PrintToString(test.line);
}

TEST(ArchiverCommandLine, ReadsOptionsBeforeTheNames) {
    const PackOptions options = ParsePackOptions({u"-&", u"-s64k", u"a", u"b", u"-&"});
    EXPECT_TRUE(options.spans);
    EXPECT_EQ(options.partSize, 65536u);
    EXPECT_EQ(options.archive, u"a");
    EXPECT_EQ(options.files, (std::vector<Text>{u"b", u"-&"}));
    EXPECT_TRUE(ParsePackOptions({u"-?"}).help);
    EXPECT_TRUE(ParseUnpackOptions({}).help);
    EXPECT_TRUE(ParseUnpackOptions({u"-?", u"a"}).help);
    EXPECT_EQ(ParseUnpackOptions({u"a", u"b\\"}).folder, u"b\\");
    const std::vector<std::vector<Text>> packErrors = {{u"a"},
                                                       {u"-x", u"a", u"b"},
                                                       {u"a\\", u"b"},
                                                       {u"a", u"b\\"},
                                                       {u"a", u"*\\b"},
                                                       {u"-s", u"a", u"b"},
                                                       {u"-s1", u"a", u"b"},
                                                       {u"-s9x", u"a", u"b"},
                                                       {u"-s99999999999999999999", u"a", u"b"},
                                                       {u"", u"b"}};
    for (const auto& words : packErrors)
        EXPECT_THROW(ParsePackOptions(words), ArchiveError) << testing::PrintToString(words);
    for (const std::vector<Text>& words : {std::vector<Text>{u"-&", u"a"}, {u"a", u"b", u"c"}, {u""}}) {
        EXPECT_THROW(ParseUnpackOptions(words), ArchiveError) << testing::PrintToString(words);
    }
}

TEST(ArchiverNames, SafeOnesAreOrdinary) {
    for (const TextView name :
         {u"a", u"Accounts.mdb", u"with blank.txt", u".profile", u"COM10", u"CONsole.txt", u"null",
          u"Z\u00F3\u0142w-\u65E5\u672C.db", u"sub/folder/file.x", u"folder/", u"\U0001F600", u"a..b"}) {
        EXPECT_TRUE(IsSafeName(name)) << testing::PrintToString(name);
    }
    const Text tooLong(256, u'x');
    Text tooDeep;
    for (int i = 0; i < 3000; ++i) tooDeep += u"x/";
    for (const TextView name : {TextView(u""),          TextView(u"."),          TextView(u".."),
                                TextView(u"../x"),      TextView(u"a/../../x"),  TextView(u"a/./x"),
                                TextView(u"/x"),        TextView(u"//server/x"), TextView(u"\\x"),
                                TextView(u"a\\..\\x"),  TextView(u"C:x"),        TextView(u"C:/x"),
                                TextView(u"x:stream"),  TextView(u"a//b"),       TextView(u"/"),
                                TextView(u"CON"),       TextView(u"nul"),        TextView(u"NUL.txt"),
                                TextView(u"nul .txt"),  TextView(u"a/COM1.txt"), TextView(u"LPT9"),
                                TextView(u"COM\u00B2"), TextView(u"conin$"),     TextView(u"aux.a.b"),
                                TextView(u"x."),        TextView(u"x "),         TextView(u" x"),
                                TextView(u"a /x"),      TextView(u"a./x"),       TextView(u"a\u0001"),
                                TextView(u"a\u0085"),   TextView(u"a\nb"),       TextView(u"a\0b", 3),
                                TextView(u"a*"),        TextView(u"a?"),         TextView(u"a<b"),
                                TextView(u"a|b"),       TextView(u"a\"b"),       TextView(u"exe.\u202Etxt"),
                                TextView(u"\xD800"),    TextView(u"\xDC00x"),    TextView(tooLong),
                                TextView(tooDeep)}) {
        EXPECT_FALSE(IsSafeName(name)) << testing::PrintToString(name);
    }
}

TEST(ArchiverNames, MarksOfDirectionAreNoPartOfOne) {
    for (const char16_t mark : TextView(u"\u200E\u200F\u2028\u202E\u2066\u2069\uFEFF")) {
        EXPECT_FALSE(IsSafeName(Text{u'a', mark})) << int{mark};
    }
    for (const char16_t other : TextView(u"\u200D\u2010\u2027\u202F\u2065\u206A\uFEFE\uFF00")) {
        EXPECT_TRUE(IsSafeName(Text{u'a', other})) << int{other};
    }
}

TEST(ArchiverNames, Wildcards) {
    const struct {
        TextView pattern, name;
        bool matches;
    } cases[] = {
        {u"*.*", u"noextension", true}, {u"*", u"x", true},
        {u"*.mdb", u"A.MDB", true},     {u"*.mdb", u"a.mdbx", false},
        {u"a?c", u"abc", true},         {u"a?c", u"ac", false},
        {u"*a*b", u"xaxbxb", true},     {u"*a*b", u"xaxbxc", false},
        {u"\u017B*", u"\u017C1", true}, {u"", u"a", false},
        {u"a**", u"a", true},           {u"?*", u"", false},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(MatchesWildcard(test.pattern, test.name), test.matches) << testing::PrintToString(test.pattern);
    }
}

TEST(ArchiverNames, PathsAreTakenApart) {
    EXPECT_EQ(TemporaryPath(u"C:\\x\\a.qvx", u".~pkzip"), u"C:\\x\\a.qvx.~pkzip");
    for (const TextView pair : {u"\U00010000", u"\U0001F600", u"\U0010FFFF"}) {
        EXPECT_EQ(TemporaryPath(Text(69, u'x').append(pair), u".~"), Text(69, u'x') + u".~") << "no half of a pair";
    }
    EXPECT_EQ(SplitPartPath(u"C:\\x.y\\a", 0), u"C:\\x.y\\a.z01");
    EXPECT_EQ(SplitPartPath(u"a.b.zip", 99), u"a.b.z100");
    EXPECT_EQ(Joined(u"C:", u"a"), u"C:a");
    EXPECT_EQ(FileNameOf(u"C:a"), u"a");
    EXPECT_EQ(DecodeCodePage437(Bytes{'a', 0x81, 0xE1, 0xFF}), u"a\u00FC\u00DF\u00A0");
    EXPECT_EQ(Printable(u"a\u001B[2J\u202E"), u"a?[2J?");
}

TEST(ArchiverTimes, DosTimeWithinItsBounds) {
    const struct {
        CivilTime time, kept;
    } cases[] = {
        {{1979, 12, 31, 23, 59, 59}, {1980, 1, 1, 0, 0, 0}},      {{1980, 1, 1, 0, 0, 1}, {1980, 1, 1, 0, 0, 0}},
        {{2000, 2, 29, 12, 30, 58}, {2000, 2, 29, 12, 30, 58}},   {{2026, 11, 25, 8, 50, 7}, {2026, 11, 25, 8, 50, 6}},
        {{2107, 12, 31, 23, 59, 59}, {2107, 12, 31, 23, 59, 58}}, {{2108, 1, 1, 0, 0, 0}, {2107, 12, 31, 23, 59, 58}},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(FromDosTime(DosTime(test.time)), test.kept) << test.time.year;
        EXPECT_EQ(UtcTime(FromUtcTime(test.time)), test.time) << test.time.year;
    }
    EXPECT_EQ(DosTime({1980, 1, 1, 0, 0, 0}), 0x00210000u);
    EXPECT_EQ(FromDosTime(0), (CivilTime{1980, 1, 1, 0, 0, 0}));
    EXPECT_EQ(FromDosTime(0xFFFFFFFF), (CivilTime{2107, 12, 31, 23, 59, 59}));
    EXPECT_EQ(FromDosTime(0x005F0000).day, 29) << "the 31st of February";
    EXPECT_EQ(UnixTime(FromUnixTime(-1) + 9'999'999), -1);
    EXPECT_EQ(FromUnixTime(0), 116'444'736'000'000'000);
}

TEST(ArchiverExitCodes, TheTableIsInTheirOrder) {
    for (std::size_t i = 0; i < exitTexts.size(); ++i) EXPECT_EQ(static_cast<std::size_t>(exitTexts[i].code), i);
}

}  // namespace
}  // namespace qvx::archivers
