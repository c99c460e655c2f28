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
    static std::string Bitmap(int width, int height, int bits) {
        const int row = (width * bits + 31) / 32 * 4;
        const int colors = bits <= 8 ? 4 << bits : 0;
        std::string file(static_cast<std::size_t>(54 + colors + row * std::abs(height)), '\x55');
        const auto put = [&](std::size_t at, int value, int length) {
            for (int i = 0; i < length; ++i, value >>= 8)
                file[at + static_cast<std::size_t>(i)] = static_cast<char>(value);
        };
        file[0] = 'B', file[1] = 'M';
        put(2, static_cast<int>(file.size()), 4), put(6, 0, 4), put(10, 54 + colors, 4), put(14, 40, 4);
        put(18, width, 4), put(22, height, 4), put(26, 1, 2), put(28, bits, 2);
        for (std::size_t at = 30; at < 54; at += 4) put(at, 0, 4);
        return file;
    }

    std::wstring path_;
};

TEST_F(PictureFile, WhatIsNoPictureIsRefused) {
    int error = 0;
    EXPECT_FALSE(Loaded(&error));
    EXPECT_EQ(error, 53) << "there is no file";
    for (const std::string& bytes :
         {std::string(), std::string("hello"), std::string("BM"), Bitmap(16, 16, 24).substr(0, 200)}) {
        Write(bytes);
        error = 0;
        EXPECT_FALSE(Loaded(&error)) << bytes.size();
        EXPECT_NE(error, 0);
    }
    // Gigabytes, and more of them than the file's few bytes could ever be.
    Write(Bitmap(8, 8, 1).replace(18, 8, std::string("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F", 8)));
    EXPECT_FALSE(Loaded(&error));
    EXPECT_EQ(error, 481);
}

// Whatever happens to a file's bytes: a picture that can be drawn, or none.
TEST_F(PictureFile, DamagedFilesDoNoHarm) {
    std::vector<std::string> files{Bitmap(16, 16, 24), Bitmap(9, 9, 8), Bitmap(16, 16, 1),
                                   Bytes(SourceFile(u"/samples/pictures/new.ico"))};
    std::mt19937 random(1);
    int drawn = 0;
    for (int i = 0; i < 400; ++i) {
        std::string file = files[random() % files.size()];
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
