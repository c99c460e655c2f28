#include "win/fonts.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <mutex>
#include <numeric>

#include "com/lock.h"
#include "com/module.h"
#include "win/window_text.h"

namespace qvx {

namespace {

// The number of fonts kept after their last user is gone. A form draws with only a few; each takes one of the process's
// 10,000 GDI handles.
constexpr std::size_t keptFonts = 32;

struct CacheEntry {
    FontSpec value;
    Dpi dpi;
    SharedFont font;
};

struct FontCache {
    Lock access;
    std::list<CacheEntry> entries;  // most recently used first
};

}  // namespace

LOGFONTW ToLogFont(const FontSpec& value, Dpi dpi) {
    LOGFONTW log{};
    log.lfHeight = -static_cast<LONG>(std::lround(value.points * dpi.y / 72.0));
    if (value.widthPoints > 0) {
        log.lfWidth = static_cast<LONG>(std::lround(value.widthPoints * dpi.x / 72.0));
    }
    log.lfWeight = value.weight;
    log.lfItalic = value.italic;
    log.lfUnderline = value.underline;
    log.lfStrikeOut = value.strikeThrough;
    log.lfCharSet = static_cast<BYTE>(value.charset ? value.charset : DEFAULT_CHARSET);
    const std::size_t length = std::min<std::size_t>(value.face.size(), LF_FACESIZE - 1);
    std::copy_n(WideData(value.face), length, log.lfFaceName);
    return log;
}

GdiFont::GdiFont(const FontSpec& value, Dpi dpi) {
    const LOGFONTW log = ToLogFont(value, dpi);
    font_.Reset(CreateFontIndirectW(&log));
    const WindowDc screen(nullptr);
    const SelectedObject selected(screen.Get(), font_.Get());
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen.Get(), &metrics);
    lineHeight_ = std::max(1, static_cast<int>(metrics.tmHeight));
    if (GetCharWidth32W(screen.Get(), 0, 255, widths_.data())) {
        // The table may be used only where the width of a run is the sum of its characters' widths: not for faces with
        // overhang or kerning.
        const TextView probe = u"AVATo. Ly/fi (0123456789) wW-_,\u00C4\u00E9";
        SIZE size{};
        const int sum = std::accumulate(probe.begin(), probe.end(), 0, [this](int total, char16_t c) {
            return total + widths_[static_cast<std::size_t>(c)];
        });
        additive_ = GetTextExtentPoint32W(screen.Get(), WideData(probe), static_cast<int>(probe.size()), &size) &&
                    size.cx == sum;
    }
}

int GdiFont::RunWidth(HDC dc, TextView text) const {
    if (additive_) {
        int width = 0;
        std::size_t i = 0;
        for (; i < text.size() && text[i] < 256; ++i) {
            width += widths_[static_cast<std::size_t>(text[i])];
        }
        if (i == text.size()) {
            return width;
        }
    }
    const SelectedObject selected(dc, font_.Get());
    SIZE size{};
    GetTextExtentPoint32W(dc, WideData(text), static_cast<int>(text.size()), &size);
    return size.cx;
}

SharedFont AcquireFont(const FontSpec& value, Dpi dpi) {
    auto& [access, cache] = OfModule<FontCache>();
    const std::lock_guard lock(access);
    const auto found = std::find_if(cache.begin(), cache.end(),
                                    [&](const CacheEntry& entry) { return entry.dpi == dpi && entry.value == value; });
    if (found != cache.end()) {
        cache.splice(cache.begin(), cache, found);
        return found->font;
    }
    cache.push_front({value, dpi, std::make_shared<const GdiFont>(value, dpi)});
    if (cache.size() > keptFonts) {
        cache.pop_back();
    }
    return cache.front().font;
}

}  // namespace qvx
