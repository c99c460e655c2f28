#include "designer/designer_files_window.h"

#include <utility>

#include "designer/document/named_pictures.h"
#include "host/form_storage_win32.h"

namespace qvx::host::designer {

namespace {

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

}  // namespace

void DesignerFiles::Load(const Text& path) {
    std::optional<std::string> bytes;
    if (!path.empty()) bytes = ReadFileBytes(path);
    FormFile file = FormFile::Parse(bytes ? *bytes : std::string(newForm));
    if (!SameName(file.form.className, u"Form")) {
        throw FormFileError(file.form.lineNumber,
                            u"the file begins with a \"" + file.form.className + u"\", not with a \"Form\"");
    }
    CheckNames(file.form);
    for (const Warning& warning : file.warnings) {
        environment_.reporter.Note(path + u"(" + ValueAsText(FormValue(std::int32_t{warning.line})) + u"): " +
                                   warning.message);
    }
    // From here on only the window can fail.
    pictures_.RemoveUnused(onDisk_.value_or(std::string()));
    onDisk_ = std::move(bytes);
    session_.Open(std::move(file), path);
}

void DesignerFiles::LoadChosen() {
    const Text file = environment_.AskForFile(false, session_.Picture().Folder() + u'\\', FormFilter());
    if (file.empty()) return;
    try {
        Load(file);
    } catch (const FormFileError& error) {
        environment_.reporter.Error(file + u": " + error.Message());
    } catch (...) {
        environment_.ReportFailure();
    }
}

bool DesignerFiles::Save() {
    if (!environment_.options.save.empty()) return SaveTo(environment_.options.save);
    return session_.Path().empty() ? SaveAs() : SaveTo(session_.Path());
}

bool DesignerFiles::SaveAs() {
    const Text initial = session_.Path().empty() ? session_.Form().File().form.name + u".frm" : session_.Path();
    const Text file = environment_.AskForFile(true, initial, FormFilter());
    if (file.empty()) return false;
    const Text before = session_.Path();
    session_.SetPath(FullPath(file));
    auto onDisk = std::exchange(onDisk_, std::nullopt);
    if (SaveTo(session_.Path())) return true;
    session_.SetPath(before);
    onDisk_ = std::move(onDisk);
    session_.Refresh();
    return false;
}

bool DesignerFiles::SaveTo(const Text& path) {
    session_.CapturePending();
    if (environment_.options.rewrite) {
        session_.Change(u"Rewrite", [&] {
            session_.Picture().Capture(nullptr, MergeMode::everything);
            for (const auto& control : session_.Picture().Controls())
                session_.Picture().Capture(control.get(), MergeMode::everything);
        });
    }
    if (path == session_.Path() && onDisk_) {
        const auto now = TryReadFileBytes(path);
        if (now && *now != *onDisk_ &&
            environment_.Ask(u"\"" + FileNameOf(path) + u"\" has been changed by another program. Write over it?",
                             MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES) {
            return false;
        }
    }
    try {
        const Text folder = FolderOf(path);
        if (folder != session_.Picture().Folder()) pictures_.CopyTo(folder);
        std::string bytes = session_.Form().Bytes();
        ReplaceFileBytes(path, bytes);
        if (path == session_.Path()) {
            onDisk_ = std::move(bytes);
            session_.Picture().SetFolder(folder);
        }
    } catch (...) {
        environment_.ReportFailure();
        return false;
    }
    session_.Form().MarkSaved();
    session_.Refresh();
    environment_.Log(u"Designer: saved");
    return true;
}

bool DesignerFiles::MayGo() {
    session_.CapturePending();
    if (!session_.Form().Dirty()) return true;
    const Text name = session_.Path().empty() ? session_.Form().File().form.name : FileNameOf(session_.Path());
    const int answer = environment_.Ask(u"Save the changes of \"" + name + u"\"?", MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDCANCEL) return false;
    return answer != IDYES || Save();
}

std::optional<int> DesignerFiles::Finish() {
    int exitCode = 0;
    const Text& elsewhere = environment_.options.save;
    if (elsewhere.empty()) {
        if (!MayGo()) return std::nullopt;
        session_.CapturePending();
    } else {
        session_.CapturePending();
        if (!SaveTo(elsewhere)) exitCode = exitNotSaved;
    }
    pictures_.RemoveUnused(onDisk_.value_or(std::string()));
    return exitCode;
}

}  // namespace qvx::host::designer
