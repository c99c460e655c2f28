#include "controls/grid/caption_list.h"

#include "common/text_compare.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::grid {

std::optional<CaptionedText> TakeCaptioned(TextView& list) {
    const std::size_t end = list.find(u']');
    if (list.empty() || list.front() != u'[' || end == TextView::npos) return std::nullopt;
    const std::size_t next = list.find(u",[", end);
    const CaptionedText item{list.substr(1, end - 1),
                             list.substr(end + 1, next == TextView::npos ? next : next - end - 1)};
    list = next == TextView::npos ? TextView() : list.substr(next + 1);
    return item;
}

void AppendCaptioned(Text& list, const CaptionedText& item) {
    if (item.caption.find(u']') != TextView::npos || item.text.find(u",[") != TextView::npos) flexgrid::RefuseValue();
    list.append(list.empty() ? u"[" : u",[").append(item.caption).append(u"]").append(item.text);
}

TextView TextForCaption(TextView list, TextView caption) {
    while (const auto item = TakeCaptioned(list))
        if (EqualNoCase(item->caption, caption)) return item->text;
    return {};
}

Text WithTextForCaption(TextView list, TextView caption, TextView text) {
    CheckCaptionList(list);
    Text changed;
    bool missing = !text.empty();
    while (const auto item = TakeCaptioned(list)) {
        const bool own = EqualNoCase(item->caption, caption);
        if (!own || missing) AppendCaptioned(changed, {item->caption, own ? text : item->text});
        if (own) missing = false;
    }
    if (missing) AppendCaptioned(changed, {caption, text});
    return changed;
}

void CheckCaptionList(TextView list) {
    while (TakeCaptioned(list)) {
    }
    if (!list.empty()) flexgrid::RefuseValue();
}

}  // namespace qvx::grid
