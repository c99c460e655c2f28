// The ComboGrid's members for export and import.
#include "com/bstr.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {
namespace {

Text NamedFile(BSTR fileName) {
    Text name(FromBstr(fileName));
    if (name.empty()) throw RunTimeError(errors::invalidProcedureCall, u"The file name is empty");
    return name;
}

}  // namespace

STDMETHODIMP ComboGridControl::ExportFile(BSTR fileName, BSTR format, BSTR separator, BSTR encoding,
                                          VARIANT_BOOL selectedOnly) {
    return Guard([&] {
        const Text name = NamedFile(fileName);
        ExportOptions options;
        options.format = FormatNamed(FromBstr(format), name);
        options.separator = SeparatorNamed(FromBstr(separator));
        options.encoding = EncodingNamed(FromBstr(encoding));
        entry_.Export(name, std::move(options), selectedOnly != VARIANT_FALSE);
    });
}

STDMETHODIMP ComboGridControl::ImportCsv(BSTR fileName, BSTR separator, BSTR encoding, VARIANT_BOOL hasHeader,
                                         long* result) {
    return Give(result, [&] {
        return entry_.Import(NamedFile(fileName), SeparatorNamed(FromBstr(separator)), FromBstr(encoding),
                             hasHeader != VARIANT_FALSE);
    });
}

}  // namespace qvx::grid
