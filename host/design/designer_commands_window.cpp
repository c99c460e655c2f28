// Commands and files of the designer.
#include <windows.h>

#include <commdlg.h>

#include <algorithm>

#include "com/guard.h"
#include "com/module.h"
#include "com/text.h"
#include "common/run_time_error.h"
#include "host/design/designer_window.h"
#include "host/design/form_text.h"
#include "host/design/image_editor_dialog.h"
#include "host/design/menu_editor_dialog.h"
#include "host/design/property_frame_dialog.h"
#include "host/form_storage_win32.h"
#include "host/sited_control.h"
#include "win/clipboard.h"
#include "win/dpi.h"

namespace qvx::host::design {

namespace {

constexpr UINT_PTR runTimer = 1;
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

bool DesignerWindow::Do(Command command) {
    CapturePending();
    CancelDrag();
    if (!Available(command, State())) return false;
    return Carry(command);
}

bool DesignerWindow::Carry(Command command) {
    switch (command) {
        case Command::newForm:
            if (MayGo()) Load({});
            break;
        case Command::open: {
            if (!MayGo()) break;
            const Text file = questions_.file(Handle(), false, form_->Folder() + u'\\', FormFilter());
            if (file.empty()) break;
            try {
                Load(file);
            } catch (const FormFileError& error) {
                reporter_.Error(file + u": " + error.Message());
            } catch (...) {
                reporter_.Error(FailureInFlightText());
            }
            break;
        }
        case Command::save:
            return Save();
        case Command::saveAs:
            return SaveAs();
        case Command::run:
            RunForm();
            break;
        case Command::close:
            PostMessageW(Handle(), WM_CLOSE, 0, 0);
            break;
        case Command::undo:
        case Command::redo:
            GoThroughHistory(command == Command::undo);
            break;
        case Command::cut:
        case Command::copy:
            CopySelection();
            if (command == Command::copy) break;
            Change(u"Cut", [&] { document_->Delete(selection_.All()); });
            break;
        case Command::remove:
            Change(u"Delete", [&] { document_->Delete(selection_.All()); });
            break;
        case Command::paste:
        case Command::pasteArray:
            PasteClipboard(command == Command::pasteArray);
            break;
        case Command::duplicate:
            Paste(document_->CopyText(selection_.All()), false);
            break;
        case Command::selectAll:
            selection_.SelectAll(shapes_);
            UpdateView();
            break;
        case Command::tabOrder:
            tabOrderView_ = !tabOrderView_;
            tabOrderDone_.clear();
            UpdateView();
            break;
        case Command::properties:
            SetFocus(properties_.Handle());
            break;
        case Command::palette:
            SetFocus(palette_.Handle());
            break;
        case Command::menus:
            EditMenus();
            break;
        case Command::images:
            EditImages();
            break;
        case Command::pages:
            if (const ObjectId* primary = selection_.Primary()) ShowPages(ObjectId(*primary));
            break;
        case Command::bringToFront:
        case Command::sendToBack:
            Change(command == Command::bringToFront ? u"Bring to Front" : u"Send to Back",
                   [&] { document_->Restack(selection_.All(), command == Command::bringToFront); });
            break;
        case Command::alignLefts:
            Arrange(Arrangement::lefts);
            break;
        case Command::alignCenters:
            Arrange(Arrangement::centers);
            break;
        case Command::alignRights:
            Arrange(Arrangement::rights);
            break;
        case Command::alignTops:
            Arrange(Arrangement::tops);
            break;
        case Command::alignMiddles:
            Arrange(Arrangement::middles);
            break;
        case Command::alignBottoms:
            Arrange(Arrangement::bottoms);
            break;
        case Command::alignToGrid:
            Arrange(Arrangement::toGrid);
            break;
        case Command::sameWidth:
            Arrange(Arrangement::widths);
            break;
        case Command::sameHeight:
            Arrange(Arrangement::heights);
            break;
        case Command::sameSize:
            Arrange(Arrangement::sizes);
            break;
        case Command::spaceAcross:
            Arrange(Arrangement::acrossEvenly);
            break;
        case Command::spaceDown:
            Arrange(Arrangement::downEvenly);
            break;
        case Command::keys:
            ShowKeys();
            break;
        case Command::none:
            return false;
    }
    return true;
}

void DesignerWindow::GoThroughHistory(bool back) {
    const std::vector<ObjectId> before = document_->Controls();
    const Text what = back ? document_->UndoName() : document_->RedoName();
    if (!(back ? document_->Undo() : document_->Redo())) return;
    form_->FollowBlocks();
    // What has come back is what is looked at.
    std::vector<ObjectId> came;
    for (const ObjectId& id : document_->Controls()) {
        if (std::find(before.begin(), before.end(), id) == before.end()) came.push_back(id);
    }
    if (!came.empty() && came.size() <= 50) selection_.Set({came.front()});
    AfterChange();
    Log((back ? u"Designer: undone " : u"Designer: redone ") + what);
}

void DesignerWindow::Arrange(Arrangement arrangement) {
    const std::vector<ObjectId> ids = selection_.All();
    std::vector<TwipsRect> bounds;
    for (const ObjectId& id : ids) bounds.push_back(Document::BoundsOf(*document_->Find(id)));
    bounds = Arranged(bounds, bounds.size() - 1, arrangement);
    Change(u"Format", [&] {
        for (std::size_t i = 0; i < ids.size(); ++i) document_->SetBounds(ids[i], bounds[i]);
    });
}

void DesignerWindow::PlaceControl(const Text& className, const std::optional<ObjectId>& container,
                                  const TwipsRect* bounds) {
    TwipsRect where;
    if (bounds) {
        where = *bounds;
    } else {
        const UsualSize usual = UsualSizeOf(className);
        where = {Snapped(std::max((form_->ClientWidth() - usual.width) / 2, 0)),
                 Snapped(std::max((form_->ClientHeight() - usual.height) / 2, 0)), usual.width, usual.height};
    }
    ObjectId placed;
    Change(
        u"Place", [&] { placed = document_->Place(className, container, where); }, {},
        [&](const Block& block) { return block.name == placed.name; });
    if (!document_->Find(placed)) return;
    Select({placed});
}

void DesignerWindow::CopySelection() {
    const Text text = document_->CopyText(selection_.All());
    try {
        PutOnClipboard(Handle(), text);
    } catch (...) {
        reporter_.Error(FailureInFlightText());
    }
    UpdateMenus();
}

void DesignerWindow::PasteClipboard(bool asArray) {
    std::optional<Text> text;
    try {
        text = TextOnClipboard(Handle());
    } catch (...) {
        reporter_.Error(FailureInFlightText());
        return;
    }
    if (text) Paste(*text, asArray);
}

void DesignerWindow::Paste(const Text& text, bool asArray) {
    // Into the frame that is selected alone, beside what is selected otherwise.
    std::optional<ObjectId> container;
    if (const ObjectId* primary = selection_.Primary()) {
        for (const Shape& shape : shapes_) {
            if (!(shape.id == *primary)) continue;
            const bool itself =
                shape.holdsOthers && selection_.All().size() == 1 && !TextView(text).starts_with(u"Begin Frame");
            if (itself) {
                container = shape.id;
            } else if (shape.container) {
                container = shapes_[*shape.container].id;
            }
        }
    }
    std::vector<ObjectId> pasted;
    Change(u"Paste", [&] { pasted = document_->Paste(text, container, asArray); });
    if (!pasted.empty() && document_->Find(pasted.front())) Select(std::move(pasted));
}

void DesignerWindow::ShowPages(const ObjectId& id) {
    auto* sited = dynamic_cast<SitedControl*>(Find(id));
    if (const auto pages = sited ? sited->Pages() : std::vector<CLSID>(); !pages.empty()) {
        try {
            const auto frame = PropertyFrame::Make(Handle(), sited->Title(), sited->Object(), pages, classes_);
            Log(u"Designer: property pages");
            frame->Ask(Handle());
        } catch (...) {
            reporter_.Error(FailureInFlightText());
        }
        CapturePending();
        return;
    }
    const Block* block = document_->Find(id);
    if (block && SameName(block->className, u"ImageList")) {
        EditImages();
        return;
    }
    SetFocus(properties_.Handle());
}

void DesignerWindow::ShowPagesOfSubject(std::size_t subject) {
    const std::vector<ObjectId>& ids = selection_.All();
    if (subject < ids.size()) ShowPages(ObjectId(ids[ids.size() - 1 - subject]));
}

void DesignerWindow::ShowKeys() {
    questions_.ask(Handle(),
                   u"Choose a tool in the toolbox and draw the control on the form, or press Enter.\n\n"
                   u"Click\tselect; with Ctrl or Shift, add or take out\n"
                   u"Drag\tmove; on a handle, size; on the form, select by a rubber band (in a frame with Ctrl)\n"
                   u"Alt\tkeeps off the grid\n"
                   u"Arrows\tmove by the grid; with Ctrl by a pixel; with Shift, size\n"
                   u"Tab\tselects the next control, Shift+Tab the one before, Escape what holds it\n"
                   u"Enter\tproperty pages\n"
                   u"F4\tproperties; F6 goes round the panes\n"
                   u"Double-click\tproperty pages; on the form's menu bar, the menu editor",
                   MB_OK | MB_ICONINFORMATION);
}

// --- Files.

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
    form_->BuildForDesign(canvas_.Handle());
    UpdateView();
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
    if (!IsWindowEnabled(Handle())) return;
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

// --- Editors.

void DesignerWindow::EditMenus() {
    CapturePending();
    MenuEditor editor(document_->File().form);
    Log(u"Designer: menu editor");
    if (!editor.Ask(Handle())) return;
    Change(u"Menus", [&] { WriteMenuLines(document_->File().form, editor.Lines()); });
}

void DesignerWindow::EditImages() {
    const ObjectId* primary = selection_.Primary();
    const Block* block = primary ? document_->Find(*primary) : nullptr;
    if (!block || !SameName(block->className, u"ImageList")) return;
    const ObjectId id = *primary;
    ImageEditor editor(ReadImages(*block), form_->Folder(), [this](HWND owner) {
        using namespace std::string_literals;
        const Text chosen = questions_.file(owner, false, form_->Folder() + u'\\',
                                            u"Pictures\0*.bmp;*.ico;*.gif;*.jpg;*.png\0All files\0*.*\0"s);
        return chosen.empty() ? chosen : KeepPicture(FullPath(chosen));
    });
    if (!editor.Ask(Handle())) return;
    Change(u"Images", [&] {
        if (Block* list = document_->Find(id)) WriteImages(*list, editor.Images());
    });
}

}  // namespace qvx::host::design
