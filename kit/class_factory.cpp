#include "kit/class_factory.h"

#include "com/guard.h"

namespace qvx {

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    return Guard([&]() -> HRESULT {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return create_(iid, object);
    });
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
    CountObject(lock ? 1 : -1);
    return S_OK;
}

}  // namespace qvx
