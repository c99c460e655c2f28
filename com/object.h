// The base of a reference-counted COM object.
//
//     class Thing final : public ComObject<Dispatch<_Thing>, IProvideClassInfo> {
//       public:
//         STDMETHODIMP GetClassInfo(ITypeInfo**) override { return Guard([&] { ... }); }
//       private:
//         ~Thing() override = default;     // only the last Release destroys
//     };
//     ComPtr<Thing> thing = MakeObject<Thing>(...);
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <atomic>
#include <utility>

#include "com/module.h"
#include "com/pointer.h"

namespace qvx {

// Whether a pointer to I also supports `iid`: I itself and the interfaces that it extends.
template <typename I>
struct InterfaceTraits {
    static bool Answers(REFIID iid) { return iid == __uuidof(I); }
};

template <>
struct InterfaceTraits<IOleInPlaceObject> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IOleInPlaceObject) || iid == __uuidof(IOleWindow); }
};

template <>
struct InterfaceTraits<IViewObjectEx> {
    static bool Answers(REFIID iid) {
        return iid == __uuidof(IViewObjectEx) || iid == __uuidof(IViewObject2) || iid == __uuidof(IViewObject);
    }
};

template <>
struct InterfaceTraits<IProvideClassInfo2> {
    static bool Answers(REFIID iid) {
        return iid == __uuidof(IProvideClassInfo2) || iid == __uuidof(IProvideClassInfo);
    }
};

template <>
struct InterfaceTraits<IPersistStreamInit> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IPersistStreamInit) || iid == __uuidof(IPersist); }
};

// The reference count of an object, which also updates the module's count of live objects.
class ReferenceCount {
  public:
    ReferenceCount() { CountObject(1); }
    ReferenceCount(const ReferenceCount&) = delete;
    ReferenceCount& operator=(const ReferenceCount&) = delete;
    ~ReferenceCount() { CountObject(-1); }
    ULONG Add() { return ++count_; }
    ULONG Remove() { return --count_; }
    // While an object is being destroyed, references may be added and released once more without destroying it twice.
    void BeginDestruction() { count_ = destructionCount; }

  private:
    static constexpr ULONG destructionCount = 0x10000;
    std::atomic<ULONG> count_{1};
};

template <typename First, typename... Others>
class ComObject : public First, public Others... {
  public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (iid == __uuidof(IUnknown)) {
            *object = static_cast<First*>(this);
        } else if (!Offer<First>(iid, object)) {
            (void)(Offer<Others>(iid, object) || ...);
        }
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return references_.Add(); }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = references_.Remove();
        if (left == 0) {
            references_.BeginDestruction();
            delete this;
        }
        return left;
    }

  protected:
    ComObject() = default;
    virtual ~ComObject() = default;

  private:
    template <typename I>
    bool Offer(REFIID iid, void** object) {
        if (!InterfaceTraits<I>::Answers(iid)) return false;
        *object = static_cast<I*>(this);
        return true;
    }

    ReferenceCount references_;
};

// Creates an object and returns its owner. Throws what its constructor throws.
template <typename T, typename... Arguments>
ComPtr<T> MakeObject(Arguments&&... arguments) {
    return ComPtr<T>::Adopt(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace qvx
