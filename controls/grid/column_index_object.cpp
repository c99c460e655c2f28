#include "controls/grid/column_index_object.h"

#include <optional>
#include <vector>

#include "Qvx.h"
#include "com/dispatch.h"
#include "com/members.h"
#include "com/object.h"
#include "com/variant_enumerator.h"
#include "common/keyed_collection.h"

namespace qvx::grid {
namespace {

class ColumnIndexObject final : public ComObject<Dispatch<IColumnIndex>, ErrorInfoSupport<IColumnIndex>> {
  public:
    void Add(Variant item, std::optional<TextView> key) { items_.Add(std::move(item), key); }

    STDMETHODIMP get_Item(VARIANT index, VARIANT* result) override {
        return Give(result, [&] {
            const Variant place(index);
            return IsKey(place) ? items_.At(Key(place)) : items_.At(Number(place));
        });
    }
    STDMETHODIMP get_Count(long* result) override {
        return Give(result, [&] { return items_.Count(); });
    }
    STDMETHODIMP Add(VARIANT item, VARIANT key, VARIANT before, VARIANT after) override {
        return Guard([&] {
            // The columns have the order of the grid; items are added after them.
            if (!IsMissing(before) || !IsMissing(after))
                throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
            if (IsMissing(key)) {
                Add(Variant(item), std::nullopt);
                return;
            }
            const Variant given(key);
            if (!IsKey(given)) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
            const Text text = Key(given);
            Add(Variant(item), TextView(text));
        });
    }
    STDMETHODIMP Remove(VARIANT index) override {
        return Guard([&] {
            const Variant place(index);
            if (IsKey(place)) {
                const Text key = Key(place);
                items_.Remove(TextView(key));
            } else {
                items_.Remove(Number(place));
            }
        });
    }
    STDMETHODIMP get__NewEnum(IUnknown** result) override {
        return Give(result, [&] {
            std::vector<Variant> all;
            for (long index = 1; index <= static_cast<long>(items_.Count()); ++index) all.push_back(items_.At(index));
            return MakeObject<VariantEnumerator>(std::move(all)).detach();
        });
    }

  private:
    ~ColumnIndexObject() override = default;

    static bool IsKey(const Variant& place) { return place.Type() == VT_BSTR; }
    static Text Key(const Variant& place) { return *place.ToText(); }
    static long Number(const Variant& place) {
        const auto number = place.ToLong();
        if (!number) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
        return *number;
    }

    KeyedCollection<Variant> items_;
};

}  // namespace

ComPtr<IDispatch> MakeColumnIndexObject(const ColumnIndex& index) {
    const auto object = MakeObject<ColumnIndexObject>();
    for (const auto& [key, col] : index.entries) object->Add(Variant(col), TextView(key));
    return ComPtr<IDispatch>(static_cast<IColumnIndex*>(object.get()));
}

}  // namespace qvx::grid
