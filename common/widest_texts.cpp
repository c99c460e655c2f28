#include "common/widest_texts.h"

#include <algorithm>

namespace qvx {
namespace {

constexpr std::size_t measuredTexts = 32;

}  // namespace

int WidestTexts::WidthOf(char16_t character) {
    std::unique_ptr<Page>& page = pages_[character >> 8];
    if (!page) {
        page = std::make_unique<Page>();
        page->fill(notMeasured);
    }
    int& width = (*page)[character & 0xFF];
    if (width == notMeasured) width = measure_(TextView(&character, 1));
    return width;
}

void WidestTexts::Add(TextView text) {
    std::int64_t sum = 0;
    for (const char16_t character : text) sum += WidthOf(character);
    const auto later = [](const Candidate& a, const Candidate& b) { return a.sum > b.sum; };
    if (candidates_.size() == measuredTexts) {
        if (sum <= candidates_.front().sum) return;
        std::pop_heap(candidates_.begin(), candidates_.end(), later);
        candidates_.pop_back();
    }
    candidates_.push_back({sum, Text(text)});
    std::push_heap(candidates_.begin(), candidates_.end(), later);
}

int WidestTexts::Width() const {
    int widest = 0;
    for (const Candidate& candidate : candidates_) widest = std::max(widest, measure_(candidate.text));
    return widest;
}

}  // namespace qvx
