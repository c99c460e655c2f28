#include "controls/grid/stored_zip.h"

#include "common/run_time_error.h"

namespace qvx::grid {
namespace {

constexpr std::uint64_t mostBytes = 0xF0000000;  // leaves room for the directory
constexpr std::uint16_t version = 20;
constexpr std::uint16_t firstDay = 0x21;  // 1 January 1980: the archive does not depend on the time of its making
constexpr std::uint64_t placeOfSum = 14;  // in a file's header, followed by both sizes

void Put16(std::string& to, std::uint32_t value) {
    to += static_cast<char>(value & 0xFF);
    to += static_cast<char>(value >> 8 & 0xFF);
}

void Put32(std::string& to, std::uint64_t value) {
    Put16(to, static_cast<std::uint32_t>(value & 0xFFFF));
    Put16(to, static_cast<std::uint32_t>(value >> 16 & 0xFFFF));
}

// The fields that a file's header and its entry in the directory share.
void PutCommon(std::string& to, std::uint32_t sum, std::uint64_t size, const std::string& name) {
    Put16(to, version);
    Put16(to, 0);  // no flags
    Put16(to, 0);  // stored
    Put16(to, 0);  // midnight
    Put16(to, firstDay);
    Put32(to, sum);
    Put32(to, size);
    Put32(to, size);
    Put16(to, static_cast<std::uint32_t>(name.size()));
    Put16(to, 0);  // no extra field
}

}  // namespace

void StoredZip::BeginFile(std::string_view name) {
    Entry entry{std::string(name), blocks_.Size(), 0, {}};
    std::string header = "PK\x03\x04";
    PutCommon(header, 0, 0, entry.name);
    blocks_.Add(header + entry.name);
    entries_.push_back(std::move(entry));
}

void StoredZip::Add(std::string_view bytes) {
    if (blocks_.Size() + bytes.size() > mostBytes)
        throw RunTimeError(errors::invalidProcedureCall, u"A workbook of more than 4 GB cannot be written");
    Entry& entry = entries_.back();
    entry.sum.Add(bytes);
    entry.size += bytes.size();
    blocks_.Add(bytes);
}

void StoredZip::EndFile() {
    const Entry& entry = entries_.back();
    std::string known;
    Put32(known, entry.sum.Value());
    Put32(known, entry.size);
    Put32(known, entry.size);
    blocks_.Rewrite(entry.at + placeOfSum, known);
}

void StoredZip::End() {
    const std::uint64_t begin = blocks_.Size();
    std::string directory;
    for (const Entry& entry : entries_) {
        directory += "PK\x01\x02";
        Put16(directory, version);
        PutCommon(directory, entry.sum.Value(), entry.size, entry.name);
        Put16(directory, 0);  // no comment
        Put16(directory, 0);  // on the first disk
        Put16(directory, 0);
        Put32(directory, 0);  // no attributes
        Put32(directory, entry.at);
        directory += entry.name;
    }
    const std::uint64_t size = directory.size();
    directory += "PK\x05\x06";
    Put32(directory, 0);  // one disk
    Put16(directory, static_cast<std::uint32_t>(entries_.size()));
    Put16(directory, static_cast<std::uint32_t>(entries_.size()));
    Put32(directory, size);
    Put32(directory, begin);
    Put16(directory, 0);  // no comment
    blocks_.Add(directory);
}

}  // namespace qvx::grid
