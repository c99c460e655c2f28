// Mail through the system's simple messaging interface, with the mail program's own dialogs.
#include <windows.h>

#include <mapi.h>

#include "com/wide_text.h"
#include "controls/backup/file_rules.h"
#include "controls/backup/mail_errors.h"
#include "controls/backup/system_path_win32.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::backup {

namespace {

constexpr ULONG unicodeNotSupported = 27;  // missing in the system's header

struct UnloadLibrary {
    void operator()(HMODULE library) const { FreeLibrary(library); }
};

// The interface's records, for both widths of characters: the system's header only declares the narrow ones.
template <typename Character>
struct MailFile {
    ULONG reserved = 0;
    ULONG flags = 0;
    ULONG position = ULONG(-1);  // not within the text
    const Character* path = nullptr;
    const Character* name = nullptr;
    void* type = nullptr;
};

template <typename Character>
struct MailMessage {
    ULONG reserved = 0;
    const Character* subject = nullptr;
    const Character* text = nullptr;
    const Character* type = nullptr;
    const Character* received = nullptr;
    const Character* conversation = nullptr;
    ULONG flags = 0;
    void* originator = nullptr;
    ULONG recipientCount = 0;
    void* recipients = nullptr;
    ULONG fileCount = 0;
    MailFile<Character>* files = nullptr;
};
static_assert(sizeof(MailFile<char>) == sizeof(MapiFileDesc) && sizeof(MailMessage<char>) == sizeof(MapiMessage));

template <typename Character>
using SendFunction = ULONG(WINAPI*)(LHANDLE session, ULONG_PTR owner, MailMessage<Character>* message, FLAGS flags,
                                    ULONG reserved);

ULONG_PTR OwnerOf(HWND window) { return reinterpret_cast<ULONG_PTR>(window); }

class MailSystem {
  public:
    MailSystem() : library_(LoadLibraryExW(L"mapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
        if (!library_) throw NoMailSystem();
        logon = Find<LPMAPILOGON>("MAPILogon");
        logoff = Find<LPMAPILOGOFF>("MAPILogoff");
        send = Find<SendFunction<char>>("MAPISendMail");
        sendWide = Find<SendFunction<wchar_t>>("MAPISendMailW");
        if (!logon || !logoff || !send) throw NoMailSystem();
    }

    LPMAPILOGON logon;
    LPMAPILOGOFF logoff;
    SendFunction<char> send;
    SendFunction<wchar_t> sendWide;  // null on systems before Windows 8

  private:
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_.Get(), name)));
    }

    UniqueHandle<HMODULE, UnloadLibrary> library_;
};

// A session from logon to logoff, whatever happens in between.
class Session {
  public:
    Session(const MailSystem& system, HWND owner) : system_(system), owner_(owner) {
        const ULONG result =
            system.logon(OwnerOf(owner), nullptr, nullptr, MAPI_LOGON_UI | MAPI_NEW_SESSION, 0, &session_);
        if (result != SUCCESS_SUCCESS) throw MailError(result);
    }
    ~Session() { system_.logoff(session_, OwnerOf(owner_), 0, 0); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    template <typename Character>
    ULONG Send(SendFunction<Character> send, const std::basic_string<Character>& subject,
               const std::basic_string<Character>& path, const std::basic_string<Character>& name) const {
        constexpr Character noText[] = {0};
        MailFile<Character> file;
        file.path = path.c_str();
        file.name = name.c_str();
        MailMessage<Character> message;
        message.subject = subject.c_str();
        message.text = noText;
        message.fileCount = 1;
        message.files = &file;
        return send(session_, OwnerOf(owner_), &message, MAPI_DIALOG, 0);
    }

  private:
    const MailSystem& system_;
    HWND owner_;
    LHANDLE session_ = 0;
};

// Converts the text to the system's narrow characters; nullopt when it contains others.
std::optional<std::string> Narrowed(TextView text) {
    if (text.empty()) return std::string();
    const bool everyCharacter = GetACP() == CP_UTF8;
    const DWORD flags = everyCharacter ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL replaced = FALSE;
    const std::wstring_view wide = Wide(text);
    // A character has at most as many bytes as in UTF-8.
    std::string narrow(text.size() * 4, '\0');
    const int length =
        WideCharToMultiByte(CP_ACP, flags, wide.data(), static_cast<int>(wide.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, everyCharacter ? nullptr : &replaced);
    if (length <= 0 || replaced) return std::nullopt;
    narrow.resize(static_cast<std::size_t>(length));
    return narrow;
}

std::wstring Widened(TextView text) { return std::wstring(Wide(text)); }

ULONG SendThrough(const MailSystem& system, const Session& session, const Mail& mail, const Text& path) {
    // The narrow call is preferred, since every mail program supports it.
    const std::string subject = Narrowed(mail.subject).value_or("");
    const auto name = Narrowed(mail.attachmentName);
    const auto narrowPath = Narrowed(path);
    if (name && narrowPath) return session.Send(system.send, subject, *narrowPath, *name);
    if (system.sendWide) {
        const ULONG result =
            session.Send(system.sendWide, Widened(mail.subject), Widened(path), Widened(mail.attachmentName));
        if (result != unicodeNotSupported) return result;
    }
    const auto shortPath = Narrowed(SystemServices().ShortPath(path));
    if (!shortPath) throw UnwritableAttachmentName();
    return session.Send(system.send, subject, *shortPath, name.value_or(*shortPath));
}

}  // namespace

void SystemServices::SendMail(const Mail& mail) {
    // The mail program may have another current folder.
    const Text path = FullPath(mail.attachment);
    const MailSystem system;
    const Session session(system, dialog_());
    const ULONG result = SendThrough(system, session, mail, path);
    if (result != SUCCESS_SUCCESS) throw MailError(result);
}

}  // namespace qvx::backup
