// Short names, temporary names, drives, the calendar: from the system's scripting objects where they are installed and
// work, otherwise from the system itself.
#include <windows.h>

#include <objbase.h>

#include "com/late_bound.h"
#include "com/wide_text.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/system_path_win32.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::backup {

namespace {

// Returns the result of `ask` with the objects; nullopt where they are missing or fail in any way.
template <typename Ask>
auto AskScripting(Ask ask) -> std::optional<decltype(ask(nullptr))> {
    try {
        return ask(CreateNamedObject(L"Scripting.FileSystemObject").get());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

Variant Ask(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments = {}) {
    return LateMember(object, member).Get(object, arguments);
}

ComPtr<IDispatch> AskForObject(IDispatch* object, const wchar_t* member, const Text& argument) {
    return Ask(object, member, {Variant(argument)}).ToObject<IDispatch>();
}

std::optional<Text> ScriptingShortPath(const Text& file) {
    const auto path = AskScripting([&](IDispatch* files) {
        const auto found = AskForObject(files, L"GetFile", file);
        return Ask(found.get(), L"ShortPath").ToText().value_or(Text());
    });
    return path && !path->empty() ? path : std::nullopt;
}

std::optional<long> ScriptingDriveType(const Text& fullPath) {
    return AskScripting([&](IDispatch* files) {
        const Text name = Ask(files, L"GetDriveName", {Variant(fullPath)}).ToText().value_or(Text());
        const auto type = Ask(AskForObject(files, L"GetDrive", name).get(), L"DriveType").ToLong();
        if (!type) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
        return *type;
    });
}

constexpr long scriptingRemovable = 1;

}  // namespace

Text SystemServices::ShortPath(TextView file) {
    if (!FileSize(file)) ThrowFileError(ERROR_FILE_NOT_FOUND);
    const Text path(file);
    if (auto found = ScriptingShortPath(path)) return *found;
    const Text systemPath = SystemPath(path);
    Text shortPath(systemPath.size() + 1, u'\0');
    for (;;) {
        const DWORD length =
            GetShortPathNameW(Wide(systemPath), WideBuffer(shortPath), static_cast<DWORD>(shortPath.size()));
        if (length == 0) return path;
        const bool fits = length < shortPath.size();
        shortPath.resize(length);
        if (fits) return WithoutLongForm(shortPath);
    }
}

DriveKind SystemServices::DriveTypeOf(TextView path) {
    const Text fullPath = FullPath(path);
    if (const auto type = ScriptingDriveType(fullPath)) {
        return *type == scriptingRemovable ? DriveKind::removable : DriveKind::other;
    }
    switch (GetDriveTypeW(Wide(VolumeRoot(fullPath)))) {
        case DRIVE_NO_ROOT_DIR:
            ThrowFileError(ERROR_INVALID_DRIVE);
        case DRIVE_REMOVABLE:
            return DriveKind::removable;
        default:
            return DriveKind::other;
    }
}

std::optional<std::uint64_t> SystemServices::FreeSpace(TextView path) {
    const Text folder(FolderOf(FullPath(path)));
    ULARGE_INTEGER free{};
    if (folder.empty() || !GetDiskFreeSpaceExW(Wide(SystemPath(folder)), &free, nullptr, nullptr)) return std::nullopt;
    return free.QuadPart;
}

void SystemServices::ChangeDrive(TextView path) {
    if (path.empty()) return;
    const Text fullPath = FullPath(path);
    const Text drive(DriveName(fullPath));
    if (drive.empty()) ThrowFileError(ERROR_INVALID_DRIVE);
    // The drive's own current folder, or its root if that folder no longer exists; a server has only its root.
    const bool lettered = drive.size() == 2;
    if (lettered && SetCurrentDirectoryW(Wide(drive))) return;
    if (!SetCurrentDirectoryW(Wide(drive + u'\\'))) ThrowFileError(lettered ? ERROR_INVALID_DRIVE : GetLastError());
}

Text SystemServices::TemporaryName() {
    const auto name =
        AskScripting([](IDispatch* files) { return Ask(files, L"GetTempName").ToText().value_or(Text()); });
    if (name && !name->empty()) return *name;
    GUID fresh{};
    if (FAILED(CoCreateGuid(&fresh))) throw RunTimeError(errors::invalidProcedureCall, u"No name could be made");
    Text made = u"rad";
    constexpr int digits = 5;
    for (int i = 0; i < digits; ++i) made += TextView(u"0123456789ABCDEF")[fresh.Data1 >> (4 * i) & 0xF];
    return made + u".tmp";
}

Date SystemServices::Today() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wDay, now.wMonth};
}

}  // namespace qvx::backup
