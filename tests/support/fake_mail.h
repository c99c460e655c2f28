// A mail program that takes the place of the system's for one module and the duration of a scope. It sends nothing,
// writes down what it is asked, one line a call, and answers what it was told to.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <mapi.h>

#include <cstring>
#include <cwchar>
#include <string>
#include <utility>

#include "com/wide_text.h"
#include "tests/support/import_patch.h"

namespace qvx::test {

class FakeMail {
  public:
    // `module` is the module that loads the mail system.
    explicit FakeMail(HMODULE module)
        : load_(module, "LoadLibraryExW", reinterpret_cast<void*>(&Load)),
          find_(module, "GetProcAddress", reinterpret_cast<void*>(&Find)) {
        EXPECT_TRUE(load_.Found() && find_.Found()) << "the module cannot be watched";
        realLoad_ = reinterpret_cast<decltype(realLoad_)>(load_.Real());
        realFind_ = reinterpret_cast<decltype(realFind_)>(find_.Real());
        installed_ = wide_ = true;
        flags_ = 0;
        Answer(0, 0, 0);
        Take();
    }

    // Sets what logon, sending and sending in wide characters return from now on.
    static void Answer(ULONG logon, ULONG send, ULONG wide) {
        logonAnswer_ = logon;
        sendAnswer_ = send;
        wideAnswer_ = wide;
    }
    // Returns the calls to the program since the last time, one line for each.
    static Text Take() { return Text(FromWide(std::exchange(log_, {}).c_str())); }

    // Set whether there is a mail program at all, and whether it has the wide call.
    static void Install(bool installed) { installed_ = installed; }
    static void KnowWide(bool wide) { wide_ = wide; }
    // Returns the flags with which the mail system was loaded.
    static DWORD LoadFlags() { return flags_; }

  private:
    // The records of the wide call, which the system's header does not declare.
    struct WideFile {
        ULONG reserved, flags, position;
        const wchar_t* path;
        const wchar_t* name;
        void* type;
    };
    struct WideMessage {
        ULONG reserved;
        const wchar_t *subject, *text, *type, *received, *conversation;
        ULONG flags;
        void* originator;
        ULONG recipientCount;
        void* recipients;
        ULONG fileCount;
        const WideFile* files;
    };
    static constexpr LHANDLE session = 4711;

    // The test program itself is loaded in the place of the mail program.
    static HMODULE WINAPI Load(LPCWSTR name, HANDLE file, DWORD flags) {
        if (std::wcscmp(name, L"mapi32.dll") != 0) return realLoad_(name, file, flags);
        flags_ = flags;
        HMODULE self = nullptr;
        if (installed_) GetModuleHandleExW(0, nullptr, &self);
        return self;
    }
    static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
        const std::pair<const char*, void*> calls[] = {
            {"MAPILogon", reinterpret_cast<void*>(&Logon)},
            {"MAPILogoff", reinterpret_cast<void*>(&Logoff)},
            {"MAPISendMail", reinterpret_cast<void*>(&Send)},
            {"MAPISendMailW", wide_ ? reinterpret_cast<void*>(&SendWide) : nullptr}};
        for (const auto& [known, function] : calls) {
            const bool named = reinterpret_cast<ULONG_PTR>(name) > 0xFFFF;
            if (named && !std::strcmp(name, known)) return reinterpret_cast<FARPROC>(function);
        }
        return realFind_(module, name);
    }

    static std::wstring Spell(const wchar_t* text) { return text ? text : L"(null)"; }
    static std::wstring Spell(const char* text) {
        if (!text) return L"(null)";
        wchar_t wide[1024] = L"";
        MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 1024);
        return wide;
    }
    template <class Character>
    static void WriteFile(ULONG number, const Character* path, const Character* name) {
        log_ += std::to_wstring(number) + L": " + Spell(path) + L" as " + Spell(name) + L'\n';
    }
    template <class Character>
    static void WriteSending(const wchar_t* call, LHANDLE used, const Character* subject, const Character* text,
                             ULONG recipients, FLAGS flags) {
        log_ += std::wstring(call) + (used == session ? L"" : L" elsewhere") + L" flags " + std::to_wstring(flags) +
                L" subject " + Spell(subject) + L" text [" + Spell(text) + L"] recipients " +
                std::to_wstring(recipients) + L'\n';
    }

    static ULONG WINAPI Logon(ULONG_PTR, LPSTR profile, LPSTR password, FLAGS flags, ULONG, LPLHANDLE opened) {
        log_ += L"logon " + Spell(profile) + L" " + Spell(password) + L" flags " + std::to_wstring(flags) + L'\n';
        if (logonAnswer_ == SUCCESS_SUCCESS) *opened = session;
        return logonAnswer_;
    }
    static ULONG WINAPI Logoff(LHANDLE closed, ULONG_PTR, FLAGS, ULONG) {
        log_ += closed == session ? L"logoff\n" : L"logoff elsewhere\n";
        return SUCCESS_SUCCESS;
    }
    static ULONG WINAPI Send(LHANDLE used, ULONG_PTR, lpMapiMessage m, FLAGS flags, ULONG) {
        WriteSending(L"send", used, m->lpszSubject, m->lpszNoteText, m->nRecipCount, flags);
        for (ULONG i = 0; i < m->nFileCount; ++i) WriteFile(i, m->lpFiles[i].lpszPathName, m->lpFiles[i].lpszFileName);
        return sendAnswer_;
    }
    static ULONG WINAPI SendWide(LHANDLE used, ULONG_PTR, const WideMessage* m, FLAGS flags, ULONG) {
        WriteSending(L"send wide", used, m->subject, m->text, m->recipientCount, flags);
        for (ULONG i = 0; i < m->fileCount; ++i) WriteFile(i, m->files[i].path, m->files[i].name);
        return wideAnswer_;
    }

    // The real functions are called through these, because the watched module may be this one.
    inline static HMODULE(WINAPI* realLoad_)(LPCWSTR, HANDLE, DWORD);
    inline static FARPROC(WINAPI* realFind_)(HMODULE, LPCSTR);
    inline static std::wstring log_;
    inline static ULONG logonAnswer_, sendAnswer_, wideAnswer_;
    inline static bool installed_;
    inline static bool wide_;
    inline static DWORD flags_;
    ImportPatch load_;
    ImportPatch find_;
};

}  // namespace qvx::test
