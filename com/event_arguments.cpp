#include "com/event_arguments.h"

#include <vector>

namespace qvx {

EventArguments& EventArguments::In(float value) {
    Variant argument;
    argument.ptr()->vt = VT_R4;
    argument.ptr()->fltVal = value;
    return Add(std::move(argument));
}

EventArguments& EventArguments::Add(Variant value) { return AddReference(std::move(value), {}, {}, {}, {}, {}); }

EventArguments& EventArguments::AddReference(Variant value, bool* boolean, short* integer, long* number, Text* text,
                                             Variant* variant) {
    arguments_.push_back({std::move(value), boolean, integer, number, text, variant});
    return *this;
}

HRESULT EventArguments::Call(IDispatch* sink, DISPID event) {
    std::vector<VARIANT> call(arguments_.size());
    for (size_t i = 0; i < arguments_.size(); ++i) {
        Argument& argument = arguments_[i];
        // Late-bound calls pass their arguments from right to left.
        VARIANT& slot = call[arguments_.size() - 1 - i];
        slot = argument.value.get();
        if (argument.variant) {
            slot.vt = VT_BYREF | VT_VARIANT;
            slot.pvarVal = argument.value.ptr();
        } else if (argument.Reference()) {
            slot.vt = static_cast<VARTYPE>(slot.vt | VT_BYREF);
            slot.byref = &argument.value.ptr()->llVal;
        }
    }
    DISPPARAMS parameters{call.data(), nullptr, static_cast<UINT>(call.size()), 0};
    Variant ignored;
    EXCEPINFO exception{};
    const HRESULT result = sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                        ignored.put(), &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    ReadBack();
    return result;
}

void EventArguments::ReadBack() {
    for (Argument& argument : arguments_) {
        const VARIANT& value = argument.value.get();
        if (argument.boolean) *argument.boolean = value.boolVal != VARIANT_FALSE;
        if (argument.integer) *argument.integer = value.iVal;
        if (argument.number) *argument.number = value.lVal;
        if (argument.text) *argument.text = Text(FromBstr(value.bstrVal));
        if (argument.variant) *argument.variant = argument.value;
    }
}

}  // namespace qvx
