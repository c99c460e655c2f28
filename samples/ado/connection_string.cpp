#include "samples/ado/connection_string.h"

#include "host/form_value.h"

namespace qvx::ado {

namespace {

TextView Trimmed(TextView text) {
    const auto first = text.find_first_not_of(u" \t");
    if (first == TextView::npos) return {};
    return text.substr(first, text.find_last_not_of(u" \t") - first + 1);
}

// From behind the "=" to the ";" that ends the value, or the end; `at` is left behind that ";".
Text TakeValue(TextView text, std::size_t& at) {
    while (at < text.size() && text[at] == u' ') ++at;
    Text value;
    if (at < text.size() && text[at] == u'{') {
        for (++at; at < text.size(); ++at) {
            if (text[at] == u'}') {
                if (at + 1 == text.size() || text[at + 1] != u'}') break;
                ++at;
            }
            value += text[at];
        }
        at = std::min(text.find(u';', at), text.size());
    } else {
        const auto end = std::min(text.find(u';', at), text.size());
        value = Trimmed(text.substr(at, end - at));
        at = end;
    }
    if (at < text.size()) ++at;
    return value;
}

}  // namespace

ConnectionSettings ParseConnectionString(TextView text) {
    ConnectionSettings settings;
    for (std::size_t at = 0; at < text.size();) {
        const auto sign = text.find_first_of(u"=;", at);
        if (sign == TextView::npos) break;
        const TextView key = Trimmed(text.substr(at, sign - at));
        at = sign + 1;
        if (text[sign] == u';') continue;
        Text value = TakeValue(text, at);
        if (!key.empty()) settings.emplace_back(key, std::move(value));
    }
    return settings;
}

Text WriteConnectionString(const ConnectionSettings& settings) {
    Text text;
    for (const auto& [key, value] : settings) {
        text += key + u"=";
        if (host::SameName(key, u"Driver") || value.find_first_of(u";{}") != Text::npos) {
            text += u"{";
            for (const char16_t c : value) text.append(c == u'}' ? 2 : 1, c);
            text += u"}";
        } else {
            text += value;
        }
        text += u";";
    }
    return text;
}

}  // namespace qvx::ado
