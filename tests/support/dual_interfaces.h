// The dual interfaces in the server's type library, with an object for each and calls of its members.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "com/pointer.h"
#include "com/variant.h"
#include "tests/support/container.h"

namespace qvx::test {

struct Parameter {
    std::string name;
    VARTYPE type = VT_EMPTY;  // VT_BYREF set for pointers
    bool optional = false;
    bool result = false;

    VARTYPE Target() const { return static_cast<VARTYPE>(type & ~VT_BYREF); }
    bool Pointer() const { return (type & VT_BYREF) != 0; }
};

struct Function {
    std::string name;
    MEMBERID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    SHORT offset = 0;                   // in the vtable
    std::vector<Parameter> parameters;  // from left to right, the result last

    std::wstring WideName() const { return {name.begin(), name.end()}; }
    bool Put() const { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
    // Returns the number of arguments without the result.
    size_t Arguments() const {
        return static_cast<size_t>(
            std::count_if(parameters.begin(), parameters.end(), [](const Parameter& p) { return !p.result; }));
    }
    size_t Required() const {
        size_t required = 0;
        for (size_t p = 0; p < Arguments(); ++p) required = parameters[p].optional ? required : p + 1;
        return required;
    }
    bool GivesObject() const {
        return !parameters.empty() && parameters.back().result &&
               (parameters.back().Target() == VT_DISPATCH || parameters.back().Target() == VT_UNKNOWN);
    }
};

struct Interface {
    std::string name;
    IID id{};
    std::vector<Function> functions;
};

std::vector<Interface> DualInterfaces();
// Those of an object's own interface.
std::vector<Function> FunctionsOf(IDispatch* object);

// A control in place, and its object with one interface: the control itself or one inside it.
struct Subject {
    std::unique_ptr<Container> container;
    ComPtr<IDispatch> object;
    bool inside = false;
};

Subject Make(const Interface& face);

// Returns a value that a member accepts; `number` if it takes numbers.
Variant Plausible(VARTYPE target, long number = 1);
std::vector<Variant> PlausibleArguments(const Function& function);

struct LateResult {
    HRESULT result = S_OK;
    HRESULT scode = S_OK;
    UINT wrong = 0;
};

// Calls a member by its number. `names` are the numbers of the last arguments, from left to right; the value of a put
// has its own. Expects an empty result of a failed call, whatever it was called with. `value` receives the result of a
// successful call.
LateResult CallLate(IDispatch* object, const Function& function, const std::vector<Variant>& arguments,
                    std::vector<DISPID> names = {}, Variant* value = nullptr);

// Calls `act` for every member, with one object for each interface.
void ForEachFunction(const std::function<void(const Interface&, const Function&, const Subject&)>& act);

}  // namespace qvx::test
