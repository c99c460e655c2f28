// A database that is known by its short name, as in an archive that an old program made.
#include <windows.h>

#include <gtest/gtest.h>

#include "com/wide_text.h"
#include "controls/backup/system_services_win32.h"
#include "tests/support/files.h"
#include "tests/support/import_patch.h"

namespace qvx::test {
namespace {

using Services = backup::SystemServices;

Text renamedTo;

BOOL WINAPI RecordRename(LPCWSTR from, LPCWSTR to, DWORD flags) {
    renamedTo = FromWide(to);
    return MoveFileWithProgressW(from, to, nullptr, nullptr, flags);
}

class ShortNames : public TemporaryFolder {};

TEST_F(ShortNames, AReplacedFileKeepsItsLongOne) {
    const Text name = u"Customers of today.db";
    Write(In(name), "old");
    Write(In(u"new"), "new");
    Text shortPath(MAX_PATH, u'\0');
    shortPath.resize(GetShortPathNameW(Wide(In(name)), WideBuffer(shortPath), MAX_PATH));
    if (shortPath.find(u'~') == Text::npos) GTEST_SKIP() << "this disk has no short names";
    // Some systems let a file keep its name when it is replaced by its short one; a rename's own name must be right.
    const ImportPatch rename(GetModuleHandleW(nullptr), "MoveFileExW", reinterpret_cast<void*>(&RecordRename));
    ASSERT_TRUE(rename.Found());
    Services().ReplaceFile(In(u"new"), shortPath);
    EXPECT_EQ(Narrow(renamedTo), Narrow(In(name)));
    EXPECT_EQ(Services().FirstFile(root_, u".db"), name);
    EXPECT_EQ(Read(In(name)), "new");
}

}  // namespace
}  // namespace qvx::test
