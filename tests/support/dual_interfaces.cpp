#include "tests/support/dual_interfaces.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include <array>
#include <climits>
#include <map>

#include "Qvx.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {

namespace {

VARTYPE TypeOf(ITypeInfo* info, const TYPEDESC& type) {
    if (type.vt == VT_PTR) {
        const VARTYPE target = TypeOf(info, *type.lptdesc);
        const bool object = type.lptdesc->vt == VT_USERDEFINED && target == VT_DISPATCH;
        return object ? target : static_cast<VARTYPE>(target | VT_BYREF);
    }
    if (type.vt != VT_USERDEFINED) return type.vt;
    ComPtr<ITypeInfo> user;
    TYPEATTR* attributes = nullptr;
    info->GetRefTypeInfo(type.hreftype, user.put());
    user->GetTypeAttr(&attributes);
    const VARTYPE result = attributes->typekind == TKIND_ENUM    ? VARTYPE{VT_I4}
                           : attributes->typekind == TKIND_ALIAS ? TypeOf(user.get(), attributes->tdescAlias)
                                                                 : VARTYPE{VT_DISPATCH};
    user->ReleaseTypeAttr(attributes);
    return result;
}

std::string Spelled(BSTR text) { return Narrow(FromBstr(text)); }

Function Describe(ITypeInfo* info, UINT index) {
    FUNCDESC* found = nullptr;
    info->GetFuncDesc(index, &found);
    std::array<BSTR, 16> names{};
    UINT count = 0;
    info->GetNames(found->memid, names.data(), static_cast<UINT>(names.size()), &count);
    Function function{Spelled(names[0]), found->memid, found->invkind, found->oVft, {}};
    for (size_t p = 0; p < static_cast<size_t>(found->cParams); ++p) {
        const ELEMDESC& parameter = found->lprgelemdescParam[p];
        const USHORT flags = parameter.paramdesc.wParamFlags;
        const bool value = function.Put() && p + 1 == static_cast<size_t>(found->cParams);
        function.parameters.push_back({value || p + 1 >= count ? "" : Spelled(names[p + 1]),
                                       TypeOf(info, parameter.tdesc), (flags & PARAMFLAG_FOPT) != 0,
                                       (flags & PARAMFLAG_FRETVAL) != 0});
    }
    for (const BSTR name : names) SysFreeString(name);
    info->ReleaseFuncDesc(found);
    return function;
}

// The vtable's side of a dual interface; none of others.
std::vector<Function> FunctionsOf(ITypeInfo* info) {
    std::vector<Function> functions;
    ComPtr<ITypeInfo> methods;
    TYPEATTR* own = nullptr;
    HREFTYPE reference = 0;
    if (FAILED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
        FAILED(info->GetRefTypeInfo(reference, methods.put())) || FAILED(methods->GetTypeAttr(&own)))
        return functions;
    for (UINT f = 0; f < own->cFuncs; ++f) functions.push_back(Describe(methods.get(), f));
    methods->ReleaseTypeAttr(own);
    return functions;
}

}  // namespace

std::vector<Function> FunctionsOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(S_OK, object->GetTypeInfo(0, LOCALE_NEUTRAL, info.put()));
    return FunctionsOf(info.get());
}

std::vector<Interface> DualInterfaces() {
    std::vector<Interface> interfaces;
    ComPtr<ITypeLib> library;
    EXPECT_EQ(S_OK, LoadTypeLibEx(ServerUnderTest::Get().Path().c_str(), REGKIND_NONE, library.put()));
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        library->GetTypeInfo(i, info.put());
        info->GetTypeAttr(&attributes);
        Bstr name;
        info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
        auto functions = FunctionsOf(info.get());
        if (attributes->wTypeFlags & TYPEFLAG_FDUAL && !functions.empty())
            interfaces.push_back({Narrow(name.View()), attributes->guid, std::move(functions)});
        info->ReleaseTypeAttr(attributes);
    }
    return interfaces;
}

Subject Make(const Interface& face) {
    struct Inner {
        const CLSID* control;
        const wchar_t* member;
        std::vector<Variant> arguments;
    };
    const std::map<std::string, Inner> inners = {
        {"IFlexGrid", {&CLSID_ComboGrid, L"Grid", {}}},
        {"IEditorCombo", {&CLSID_ComboGrid, L"Lists", {Variant(1)}}},
        {"IColumnIndex", {&CLSID_ComboGrid, L"ColIndex", {}}},
        {"IGridColumns", {&CLSID_ComboGrid, L"Columns", {}}},
        {"IGridColumn", {&CLSID_ComboGrid, L"Columns", {Variant(1)}}},
        {"ITextBox", {&CLSID_TextEdit, L"TextBox", {}}},
    };
    const auto inner = inners.find(face.name);
    Subject subject;
    subject.inside = inner != inners.end();
    ComPtr<IUnknown> control;
    if (subject.inside) {
        control = ServerUnderTest::Get().Create(*inner->second.control);
    } else {
        for (const auto& known : ServerUnderTest::Get().Controls()) {
            const auto made = ServerUnderTest::Get().Create(known.id);
            ComPtr<IUnknown> answers;
            if (SUCCEEDED(made->QueryInterface(face.id, answers.put_void()))) control = made;
        }
    }
    if (!control) return subject;
    subject.container = std::make_unique<Container>(HostInMode(true));
    subject.container->Place(control);
    subject.object = subject.container->Automation();
    if (subject.object && Query<_ComboGrid>(subject.object.get())) {
        Put(subject.object.get(), L"FormatString", {Variant(u"No|Name|Price")});
        Put(subject.object.get(), L"ListColumns", {Variant(u";Name;")});
    }
    subject.container->Activate();
    if (subject.inside) {
        subject.object =
            Call(subject.object.get(), inner->second.member, inner->second.arguments).ToObject<IDispatch>();
    }
    return subject;
}

Variant Plausible(VARTYPE target, long number) {
    switch (target) {
        case VT_BSTR:
            return Variant(u"x");
        case VT_BOOL:
            return Variant(true);
        case VT_R4:
        case VT_R8:
            return Variant(1.0);
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return Variant(static_cast<IDispatch*>(nullptr));
        case VT_I2:
            return Variant(std::clamp<long>(number, SHRT_MIN, SHRT_MAX));
        default:
            return Variant(number);
    }
}

std::vector<Variant> PlausibleArguments(const Function& function) {
    std::vector<Variant> arguments;
    for (size_t p = 0; p < function.Arguments(); ++p) arguments.push_back(Plausible(function.parameters[p].Target()));
    return arguments;
}

LateResult CallLate(IDispatch* object, const Function& function, const std::vector<Variant>& arguments,
                    std::vector<DISPID> names, Variant* value) {
    std::vector<VARIANT> passed;
    for (const Variant& argument : arguments) passed.insert(passed.begin(), argument.get());
    if (function.Put() && !arguments.empty()) names.push_back(DISPID_PROPERTYPUT);
    std::reverse(names.begin(), names.end());
    DISPPARAMS call{passed.data(), names.data(), static_cast<UINT>(passed.size()), static_cast<UINT>(names.size())};
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = 0x5A5A5A5A;
    EXCEPINFO exception{};
    LateResult late;
    const auto flags = static_cast<WORD>(function.kind == INVOKE_FUNC || function.kind == INVOKE_PROPERTYGET
                                             ? DISPATCH_METHOD | DISPATCH_PROPERTYGET
                                             : function.kind);
    late.result =
        object->Invoke(function.id, IID_NULL, LOCALE_USER_DEFAULT, flags, &call, &result, &exception, &late.wrong);
    late.scode = exception.scode;
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    if (FAILED(late.result)) {
        EXPECT_EQ(VT_EMPTY, result.vt) << "what a failed call gave back";
    } else if (value) {
        *value->put() = result;
    } else {
        VariantClear(&result);
    }
    return late;
}

void ForEachFunction(const std::function<void(const Interface&, const Function&, const Subject&)>& act) {
    for (const Interface& face : DualInterfaces()) {
        const Subject subject = Make(face);
        ASSERT_TRUE(subject.object) << face.name;
        for (const Function& function : face.functions) {
            SCOPED_TRACE(face.name + "." + function.name + " as " + std::to_string(function.kind));
            act(face, function, subject);
        }
    }
}

}  // namespace qvx::test
