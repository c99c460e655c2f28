#include "controls/grid/column_page_window.h"

#include <algorithm>
#include <utility>

#include "common/flag_scope.h"
#include "common/keys.h"
#include "common/locale.h"
#include "common/run_time_error.h"
#include "win/dpi.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::grid {
namespace {

// Identifiers of the parts: first the settings of a column by their own numbers. Those below are a dialog's buttons.
enum PagePart : short {
    partSettings = 20,
    partCaption = partSettings + static_cast<short>(ColumnSetting::last) + 1,
    partWidth,
    partSide,
    partField,
    partFormat,
    partFrozen,
    partList,
    partNew,
    partRemove,
    partDuplicate,
    partUp,
    partDown,
    partHint,
    partStrip
};

constexpr short PartOf(ColumnSetting setting) { return static_cast<short>(partSettings + static_cast<short>(setting)); }

constexpr short partDataType = PartOf(ColumnSetting::dataType);
constexpr short partMaxLength = PartOf(ColumnSetting::maxLength);

enum class PageKind : short { list, edit, number, choice, check, button, hint };

struct PagePlace {
    short id;
    PageKind kind;
    short x, y, width, height;  // pixels at 96 dots per inch
    // Of a list or a field, the label before it.
    const wchar_t* caption;
    const wchar_t* choices = nullptr;  // each with its NUL
};

constexpr short labelX = 178;
constexpr short labelWidth = 76;
constexpr short fieldX = 256;
constexpr short fieldWidth = 237;
constexpr short numberWidth = 80;

constexpr PagePlace Field(short id, PageKind kind, short row, const wchar_t* caption,
                          const wchar_t* choices = nullptr) {
    const short width = kind == PageKind::number ? numberWidth : fieldWidth;
    return {id, kind, fieldX, static_cast<short>(7 + 22 * row), width, 20, caption, choices};
}

constexpr PagePlace Check(ColumnSetting setting, short col, short row, const wchar_t* caption) {
    return {PartOf(setting),
            PageKind::check,
            static_cast<short>(labelX + 106 * col),
            static_cast<short>(206 + 19 * row),
            105,
            18,
            caption};
}

constexpr PagePlace Button(short id, short x, short y, short width, const wchar_t* caption) {
    return {id, PageKind::button, x, y, width, 23, caption};
}

// In the order of the Tab key. Alt+A belongs to the frame's Apply.
constexpr PagePlace parts[] = {
    {partList, PageKind::list, 7, 23, 160, 150, L"&Columns"},
    Button(partNew, 7, 177, 46, L"&New"),
    Button(partRemove, 55, 177, 52, L"&Remove"),
    Button(partDuplicate, 109, 177, 58, L"&Duplicate"),
    Button(partUp, 7, 202, 79, L"Move &up"),
    Button(partDown, 88, 202, 79, L"Move do&wn"),
    Field(partCaption, PageKind::edit, 0, L"Header &text"),
    Field(partWidth, PageKind::number, 1, L"Widt&h (twips)"),
    {partFrozen, PageKind::check, 350, 29, 143, 20, L"Fro&zen"},
    Field(partSide, PageKind::choice, 2, L"A&lignment", L"General\0Left\0Centre\0Right\0"),
    Field(partDataType, PageKind::choice, 3, L"Data t&ype", L"Any text\0Digits\0Numbers\0Dates\0"),
    Field(PartOf(ColumnSetting::sign), PageKind::choice, 4, L"&Sign",
          L"Any\0Below 0\0"
          L"0 or below\0Above 0\0"
          L"0 or above\0Other than 0\0"),
    Field(PartOf(ColumnSetting::footer), PageKind::choice, 5, L"&Footer",
          L"Nothing\0Sum\0Number of entries\0Average\0Sum of all rows\0Number in all rows\0Average of all rows\0"),
    Field(partMaxLength, PageKind::number, 6, L"Ma&x. length"),
    Field(partField, PageKind::edit, 7, L"&Bound field"),
    Field(partFormat, PageKind::edit, 8, L"For&mat"),
    Check(ColumnSetting::required, 0, 0, L"Re&quired"),
    Check(ColumnSetting::list, 1, 0, L"P&ick list"),
    Check(ColumnSetting::listOnly, 2, 0, L"List &only"),
    Check(ColumnSetting::inactive, 0, 1, L"R&ead-only"),
    Check(ColumnSetting::skipped, 1, 1, L"Tab sto&p"),
    Check(ColumnSetting::invisible, 2, 1, L"&Visible"),
    {partHint, PageKind::hint, 7, 246, 486, 14, L""},
};
constexpr Rect stripPlace{7, 261, 493, 323};

struct SystemClass {
    const wchar_t* name;
    DWORD style;
    DWORD exStyle;
};

// By PageKind.
constexpr SystemClass systemClasses[] = {
    {L"LISTBOX", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, WS_EX_CLIENTEDGE},
    {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL | ES_NUMBER, WS_EX_CLIENTEDGE},
    {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, 0},
    {L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX, 0},
    {L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 0},
    {L"STATIC", SS_NOPREFIX, 0},
};
constexpr SystemClass labelClass{L"STATIC", SS_LEFT, 0};
constexpr short dropHeight = 160;

bool HasLabel(PageKind kind) { return kind < PageKind::check; }

PageKind KindOf(int id) {
    return std::find_if(std::begin(parts), std::end(parts), [&](const PagePlace& part) { return part.id == id; })->kind;
}

// The labels have the numbers of their fields, from here on.
constexpr int labels = 100;

// Whether a box is checked for what a list does not say.
bool IsOpposite(ColumnSetting setting) {
    return setting == ColumnSetting::skipped || setting == ColumnSetting::invisible;
}

const WindowClass columnPageWindowClass{L"QvxColumnPage"};
constexpr wchar_t preview[] = L"Preview";
constexpr wchar_t endsWithSpaces[] =
    L"Preview. The header text ends with spaces, which belong to it and make the column wider.";

}  // namespace

ColumnPageWindow::ColumnPageWindow(PageOwner& owner) : PageWindow(columnPageWindowClass, owner) {
    draft_.Show(SystemNumberSigns(), SystemDateSettings());
    strip_.Model().SetFocusRect(flexgrid::GridFocusRect::none);
    strip_.AddEvents(this);
}

ColumnPageWindow::~ColumnPageWindow() {
    showing_ = true;
    strip_.RemoveEvents(this);
    strip_.Destroy();
    Destroy();
}

// ---- Windows -------------------------------------------------------------------------------------------------------

bool ColumnPageWindow::Build() {
    const ValueScope showing(showing_, true);
    shown_.reset();
    const auto create = [&](const SystemClass& made, const wchar_t* caption, int id) {
        return CreateWindowExW(made.exStyle, made.name, caption, WS_CHILD | WS_VISIBLE | made.style, 0, 0, 0, 0,
                               Handle(), reinterpret_cast<HMENU>(INT_PTR{id}), ModuleInstance(), nullptr);
    };
    for (const PagePlace& part : parts) {
        const bool labelled = HasLabel(part.kind);
        if (labelled && !create(labelClass, part.caption, labels + part.id)) return false;
        const wchar_t* caption = labelled ? L"" : part.caption;
        if (!create(systemClasses[static_cast<std::size_t>(part.kind)], caption, part.id)) return false;
        for (const wchar_t* choice = part.choices; choice && *choice; choice += wcslen(choice) + 1)
            Send(part.id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(choice));
    }
    Send(partWidth, EM_SETLIMITTEXT, 5);
    Send(partMaxLength, EM_SETLIMITTEXT, 9);
    if (!strip_.CreateIn(Handle(), {}, partStrip)) return false;
    ShowList();
    return true;
}

void ColumnPageWindow::Layout() {
    if (!strip_.Handle()) return;
    const Dpi dpi = WindowDpi(Handle());
    const SharedFont before = std::exchange(shown_, AcquireFont(font, dpi));
    const auto place = [&](int id, const Rect& area) {
        Send(id, WM_SETFONT, reinterpret_cast<WPARAM>(shown_->Get()), TRUE);
        SetWindowPos(Item(id), nullptr, area.left, area.top, area.Width(), area.Height(),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const auto scaled = [&](const Rect& area) {
        return Rect{Scaled(area.left, dpi.x), Scaled(area.top, dpi.y), Scaled(area.right, dpi.x),
                    Scaled(area.bottom, dpi.y)};
    };
    for (const PagePlace& part : parts) {
        Rect area{part.x, part.y, part.x + part.width, part.y + part.height};
        if (part.kind == PageKind::list) {
            place(labels + part.id, scaled({area.left, margin, area.right, area.top}));
        } else if (HasLabel(part.kind)) {
            place(labels + part.id, scaled({labelX, area.top + 3, labelX + labelWidth, area.bottom}));
        }
        if (part.kind == PageKind::choice) area.bottom += dropHeight;
        place(part.id, scaled(area));
    }
    // What the frame has more of goes to the columns.
    Rect strip = scaled(stripPlace);
    const Rect room = ClientArea();
    strip.right = std::max(strip.right, room.right - Scaled(margin, dpi.x));
    strip.bottom = std::max(strip.bottom, room.bottom - Scaled(margin, dpi.y));
    strip_.MoveTo(strip);
}

void ColumnPageWindow::TakeFocus() const { SetFocus(Item(partList)); }

// ---- Input ---------------------------------------------------------------------------------------------------------

void ColumnPageWindow::EnterCaption() {
    SetFocus(Item(partCaption));
    Send(partCaption, EM_SETSEL, 0, -1);
}

bool ColumnPageWindow::TranslateKey(MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    const int key = static_cast<int>(message.wParam);
    const int shift = ShiftState();
    int part = 0;
    if (key == keys::f2 && shift == 0) {
        EnterCaption();
        return true;
    }
    if (message.hwnd != Item(partList)) return false;
    if (shift == 0) part = key == keys::insert ? partNew : key == keys::deleteKey ? partRemove : 0;
    if (shift == keys::controlMask) part = key == keys::up ? partUp : key == keys::down ? partDown : 0;
    if (part != 0 && IsWindowEnabled(Item(part))) Change(part);
    return part != 0;
}

LRESULT ColumnPageWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const int id = LOWORD(wParam);
    if (message != WM_COMMAND || id < partSettings || id >= partHint)
        return PageWindow::OnMessage(message, wParam, lParam);
    if (showing_) return 0;
    const auto keep = Owner().Hold();
    OnCommand(id, HIWORD(wParam));
    return 0;
}

void ColumnPageWindow::OnCommand(int id, int code) {
    switch (KindOf(id)) {
        case PageKind::list:
            if (code == LBN_SELCHANGE) Select(static_cast<int>(Send(id, LB_GETCURSEL)));
            if (code == LBN_DBLCLK) EnterCaption();
            break;
        case PageKind::edit:
        case PageKind::number:
            if (code == EN_KILLFOCUS) FinishEntry();
            if (code != EN_CHANGE) break;
            typed_ = id;
            Owner().Changed();
            break;
        case PageKind::choice:
            if (code == CBN_SELCHANGE) Change(id);
            break;
        default:
            if (code == BN_CLICKED) Change(id);
    }
}

void ColumnPageWindow::Click() {
    const int col = strip_.MouseCol();
    TakeFocus();
    if (col >= 0 && col < draft_.Count()) Select(col);
}

void ColumnPageWindow::FinishEntry() {
    if (const int id = std::exchange(typed_, 0)) Change(id);
}

void ColumnPageWindow::Change(int id) {
    try {
        Execute(id);
        Owner().Changed();
    } catch (const RunTimeError&) {
        // The field gets its earlier value.
        MessageBeep(MB_OK);
    }
    if (id == partCaption || id == partWidth || KindOf(id) == PageKind::button)
        ShowList();
    else
        ShowColumn();
    if (id == partNew || id == partDuplicate) EnterCaption();
}

void ColumnPageWindow::Execute(int id) {
    const auto number = [&] { return static_cast<int>(GetDlgItemInt(Handle(), id, nullptr, FALSE)); };
    const auto choice = [&] { return static_cast<int>(Send(id, CB_GETCURSEL)); };
    const int next = draft_.Count() > 0 ? current_ + 1 : 0;
    switch (id) {
        case partNew:
            draft_.Insert(next);
            current_ = next;
            break;
        case partDuplicate:
            draft_.Duplicate(current_);
            current_ = next;
            break;
        case partRemove:
            draft_.Remove(current_);
            current_ = std::max(0, std::min(current_, draft_.Count() - 1));
            break;
        case partUp:
            draft_.Move(current_, current_ - 1);
            --current_;
            break;
        case partDown:
            draft_.Move(current_, next);
            current_ = next;
            break;
        case partCaption:
            draft_.Rename(current_, WindowText(Item(id)));
            break;
        case partWidth:
            draft_.SetWidth(current_, number());
            break;
        case partSide:
            draft_.SetSide(current_, static_cast<ColumnSide>(choice()));
            break;
        case partField:
            draft_.SetField(current_, WindowText(Item(id)));
            break;
        case partFormat:
            draft_.SetFormat(current_, WindowText(Item(id)));
            break;
        case partFrozen:
            draft_.SetFrozen(current_, Send(id, BM_GETCHECK) == BST_CHECKED);
            break;
        default: {
            const auto setting = static_cast<ColumnSetting>(id - partSettings);
            const PageKind kind = KindOf(id);
            const bool checked = kind == PageKind::check && Send(id, BM_GETCHECK) == BST_CHECKED;
            draft_.Set(current_, setting,
                       kind == PageKind::number   ? number()
                       : kind == PageKind::choice ? choice() - 1
                                                  : checked != IsOpposite(setting));
        }
    }
}

// ---- Contents ------------------------------------------------------------------------------------------------------

void ColumnPageWindow::Select(int col) {
    current_ = std::max(col, 0);
    Send(partList, LB_SETCURSEL, static_cast<WPARAM>(current_));
    ShowColumn();
}

void ColumnPageWindow::ShowList() {
    Send(partList, WM_SETREDRAW, FALSE);
    Send(partList, LB_RESETCONTENT);
    for (int col = 0; col < draft_.Count(); ++col) {
        Text caption = draft_.Caption(col);
        if (caption.empty()) caption = u"(no header)";
        Send(partList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(caption)));
    }
    Send(partList, WM_SETREDRAW, TRUE);
    InvalidateRect(Item(partList), nullptr, TRUE);
    Select(current_);
}

void ColumnPageWindow::ShowColumn() {
    const ValueScope showing(showing_, true);
    const bool any = draft_.Count() > 0;
    const Text caption = any ? draft_.Caption(current_) : Text();
    const Text field = any ? draft_.Field(current_) : Text();
    const Text format = any ? Text(draft_.Format(current_)) : Text();
    for (const PagePlace& part : parts) {
        bool possible = any;
        const auto setting = static_cast<ColumnSetting>(part.id - partSettings);
        const int value = any && part.id < partCaption ? draft_.Setting(current_, setting) : 0;
        switch (part.kind) {
            case PageKind::choice: {
                const int choice = part.id == partSide && any ? static_cast<int>(draft_.Side(current_)) : value + 1;
                Send(part.id, CB_SETCURSEL, static_cast<WPARAM>(choice));
                break;
            }
            case PageKind::check:
                if (part.id == partFrozen) possible = any && draft_.CanFreeze(current_);
                Send(part.id, BM_SETCHECK,
                     part.id == partFrozen ? any && draft_.Frozen(current_)
                                           : any && (value != 0) != IsOpposite(setting));
                break;
            case PageKind::edit:
                SetDlgItemTextW(Handle(), part.id,
                                Wide(part.id == partCaption  ? caption
                                     : part.id == partFormat ? format
                                                             : field));
                break;
            case PageKind::number:
                SetDlgItemInt(Handle(), part.id,
                              static_cast<UINT>(part.id == partWidth && any ? draft_.Width(current_) : value), FALSE);
                break;
            case PageKind::hint:
                SetDlgItemTextW(Handle(), part.id, caption.ends_with(u' ') ? endsWithSpaces : preview);
                continue;
            default:
                if (part.id == partRemove) possible = draft_.CanRemove();
                if (part.id == partUp) possible = any && current_ > 0;
                if (part.id == partDown) possible = current_ + 1 < draft_.Count();
                if (part.id == partNew || part.id == partList) continue;
        }
        if (!possible && GetFocus() == Item(part.id)) TakeFocus();
        EnableWindow(Item(part.id), possible);
    }
    if (!any) return;
    strip_.Model().Select(0, current_, 1, current_);
    strip_.ScrollIntoView(1, current_);
}

}  // namespace qvx::grid
