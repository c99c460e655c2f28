// Basket.exe: a grid and a button in a window, in C++ and plain COM, without a class library. Tab moves between them,
// Alt and a letter or Enter press the button, and the window's title shows what their events report. The controls need
// no registration: the program's manifest names the library, whose Qvx.ocx and Qvx.manifest are beside the program.
#include "control_site.h"

#include <string>

#include "Qvx.h"

namespace {

constexpr DISPID afterCellChange = 2;  // the event's number in the type library
constexpr long pieces = 2;             // a column

class Text {
  public:
    explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    ~Text() { SysFreeString(text_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    BSTR Get() const { return text_; }

  private:
    BSTR text_;
};

class Basket final : public Container {
  public:
    bool Open(HINSTANCE instance, int show);
    void Run();

    HWND Window() override { return window_; }
    void FocusEntered(ControlSite& site) override { focused_ = &site; }
    void MoveFocus(ControlSite& from, bool) override { Other(from).Focus(); }

  private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    bool OpenGrid();
    bool OpenButton();
    void OnGridEvent(DISPID event, const DISPPARAMS& arguments);
    void OnButtonEvent(DISPID event);
    bool UseKey(MSG& key);
    // With two controls, the next one is also the previous one.
    ControlSite& Other(ControlSite& site) { return &site == &grid_ ? button_ : grid_; }
    void Say(const std::wstring& text) { SetWindowTextW(window_, (L"Basket - " + text).c_str()); }
    RECT GridPlace() const;
    RECT ButtonPlace() const;

    HWND window_ = nullptr;
    ControlSite grid_{*this};
    ControlSite button_{*this};
    ControlSite* focused_ = &grid_;
    Reference<_ComboGrid> cells_;
};

Basket basket;

RECT Basket::GridPlace() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {0, 0, client.right, client.bottom > 60 ? client.bottom - 60 : 0};
}

RECT Basket::ButtonPlace() const {
    RECT client{};
    GetClientRect(window_, &client);
    return {10, client.bottom - 45, 130, client.bottom - 15};
}

bool Basket::OpenGrid() {
    if (FAILED(grid_.Create(CLSID_ComboGrid)) || FAILED(cells_.Query(grid_.Control()))) return false;
    cells_->put_FormatString(Text(L"|<Article|>Pieces").Get());
    cells_->put_ColumnsDataType(Text(L";Pieces-0;").Get());
    cells_->put_ColWidth(1, 3000);
    cells_->put_AutoAddNew(VARIANT_TRUE);
    const auto handler = [this](DISPID event, const DISPPARAMS& arguments) { OnGridEvent(event, arguments); };
    return SUCCEEDED(grid_.Listen(DIID___ComboGrid, handler)) && SUCCEEDED(grid_.Show(GridPlace()));
}

bool Basket::OpenButton() {
    Reference<_Button> button;
    if (FAILED(button_.Create(CLSID_Button)) || FAILED(button.Query(button_.Control()))) return false;
    button->put_Caption(Text(L"&Count").Get());
    const auto handler = [this](DISPID event, const DISPPARAMS&) { OnButtonEvent(event); };
    return SUCCEEDED(button_.Listen(DIID___Button, handler)) && SUCCEEDED(button_.Show(ButtonPlace()));
}

// More than 100 pieces of an article are refused: the grid puts the old text back.
void Basket::OnGridEvent(DISPID event, const DISPPARAMS& arguments) {
    if (event != afterCellChange || arguments.cArgs != 5) return;
    // Row, Col, OldData, NewData, Cancel, the last first.
    const VARIANT* given = arguments.rgvarg;
    if (V_VT(&given[3]) != VT_I4 || V_VT(&given[1]) != VT_BSTR || !V_BSTR(&given[1])) return;
    const std::wstring text = V_BSTR(&given[1]);
    if (V_I4(&given[3]) == pieces && text.size() > 2 && text != L"100") {
        *V_BOOLREF(&given[0]) = VARIANT_TRUE;
        return Say(text + L" is too many");
    }
    Say(text);
}

void Basket::OnButtonEvent(DISPID event) {
    if (event != DISPID_CLICK) return;
    long rows = 0;
    long sum = 0;
    cells_->get_Rows(&rows);
    for (long row = 1; row < rows; ++row) {
        BSTR text = nullptr;
        if (FAILED(cells_->get_TextMatrix(row, pieces, &text)) || !text) continue;
        sum += wcstol(text, nullptr, 10);
        SysFreeString(text);
    }
    Say(std::to_wstring(sum) + L" pieces");
}

bool Basket::Open(HINSTANCE instance, int show) {
    WNDCLASSW look{};
    look.lpfnWndProc = &OnMessage;
    look.hInstance = instance;
    look.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    look.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    look.lpszClassName = L"Basket";
    RegisterClassW(&look);
    window_ = CreateWindowExW(WS_EX_CONTROLPARENT, L"Basket", L"Basket", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                              CW_USEDEFAULT, CW_USEDEFAULT, 480, 320, nullptr, nullptr, instance, nullptr);
    if (!window_ || !OpenGrid() || !OpenButton()) return false;
    ShowWindow(window_, show);
    return true;
}

// Keys go to the control with the focus first, then to the access keys, and Enter last to the default button.
bool Basket::UseKey(MSG& key) {
    if (key.message < WM_KEYFIRST || key.message > WM_KEYLAST) return false;
    if (focused_->OfferKey(key)) return true;
    if (key.message == WM_SYSKEYDOWN || key.message == WM_SYSCHAR) {
        for (ControlSite* site : {&grid_, &button_}) {
            if (!site->IsAccessKey(key)) continue;
            site->Press(key);
            return true;
        }
    }
    if (key.message == WM_KEYDOWN && key.wParam == VK_RETURN && !focused_->UsesEnter()) {
        button_.Press(key);
        return true;
    }
    return false;
}

void Basket::Run() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (UseKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    // The window has gone, and its controls are inactive.
    cells_.Reset();
    grid_.Close();
    button_.Close();
}

LRESULT CALLBACK Basket::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            basket.grid_.MoveTo(basket.GridPlace());
            basket.button_.MoveTo(basket.ButtonPlace());
            return 0;
        case WM_SETFOCUS:
            // Back to the control that had the focus when the window was left.
            basket.focused_->Focus();
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show) {
    if (FAILED(OleInitialize(nullptr))) return 1;
    const bool opened = basket.Open(instance, show);
    if (opened) {
        basket.Run();
    } else {
        MessageBoxW(nullptr, L"Qvx.ocx is neither beside this program nor registered.", L"Basket", MB_ICONERROR);
    }
    OleUninitialize();
    return opened ? 0 : 1;
}
