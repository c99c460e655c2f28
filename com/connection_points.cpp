#include "com/connection_points.h"

#include <olectl.h>

#include <algorithm>

#include "com/enumerator.h"
#include "com/guard.h"
#include "com/object.h"
#include "com/type_library.h"

namespace qvx {

namespace {

struct CopyPoint {
    static void Out(const ComPtr<IConnectionPoint>& from, IConnectionPoint** to) { *to = from.copy(); }
};

}  // namespace

// A connection point may outlive its container; it then reports that it is disconnected.
class ConnectionPoint final : public ComObject<IConnectionPoint> {
    struct Connection {
        DWORD cookie;
        ComPtr<IUnknown> sink;  // a pointer to the connection point's own interface
    };

    struct CopyConnection {
        static void Out(const Connection& from, CONNECTDATA* to) {
            to->dwCookie = from.cookie;
            to->pUnk = from.sink.copy();
        }
    };

  public:
    ConnectionPoint(IConnectionPointContainer* owner, REFIID iid) : owner_(owner), iid_(iid) {}

    STDMETHODIMP GetConnectionInterface(IID* iid) override {
        if (!iid) return E_POINTER;
        *iid = iid_;
        return S_OK;
    }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** out) override {
        if (!out) return E_POINTER;
        *out = ComPtr<IConnectionPointContainer>(owner_).detach();
        return owner_ ? S_OK : E_UNEXPECTED;
    }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
        return Guard([&]() -> HRESULT {
            if (!sink || !cookie) return E_POINTER;
            *cookie = 0;
            if (!owner_) return CONNECT_E_CANNOTCONNECT;
            ComPtr<IUnknown> answer;
            HRESULT found = sink->QueryInterface(iid_, answer.put_void());
            // A late-bound sink need not support the event interface by its identifier.
            if (FAILED(found) && iid_ != IID_IPropertyNotifySink) {
                found = sink->QueryInterface(IID_IDispatch, answer.put_void());
            }
            if (FAILED(found)) return CONNECT_E_CANNOTCONNECT;
            connections_.push_back({++lastCookie_, std::move(answer)});
            *cookie = lastCookie_;
            return S_OK;
        });
    }
    STDMETHODIMP Unadvise(DWORD cookie) override {
        const auto found = Find(cookie);
        if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
        // The sink is released only after it has left the list, since its destructor may call back into this object.
        const Connection last = std::move(*found);
        connections_.erase(found);
        return S_OK;
    }
    STDMETHODIMP EnumConnections(IEnumConnections** out) override {
        return Guard([&]() -> HRESULT {
            if (!out) return E_POINTER;
            using All = Enumerator<IEnumConnections, CONNECTDATA, Connection, CopyConnection>;
            *out = MakeObject<All>(connections_).detach();
            return S_OK;
        });
    }

    // Visits the sinks that were connected at the moment of the call and still are when their turn comes.
    template <typename Visit>
    void ForEach(Visit visit) {
        const ComPtr<ConnectionPoint> keepMe(this);
        const ComPtr<IConnectionPointContainer> keepOwner(owner_);
        const std::vector<Connection> snapshot = connections_;
        for (const Connection& connection : snapshot) {
            if (Find(connection.cookie) != connections_.end()) visit(connection.sink.get());
        }
    }
    bool Empty() const { return connections_.empty(); }
    void CutOff() {
        owner_ = nullptr;
        const std::vector<Connection> last = std::move(connections_);
        connections_.clear();
    }

  private:
    ~ConnectionPoint() override = default;
    std::vector<Connection>::iterator Find(DWORD cookie) {
        return std::find_if(connections_.begin(), connections_.end(),
                            [&](const Connection& c) { return c.cookie == cookie; });
    }

    IConnectionPointContainer* owner_;
    IID iid_;
    std::vector<Connection> connections_;
    DWORD lastCookie_ = 0;
};

ConnectionPoints::ConnectionPoints(IConnectionPointContainer* owner, REFIID events)
    : eventsId_(events),
      events_(MakeObject<ConnectionPoint>(owner, events)),
      properties_(MakeObject<ConnectionPoint>(owner, IID_IPropertyNotifySink)) {}

ConnectionPoints::~ConnectionPoints() {
    events_->CutOff();
    properties_->CutOff();
}

HRESULT ConnectionPoints::Enumerate(IEnumConnectionPoints** out) noexcept {
    return Guard([&]() -> HRESULT {
        if (!out) return E_POINTER;
        using All = Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>, CopyPoint>;
        *out = MakeObject<All>(std::vector<ComPtr<IConnectionPoint>>{events_, properties_}).detach();
        return S_OK;
    });
}

HRESULT ConnectionPoints::Find(REFIID iid, IConnectionPoint** out) noexcept {
    if (!out) return E_POINTER;
    *out = nullptr;
    for (const auto& point : {events_, properties_}) {
        IID known;
        point->GetConnectionInterface(&known);
        if (known == iid) {
            *out = point.copy();
            return S_OK;
        }
    }
    return CONNECT_E_NOCONNECTION;
}

void ConnectionPoints::Fire(TextView event, EventArguments arguments) {
    if (!HasListeners()) return;
    const DISPID number = MembersOf(eventsId_)->NumberOf(event);
    if (number == DISPID_UNKNOWN) return;
    events_->ForEach([&](IUnknown* sink) { arguments.Call(static_cast<IDispatch*>(sink), number); });
}

bool ConnectionPoints::HasListeners() const { return !events_->Empty(); }

void ConnectionPoints::NotifyChanged(DISPID property) {
    properties_->ForEach([&](IUnknown* sink) { static_cast<IPropertyNotifySink*>(sink)->OnChanged(property); });
}

bool ConnectionPoints::HasPropertySinks() const { return !properties_->Empty(); }

HRESULT ConnectionPoints::Connect(IUnknown* events, DWORD* eventCookie, IPropertyNotifySink* properties,
                                  DWORD* propertyCookie) {
    *eventCookie = 0;
    *propertyCookie = 0;
    if (events) Check(events_->Advise(events, eventCookie));
    if (properties) Check(properties_->Advise(properties, propertyCookie));
    return S_OK;
}

}  // namespace qvx
