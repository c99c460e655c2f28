// A mail program that writes down what it is asked, one line a call, and answers what it was told to. The records of
// the wide call are declared here from the interface's description: the system's header knows the narrow ones only.
#include <windows.h>

#include <mapi.h>

#include <string>

namespace {

struct WideFile {
    ULONG reserved;
    ULONG flags;
    ULONG position;
    const wchar_t* path;
    const wchar_t* name;
    void* type;
};

struct WideMessage {
    ULONG reserved;
    const wchar_t* subject;
    const wchar_t* text;
    const wchar_t* type;
    const wchar_t* received;
    const wchar_t* conversation;
    ULONG flags;
    void* originator;
    ULONG recipientCount;
    void* recipients;
    ULONG fileCount;
    const WideFile* files;
};

constexpr LHANDLE session = 4711;

std::wstring log;
ULONG logonAnswer = SUCCESS_SUCCESS;
ULONG sendAnswer = SUCCESS_SUCCESS;
ULONG wideAnswer = SUCCESS_SUCCESS;

std::wstring Spell(const wchar_t* text) { return text ? text : L"(null)"; }
std::wstring Spell(const char* text) {
    if (!text) return L"(null)";
    wchar_t wide[1024] = L"";
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 1024);
    return wide;
}

void Write(const std::wstring& line) { log += line + L'\n'; }

std::wstring Path(const WideFile& file) { return Spell(file.path); }
std::wstring Name(const WideFile& file) { return Spell(file.name); }
std::wstring Path(const MapiFileDesc& file) { return Spell(file.lpszPathName); }
std::wstring Name(const MapiFileDesc& file) { return Spell(file.lpszFileName); }

template <class File>
void WriteSending(const wchar_t* call, LHANDLE used, const std::wstring& subject, const std::wstring& text,
                  ULONG recipients, const File* files, ULONG fileCount, FLAGS flags) {
    Write(std::wstring(call) + (used == session ? L"" : L" elsewhere") + L" flags " + std::to_wstring(flags) +
          L" subject " + subject + L" text [" + text + L"] recipients " + std::to_wstring(recipients));
    for (ULONG i = 0; i < fileCount; ++i) {
        Write(std::to_wstring(i) + L": " + Path(files[i]) + L" as " + Name(files[i]));
    }
}

}  // namespace

extern "C" {

// What the calls return from now on.
void FakeMapiAnswer(ULONG logon, ULONG send, ULONG sendWide) {
    logonAnswer = logon;
    sendAnswer = send;
    wideAnswer = sendWide;
}

// What was asked since the last time. Valid until the next.
const wchar_t* FakeMapiTake() {
    static std::wstring taken;
    taken.clear();
    taken.swap(log);
    return taken.c_str();
}

ULONG WINAPI MAPILogon(ULONG_PTR, LPSTR profile, LPSTR password, FLAGS flags, ULONG, LPLHANDLE opened) {
    Write(L"logon " + Spell(profile) + L" " + Spell(password) + L" flags " + std::to_wstring(flags));
    if (logonAnswer == SUCCESS_SUCCESS) *opened = session;
    return logonAnswer;
}

ULONG WINAPI MAPILogoff(LHANDLE closed, ULONG_PTR, FLAGS, ULONG) {
    Write(closed == session ? L"logoff" : L"logoff elsewhere");
    return SUCCESS_SUCCESS;
}

ULONG WINAPI MAPISendMail(LHANDLE used, ULONG_PTR, lpMapiMessage message, FLAGS flags, ULONG) {
    WriteSending(L"send", used, Spell(message->lpszSubject), Spell(message->lpszNoteText), message->nRecipCount,
                 message->lpFiles, message->nFileCount, flags);
    return sendAnswer;
}

ULONG WINAPI MAPISendMailW(LHANDLE used, ULONG_PTR, const WideMessage* message, FLAGS flags, ULONG) {
    WriteSending(L"send wide", used, Spell(message->subject), Spell(message->text), message->recipientCount,
                 message->files, message->fileCount, flags);
    return wideAnswer;
}
}
