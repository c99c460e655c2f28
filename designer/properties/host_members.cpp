#include "designer/properties/host_members.h"

#include <array>
#include <initializer_list>

#include "host/form_value.h"

namespace qvx::host::designer {

namespace {

enum class Choices { none, alignment, backStyle, border, formBorder, frameBorder, scrollBars };

struct HostMember {
    TextView name;
    PropertyKind kind;
    TextView help;
    Choices choices = Choices::none;
    bool single = false;
    bool optional = false;
};

constexpr HostMember members[] = {
    {u"Name", PropertyKind::text, u"The name by which scripts know the object.", Choices::none, true},
    {u"Index", PropertyKind::integer, u"The number of the control in its control array; empty when it is in none.",
     Choices::none, true, true},
    {u"Left", PropertyKind::integer, u"The distance from the left edge of what the control stands in, in twips."},
    {u"Top", PropertyKind::integer, u"The distance from the top edge of what the control stands in, in twips."},
    {u"Width", PropertyKind::integer, u"The width in twips."},
    {u"Height", PropertyKind::integer, u"The height in twips."},
    {u"ClientWidth", PropertyKind::integer, u"The width of the form's inside in twips."},
    {u"ClientHeight", PropertyKind::integer, u"The height of the form's inside in twips."},
    {u"ScaleWidth", PropertyKind::integer, u"The width of the form's inside in twips."},
    {u"ScaleHeight", PropertyKind::integer, u"The height of the form's inside in twips."},
    {u"TabIndex", PropertyKind::integer, u"The place of the control in the order in which Tab goes."},
    {u"TabStop", PropertyKind::boolean, u"Whether Tab stops at the control."},
    {u"Visible", PropertyKind::boolean, u"Whether the object is seen."},
    {u"Enabled", PropertyKind::boolean, u"Whether the object takes input."},
    {u"Tag", PropertyKind::text, u"Any text; the host makes no use of it."},
    {u"ToolTipText", PropertyKind::text, u"The text that is shown while the mouse rests over the control."},
    {u"Default", PropertyKind::boolean, u"Whether Enter presses the button."},
    {u"Cancel", PropertyKind::boolean, u"Whether Escape presses the button."},
    {u"Caption", PropertyKind::text, u"The text of the object; the character after an & is its access key."},
    {u"Text", PropertyKind::text, u"The text in the box."},
    {u"BackColor", PropertyKind::color, u"The colour of the background."},
    {u"ForeColor", PropertyKind::color, u"The colour of the text."},
    {u"Font", PropertyKind::font, u"The font of the text."},
    {u"Alignment", PropertyKind::enumeration, u"The side on which the text lies.", Choices::alignment},
    {u"BackStyle", PropertyKind::enumeration, u"Whether the background is filled with its colour.", Choices::backStyle},
    {u"BorderStyle", PropertyKind::enumeration, u"The line around the object.", Choices::border},
    {u"MultiLine", PropertyKind::boolean, u"Whether the text may have several lines."},
    {u"ScrollBars", PropertyKind::enumeration, u"The scroll bars of a box with several lines.", Choices::scrollBars},
    {u"Locked", PropertyKind::boolean, u"Whether the user can only read the text."},
    {u"MaxLength", PropertyKind::integer, u"How many characters the user can type; 0 for as many as fit."},
    {u"PasswordChar", PropertyKind::text, u"The character that is shown in place of each typed one."},
    {u"MinButton", PropertyKind::boolean, u"Whether the form has a button that minimizes it."},
    {u"MaxButton", PropertyKind::boolean, u"Whether the form has a button that maximizes it."},
};

std::vector<PropertyChoice> Numbered(std::initializer_list<TextView> names) {
    std::vector<PropertyChoice> choices;
    for (const TextView name : names) choices.push_back({Text(name), static_cast<std::int32_t>(choices.size())});
    return choices;
}

std::vector<PropertyChoice> ChoicesFor(Choices choices) {
    switch (choices) {
        case Choices::alignment:
            return Numbered({u"Left", u"Right", u"Center"});
        case Choices::backStyle:
            return Numbered({u"Transparent", u"Opaque"});
        case Choices::border:
            return Numbered({u"None", u"Fixed Single"});
        case Choices::formBorder:
            return Numbered({u"None", u"Fixed Single", u"Sizable", u"Fixed Dialog"});
        case Choices::frameBorder:
            return Numbered({u"None", u"Fixed Single", u"Sunken"});
        case Choices::scrollBars:
            return Numbered({u"None", u"Horizontal", u"Vertical", u"Both"});
        case Choices::none:
            break;
    }
    return {};
}

Choices ChoicesOfKind(Choices choices, HostObjectKind kind) {
    if (choices != Choices::border || kind == HostObjectKind::control) return choices;
    return kind == HostObjectKind::form ? Choices::formBorder : Choices::frameBorder;
}

}  // namespace

std::optional<PropertyInfo> DescribeHostMember(TextView name, HostObjectKind kind) {
    for (const HostMember& member : members) {
        if (!SameName(member.name, name)) continue;
        PropertyInfo info;
        info.name = member.name;
        info.kind = member.kind;
        info.help = member.help;
        info.single = member.single;
        info.optional = member.optional;
        info.category = CategoryOf(member.name, member.kind);
        info.choices = ChoicesFor(ChoicesOfKind(member.choices, kind));
        return info;
    }
    return std::nullopt;
}

}  // namespace qvx::host::designer
