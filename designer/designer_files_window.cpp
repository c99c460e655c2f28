// Files of the designer: opening and saving forms, and running them.
#include <windows.h>

#include <commdlg.h>

#include <algorithm>

#include "com/guard.h"
#include "com/module.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "designer/designer_window.h"
#include "host/form_storage_win32.h"

namespace qvx::host::designer {

namespace {

constexpr UINT runPoll = 300;  // milliseconds
constexpr int exitNotSaved = 4;

const char* const newForm =
    "Begin Form Form1\r\n"
    "   Caption         =   \"Form1\"\r\n"
    "   ClientHeight    =   3600\r\n"
    "   ClientWidth     =   4800\r\n"
    "End\r\n";

Text FormFilter() {
    using namespace std::string_literals;
    return u"Forms (*.frm)\0*.frm\0All files\0*.*\0"s;
}

Text FileName(const Text& path) { return path.substr(path.find_last_of(u"\\/") + 1); }

}  // namespace

Questions SystemQuestions() {
    Questions questions;
    questions.ask = [](HWND owner, const Text& question, UINT kind) {
        return MessageBoxW(owner, Wide(question), Wide(ProgramTitle()), kind);
    };
    questions.file = [](HWND owner, bool save, const Text& initial, const Text& filter) {
        std::vector<wchar_t> buffer(32768);
        const Text fileName = FileName(initial);
        const Text folder = initial.substr(0, initial.size() - fileName.size());
        const std::wstring_view name = Wide(TextView(fileName));
        std::copy_n(name.begin(), std::min(name.size(), buffer.size() - 1), buffer.begin());
        OPENFILENAMEW request{};
        request.lStructSize = sizeof request;
        request.hwndOwner = owner;
        request.lpstrFilter = Wide(filter);
        // Where the system begins otherwise is anybody's guess: in the folder of the file that was chosen last.
        request.lpstrInitialDir = folder.empty() ? nullptr : Wide(folder);
        request.lpstrFile = buffer.data();
        request.nMaxFile = static_cast<DWORD>(buffer.size());
        request.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY |
                        (save ? OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST : OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
        request.lpstrDefExt = save ? L"frm" : nullptr;
        const BOOL chosen = save ? GetSaveFileNameW(&request) : GetOpenFileNameW(&request);
        return chosen ? Text(FromWide(buffer.data())) : Text();
    };
    return questions;
}

void DesignerWindow::Load(const Text& path) {
    std::optional<std::string> bytes;
    if (!path.empty()) bytes = ReadFileBytes(path);
    FormFile file = FormFile::Parse(bytes ? *bytes : std::string(newForm));
    if (!SameName(file.form.className, u"Form")) {
        throw FormFileError(file.form.lineNumber,
                            u"the file begins with a \"" + file.form.className + u"\", not with a \"Form\"");
    }
    CheckNames(file.form);
    for (const Warning& warning : file.warnings) {
        reporter_.Note(path + u"(" + ValueAsText(FormValue(std::int32_t{warning.line})) + u"): " + warning.message);
    }
    // Nothing can fail any more but the window itself.
    RemoveUnusedFiles();
    properties_.Show({}, {});
    listed_.clear();
    canvas_.SetForm(nullptr);
    form_.reset();
    pending_.clear();
    formPending_ = false;
    selection_.Clear();
    tabOrderView_ = false;
    path_ = path;
    onDisk_ = std::move(bytes);
    document_ = std::make_unique<Document>(std::move(file));
    form_ = std::make_unique<HostForm>(document_->File(), options_, FolderOf(path.empty() ? FullPath(u"x.frm") : path),
                                       classes_, reporter_, *this);
    {
        const FlagScope busy(busy_);
        form_->BuildForDesign(canvas_.Handle());
    }
    UpdateView();
}

void DesignerWindow::LoadAsked() {
    const Text file = questions_.file(Handle(), false, form_->Folder() + u'\\', FormFilter());
    if (file.empty()) return;
    try {
        Load(file);
    } catch (const FormFileError& error) {
        reporter_.Error(file + u": " + error.Message());
    } catch (...) {
        reporter_.Error(FailureInFlightText());
    }
}

bool DesignerWindow::Save() {
    if (!options_.save.empty()) return SaveTo(options_.save);
    return path_.empty() ? SaveAs() : SaveTo(path_);
}

bool DesignerWindow::SaveAs() {
    const Text initial = path_.empty() ? document_->File().form.name + u".frm" : path_;
    const Text file = questions_.file(Handle(), true, initial, FormFilter());
    if (file.empty()) return false;
    const Text before = std::exchange(path_, FullPath(file));
    const auto onDisk = std::exchange(onDisk_, std::nullopt);
    if (SaveTo(path_)) return true;
    path_ = before;
    onDisk_ = onDisk;
    UpdateCaption();
    return false;
}

bool DesignerWindow::SaveTo(const Text& path) {
    CapturePending();
    if (options_.rewrite) {
        Change(u"Rewrite", [&] {
            form_->Capture(nullptr, MergeMode::everything);
            for (const auto& control : form_->Controls()) form_->Capture(control.get(), MergeMode::everything);
        });
    }
    if (path == path_ && onDisk_) {
        const auto now = TryReadFileBytes(path);
        if (now && *now != *onDisk_ &&
            questions_.ask(Handle(), u"\"" + FileName(path) + u"\" has been changed by another program. Write over it?",
                           MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES) {
            return false;
        }
    }
    try {
        const Text folder = FolderOf(path);
        if (folder != form_->Folder()) TakePicturesAlong(form_->Folder(), folder);
        std::string bytes = document_->Bytes();
        ReplaceFileBytes(path, bytes);
        if (path == path_) {
            onDisk_ = std::move(bytes);
            form_->SetFolder(folder);
        }
    } catch (...) {
        reporter_.Error(FailureInFlightText());
        return false;
    }
    document_->MarkSaved();
    UpdateView();
    Log(u"Designer: saved");
    return true;
}

bool DesignerWindow::MayGo() {
    CapturePending();
    if (!document_->Dirty()) return true;
    const Text name = path_.empty() ? document_->File().form.name : FileName(path_);
    const int answer =
        questions_.ask(Handle(), u"Save the changes of \"" + name + u"\"?", MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDCANCEL) return false;
    return answer != IDYES || Save();
}

// Pictures that were written beside a form which was not saved with them.
void DesignerWindow::RemoveUnusedFiles() {
    if (madeFiles_.empty()) return;
    const std::string saved = onDisk_.value_or(std::string());
    FormFile file;
    Text text;
    try {
        file = FormFile::Parse(saved);
        text = DecodeFile(saved).text;
    } catch (const FormFileError&) {
        // Nothing has been saved.
    }
    for (const Text& made : madeFiles_) {
        if (text.find(FileName(made)) == Text::npos) DeleteFileW(Wide(made));
    }
    madeFiles_.clear();
}

void DesignerWindow::OnClose() {
    if (busy_ || !IsWindowEnabled(Handle())) return;
    const bool elsewhere = !options_.save.empty();
    if (!elsewhere && !MayGo()) return;
    CapturePending();
    if (elsewhere && !SaveTo(options_.save)) exitCode_ = exitNotSaved;
    RemoveUnusedFiles();
    reporter_.SetOwner(nullptr);
    properties_.Show({}, {});
    canvas_.SetForm(nullptr);
    form_.reset();
    closed_ = true;
    Destroy();
}

// --- Running.

void DesignerWindow::RunForm() {
    if (running_ && WaitForSingleObject(running_.Get(), 0) == WAIT_TIMEOUT) {
        questions_.ask(Handle(), u"The form is running already; close it first.", MB_OK | MB_ICONINFORMATION);
        return;
    }
    FollowRun();
    // What is not saved runs from a copy beside the file, so that pictures and scripts are found.
    Text form = path_;
    const bool copy = path_.empty() || document_->Dirty();
    try {
        if (copy) {
            const Text name = path_.empty() ? document_->File().form.name + u".frm" : FileName(path_);
            form = form_->Folder() + u"\\~" + name;
            // A file that is not ours stays.
            for (int number = 1; GetFileAttributesW(Wide(form)) != INVALID_FILE_ATTRIBUTES; ++number) {
                form = form_->Folder() + u"\\~" + ValueAsText(FormValue(std::int32_t{number})) + name;
            }
            ReplaceFileBytes(form, document_->Bytes());
            runCopy_ = form;
        }
    } catch (...) {
        reporter_.Error(FailureInFlightText());
        return;
    }
    const auto quoted = [](const Text& argument) { return u" \"" + argument + u"\""; };
    Text line = u"\"" + ModulePath(nullptr) + u"\"" + quoted(form);
    if (!options_.script.empty()) {
        line += quoted(options_.script);
    } else if (!path_.empty()) {
        const Text stem = path_.substr(0, path_.find_last_of(u'.'));
        for (const char16_t* suffix : {u".vbs", u".js"}) {
            if (GetFileAttributesW(Wide(stem + suffix)) == INVALID_FILE_ATTRIBUTES) continue;
            line += quoted(stem + suffix);
            break;
        }
    }
    if (!options_.server.empty()) line += u" --ocx" + quoted(options_.server);
    if (!options_.log.empty()) line += u" --log" + quoted(options_.log);
    if (options_.quiet) line += u" --quiet";
    if (!options_.arguments.empty()) {
        line += u" --";
        for (const Text& argument : options_.arguments) line += quoted(argument);
    }
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, WideBuffer(line), nullptr, nullptr, FALSE, 0, nullptr, Wide(form_->Folder()), &start,
                        &process)) {
        reporter_.Error(u"The form cannot be started: " + FailureText(HRESULT_FROM_WIN32(GetLastError())));
        FollowRun();
        return;
    }
    CloseHandle(process.hThread);
    running_.Reset(process.hProcess);
    SetTimer(Handle(), runTimer, runPoll, nullptr);
}

void DesignerWindow::FollowRun() {
    if (running_ && WaitForSingleObject(running_.Get(), 0) == WAIT_TIMEOUT) return;
    if (running_) Log(u"Designer: the form has ended");
    running_.Reset();
    KillTimer(Handle(), runTimer);
    if (!runCopy_.empty()) DeleteFileW(Wide(runCopy_));
    runCopy_.clear();
}

}  // namespace qvx::host::designer
