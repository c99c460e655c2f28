// Lists in the form "[Caption]text,[Caption]text", which say something of columns in words of any kind.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::grid {

struct CaptionedText {
    TextView caption;
    TextView text;  // goes up to the next ",["
};

// Takes the first item off a list; nullopt if the list is empty or does not begin with one, and then it stays as it is.
inline std::optional<CaptionedText> TakeCaptioned(TextView& list) {
    const std::size_t end = list.find(u']');
    if (list.empty() || list.front() != u'[' || end == TextView::npos) return std::nullopt;
    const std::size_t next = list.find(u",[", end);
    const CaptionedText item{list.substr(1, end - 1),
                             list.substr(end + 1, next == TextView::npos ? next : next - end - 1)};
    list = next == TextView::npos ? TextView() : list.substr(next + 1);
    return item;
}

}  // namespace qvx::grid
