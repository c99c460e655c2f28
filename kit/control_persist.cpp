// The persistence of a control: property bags, streams and storages all use the property table.
#include "common/run_time_error.h"
#include "kit/control_base.h"
#include "kit/property_storage.h"

namespace qvx {

namespace {

const wchar_t storageStream[] = L"Contents";

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

StoredValues ControlBase::ChangedProperties() {
    StoredValues changed;
    for (const PropertyRow& row : Properties()) {
        PropertyValue value = row.get(*this);
        if (value != row.fallback(*this)) changed.emplace_back(row.key, std::move(value));
    }
    return changed;
}

void ControlBase::FinishLoading() {
    initPending_ = false;
    dirty_ = false;
    connections_.NotifyChanged(DISPID_UNKNOWN);
    Invalidate();
    DataChanged();
}

void ControlBase::LoadStream(IStream* stream) {
    const StreamContents contents(stream);
    {
        const Loading loading(*this);
        setUp_ = true;
        if (const auto extent = contents.Extent()) {
            TakeExtent(*extent);
            if (WindowHandle()) OnResize(PixelSize());
        }
        ReadFrom(contents.Source());
    }
    FinishLoading();
}

std::vector<std::uint8_t> ControlBase::BytesForStream() {
    EnsureSize();
    return StreamBytes(extent_.Himetric(), ChangedProperties());
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
        setUp_ = true;
        ReadFrom(ReadBag(bag, log));
        FinishLoading();
        return S_OK;
    });
}

// Values equal to their defaults are omitted even when a host asks for all of them: a missing value reads the same.
STDMETHODIMP ControlBase::Save(IPropertyBag* bag, BOOL clearDirty, BOOL) {
    return Guard([&]() -> HRESULT {
        if (!bag) return E_POINTER;
        WriteBag(bag, ChangedProperties());
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
        WriteStream(stream, BytesForStream());
        if (clearDirty) dirty_ = false;
        return S_OK;
    });
}

STDMETHODIMP ControlBase::GetSizeMax(ULARGE_INTEGER* size) {
    return Guard([&]() -> HRESULT {
        if (!size) return E_POINTER;
        size->QuadPart = BytesForStream().size();
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

STDMETHODIMP ControlBase::Save(IStorage* storage, BOOL sameAsLoad) {
    return Guard([&]() -> HRESULT {
        IStorage* target = storage ? storage : storage_.get();
        if (!target) return E_UNEXPECTED;
        ComPtr<IStream> stream;
        Check(target->CreateStream(storageStream, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.put()));
        WriteStream(stream.get(), BytesForStream());
        savedInPlace_ = sameAsLoad != FALSE;
        return S_OK;
    });
}

// A copy in another document leaves the control's own document unsaved.
STDMETHODIMP ControlBase::SaveCompleted(IStorage* storage) {
    return Guard([&] {
        const auto keep = KeepAlive();
        if (storage) storage_ = ComPtr<IStorage>(storage);
        const bool saved = std::exchange(savedInPlace_, false) || storage;
        if (saved) dirty_ = false;
        if (saved && advises_) advises_->SendOnSave();
    });
}

STDMETHODIMP ControlBase::HandsOffStorage() {
    storage_.reset();
    return S_OK;
}

}  // namespace qvx
