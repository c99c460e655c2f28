// The typed arguments of one event. By-reference ones point at our own variables during the call, and what the handlers
// wrote is read back afterwards.
//
//     bool cancel = false;
//     Fire(u"BeforeChange", EventArguments().In(row).In(col).InOut(data).InOut(cancel));
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <deque>

#include "com/variant.h"

namespace qvx {

class EventArguments {
  public:
    EventArguments& In(short value) { return Add(Variant(value)); }
    EventArguments& In(long value) { return Add(Variant(value)); }
    EventArguments& In(int value) { return Add(Variant(static_cast<long>(value))); }
    EventArguments& In(bool value) { return Add(Variant(value)); }
    EventArguments& In(double value) { return Add(Variant(value)); }
    EventArguments& In(float value);
    EventArguments& In(const Text& value) { return Add(Variant(value)); }
    EventArguments& In(const Variant& value) { return Add(value); }

    // The variable must outlive these arguments.
    EventArguments& InOut(bool& variable) { return AddReference(Variant(variable), &variable, {}, {}, {}, {}); }
    EventArguments& InOut(short& variable) { return AddReference(Variant(variable), {}, &variable, {}, {}, {}); }
    EventArguments& InOut(long& variable) { return AddReference(Variant(variable), {}, {}, &variable, {}, {}); }
    EventArguments& InOut(Text& variable) { return AddReference(Variant(variable), {}, {}, {}, &variable, {}); }
    // A Variant argument by reference (VT_BYREF | VT_VARIANT).
    EventArguments& InOut(Variant& variable) { return AddReference(variable, {}, {}, {}, {}, &variable); }

    // Calls one handler and reads by-reference arguments back, even when the handler failed.
    HRESULT Call(IDispatch* sink, DISPID event);

  private:
    struct Argument {
        Variant value;
        bool* boolean = nullptr;
        short* integer = nullptr;
        long* number = nullptr;
        Text* text = nullptr;
        Variant* variant = nullptr;
        bool Reference() const { return boolean || integer || number || text || variant; }
    };

    EventArguments& Add(Variant value);
    EventArguments& AddReference(Variant value, bool* boolean, short* integer, long* number, Text* text,
                                 Variant* variant);
    void ReadBack();

    // In the order of the event's declaration. It is a deque because elements must keep their addresses.
    std::deque<Argument> arguments_;
};

}  // namespace qvx
