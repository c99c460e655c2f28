// Undo, redo and the clipboard by real keys and as members, and what the host hears of them.
#include <gtest/gtest.h>

#include "Qvx.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

std::string Narrow(TextView text) {
    std::string out;
    for (const char16_t c : text) out += c == u'\r' ? '/' : c == u'\n' ? ' ' : c == u'\t' ? '|' : static_cast<char>(c);
    return out;
}

class Clipboard {
  public:
    explicit Clipboard(HWND owner) {
        EXPECT_TRUE(WaitFor([&] { return OpenClipboard(owner) != FALSE; }, 1000, false));
    }
    ~Clipboard() { CloseClipboard(); }
    static void Put(F& form, TextView text) {
        const Clipboard clipboard(form.container.Window());
        EmptyClipboard();
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
        auto* units = static_cast<char16_t*>(GlobalLock(memory));
        units[text.copy(units, text.size())] = 0;
        GlobalUnlock(memory);
        SetClipboardData(CF_UNICODETEXT, memory);
    }
    static std::string Get(F& form) {
        const Clipboard clipboard(form.container.Window());
        const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
        if (!memory) return "nothing";
        const std::string text = Narrow(static_cast<const char16_t*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        return text;
    }
};

std::string Row(const F& form, int row) {
    std::string cells;
    for (int col = F::name; col <= F::item; ++col) cells += (col > F::name ? "|" : "") + Narrow(form.Cell(row, col));
    return cells;
}

bool Can(const F& form, const wchar_t* property) { return *Call(form.grid.get(), property).ToBool(); }

TEST(ComboGridClipboard, CopiesAndPastesByKeysOneCellAfterTheOther) {
    F form;
    form.SetCell(1, F::name, u"Nut");
    form.SetCell(1, F::qty, u"8");
    form.GoTo(1, F::name);
    Put(form.Inner().get(), L"ColSel", {Variant(int{F::qty})});
    form.Log();
    EXPECT_FALSE(form.Press('C', {VK_CONTROL}));
    EXPECT_EQ("Nut|8/ ", Clipboard::Get(form));
    EXPECT_TRUE(IsClipboardFormatAvailable(RegisterClipboardFormatW(L"HTML Format"))) << "a table for other programs";
    EXPECT_EQ("", form.Log());
    form.GoTo(2, F::name);
    EXPECT_FALSE(form.Press('V', {VK_CONTROL}));
    EXPECT_EQ("1(2, 1, , False)\n2(2, 1, , Nut, False)\n1(2, 2, , False)\n2(2, 2, , 8, False)\n", form.Log());
    EXPECT_EQ("Nut|8|||", Row(form, 2));
    EXPECT_TRUE(Can(form, L"Changed"));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("2(2, 1, Nut, , False)\n2(2, 2, 8, , False)\n", form.Log());
    EXPECT_EQ("||||", Row(form, 2));
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ("2(2, 1, , Nut, False)\n2(2, 2, , 8, False)\n", form.Log());
    EXPECT_EQ("2,1", form.Current());
    EXPECT_FALSE(form.Frame());
    Clipboard::Put(form, u"other");
    form.Press(VK_DELETE, {VK_SHIFT});
    EXPECT_EQ("|8|||", Row(form, 2));
    EXPECT_EQ("Nut", Clipboard::Get(form));
    form.Press(VK_INSERT, {VK_SHIFT});
    EXPECT_EQ("Nut|8|||", Row(form, 2));
    EXPECT_EQ(3, form.Number(L"Rows")) << "no row was inserted or deleted";
    form.Press('A', {VK_CONTROL});
    form.Press('C', {VK_CONTROL});
    EXPECT_EQ("Nut|8||||||/ Nut|8||||||/ ", Clipboard::Get(form)) << "all but the fixed cells";
}

TEST(ComboGridClipboard, PastedCellsAreCleanedByTheEditorsListsAndTheSystemsDates) {
    F form({{L"AutoAddNew", Variant(true)}});
    Clipboard::Put(form, u"a\"b\t3.75%\t12abc\t3-2024\tba\tno\r\nlast\r\n");
    form.GoTo(2, F::name);
    form.Press('V', {VK_CONTROL});
    EXPECT_EQ("a\"b|375|12|Mar/2024|Banana", Row(form, 2));
    EXPECT_EQ(u"", form.Cell(2, F::locked));
    EXPECT_EQ("last||||", Row(form, 3));
}

TEST(ComboGridUndo, EntriesGoBackAndCannotBeKept) {
    F form;
    form.Enter(1, F::name, L"ab");
    form.GoTo(2, F::name);
    form.Press(VK_F2);
    form.Type(L"xyz");
    form.Press('Z', {VK_CONTROL});
    Call(form.grid.get(), L"Undo");
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ(u"ab", form.Cell(1, F::name)) << "an open editor has its own history";
    EXPECT_TRUE(Can(form, L"CanUndo"));
    EXPECT_FALSE(Can(form, L"CanRedo"));
    form.Press(VK_ESCAPE);
    form.Log();
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("2(1, 1, ab, , False)\n", form.Log());
    Call(form.grid.get(), L"Redo");
    EXPECT_EQ("2(1, 1, , ab, False)\n", form.Log());
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::afterCellChange) Answer(arguments, true);
    };
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ(u"", form.Cell(1, F::name)) << "this cannot be cancelled";
    Call(form.grid.get(), L"AddItem", {Variant(u"9\tz"), Variant(1)});
    EXPECT_FALSE(Can(form, L"CanUndo") || Can(form, L"CanRedo")) << "other rows begin it anew";
}

TEST(ComboGridUndo, RowsGoAndComeBack) {
    F form({{L"AutoAddNew", Variant(true)}, {L"AutoRecordNumber", Variant(true)}});
    form.SetCell(1, F::name, u"first");
    form.GoTo(1, F::name);
    form.Press(VK_INSERT);
    EXPECT_EQ("/first//", form.Column(F::name));
    EXPECT_EQ("1/2/3/", form.Column(F::no));
    EXPECT_FALSE(Can(form, L"Changed")) << "nothing is entered yet";
    form.Log();
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("2(-1, -1, , , False)\n", form.Log());
    EXPECT_EQ("first//", form.Column(F::name));
    EXPECT_EQ("1/2/", form.Column(F::no));
    form.GoTo(2, F::qty);
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ("1,2", form.Current());
    Put(form.grid.get(), L"ProjectSelection", {Variant(false)});
    Put(form.grid.get(), L"Col", {Variant(int{F::name})});
    EXPECT_EQ(form.Number(L"ForeColor"), Call(form.Inner().get(), L"CellForeColor").ToLong())
        << "it was the current cell when it went";
    form.Press('Z', {VK_CONTROL});
    form.SetCell(2, F::name, u"second");
    form.GoTo(2, F::item);
    form.Press(VK_TAB);
    EXPECT_EQ(u"3", form.Cell(3, F::no));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ(3, form.Number(L"Rows"));
}

TEST(ComboGridClipboard, AHeldClipboardIsAClearErrorAndKeysJustBeep) {
    F form;
    form.SetCell(1, F::name, u"Nut");
    form.GoTo(1, F::name);
    {
        const Clipboard held(form.container.Window());
        for (const wchar_t* method : {L"Copy", L"Cut", L"Paste"}) {
            EXPECT_EQ(521, ErrorOf(form.grid.get(), method, DISPATCH_METHOD)) << Narrow(FromWide(method));
        }
        form.Press('X', {VK_CONTROL});
        EXPECT_EQ(u"Nut", form.Cell(1, F::name)) << "what was not copied is not cut";
    }
    Call(form.grid.get(), L"Copy");
    EXPECT_EQ("Nut", Clipboard::Get(form));
}

}  // namespace
}  // namespace qvx::test
