#include "designer/document/named_pictures.h"

#include <algorithm>

#include "common/ascii.h"
#include "common/number_text.h"

namespace qvx::host::designer {

namespace {

bool NamesPicture(const Text& text) {
    Text suffix = text.substr(std::min(text.rfind(u'.'), text.size()));
    for (char16_t& c : suffix) c = LowerAscii(c);
    for (const TextView known :
         {u".bmp", u".dib", u".ico", u".cur", u".gif", u".jpg", u".jpeg", u".png", u".wmf", u".emf"}) {
        if (suffix == known) return true;
    }
    return false;
}

void CollectPictures(const Block& block, std::vector<Text>& names) {
    for (const Entry& entry : block.entries) {
        if (entry.block) CollectPictures(*entry.block, names);
        const Text* text = entry.value ? std::get_if<Text>(&*entry.value) : nullptr;
        if (text && NamesPicture(*text) && !IsRooted(*text) && text->find(u"..") == Text::npos) names.push_back(*text);
    }
}

}  // namespace

bool IsRooted(TextView path) {
    return path.find(u':') != Text::npos || path.starts_with(u"\\") || path.starts_with(u"/");
}

Text FileNameOf(TextView path) { return Text(path.substr(path.find_last_of(u"\\/") + 1)); }

std::vector<Text> PicturesIn(const Block& form) {
    std::vector<Text> names;
    CollectPictures(form, names);
    return names;
}

Text NumberedName(const Text& name, int number) {
    if (number == 1) return name;
    const std::size_t dot = std::min(name.rfind(u'.'), name.size());
    return name.substr(0, dot) + u"-" + IntegerToText(number) + name.substr(dot);
}

}  // namespace qvx::host::designer
