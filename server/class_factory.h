// The maker of controls that the system asks for.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/object.h"
#include "server/control_class.h"

namespace qvx {

class ClassFactory final : public ComObject<IClassFactory> {
  public:
    explicit ClassFactory(const ControlClass& controlClass) : class_(controlClass) {}
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

  private:
    ~ClassFactory() override = default;
    const ControlClass& class_;
};

}  // namespace qvx
