#include "host/event_sink_object.h"

#include "com/bstr.h"
#include "com/guard.h"

namespace qvx::host {

bool EventSink::ReadNames(IUnknown* source) {
    const auto provider = Query<IProvideClassInfo>(source);
    ComPtr<ITypeInfo> classInfo;
    if (!provider || FAILED(provider->GetClassInfo(classInfo.put()))) return false;
    TYPEATTR* attributes = nullptr;
    if (FAILED(classInfo->GetTypeAttr(&attributes))) return false;
    const UINT interfaces = attributes->cImplTypes;
    classInfo->ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < interfaces; ++i) {
        INT flags = 0;
        constexpr INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
        if (FAILED(classInfo->GetImplTypeFlags(i, &flags)) || (flags & wanted) != wanted) continue;
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> events;
        if (FAILED(classInfo->GetRefTypeOfImplType(i, &reference)) ||
            FAILED(classInfo->GetRefTypeInfo(reference, events.put())) || FAILED(events->GetTypeAttr(&attributes))) {
            return false;
        }
        events_ = attributes->guid;
        const UINT functions = attributes->cFuncs;
        // A control calls the methods of any other kind through their places in the interface, which we do not have.
        const bool plain = attributes->typekind == TKIND_DISPATCH && !(attributes->wTypeFlags & TYPEFLAG_FDUAL);
        events->ReleaseTypeAttr(attributes);
        if (!plain) return false;
        for (UINT f = 0; f < functions; ++f) {
            FUNCDESC* function = nullptr;
            if (FAILED(events->GetFuncDesc(f, &function))) continue;
            Bstr name;
            UINT count = 0;
            if (SUCCEEDED(events->GetNames(function->memid, name.put(), 1, &count)) && count == 1) {
                names_[function->memid] = name.ToText();
            }
            events->ReleaseFuncDesc(function);
        }
        return true;
    }
    return false;
}

bool EventSink::Connect(IUnknown* source) {
    if (!ReadNames(source)) return false;
    const auto container = Query<IConnectionPointContainer>(source);
    if (!container || FAILED(container->FindConnectionPoint(events_, point_.put()))) return false;
    if (FAILED(point_->Advise(this, &cookie_))) {
        point_.reset();
        return false;
    }
    return true;
}

void EventSink::Disconnect() {
    handler_ = nullptr;
    if (point_) point_->Unadvise(cookie_);
    point_.reset();
}

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object) {
    // The control asks for its own events' interface; they all come through IDispatch.
    if (object && iid == events_) {
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    return ComObject::QueryInterface(iid, object);
}

STDMETHODIMP EventSink::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                               UINT*) {
    return Guard([&]() -> HRESULT {
        if (result) VariantInit(result);
        const auto name = names_.find(member);
        if (name == names_.end()) return DISP_E_MEMBERNOTFOUND;
        const Handler handler = handler_;  // the handler may disconnect us
        const Text event = name->second;
        std::vector<VARIANT*> arguments;
        for (UINT i = parameters ? parameters->cArgs : 0; i > 0; --i) arguments.push_back(&parameters->rgvarg[i - 1]);
        if (handler) handler(event, arguments);
        return S_OK;
    });
}

}  // namespace qvx::host
