#include "bench/windows/host_form.h"

#include "bench/support/workload.h"
#include "bench/windows/list_view.h"

namespace qvx::bench {

void Require(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

HostOptions::HostOptions(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--quick") quick = true;
        if (argument.rfind("--only=", 0) == 0) only = argument.substr(7);
        if (argument.rfind("--kind=", 0) == 0) kind = argument.substr(7);
    }
}

std::wstring ServerPath() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring file = path;
    file.resize(file.find_last_of(L"\\/") + 1);
    return file + L"Qvx.ocx";
}

// ---- The library ---------------------------------------------------------------------------------------------------

LoadedServer::LoadedServer() : module_(LoadLibraryW(ServerPath().c_str())) {
    Require(module_ != nullptr, "loading Qvx.ocx");
    const auto getClassObject = Export<ClassObject>(module_, "DllGetClassObject");
    for (const CLSID& id :
         {CLSID_Button, CLSID_RButton, CLSID_TextEdit, CLSID_ComboGrid, CLSID_FlatBorder, CLSID_CMenus, CLSID_Backup}) {
        Reference<IUnknown> factory;
        Require(getClassObject(id, IID_IUnknown, reinterpret_cast<void**>(factory.Put())) == S_OK, "a class object");
        Require(CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                      &offers_.emplace_back()) == S_OK,
                "offering a class");
    }
}

LoadedServer::~LoadedServer() {
    for (const DWORD offer : offers_) CoRevokeClassObject(offer);
    Require(Export<CanUnload>(module_, "DllCanUnloadNow")() == S_OK, "releasing everything of Qvx.ocx");
    FreeLibrary(module_);
}

// ---- Forms ---------------------------------------------------------------------------------------------------------

void HandleMessages(ControlSite* control) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
        if (key && control && control->OfferKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

HostForm::HostForm()
    : window_(CreateWindowW(L"STATIC", L"Form", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 1000, 900, nullptr,
                            nullptr, nullptr, nullptr)) {
    ShowWindow(window_, SW_SHOW);
    HandleMessages();
}

HostForm::~HostForm() { DestroyWindow(window_); }

RECT HostForm::Place(int index) {
    const int x = index % 10 * 95;
    const int y = index / 10 % 20 * 40;
    return {x, y, x + 90, y + 36};
}

// ---- A grid --------------------------------------------------------------------------------------------------------

GridForm::GridForm(int cols) {
    Require(SUCCEEDED(site_.Create(CLSID_ComboGrid)), "creating a ComboGrid");
    Require(SUCCEEDED(grid_.Query(site_.Control())), "_ComboGrid");
    Reference<IDispatch> inner;
    Require(grid_->Grid(inner.Put()) == S_OK && SUCCEEDED(inner_.Query(inner.Get())), "IFlexGrid");
    Require(grid_->put_Rows(2) == S_OK && grid_->put_Cols(cols + 1) == S_OK, "sizing the grid");
    for (long col = 0; col <= cols; ++col) {
        const BSTR caption = SysAllocString((L"C" + std::to_wstring(col)).c_str());
        Require(grid_->put_TextMatrix(0, col, caption) == S_OK, "naming a column");
        SysFreeString(caption);
    }
    Require(SUCCEEDED(site_.Show({0, 0, 800, 600})), "showing");
    HandleMessages();
}

GridForm::~GridForm() {
    inner_.Reset();
    grid_.Reset();
    site_.Close();
    HandleMessages();
}

long GridForm::Rows() const {
    long rows = 0;
    Require(grid_->get_Rows(&rows) == S_OK, "Rows");
    return rows;
}

std::wstring GridForm::Cell(long row, long col) const {
    BSTR text = nullptr;
    Require(grid_->get_TextMatrix(row, col, &text) == S_OK, "TextMatrix");
    std::wstring cell(text, SysStringLen(text));
    SysFreeString(text);
    return cell;
}

void GridForm::Fill(std::size_t rows) {
    Require(grid_->put_Rows(1) == S_OK, "removing the rows");
    VARIANT atEnd{};
    atEnd.vt = VT_ERROR;
    atEnd.scode = DISP_E_PARAMNOTFOUND;
    for (std::size_t row = 1; row <= rows; ++row) {
        const std::wstring number = std::to_wstring(row);
        const std::wstring& cells = WideTexts()[row % distinctRows];
        // The first cell is the row's number too, so that no two rows are equal.
        const std::wstring text = number + L"\t" + number + cells.substr(cells.find(L'\t'));
        const BSTR item = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        Require(grid_->AddItem(item, atEnd) == S_OK, "AddItem");
        SysFreeString(item);
    }
    HandleMessages();
}

}  // namespace qvx::bench
