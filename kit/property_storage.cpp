#include "kit/property_storage.h"

#include <algorithm>
#include <new>

#include "com/guard.h"
#include "com/variant.h"
#include "com/wide_text.h"

namespace qvx {

namespace {

const char16_t extentXKey[] = u"_ExtentX";
const char16_t extentYKey[] = u"_ExtentY";

// Returns the type that the bag is to convert to; a text such as "007" must not be read as a number.
VARTYPE BagType(const PropertyValue& like) {
    if (std::holds_alternative<bool>(like)) return VT_BOOL;
    if (std::holds_alternative<std::int32_t>(like)) return VT_I4;
    if (std::holds_alternative<double>(like)) return VT_R8;
    if (std::holds_alternative<Text>(like)) return VT_BSTR;
    return VT_UNKNOWN;
}

// Reads exactly `size` bytes. Throws ComError when the stream ends before that.
void ReadExactly(IStream* stream, std::uint8_t* to, std::size_t size) {
    while (size > 0) {
        ULONG got = 0;
        Check(stream->Read(to, static_cast<ULONG>(size), &got));
        if (got == 0 || got > size) throw ComError(STG_E_READFAULT);
        to += got;
        size -= got;
    }
}

}  // namespace

PropertySource ReadBag(IPropertyBag* bag, IErrorLog* log) {
    return [=](const PropertyRow& row, const PropertyValue& like) {
        Variant value;
        value.ptr()->vt = BagType(like);
        value.ptr()->llVal = 0;
        const HRESULT read = bag->Read(Wide(row.key), value.ptr(), log);
        if (read == E_OUTOFMEMORY) throw std::bad_alloc();
        return FAILED(read) ? PropertyValue() : FromVariant(value, like);
    };
}

void WriteBag(IPropertyBag* bag, const StoredValues& values) {
    for (const auto& [key, value] : values) {
        Variant written = ToVariant(value);
        Check(bag->Write(Wide(key), written.ptr()));
    }
}

StreamContents::StreamContents(IStream* stream) {
    property_stream::Bytes bytes(property_stream::headerSize);
    ReadExactly(stream, bytes.data(), bytes.size());
    const auto header = property_stream::ReadHeader(bytes);
    if (!header) throw ComError(STG_E_INVALIDHEADER);
    // Memory is allocated as bytes arrive, because the size in the header may be wrong.
    constexpr std::size_t step = 65536;
    bytes.clear();
    while (bytes.size() < header->size) {
        const std::size_t have = bytes.size();
        bytes.resize(have + std::min<std::size_t>(step, header->size - have));
        ReadExactly(stream, bytes.data() + have, bytes.size() - have);
    }
    auto records = property_stream::ReadRecords(*header, bytes);
    if (!records) throw ComError(STG_E_DOCFILECORRUPT);
    values_ = std::move(*records);
}

const PropertyValue* StreamContents::Find(TextView key) const {
    const auto found = std::find_if(values_.begin(), values_.end(), [&](const auto& r) { return r.first == key; });
    return found == values_.end() ? nullptr : &found->second;
}

std::optional<SIZEL> StreamContents::Extent() const {
    const auto* width = Find(extentXKey);
    const auto* height = Find(extentYKey);
    const auto* x = width ? std::get_if<std::int32_t>(width) : nullptr;
    const auto* y = height ? std::get_if<std::int32_t>(height) : nullptr;
    // No device is larger than this at any resolution.
    constexpr std::int32_t largest = 1 << 20;
    if (!x || !y || *x < 0 || *y < 0 || *x > largest || *y > largest) return std::nullopt;
    return SIZEL{*x, *y};
}

PropertySource StreamContents::Source() const {
    return [this](const PropertyRow& row, const PropertyValue& like) {
        const PropertyValue* found = Find(row.key);
        return found ? ConvertTo(like, *found) : PropertyValue();
    };
}

std::vector<std::uint8_t> StreamBytes(const SIZEL& extent, StoredValues values) {
    values.insert(values.begin(), {{extentXKey, static_cast<std::int32_t>(extent.cx)},
                                   {extentYKey, static_cast<std::int32_t>(extent.cy)}});
    return property_stream::Write(values);
}

void WriteStream(IStream* stream, const std::vector<std::uint8_t>& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        ULONG written = 0;
        Check(stream->Write(bytes.data() + done, static_cast<ULONG>(bytes.size() - done), &written));
        if (written == 0) throw ComError(STG_E_WRITEFAULT);
        done += written;
    }
}

}  // namespace qvx
