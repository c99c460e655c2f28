#include "widgets/button/access_key.h"

#include "common/text_compare.h"

namespace qvx::buttons {

bool IsAccessKey(TextView caption, char16_t character) {
    const char16_t key = AccessKey(caption);
    return key != u'\0' && FoldCase(key) == FoldCase(character);
}

}  // namespace qvx::buttons
