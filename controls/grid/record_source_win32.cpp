#include "controls/grid/record_source_win32.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "com/ado.h"
#include "com/late_bound.h"
#include "com/pointer.h"
#include "com/safearray.h"
#include "com/variant.h"
#include "common/run_time_error.h"

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
    // Fields may be different objects in every record, and each may number its members differently. Even one that stays
    // the same is requested again, because the request may be what loads the record's value into it.
    Variant Value(int field) override {
        if (field == 0) current_ = Object(fields_.Get(set_.get()));
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

// The array of fields and records that GetRows returns, locked for reading.
class Block {
  public:
    // Accepts only an array of variants with two dimensions and that many fields; else raises error 13.
    Block(Variant values, int fields) : values_(std::move(values)), array_(ArrayOf(values_.get())) {
        if (!array_ || SafeArrayGetDim(array_) != 2 || !(array_->fFeatures & FADF_VARIANT)) RefuseBlock();
        // Bounds are stored from the last dimension to the first.
        records_ = static_cast<int>(array_->rgsabound[0].cElements);
        if (static_cast<int>(array_->rgsabound[1].cElements) != fields) RefuseBlock();
        fields_ = fields;
        void* data = nullptr;
        if (FAILED(SafeArrayAccessData(array_, &data))) RefuseBlock();
        cells_ = static_cast<const VARIANT*>(data);
    }
    ~Block() { SafeArrayUnaccessData(array_); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    int Records() const { return records_; }
    const VARIANT& At(int record, int field) const {
        return cells_[static_cast<std::size_t>(record) * static_cast<std::size_t>(fields_) +
                      static_cast<std::size_t>(field)];
    }

  private:
    [[noreturn]] static void RefuseBlock() {
        throw RunTimeError(errors::typeMismatch, u"Type mismatch: GetRows gave no array of fields and records.");
    }

    Variant values_;
    SAFEARRAY* array_ = nullptr;
    const VARIANT* cells_ = nullptr;
    int records_ = 0;
    int fields_ = 0;
};

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
            AppendFieldText(block_ ? block_->At(at_, field) : set_->Value(field).get(), row);
            row += u'\t';
        }
    }

    void MoveNext() override {
        if (!block_) {
            set_->MoveNext();
        } else if (++at_ == block_->Records()) {
            block_.reset();
        }
    }

  private:
    // Makes the current record available. The number of the first record of a block is read before the block moves the
    // record set.
    void Settle(bool numbered) {
        if (!fields_) fields_ = set_->FieldCount();
        if (block_ || !inBlocks_ || *fields_ == 0) return;
        if (numbered) position_ = set_->Position();
        const auto values = NextBlock();
        inBlocks_ = values.has_value();
        if (!inBlocks_) return;
        block_.emplace(*values, *fields_);
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

    std::unique_ptr<Recordset> set_;
    std::optional<int> fields_;
    std::optional<Block> block_;
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
