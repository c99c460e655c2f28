#include "dialogs/printer_dialog.h"

// commdlg.h relies on windows.h.
#include <commdlg.h>

#include "common/run_time_error.h"

namespace qvx {

UniqueMemoryDc ShowPrinterDialog(std::intptr_t owner) {
    PRINTDLGW record{};
    record.lStructSize = sizeof record;
    record.hwndOwner = reinterpret_cast<HWND>(owner);
    record.Flags = PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
    const bool chosen = PrintDlgW(&record) != FALSE;
    UniqueMemoryDc dc(record.hDC);
    const UniqueGlobal mode(record.hDevMode);
    const UniqueGlobal names(record.hDevNames);
    if (!dc && (chosen || CommDlgExtendedError() != 0)) throw RunTimeError(errors::printerError, u"Printer error");
    return chosen ? std::move(dc) : UniqueMemoryDc();
}

}  // namespace qvx
