// All messages that the library shows to the user: each with its texts, buttons, icon and time-out, in one place, so
// that callers do not make up their own.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::dialogs {

// Codes of button sets. Any other code shows OK alone; callers use okOnly.
namespace button_set {
constexpr int okOnly = 1;
constexpr int yesNo = 2;      // focus on Yes; 6 is the same
constexpr int okCancel = 3;   // focus on OK; 7 is the same
constexpr int noYes = 10;     // "&Yes" and "&No", focus on No
constexpr int cancelOk = 11;  // focus on Cancel
}  // namespace button_set

// Numbers of the pictures.
namespace icon {
constexpr int information = 1;
constexpr int warning = 2;
constexpr int error = 3;
constexpr int ok = 4;
constexpr int mail = 5;
constexpr int notice = 6;
constexpr int question = 7;
constexpr int failure = 8;
constexpr int lock = 9;
}  // namespace icon

// How a message is shown; `timeOut` in milliseconds, 0 waits for the user.
struct MessageKind {
    int buttons = button_set::okOnly;
    int icon = icon::notice;
    bool blink = false;
    int timeOut = 0;
};

namespace messages {

// Messages of the grid. Their title is the host form's caption; that of the error report is the application's title.
constexpr MessageKind deleteRow{button_set::yesNo, icon::question, false, 0};
constexpr TextView deleteRowPrompt = u"Delete selected item?";
constexpr MessageKind duplicateRecords{button_set::okOnly, icon::failure, false, 2500};
constexpr MessageKind entryCheck{button_set::okOnly, icon::failure, false, 2000};
constexpr TextView lessThanZeroPrompt = u"Value should be less than zero.";
constexpr TextView atMostZeroPrompt = u"Value should be less than or equal to zero.";
constexpr TextView greaterThanZeroPrompt = u"Value should be greater than zero.";
constexpr TextView atLeastZeroPrompt = u"Value should be greater than or equal to zero.";
constexpr TextView zeroValuePrompt = u"Value should not be zero.";
constexpr TextView invalidDataPrompt = u"You must enter a valid data.";
constexpr MessageKind errorReport{button_set::okOnly, icon::failure, false, 0};

// The texts of the grid's find bar.
namespace find_bar {
constexpr TextView textLabel = u"Find";
constexpr TextView withLabel = u"Replace";
constexpr TextView textName = u"Find what";
constexpr TextView withName = u"Replace with";
constexpr TextView previous = u"Previous";
constexpr TextView next = u"Next";
constexpr TextView matchCase = u"Match case";
constexpr TextView wholeCell = u"Whole cell";
constexpr TextView inColumn = u"This column";
constexpr TextView replace = u"Replace";
constexpr TextView replaceAll = u"Replace all";
constexpr TextView close = u"Close";
// What it says about the hits: "3 of 1,204", "1 hit", "5... hits" while they are being counted, "12 replaced, 3
// refused".
constexpr TextView noHits = u"No hits";
constexpr TextView of = u" of ";
constexpr TextView hit = u" hit";
constexpr TextView hits = u" hits";
constexpr TextView goingOn = u"...";
constexpr TextView replaced = u" replaced";
constexpr TextView refused = u" refused";
constexpr TextView widest = u"88,888 of 88,888";
}  // namespace find_bar

// The name of a field of the filter row is followed by that of its column.
constexpr TextView filterFieldName = u"Filter ";

// The line below the rows of a printed page: "Page 1 of 3".
constexpr TextView page = u"Page ";
constexpr TextView pageOf = u" of ";

// The texts of the preview.
namespace preview {
constexpr TextView title = u"Preview";
constexpr TextView previous = u"&Previous";
constexpr TextView next = u"&Next";
constexpr TextView print = u"P&rint...";
constexpr TextView close = u"&Close";
}  // namespace preview

// Messages of the validated text box.
constexpr MessageKind emptyValue{button_set::okOnly, icon::failure, false, 2000};
constexpr TextView emptyValuePrompt = u"This should not be empty.";
constexpr TextView emptyValueTitle = u"Empty Data";

// Messages of backup and restore.
constexpr MessageKind othersLoggedOn{button_set::okOnly, icon::failure, false, 4000};  // without a title
constexpr TextView othersLoggedOnPrompt = u"All other users must be logged off before doing this.";
constexpr MessageKind overwriteBackup{button_set::yesNo, icon::question, false, 0};
// The archive's path and the question follow on lines of their own.
constexpr TextView overwriteBackupPrompt = u"This will overwrite the previous backup files under the directory.";
constexpr TextView overwriteBackupQuestion = u"Continue with Backup...?";
constexpr TextView overwriteBackupTitle = u"Backup";
constexpr MessageKind nothingToRestore{button_set::okOnly, icon::notice, false, 3000};
constexpr TextView nothingToRestorePrompt = u"No Backup files found under this directory.";  // followed by the path
constexpr MessageKind restoreFailed{button_set::okOnly, icon::failure, false, 2000};
constexpr TextView restoreFailedPrompt = u"Could not restore data. File may be correpted.";
constexpr TextView restoreFailedTitle = u"Restore";
constexpr MessageKind backupMailFailed{button_set::okOnly, icon::failure, false, 0};
constexpr TextView backupMailFailedPrompt = u"Could n't e-mail your database.";  // followed by the error's description

// Messages of the password prompt.
constexpr MessageKind invalidPassword{button_set::okOnly, icon::notice, false, 1000};
constexpr TextView invalidPasswordPrompt = u"Invalid Password.";
constexpr TextView invalidPasswordTitle = u"Error:Password";

// Messages of the About box.
constexpr MessageKind aboutMailFailed{button_set::okOnly, icon::notice, false, 3000};
constexpr TextView aboutMailFailedPrompt =
    u"Error sending mail. Make sure that you have your email client correctly installed and configured.";
constexpr TextView aboutMailFailedTitle = u"Send E-mail";

}  // namespace messages

}  // namespace qvx::dialogs
