// Outgoing interfaces: the connection points of an object, and firing through them. Handlers may do anything during an
// event: disconnect themselves or others, connect, or release the object itself.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <memory>
#include <vector>

#include "com/event_arguments.h"
#include "com/pointer.h"
#include "common/text.h"

namespace qvx {

class ConnectionPoint;

class ConnectionPoints {
  public:
    // The container's object, which owns this member; events to `events` go through IDispatch.
    ConnectionPoints(IConnectionPointContainer* owner, REFIID events);
    ConnectionPoints(const ConnectionPoints&) = delete;
    ConnectionPoints& operator=(const ConnectionPoints&) = delete;
    ~ConnectionPoints();

    // IConnectionPointContainer's two methods.
    HRESULT Enumerate(IEnumConnectionPoints** out) noexcept;
    HRESULT Find(REFIID iid, IConnectionPoint** out) noexcept;

    // Calls every connected handler in the order of connection, with the number that the source interface gives to the
    // event of that name. A name that it does not have reaches nobody.
    void Fire(TextView event, EventArguments arguments);
    // Whether anybody listens to events.
    bool HasListeners() const;

    // IPropertyNotifySink.
    void NotifyChanged(DISPID property);

    // IQuickActivate connects both sinks in one call; null sinks are passed over. The cookies are 0 then.
    HRESULT Connect(IUnknown* events, DWORD* eventCookie, IPropertyNotifySink* properties, DWORD* propertyCookie);

  private:
    IID eventsId_;
    ComPtr<ConnectionPoint> events_;
    ComPtr<ConnectionPoint> properties_;
};

}  // namespace qvx
