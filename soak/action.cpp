#include "soak/action.h"

#include <charconv>
#include <utility>

#include "common/keys.h"

namespace qvx::soak {

namespace {

// The kind of arguments after an action's word in its line.
enum class Shape { none, text, place, places, count, extent };

struct Word {
    std::string_view word;
    Deed deed;
    Shape shape;
};

constexpr Word words[] = {
    {"key", Deed::key, Shape::text},
    {"type", Deed::type, Shape::text},
    {"move", Deed::move, Shape::place},
    {"click", Deed::click, Shape::place},
    {"rightclick", Deed::rightClick, Shape::place},
    {"dblclick", Deed::doubleClick, Shape::place},
    {"drag", Deed::drag, Shape::places},
    {"wheel", Deed::wheel, Shape::count},
    {"size", Deed::size, Shape::extent},
    {"minimize", Deed::minimize, Shape::none},
    {"maximize", Deed::maximize, Shape::none},
    {"restore", Deed::restore, Shape::none},
    {"leave", Deed::leave, Shape::none},
    {"back", Deed::back, Shape::none},
};

constexpr std::pair<std::string_view, int> namedKeys[] = {
    {"Tab", keys::tab},
    {"Return", keys::enter},
    {"Escape", keys::escape},
    {"BackSpace", keys::backspace},
    {"space", keys::space},
    {"Left", keys::left},
    {"Right", keys::right},
    {"Up", keys::up},
    {"Down", keys::down},
    {"Home", keys::home},
    {"End", keys::end},
    {"Prior", keys::pageUp},
    {"Next", keys::pageDown},
    {"Insert", keys::insert},
    {"Delete", keys::deleteKey},
    {"Menu", 93},
    {"plus", 107},
    {"minus", 109},
};

std::string_view TakeWord(std::string_view& rest) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return word;
}

bool TakeNumber(std::string_view& rest, int& number) {
    const std::string_view word = TakeWord(rest);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size();
}

bool TakePoint(std::string_view& rest, Point& point) { return TakeNumber(rest, point.x) && TakeNumber(rest, point.y); }

std::string PointText(Point point) { return " " + std::to_string(point.x) + " " + std::to_string(point.y); }

}  // namespace

std::string LineOf(const Action& action) {
    const Word& word = words[static_cast<std::size_t>(action.deed)];
    std::string line(word.word);
    switch (word.shape) {
        case Shape::none:
            break;
        case Shape::text:
            line += " " + action.text;
            break;
        case Shape::place:
            line += PointText(action.at);
            break;
        case Shape::places:
            line += PointText(action.at) + PointText(action.to);
            if (!action.text.empty()) line += " " + action.text;
            break;
        case Shape::count:
            line += " " + std::to_string(action.count);
            break;
        case Shape::extent:
            line += PointText(action.to);
            break;
    }
    return line;
}

std::optional<Action> ActionOf(std::string_view line) {
    std::string_view rest = line;
    const std::string_view name = TakeWord(rest);
    for (const Word& word : words) {
        if (word.word != name) continue;
        Action action{word.deed};
        bool good = true;
        switch (word.shape) {
            case Shape::none:
                break;
            case Shape::place:
                good = TakePoint(rest, action.at);
                break;
            case Shape::count:
                good = TakeNumber(rest, action.count);
                break;
            case Shape::extent:
                good = TakePoint(rest, action.to);
                break;
            case Shape::places:
                good = TakePoint(rest, action.at) && TakePoint(rest, action.to);
                [[fallthrough]];
            case Shape::text:
                action.text = rest;
                rest = {};
                break;
        }
        const bool namesKey = word.deed == Deed::key || (word.deed == Deed::drag && !action.text.empty());
        if (!good || !rest.empty() || (namesKey && !KeyOf(action.text))) return std::nullopt;
        return action;
    }
    return std::nullopt;
}

std::string TextOf(const Replay& replay, std::string_view remark) {
    std::string text;
    while (!remark.empty()) {
        const std::size_t end = std::min(remark.find('\n'), remark.size());
        text += "# " + std::string(remark.substr(0, end)) + "\n";
        remark.remove_prefix(std::min(end + 1, remark.size()));
    }
    text += "form " + replay.subject + "\n";
    if (replay.repeats != 1) text += "repeat " + std::to_string(replay.repeats) + "\n";
    for (const Action& action : replay.actions) text += LineOf(action) + "\n";
    return text;
}

std::optional<Replay> ReplayOf(std::string_view text, int& wrongLine) {
    Replay replay;
    for (wrongLine = 1; !text.empty(); ++wrongLine) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.starts_with('#')) continue;
        if (line.starts_with("form ")) {
            replay.subject = line.substr(5);
        } else if (line.starts_with("repeat ")) {
            line.remove_prefix(7);
            if (!TakeNumber(line, replay.repeats) || replay.repeats < 1) return std::nullopt;
        } else if (auto action = ActionOf(line)) {
            replay.actions.push_back(std::move(*action));
        } else {
            return std::nullopt;
        }
    }
    if (replay.subject.empty()) return std::nullopt;
    return replay;
}

std::optional<KeyPress> KeyOf(std::string_view name) {
    KeyPress press;
    for (const auto& [prefix, held] : {std::pair<std::string_view, bool*>{"ctrl+", &press.control},
                                       {"shift+", &press.shift},
                                       {"alt+", &press.alt}}) {
        if (!name.starts_with(prefix)) continue;
        *held = true;
        name.remove_prefix(prefix.size());
    }
    for (const auto& [named, key] : namedKeys) {
        if (named == name) press.key = key;
    }
    // Letters and digits have the numbers of their upper-case characters.
    constexpr std::string_view characters = "0123456789abcdefghijklmnopqrstuvwxyz";
    const std::size_t place = name.size() == 1 ? characters.find(name) : std::string_view::npos;
    if (place != std::string_view::npos) press.key = static_cast<int>(place) + (place < 10 ? 48 : 65 - 10);
    if (name.size() > 1 && name[0] == 'F') {
        std::string_view digits = name.substr(1);
        int number = 0;
        if (TakeNumber(digits, number) && number >= 1 && number <= 12) press.key = keys::f1 + number - 1;
    }
    if (press.key == 0) return std::nullopt;
    return press;
}

}  // namespace qvx::soak
