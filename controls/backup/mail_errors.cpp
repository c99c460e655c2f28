#include "controls/backup/mail_errors.h"

#include <iterator>

namespace qvx::backup {

namespace {

constexpr int mailErrors = 32000;
constexpr std::uint32_t failure = 2;
constexpr std::uint32_t attachmentNotFound = 11;

// Indexed by code; 7 is not in use.
constexpr TextView words[] = {
    u"",
    u"The mail was cancelled.",
    u"The mail system failed.",
    u"The mail system did not accept the logon.",
    u"The disk is full.",
    u"There is not enough memory for the mail.",
    u"The mail system denied access.",
    u"",
    u"Too many mail sessions are open.",
    u"The mail has too many attachments.",
    u"The mail has too many recipients.",
    u"The attachment was not found.",
    u"The attachment could not be opened.",
    u"The attachment could not be written.",
    u"A recipient is unknown.",
    u"A recipient is of an unknown kind.",
    u"There are no messages.",
    u"The message is not valid.",
    u"The text of the mail is too long.",
    u"The mail session is not valid.",
    u"The mail system does not know this type of message.",
    u"A recipient is ambiguous.",
    u"The message is in use.",
    u"The network failed.",
    u"The fields of the mail are not valid.",
    u"The recipients are not valid.",
    u"The mail system cannot do this.",
    u"The mail system cannot read the name of the attachment.",
    u"The attachment is too large.",
};

}  // namespace

RunTimeError MailError(std::uint32_t code) {
    const bool known = code < std::size(words) && !words[code].empty();
    const std::uint32_t named = known ? code : failure;
    return {mailErrors + static_cast<int>(named), Text(words[named])};
}

RunTimeError NoMailSystem() {
    return {mailErrors + static_cast<int>(failure), u"No mail program is installed that other programs can use."};
}

RunTimeError UnwritableAttachmentName() { return {mailErrors + static_cast<int>(attachmentNotFound), Text(words[27])}; }

}  // namespace qvx::backup
