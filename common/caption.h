// Captions in which "&" marks the access key: the letter that acts together with Alt.
#pragma once

#include "common/text.h"

namespace qvx {

// Returns the caption as it is read: without the mark, and with a single "&" for each "&&".
inline Text WithoutAccessMark(TextView caption) {
    Text text;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && ++i == caption.size()) break;
        text.push_back(caption[i]);
    }
    return text;
}

}  // namespace qvx
