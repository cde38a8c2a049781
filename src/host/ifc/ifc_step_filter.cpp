#include "host/ifc/ifc_step_filter.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "text/text.h"

namespace obsidra::host::ifc {

namespace {

// The longest piece of a broken statement a warning quotes.
constexpr std::size_t kExcerpt = 60;

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsKeywordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// Walks STEP text: strings ('' inside one is a quote, which two toggles leave as they were) and
// comments hide semicolons, parentheses and references from the structure.
class Walker {
public:
    explicit Walker(std::string_view text, std::size_t at = 0) : m_text(text), m_at(at) {}

    bool AtEnd() const { return m_at >= m_text.size(); }
    std::size_t At() const { return m_at; }
    // The next character that is not in a string or a comment, or '\0' at the end; the text
    // between (strings, comments) is stepped over.
    char NextStructural() {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at++];
            if (c == '\'') {
                const std::size_t close = m_text.find('\'', m_at);
                m_at = close == std::string_view::npos ? m_text.size() : close + 1;
            } else if (c == '/' && m_at < m_text.size() && m_text[m_at] == '*') {
                const std::size_t close = m_text.find("*/", m_at + 1);
                m_at = close == std::string_view::npos ? m_text.size() : close + 2;
            } else {
                return c;
            }
        }
        return '\0';
    }

private:
    std::string_view m_text;
    std::size_t m_at;
};

std::optional<int> ReadId(std::string_view text, std::size_t& at) {
    int id = 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), id);
    if (error != std::errc() || id < 0) return std::nullopt;
    at = static_cast<std::size_t>(end - text.data());
    return id;
}

void SkipSpaces(std::string_view text, std::size_t& at) {
    while (at < text.size() && IsSpace(text[at]))
        ++at;
}

// Blanks and comments between statements.
void SkipBlanks(std::string_view text, std::size_t& at) {
    for (SkipSpaces(text, at); text.substr(at, 2) == "/*"; SkipSpaces(text, at)) {
        const std::size_t close = text.find("*/", at + 2);
        at = close == std::string_view::npos ? text.size() : close + 2;
    }
}

// A statement of a DATA section, without its semicolon: #id=KEYWORD(arguments) or a complex
// instance #id=(...), which is left to the reader.
struct Instance {
    bool readable = false;
    bool complex = false;
    int id = -1;
    std::string_view keyword;
    int arguments = 0;
};

Instance ReadInstance(std::string_view statement) {
    Instance instance;
    std::size_t at = 0;
    if (statement.empty() || statement[at++] != '#') return instance;
    const std::optional<int> id = ReadId(statement, at);
    if (!id) return instance;
    instance.id = *id;
    SkipSpaces(statement, at);
    if (at >= statement.size() || statement[at++] != '=') return instance;
    SkipSpaces(statement, at);
    if (at < statement.size() && statement[at] == '(') {
        instance.readable = instance.complex = true;
        return instance;
    }
    const std::size_t keyword = at;
    while (at < statement.size() && IsKeywordChar(statement[at]))
        ++at;
    instance.keyword = statement.substr(keyword, at - keyword);
    SkipSpaces(statement, at);
    if (instance.keyword.empty() || at >= statement.size() || statement[at] != '(') return instance;
    const std::size_t open = at;
    Walker walker(statement, open + 1);
    int depth = 1;
    int commas = 0;
    while (depth > 0) {
        const char c = walker.NextStructural();
        if (c == '\0') return instance;
        if (c == '(') ++depth;
        if (c == ')') --depth;
        if (c == ',' && depth == 1) ++commas;
    }
    if (!obsidra::text::Trim(statement.substr(walker.At())).empty()) return instance;
    const std::size_t close = walker.At() - 1;
    instance.arguments =
        obsidra::text::Trim(statement.substr(open + 1, close - open - 1)).empty() ? 0 : commas + 1;
    instance.readable = true;
    return instance;
}

struct Statement {
    std::size_t begin; // first character that is neither a blank nor in a comment
    std::size_t end;   // past the semicolon
    int line;
    Instance instance;
    bool skipped = false;
};

std::string LineText(const Statement& statement) {
    return "line " + std::to_string(statement.line) + ": ";
}

std::string Named(const Statement& statement) {
    return "#" + std::to_string(statement.instance.id) + "=" +
           std::string(statement.instance.keyword);
}

// Whether the reader can take the instance; if not, says why in warnings.
bool Acceptable(const Statement& statement, std::string_view text, int arguments,
                WarningTally& warnings) {
    const Instance& instance = statement.instance;
    if (!instance.readable) {
        std::string excerpt(
            obsidra::text::Trim(text.substr(statement.begin, statement.end - 1 - statement.begin)));
        if (excerpt.size() > kExcerpt) excerpt = excerpt.substr(0, kExcerpt) + "...";
        std::replace_if(excerpt.begin(), excerpt.end(), IsSpace, ' ');
        warnings.Add("unreadable",
                     LineText(statement) + "skipped, not an entity instance: " + excerpt);
        return false;
    }
    if (arguments == kUnknownEntity) {
        warnings.Add("unknown " + std::string(instance.keyword),
                     LineText(statement) + Named(statement) +
                         " skipped: an entity the reader does not know");
        return false;
    }
    if (arguments != kAnyArguments && arguments != instance.arguments) {
        warnings.Add("arguments " + std::string(instance.keyword),
                     LineText(statement) + Named(statement) +
                         " skipped: " + std::to_string(instance.arguments) +
                         " arguments where the entity takes " + std::to_string(arguments));
        return false;
    }
    return true;
}

// The statement with its references to skipped instances dropped; the first one dropped, or -1.
int DropReferences(std::string_view statement, const std::unordered_set<int>& skipped,
                   std::string& out) {
    int first = -1;
    int depth = 0;
    Walker walker(statement);
    std::size_t copied = 0;
    while (!walker.AtEnd()) {
        const char c = walker.NextStructural();
        if (c == '(') ++depth;
        if (c == ')') --depth;
        if (c != '#' || depth < 1) continue;
        const std::size_t hash = walker.At() - 1;
        std::size_t at = walker.At();
        const std::optional<int> id = ReadId(statement, at);
        if (!id || !skipped.contains(*id)) continue;
        if (first < 0) first = *id;
        out.append(statement.substr(copied, hash - copied));
        copied = at;
        if (depth == 1) {
            out += '$';
        } else {
            // An element of a list leaves it with one of the commas beside it.
            SkipSpaces(statement, at);
            if (at < statement.size() && statement[at] == ',') {
                copied = at + 1;
            } else {
                while (!out.empty() && IsSpace(out.back()))
                    out.pop_back();
                if (!out.empty() && out.back() == ',') out.pop_back();
            }
        }
        walker = Walker(statement, copied);
    }
    out.append(statement.substr(copied));
    return first;
}

struct KeywordHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};

} // namespace

void SkipUnreadableEntities(std::string& text, const ArgumentsOf& argumentsOf,
                            WarningTally& warnings) {
    std::unordered_map<std::string, int, KeywordHash, std::equal_to<>> known;
    auto argumentsFor = [&](std::string_view keyword) {
        if (const auto it = known.find(keyword); it != known.end()) return it->second;
        std::string upper(keyword);
        for (char& c : upper)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        return known.emplace(std::string(keyword), argumentsOf(upper)).first->second;
    };

    std::vector<Statement> statements;
    std::unordered_set<int> skipped;
    bool inData = false;
    int line = 1;
    std::size_t counted = 0;
    Walker walker(text);
    while (!walker.AtEnd()) {
        std::size_t begin = walker.At();
        SkipBlanks(text, begin);
        if (begin >= text.size()) break;
        walker = Walker(text, begin);
        char c;
        do
            c = walker.NextStructural();
        while (c != ';' && c != '\0');
        if (c == '\0') break; // a statement never ended: the reader may make of it what it can
        line +=
            static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                                        text.begin() + static_cast<std::ptrdiff_t>(begin), '\n'));
        counted = begin;
        const std::string_view body =
            obsidra::text::Trim(std::string_view(text).substr(begin, walker.At() - 1 - begin));
        if (!inData) {
            inData = body == "DATA" || (body.starts_with("DATA") && !IsKeywordChar(body[4]));
            continue;
        }
        if (body.empty()) continue; // a stray semicolon, which the reader passes over
        if (body == "ENDSEC") {
            inData = false;
            continue;
        }
        Statement statement{begin, walker.At(), line, ReadInstance(body)};
        if (!statement.instance.complex &&
            !Acceptable(statement, text,
                        statement.instance.readable ? argumentsFor(statement.instance.keyword)
                                                    : kUnknownEntity,
                        warnings)) {
            statement.skipped = true;
            if (statement.instance.id >= 0) skipped.insert(statement.instance.id);
        }
        statements.push_back(statement);
    }
    if (std::none_of(statements.begin(), statements.end(),
                     [](const Statement& s) { return s.skipped; }))
        return;

    std::string out;
    out.reserve(text.size());
    std::size_t copied = 0;
    for (const Statement& statement : statements) {
        out.append(text, copied, statement.begin - copied);
        copied = statement.end;
        const std::string_view body(text.data() + statement.begin, statement.end - statement.begin);
        if (statement.skipped) continue;
        if (statement.instance.complex || skipped.empty()) {
            out.append(body);
            continue;
        }
        if (const int lost = DropReferences(body, skipped, out); lost >= 0)
            warnings.Add("reference " + std::string(statement.instance.keyword),
                         LineText(statement) + Named(statement) +
                             " lost its reference to skipped #" + std::to_string(lost));
    }
    out.append(text, copied);
    text = std::move(out);
}

} // namespace obsidra::host::ifc
