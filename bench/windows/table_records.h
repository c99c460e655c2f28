// A record set over a table in memory, which is read through the interface that record sets have.
#pragma once

#include <algorithm>
#include <vector>

#include "com/ado.h"
#include "com/object.h"
#include "com/variant.h"

namespace qvx {

// These objects are called through their own interfaces, never by the names of their members.
template <class Interface>
class Nameless : public Interface {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }

  protected:
    ~Nameless() = default;
};

template <class Interface>
struct InterfaceTraits<Nameless<Interface>> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IDispatch); }
};

// The interface of record sets by its identifier.
template <>
struct InterfaceTraits<Nameless<AdoRecordset>> {
    static bool Answers(REFIID iid) {
        constexpr IID own{0x150E, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
        return iid == own || iid == __uuidof(IDispatch);
    }
};

namespace bench {

// What they have in common: the table, and the record that is read.
struct TableCursor {
    const std::vector<std::vector<Variant>>& table;
    std::size_t at = 0;
};

class TableField final : public ComObject<Nameless<AdoField>> {
  public:
    TableField(const TableCursor& cursor, std::size_t field) : cursor_(cursor), field_(field) {}
    // Binding reads values alone: the other members are refused, as by a provider that does not describe its fields.
    STDMETHODIMP get_Properties(void**) override { return E_NOTIMPL; }
    STDMETHODIMP get_ActualSize(void*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Attributes(void*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DefinedSize(void*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Name(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(void*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Value(VARIANT* value) override {
        *value = Variant(cursor_.table[cursor_.at][field_]).detach();
        return S_OK;
    }

  private:
    ~TableField() override = default;
    const TableCursor& cursor_;
    std::size_t field_;
};

class TableFields final : public ComObject<Nameless<AdoFields>> {
  public:
    explicit TableFields(const TableCursor& cursor) : cursor_(cursor) {}
    STDMETHODIMP get_Count(LONGLONG* count) override {
        *count = static_cast<LONGLONG>(cursor_.table[0].size());
        return S_OK;
    }
    // Fields are reached by their numbers, and the table's are always the same.
    STDMETHODIMP get_NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP Refresh() override { return S_OK; }
    STDMETHODIMP get_Item(VARIANT index, AdoField** field) override {
        *field = MakeObject<TableField>(cursor_, static_cast<std::size_t>(index.lVal)).detach();
        return S_OK;
    }

  private:
    ~TableFields() override = default;
    const TableCursor& cursor_;
};

class TableRecords final : public ComObject<Nameless<AdoRecordset>> {
  public:
    using Table = std::vector<std::vector<Variant>>;
    // The table must outlive this. Without blocks, it is read record by record.
    TableRecords(const Table& table, bool blocks) : cursor_{table}, blocks_(blocks) {}
    void Rewind() { cursor_.at = 0; }

    STDMETHODIMP get_AbsolutePosition(LONGLONG* position) override {
        *position = static_cast<LONGLONG>(cursor_.at) + 1;
        return S_OK;
    }
    STDMETHODIMP get_EOF(VARIANT_BOOL* end) override {
        *end = ToVariantBool(cursor_.at == cursor_.table.size());
        return S_OK;
    }
    STDMETHODIMP get_Fields(AdoFields** fields) override {
        *fields = MakeObject<TableFields>(cursor_).detach();
        return S_OK;
    }
    STDMETHODIMP get_RecordCount(LONGLONG* count) override {
        *count = static_cast<LONGLONG>(cursor_.table.size());
        return S_OK;
    }
    STDMETHODIMP MoveNext() override {
        ++cursor_.at;
        return S_OK;
    }
    STDMETHODIMP GetRows(LONG rows, VARIANT, VARIANT, VARIANT* values) override {
        // The answer of a provider that has no blocks, after which Bind reads record by record.
        if (!blocks_) return E_NOTIMPL;
        const Table& table = cursor_.table;
        const std::size_t count = std::min(static_cast<std::size_t>(rows), table.size() - cursor_.at);
        SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(table[0].size()), 0}, {static_cast<ULONG>(count), 0}};
        values->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
        values->vt = VT_ARRAY | VT_VARIANT;
        VARIANT* value = nullptr;
        SafeArrayAccessData(values->parray, reinterpret_cast<void**>(&value));
        for (std::size_t record = 0; record < count; ++record)
            for (const Variant& field : table[cursor_.at + record]) *value++ = Variant(field).detach();
        SafeArrayUnaccessData(values->parray);
        cursor_.at += count;
        return S_OK;
    }

    // A table in memory is read forwards and once: it has no properties, is neither changed nor searched nor moved
    // backwards in, and has no connection to open or close. Such members are refused, as by a provider without them.
    STDMETHODIMP get_Properties(void**) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved9() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved10() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved11() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved12() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved13() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved14() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved15() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved16() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved17() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved18() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved19() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved22() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved23() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved24() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved25() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved27() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved28() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved29() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved30() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved31() override { return E_NOTIMPL; }
    STDMETHODIMP Close() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved33() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved35() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved37() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved38() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved39() override { return E_NOTIMPL; }
    STDMETHODIMP Open(VARIANT, VARIANT, int, int, LONG) override { return E_NOTIMPL; }

  private:
    ~TableRecords() override = default;
    TableCursor cursor_;
    bool blocks_;
};

}  // namespace bench
}  // namespace qvx
