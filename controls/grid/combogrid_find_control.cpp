// The ComboGrid's members for finding and replacing.
#include "com/bstr.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {
namespace {

SearchOptions OptionsOf(GridFind options) {
    const int bits = static_cast<int>(options);
    if ((bits & ~(grdFindMatchCase | grdFindWholeCell | grdFindInColumn)) != 0)
        throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
    SearchOptions search;
    search.matchCase = (bits & grdFindMatchCase) != 0;
    search.wholeCell = (bits & grdFindWholeCell) != 0;
    return search;
}

bool InColumn(GridFind options) { return (static_cast<int>(options) & grdFindInColumn) != 0; }

}  // namespace

STDMETHODIMP ComboGridControl::Find(BSTR text, GridFind options, VARIANT_BOOL forward, VARIANT_BOOL* result) {
    return Give(result, [&] {
        return entry_.Find(FromBstr(text), OptionsOf(options), InColumn(options), forward != VARIANT_FALSE);
    });
}

STDMETHODIMP ComboGridControl::ReplaceAll(BSTR text, BSTR with, GridFind options, long* result) {
    return Give(result, [&] {
        return entry_.ReplaceAll(FromBstr(text), FromBstr(with), OptionsOf(options), InColumn(options));
    });
}

STDMETHODIMP ComboGridControl::FindCount(BSTR text, GridFind options, long* result) {
    return Give(result, [&] { return entry_.FindCount(FromBstr(text), OptionsOf(options), InColumn(options)); });
}

}  // namespace qvx::grid
