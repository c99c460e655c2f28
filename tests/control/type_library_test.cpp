// The public interface never changes: the type library inside the server is compared with a dump kept beside the tests.
#include <windows.h>

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "Qvx.h"
#include "com/bstr.h"
#include "com/guard.h"
#include "com/wide_text.h"
#include "tests/control/golden.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

// On one line.
std::string OneLine(TextView text) {
    std::string line = test::Narrow(text);
    std::erase(line, '\r');
    for (std::size_t at; (at = line.find('\n')) != std::string::npos;) line.replace(at, 1, "\\n");
    return line;
}

std::string TypeName(ITypeInfo* info, const TYPEDESC& type) {
    static const std::map<VARTYPE, const char*> names = {
        {VT_I2, "short"},          {VT_I4, "long"},           {VT_R4, "float"},        {VT_R8, "double"},
        {VT_BSTR, "BSTR"},         {VT_BOOL, "VARIANT_BOOL"}, {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch*"},
        {VT_UNKNOWN, "IUnknown*"}, {VT_UI4, "unsigned long"}, {VT_HRESULT, "HRESULT"}, {VT_VOID, "void"},
    };
    if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc) + "*";
    if (type.vt == VT_SAFEARRAY) return "SAFEARRAY(" + TypeName(info, *type.lptdesc) + ")";
    if (type.vt != VT_USERDEFINED) return names.at(type.vt);
    ComPtr<ITypeInfo> user;
    Bstr name;
    if (FAILED(info->GetRefTypeInfo(type.hreftype, user.put()))) return "?";
    user->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    return OneLine(name.View());
}

std::string Documentation(ITypeInfo* info, MEMBERID member) {
    Bstr help;
    info->GetDocumentation(member, nullptr, help.put(), nullptr, nullptr);
    return OneLine(help.View());
}

void PrintFunction(ITypeInfo* info, UINT index, std::ostream& out) {
    FUNCDESC* function = nullptr;
    ASSERT_EQ(S_OK, info->GetFuncDesc(index, &function));
    std::vector<BSTR> names(static_cast<size_t>(function->cParams) + 2, nullptr);
    UINT count = 0;
    info->GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &count);
    const char* kind = function->invkind == INVOKE_PROPERTYGET      ? "get "
                       : function->invkind == INVOKE_PROPERTYPUT    ? "put "
                       : function->invkind == INVOKE_PROPERTYPUTREF ? "putref "
                                                                    : "";
    out << "    [" << function->memid << "] " << kind << TypeName(info, function->elemdescFunc.tdesc) << " "
        << OneLine(FromBstr(names[0])) << "(";
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& parameter = function->lprgelemdescParam[i];
        const USHORT flags = parameter.paramdesc.wParamFlags;
        out << (i ? ", " : "") << (flags & PARAMFLAG_FIN ? "in " : "") << (flags & PARAMFLAG_FOUT ? "out " : "")
            << (flags & PARAMFLAG_FRETVAL ? "retval " : "") << (flags & PARAMFLAG_FOPT ? "optional " : "")
            << TypeName(info, parameter.tdesc);
        // Names belong to the member, not to each of its functions: the value of a put would get the get's name.
        const bool newValue =
            function->invkind != INVOKE_FUNC && function->invkind != INVOKE_PROPERTYGET && i + 1 == function->cParams;
        if (static_cast<UINT>(i) + 1 < count && !newValue)
            out << " " << OneLine(FromBstr(names[static_cast<size_t>(i) + 1]));
        if (flags & PARAMFLAG_FHASDEFAULT) {
            out << " = " << OneLine(Variant(parameter.paramdesc.pparamdescex->varDefaultValue).ToText().value_or(u"?"));
        }
    }
    out << ")";
    if (function->funckind == FUNC_PUREVIRTUAL) out << " slot " << function->oVft / static_cast<SHORT>(sizeof(void*));
    out << " \"" << Documentation(info, function->memid) << "\"\n";
    for (UINT i = 0; i < names.size(); ++i) SysFreeString(names[i]);
    info->ReleaseFuncDesc(function);
}

void PrintType(ITypeInfo* info, std::ostream& out) {
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
    Bstr name;
    info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    static const char* const kinds[] = {"enum", "record", "module", "interface", "dispinterface", "coclass"};
    out << kinds[attributes->typekind] << " " << OneLine(name.View());
    if (attributes->typekind != TKIND_ENUM) {
        out << " " << OneLine(FromWide(Spell(attributes->guid).c_str())) << " flags " << attributes->wTypeFlags;
    }
    out << " \"" << Documentation(info, MEMBERID_NIL) << "\"\n";
    for (UINT i = 0; i < attributes->cImplTypes && attributes->typekind == TKIND_COCLASS; ++i) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> implemented;
        INT flags = 0;
        info->GetRefTypeOfImplType(i, &reference);
        info->GetRefTypeInfo(reference, implemented.put());
        info->GetImplTypeFlags(i, &flags);
        Bstr implementedName;
        implemented->GetDocumentation(MEMBERID_NIL, implementedName.put(), nullptr, nullptr, nullptr);
        out << "    " << OneLine(implementedName.View()) << " flags " << flags << "\n";
    }
    for (UINT i = 0; i < attributes->cVars; ++i) {
        VARDESC* variable = nullptr;
        info->GetVarDesc(i, &variable);
        Bstr variableName;
        info->GetDocumentation(variable->memid, variableName.put(), nullptr, nullptr, nullptr);
        out << "    " << OneLine(variableName.View()) << " = "
            << OneLine(Variant(*variable->lpvarValue).ToText().value_or(u"?")) << "\n";
        info->ReleaseVarDesc(variable);
    }
    // Of a dual interface its own view as a vtable: names, numbers and slots at once.
    ComPtr<ITypeInfo> methods(info);
    HREFTYPE vtable = 0;
    if (attributes->wTypeFlags & TYPEFLAG_FDUAL &&
        SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &vtable))) {
        methods.reset();
        info->GetRefTypeInfo(vtable, methods.put());
    }
    TYPEATTR* methodAttributes = nullptr;
    ASSERT_EQ(S_OK, methods->GetTypeAttr(&methodAttributes));
    for (UINT i = 0; i < methodAttributes->cFuncs; ++i) PrintFunction(methods.get(), i, out);
    methods->ReleaseTypeAttr(methodAttributes);
    info->ReleaseTypeAttr(attributes);
}

TEST(TypeLibrary, IsWhatItAlwaysWas) {
    ComPtr<ITypeLib> library;
    ASSERT_EQ(S_OK, LoadTypeLibEx(ServerUnderTest::Get().Path().c_str(), REGKIND_NONE, library.put()));
    std::ostringstream out;
    Bstr name;
    Bstr help;
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(S_OK, library->GetDocumentation(-1, name.put(), help.put(), nullptr, nullptr));
    ASSERT_EQ(S_OK, library->GetLibAttr(&attributes));
    out << "library " << OneLine(name.View()) << " " << OneLine(FromWide(Spell(attributes->guid).c_str())) << " "
        << attributes->wMajorVerNum << "." << attributes->wMinorVerNum << " \"" << OneLine(help.View()) << "\"\n";
    library->ReleaseTLibAttr(attributes);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(S_OK, library->GetTypeInfo(i, info.put()));
        out << "\n";
        PrintType(info.get(), out);
    }
    ExpectGolden("type_library.txt", out.str());
}

// Registered or not, every control of the library has a factory, and nothing else has.
TEST(TypeLibrary, ClassesAndFactoriesAgree) {
    std::vector<std::wstring> names;
    for (const auto& control : ServerUnderTest::Get().Controls()) names.push_back(control.name);
    std::sort(names.begin(), names.end());
    EXPECT_EQ((std::vector<std::wstring>{L"Backup", L"Button", L"CMenus", L"ComboGrid", L"FlatBorder", L"RButton",
                                         L"TextEdit"}),
              names);
    ComPtr<IUnknown> object;
    // An identifier of the library's range that nothing has.
    const CLSID reserved{0x4DE5F5FF, 0x0402, 0x49F2, {0x93, 0xDB, 0xDE, 0xAC, 0x18, 0xCC, 0x28, 0x9F}};
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ServerUnderTest::Get().ClassObject(reserved, IID_IUnknown, object.put_void()));
}

}  // namespace
}  // namespace qvx::test
