// Record sets and fields of a script's own, by name only: three members deep, with everything that can go wrong.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "com/pointer.h"
#include "com/untyped_dispatch.h"
#include "com/variant.h"

namespace qvx::test {

// A field that numbers its only member in its own way.
class ScriptField final : public ComObject<UntypedDispatch> {
  public:
    ScriptField(DISPID id, std::function<Variant()> value, std::wstring name = {})
        : id_(id), value_(std::move(value)), name_(std::move(name)) {}
    static inline int lookups = 0;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        const bool isName = std::wstring(names[0]) == L"Name";
        if (!isName && std::wstring(names[0]) != L"Value") return DISP_E_UNKNOWNNAME;
        lookups += isName ? 0 : 1;
        *ids = isName ? id_ + 1 : id_;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        if (member != id_ && (name_.empty() || member != id_ + 1)) return DISP_E_MEMBERNOTFOUND;
        *result = (member == id_ ? value_() : Variant(FromWide(name_.c_str()))).detach();
        return S_OK;
    }

  private:
    ~ScriptField() override = default;
    DISPID id_;
    std::function<Variant()> value_;
    std::wstring name_;
};

class ScriptRecords final : public ComObject<UntypedDispatch> {
  public:
    std::vector<std::vector<Variant>> records;
    std::vector<std::wstring> fieldNames;  // of the fields
    long counted = -2;                     // what RecordCount says; -2: how many there are
    bool hasCount = true;
    bool hasRows = false;                // GetRows is there
    bool hasPosition = true;             // AbsolutePosition is there
    bool losesBlock = false;             // records of a block that fails are used up
    std::function<void(DISPID)> onCall;  // before a member is answered, by its place in the list of names
    size_t failsAt = SIZE_MAX;           // reading that record fails
    HRESULT closed = S_OK;               // what everything fails with
    bool writable = false;               // the members for writing are there
    bool hasTransactions = false;        // and those of transactions
    std::string transactions;            // what was called of them
    bool slow = false;                   // a block takes a while
    size_t at = 0;
    int blocks = 0;
    long firstPosition = 1;                                               // below 0: of all
    enum class Fields { itself, steady, fresh } fields = Fields::itself;  // objects in each record

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        static const wchar_t* const known[] = {L"RecordCount",
                                               L"EOF",
                                               L"AbsolutePosition",
                                               L"MoveNext",
                                               L"Fields",
                                               L"GetRows",
                                               L"Item",
                                               L"Count",
                                               L"Value",
                                               L"Name",
                                               L"MoveFirst",
                                               L"BOF",
                                               L"AddNew",
                                               L"Update",
                                               L"CancelUpdate",
                                               L"Delete",
                                               L"ActiveConnection",
                                               L"BeginTrans",
                                               L"CommitTrans",
                                               L"RollbackTrans"};
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(known)); ++i) {
            if (std::wstring(known[i]) != names[0]) continue;
            if ((i == 0 && !hasCount) || (i == 5 && !hasRows) || (i == 2 && !hasPosition)) break;
            if ((i >= 10 && !writable) || (i >= 16 && !hasTransactions)) break;
            *ids = i;
            return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT*) override {
        const auto fail = [&](HRESULT code, const wchar_t* words) {
            exception->scode = code;
            exception->bstrDescription = SysAllocString(words);
            return DISP_E_EXCEPTION;
        };
        if (onCall) onCall(member);
        if (FAILED(closed)) return fail(closed, L"Operation is not allowed when the object is closed.");
        Variant answer;
        switch (member) {
            case 0:
                answer = Variant(counted == -2 ? static_cast<long>(records.size()) : counted);
                break;
            case 1:
                answer = Variant(at >= records.size());
                break;
            case 2:
                answer = Variant(firstPosition < 0 ? firstPosition : static_cast<long>(at) + firstPosition);
                break;
            case 3:
                if (!Leave()) ++at;
                break;
            case 4:
                answer = Variant(static_cast<IDispatch*>(this));
                break;
            case 5: {
                ++blocks;
                if (slow) Sleep(30);
                const auto wanted = static_cast<size_t>(*Variant(arguments->rgvarg[0]).ToLong());
                const size_t count = std::min(wanted, records.size() - at);
                if (failsAt >= at && failsAt < at + count) {
                    if (losesBlock) at += count;
                    return fail(E_FAIL, L"The data are damaged.");
                }
                answer = Rows(count);
                at += count;
                break;
            }
            case 6:
                if (at == failsAt) return fail(E_FAIL, L"The data are damaged.");
                field_ = static_cast<size_t>(*Variant(arguments->rgvarg[0]).ToLong());
                answer = Variant(fields == Fields::itself ? static_cast<IDispatch*>(this) : Field(field_));
                break;
            case 7:
                answer = Variant(records.empty() ? 0L : static_cast<long>(records[0].size()));
                break;
            case 8:
                if (flags & DISPATCH_PROPERTYPUT) {
                    if (pending_.empty()) pending_ = records[at];
                    pending_[field_] = Variant(arguments->rgvarg[0]);
                } else {
                    answer = pending_.empty() ? records[at][field_] : pending_[field_];
                }
                break;
            case 9:
                answer = Variant(FromWide(fieldNames[field_].c_str()));
                break;
            case 10:
                Leave();
                at = 0;
                break;
            case 11:
                answer = Variant(records.empty());
                break;
            case 12:
                Leave();
                pending_.assign(fieldNames.size(), Variant());
                for (Variant& value : pending_) value.ptr()->vt = VT_NULL;
                adds_ = true;
                break;
            case 13:
                for (const Variant& value : pending_)
                    if (value.ToText() == u"refused") return fail(E_FAIL, L"A rule of the table is broken.");
                if (adds_) {
                    at = records.size();
                    records.emplace_back();
                }
                if (!pending_.empty()) records[at] = pending_;
                [[fallthrough]];
            case 14:
                pending_.clear();
                adds_ = false;
                break;
            case 15:
                deletes_ = true;
                break;
            case 16:
                answer = Variant(static_cast<IDispatch*>(this));
                break;
            default:
                transactions += "BCR"[member - 17];
                if (member == 17) before_ = records;
                if (member == 19) {
                    records = before_;
                    deletes_ = false;
                }
        }
        if (result) *result = answer.detach();
        return S_OK;
    }

  private:
    ~ScriptRecords() override = default;
    IDispatch* Field(size_t field) {
        fields_.resize(records[0].size());
        if (fields == Fields::fresh || !fields_[field]) {
            const auto id = static_cast<DISPID>(100 + 7 * field + (fields == Fields::fresh ? 1000 * at : 0));
            fields_[field] = ComPtr<IDispatch>(MakeObject<ScriptField>(
                id, [this, field] { return records[at][field]; },
                fieldNames.empty() ? std::wstring() : fieldNames[field]));
        }
        return fields_[field].get();
    }
    Variant Rows(size_t count) {
        SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(records[0].size()), 0}, {static_cast<ULONG>(count), 0}};
        Variant rows;
        rows.ptr()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
        rows.ptr()->vt = VT_ARRAY | VT_VARIANT;
        for (LONG r = 0; r < static_cast<LONG>(count); ++r)
            for (LONG f = 0; f < static_cast<LONG>(records[0].size()); ++f) {
                LONG place[] = {f, r};
                SafeArrayPutElement(rows.get().parray, place,
                                    records[at + static_cast<size_t>(r)][static_cast<size_t>(f)].ptr());
            }
        return rows;
    }
    // A deleted record is gone with the next move.
    bool Leave() {
        if (!std::exchange(deletes_, false)) return false;
        records.erase(records.begin() + static_cast<std::ptrdiff_t>(at));
        return true;
    }
    size_t field_ = 0;
    std::vector<Variant> pending_;
    std::vector<std::vector<Variant>> before_;
    bool adds_ = false;
    bool deletes_ = false;
    std::vector<ComPtr<IDispatch>> fields_;
};

}  // namespace qvx::test
