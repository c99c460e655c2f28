// The ComboGrid's members for printing.
#include "com/bstr.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/page_target_win32.h"
#include "dialogs/printer_dialog.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::PrintGrid(BSTR title, BSTR printer, BSTR fileName, VARIANT_BOOL fitToWidth,
                                         long* result) {
    return Give(result, [&] {
        const auto keep = ControlBase::KeepAlive();
        entry_.CommitOpenEdit();
        const Text name(FromBstr(printer));
        UniqueMemoryDc dc;
        if (!name.empty()) {
            dc = PrinterNamed(name);
        } else {
            const DialogScope dialog(*this);
            dc = ShowPrinterDialog(reinterpret_cast<std::intptr_t>(WindowHandle()));
        }
        if (!dc) return 0;
        const Text heading(FromBstr(title));
        PrinterPages pages(std::move(dc), heading, Text(FromBstr(fileName)));
        return pages.Cancelled() ? 0 : entry_.PrintPages(pages, heading, fitToWidth != VARIANT_FALSE);
    });
}

STDMETHODIMP ComboGridControl::ExportPages(BSTR fileName, BSTR title, VARIANT_BOOL fitToWidth, long* result) {
    return Give(result, [&] {
        PageFiles pages(FromBstr(fileName));
        return entry_.PrintPages(pages, Text(FromBstr(title)), fitToWidth != VARIANT_FALSE);
    });
}

void ComboGridControl::PrintProgress(long page, long pages, bool& cancel) {
    Fire(u"PrintProgress", EventArguments().In(page).In(pages).InOut(cancel));
}

}  // namespace qvx::grid
