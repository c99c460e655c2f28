// Every member of every dual interface, called as hosts must not call it: early bound and late bound, as the type
// library tells.
#include <windows.h>

#include <gtest/gtest.h>
#include <olectl.h>

#include <climits>
#include <map>
#include <string>
#include <vector>

#include "com/guard.h"
#include "tests/support/dual_interfaces.h"

namespace qvx::test {
namespace {

constexpr HRESULT objectUnloaded = static_cast<HRESULT>(0x800A0000 + 364);

constexpr size_t noPointer = static_cast<size_t>(-1);

// Through the vtable. What a failed call leaves where its result belongs is checked here, too.
HRESULT CallEarly(IDispatch* object, const Interface& face, const Function& function, std::vector<Variant> arguments,
                  size_t nullPointer = noPointer) {
    ComPtr<IUnknown> pointer;
    EXPECT_EQ(S_OK, object->QueryInterface(face.id, pointer.put_void()));
    Variant given;
    given.ptr()->vt = VT_I2;
    given.ptr()->llVal = 0xA5A5;
    std::vector<VARTYPE> types;
    std::vector<VARIANT> values(function.parameters.size());
    std::vector<VARIANT*> pointers;
    for (size_t p = 0; p < values.size(); ++p) {
        const Parameter& parameter = function.parameters[p];
        VARIANT& value = values[p];
        value.vt = parameter.type;
        if (parameter.Pointer()) {
            VARIANT* const variable = parameter.result ? given.ptr() : arguments[p].ptr();
            value.byref = parameter.Target() == VT_VARIANT ? static_cast<void*>(variable) : &variable->llVal;
            if (p == nullPointer) value.byref = nullptr;
        } else if (parameter.type == VT_VARIANT) {
            value = arguments[p].get();
        } else {
            arguments[p] = arguments[p].To(parameter.type).value_or(arguments[p]);
            value = arguments[p].get();
            value.vt = parameter.type;
        }
        types.push_back(parameter.type);
        pointers.push_back(&value);
    }
    Variant answer;
    EXPECT_EQ(S_OK, DispCallFunc(pointer.get(), static_cast<ULONG_PTR>(function.offset), CC_STDCALL, VT_ERROR,
                                 static_cast<UINT>(types.size()), types.data(), pointers.data(), answer.put()));
    const HRESULT outcome = answer.get().scode;
    if (function.parameters.empty() || !function.parameters.back().result || nullPointer + 1 == values.size())
        return outcome;
    const VARTYPE target = function.parameters.back().Target();
    if (FAILED(outcome)) {
        EXPECT_TRUE(target == VT_VARIANT ? given.Type() == VT_EMPTY : given.get().llVal == 0)
            << "where the result of a failed call belongs";
    } else if (target != VT_VARIANT) {
        given.ptr()->vt = target;
    }
    return outcome;
}

// A value that nothing can be made of.
Variant Unreadable() {
    Variant array;
    array.ptr()->parray = SafeArrayCreateVector(VT_I4, 0, 1);
    array.ptr()->vt = VT_ARRAY | VT_I4;
    return array;
}

// ---- How it is called ----------------------------------------------------------------------------------------------

TEST(InterfaceCalls, OfAWrongNumberOfArguments) {
    ForEachFunction([](const Interface&, const Function& function, const Subject& subject) {
        std::vector<Variant> arguments = PlausibleArguments(function);
        arguments.emplace_back(u"one more");
        const bool defaultMember =
            function.kind == INVOKE_PROPERTYGET && function.Arguments() == 0 && function.GivesObject();
        const HRESULT surplus = CallLate(subject.object.get(), function, arguments).result;
        // Arguments behind an object are its default member's; whether it takes one is its own business.
        EXPECT_TRUE(defaultMember || surplus == DISP_E_BADPARAMCOUNT) << surplus;
        for (arguments.resize(function.Required()); !arguments.empty();) {
            arguments.pop_back();
            EXPECT_EQ(DISP_E_BADPARAMCOUNT, CallLate(subject.object.get(), function, arguments).result);
        }
    });
}

TEST(InterfaceCalls, OfNamesThatDoNotExist) {
    ForEachFunction([](const Interface&, const Function& function, const Subject& subject) {
        std::vector<Variant> arguments = PlausibleArguments(function);
        if (arguments.size() <= (function.Put() ? 1u : 0u)) return;
        const size_t last = arguments.size() - (function.Put() ? 2 : 1);
        for (const DISPID wrong : {static_cast<DISPID>(arguments.size()), 4711L, -7L}) {
            const LateResult late = CallLate(subject.object.get(), function, arguments, {wrong});
            EXPECT_EQ(DISP_E_PARAMNOTFOUND, late.result) << wrong;
            EXPECT_EQ(function.Put() ? 1u : 0u, late.wrong);
        }
        if (last > 0) {
            EXPECT_EQ(DISP_E_PARAMNOTFOUND, CallLate(subject.object.get(), function, arguments, {0}).result)
                << "the first is there already";
        }
        auto member = Variant(FromBstr(Bstr(Text(function.name.begin(), function.name.end())).get()));
        wchar_t parameter[] = L"NoSuchParameter";
        LPOLESTR names[] = {member.get().bstrVal, parameter};
        DISPID ids[] = {7, 7};
        EXPECT_EQ(DISP_E_UNKNOWNNAME, subject.object->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids));
        EXPECT_EQ(DISPID_UNKNOWN, ids[1]);
    });
}

TEST(InterfaceCalls, OfArgumentsOfAWrongType) {
    ForEachFunction([](const Interface&, const Function& function, const Subject& subject) {
        for (size_t p = 0; p < function.Arguments(); ++p) {
            const Parameter& parameter = function.parameters[p];
            if (parameter.Target() == VT_VARIANT) continue;
            std::vector<Variant> arguments = PlausibleArguments(function);
            arguments[p] = Unreadable();
            EXPECT_EQ(DISP_E_TYPEMISMATCH, CallLate(subject.object.get(), function, arguments).result) << p;
            if (parameter.Target() != VT_BSTR) {
                arguments[p] = Variant(u"many");
                EXPECT_EQ(DISP_E_TYPEMISMATCH, CallLate(subject.object.get(), function, arguments).result) << p;
            }
            if (!parameter.optional) {
                arguments[p] = Variant::Missing();
                const LateResult late = CallLate(subject.object.get(), function, arguments);
                EXPECT_EQ(DISP_E_PARAMNOTOPTIONAL, late.result) << p;
                EXPECT_EQ(arguments.size() - 1 - p, late.wrong);
            }
        }
    });
}

TEST(InterfaceCalls, OfIndexesThatAreOutOfRange) {
    // These have something to say of numbers out of range, too, up to the given one.
    const std::map<std::string, long> answers = {{"IFlexGrid.RowIsVisible", INT_MAX},
                                                 {"IFlexGrid.ColIsVisible", INT_MAX},
                                                 {"IEditorCombo.List", INT_MAX},
                                                 {"_ComboGrid.GetNextColumn", -1}};
    size_t refused = 0;
    ForEachFunction([&](const Interface& face, const Function& function, const Subject& subject) {
        for (size_t p = 0; p < function.Arguments(); ++p) {
            const std::string& name = function.parameters[p].name;
            if (name != "Index" && name != "Row" && name != "Col") continue;
            for (const long index : {static_cast<long>(INT_MIN), -2L, 1000000L, static_cast<long>(INT_MAX)}) {
                std::vector<Variant> arguments = PlausibleArguments(function);
                arguments[p] = Plausible(function.parameters[p].Target(), index);
                const LateResult late = CallLate(subject.object.get(), function, arguments);
                const HRESULT early = CallEarly(subject.object.get(), face, function, arguments);
                const auto answer = answers.find(face.name + "." + function.name);
                if (!function.Put() && answer != answers.end() && index <= answer->second) {
                    EXPECT_EQ(S_OK, late.result) << name << " " << index;
                    EXPECT_EQ(S_OK, early) << name << " " << index;
                    continue;
                }
                EXPECT_EQ(DISP_E_EXCEPTION, late.result) << name << " " << index;
                EXPECT_EQ(late.scode, early) << name << " " << index;
                EXPECT_EQ(0x800A0000u, static_cast<unsigned>(early) & 0xFFFF0000u) << name << " " << index;
                ++refused;
            }
        }
    });
    EXPECT_GT(refused, 100u);
}

// What an earlier call has left as the thread's error is not what a failure without a description says.
TEST(InterfaceCalls, OfNullPointers) {
    ForEachFunction([](const Interface& face, const Function& function, const Subject& subject) {
        for (size_t p = 0; p < function.parameters.size(); ++p) {
            if (!function.parameters[p].Pointer() || function.parameters[p].optional) continue;
            ReportFailure(E_FAIL, u"earlier");
            EXPECT_EQ(E_POINTER, CallEarly(subject.object.get(), face, function, PlausibleArguments(function), p)) << p;
            ComPtr<IErrorInfo> now;
            Bstr description;
            if (GetErrorInfo(0, now.put()) == S_OK) now->GetDescription(description.put());
            EXPECT_NE(u"earlier", description.ToText());
        }
    });
}

TEST(InterfaceCalls, OfObjectsWhoseControlHasGone) {
    size_t failed = 0;
    for (const Interface& face : DualInterfaces()) {
        Subject subject = Make(face);
        // Captions and their columns are a collection of its own.
        if (!subject.inside || face.name == "IColumnIndex") continue;
        subject.container.reset();
        for (const Function& function : face.functions) {
            SCOPED_TRACE(face.name + "." + function.name + " as " + std::to_string(function.kind));
            if (function.name == "Version") continue;  // true of no grid in particular
            const LateResult late = CallLate(subject.object.get(), function, PlausibleArguments(function));
            EXPECT_EQ(objectUnloaded, late.scode);
            EXPECT_EQ(objectUnloaded, CallEarly(subject.object.get(), face, function, PlausibleArguments(function)));
            ++failed;
        }
    }
    EXPECT_GT(failed, 200u);
}

}  // namespace
}  // namespace qvx::test
