#include "bench/windows/cell_object.h"

#include <oleauto.h>

#include <string>
#include <vector>

#include "bench/windows/host_form.h"
#include "com/object.h"

namespace qvx {

template <>
struct InterfaceTraits<IBenchCells> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IBenchCells) || iid == __uuidof(IDispatch); }
};

}  // namespace qvx

namespace qvx::bench {
namespace {

// cells.tlb is beside the program.
ComPtr<ITypeInfo> DescribeCells() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring file = path;
    file.resize(file.find_last_of(L"\\/") + 1);
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> info;
    const bool read = LoadTypeLibEx((file + L"cells.tlb").c_str(), REGKIND_NONE, library.put()) == S_OK &&
                      library->GetTypeInfoOfGuid(__uuidof(IBenchCells), info.put()) == S_OK;
    Require(read, "reading cells.tlb");
    return info;
}

class CellObject final : public ComObject<IBenchCells> {
  public:
    CellObject(long rows, long cols)
        : rows_(rows), cols_(cols), cells_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols)) {}
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        *info = info_.copy();
        return S_OK;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return DispGetIDsOfNames(info_.get(), names, count, ids);
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* wrong) override {
        return DispInvoke(this, info_.get(), member, flags, arguments, result, exception, wrong);
    }
    STDMETHODIMP get_Cell(long row, long col, BSTR* result) override {
        BSTR* const cell = At(row, col);
        if (!cell) return E_INVALIDARG;
        *result = SysAllocStringLen(*cell, SysStringLen(*cell));
        return *result ? S_OK : E_OUTOFMEMORY;
    }
    STDMETHODIMP put_Cell(long row, long col, BSTR value) override {
        BSTR* const cell = At(row, col);
        if (!cell) return E_INVALIDARG;
        return SysReAllocStringLen(cell, value, SysStringLen(value)) ? S_OK : E_OUTOFMEMORY;
    }

  private:
    ~CellObject() override {
        for (const BSTR cell : cells_) SysFreeString(cell);
    }
    BSTR* At(long row, long col) {
        if (row < 0 || row >= rows_ || col < 0 || col >= cols_) return nullptr;
        return &cells_[static_cast<std::size_t>(row * cols_ + col)];
    }

    long rows_;
    long cols_;
    std::vector<BSTR> cells_;
    ComPtr<ITypeInfo> info_ = DescribeCells();
};

}  // namespace

ComPtr<IBenchCells> MakeCellObject(long rows, long cols) {
    return ComPtr<IBenchCells>::Adopt(MakeObject<CellObject>(rows, cols).detach());
}

}  // namespace qvx::bench
