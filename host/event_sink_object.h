// Receives the events of one control under their names, as its type information gives them.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <map>
#include <vector>

#include "com/untyped_dispatch.h"
#include "common/text.h"

namespace qvx::host {

class EventSink final : public ComObject<UntypedDispatch> {
  public:
    // The event's name and its arguments in the order of declaration, borrowed for the length of the call.
    using Handler = std::function<void(const Text&, const std::vector<VARIANT*>&)>;

    explicit EventSink(Handler handler) : handler_(std::move(handler)) {}

    // Connects to the default events of `source`. False when it has none, or does not describe them.
    bool Connect(IUnknown* source);
    void Disconnect();

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~EventSink() override = default;
    bool ReadNames(IUnknown* source);

    Handler handler_;
    IID events_{};
    std::map<DISPID, Text> names_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace qvx::host
