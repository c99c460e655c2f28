#include "controls/grid/record_source_win32.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "com/ado.h"
#include "com/bstr.h"
#include "com/late_bound.h"
#include "com/pointer.h"
#include "com/variant.h"
#include "common/run_time_error.h"
#include "controls/grid/record_block_win32.h"

namespace qvx::grid {

namespace {

// ---- One record at a time ------------------------------------------------------------------------------------------

// The interface of both ways of reading for the block reader above them.
class Recordset {
  public:
    virtual ~Recordset() = default;
    virtual std::int64_t Count() = 0;
    virtual bool AtEnd() = 0;
    virtual std::int64_t Position() = 0;
    virtual int FieldCount() = 0;
    // Called after FieldCount.
    virtual Text Name(int field) = 0;
    // Called before the values of a record are read.
    virtual void StartRecord() {}
    virtual Variant Value(int field) = 0;
    virtual void MoveNext() = 0;
    // Returns at most that many records as an array of fields and records; nothing when the record set has no such
    // method.
    virtual std::optional<Variant> GetRows(int most) = 0;
};

class AdoReader final : public Recordset {
  public:
    explicit AdoReader(AdoInterface<AdoRecordset> set) : set_(std::move(set)) {}

    std::int64_t Count() override { return Number(&AdoRecordset::get_RecordCount); }
    std::int64_t Position() override { return Number(&AdoRecordset::get_AbsolutePosition); }
    bool AtEnd() override {
        VARIANT_BOOL end = VARIANT_FALSE;
        Called(set_->get_EOF(&end));
        return end != VARIANT_FALSE;
    }
    int FieldCount() override {
        fields_.clear();
        ComPtr<AdoFields> fields;
        Called(set_->get_Fields(fields.put()));
        if (!fields) return 0;
        LONGLONG count = 0;
        Called(fields->get_Count(&count));
        // A field's object always refers to the current record.
        for (long i = 0; i < static_cast<long>(count); ++i) {
            ComPtr<AdoField> field;
            Called(fields->get_Item(Variant(i).get(), field.put()));
            fields_.push_back(std::move(field));
        }
        return static_cast<int>(count);
    }
    Text Name(int field) override {
        Bstr name;
        Called(fields_[static_cast<std::size_t>(field)]->get_Name(name.put()));
        return Text(FromBstr(name.get()));
    }
    Variant Value(int field) override {
        Variant value;
        Called(fields_[static_cast<std::size_t>(field)]->get_Value(value.put()));
        return value;
    }
    void MoveNext() override { Called(set_->MoveNext()); }
    std::optional<Variant> GetRows(int most) override {
        Variant values;
        const HRESULT result = set_->GetRows(most, Variant::Missing().get(), Variant::Missing().get(), values.put());
        // On some systems, the interface of record sets has a slot for the method, but the method is not implemented:
        // records are then read one by one.
        if (result == E_NOTIMPL) return std::nullopt;
        Called(result);
        return values;
    }

  private:
    std::int64_t Number(HRESULT (STDMETHODCALLTYPE AdoRecordset::*read)(LONGLONG*)) {
        LONGLONG number = 0;
        Called((set_.get()->*read)(&number));
        return static_cast<LONG>(number);
    }
    void Called(HRESULT result) const { set_.Check(result); }

    AdoInterface<AdoRecordset> set_;
    std::vector<ComPtr<AdoField>> fields_;
};

class NamedReader final : public Recordset {
  public:
    explicit NamedReader(IDispatch* set)
        : set_(set),
          count_(set, L"RecordCount"),
          end_(set, L"EOF"),
          fields_(set, L"Fields"),
          next_(set, L"MoveNext"),
          rows_(LateMember::Find(set, L"GetRows")) {}

    std::int64_t Count() override { return Number(count_.Get(set_.get())); }
    // Only read if rows are numbered.
    std::int64_t Position() override { return Number(position_.Get(set_)); }
    bool AtEnd() override {
        const auto end = end_.Get(set_.get()).ToBool();
        if (!end) Mismatch();
        return *end;
    }
    // The collection may belong to the current record only.
    int FieldCount() override {
        const auto fields = Object(fields_.Get(set_.get()));
        const auto count = static_cast<int>(Number(LateMember(fields.get(), L"Count").Get(fields.get())));
        values_.assign(static_cast<std::size_t>(std::max(count, 0)), RepeatedMember(L"Value"));
        return count;
    }
    Text Name(int field) override {
        const auto fields = Object(fields_.Get(set_.get()));
        const auto object = Object(LateMember(fields.get(), L"Item").Get(fields.get(), {Variant(field)}));
        return LateMember(object.get(), L"Name").Get(object.get()).ToText().value_or(Text());
    }
    void StartRecord() override { current_ = Object(fields_.Get(set_.get())); }
    // Fields may be different objects in every record, and each may number its members differently. Even one that stays
    // the same is requested again, because the request may be what loads the record's value into it.
    Variant Value(int field) override {
        const auto object = Object(item_.Get(current_, {Variant(field)}));
        return values_[static_cast<std::size_t>(field)].Get(object);
    }
    void MoveNext() override { next_.Get(set_.get()); }
    std::optional<Variant> GetRows(int most) override {
        if (!rows_) return std::nullopt;
        return rows_->Get(set_.get(), {Variant(most)});
    }

  private:
    static ComPtr<IDispatch> Object(const Variant& value) { return value.ToObject<IDispatch>(); }
    [[noreturn]] static void Mismatch() { throw RunTimeError(errors::typeMismatch, u"Type mismatch"); }
    static std::int64_t Number(const Variant& value) {
        const auto number = value.ToLong();
        if (!number) Mismatch();
        return *number;
    }

    ComPtr<IDispatch> set_;
    LateMember count_;
    LateMember end_;
    LateMember fields_;
    LateMember next_;
    std::optional<LateMember> rows_;
    RepeatedMember position_{L"AbsolutePosition"};
    ComPtr<IDispatch> current_;
    RepeatedMember item_{L"Item"};
    std::vector<RepeatedMember> values_;
};

// ---- Blocks of records ---------------------------------------------------------------------------------------------

// Reads ahead. Errors of a block are raised when the records before them have been used, as if read one by one.
class BlockReader final : public RecordSource {
  public:
    explicit BlockReader(std::unique_ptr<Recordset> set) : set_(std::move(set)) {}

    std::int64_t Count() override { return set_->Count(); }

    bool AtEnd() override {
        if (block_) return false;
        return set_->AtEnd();
    }

    std::int64_t Position() override {
        Settle(true);
        if (!block_) return set_->Position();
        return IsKnown(position_) ? position_ + at_ : position_;
    }

    void AppendFields(Text& row) override {
        Settle(false);
        for (int field = 0; field < *fields_; ++field) {
            AppendValue(field, row);
            row += u'\t';
        }
    }

    std::vector<Text> FieldNames() override {
        if (!fields_) fields_ = set_->FieldCount();
        std::vector<Text> names;
        for (int field = 0; field < *fields_; ++field) names.push_back(set_->Name(field));
        return names;
    }

    void AppendField(int field, Text& text) override {
        Settle(false);
        AppendValue(field, text);
    }

    void MoveNext() override {
        started_ = false;
        if (!block_) {
            set_->MoveNext();
        } else if (++at_ == block_->Records()) {
            block_.reset();
        }
    }

  private:
    void AppendValue(int field, Text& text) {
        if (block_) {
            AppendFieldText(block_->At(at_, field), text);
            return;
        }
        if (!started_) set_->StartRecord();
        started_ = true;
        AppendFieldText(set_->Value(field).get(), text);
    }

    // Makes the current record available. The number of the first record of a block is read before the block moves the
    // record set.
    void Settle(bool numbered) {
        if (!fields_) fields_ = set_->FieldCount();
        if (block_ || !inBlocks_ || *fields_ == 0) return;
        if (numbered) position_ = set_->Position();
        values_ = NextBlock();
        inBlocks_ = values_.has_value();
        if (!inBlocks_) return;
        block_.emplace(values_->get(), refusal);
        if (!block_->HoldsVariants() || block_->Fields() != *fields_) {
            block_.reset();
            throw RunTimeError(errors::typeMismatch, refusal);
        }
        at_ = 0;
        if (block_->Records() > 0) return;
        block_.reset();
        inBlocks_ = false;
    }

    // If a block cannot be read, its records are read one by one up to the one that fails, provided that the attempt
    // has not moved past any of them. A record set without a known position cannot show this, so its blocks have one
    // record.
    std::optional<Variant> NextBlock() {
        const auto before = knowsPosition_ ? KnownPosition() : std::nullopt;
        knowsPosition_ = before.has_value();
        try {
            return set_->GetRows(before ? blockSize : 1);
        } catch (const RunTimeError&) {
            if (!before || KnownPosition() != before) throw;
            return std::nullopt;
        }
    }

    std::optional<std::int64_t> KnownPosition() {
        try {
            const std::int64_t position = set_->Position();
            return IsKnown(position) ? std::optional(position) : std::nullopt;
        } catch (const RunTimeError&) {
            return std::nullopt;
        }
    }

    // Some record sets count from 0. Unknown positions are below that, and the same for every record.
    static bool IsKnown(std::int64_t position) { return position >= 0; }

    static constexpr int blockSize = 512;
    static constexpr auto refusal = u"Type mismatch: GetRows gave no array of fields and records.";

    std::unique_ptr<Recordset> set_;
    std::optional<int> fields_;
    std::optional<Variant> values_;  // of the block
    std::optional<RecordBlock> block_;
    bool started_ = false;  // the current record has been read from
    int at_ = 0;
    std::int64_t position_ = 0;
    bool inBlocks_ = true;
    bool knowsPosition_ = true;  // the record set has reported its position so far
};

}  // namespace

std::unique_ptr<RecordSource> MakeRecordSource(IDispatch* recordSet) {
    if (AdoInterface<AdoRecordset> set(recordSet); set) {
        return std::make_unique<BlockReader>(std::make_unique<AdoReader>(std::move(set)));
    }
    return std::make_unique<BlockReader>(std::make_unique<NamedReader>(recordSet));
}

}  // namespace qvx::grid
