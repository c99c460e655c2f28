// The maker of controls and property pages that the system asks for.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/object.h"
#include "kit/control_class.h"

namespace qvx {

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
