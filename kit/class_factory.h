// The class factory of the controls and property pages that the system creates.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/object.h"
#include "kit/control_class.h"

namespace qvx {

// `create` makes the object; a factory is made for each class. Aggregation is refused (CLASS_E_NOAGGREGATION).
class ClassFactory final : public ComObject<IClassFactory> {
  public:
    explicit ClassFactory(CreateFunction create) : create_(create) {}
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

  private:
    ~ClassFactory() override = default;
    CreateFunction create_;
};

}  // namespace qvx
