// Compares in one Windows process: the library's rules, the control filled through its automation object as by a host,
// the grid's window on the screen, and the system's list view.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Qvx.h"
#include "bench/support/data_works.h"
#include "bench/support/floor_peer.h"
#include "bench/support/paint_works.h"
#include "bench/support/rules_peer.h"
#include "bench/support/sum_works.h"
#include "bench/windows/list_view.h"
#include "bench/windows/screens.h"
#include "com/bstr.h"
#include "com/pointer.h"
#include "common/numeric_reading.h"

namespace qvx::bench {
namespace {

void Require(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

// ---- Our control through automation --------------------------------------------------------------------------------

std::wstring serverPath;

ComPtr<IFlexGrid> CreateControlsGrid(ComPtr<IUnknown>& control) {
    static const HMODULE module = LoadLibraryW(serverPath.c_str());
    Require(module != nullptr, "loading Qvx.ocx");
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    static const auto getClassObject =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    Require(getClassObject(CLSID_ComboGrid, IID_IClassFactory, factory.put_void()) == S_OK, "DllGetClassObject");
    Require(factory->CreateInstance(nullptr, IID_IUnknown, control.put_void()) == S_OK, "creating a ComboGrid");
    ComPtr<_ComboGrid> members;
    Require(control->QueryInterface(IID__ComboGrid, members.put_void()) == S_OK, "_ComboGrid");
    ComPtr<IDispatch> grid;
    Require(members->Grid(grid.put()) == S_OK, "ComboGrid.Grid");
    ComPtr<IFlexGrid> flexGrid;
    Require(grid->QueryInterface(IID_IFlexGrid, flexGrid.put_void()) == S_OK, "IFlexGrid");
    return flexGrid;
}

const std::vector<BSTR>& BstrTexts() {
    static const std::vector<BSTR> texts = [] {
        std::vector<BSTR> rows;
        for (const std::wstring& text : WideTexts()) rows.push_back(SysAllocString(text.c_str()));
        return rows;
    }();
    return texts;
}

// Every call goes through the control's automation interface, the dual one.
class DualPeer {
  public:
    static const char* Name() { return "Qvx automation, dual"; }

    DualPeer() : grid_(CreateControlsGrid(control_)) {
        grid_->put_FixedRows(0);
        grid_->put_FixedCols(0);
        grid_->put_Rows(0);
        grid_->put_Cols(columnCount);
    }
    void Load(std::size_t rows) {
        VARIANT atEnd;
        VariantInit(&atEnd);
        atEnd.vt = VT_ERROR;
        atEnd.scode = DISP_E_PARAMNOTFOUND;
        for (std::size_t i = 0; i < rows; ++i)
            Require(grid_->AddItem(BstrTexts()[i % distinctRows], atEnd) == S_OK, "AddItem");
    }
    double Sum() {
        double sum = 0;
        for (std::size_t row = 0, rows = Rows(); row < rows; ++row) {
            Bstr text = Read(row, sumColumn);
            sum += NumericValue(text.View());
        }
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        for (std::size_t row = 0, rows = Rows(); row < rows; ++row)
            for (std::size_t col = 0; col < columnCount; ++col)
                blank += Read(row, col).View().find_first_not_of(u' ') == TextView::npos ? 1 : 0;
        return blank;
    }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            VARIANT at;
            VariantInit(&at);
            at.vt = VT_I4;
            at.lVal = static_cast<LONG>(i);
            Require(grid_->AddItem(BstrTexts()[i % distinctRows], at) == S_OK, "AddItem");
        }
    }
    void InsertBlockAtTop(std::size_t count) { InsertAtTop(count); }
    void RemoveEverySecond() {
        const auto rows = static_cast<long>(Rows());
        for (long row = (rows - 1) | 1; row > 0; row -= 2)
            if (row < rows) Require(grid_->RemoveItem(row) == S_OK, "RemoveItem");
    }
    std::size_t Rows() {
        long rows = 0;
        grid_->get_Rows(&rows);
        return static_cast<std::size_t>(rows);
    }
    std::string Cell(std::size_t row, std::size_t col) {
        const Bstr text = Read(row, col);
        return std::string(text.View().begin(), text.View().end());
    }

  protected:
    Bstr Read(std::size_t row, std::size_t col) {
        Bstr text;
        grid_->get_TextMatrix(static_cast<long>(row), static_cast<long>(col), text.put());
        return text;
    }

    ComPtr<IUnknown> control_;
    ComPtr<IFlexGrid> grid_;
};

// The same, with rows added through IDispatch::Invoke as scripts do.
class LateBoundPeer : public DualPeer {
  public:
    static const char* Name() { return "Qvx automation, late bound"; }

    void Load(std::size_t rows) {
        wchar_t name[] = L"AddItem";
        wchar_t* names = name;
        DISPID id = 0;
        Require(grid_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id) == S_OK, "GetIDsOfNames");
        for (std::size_t i = 0; i < rows; ++i) {
            VARIANT item;
            VariantInit(&item);
            item.vt = VT_BSTR;
            item.bstrVal = BstrTexts()[i % distinctRows];
            DISPPARAMS parameters{&item, nullptr, 1, 0};
            Require(grid_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                  nullptr) == S_OK,
                    "Invoke");
        }
    }
};

// ---- The list view -------------------------------------------------------------------------------------------------

template <bool ownerData>
class ListViewPeer {
  public:
    static const char* Name() { return ownerData ? "List view, owner data" : "List view, report"; }

    void Load(std::size_t rows) {
        SendMessageW(list_.Handle(), WM_SETREDRAW, FALSE, 0);
        if (!ownerData) SendMessageW(list_.Handle(), LVM_SETITEMCOUNT, rows, 0);  // a hint to allocate memory
        for (std::size_t i = 0; i < rows; ++i) list_.InsertRow(i, i);
        Changed();
    }
    double Sum() {
        double sum = 0;
        for (std::size_t row = 0, rows = list_.Count(); row < rows; ++row)
            sum += std::wcstod(list_.Cell(row, sumColumn), nullptr);
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        for (std::size_t row = 0, rows = list_.Count(); row < rows; ++row) {
            for (std::size_t col = 0; col < columnCount; ++col) {
                const wchar_t* text = list_.Cell(row, col);
                while (*text == L' ') ++text;
                blank += *text == 0 ? 1 : 0;
            }
        }
        return blank;
    }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            list_.InsertRow(i, i);
            Changed();
        }
    }
    void InsertBlockAtTop(std::size_t count) {
        if constexpr (ownerData) {
            std::vector<WideRow> block;
            for (std::size_t i = 0; i < count; ++i) block.push_back(SplitWide(WideTexts()[i % distinctRows]));
            std::vector<WideRow>& rows = list_.OwnRows();
            rows.insert(rows.begin(), std::make_move_iterator(block.begin()), std::make_move_iterator(block.end()));
            Changed();
        } else {
            InsertAtTop(count);
        }
    }
    void RemoveEverySecond() {
        if constexpr (ownerData) {
            std::vector<WideRow>& rows = list_.OwnRows();
            std::size_t kept = 0;
            for (std::size_t row = 0; row < rows.size(); row += 2, ++kept)
                if (kept != row) rows[kept] = std::move(rows[row]);
            rows.resize(kept);
            Changed();
        } else {
            const std::size_t rows = list_.Count();
            for (std::size_t row = (rows - 1) | 1; row < rows || row == rows; row -= 2)
                if (row < rows) SendMessageW(list_.Handle(), LVM_DELETEITEM, row, 0);
        }
    }
    std::size_t Rows() { return list_.Count(); }
    std::string Cell(std::size_t row, std::size_t col) {
        const std::wstring text = list_.Cell(row, col);
        return std::string(text.begin(), text.end());
    }

  private:
    void Changed() {
        if (ownerData) list_.CountChanged();
    }

    ListView list_{ownerData, false, paintWidth, paintHeight, paintColumnWidth};
};

std::wstring FolderOf(std::wstring path, int levels) {
    while (levels-- > 0) path.resize(path.find_last_of(L"\\/"));
    return path;
}

}  // namespace
}  // namespace qvx::bench

int main(int argc, char** argv) {
    using namespace qvx::bench;
    const Options options(argc, argv);
    OleInitialize(nullptr);
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    serverPath = FolderOf(path, 2) + L"\\server\\Qvx.ocx";  // <build>/bench beside <build>/server

    if (options.largeScreen) {
        RunLargeScreens();
        std::puts("done");
        return 0;
    }
    if (options.quick) {
        WorkStopwatch::countsProcessorTime = true;
        RunWatchedScreen();
        RunDataWorks<DualPeer>(options);
        RunDataWorks<LateBoundPeer>(options);
        std::puts("done");
        return 0;
    }
    RunScreens();
    RunDataWorks<RulesPeer, FloorPeer>(options);
    RunSumWorks<RulesPeer, FloorPeer>(options);
    RunDataWorks<DualPeer>(options);
    RunDataWorks<LateBoundPeer>(options);
    RunDataWorks<ListViewPeer<false>>(options);
    RunDataWorks<ListViewPeer<true>>(options);
    RunSlowScreen();
    std::puts("done");
    OleUninitialize();
}
