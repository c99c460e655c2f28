// Picture files of all kinds on their way through the system's decoders, the damaged ones among them.
#include "win/picture_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "controls/menus/menu_picture_gdi.h"
#include "tests/control/host_form.h"
#include "win/handles.h"

namespace qvx::host {
namespace {

class PictureFile : public ::testing::Test {
  protected:
    PictureFile() {
        wchar_t folder[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        path_ = std::wstring(folder) + L"qvx_picture_file.bin";
    }
    ~PictureFile() override { DeleteFileW(path_.c_str()); }
    void Write(const std::string& bytes) const {
        std::ofstream(path_.c_str(), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    // What a load does: the picture, null for one that holds none, or the number of the error.
    ComPtr<IPictureDisp> Loaded(int* error = nullptr) const {
        try {
            return qvx::LoadPictureFile(Text(FromWide(path_)));
        } catch (const RunTimeError& failure) {
            if (error) *error = failure.Number();
        } catch (const ComError&) {
            if (error) *error = -1;
        }
        return nullptr;
    }
    // On a menu item, as it is and greyed.
    static void Draw(IPictureDisp* picture) {
        const auto plain = std::make_shared<menus::MenuPicture>(picture);
        const menus::DisabledMenuPicture grey(plain);
        const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
        const UniqueBitmap bitmap(CreateBitmap(20, 20, 1, 32, nullptr));
        const SelectedObject selected(dc.Get(), bitmap.Get());
        if (plain->Empty()) return;
        plain->Draw(dc.Get(), {2, 2, 18, 18});
        grey.Draw(dc.Get(), {2, 2, 18, 18});
    }
    static std::string Sample(const char16_t* name) {
        return test::Read(SourceFile(u"/samples/pictures/" + Text(name)));
    }

    std::wstring path_;
};

TEST_F(PictureFile, WhatIsNoPictureIsRefused) {
    int error = 0;
    EXPECT_FALSE(Loaded(&error));
    EXPECT_EQ(error, 53) << "there is no file";
    for (const std::string& bytes :
         {std::string(), std::string("hello"), std::string("BM"), Sample(u"tools.bmp").substr(0, 200)}) {
        Write(bytes);
        error = 0;
        EXPECT_FALSE(Loaded(&error)) << bytes.size();
        EXPECT_NE(error, 0);
    }
    // Gigabytes, and more of them than the file's few bytes could ever be.
    Write(Sample(u"tools.bmp").replace(18, 8, std::string("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F", 8)));
    EXPECT_FALSE(Loaded(&error));
    EXPECT_EQ(error, 481);
}

// Whatever happens to a file's bytes: a picture that can be drawn, or none.
TEST_F(PictureFile, DamagedFilesDoNoHarm) {
    const std::string files[] = {Sample(u"tools.bmp"), Sample(u"new.ico")};
    std::mt19937 random(1);
    int drawn = 0;
    for (int i = 0; i < 400; ++i) {
        std::string file = files[random() % 2];
        const bool header = random() % 2 == 0;
        for (unsigned changes = 1 + random() % 4; changes > 0; --changes) {
            file[random() % (header ? std::min<std::size_t>(file.size(), 70) : file.size())] =
                static_cast<char>(random());
        }
        if (random() % 8 == 0) file.resize(random() % file.size());
        Write(file);
        if (const auto picture = Loaded()) {
            Draw(picture.get());
            ++drawn;
        }
    }
    EXPECT_GT(drawn, 30);
}

}  // namespace
}  // namespace qvx::host
