#include "host/form_look.h"

#include "host/form_font.h"

namespace qvx::host {

namespace {

constexpr int defaultWidth = 4800;  // twips
constexpr int defaultHeight = 3600;

}  // namespace

FormLook ReadLook(const Block& form) {
    FormLook look;
    look.caption = form.TextOf(u"Caption", form.name);
    look.tag = form.TextOf(u"Tag");
    look.backColor = static_cast<OleColor>(form.IntOf(u"BackColor", static_cast<std::int32_t>(colors::buttonFace)));
    look.foreColor = static_cast<OleColor>(form.IntOf(u"ForeColor", static_cast<std::int32_t>(colors::buttonText)));
    look.clientWidth = form.IntOf(u"ClientWidth", form.IntOf(u"ScaleWidth", defaultWidth));
    look.clientHeight = form.IntOf(u"ClientHeight", form.IntOf(u"ScaleHeight", defaultHeight));
    look.borderStyle = form.IntOf(u"BorderStyle", look.borderStyle);
    look.minButton = form.BoolOf(u"MinButton", true);
    look.maxButton = form.BoolOf(u"MaxButton", true);
    const Block* font = form.FindGroup(u"Font");
    look.font = font ? ReadFont(*font, DefaultFont()) : DefaultFont();
    return look;
}

SavedProperties SaveLook(const FormLook& look) {
    SavedProperties saved;
    saved.Add(u"Caption", look.caption);
    saved.Add(u"ClientHeight", std::int32_t{look.clientHeight});
    saved.Add(u"ClientWidth", std::int32_t{look.clientWidth});
    if (look.backColor != colors::buttonFace) saved.Add(u"BackColor", static_cast<std::int32_t>(look.backColor));
    if (look.foreColor != colors::buttonText) saved.Add(u"ForeColor", static_cast<std::int32_t>(look.foreColor));
    if (!look.tag.empty()) saved.Add(u"Tag", look.tag);
    if (look.borderStyle != 2) saved.Add(u"BorderStyle", std::int32_t{look.borderStyle});
    if (!look.minButton) saved.Add(u"MinButton", false);
    if (!look.maxButton) saved.Add(u"MaxButton", false);
    if (!(look.font == DefaultFont())) saved.AddGroup(u"Font", SaveFont(look.font));
    return saved;
}

const std::vector<Text>& LookProperties() {
    static const std::vector<Text> known = {u"Caption",    u"ClientHeight", u"ClientWidth", u"ScaleHeight",
                                            u"ScaleWidth", u"BackColor",    u"ForeColor",   u"Tag",
                                            u"Font",       u"BorderStyle",  u"MinButton",   u"MaxButton"};
    return known;
}

}  // namespace qvx::host
