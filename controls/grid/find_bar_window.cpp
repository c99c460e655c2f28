#include "controls/grid/find_bar_window.h"

#include <algorithm>
#include <utility>

#include "common/flag_scope.h"
#include "common/keys.h"
#include "dialogs/messages.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/handles.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::grid {
namespace {

namespace bar_texts = dialogs::messages::find_bar;

const WindowClass barClass{L"QvxFindBar"};
constexpr UINT_PTR barTimer = 1;

enum class PartKind { Label, Edit, Check, Button, Glyph };

struct PartLook {
    PartKind kind;
    TextView caption;  // which is also the name for assistive programs
};

PartLook LookOfPart(BarPart part) {
    switch (part) {
        case BarPart::TextLabel:
            return {PartKind::Label, bar_texts::textLabel};
        case BarPart::Text:
        case BarPart::With:
            return {PartKind::Edit, {}};
        case BarPart::Previous:
            return {PartKind::Glyph, bar_texts::previous};
        case BarPart::Next:
            return {PartKind::Glyph, bar_texts::next};
        case BarPart::MatchCase:
            return {PartKind::Check, bar_texts::matchCase};
        case BarPart::WholeCell:
            return {PartKind::Check, bar_texts::wholeCell};
        case BarPart::InColumn:
            return {PartKind::Check, bar_texts::inColumn};
        case BarPart::WithLabel:
            return {PartKind::Label, bar_texts::withLabel};
        case BarPart::Replace:
            return {PartKind::Button, bar_texts::replace};
        case BarPart::ReplaceAll:
            return {PartKind::Button, bar_texts::replaceAll};
        case BarPart::Close:
            return {PartKind::Glyph, bar_texts::close};
        default:
            return {PartKind::Label, {}};
    }
}

BarField FieldOfPart(BarPart part) {
    if (part == BarPart::Text) return BarField::Text;
    if (part == BarPart::With) return BarField::Replacement;
    return LookOfPart(part).kind == PartKind::Check ? BarField::Choice : BarField::Button;
}

FindAction ActionOfPart(BarPart part) {
    switch (part) {
        case BarPart::Previous:
            return FindAction::Previous;
        case BarPart::Next:
            return FindAction::Next;
        case BarPart::Replace:
            return FindAction::ReplaceThis;
        case BarPart::ReplaceAll:
            return FindAction::ReplaceAll;
        case BarPart::Close:
            return FindAction::Close;
        default:
            return FindAction::None;
    }
}

BarPart PartAt(std::size_t number) { return static_cast<BarPart>(number); }

}  // namespace

// A part that can have the focus: the keys of the bar come before its own.
class FindBarWindow::Field final : public WindowSubclass {
  public:
    Field(FindBarWindow& bar, BarPart part) : bar_(bar), part_(part) {}

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        switch (message) {
            case WM_GETDLGCODE:
                // A host's dialog loop would take Tab, Enter and Escape otherwise.
                return Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
            case WM_KEYDOWN: {
                const FindAction action = DecideBarKey(static_cast<int>(wParam), ShiftState(), FieldOfPart(part_));
                dropCharacter_ = action != FindAction::None;
                if (!dropCharacter_) break;
                bar_.OnKey(part_, action);
                return 0;
            }
            case WM_CHAR:
                if (std::exchange(dropCharacter_, false)) return 0;
                break;
            case WM_SETFOCUS:
            case WM_KILLFOCUS: {
                const LifeWatch alive = Watch();
                const LRESULT result = Default(message, wParam, lParam);
                if (alive.Alive()) bar_.listener_.BarFocus();
                return result;
            }
            default:
                break;
        }
        return Default(message, wParam, lParam);
    }

    FindBarWindow& bar_;
    BarPart part_;
    bool dropCharacter_ = false;  // the one that the key produces
};

FindBarWindow::FindBarWindow(FindBarListener& listener) : listener_(listener) {}

FindBarWindow::~FindBarWindow() { Destroy(); }

// ---- Windows -------------------------------------------------------------------------------------------------------

bool FindBarWindow::CreateIn(HWND parent, bool rightToLeft) {
    rightToLeft_ = rightToLeft;
    status_.clear();
    font_.reset();
    // A mirrored window mirrors the places and the look of its children.
    const DWORD exStyle = WS_EX_CONTROLPARENT | (rightToLeft ? WS_EX_LAYOUTRTL : 0);
    if (!Create(barClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, exStyle, {}, parent)) return false;
    if (CreateParts()) return true;
    Destroy();
    return false;
}

bool FindBarWindow::CreateParts() {
    for (std::size_t i = 0; i < barParts; ++i) {
        const BarPart part = PartAt(i);
        const PartLook look = LookOfPart(part);
        const wchar_t* windowClass = L"BUTTON";
        DWORD style = WS_CHILD | WS_TABSTOP;
        DWORD exStyle = 0;
        switch (look.kind) {
            case PartKind::Label:
                windowClass = L"STATIC";
                style = WS_CHILD | SS_LEFT | SS_CENTERIMAGE | SS_NOPREFIX | SS_ENDELLIPSIS;
                break;
            case PartKind::Edit:
                windowClass = L"EDIT";
                style |= ES_AUTOHSCROLL;
                exStyle = WS_EX_CLIENTEDGE;
                break;
            case PartKind::Check:
                style |= BS_AUTOCHECKBOX;
                break;
            case PartKind::Button:
                style |= BS_PUSHBUTTON;
                break;
            case PartKind::Glyph:
                style |= BS_OWNERDRAW;
                break;
        }
        const auto id = reinterpret_cast<HMENU>(i + 1);
        const HWND window = CreateWindowExW(exStyle, windowClass, Wide(Text(look.caption)), style, 0, 0, 0, 0, Handle(),
                                            id, ModuleInstance(), nullptr);
        if (!window) return false;
        parts_[part] = window;
        if (look.kind == PartKind::Edit) {
            names_[part].SetName(part == BarPart::Text ? bar_texts::textName : bar_texts::withName);
            names_[part].Attach(window);
        }
        if (look.kind == PartKind::Label) continue;
        fields_[part] = std::make_unique<Field>(*this, part);
        if (!fields_[part]->Attach(window)) return false;
    }
    return true;
}

bool FindBarWindow::Open(HWND parent, bool rightToLeft, bool replaces) {
    if (Handle() && (rightToLeft != rightToLeft_ || GetParent(Handle()) != parent)) {
        // The texts and choices go on to the new windows.
        const Text text = TextOf(BarPart::Text);
        const Text with = TextOf(BarPart::With);
        PerBarPart<bool> chosen;
        for (const BarPart part : {BarPart::MatchCase, BarPart::WholeCell, BarPart::InColumn})
            chosen[part] = IsChosen(part);
        Destroy();
        if (!CreateIn(parent, rightToLeft)) return false;
        SetText(BarPart::Text, text);
        SetText(BarPart::With, with);
        for (const BarPart part : {BarPart::MatchCase, BarPart::WholeCell, BarPart::InColumn})
            SendMessageW(Part(part), BM_SETCHECK, chosen[part] ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    if (!Handle() && !CreateIn(parent, rightToLeft)) return false;
    replaces_ = replaces;
    open_ = true;
    return true;
}

void FindBarWindow::Hide() {
    open_ = false;
    if (!Handle()) return;
    KillTimer(Handle(), barTimer);
    ShowWindow(Handle(), SW_HIDE);
}

bool FindBarWindow::HasFocus() const {
    const HWND focus = GetFocus();
    return Handle() && focus && IsChild(Handle(), focus);
}

// ---- Layout --------------------------------------------------------------------------------------------------------

BarMeasures FindBarWindow::Measure(Dpi dpi) const {
    BarMeasures measures;
    measures.dpi = dpi;
    measures.lineHeight = font_->LineHeight();
    measures.checkWidth = SystemMetric(SM_CXMENUCHECK, dpi);
    measures.replaces = replaces_;
    const WindowDc dc(Handle());
    for (std::size_t i = 0; i < barParts; ++i)
        measures.textWidths[PartAt(i)] = font_->RunWidth(dc.Get(), LookOfPart(PartAt(i)).caption);
    measures.textWidths[BarPart::Count] = font_->RunWidth(dc.Get(), bar_texts::widest);
    return measures;
}

int FindBarWindow::Place(Size parent, const FontSpec& font, Dpi dpi) {
    if (!IsOpen()) return 0;
    if (const SharedFont wanted = AcquireFont(font, dpi); wanted != font_) {
        font_ = wanted;
        for (std::size_t i = 0; i < barParts; ++i)
            SendMessageW(Part(PartAt(i)), WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), TRUE);
    }
    const BarLayout layout = LayOutBar(Measure(dpi), parent.width);
    const int height = std::min(layout.height, parent.height);
    for (std::size_t i = 0; i < barParts; ++i) {
        Rect place = layout.places[PartAt(i)];
        const bool shown = !place.Empty();
        // A field draws its text at the top, and is therefore as high as the text.
        const int fieldHeight = font_->LineHeight() + 2 * SystemMetric(SM_CYEDGE, dpi) + 2;
        if (shown && LookOfPart(PartAt(i)).kind == PartKind::Edit && fieldHeight < place.Height()) {
            place.top += (place.Height() - fieldHeight) / 2;
            place.bottom = place.top + fieldHeight;
        }
        SetWindowPos(Part(PartAt(i)), nullptr, place.left, place.top, place.Width(), place.Height(),
                     SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    }
    SetWindowPos(Handle(), nullptr, 0, parent.height - height, parent.width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_SHOWWINDOW);
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    return height;
}

// ---- Contents ------------------------------------------------------------------------------------------------------

void FindBarWindow::Focus(BarPart part) {
    SetFocus(Part(part));
    SendMessageW(Part(part), EM_SETSEL, 0, -1);
}

Text FindBarWindow::TextOf(BarPart part) const { return Handle() ? WindowText(Part(part)) : Text(); }

void FindBarWindow::SetText(BarPart part, TextView text) {
    const ValueScope writing(writing_, true);
    SetWindowTextW(Part(part), Wide(Text(text)));
}

void FindBarWindow::SetStatus(TextView text) {
    if (!Handle() || status_ == text) return;
    status_ = text;
    SetWindowTextW(Part(BarPart::Count), Wide(status_));
    NotifyAssistive(EVENT_OBJECT_NAMECHANGE, Part(BarPart::Count), CHILDID_SELF);
}

bool FindBarWindow::IsChosen(BarPart part) const {
    return Handle() && SendMessageW(Part(part), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void FindBarWindow::StartTimer(UINT milliseconds) {
    if (Handle()) SetTimer(Handle(), barTimer, milliseconds, nullptr);
}

// ---- Input ---------------------------------------------------------------------------------------------------------

void FindBarWindow::OnKey(BarPart part, FindAction action) {
    switch (action) {
        case FindAction::NextField:
        case FindAction::PreviousField:
            MoveFocus(part, action == FindAction::NextField ? 1 : -1);
            break;
        case FindAction::SelectAll:
            SendMessageW(Part(part), EM_SETSEL, 0, -1);
            break;
        case FindAction::Push:
            listener_.BarAction(ActionOfPart(part));
            break;
        default:
            listener_.BarAction(action);
    }
}

void FindBarWindow::MoveFocus(BarPart from, int step) {
    auto number = static_cast<int>(from);
    const auto count = static_cast<int>(barParts);
    do {
        number = (number + step + count) % count;
    } while (!fields_[PartAt(static_cast<std::size_t>(number))] ||
             !IsWindowVisible(Part(PartAt(static_cast<std::size_t>(number)))));
    const BarPart part = PartAt(static_cast<std::size_t>(number));
    SetFocus(Part(part));
    if (LookOfPart(part).kind == PartKind::Edit) SendMessageW(Part(part), EM_SETSEL, 0, -1);
}

void FindBarWindow::OnCommand(BarPart part, WORD code) {
    const PartKind kind = LookOfPart(part).kind;
    if (part == BarPart::Text && code == EN_CHANGE && !writing_) listener_.BarChanged();
    if (code != BN_CLICKED) return;
    if (kind == PartKind::Check) listener_.BarChanged();
    if (kind == PartKind::Button || kind == PartKind::Glyph) listener_.BarAction(ActionOfPart(part));
}

void FindBarWindow::DrawGlyph(const DRAWITEMSTRUCT& item) const {
    RECT area = item.rcItem;
    const UINT pushed = (item.itemState & ODS_SELECTED) != 0 ? DFCS_PUSHED : 0;
    const auto part = PartAt(item.CtlID - 1);
    const UINT glyph = part == BarPart::Previous ? DFCS_SCROLLUP : DFCS_SCROLLDOWN;
    if (part == BarPart::Close)
        DrawFrameControl(item.hDC, &area, DFC_CAPTION, DFCS_CAPTIONCLOSE | pushed);
    else
        DrawFrameControl(item.hDC, &area, DFC_SCROLL, glyph | pushed);
    if ((item.itemState & ODS_FOCUS) == 0) return;
    InflateRect(&area, -3, -3);
    DrawFocusRect(item.hDC, &area);
}

LRESULT FindBarWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (lParam != 0 && LOWORD(wParam) >= 1 && LOWORD(wParam) <= barParts)
                OnCommand(PartAt(LOWORD(wParam) - 1U), HIWORD(wParam));
            return 0;
        case WM_DRAWITEM:
            DrawGlyph(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN: {
            const auto dc = reinterpret_cast<HDC>(wParam);
            SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
            SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
        }
        case WM_ERASEBKGND: {
            RECT area = ToRECT(ClientArea());
            const auto dc = reinterpret_cast<HDC>(wParam);
            ::FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
            area.bottom = area.top + 1;
            ::FillRect(dc, &area, GetSysColorBrush(COLOR_BTNSHADOW));
            return 1;
        }
        case WM_TIMER:
            KillTimer(Handle(), barTimer);
            listener_.BarTimer();
            return 0;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            listener_.BarWheel(message, wParam, lParam);
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::grid
