// What the system's file dialogs are given, and what is read from their answers.
#include "dialogs/file_dialogs.h"

#include <gtest/gtest.h>

namespace qvx {
namespace {

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

}  // namespace
}  // namespace qvx
