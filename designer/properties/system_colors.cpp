#include "designer/properties/system_colors.h"

#include "common/text_compare.h"

namespace qvx::host::designer {

namespace {

constexpr OleColor System(unsigned index) { return 0x80000000U | index; }

constexpr SystemColor systemColors[] = {
    {u"Scroll Bars", System(0)},
    {u"Desktop", System(1)},
    {u"Active Title Bar", System(2)},
    {u"Inactive Title Bar", System(3)},
    {u"Menu Bar", System(4)},
    {u"Window Background", System(5)},
    {u"Window Frame", System(6)},
    {u"Menu Text", System(7)},
    {u"Window Text", System(8)},
    {u"Active Title Bar Text", System(9)},
    {u"Active Border", System(10)},
    {u"Inactive Border", System(11)},
    {u"Application Workspace", System(12)},
    {u"Highlight", System(13)},
    {u"Highlight Text", System(14)},
    {u"Button Face", System(15)},
    {u"Button Shadow", System(16)},
    {u"Disabled Text", System(17)},
    {u"Button Text", System(18)},
    {u"Inactive Title Bar Text", System(19)},
    {u"Button Highlight", System(20)},
    {u"Button Dark Shadow", System(21)},
    {u"Button Light Shadow", System(22)},
    {u"ToolTip Text", System(23)},
    {u"ToolTip", System(24)},
};

constexpr unsigned dark = 0x80;
constexpr unsigned middle = 0xC0;
constexpr unsigned full = 0xFF;

constexpr std::array<OleColor, paletteCells> palette = {
    // white to black
    Rgb(full, full, full),
    Rgb(0xE0, 0xE0, 0xE0),
    Rgb(middle, middle, middle),
    Rgb(0xA0, 0xA0, 0xA0),
    Rgb(dark, dark, dark),
    Rgb(0x60, 0x60, 0x60),
    Rgb(0x40, 0x40, 0x40),
    Rgb(0, 0, 0),
    // pale
    Rgb(full, middle, middle),
    Rgb(full, 0xE0, middle),
    Rgb(full, full, middle),
    Rgb(middle, full, middle),
    Rgb(middle, full, full),
    Rgb(middle, middle, full),
    Rgb(full, middle, full),
    Rgb(0xE0, middle, full),
    // light
    Rgb(full, dark, dark),
    Rgb(full, middle, dark),
    Rgb(full, full, dark),
    Rgb(dark, full, dark),
    Rgb(dark, full, full),
    Rgb(dark, dark, full),
    Rgb(full, dark, full),
    Rgb(middle, dark, full),
    // full
    Rgb(full, 0, 0),
    Rgb(full, dark, 0),
    Rgb(full, full, 0),
    Rgb(0, full, 0),
    Rgb(0, full, full),
    Rgb(0, 0, full),
    Rgb(full, 0, full),
    Rgb(dark, 0, full),
    // strong
    Rgb(middle, 0, 0),
    Rgb(middle, 0x40, 0),
    Rgb(middle, middle, 0),
    Rgb(0, middle, 0),
    Rgb(0, middle, middle),
    Rgb(0, 0, middle),
    Rgb(middle, 0, middle),
    Rgb(0x60, 0, middle),
    // dark
    Rgb(dark, 0, 0),
    Rgb(dark, 0x40, 0),
    Rgb(dark, dark, 0),
    Rgb(0, dark, 0),
    Rgb(0, dark, dark),
    Rgb(0, 0, dark),
    Rgb(dark, 0, dark),
    Rgb(0x40, 0, dark),
};

Text WithoutBlanks(TextView name) {
    Text text;
    for (const char16_t c : name)
        if (c != u' ') text += c;
    return text;
}

}  // namespace

std::span<const SystemColor> SystemColors() { return systemColors; }

std::optional<OleColor> SystemColorByName(TextView name) {
    const Text wanted = WithoutBlanks(name);
    for (const SystemColor& color : systemColors)
        if (EqualNoCase(WithoutBlanks(color.name), wanted)) return color.color;
    return std::nullopt;
}

std::span<const OleColor, paletteCells> Palette() { return palette; }

}  // namespace qvx::host::designer
