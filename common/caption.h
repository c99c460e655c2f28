// Captions whose "&" marks the letter that, with Alt, is their access key.
#pragma once

#include "common/text.h"

namespace qvx {

// The caption as it is read: without the mark, and with one "&" for each "&&".
inline Text WithoutAccessMark(TextView caption) {
    Text text;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && ++i == caption.size()) break;
        text.push_back(caption[i]);
    }
    return text;
}

}  // namespace qvx
