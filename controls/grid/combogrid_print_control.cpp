// The ComboGrid's members for printing.
#include "com/bstr.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/page_target_win32.h"
#include "dialogs/printer_dialog.h"

namespace qvx::grid {

int ComboGridControl::PrintOn(UniqueMemoryDc printer, const Text& title, const Text& fileName, bool fitToWidth) {
    if (!printer) return 0;
    PrinterPages pages(std::move(printer), title, fileName);
    return pages.Cancelled() ? 0 : entry_.PrintPages(pages, title, fitToWidth);
}

UniqueMemoryDc ComboGridControl::ChosenPrinter() {
    const DialogScope dialog(*this);
    return ShowPrinterDialog(reinterpret_cast<std::intptr_t>(WindowHandle()));
}

STDMETHODIMP ComboGridControl::PrintGrid(BSTR title, BSTR printer, BSTR fileName, VARIANT_BOOL fitToWidth,
                                         long* result) {
    return Give(result, [&] {
        const auto keep = ControlBase::KeepAlive();
        entry_.CommitOpenEdit();
        const Text name(FromBstr(printer));
        return PrintOn(name.empty() ? ChosenPrinter() : PrinterNamed(name), Text(FromBstr(title)),
                       Text(FromBstr(fileName)), fitToWidth != VARIANT_FALSE);
    });
}

STDMETHODIMP ComboGridControl::PrintPreview(BSTR title, VARIANT_BOOL fitToWidth, long* result) {
    return Give(result, [&] {
        const auto keep = ControlBase::KeepAlive();
        const Text heading(FromBstr(title));
        const bool fits = fitToWidth != VARIANT_FALSE;
        bool print = false;
        {
            const DialogScope dialog(*this);
            print = entry_.PreviewPages(WindowHandle(), heading, fits);
        }
        return print ? PrintOn(ChosenPrinter(), heading, {}, fits) : 0;
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
