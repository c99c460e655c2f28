// Pages as metafiles: their texts, where their cells are, and what remains when they cannot be written.
#include <gtest/gtest.h>

#include <list>
#include <map>

#include "Qvx.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/files.h"
#include "tests/support/import_patch.h"
#include "tests/support/input.h"
#include "tests/support/server_under_test.h"
#include "win/dpi.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

// The texts of a page with the positions where they begin.
struct PageTexts {
    std::string all;  // each with "/" after it
    std::vector<std::pair<std::string, POINTL>> places;

    int Left(const std::string& text) const {
        for (const auto& [found, place] : places)
            if (found == text) return static_cast<int>(place.x);
        ADD_FAILURE() << text;
        return -1;
    }
};

int CALLBACK AddText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM target) {
    if (record->iType != EMR_EXTTEXTOUTW) return 1;
    auto& texts = *reinterpret_cast<PageTexts*>(target);
    const EMRTEXT& text = reinterpret_cast<const EMREXTTEXTOUTW*>(record)->emrtext;
    const auto* letters = reinterpret_cast<const char16_t*>(reinterpret_cast<const BYTE*>(record) + text.offString);
    if (text.nChars == 0) return 1;
    texts.places.emplace_back(Narrow({letters, text.nChars}), text.ptlReference);
    texts.all += texts.places.back().first + "/";
    return 1;
}

class ComboGridPrint : public TemporaryFolder {
  protected:
    ComboGridPrint() { form.Fill({{u"Nut", u"8"}, {u"Bolt", u"7"}}); }
    long Export(TextView name) {
        return *Call(form.grid.get(), L"ExportPages", {Variant(In(name)), Variant(u"Stock")}).ToLong();
    }
    int ErrorOfExport(TextView name) {
        return ErrorOf(form.grid.get(), L"ExportPages", DISPATCH_METHOD, {Variant(In(name))});
    }
    PageTexts Page(TextView name) const {
        PageTexts texts;
        const HENHMETAFILE file = GetEnhMetaFileW(Wide(In(name)));
        EXPECT_TRUE(EnumEnhMetaFile(nullptr, file, &AddText, &texts, nullptr)) << Narrow(name);
        DeleteEnhMetaFile(file);
        return texts;
    }
    // Returns the names of the folder's files, each with "/" after it.
    std::string Files() const {
        std::string names;
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(Wide(In(u"*")), &entry);
        do {
            if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names += Narrow(FromWide(entry.cFileName)) + "/";
        } while (FindNextFileW(search, &entry));
        FindClose(search);
        return names;
    }

    F form;
};

TEST_F(ComboGridPrint, APageHasWhatTheGridShows) {
    wchar_t date[80];
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, date, 80);
    form.GoTo(1, F::name);
    form.Press(VK_F2);
    form.Type(L"z");
    Put(form.grid.get(), L"Footer", {Variant(u";Qty-0;")});
    EXPECT_EQ(1, Export(u"list.emf"));
    EXPECT_EQ("list-1.emf/", Files());
    EXPECT_EQ("Nutz/", form.Column(F::name).substr(0, 5)) << "the open edit is committed";
    const PageTexts page = Page(u"list-1.emf");
    EXPECT_EQ(
        "Stock/" + Narrow(FromWide(date)) + "/Page 1 of 1/Nutz/8/Bolt/7/Name/Qty/Rate/Month/Item/Locked/Skip/No/15/",
        page.all);
    EXPECT_LT(page.Left("Name"), page.Left("Qty"));
    Put(form.Inner().get(), L"RightToLeft", {Variant(true)});
    EXPECT_EQ(1, Export(u"list.emf"));
    EXPECT_GT(Page(u"list-1.emf").Left("Name"), Page(u"list-1.emf").Left("Qty"));
}

TEST_F(ComboGridPrint, CellsAreWhereTheyAreOnTheScreenButScaled) {
    constexpr COLORREF red = RGB(255, 0, 0);
    constexpr int times = 4;
    const auto inner = form.Inner();
    const auto width = [&](int col) { return form.Pixels(L"ColWidth", {Variant(col)}); };
    form.GoTo(2, F::qty);
    Put(inner.get(), L"CellBackColor", {Variant(static_cast<long>(red))});
    form.GoTo(1, F::name);
    Put(inner.get(), L"RowSel", {Variant(2)});
    Put(inner.get(), L"ColSel", {Variant(F::qty)});
    // Columns that are twice as wide as the room on a page are drawn at half their size.
    int others = 0;
    for (int col = F::no; col < F::skip; ++col) others += width(col);
    Put(inner.get(), L"ColWidth", {Variant(F::skip), Variant(PixelsToTwips(1350 - others, ScreenDpi().x))});
    EXPECT_EQ(1, Export(u"list.emf"));
    const HENHMETAFILE file = GetEnhMetaFileW(Wide(In(u"list-1.emf")));
    // A4 at 96 dots per inch.
    const RECT sheet{0, 0, 794 * times, 1123 * times};
    const PixelPicture picture = PictureOf({794 * times, 1123 * times}, [&](HDC dc) {
        FillRect(dc, &sheet, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        PlayEnhMetaFile(dc, file, &sheet);
    });
    DeleteEnhMetaFile(file);
    Rect cell;
    int pixels = 0;
    for (int y = 0; y < picture.size.height; ++y)
        for (int x = 0; x < picture.size.width; ++x) {
            if (picture.At(x, y) != red) continue;
            cell = cell.Union({x, y, x + 1, y + 1});
            ++pixels;
        }
    constexpr double margin = 96 * 15 / 25.4 * times;
    EXPECT_NEAR(margin + (width(F::no) + width(F::name)) * times / 2, cell.left, 2 * times);
    EXPECT_NEAR(width(F::qty) * times / 2, cell.Width(), times);
    EXPECT_NEAR(form.Pixels(L"RowHeight", {Variant(2)}) * times / 2, cell.Height(), times);
    EXPECT_GT(pixels, cell.Width() * cell.Height() * 3 / 4);
}

TEST_F(ComboGridPrint, ManyRowsAreOnManyPagesEachOnce) {
    constexpr int rows = 5000;
    Put(form.grid.get(), L"Rows", {Variant(rows + 1)});
    for (int row = 1; row <= rows; ++row)
        Put(form.grid.get(), L"TextMatrix", {Variant(row), Variant(F::name), Variant(IntegerToText(row) + u".")});
    Put(form.Inner().get(), L"TopRow", {Variant(100)});
    form.Log();
    const long pages = Export(u"list.emf");
    std::string names;
    std::string events;
    for (long page = 1; page <= pages; ++page) {
        const PageTexts texts = Page(u"list-" + IntegerToText(page) + u".emf");
        const std::string place = std::to_string(page) + " of " + std::to_string(pages);
        EXPECT_NE(std::string::npos, texts.all.find("/Page " + place + "/")) << place;
        EXPECT_NE(std::string::npos, texts.all.find("/Name/Qty/")) << place;
        for (const auto& [text, at] : texts.places)
            if (text.back() == '.') names += text;
        events += "32(" + std::to_string(page) + ", " + std::to_string(pages) + ", False)\n";
    }
    EXPECT_GT(pages, 40);
    EXPECT_FALSE(IsThere(In(u"list-" + IntegerToText(pages + 1) + u".emf")));
    std::string all;
    for (int row = 1; row <= rows; ++row) all += std::to_string(row) + ".";
    EXPECT_EQ(all, names);
    EXPECT_EQ(events, form.Log());
    Put(form.grid.get(), L"Filter", {Variant(u"[Name]=99.")});
    EXPECT_EQ(1, Export(u"few.emf"));
    EXPECT_NE(std::string::npos, Page(u"few-1.emf").all.find("/Page 1 of 1/99./Name/"));
}

// A printer of A4 paper with 300 dots per inch that only records what it is asked for.
struct FakePrinter {
    static HDC WINAPI Open(LPCWSTR, LPCWSTR name, LPCWSTR, const DEVMODEW*) {
        return lstrcmpW(name, L"Fake") == 0 ? dc = CreateCompatibleDC(nullptr) : nullptr;
    }
    static int WINAPI Ask(HDC of, int index) {
        const std::map<int, int> answers = {{LOGPIXELSX, 300},     {LOGPIXELSY, 300},     {HORZRES, 2400},
                                            {VERTRES, 3400},       {PHYSICALWIDTH, 2480}, {PHYSICALHEIGHT, 3508},
                                            {PHYSICALOFFSETX, 40}, {PHYSICALOFFSETY, 54}};
        const auto answer = answers.find(index);
        return of == dc && answer != answers.end() ? answer->second : GetDeviceCaps(of, index);
    }
    static int WINAPI StartDocument(HDC, const DOCINFOW* document) {
        log += Narrow(FromWide(document->lpszDocName)) + (document->lpszOutput ? " into a file:" : ":");
        return 1;
    }
    static int WINAPI Start(HDC) { return log += " [", 1; }
    static int WINAPI End(HDC) { return log += "]", 1; }
    static int WINAPI EndDocument(HDC) { return log += " end", 1; }
    static int WINAPI Abort(HDC) { return log += " abort", 1; }

    inline static HDC dc = nullptr;
    inline static std::string log;
};

TEST_F(ComboGridPrint, APrinterGetsAllPagesOrTheDocumentIsAborted) {
    using P = FakePrinter;
    const std::pair<const char*, void*> functions[] = {
        {"CreateDCW", reinterpret_cast<void*>(&P::Open)},
        {"GetDeviceCaps", reinterpret_cast<void*>(&P::Ask)},
        {"StartDocW", reinterpret_cast<void*>(&P::StartDocument)},
        {"StartPage", reinterpret_cast<void*>(&P::Start)},
        {"EndPage", reinterpret_cast<void*>(&P::End)},
        {"EndDoc", reinterpret_cast<void*>(&P::EndDocument)},
        {"AbortDoc", reinterpret_cast<void*>(&P::Abort)},
    };
    std::list<ImportPatch> patches;
    for (const auto& [name, function] : functions)
        ASSERT_TRUE(patches.emplace_back(ServerUnderTest::Get().Module(), name, function).Found()) << name;
    Put(form.grid.get(), L"Rows", {Variant(100)});
    const auto print = [&](const std::vector<Variant>& arguments) {
        return *Call(form.grid.get(), L"PrintGrid", arguments).ToLong();
    };
    EXPECT_EQ(2, print({Variant(u"Stock"), Variant(u"Fake")}));
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::printProgress && arguments.rgvarg[2].lVal == 2) Answer(arguments, true);
    };
    EXPECT_EQ(0, print({Variant(u"Again"), Variant(u"Fake"), Variant(In(u"out.prn"))}));
    EXPECT_EQ("Stock: [] [] endAgain into a file: [] abort", P::log);
    EXPECT_EQ("", Files());
}

TEST_F(ComboGridPrint, ThePreviewTurnsPagesByKeys) {
    Put(form.grid.get(), L"Rows", {Variant(201)});
    std::vector<std::vector<COLORREF>> seen;
    const Person person([&] {
        const HWND preview = WaitForWindow(L"QvxPreview");
        if (!preview) return;
        for (const int key : {VK_HOME, VK_NEXT, VK_END, VK_PRIOR, VK_HOME}) {
            TypeKey(key);
            WaitFor([] { return false; }, 300, false);
            seen.push_back(PictureOnScreen(preview).pixels);
        }
        TypeKey(VK_ESCAPE);
    });
    EXPECT_EQ(0, Call(form.grid.get(), L"PrintPreview", {Variant(u"Stock")}).ToLong());
    ASSERT_EQ(5U, seen.size());
    EXPECT_EQ(seen[0], seen[4]);
    for (int page = 1; page < 4; ++page) EXPECT_NE(seen[0], seen[page]) << page;
    EXPECT_NE(seen[2], seen[3]);
}

TEST_F(ComboGridPrint, ErrorsAndCancellingLeaveTheOldFiles) {
    Put(form.grid.get(), L"Rows", {Variant(201)});
    Write(In(u"old-1.emf"), "old");
    Write(In(u"old-2.emf"), "old");
    SetFileAttributesW(Wide(In(u"old-2.emf")), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(70, ErrorOfExport(u"old.emf"));
    EXPECT_EQ(5, ErrorOf(form.grid.get(), L"ExportPages", DISPATCH_METHOD, {Variant(u".emf")}));
    SetFileAttributesW(Wide(In(u"old-2.emf")), FILE_ATTRIBUTE_NORMAL);
    const std::pair<const char*, std::function<void(DISPPARAMS&)>> handlers[] = {
        {"5", [&](DISPPARAMS&) { Put(form.grid.get(), L"Rows", {Variant(202)}); }},
        {"0", [&](DISPPARAMS& arguments) { Answer(arguments, true); }},
    };
    for (const auto& [error, handler] : handlers) {
        form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
            if (id == grid_event::printProgress && arguments.rgvarg[2].lVal == 2) handler(arguments);
        };
        EXPECT_EQ(error, std::to_string(ErrorOfExport(u"old.emf")));
    }
    EXPECT_EQ(0, Export(u"old.emf"));
    EXPECT_EQ("old-1.emf/old-2.emf/", Files());
    EXPECT_EQ("oldold", Read(In(u"old-1.emf")) + Read(In(u"old-2.emf")));
}

}  // namespace
}  // namespace qvx::test
