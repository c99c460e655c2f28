// The mail with an archive, as the mail program gets it.
#include <windows.h>

#include <gtest/gtest.h>

#include "controls/backup/system_services_win32.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_mail.h"
#include "tests/support/files.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using Services = backup::SystemServices;

constexpr ULONG unicodeNotSupported = 27;

const Text archive = u"C:\\Copies\\Sh-1-3.qvx";

Raised Send(const Text& path = archive) {
    Raised failed = RaisedBy([&] { Services().SendMail({u"Database", path, path}); });
    EXPECT_EQ(failed.words.find(u"Copies"), Text::npos) << Narrow(failed.words);
    return failed;
}

TEST(BackupMail, GoesThroughTheMailProgramsOwnDialog) {
    FakeMail mail(GetModuleHandleW(nullptr));
    EXPECT_EQ(Send().number, 0);
    // A new session with its logon shown (1 and 2) and no download of mail; the dialog for the message (8).
    EXPECT_EQ(mail.Take(),
              u"logon (null) (null) flags 3\n"
              u"send flags 8 subject Database text [] recipients 0\n"
              u"0: C:\\Copies\\Sh-1-3.qvx as C:\\Copies\\Sh-1-3.qvx\n"
              u"logoff\n");
    EXPECT_EQ(mail.LoadFlags(), static_cast<DWORD>(LOAD_LIBRARY_SEARCH_SYSTEM32));
}

TEST(BackupMail, FailuresComeOutInWordsAndSessionsEnd) {
    FakeMail mail(GetModuleHandleW(nullptr));
    const struct {
        ULONG logon;
        ULONG send;
        int number;
        const char16_t* words;
    } cases[] = {{3, 0, 32003, u"logon"}, {0, 1, 32001, u"cancelled"}, {0, 999, 32002, u"failed"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.number);
        mail.Answer(c.logon, c.send, 0);
        const Raised failed = Send();
        EXPECT_EQ(failed.number, c.number);
        EXPECT_NE(failed.words.find(c.words), Text::npos) << Narrow(failed.words);
        EXPECT_EQ(mail.Take().find(u"\nlogoff\n") != Text::npos, c.logon == 0);
    }
    mail.Install(false);
    const Raised failed = Send();
    EXPECT_EQ(failed.number, 32002);
    EXPECT_NE(failed.words.find(u"No mail program"), Text::npos);
    EXPECT_EQ(mail.Take(), u"");
}

class BackupMailNames : public TemporaryFolder {};

// Programs that read no wide characters get the short form of a name that no one code page can write.
TEST_F(BackupMailNames, AreSentInWideCharactersOrInTheirShortForm) {
    if (GetACP() == CP_UTF8) GTEST_SKIP() << "EVERY NAME CAN BE WRITTEN HERE";
    const Text path = In(u"\u0416\u00e4\u5b57 copy.qvx");
    Write(path, "");
    FakeMail mail(GetModuleHandleW(nullptr));
    EXPECT_EQ(Send(path).number, 0);
    Text asked = mail.Take();
    EXPECT_NE(
        asked.find(u"\nsend wide flags 8 subject Database text [] recipients 0\n0: " + path + u" as " + path + u"\n"),
        Text::npos)
        << Narrow(asked);
    Text shortPath(MAX_PATH, u'\0');
    shortPath.resize(GetShortPathNameW(Wide(path), WideBuffer(shortPath), MAX_PATH));
    BOOL replaced = FALSE;
    WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, Wide(shortPath), -1, nullptr, 0, nullptr, &replaced);
    for (const bool known : {true, false}) {
        mail.KnowWide(known);
        mail.Answer(0, 0, unicodeNotSupported);
        const int number = Send(path).number;
        asked = mail.Take();
        EXPECT_EQ(asked.find(u"send wide") != Text::npos, known);
        // Not every volume keeps a short form.
        EXPECT_EQ(number, replaced ? 32011 : 0);
        EXPECT_TRUE(replaced || asked.find(u"0: " + shortPath + u" as " + shortPath) != Text::npos) << Narrow(asked);
    }
}

}  // namespace
}  // namespace qvx::test
