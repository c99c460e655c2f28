#include "server/error_report.h"

#include "common/number_text.h"
#include "forms/msgbox/show_message.h"
#include "server/host_services.h"

namespace qvx {

void ShowErrorReport(HWND owner, int number, TextView description) {
    if (number == 0) return;
    msgbox::ShowMessage(owner, description, msgbox::messages::errorReport,
                        ApplicationTitle() + u" : " + IntegerToText(number));
}

}  // namespace qvx
