// What a grid draws, as lines of text. A character is 6 pixels wide, a line 13 high, a row 16, a column 64.
#include "widgets/flexgrid/paint.h"

#include <gtest/gtest.h>

#include <sstream>

#include "common/number_text.h"
#include "tests/support/portable/recording_surface.h"
#include "widgets/flexgrid/footer.h"

namespace qvx::flexgrid {
namespace {

class FakePicture final : public Picture {
  public:
    Size PixelSize(Dpi) const override { return {10, 8}; }
};

// Two rows and columns of cells behind one header each: captions A and B, rows 1 and 2.
class PaintTest : public ::testing::Test {
  protected:
    PaintTest() {
        grid_.SetRows(3);
        grid_.SetCols(3);
        const char16_t* texts[] = {u"", u"A", u"B", u"1", u"x", u"25", u"2", u"yy", u"abcdefghijklmn"};
        for (int i = 0; i < 9; ++i) {
            grid_.SetTextArray(i, texts[i]);
        }
        grid_.SetHighLight(GridHighLight::never);
        view_.client = {200, 56};
    }

    // The lines drawn that start with one of the given words.
    std::string Drawn(const std::string& words, Rect dirty = {0, 0, 1000, 1000}) {
        RecordingSurface surface(grid_.Metrics().Resolution());
        Paint(grid_, view_, surface, dirty);
        std::istringstream all(surface.Log());
        std::string kept;
        for (std::string line; std::getline(all, line);) {
            std::istringstream wanted(words);
            for (std::string word; wanted >> word;) {
                kept += line.rfind(word + " ", 0) == 0 ? line + "\n" : "";
            }
        }
        return kept;
    }

    Grid grid_;
    View view_;
};

TEST_F(PaintTest, TextsStandOnOneLineAcrossHeadersAndCells) {
    EXPECT_EQ(Drawn("cell"),
              "cell \"x\" at 67,17 in (64,16,127,31) 8.25 &H80000008 on &H80000005\n"
              "cell \"25\" at 176,17 in (128,16,191,31) 8.25 &H80000008 on &H80000005\n"
              "cell \"yy\" at 67,33 in (64,32,127,47) 8.25 &H80000008 on &H80000005\n"
              "cell \"abcdefghijklmn\" at 131,33 in (128,32,191,47) 8.25 &H80000008 on &H80000005\n"
              "cell \"A\" at 67,1 in (65,1,127,15) 8.25 &H80000012 on &H8000000F\n"
              "cell \"B\" at 131,1 in (129,1,191,15) 8.25 &H80000012 on &H8000000F\n"
              "cell \"1\" at 54,17 in (1,17,63,31) 8.25 &H80000012 on &H8000000F\n"
              "cell \"2\" at 54,33 in (1,33,63,47) 8.25 &H80000012 on &H8000000F\n");
}

TEST_F(PaintTest, LinesOfEachKind) {
    struct Case {
        GridLineStyle style;
        GridAppearance appearance;
        const char* lines;
    };
    const char* groundAndEmpty = "fill (192,0,200,56) &H8000000F\nfill (0,48,200,56) &H8000000F\n";
    const Case cases[] = {
        {GridLineStyle::none, GridAppearance::threeD, ""},
        {GridLineStyle::flat, GridAppearance::threeD,
         "fill (64,31,192,32) &H00C0C0C0\nfill (64,47,192,48) &H00C0C0C0\n"
         "fill (127,16,128,48) &H00C0C0C0\nfill (191,16,192,48) &H00C0C0C0\n"},
        {GridLineStyle::inset, GridAppearance::threeD,
         "fill (64,16,192,17) &H80000014\nfill (64,32,192,33) &H80000014\n"
         "fill (64,16,65,48) &H80000014\nfill (128,16,129,48) &H80000014\n"
         "fill (64,31,192,32) &H80000015\nfill (64,47,192,48) &H80000015\n"
         "fill (127,16,128,48) &H80000015\nfill (191,16,192,48) &H80000015\n"},
        {GridLineStyle::raised, GridAppearance::flat,
         "fill (64,16,192,17) &H80000010\nfill (64,32,192,33) &H80000010\n"
         "fill (64,16,65,48) &H80000010\nfill (128,16,129,48) &H80000010\n"
         "fill (64,31,192,32) &H80000014\nfill (64,47,192,48) &H80000014\n"
         "fill (127,16,128,48) &H80000014\nfill (191,16,192,48) &H80000014\n"},
    };
    grid_.SetGridLinesFixed(GridLineStyle::none);
    for (const Case& c : cases) {
        grid_.SetGridLines(c.style);
        grid_.SetAppearance(c.appearance);
        EXPECT_EQ(Drawn("fill"), std::string(groundAndEmpty) + c.lines + "fill (0,0,64,16) &H8000000F\n")
            << static_cast<int>(c.style);
    }
}

TEST_F(PaintTest, TheSelectionIsHighlightedButForTheCursorWhichHasTheFrame) {
    struct Case {
        GridHighLight highLight;
        bool focused;
        GridFocusRect frame;
        const char* highlighted;
        const char* focus;
    };
    const Case cases[] = {
        {GridHighLight::always, false, GridFocusRect::light, "25yyab", ""},
        {GridHighLight::withFocus, false, GridFocusRect::light, "", ""},
        {GridHighLight::withFocus, true, GridFocusRect::light, "25yyab", "focus (64,16,127,31)\n"},
        {GridHighLight::never, true, GridFocusRect::none, "", ""},
        {GridHighLight::never, true, GridFocusRect::heavy, "",
         "invert (64,16,127,18)\ninvert (64,29,127,31)\ninvert (64,18,66,29)\ninvert (125,18,127,29)\n"},
    };
    grid_.Select(1, 1, 2, 2);
    for (std::size_t i = 0; i < 2 * std::size(cases); ++i) {
        const Case& c = cases[i / 2];
        grid_.SetMergeCells(i % 2 ? GridMerge::free : GridMerge::never);  // though there is nothing to merge
        grid_.SetHighLight(c.highLight);
        grid_.SetFocusRect(c.frame);
        view_.focused = c.focused;
        std::istringstream cells(Drawn("cell"));
        std::string highlighted;
        for (std::string line; std::getline(cells, line);) {
            if (line.find("&H8000000E on &H8000000D") != std::string::npos) {
                highlighted += line.substr(6, 2);
            }
        }
        EXPECT_EQ(highlighted, c.highlighted);
        EXPECT_EQ(Drawn("focus invert"), c.focus);
    }
    grid_.SetHighLight(GridHighLight::always);
    grid_.SetEnabled(false);
    EXPECT_EQ(Drawn("cell").find("&H8000000D"), std::string::npos) << "a disabled grid shows no selection";
}

TEST_F(PaintTest, OnlyWhatLiesInTheDirtyRectangleIsDrawn) {
    EXPECT_EQ(Drawn("clip cell fill", {70, 34, 90, 40}),
              "clip (70,34,90,40)\n"
              "cell \"yy\" at 67,33 in (64,32,127,47) 8.25 &H80000008 on &H80000005\n"
              "fill (64,47,128,48) &H00C0C0C0\nfill (127,32,128,48) &H00C0C0C0\n");
    EXPECT_EQ(Drawn("clip cell fill", {300, 0, 400, 10}), "");
}

TEST_F(PaintTest, FormatsChangeFontColoursAndPlace) {
    grid_.MoveTo(1, 1);
    grid_.SetCellFontSize(16.5);
    grid_.SetCellFontBold(true);
    grid_.SetCellForeColor(Rgb(255, 0, 0));
    grid_.SetCellBackColor(Rgb(0, 255, 0));
    grid_.SetCellAlignment(GridAlignment::rightBottom);
    grid_.SetRowHeight(1, 600);
    EXPECT_EQ(Drawn("cell", {64, 16, 100, 30}),
              "cell \"x\" at 112,28 in (64,16,127,55) 16.5b &H000000FF on &H0000FF00\n");
    grid_.SetEnabled(false);
    EXPECT_EQ(Drawn("cell", {128, 16, 129, 30}),
              "cell \"25\" at 176,29 in (128,16,191,55) 8.25 &H80000011 on &H80000005\n");
}

TEST_F(PaintTest, ALineInARowMadeForItStandsStillWhateverItsAlignment) {
    for (const GridAlignment alignment :
         {GridAlignment::leftTop, GridAlignment::leftCenter, GridAlignment::leftBottom}) {
        grid_.SetColAlignment(1, alignment);
        EXPECT_EQ(Drawn("cell", {64, 16, 70, 20}),
                  "cell \"x\" at 67,17 in (64,16,127,31) 8.25 &H80000008 on &H80000005\n");
    }
}

TEST_F(PaintTest, WrappedAndReliefTextsAndPictures) {
    grid_.SetWordWrap(true);
    grid_.SetRowHeight(2, 600);
    grid_.SetTextMatrix(2, 2, u"abcde fghij klm");
    // Two lines in the middle of 39 pixels; word break, no access keys.
    EXPECT_EQ(Drawn("text", {128, 32, 192, 80}),
              "text \"abcde fghij klm\" (131,38,188,64) 8.25 &H80000008 format 2064\n");
    grid_.SetTextStyle(GridTextStyle::insetLight);
    EXPECT_EQ(Drawn("text", {64, 16, 70, 20}),
              "text \"x\" (68,18,125,31) 8.25 &H80000014 format 2064\n"
              "text \"x\" (67,17,124,30) 8.25 &H80000008 format 2064\n");
    grid_.MoveTo(1, 2);
    grid_.SetCellPicture(std::make_shared<FakePicture>());
    grid_.SetCellPictureAlignment(GridAlignment::centerCenter);
    EXPECT_EQ(Drawn("picture", {128, 16, 192, 20}), "picture 10x8 (154,19,164,27)\n");
}

TEST_F(PaintTest, MergedCellsAreOneAndTheirTextStandsInThePartThatShows) {
    grid_.SetRows(6);
    for (int row = 1; row < 6; ++row) {
        grid_.SetTextMatrix(row, 1, u"same");
    }
    grid_.SetMergeCells(GridMerge::free);
    grid_.SetMergeCol(1, true);
    EXPECT_EQ(Drawn("cell", {64, 16, 128, 56}),
              "cell \"same\" at 67,33 in (64,16,127,63) 8.25 &H80000008 on &H80000005\n");
    grid_.SetTopRow(4);
    EXPECT_EQ(Drawn("cell", {64, 16, 128, 20}),
              "cell \"same\" at 67,25 in (64,16,127,47) 8.25 &H80000008 on &H80000005\n");
    EXPECT_EQ(CellArea(grid_, view_, 5, 1), (Rect{64, 16, 128, 48}));
    EXPECT_EQ(CellArea(grid_, view_, 2, 2), (Rect{128, -16, 192, 0})) << "scrolled away";
}

TEST_F(PaintTest, RightToLeftGridsAreMirrored) {
    grid_.SetRightToLeft(true);
    grid_.SetGridLinesFixed(GridLineStyle::flat);
    // The header column ends at the right edge, text keeps the margin from the other side, lines lie to the left.
    EXPECT_EQ(Drawn("cell fill", {0, 16, 200, 17}),
              "fill (0,16,8,17) &H8000000F\n"
              "cell \"x\" at 127,17 in (73,16,136,31) 8.25 &H80000008 on &H80000005\n"
              "cell \"25\" at 12,17 in (9,16,72,31) 8.25 &H80000008 on &H80000005\n"
              "fill (8,31,136,32) &H00C0C0C0\nfill (72,16,73,32) &H00C0C0C0\nfill (8,16,9,32) &H00C0C0C0\n"
              "cell \"1\" at 140,17 in (137,16,200,31) 8.25 &H80000012 on &H8000000F\n"
              "fill (136,31,200,32) &H00000000\nfill (136,16,137,32) &H00000000\n");
    EXPECT_EQ(CellArea(grid_, view_, 1, 2), (Rect{8, 16, 72, 32}));
    // What would look otherwise from left to right is laid out from right to left.
    grid_.SetTextMatrix(1, 1, u"(a) 5%");
    EXPECT_EQ(Drawn("text", {0, 16, 200, 17}),
              "text \"(a) 5%\" (76,17,133,30) 8.25 &H80000008 format " +
                  std::to_string(text_format::noPrefix | text_format::singleLine | text_format::rightToLeft | 2U) +
                  "\n");
    grid_.SetRightToLeft(false);
    EXPECT_EQ(Drawn("text"), "");
}

TEST_F(PaintTest, FrozenColumnsStayBesideALine) {
    grid_.SetCols(5);
    grid_.SetTextMatrix(1, 4, u"z");
    grid_.SetGridLines(GridLineStyle::none);
    grid_.SetFrozenCols(1);
    grid_.SetLeftCol(4);
    const Rect row{64, 16, 192, 17};
    EXPECT_EQ(Drawn("cell fill", row),
              "cell \"z\" at 131,17 in (128,16,192,32) 8.25 &H80000008 on &H80000005\n"
              "cell \"x\" at 67,17 in (64,16,128,32) 8.25 &H80000008 on &H80000005\n"
              "fill (127,0,128,48) &H80000015\n");
    grid_.SetColWidth(2, 0);
    grid_.SetFrozenCols(2);
    grid_.SetRightToLeft(true);
    view_.client = {196, 56};
    EXPECT_EQ(Drawn("cell fill", {60, 16, 70, 17}),
              "cell \"z\" at 59,17 in (4,16,68,32) 8.25 &H80000008 on &H80000005\n"
              "cell \"x\" at 123,17 in (68,16,132,32) 8.25 &H80000008 on &H80000005\n"
              "fill (68,0,69,48) &H80000015\n")
        << "a hidden column has no end";
}

TEST_F(PaintTest, SortedColumnsHaveAnArrowAndAPlace) {
    // What is drawn in the colour of header texts.
    const auto inked = [&](const Rect& header) {
        std::istringstream all(Drawn("fill cell text", header));
        std::string kept;
        for (std::string line; std::getline(all, line);) {
            kept += line.find("&H80000012") != std::string::npos ? line.substr(0, line.find(" &H8")) + "\n" : "";
        }
        return kept;
    };
    const Rect header{128, 0, 192, 16};
    const SortMark one[] = {{2, false}};
    grid_.SetSortMarks(one);
    EXPECT_EQ(inked(header),
              "fill (184,6,185,7)\nfill (183,7,186,8)\nfill (182,8,187,9)\nfill (181,9,188,10)\n"
              "cell \"B\" at 131,1 in (129,1,178,15) 8.25\n");
    const SortMark two[] = {{1, false}, {2, true}};
    grid_.SetSortMarks(two);
    grid_.SetColAlignment(2, GridAlignment::rightCenter);
    EXPECT_EQ(inked(header),
              "fill (175,6,182,7)\nfill (176,7,181,8)\nfill (177,8,180,9)\nfill (178,9,179,10)\n"
              "text \"2\" (183,3,189,13) 6.6\ncell \"B\" at 166,1 in (129,1,172,15) 8.25\n");
    grid_.SetRightToLeft(true);
    EXPECT_EQ(inked({8, 0, 72, 16}),
              "fill (18,6,25,7)\nfill (19,7,24,8)\nfill (20,8,23,9)\nfill (21,9,22,10)\n"
              "text \"2\" (12,3,18,13) 6.6\ncell \"B\" at 28,1 in (28,1,71,15) 8.25\n");
    const FixedTextMetrics metrics(Dpi{192, 192});
    grid_.SetTextMetrics(&metrics);
    view_.client = {400, 112};
    EXPECT_EQ(inked({16, 0, 144, 32}),
              "fill (36,12,51,13)\nfill (37,13,50,14)\nfill (38,14,49,15)\nfill (39,15,48,16)\n"
              "fill (40,16,47,17)\nfill (41,17,46,18)\nfill (42,18,45,19)\nfill (43,19,44,20)\n"
              "text \"2\" (24,5,36,26) 6.6\ncell \"B\" at 57,2 in (57,2,142,30) 8.25\n");
    RecordingSurface surface(Dpi{192, 192});
    grid_.SetTextMatrix(0, 2, u"eight c.");
    EXPECT_TRUE(IsCut(grid_, view_, surface, 0, 2)) << "beside the mark";
}

TEST_F(PaintTest, HitsOfASearchStandOutAndTheCursorMost) {
    struct Hits final : CellHits {
        bool IsHit(int row, int) const override { return row == 1; }
    } hits;
    view_.hits = &hits;
    EXPECT_EQ(Drawn("cell", {64, 0, 128, 48}),
              "cell \"x\" at 67,17 in (64,16,127,31) 8.25 &H80000017 on &H80000018\n"
              "cell \"yy\" at 67,33 in (64,32,127,47) 8.25 &H80000008 on &H80000005\n"
              "cell \"A\" at 67,1 in (65,1,127,15) 8.25 &H80000012 on &H8000000F\n");
    EXPECT_EQ(Drawn("fill", {64, 16, 191, 32}),
              "fill (64,16,127,18) &H80000017\nfill (64,29,127,31) &H80000017\n"
              "fill (64,16,66,31) &H80000017\nfill (125,16,127,31) &H80000017\n"
              "fill (128,16,191,17) &H80000017\nfill (128,30,191,31) &H80000017\n"
              "fill (128,16,129,31) &H80000017\nfill (190,16,191,31) &H80000017\n"
              "fill (64,31,192,32) &H00C0C0C0\n"
              "fill (127,16,128,32) &H00C0C0C0\nfill (191,16,192,32) &H00C0C0C0\n");
    grid_.SetHighLight(GridHighLight::always);
    grid_.Select(2, 1, 1, 2);
    EXPECT_EQ(Drawn("cell", {128, 16, 192, 32}),
              "cell \"25\" at 176,17 in (128,16,191,31) 8.25 &H8000000E on &H8000000D\n")
        << "a selected hit keeps the selection's colours";
}

TEST_F(PaintTest, MarksAreInTheCornerWhereTextEnds) {
    struct Marks final : CellMarks {
        void Prepare() const override { prepared = true; }
        bool IsMarked(int row, int col) const override { return prepared && row == 1 && col == 1; }
        bool MarksRows() const override { return rows; }
        bool IsRowMarked(int row) const override { return row == 1; }
        mutable bool prepared = false;
        bool rows = false;
    } marks;
    view_.marks = &marks;
    const auto first = [&] { return Drawn("fill", {64, 16, 128, 32}).substr(0, 52); };
    EXPECT_EQ(first(), "fill (121,16,127,17) &H000000C0\nfill (122,17,127,18)");
    grid_.SetRightToLeft(true);
    view_.client.width = 192;
    EXPECT_NE(Drawn("fill", {64, 16, 128, 32}).find("fill (65,16,71,17) &H000000C0\n"), std::string::npos);
    const auto bars = [&] {
        std::string found;
        for (const int left : {0, 64, 128}) {
            const std::string drawn = Drawn("fill", {left, 0, left + 64, 64});
            const std::size_t at = drawn.find("&H00008000");
            if (at != std::string::npos)
                found += drawn.substr(drawn.rfind("fill", at) + 5, at - drawn.rfind("fill", at) - 6);
        }
        return found;
    };
    EXPECT_EQ(bars(), "");
    marks.rows = true;
    EXPECT_EQ(bars(), "(188,17,191,31)");
    grid_.SetRightToLeft(false);
    EXPECT_EQ(bars(), "(1,17,4,31)") << "on the first cell of the row, which is a fixed one";
    grid_.SetFixedCols(0);
    grid_.SetLeftCol(1);
    EXPECT_EQ(bars(), "(0,16,3,31)") << "on the first that is shown";
}

TEST_F(PaintTest, TextThatDoesNotFitIsCut) {
    RecordingSurface surface;
    EXPECT_FALSE(IsCut(grid_, view_, surface, 2, 1));
    EXPECT_TRUE(IsCut(grid_, view_, surface, 2, 2)) << "84 pixels in 57";
    grid_.SetTextMatrix(1, 1, u"cap          ");
    EXPECT_FALSE(IsCut(grid_, view_, surface, 1, 1)) << "blanks at the end do not count";
    grid_.SetWordWrap(true);
    grid_.SetTextMatrix(2, 2, u"abc defghijk");
    EXPECT_TRUE(IsCut(grid_, view_, surface, 2, 2)) << "two lines in one";
    grid_.SetRowHeight(2, 600);
    EXPECT_FALSE(IsCut(grid_, view_, surface, 2, 2));
}

TEST_F(PaintTest, TheBorderBeingDraggedCrossesTheWindow) {
    view_.draggedColumn = 100;
    EXPECT_EQ(Drawn("invert"), "invert (99,0,100,56)\n");
    grid_.SetRightToLeft(true);
    EXPECT_EQ(Drawn("invert"), "invert (100,0,101,56)\n");
    view_.draggedColumn = -1;
    view_.draggedRow = 20;
    EXPECT_EQ(Drawn("invert"), "invert (0,19,200,20)\n");
}

TEST_F(PaintTest, AMovedColumnHasAnInvertedHeaderAndALineWhereItWouldGo) {
    view_.movedColumn = 1;
    EXPECT_EQ(Drawn("invert"), "invert (64,0,128,16)\n");
    view_.dropLine = 100;
    grid_.SetRightToLeft(true);
    EXPECT_EQ(Drawn("invert"), "invert (72,0,136,16)\ninvert (99,0,101,56)\n");
    view_.movedColumn = 99;
    EXPECT_EQ(Drawn("invert"), "");
}

TEST_F(PaintTest, TheFooterHasItsTextsBelowTheirColumns) {
    struct Texts final : CellFooter {
        Text TextOf(int col) const override { return col == 0 ? Text() : IntegerToText(10 * col); }
    } footer;
    const auto drawn = [&] {
        RecordingSurface surface(grid_.Metrics().Resolution());
        PaintFooter(grid_, view_, footer, surface, {0, 40, 200, 57});
        return surface.Log();
    };
    EXPECT_EQ(FooterHeight(grid_), 17);
    grid_.SetColAlignment(2, GridAlignment::centerCenter);
    EXPECT_EQ(drawn(),
              "fill (0,40,200,41) &H00000000\nfill (0,41,200,57) &H8000000F\nfill (63,41,64,57) &H00C0C0C0\n"
              "fill (127,41,128,57) &H00C0C0C0\ntext \"10\" (67,41,124,57) 8.25 &H80000012 format 34854\n"
              "fill (191,41,192,57) &H00C0C0C0\ntext \"20\" (131,41,188,57) 8.25 &H80000012 format 34853\n");
    grid_.SetRightToLeft(true);
    grid_.SetColWidth(1, 0);
    EXPECT_EQ(drawn(),
              "fill (0,40,200,41) &H00000000\nfill (0,41,200,57) &H8000000F\nfill (136,41,137,57) &H00C0C0C0\n"
              "fill (72,41,73,57) &H00C0C0C0\ntext \"20\" (76,41,133,57) 8.25 &H80000012 format 165925\n");
}

TEST(PaintEdges, NothingToShowIsGroundOnly) {
    Grid grid;
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetRows(0);
    grid.SetCols(0);
    View view;
    view.client = {50, 40};
    view.focused = true;
    RecordingSurface surface;
    Paint(grid, view, surface, {0, 0, 50, 40});
    EXPECT_EQ(surface.Log(), "clip (0,0,50,40)\nfill (0,0,50,40) &H8000000F\nfill (0,0,50,40) &H8000000F\nunclip\n");
}

TEST(PaintEdges, LinesAndMarginsGrowWithTheResolution) {
    Grid grid;
    const FixedTextMetrics metrics(Dpi{192, 192});
    grid.SetTextMetrics(&metrics);
    grid.SetTextMatrix(1, 1, u"x");
    View view;
    view.client = {300, 100};
    RecordingSurface surface(Dpi{192, 192});
    Paint(grid, view, surface, {128, 32, 200, 40});
    EXPECT_EQ(surface.Log(),
              "clip (128,32,200,40)\n"
              "cell \"x\" at 134,34 in (128,32,254,62) 8.25 &H80000008 on &H80000005\n"
              "fill (128,62,256,64) &H00C0C0C0\nfill (254,32,256,64) &H00C0C0C0\nunclip\n");
    grid.SetTextMetrics(nullptr);
}

}  // namespace
}  // namespace qvx::flexgrid
