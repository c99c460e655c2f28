#include "kit/error_report.h"

#include "common/number_text.h"
#include "dialogs/show_message_dialog.h"
#include "kit/host_services.h"

namespace qvx {

void ShowErrorReport(HWND owner, int number, TextView description) {
    if (number == 0) return;
    dialogs::ShowMessage(owner, description, dialogs::messages::errorReport,
                         ApplicationTitle() + u" : " + IntegerToText(number));
}

}  // namespace qvx
