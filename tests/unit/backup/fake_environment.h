// A computer for the backup's procedure: files in memory, archivers that pack and unpack them, a user with prepared
// answers. Any step can fail, and the program can end before any step.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/file_rules.h"
#include "controls/backup/steps.h"

namespace qvx::backup {

inline std::string Narrow(TextView text) {
    std::string narrow;
    for (const char16_t c : text) narrow += c == u'\r' ? '|' : static_cast<char>(c);
    return narrow;
}

inline Settings SampleSettings() {
    return {u"file=", u"Accounts", u"C:\\Temp\\", u"C:\\Data\\", u"C:\\Zip\\", u".qvx", u".mdb"};
}

struct NoCase {
    bool operator()(const Text& a, const Text& b) const { return CompareTextNoCase(a, b) < 0; }
};
using Files = std::map<Text, std::string, NoCase>;

// The program has ended: nothing has an effect any more.
struct ProgramEnded : RunTimeError {
    ProgramEnded() : RunTimeError(0, u"") {}
};

class FakeEnvironment final : public UserSteps, public SystemSteps {
  public:
    Files files;
    // The steps so far, one line for each; those that only read are included if `logLooks` is set.
    std::vector<std::string> log;
    bool logLooks = false;

    int failAt = 0;  // the number of a step that fails, from 1
    int endAt = 0;   // the number of a step before which the program ends
    int steps = 0;

    bool answer = true;    // to questions
    bool password = true;  // whether the right one is typed
    Text pickedFolder;
    Text pickedFile;
    Text removableDrive;  // "A:"
    // The capacity in bytes of each drive that has a limit. An archiver that may span disks asks for the next one when
    // the current one is full.
    std::map<Text, std::uint64_t> capacity;
    Files nextDisk;               // the files on the disk that is put into the removable drive next
    bool swapsWhenDone = false;   // the disk is changed before the archive is checked
    bool pulledWhenDone = false;  // the drive itself is removed, and every access fails
    std::vector<Files> disksTakenOut;
    std::uint32_t exitCode = 0;
    enum class Archiver { works, leavesNothing, leavesHalf } archiver = Archiver::works;
    bool shortNames = false;  // 8.3 forms differ from the names
    Text mailError;

    std::string Log() const {
        std::string text;
        for (const std::string& line : log) text += line + "\n";
        return text;
    }

    void Refresh(const FormState& form) override {
        if (steps + 1 == failAt) failAt = 0;  // never fails
        try {
            Step("refresh [" + Narrow(form.outcome) + "]");
        } catch (const std::exception&) {
            // It never fails, and nobody sees it any more when the program has ended.
        }
    }
    bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) override {
        Step("message " + Narrow(prompt) + " (" + Narrow(title.value_or(u"-")) + ", " + std::to_string(kind.buttons) +
             ", " + std::to_string(kind.icon) + ", " + std::to_string(kind.timeOut) + ")");
        return kind.buttons == dialogs::button_set::okOnly || answer;
    }
    void ReportError(int number, TextView description) override {
        if (ended_) return;
        log.push_back("error " + std::to_string(number) + " " + Narrow(description));
    }
    Text BrowseForFolder(TextView title) override {
        Step("browse " + Narrow(title));
        return pickedFolder;
    }
    Text ShowOpenFile(TextView title) override {
        Step("open " + Narrow(title));
        return pickedFile;
    }
    bool RunPasswordPrompt(TextView connection) override {
        Step("prompt " + Narrow(connection));
        return password;
    }
    void ClosePasswordPrompt() override { Step("close prompt"); }
    Date Today() override { return {1, 3}; }

    std::optional<std::uint64_t> FileSize(TextView path) override {
        Look("size " + Narrow(path));
        if (pulledWhenDone && !disksTakenOut.empty() && OnDrive(removableDrive, path)) {
            throw RunTimeError(errors::deviceUnavailable, u"Device unavailable");
        }
        const auto found = files.find(Text(path));
        return found == files.end() ? std::nullopt : std::optional<std::uint64_t>(found->second.size());
    }
    void CreateEmptyFile(TextView path) override {
        Step("create " + Narrow(path));
        files[Text(path)] = "";
    }
    void DeleteFile(TextView path) override {
        Step("delete " + Narrow(path));
        if (files.erase(Text(path)) == 0) throw RunTimeError(errors::fileNotFound, u"File not found");
    }
    void RenameFile(TextView from, TextView to) override {
        Step("rename " + Narrow(from) + " > " + Narrow(to));
        Text target(to);  // before anything is changed: there may be no memory for it
        if (files.count(target)) throw RunTimeError(errors::fileAlreadyExists, u"File already exists");
        auto moved = files.extract(Text(from));
        if (moved.empty()) throw RunTimeError(errors::fileNotFound, u"File not found");
        moved.key() = std::move(target);
        files.insert(std::move(moved));
    }
    void ReplaceFile(TextView from, TextView to) override {
        // A program that ends midway leaves a partial file.
        if (steps + 1 == endAt) files[ArrivingName(to)] = "half";
        Step("replace " + Narrow(from) + " > " + Narrow(to));
        files.erase(ArrivingName(to));
        files[Text(to)] = files.at(Text(from));
    }
    Text FirstFile(TextView folder, TextView extension) override {
        Look("first " + Narrow(folder) + "*" + Narrow(extension));
        for (const auto& [path, bytes] : files) {
            if (!In(folder, path)) continue;
            if (const Text name = path.substr(folder.size()); HasExtension(name, extension)) return name;
        }
        return {};
    }
    void DeleteFiles(TextView folder) override {
        int most = steps + 1 == failAt || steps + 1 == endAt ? 1 : 1000;
        std::erase_if(files, [&](const auto& file) { return In(folder, file.first) && most-- > 0; });
        Step("delete all " + Narrow(folder));
    }
    bool SameFolder(TextView one, TextView other) override {
        Look("same " + Narrow(one) + " " + Narrow(other));
        const auto name = [](TextView folder) { return folder.substr(0, folder.find_last_not_of(u'\\') + 1); };
        return EqualNoCase(name(one), name(other));
    }
    Text ShortPath(TextView file) override {
        Look("short " + Narrow(file));
        if (!files.count(Text(file))) throw RunTimeError(errors::fileNotFound, u"File not found");
        return ShortForm(file);
    }
    DriveKind DriveTypeOf(TextView path) override {
        Look("drive " + Narrow(path));
        return !removableDrive.empty() && path.substr(0, 2) == removableDrive ? DriveKind::removable : DriveKind::other;
    }
    std::optional<std::uint64_t> FreeSpace(TextView path) override {
        Look("free " + Narrow(path));
        return Free(path);
    }
    void ChangeDrive(TextView path) override { Step("change drive " + Narrow(path)); }
    Text TemporaryName() override { return u"rad12345.tmp"; }

    bool DatabaseOpens(TextView connection) override {
        Look("opens " + Narrow(connection));
        const auto found = files.find(Text(connection.substr(connection.find(u'=') + 1)));
        return found != files.end() && found->second.rfind("db", 0) == 0;
    }
    void StartArchiver(TextView commandLine) override {
        Step("start " + Narrow(commandLine));
        commandLine_ = commandLine;
    }
    // An archiver finishes its work even if no one waits for it any more.
    std::uint32_t WaitForArchiver() override {
        if (!ended_ && archiver != Archiver::leavesNothing) Work();
        if (swapsWhenDone || pulledWhenDone) ChangeDisk();
        Step("wait");
        return exitCode;
    }
    void SendMail(const Mail& mail) override {
        Step("mail " + Narrow(mail.subject) + " " + Narrow(mail.attachment) + " as " + Narrow(mail.attachmentName));
        if (!mailError.empty()) throw RunTimeError(3, mailError);
    }

    // Returns the archive that PkZip makes of a file.
    static std::string Packed(const std::string& name, const std::string& bytes) { return "zip|" + name + "|" + bytes; }

  private:
    void Look(const std::string& what) {
        const auto before = log.size();
        Step(what);
        if (!logLooks) log.resize(before);
    }
    void Step(const std::string& what) {
        ++steps;
        if (steps == endAt) ended_ = true;
        if (ended_) throw ProgramEnded();
        if (steps == failAt) throw RunTimeError(errors::permissionDenied, u"Permission denied");
        log.push_back(what);
    }
    static bool In(TextView folder, TextView path) {
        return path.size() > folder.size() && EqualNoCase(path.substr(0, folder.size()), folder) &&
               path.find(u'\\', folder.size()) == TextView::npos;
    }
    std::uint64_t Free(TextView path) const {
        const auto limit = capacity.find(Text(path.substr(0, 2)));
        if (limit == capacity.end()) return ~std::uint64_t{0};
        std::uint64_t used = 0;
        for (const auto& [file, bytes] : files) used += OnDrive(limit->first, file) ? bytes.size() : 0;
        return limit->second - std::min(limit->second, used);
    }
    static bool OnDrive(TextView drive, TextView path) { return EqualNoCase(path.substr(0, 2), drive); }
    void ChangeDisk() {
        Files out;
        for (const auto& [file, bytes] : files) {
            if (OnDrive(removableDrive, file)) out[file] = bytes;
        }
        for (const auto& [file, bytes] : out) files.erase(file);
        files.insert(nextDisk.begin(), nextDisk.end());
        disksTakenOut.push_back(std::move(out));
    }
    // Shortens names with more than eight characters before the dot.
    Text ShortForm(TextView path) const {
        if (!shortNames) return Text(path);
        const TextView folder = FolderOf(path);
        const TextView name = path.substr(folder.size());
        const auto dot = name.find(u'.');
        if (dot == TextView::npos || dot <= 8) return Text(path);
        return Text(folder) + Text(name.substr(0, 6)) + u"~1" + Text(name.substr(dot));
    }
    Text LongForm(const Text& path) const {
        for (const auto& [file, bytes] : files) {
            if (EqualNoCase(ShortForm(file), path)) return file;
        }
        return path;
    }
    static std::vector<Text> Words(TextView line) {
        std::vector<Text> words(1);
        bool quoted = false;
        for (const char16_t c : line) {
            if (c == u'"') {
                quoted = !quoted;
            } else if (c == u' ' && !quoted) {
                words.emplace_back();
            } else {
                words.back() += c;
            }
        }
        return words;
    }
    void Work() {
        const std::vector<Text> words = Words(commandLine_);
        const bool packing = ContainsNoCase(words[0], u"PkZip.exe");
        if (packing) {
            const Text source = LongForm(words.back());
            std::string packed = Packed(Narrow(source.substr(FolderOf(source).size())), files.at(source));
            if (archiver == Archiver::leavesHalf) packed.resize(5);
            const Text& target = words[words.size() - 2];
            const bool spans = words[1] == u"-&";
            if (spans && Free(target) < packed.size() && Free(target) > 0) {
                const std::string part = packed.substr(0, Free(target));
                files[target] = part;
                ChangeDisk();
                packed.erase(0, part.size());
            }
            if (Free(target) < packed.size()) {
                exitCode = 5;
                return;
            }
            files[target] = packed;
            return;
        }
        const std::string& packed = files.at(LongForm(words[1]));
        const auto name = packed.find('|') + 1;
        const auto bytes = packed.find('|', name);
        if (packed.rfind("zip|", 0) != 0 || bytes == std::string::npos) return;
        const Text file(packed.begin() + static_cast<std::ptrdiff_t>(name),
                        packed.begin() + static_cast<std::ptrdiff_t>(bytes));
        files[words[2] + file] = archiver == Archiver::leavesHalf ? "half" : packed.substr(bytes + 1);
    }

    Text commandLine_;
    bool ended_ = false;
};

}  // namespace qvx::backup
