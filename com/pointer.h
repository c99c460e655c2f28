// The owner of a reference to a COM object.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <cassert>
#include <type_traits>
#include <utility>

namespace qvx {

template <typename T>
class ComPtr {
  public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): a null pointer converts to an empty owner
    // Shares the object: adds a reference of its own.
    explicit ComPtr(T* object) : object_(object) {
        if (object_) object_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <typename U>
    requires std::is_convertible_v<U*, T*> ComPtr(const ComPtr<U>& other) : ComPtr(static_cast<T*>(other.get())) {}
    ~ComPtr() { reset(); }
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    // Takes over a reference that the caller already has.
    static ComPtr Adopt(T* object) {
        ComPtr owner;
        owner.object_ = object;
        return owner;
    }

    T* get() const { return object_; }
    T* operator->() const {
        assert(object_);
        return object_;
    }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    friend bool operator==(const ComPtr& a, const ComPtr& b) { return a.object_ == b.object_; }

    // For out parameters: the owner must be empty.
    T** put() {
        assert(!object_);
        return &object_;
    }
    void** put_void() { return reinterpret_cast<void**>(put()); }

    // Gives the reference to the caller, as an out parameter or a return value does.
    T* detach() { return std::exchange(object_, nullptr); }
    // Adds a reference for an out parameter; the owner keeps its own.
    T* copy() const {
        if (object_) object_->AddRef();
        return object_;
    }
    // The member is cleared before the object is released, since the object's destructor may call back into this.
    void reset() {
        if (T* last = std::exchange(object_, nullptr)) last->Release();
    }

    // Another interface of the same object; empty when it has none.
    template <typename U>
    ComPtr<U> As() const {
        ComPtr<U> other;
        if (object_) object_->QueryInterface(__uuidof(U), other.put_void());
        return other;
    }

  private:
    T* object_ = nullptr;
};

// An interface of any object, given by a borrowed pointer (may be null); empty when it has none.
template <typename U, typename T>
ComPtr<U> Query(T* object) {
    ComPtr<U> other;
    if (object) object->QueryInterface(__uuidof(U), other.put_void());
    return other;
}

}  // namespace qvx
