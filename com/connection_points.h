// Outgoing interfaces: the connection points of an object, and raising events through them. During an event, handlers
// may do anything: disconnect themselves or others, connect, or release the object itself.
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
    // `owner` is the object that contains this member; events of the dispinterface `events` go through IDispatch.
    ConnectionPoints(IConnectionPointContainer* owner, REFIID events);
    ConnectionPoints(const ConnectionPoints&) = delete;
    ConnectionPoints& operator=(const ConnectionPoints&) = delete;
    ~ConnectionPoints();

    // The two methods of IConnectionPointContainer.
    HRESULT Enumerate(IEnumConnectionPoints** out) noexcept;
    HRESULT Find(REFIID iid, IConnectionPoint** out) noexcept;

    // Calls every connected handler in the order in which they connected, with the number that the source interface
    // gives to the event of that name. An event that the interface does not have calls nobody.
    void Fire(TextView event, EventArguments arguments);
    // Whether any handler is connected for events.
    bool HasListeners() const;

    // Notifies the sinks of IPropertyNotifySink.
    void NotifyChanged(DISPID property);
    // Whether any of them is connected.
    bool HasPropertySinks() const;

    // Connects both sinks in one call, for IQuickActivate. Null sinks are skipped; their cookies are 0.
    HRESULT Connect(IUnknown* events, DWORD* eventCookie, IPropertyNotifySink* properties, DWORD* propertyCookie);

  private:
    IID eventsId_;
    ComPtr<ConnectionPoint> events_;
    ComPtr<ConnectionPoint> properties_;
};

}  // namespace qvx
