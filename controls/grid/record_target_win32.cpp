#include "controls/grid/record_target_win32.h"

#include <optional>
#include <utility>

#include "com/ado.h"
#include "com/late_bound.h"
#include "com/pointer.h"
#include "com/variant.h"
#include "common/dates.h"
#include "common/locale.h"
#include "common/run_time_error.h"

namespace qvx::grid {
namespace {

Text TextOfField(const Variant& value) {
    Text text;
    AppendFieldText(value.get(), text);
    return text;
}

// The numbers of the data objects' types whose values cannot be written as text everywhere.
VARTYPE TypeOfField(long type) {
    switch (type) {
        case 2:   // small integers
        case 3:   // integers
        case 16:  // bytes
        case 17:
        case 18:
            return VT_I4;
        case 4:
        case 5:
            return VT_R8;
        case 6:
            return VT_CY;
        case 11:
            return VT_BOOL;
        case 14:
        case 131:
            return VT_DECIMAL;
        case 7:  // dates and times
        case 133:
        case 134:
        case 135:
            return VT_DATE;
        default:
            return VT_BSTR;
    }
}

std::optional<Variant> DateFrom(TextView text) {
    const auto date = ParseDate(text, SystemDateSettings());
    if (!date) return std::nullopt;
    const auto word = [](int number) { return static_cast<WORD>(number); };
    SYSTEMTIME time{};
    time.wYear = word(date->year);
    time.wMonth = word(date->month);
    time.wDay = word(date->day);
    time.wHour = word(date->secondOfDay / 3600);
    time.wMinute = word(date->secondOfDay / 60 % 60);
    time.wSecond = word(date->secondOfDay % 60);
    double days = 0;
    if (!SystemTimeToVariantTime(&time, &days)) return std::nullopt;
    Variant value(days);
    value.ptr()->vt = VT_DATE;
    return value;
}

class NamedTarget final : public RecordTarget {
  public:
    explicit NamedTarget(IDispatch* set)
        : set_(set),
          end_(set, L"EOF"),
          fields_(set, L"Fields"),
          first_(set, L"MoveFirst"),
          next_(set, L"MoveNext"),
          add_(set, L"AddNew"),
          update_(set, L"Update"),
          delete_(set, L"Delete") {}

    std::vector<Text> FieldNames() override {
        std::vector<Text> names;
        values_.clear();
        const auto fields = Object(fields_.Get(set_.get()));
        const long count = LateMember(fields.get(), L"Count").Get(fields.get()).ToLong().value_or(0);
        for (long i = 0; i < count; ++i) {
            const auto field = Field(static_cast<int>(i));
            values_.emplace_back(L"Value");
            names.push_back(LateMember(field.get(), L"Name").Get(field.get()).ToText().value_or(Text()));
        }
        return names;
    }
    void MoveFirst() override {
        // A set without records has no first one.
        const auto begin = LateMember::Find(set_.get(), L"BOF");
        if (AtEnd() && begin && begin->Get(set_.get()).ToBool().value_or(false)) return;
        first_.Get(set_.get());
    }
    bool AtEnd() override { return end_.Get(set_.get()).ToBool().value_or(true); }
    void MoveNext() override { next_.Get(set_.get()); }
    Text Value(int field) override { return TextOfField(ValueOf(field)); }
    void SetValue(int field, TextView text) override {
        const auto object = Field(field);
        MemberOf(field).Put(object, Converted(object, MemberOf(field).Get(object), text));
    }
    void AddNew() override { add_.Get(set_.get()); }
    void Update() override { update_.Get(set_.get()); }
    void CancelUpdate() override { CallIfThere(set_, L"CancelUpdate"); }
    void Delete() override { delete_.Get(set_.get()); }
    int Keep() override {
        std::vector<Variant> values;
        for (std::size_t i = 0; i < values_.size(); ++i) values.push_back(ValueOf(static_cast<int>(i)));
        kept_.push_back(std::move(values));
        return static_cast<int>(kept_.size()) - 1;
    }
    void PutBack(int kept) override {
        const auto& values = kept_[static_cast<std::size_t>(kept)];
        for (int i = 0; i < static_cast<int>(values.size()); ++i) {
            try {
                const Variant& value = values[static_cast<std::size_t>(i)];
                if (Value(i) != TextOfField(value)) MemberOf(i).Put(Field(i), value);
            } catch (const RunTimeError&) {
                // The database gives some fields their values, and nobody else can.
            }
        }
    }
    bool Begin() override {
        try {
            const auto connection = LateMember::Find(set_.get(), L"ActiveConnection");
            if (connection) connection_ = Object(connection->Get(set_.get()));
            return connection_ && CallIfThere(connection_, L"BeginTrans");
        } catch (const RunTimeError&) {
            return false;
        }
    }
    void Commit() override { CallIfThere(connection_, L"CommitTrans"); }
    void Rollback() override {
        CallIfThere(connection_, L"RollbackTrans");
        // Records kept by the client would still be those that were written.
        CallIfThere(set_, L"Requery");
    }

  private:
    static ComPtr<IDispatch> Object(const Variant& value) { return value.ToObject<IDispatch>(); }
    static bool CallIfThere(const ComPtr<IDispatch>& object, const wchar_t* name) {
        const auto member = LateMember::Find(object.get(), name);
        if (member) member->Get(object.get());
        return member.has_value();
    }
    // The collection and its fields may be different objects for each record.
    ComPtr<IDispatch> Field(int field) {
        return Object(item_.Get(Object(fields_.Get(set_.get())), {Variant(static_cast<long>(field))}));
    }
    RepeatedMember& MemberOf(int field) { return values_[static_cast<std::size_t>(field)]; }
    Variant ValueOf(int field) { return MemberOf(field).Get(Field(field)); }

    static Variant Converted(const ComPtr<IDispatch>& field, const Variant& current, TextView text) {
        const bool known = current.Type() != VT_EMPTY && current.Type() != VT_NULL;
        if (text.empty() && current.Type() != VT_BSTR) {
            Variant null;
            null.ptr()->vt = VT_NULL;
            return null;
        }
        const auto member = known ? std::nullopt : LateMember::Find(field.get(), L"Type");
        const VARTYPE type = known    ? current.Type()
                             : member ? TypeOfField(member->Get(field.get()).ToLong().value_or(0))
                                      : static_cast<VARTYPE>(VT_BSTR);
        std::optional<Variant> value = type == VT_DATE ? DateFrom(text) : std::nullopt;
        if (!value) value = Variant(text).To(type);
        if (value) return *value;
        throw RunTimeError(errors::typeMismatch,
                           Text(u"Type mismatch: a field cannot have the value \"").append(text).append(u"\"."));
    }

    ComPtr<IDispatch> set_;
    ComPtr<IDispatch> connection_;
    LateMember end_;
    LateMember fields_;
    LateMember first_;
    LateMember next_;
    LateMember add_;
    LateMember update_;
    LateMember delete_;
    RepeatedMember item_{L"Item"};
    std::vector<RepeatedMember> values_;
    std::vector<std::vector<Variant>> kept_;
};

}  // namespace

std::unique_ptr<RecordTarget> MakeRecordTarget(IDispatch* recordSet) {
    return std::make_unique<NamedTarget>(recordSet);
}

}  // namespace qvx::grid
