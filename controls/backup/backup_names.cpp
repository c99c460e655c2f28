#include "controls/backup/backup_names.h"

#include <algorithm>

#include "common/number_text.h"

namespace qvx::backup {

namespace {

constexpr TextView forbidden = u"\\/:*?\"<>|";
constexpr std::size_t prefixLength = 2;
constexpr std::size_t spareNameLength = 8;

}  // namespace

TextView Trimmed(TextView text) {
    const auto first = text.find_first_not_of(u' ');
    if (first == TextView::npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

Text WithSeparator(TextView folder) {
    Text path(folder);
    if (path.empty() || path.back() != u'\\') path += u'\\';
    return path;
}

Text ArchivePath(TextView folder, const Settings& settings, int day, int month) {
    Text path(folder);
    path.append(settings.database, 0, prefixLength);
    path += u'-' + IntegerToText(day) + u'-' + IntegerToText(month);
    return path + settings.backupExtension;
}

bool IsForbiddenInNames(char16_t character) { return forbidden.find(character) != TextView::npos; }

Text CleanName(TextView text) {
    Text clean(text);
    clean.erase(std::remove_if(clean.begin(), clean.end(), IsForbiddenInNames), clean.end());
    return clean;
}

Text GroupName(TextView typed) { return CleanName(Trimmed(typed)); }

Text SpareGroupName(TextView spare) { return Text(spare.substr(0, spareNameLength)); }

Text Argument(TextView path) {
    if (path.find(u' ') == TextView::npos) return Text(path);
    Text argument = u'"' + Text(path);
    if (path.back() == u'\\') argument += u'\\';
    return argument + u'"';
}

Text ArrivingName(TextView path) { return Text(path) + u".~arriving-5d2e9c41"; }

bool FitsConnectionString(TextView name) { return name.find_first_of(u";='\"") == TextView::npos; }

TextView FolderOf(TextView path) {
    const auto last = path.find_last_of(u"\\/:");
    return last == TextView::npos ? TextView() : path.substr(0, last + 1);
}

TextView Redacted(TextView description) noexcept {
    const bool tells = description.find_first_of(u"\\=") != TextView::npos || description.find(u":/") != TextView::npos;
    return tells ? TextView() : description;
}

}  // namespace qvx::backup
