// The persistence of a control: property bags, streams and storages all use the property table.
#include <algorithm>
#include <optional>

#include "com/variant.h"
#include "common/property_stream.h"
#include "common/run_time_error.h"
#include "kit/control_base.h"

namespace qvx {

namespace {

const wchar_t storageStream[] = L"Contents";
// A stream keeps the size of the control itself, because it has no container beside it that does.
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

// Reads the whole property stream. Throws ComError when it is damaged or ends early.
std::vector<property_stream::Record> ReadStream(IStream* stream) {
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
    return std::move(*records);
}

const PropertyValue* Find(const std::vector<property_stream::Record>& records, TextView key) {
    const auto found = std::find_if(records.begin(), records.end(), [&](const auto& r) { return r.first == key; });
    return found == records.end() ? nullptr : &found->second;
}

}  // namespace

void ControlBase::InitProperties() {
    ReadFrom([](const PropertyRow&, const PropertyValue&) { return PropertyValue(); });
}

void ControlBase::InitialiseNew() {
    initPending_ = !host_.Site();
    InitProperties();
    dirty_ = false;
}

// Loads may be nested, because a source may cause the control to read another one meanwhile.
class ControlBase::Loading {
  public:
    explicit Loading(ControlBase& control) : control_(control) { ++control_.loading_; }
    ~Loading() { --control_.loading_; }
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

  private:
    ControlBase& control_;
};

void ControlBase::ReadFrom(const PropertySource& source) {
    const Loading loading(*this);
    for (const PropertyRow& row : Properties()) {
        OnBeforeRead(row.key);
        const PropertyValue fallback = row.fallback(*this);
        PropertyValue value = source(row, fallback);
        if (std::holds_alternative<std::monostate>(value)) value = fallback;
        try {
            row.set(*this, value);
        } catch (const RunTimeError&) {
            if (ReportsRefusedValues()) throw;
            // A damaged store can hold a value that the control refuses: the default, which it accepts, replaces it.
            if (value != fallback) Contain([&] { row.set(*this, fallback); });
        }
    }
    OnAfterRead();
}

std::vector<property_stream::Record> ControlBase::ChangedProperties() {
    std::vector<property_stream::Record> changed;
    for (const PropertyRow& row : Properties()) {
        PropertyValue value = row.get(*this);
        if (value != row.fallback(*this)) changed.emplace_back(row.key, std::move(value));
    }
    return changed;
}

void ControlBase::LoadBag(IPropertyBag* bag, IErrorLog* log) {
    setUp_ = true;
    ReadFrom([&](const PropertyRow& row, const PropertyValue& like) {
        Variant value;
        value.ptr()->vt = BagType(like);
        value.ptr()->llVal = 0;
        const HRESULT read = bag->Read(Wide(row.key), value.ptr(), log);
        // A default that replaces a stored value here would later be saved over it.
        if (read == E_OUTOFMEMORY) throw std::bad_alloc();
        return FAILED(read) ? PropertyValue() : FromVariant(value, like);
    });
    initPending_ = false;
    dirty_ = false;
    connections_.NotifyChanged(DISPID_UNKNOWN);
    Invalidate();
}

void ControlBase::SaveBag(IPropertyBag* bag) {
    for (const auto& [key, value] : ChangedProperties()) {
        Variant written = ToVariant(value);
        Check(bag->Write(Wide(key), written.ptr()));
    }
}

void ControlBase::LoadStream(IStream* stream) {
    const auto records = ReadStream(stream);
    std::optional<Loading> loading(std::in_place, *this);
    setUp_ = true;
    const auto* width = Find(records, extentXKey);
    const auto* height = Find(records, extentYKey);
    if (width && height) {
        const auto* x = std::get_if<std::int32_t>(width);
        const auto* y = std::get_if<std::int32_t>(height);
        // No device is larger than this at any resolution.
        constexpr std::int32_t largest = 1 << 20;
        if (x && y && *x >= 0 && *y >= 0 && *x <= largest && *y <= largest) {
            TakeExtent({*x, *y});
            if (WindowHandle()) OnResize(pixels_);
        }
    }
    ReadFrom([&](const PropertyRow& row, const PropertyValue& like) {
        const PropertyValue* found = Find(records, row.key);
        return found ? ConvertTo(like, *found) : PropertyValue();
    });
    loading.reset();
    initPending_ = false;
    dirty_ = false;
    connections_.NotifyChanged(DISPID_UNKNOWN);
    Invalidate();
}

void ControlBase::SaveStream(IStream* stream) {
    const auto bytes = StreamBytes();
    std::size_t done = 0;
    while (done < bytes.size()) {
        ULONG written = 0;
        Check(stream->Write(bytes.data() + done, static_cast<ULONG>(bytes.size() - done), &written));
        if (written == 0) throw ComError(STG_E_WRITEFAULT);
        done += written;
    }
}

std::vector<std::uint8_t> ControlBase::StreamBytes() {
    EnsureSize();
    auto records = ChangedProperties();
    records.insert(records.begin(), {{extentXKey, static_cast<std::int32_t>(extent_.cx)},
                                     {extentYKey, static_cast<std::int32_t>(extent_.cy)}});
    return property_stream::Write(records);
}

// --- IPersistStreamInit, IPersistPropertyBag ---

STDMETHODIMP ControlBase::InitNew() {
    return Guard([&] {
        setUp_ = true;
        InitialiseNew();
    });
}

STDMETHODIMP ControlBase::IsDirty() { return dirty_ ? S_OK : S_FALSE; }

STDMETHODIMP ControlBase::Load(IPropertyBag* bag, IErrorLog* log) {
    return Guard([&]() -> HRESULT {
        if (!bag) return E_POINTER;
        LoadBag(bag, log);
        return S_OK;
    });
}

// Values equal to their defaults are omitted even when a host asks for all of them: a missing value reads the same.
STDMETHODIMP ControlBase::Save(IPropertyBag* bag, BOOL clearDirty, BOOL) {
    return Guard([&]() -> HRESULT {
        if (!bag) return E_POINTER;
        SaveBag(bag);
        if (clearDirty) dirty_ = false;
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Load(LPSTREAM stream) {
    return Guard([&]() -> HRESULT {
        if (!stream) return E_POINTER;
        LoadStream(stream);
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Save(LPSTREAM stream, BOOL clearDirty) {
    return Guard([&]() -> HRESULT {
        if (!stream) return E_POINTER;
        SaveStream(stream);
        if (clearDirty) dirty_ = false;
        return S_OK;
    });
}

STDMETHODIMP ControlBase::GetSizeMax(ULARGE_INTEGER* size) {
    return Guard([&]() -> HRESULT {
        if (!size) return E_POINTER;
        size->QuadPart = StreamBytes().size();
        return S_OK;
    });
}

// --- IPersistStorage: one stream in the storage ---

STDMETHODIMP ControlBase::InitNew(IStorage* storage) {
    return Guard([&]() -> HRESULT {
        if (!storage) return E_POINTER;
        if (storage_) return CO_E_ALREADYINITIALIZED;
        setUp_ = true;
        InitialiseNew();
        storage_ = ComPtr<IStorage>(storage);
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Load(IStorage* storage) {
    return Guard([&]() -> HRESULT {
        if (!storage) return E_POINTER;
        if (storage_) return CO_E_ALREADYINITIALIZED;
        ComPtr<IStream> stream;
        Check(storage->OpenStream(storageStream, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.put()));
        LoadStream(stream.get());
        storage_ = ComPtr<IStorage>(storage);
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Save(IStorage* storage, BOOL) {
    return Guard([&]() -> HRESULT {
        IStorage* target = storage ? storage : storage_.get();
        if (!target) return E_UNEXPECTED;
        ComPtr<IStream> stream;
        Check(target->CreateStream(storageStream, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.put()));
        SaveStream(stream.get());
        return S_OK;
    });
}

STDMETHODIMP ControlBase::SaveCompleted(IStorage* storage) {
    if (storage) storage_ = ComPtr<IStorage>(storage);
    dirty_ = false;
    return S_OK;
}

STDMETHODIMP ControlBase::HandsOffStorage() {
    storage_.reset();
    return S_OK;
}

}  // namespace qvx
