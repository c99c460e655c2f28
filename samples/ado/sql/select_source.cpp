#include "samples/ado/sql/select_source.h"

#include <algorithm>

#include "host/form_value.h"

namespace qvx::ado {

namespace {

using host::SameName;

struct Token {
    enum class Kind { word, name, text, sign, end };
    Kind kind = Kind::end;
    Text content;           // of a name or a text without its quotes
    std::size_t begin = 0;  // in the statement
    std::size_t end = 0;

    bool Is(const char16_t* word) const { return kind == Kind::word && SameName(content, word); }
    bool IsSign(char16_t sign) const { return kind == Kind::sign && content[0] == sign; }
    bool IsName() const { return kind == Kind::word || kind == Kind::name; }
};

using Tokens = std::vector<Token>;

bool BelongsToWord(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_' || c == u'$' ||
           c >= 0x80;
}

// Returns the position after the comment that begins at `at`, or `at` where none begins.
std::size_t AfterComment(TextView sql, std::size_t at) {
    const TextView rest = sql.substr(at);
    if (rest.starts_with(u"--")) return std::min(sql.find(u'\n', at), sql.size());
    if (!rest.starts_with(u"/*")) return at;
    const std::size_t end = sql.find(u"*/", at + 2);
    return end == TextView::npos ? sql.size() : end + 2;
}

// Reads a quoted name or text; false if its quote is never closed.
bool ReadQuoted(TextView sql, Token& token) {
    const char16_t open = sql[token.begin];
    const char16_t close = open == u'[' ? u']' : open;
    token.kind = open == u'\'' ? Token::Kind::text : Token::Kind::name;
    for (std::size_t at = token.begin + 1; at < sql.size(); ++at) {
        if (sql[at] == close) {
            const bool doubled = close != u']' && at + 1 < sql.size() && sql[at + 1] == close;
            if (!doubled) {
                token.end = at + 1;
                return true;
            }
            ++at;
        }
        token.content += sql[at];
    }
    return false;
}

// Returns the tokens and one of the kind `end`; nothing where a quote is never closed.
Tokens Split(TextView sql) {
    Tokens tokens;
    for (std::size_t at = 0;;) {
        while (at < sql.size() && (sql[at] <= u' ' || AfterComment(sql, at) != at))
            at = std::max(at + 1, AfterComment(sql, at));
        Token token;
        token.begin = token.end = std::min(at, sql.size());
        if (at >= sql.size()) {
            tokens.push_back(token);
            return tokens;
        }
        if (TextView(u"'\"`[").find(sql[at]) != TextView::npos) {
            if (!ReadQuoted(sql, token)) return {};
        } else {
            token.kind = BelongsToWord(sql[at]) ? Token::Kind::word : Token::Kind::sign;
            do ++token.end;
            while (token.kind == Token::Kind::word && token.end < sql.size() && BelongsToWord(sql[token.end]));
            token.content = sql.substr(at, token.end - at);
        }
        at = token.end;
        tokens.push_back(std::move(token));
    }
}

template <std::size_t count>
bool IsOneOf(const Token& token, const char16_t* const (&words)[count]) {
    return std::any_of(std::begin(words), std::end(words), [&](const char16_t* word) { return token.Is(word); });
}

// Words that are values by themselves, and functions that make one record out of many.
constexpr const char16_t* constants[] = {u"null",         u"true",         u"false",
                                         u"current_date", u"current_time", u"current_timestamp"};
constexpr const char16_t* aggregates[] = {u"count",        u"sum",        u"total",           u"avg", u"min", u"max",
                                          u"group_concat", u"string_agg", u"json_group_array"};
// What may follow the table, and what after that makes other records of the table's.
constexpr const char16_t* clauses[] = {u"where", u"order", u"limit", u"offset"};
constexpr const char16_t* combining[] = {u"group", u"having", u"union", u"intersect", u"except", u"window", u"join"};

class Reader {
  public:
    Reader(TextView sql, Tokens tokens) : sql_(sql), tokens_(std::move(tokens)) {}

    std::optional<SelectSource> Read(const std::vector<Text>& fieldNames) {
        if (tokens_.empty() || !Take(u"select") || Here().Is(u"distinct")) return std::nullopt;
        Take(u"all");
        if (!ReadItems() || !ReadTable() || !EndsAsRecords()) return std::nullopt;
        if (!NameColumns(fieldNames)) return std::nullopt;
        return source_;
    }

  private:
    const Token& Here() const { return tokens_[at_]; }
    const Token& Next(std::size_t by) const { return tokens_[std::min(at_ + by, tokens_.size() - 1)]; }
    bool Take(const char16_t* word) {
        const bool there = Here().Is(word);
        if (there) ++at_;
        return there;
    }
    Text Written(std::size_t from, std::size_t to) const {
        const std::size_t begin = tokens_[from].begin;
        return Text(sql_.substr(begin, tokens_[to - 1].end - begin));
    }

    // What is selected, up to and including "from".
    bool ReadItems() {
        const std::size_t first = at_;
        std::size_t begin = at_;
        int depth = 0;
        int nested = 0;  // the depth of a select inside, whose aggregates are its own
        for (; Here().kind != Token::Kind::end; ++at_) {
            if (Here().IsSign(u'(') && ++depth > 0 && nested == 0 && Next(1).Is(u"select")) nested = depth;
            if (Here().IsSign(u')') && --depth < nested) nested = 0;
            if (nested == 0 && IsOneOf(Here(), aggregates) && Next(1).IsSign(u'(')) return false;
            const bool ends = depth == 0 && (Here().Is(u"from") || Here().IsSign(u','));
            if (!ends) continue;
            if (at_ == begin) return false;
            AddItem(begin, at_);
            if (Here().Is(u"from")) {
                source_.items = Written(first, at_++);
                return true;
            }
            begin = at_ + 1;
        }
        return false;
    }

    // A column, "*" for all columns, or nothing for what is computed.
    void AddItem(std::size_t begin, std::size_t end) {
        std::size_t last = begin;
        while (last + 2 < end && tokens_[last].IsName() && tokens_[last + 1].IsSign(u'.')) last += 2;
        const Token& token = tokens_[last];
        std::size_t rest = last + 1;
        if (token.IsSign(u'*') && rest == end) {
            items_.emplace_back(u"*");
            return;
        }
        if (rest < end && tokens_[rest].Is(u"as")) ++rest;
        // A text right after a word is one of bytes, x'00'.
        const bool aliased =
            rest + 1 == end && tokens_[rest].kind != Token::Kind::sign && tokens_[rest].begin > tokens_[rest - 1].end;
        const bool constant = last == begin && IsOneOf(token, constants);
        const bool digits = token.kind == Token::Kind::word && token.content[0] >= u'0' && token.content[0] <= u'9';
        const bool column = token.IsName() && !constant && !digits && (rest == end || aliased);
        items_.push_back(column ? QuotedName(token.content) : Text());
    }

    bool ReadTable() {
        const std::size_t first = at_;
        if (!Here().IsName()) return false;
        source_.table = QuotedName(Here().content);
        ++at_;
        if (Here().IsSign(u'.') && Next(1).IsName()) {
            source_.table += u'.' + QuotedName(Next(1).content);
            at_ += 2;
        }
        if (Take(u"as") || (Here().IsName() && !IsOneOf(Here(), clauses))) {
            if (!Here().IsName() || IsOneOf(Here(), combining)) return false;
            ++at_;
        }
        source_.from = Written(first, at_);
        return true;
    }

    bool EndsAsRecords() {
        if (Here().IsSign(u';')) return Next(1).kind == Token::Kind::end;
        if (Here().kind != Token::Kind::end && !IsOneOf(Here(), clauses)) return false;
        int depth = 0;
        for (; Here().kind != Token::Kind::end; ++at_) {
            if (Here().IsSign(u'(')) ++depth;
            if (Here().IsSign(u')')) --depth;
            if (depth == 0 && IsOneOf(Here(), combining)) return false;
            if (Here().IsSign(u';')) return Next(1).kind == Token::Kind::end;
        }
        return true;
    }

    // The columns of "*" are named as the fields are.
    bool NameColumns(const std::vector<Text>& fieldNames) {
        const auto stars = static_cast<std::size_t>(std::count(items_.begin(), items_.end(), u"*"));
        const std::size_t others = items_.size() - stars;
        if (stars > 1 || fieldNames.size() < others || (stars == 0 && fieldNames.size() != others)) return false;
        for (const Text& item : items_) {
            if (item != u"*") {
                source_.columns.push_back(item);
                continue;
            }
            for (std::size_t left = fieldNames.size() - others; left > 0; --left)
                source_.columns.push_back(QuotedName(fieldNames[source_.columns.size()]));
        }
        return std::any_of(source_.columns.begin(), source_.columns.end(),
                           [](const Text& name) { return !name.empty(); });
    }

    TextView sql_;
    Tokens tokens_;
    std::size_t at_ = 0;
    std::vector<Text> items_;
    SelectSource source_;
};

}  // namespace

std::optional<SelectSource> ReadSelect(TextView sql, const std::vector<Text>& fieldNames) {
    return Reader(sql, Split(sql)).Read(fieldNames);
}

Text QuotedName(TextView name) {
    Text quoted(u"\"");
    for (const char16_t c : name) quoted.append(c == u'"' ? 2 : 1, c);
    return quoted + u'"';
}

}  // namespace qvx::ado
