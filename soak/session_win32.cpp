#include "soak/session_win32.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "com/wide_text.h"
#include "common/utf8.h"

namespace qvx::soak {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t hostName[] = L"qvxhost.exe";
constexpr DWORD hangTime = 20'000;  // milliseconds without an answer
constexpr DWORD moment = 200;       // for threads that need not answer now

std::string FileText(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The window that represents another program.
HWND otherProgram = nullptr;

DWORD WINAPI ShowOtherProgram(void* ready) {
    otherProgram = CreateWindowExW(WS_EX_TOOLWINDOW, L"Static", L"Another program", WS_POPUP | WS_VISIBLE | WS_BORDER,
                                   1100, 0, 160, 24, nullptr, nullptr, nullptr, nullptr);
    SetEvent(ready);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    return 0;
}

HWND OtherProgram() {
    if (!otherProgram) {
        const Kernel ready(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        const Kernel thread(CreateThread(nullptr, 0, ShowOtherProgram, ready.Get(), 0, nullptr));
        WaitForSingleObject(ready.Get(), hangTime);
    }
    return otherProgram;
}

struct Collection {
    Scene& scene;
    Point origin;
};

void Add(HWND window, Collection& collection) {
    RECT area{};
    if (!IsWindowVisible(window) || !GetWindowRect(window, &area) || area.right <= area.left || area.bottom <= area.top)
        return;
    const Rect place{static_cast<int>(area.left), static_cast<int>(area.top), static_cast<int>(area.right),
                     static_cast<int>(area.bottom)};
    collection.scene.parts.push_back(
        {KindOf(ClassOf(window)), place.Offset(-collection.origin.x, -collection.origin.y)});
}

BOOL CALLBACK AddInner(HWND window, LPARAM collection) {
    Add(window, *reinterpret_cast<Collection*>(collection));
    return TRUE;
}

BOOL CALLBACK AddPopup(HWND window, LPARAM collection) {
    const Kind kind = KindOf(ClassOf(window));
    if (kind == Kind::popup || kind == Kind::list) Add(window, *reinterpret_cast<Collection*>(collection));
    return TRUE;
}

}  // namespace

Watch::Watch(const fs::path& library) {
    idle.Reset(CreateEventW(nullptr, FALSE, FALSE, idleName));
    mapping_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Shared), sharedName));
    shared = static_cast<Shared*>(MapViewOfFile(mapping_.Get(), FILE_MAP_WRITE, 0, 0, sizeof(Shared)));
    ask = RegisterWindowMessageW(askName);
    library_ = LoadLibraryW(library.c_str());
    if (!shared || !library_) throw std::runtime_error("the watching part cannot be loaded");
}

bool Watch::Hook(DWORD thread) const {
    const auto procedure =
        reinterpret_cast<HOOKPROC>(reinterpret_cast<void*>(GetProcAddress(library_, "WatchMessages")));
    return SetWindowsHookExW(WH_GETMESSAGE, procedure, library_, thread) != nullptr;
}

Session::Session(Watch& watch, const Places& places, const std::string& subject) : watch_(watch), places_(places) {
    std::error_code ignored;
    fs::remove_all(places.work, ignored);
    fs::copy(places.pristine, places.work, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    watch.shared->fault = {};
    // What an earlier session has copied would be missing when this one is replayed.
    if (OpenClipboard(nullptr)) {
        EmptyClipboard();
        CloseClipboard();
    }
    OtherProgram();
    try {
        Start(subject);
        if (!failure_) Settle();
    } catch (...) {
        End();
        throw;
    }
}

Session::~Session() { End(); }

void Session::End() {
    if (job_) TerminateJobObject(job_.Get(), 0);
    if (run_.process) TerminateProcess(run_.process.Get(), 0);
    for (const Program* program : {&host_, &run_}) {
        if (program->process) WaitForSingleObject(program->process.Get(), hangTime);
    }
}

void Session::Start(const std::string& subject) {
    constexpr std::string_view designWord = "design ";
    design_ = subject.starts_with(designWord);
    const std::string name = design_ ? subject.substr(designWord.size()) : subject;
    const fs::path form = places_.work / (name + ".frm");
    fs::path script = places_.work / (name + ".vbs");
    if (!fs::exists(script)) script = places_.work / (name + ".js");
    std::wstring line = L"\"" + (places_.programs / hostName).wstring() + L"\" ";
    if (design_) line += L"--design ";
    line += L"\"" + form.wstring() + L"\"";
    if (!design_) line += L" \"" + script.wstring() + L"\" --quiet";
    line += L" --log \"" + (places_.work / "log").wstring() + L"\"";
    const fs::path database = places_.work / (name + ".db");
    if (fs::exists(database)) line += L" -- \"" + database.wstring() + L"\"";

    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const Kernel output(CreateFileW(places_.output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    &inherited, CREATE_ALWAYS, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdError = output.Get();
    PROCESS_INFORMATION started{};
    job_.Reset(CreateJobObjectW(nullptr, nullptr));
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, places_.work.c_str(),
                        &startup, &started)) {
        throw std::runtime_error("the host cannot be started: " + std::to_string(GetLastError()));
    }
    host_.process.Reset(started.hProcess);
    const Kernel thread(started.hThread);
    host_.id = started.dwProcessId;
    host_.thread = started.dwThreadId;
    AssignProcessToJobObject(job_.Get(), host_.process.Get());
    ResumeThread(thread.Get());
    host_.window = WaitForWindow(host_, Wanted::main);
    LookForEnd();
    if (failure_) return;
    if (!host_.window)
        throw std::runtime_error("the form of \"" + subject + "\" does not show: " + FileText(places_.output));
    if (!watch_.Hook(host_.thread)) throw std::runtime_error("the host cannot be watched");
    hooked_.insert(host_.thread);
    SetForegroundWindow(host_.window);
}

bool Session::FollowRun() {
    if (!design_ || !Runs()) return false;
    if (run_.process && IsWindow(run_.window)) return false;
    if (!run_.process) {
        run_.id = FindChild(host_.id, hostName);
        if (!run_.id) return false;
        run_.process.Reset(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION | PROCESS_TERMINATE, FALSE, run_.id));
        if (!run_.process) return false;
    }
    // A form that cannot be loaded shows a message first, and a form that has closed is not gone before its process has
    // ended.
    run_.window = WaitForWindow(run_, Wanted::any);
    LookForEnd();
    if (run_.process && !run_.window) Fail("hang", "the form that the designer runs neither shows nor ends");
    if (!run_.window) return false;
    run_.thread = GetWindowThreadProcessId(run_.window, nullptr);
    if (!hooked_.contains(run_.thread) && watch_.Hook(run_.thread)) hooked_.insert(run_.thread);
    return true;
}

bool Session::IsRun(HWND window) const {
    DWORD process = 0;
    return GetWindowThreadProcessId(window, &process) && process == run_.id && ClassOf(window) == formClass;
}

HWND Session::Active() const {
    const HWND window = GetForegroundWindow();
    return window && window != OtherProgram() && window != GetDesktopWindow() ? window : nullptr;
}

bool Session::Runs() const { return !failure_ && !ended_; }

Scene Session::Look() {
    Scene scene;
    const HWND active = Active();
    scene.minimized = IsIconic(host_.window) != FALSE;
    scene.away = !active;
    if (!active) return scene;
    RECT area{};
    GetWindowRect(active, &area);
    scene.size = {static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top)};
    Collection collection{scene, {static_cast<int>(area.left), static_cast<int>(area.top)}};
    EnumChildWindows(active, AddInner, reinterpret_cast<LPARAM>(&collection));
    const DWORD thread = GetWindowThreadProcessId(active, nullptr);
    EnumThreadWindows(thread, AddPopup, reinterpret_cast<LPARAM>(&collection));
    GUITHREADINFO focus{};
    focus.cbSize = sizeof focus;
    if (GetGUIThreadInfo(thread, &focus) && focus.hwndFocus) scene.focus = KindOf(ClassOf(focus.hwndFocus));
    const bool menu =
        std::any_of(scene.parts.begin(), scene.parts.end(), [](const Part& part) { return part.kind == Kind::popup; });
    scene.main = active == host_.window && !menu;
    scene.run = IsRun(active) && !menu;
    answers_ = active == host_.window ? 0 : answers_ + 1;
    scene.answers = answers_;
    return scene;
}

void Session::Do(const Action& action) {
    RECT area{};
    const HWND active = Active();
    const HWND form = active && IsRun(active) ? active : host_.window;
    GetWindowRect(active ? active : host_.window, &area);
    const auto onScreen = [&](Point place) {
        return Point{static_cast<int>(area.left) + place.x, static_cast<int>(area.top) + place.y};
    };
    switch (action.deed) {
        case Deed::key:
            // The desktop receives keys that no window gets, and Alt+F4 there shuts the whole environment down.
            if (active) input_.Press(action.text);
            break;
        case Deed::type:
            if (active) input_.Type(action.text);
            break;
        case Deed::move:
            input_.MoveTo(onScreen(action.at));
            break;
        case Deed::click:
        case Deed::doubleClick:
            input_.MoveTo(onScreen(action.at));
            for (int i = action.deed == Deed::click ? 1 : 2; i > 0; --i) {
                input_.Button(MOUSEEVENTF_LEFTDOWN);
                input_.Button(MOUSEEVENTF_LEFTUP);
            }
            break;
        case Deed::rightClick:
            input_.MoveTo(onScreen(action.at));
            input_.Button(MOUSEEVENTF_RIGHTDOWN);
            input_.Button(MOUSEEVENTF_RIGHTUP);
            break;
        case Deed::drag:
            input_.MoveTo(onScreen(action.at));
            input_.Button(MOUSEEVENTF_LEFTDOWN);
            Settle(Wait::aMoment);
            for (int i = 1; i <= 3; ++i) {
                input_.MoveTo(onScreen({action.at.x + (action.to.x - action.at.x) * i / 3,
                                        action.at.y + (action.to.y - action.at.y) * i / 3}));
                Settle(Wait::aMoment);
            }
            if (!action.text.empty()) input_.Press(action.text);
            input_.Button(MOUSEEVENTF_LEFTUP);
            break;
        case Deed::wheel:
            input_.Wheel(action.count);
            break;
        case Deed::size:
            if (active && (GetWindowLongW(active, GWL_STYLE) & WS_THICKFRAME)) {
                SetWindowPos(active, nullptr, 0, 0, action.to.x, action.to.y,
                             SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
            }
            break;
        case Deed::minimize:
            PostMessageW(form, WM_SYSCOMMAND, SC_MINIMIZE, 0);
            break;
        case Deed::maximize:
            PostMessageW(form, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
            break;
        case Deed::restore:
            PostMessageW(form, WM_SYSCOMMAND, SC_RESTORE, 0);
            break;
        case Deed::leave:
            SetForegroundWindow(OtherProgram());
            break;
        case Deed::back: {
            // An open message box replaces the window that it belongs to.
            const HWND last = GetLastActivePopup(host_.window);
            SetForegroundWindow(last ? last : host_.window);
            break;
        }
    }
    Settle();
    if (FollowRun()) Settle();
}

void Session::Settle(Wait wait, bool count) {
    if (!Runs()) return;
    DWORD thread = host_.thread;
    // The active thread receives the input; the counts are those of the host.
    if (const HWND active = count ? nullptr : Active()) {
        const DWORD other = GetWindowThreadProcessId(active, nullptr);
        if (other && (hooked_.contains(other) || watch_.Hook(other))) {
            hooked_.insert(other);
            thread = other;
        }
    }
    ++request_;
    ResetEvent(watch_.idle.Get());
    if (PostThreadMessageW(thread, watch_.ask, static_cast<WPARAM>(request_), count ? 1 : 0)) {
        const HANDLE ends[] = {host_.process.Get(), watch_.idle.Get()};
        // The time is counted in completed waits: if the machine stands still meanwhile, that is no hang.
        constexpr DWORD slice = 250;
        DWORD left = wait == Wait::forAnswer ? hangTime : moment;
        for (;;) {
            const DWORD now = std::min(left, slice);
            const DWORD result = left > 0 ? WaitForMultipleObjects(2, ends, FALSE, now) : WAIT_FAILED;
            if (result == WAIT_TIMEOUT) left -= now;
            if (result == WAIT_OBJECT_0 || (result == WAIT_OBJECT_0 + 1 && watch_.shared->answered == request_)) break;
            if (result == WAIT_FAILED && wait == Wait::aMoment) break;
            if (result == WAIT_FAILED) {
                Fail("hang", "no answer for " + std::to_string(hangTime / 1000) + " s");
                break;
            }
            // A form that the designer has started may have ended in the meantime.
            if (thread != host_.thread && !PostThreadMessageW(thread, WM_NULL, 0, 0)) break;
        }
    }
    LookForEnd();
}

std::optional<Counts> Session::Count() {
    Settle(Wait::forAnswer, true);
    if (!Runs()) return std::nullopt;
    return Counts{watch_.shared->windows, watch_.shared->graphics, watch_.shared->menus};
}

void Session::LookForEnd() {
    if (failure_ || ended_) return;
    const std::string said = FileText(places_.output);
    ended_ = HasEnded(host_);
    if (HasEnded(run_)) run_ = {};
    // In the designer, errors caused by the user's actions are not always the program's fault.
    if (!failure_ && !design_ && !said.empty()) Fail("error " + said.substr(0, said.find('\n')), said);
}

bool Session::HasEnded(const Program& program) {
    DWORD code = 0;
    if (!program.process || WaitForSingleObject(program.process.Get(), 0) != WAIT_OBJECT_0) return false;
    GetExitCodeProcess(program.process.Get(), &code);
    // The exit code after a script error or a form that cannot be written is smaller than after a crash.
    if (failure_ || code <= 255) return true;
    std::ostringstream number;
    number << std::hex << code;
    const Fault& fault = watch_.shared->fault;
    std::ostringstream where;
    where << std::hex << fault.frames[0] - fault.bases[0];
    Fail("crash " + number.str() + " in " + EncodeUtf8(FromWide(fault.modules[0])) + "+" + where.str(),
         "the host crashed with " + number.str() + "\n" + FaultText());
    return true;
}

void Session::LookIntoLog() {
    const std::string log = FileText(places_.work / "log");
    const std::size_t at = log.find("OnError");
    if (failure_ || design_ || at == std::string::npos) return;
    const std::string line = log.substr(at, log.find_first_of("\r\n", at) - at);
    Fail("reported " + line, line);
}

void Session::Fail(std::string kind, const std::string& report) { failure_ = Failure{std::move(kind), report}; }

std::string Session::FaultText() const {
    const Fault& fault = watch_.shared->fault;
    std::ostringstream text;
    text << std::hex;
    for (int i = 0; i < maximumFrames && fault.frames[i]; ++i) {
        text << "  " << EncodeUtf8(FromWide(fault.modules[i])) << "+" << fault.frames[i] - fault.bases[i] << "\n";
    }
    return text.str();
}

}  // namespace qvx::soak
