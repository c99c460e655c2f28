// An enumerator over a snapshot of elements, for any of the system's IEnumXxx interfaces. A Copy type defines how an
// element is returned: `static void Out(const Stored&, Element* to)` may throw; the caller owns the copy.
#pragma once

#include <vector>

#include "com/guard.h"
#include "com/object.h"

namespace qvx {

template <typename Interface, typename Element, typename Stored, typename Copy>
class Enumerator final : public ComObject<Interface> {
  public:
    explicit Enumerator(std::vector<Stored> elements, size_t next = 0) : elements_(std::move(elements)), next_(next) {}

    STDMETHODIMP Next(ULONG count, Element* out, ULONG* fetched) override {
        return Guard([&]() -> HRESULT {
            if (fetched) *fetched = 0;
            if (!out || (!fetched && count != 1)) return E_POINTER;
            ULONG given = 0;
            while (given < count && next_ < elements_.size()) {
                Copy::Out(elements_[next_], out + given);
                ++next_;
                ++given;
                if (fetched) *fetched = given;
            }
            return given == count ? S_OK : S_FALSE;
        });
    }
    STDMETHODIMP Skip(ULONG count) override {
        const size_t left = elements_.size() - next_;
        next_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        next_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(Interface** out) override {
        return Guard([&]() -> HRESULT {
            if (!out) return E_POINTER;
            *out = MakeObject<Enumerator>(elements_, next_).detach();
            return S_OK;
        });
    }

  private:
    ~Enumerator() override = default;

    std::vector<Stored> elements_;
    size_t next_;
};

}  // namespace qvx
