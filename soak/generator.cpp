#include "soak/generator.h"

#include <array>
#include <string_view>

namespace qvx::soak {

namespace {

using Names = std::string_view;

// Texts to enter: words that some list contains, valid and invalid numbers, dates, and texts that are too long, too
// large or foreign. None of them names a folder or a drive.
constexpr std::array<Names, 56> entries{
    "Desk lamp",
    "Binder A4",
    "Shipping",
    "Paper",
    "Copy",
    "d",
    "B",
    "Miller & Sons",
    "x",
    "0",
    "1",
    "5",
    "12",
    "45%",
    "12abc",
    "99999",
    "9999",
    "-1",
    "-0.5",
    ".5",
    "5.",
    "1.25",
    "3,50",
    "1,234.56",
    "1e9",
    "1e308",
    "--3",
    "1.2.3",
    "12-3-2024",
    "3-2024",
    "31/2/2023",
    "29.2.2024",
    "2024-12-31",
    "1/1/1",
    "99/99/9999",
    "0.00",
    "100",
    "19.999",
    "2147483648",
    "99999999999999",
    "(12)",
    "$5",
    "+7",
    " ",
    "a b c",
    "O'Brien",
    "say \"hi\"",
    "50 % off",
    "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F",
    "\xCE\xA9",
    "#Name",
    "&File",
    "a;b;c",
    "Qvx",
    "123456789012345678901234567890",
    "The quick brown fox jumps over the lazy dog",
};

constexpr std::array<Names, 30> wayKeys{
    "Tab",       "Tab",        "Tab",         "Return",    "Return",     "Return",    "Down",      "Down",
    "Up",        "Up",         "Left",        "Right",     "Home",       "End",       "Prior",     "Next",
    "ctrl+Home", "ctrl+End",   "shift+Tab",   "ctrl+Left", "ctrl+Right", "ctrl+Up",   "ctrl+Down", "shift+Down",
    "shift+Up",  "shift+Left", "shift+Right", "shift+End", "ctrl+Prior", "ctrl+Next",
};
constexpr std::array<Names, 16> changeKeys{
    "Insert", "Insert", "Delete", "Delete",       "BackSpace",    "BackSpace",   "Escape",      "Escape",
    "F2",     "F2",     "space",  "shift+Insert", "shift+Delete", "ctrl+Insert", "ctrl+Delete", "F4",
};
constexpr std::array<Names, 20> commandKeys{
    "ctrl+z", "ctrl+z", "ctrl+z", "ctrl+y", "ctrl+c", "ctrl+c", "ctrl+v",       "ctrl+v", "ctrl+x",       "ctrl+a",
    "ctrl+s", "ctrl+d", "ctrl+j", "ctrl+k", "ctrl+e", "ctrl+t", "ctrl+shift+v", "ctrl+n", "ctrl+shift+z", "ctrl+F4",
};
constexpr std::array<Names, 22> strangeKeys{
    "F1",    "F3",       "F5",         "F6",         "F7",           "F8",          "F9",        "F10",
    "F11",   "F12",      "shift+F10",  "Menu",       "alt+Down",     "alt+Up",      "alt+space", "plus",
    "minus", "shift+F4", "ctrl+space", "alt+Return", "shift+Escape", "shift+space",
};
constexpr std::array<Names, 14> answerKeys{
    "Return", "Return", "Return", "Escape", "Escape", "alt+y", "alt+n",
    "space",  "y",      "n",      "Tab",    "alt+F4", "alt+c", "alt+o",
};
constexpr std::array<Names, 12> menuKeys{
    "Down", "Down", "Down", "Up", "Right", "Left", "Return", "Return", "Escape", "Home", "End", "n",
};

// Whether the active window expects an answer.
bool Asks(const Scene& scene) { return !scene.main && !scene.run; }

Action Press(Names name) { return {.deed = Deed::key, .text = std::string(name)}; }
Action At(Deed deed, Point place) { return {.deed = deed, .at = place}; }

}  // namespace

int Generator::Below(int limit) {
    return limit <= 0 ? 0 : static_cast<int>(random_() % static_cast<std::uint64_t>(limit));
}

Action Generator::Next(const Scene& scene) {
    Action action = Choose(scene);
    // Not all of the system's own file dialogs survive a name that is longer than any path may be.
    constexpr std::size_t longestAnswer = 12;
    if (action.deed == Deed::type && Asks(scene) && action.text.size() > longestAnswer)
        action.text.resize(longestAnswer);
    return action;
}

Action Generator::Choose(const Scene& scene) {
    if (scene.away) return {.deed = Chance(80) ? Deed::back : Deed::restore};
    if (scene.minimized) return {.deed = Chance(70) ? Deed::restore : Deed::back};
    for (const Part& part : scene.parts) {
        if (part.kind == Kind::popup && Chance(75)) return AtMenu(scene);
    }
    // A window that expects an answer gets one in the end, even if the usual answers have no effect.
    if (Asks(scene) && (Chance(30) || (scene.answers > 40 && Chance(80)))) return Answer(scene);
    // The form has been running in the designer for long enough.
    if (scene.run && scene.answers > 80 && Chance(10)) return Press("alt+F4");
    if (planned_.empty() && Chance(15)) Plan(scene);
    if (!planned_.empty()) {
        Action action = std::move(planned_.front());
        planned_.pop_front();
        return action;
    }
    const int what = Below(1000);
    if (what < 580) return Keys(scene);
    if (what < 970) return Mouse(scene);
    return Window(scene);
}

void Generator::Plan(const Scene& scene) {
    const auto press = [&](Names name, int times = 1) {
        for (int i = 0; i < times; ++i) planned_.push_back(Press(name));
    };
    const auto enter = [&](Names how) {
        planned_.push_back({.deed = Deed::type, .text = Entry()});
        press(how);
    };
    const auto find = [&](Kind kind) {
        std::vector<Part> found;
        for (const Part& part : scene.parts) {
            if (part.kind == kind) found.push_back(part);
        }
        return found.empty() ? Part{Kind::form, {0, 0, scene.size.width, scene.size.height}} : OneOf(found);
    };
    const Part canvas = find(Kind::canvas);
    const int way = Below(canvas.kind == Kind::canvas ? 10 : 5);
    switch (way) {
        case 0:
        case 1: {
            // Enters cell after cell.
            const Names next = Chance(50) ? "Tab" : "Return";
            for (int i = Below(4); i >= 0; --i) enter(next);
            break;
        }
        case 2:
            // Inserts and deletes rows, and undoes it.
            press(OneOf(changeKeys), 1 + Below(3));
            press("ctrl+z", 1 + Below(4));
            press("ctrl+y", Below(4));
            break;
        case 3:
            // Selects a block, copies it and pastes it elsewhere.
            press(Chance(50) ? "shift+Down" : "shift+Right", 1 + Below(3));
            press(Chance(70) ? "ctrl+c" : "ctrl+x");
            press(OneOf(wayKeys), 1 + Below(2));
            press("ctrl+v", 1 + Below(2));
            press("ctrl+z", Below(3));
            break;
        case 4:
            planned_.push_back(At(Deed::click, PlaceIn(find(Kind::grid))));
            enter(Chance(50) ? "Tab" : "Escape");
            press("ctrl+z", Below(3));
            break;
        case 5:
            // Changes a property of the selection.
            press("Escape", Below(3));
            press("F4");
            press(OneOf(wayKeys), Below(6));
            enter("Return");
            press("ctrl+z", Below(4));
            press("ctrl+y", Below(3));
            break;
        case 6: {
            // Places a new control.
            planned_.push_back(At(Deed::click, PlaceIn(find(Kind::palette))));
            const Point from = PlaceIn(canvas);
            planned_.push_back({.deed = Deed::drag, .at = from, .to = {from.x + Below(200), from.y + Below(120)}});
            press("ctrl+z", Below(2));
            break;
        }
        case 7:
            press(Chance(50) ? "ctrl+a" : "Tab");
            press(OneOf(std::array<Names, 6>{"Delete", "ctrl+x", "ctrl+c", "ctrl+d", "ctrl+j", "Right"}));
            press(Chance(50) ? "ctrl+v" : "ctrl+shift+v", Below(2));
            press("ctrl+z", Below(4));
            press("ctrl+y", Below(3));
            break;
        case 8:
            // Runs the designed form, which is then used like any other.
            press("F5");
            break;
        default:
            // Clicks on a row of the property list and enters another value.
            planned_.push_back(At(Deed::click, PlaceIn(find(Kind::list))));
            if (Chance(40)) planned_.push_back(At(Deed::doubleClick, PlaceIn(find(Kind::list))));
            enter("Return");
            press("ctrl+z", Below(3));
            break;
    }
}

Action Generator::Answer(const Scene& scene) {
    if (scene.answers > 60 && Chance(40)) return Press("alt+F4");
    if (scene.answers > 30 && Chance(50)) return Press("Escape");
    if (Chance(60)) return Press(OneOf(answerKeys));
    std::vector<Part> buttons;
    for (const Part& part : scene.parts) {
        if (part.kind == Kind::button) buttons.push_back(part);
    }
    return buttons.empty() ? Press("Return") : At(Deed::click, PlaceIn(OneOf(buttons)));
}

Action Generator::AtMenu(const Scene& scene) {
    if (Chance(70)) return Press(OneOf(menuKeys));
    std::vector<Part> menus;
    for (const Part& part : scene.parts) {
        if (part.kind == Kind::popup) menus.push_back(part);
    }
    return At(Chance(70) ? Deed::click : Deed::move, PlaceIn(menus.back()));
}

std::string Generator::Entry() {
    if (Chance(60)) return std::string(OneOf(entries));
    std::string digits;
    for (int i = Chance(5) ? 400 : Below(7); i >= 0; --i) digits += static_cast<char>('0' + Below(10));
    if (Chance(30)) digits.insert(static_cast<std::size_t>(Below(static_cast<int>(digits.size()) + 1)), 1, '.');
    return digits;
}

Action Generator::Keys(const Scene& scene) {
    const bool writes = scene.focus == Kind::grid || scene.focus == Kind::edit || scene.focus == Kind::list;
    const int what = Below(100);
    if (what < (writes ? 30 : 8)) return {.deed = Deed::type, .text = Entry()};
    if (what < 62) return Press(OneOf(wayKeys));
    if (what < 77) return Press(OneOf(changeKeys));
    if (what < 90) return Press(OneOf(commandKeys));
    if (what < 95) return Press(OneOf(strangeKeys));
    if (what < 99 || Chance(70)) return Press("alt+" + std::string(1, static_cast<char>('a' + Below(26))));
    return Press("alt+F4");
}

// Prefers the edges, where headers, borders and scroll bars are.
Point Generator::PlaceIn(const Part& part) {
    const Rect& area = part.area;
    const auto along = [&](int from, int to) {
        const int length = to - from;
        if (length <= 1) return from;
        if (Chance(12)) return from + Below(std::min(18, length));
        if (Chance(12)) return to - 1 - Below(std::min(18, length));
        return from + Below(length);
    };
    return {along(area.left, area.right), along(area.top, area.bottom)};
}

Action Generator::Mouse(const Scene& scene) {
    const Part whole{Kind::form, {0, 0, scene.size.width, scene.size.height}};
    const Part part = scene.parts.empty() || Chance(8) ? whole : OneOf(scene.parts);
    const Point place = PlaceIn(part);
    const int what = Below(100);
    if (part.kind == Kind::button && what < 60) return At(Deed::click, place);
    if (what < 40) return At(Deed::click, place);
    if (what < 52) return At(Deed::doubleClick, place);
    if (what < 60) return At(Deed::rightClick, place);
    if (what < 66) return At(Deed::move, place);
    if (what < 76) {
        static constexpr std::array<int, 8> notches{-1, 1, -1, 1, -3, 3, -40, 40};
        return {.deed = Deed::wheel, .count = OneOf(notches)};
    }
    Action drag{.deed = Deed::drag, .at = place};
    const int way = Below(100);
    if (way < 40) {
        drag.to = {place.x + Below(81) - 40, place.y + (Chance(50) ? 0 : Below(61) - 30)};
    } else if (way < 85) {
        drag.to = PlaceIn(Chance(70) || scene.parts.empty() ? part : OneOf(scene.parts));
    } else {
        drag.to = {Below(scene.size.width + 200) - 100, Below(scene.size.height + 200) - 100};
    }
    if (Chance(8)) drag.text = Chance(60) ? "Escape" : OneOf(changeKeys);
    return drag;
}

Action Generator::Window(const Scene& scene) {
    const int what = Below(100);
    if (what < 12) return {.deed = Deed::minimize};
    if (what < 22) return {.deed = Deed::maximize};
    if (what < 32) return {.deed = Deed::restore};
    if (what < 50) return {.deed = Deed::leave};
    Action size{.deed = Deed::size};
    const int way = Below(10);
    if (way < 2) {
        size.to = {Below(60), Below(60)};
    } else if (way < 3) {
        size.to = {3000 + Below(3000), 2000 + Below(2000)};
    } else if (way < 6) {
        size.to = {std::max(40, scene.size.width + Below(201) - 100),
                   std::max(40, scene.size.height + Below(201) - 100)};
    } else {
        size.to = {500 + Below(400), 300 + Below(400)};
    }
    return size;
}

}  // namespace qvx::soak
