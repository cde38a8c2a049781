#include "host/mesh/json_reader.h"

#include <charconv>
#include <cmath>

namespace obsidra::host::mesh {

namespace {

// Deep enough for any header; shallow enough that malformed input cannot exhaust the stack.
constexpr int kMaxDepth = 64;
// Headers hold thousands of values; a file of millions is no header, and would cost gigabytes.
constexpr std::size_t kMaxValues = 2'000'000;

class Parser {
public:
    explicit Parser(std::string_view text) : m_text(text) {}

    std::optional<JsonValue> Document() {
        JsonValue value;
        if (!Value(value, 0)) return std::nullopt;
        SkipSpace();
        if (m_at != m_text.size()) return std::nullopt;
        return value;
    }

private:
    void SkipSpace() {
        while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\n' ||
                                        m_text[m_at] == '\r' || m_text[m_at] == '\t'))
            ++m_at;
    }
    bool Take(char c) {
        SkipSpace();
        if (m_at >= m_text.size() || m_text[m_at] != c) return false;
        ++m_at;
        return true;
    }
    bool Word(std::string_view word) {
        if (m_text.substr(m_at, word.size()) != word) return false;
        m_at += word.size();
        return true;
    }
    // A string from its opening quote; its text as written, escapes included.
    bool String(std::string* text) {
        if (!Take('"')) return false;
        const std::size_t start = m_at;
        while (m_at < m_text.size() && m_text[m_at] != '"') {
            if (static_cast<unsigned char>(m_text[m_at]) < 0x20) return false;
            m_at += m_text[m_at] == '\\' ? 2 : 1;
        }
        if (m_at >= m_text.size()) return false;
        if (text) text->assign(m_text.substr(start, m_at - start));
        ++m_at;
        return true;
    }
    bool Value(JsonValue& value, int depth) {
        if (depth > kMaxDepth || ++m_values > kMaxValues) return false;
        SkipSpace();
        if (m_at >= m_text.size()) return false;
        switch (m_text[m_at]) {
        case '{':
            ++m_at;
            value.kind = JsonValue::Kind::Object;
            if (Take('}')) return true;
            do {
                std::string key;
                if (!String(&key) || !Take(':')) return false;
                value.keys.push_back(std::move(key));
                if (!Value(value.items.emplace_back(), depth + 1)) return false;
            } while (Take(','));
            return Take('}');
        case '[':
            ++m_at;
            value.kind = JsonValue::Kind::Array;
            if (Take(']')) return true;
            do {
                if (!Value(value.items.emplace_back(), depth + 1)) return false;
            } while (Take(','));
            return Take(']');
        case '"':
            value.kind = JsonValue::Kind::String;
            return String(nullptr);
        case 't':
        case 'f':
            value.kind = JsonValue::Kind::Bool;
            value.number = m_text[m_at] == 't';
            return Word("true") || Word("false");
        case 'n':
            return Word("null");
        default: {
            value.kind = JsonValue::Kind::Number;
            const char* end = m_text.data() + m_text.size();
            const auto [next, error] = std::from_chars(m_text.data() + m_at, end, value.number);
            if (error != std::errc()) return false;
            m_at = static_cast<std::size_t>(next - m_text.data());
            return true;
        }
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_values = 0;
};

} // namespace

const JsonValue* JsonValue::Member(std::string_view key) const {
    if (kind != Kind::Object) return nullptr;
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (keys[i] == key) return &items[i];
    return nullptr;
}

const JsonValue* JsonValue::Item(const JsonValue* index) const {
    const std::optional<std::size_t> at = index ? index->Count() : std::nullopt;
    return kind == Kind::Array && at && *at < items.size() ? &items[*at] : nullptr;
}

std::optional<std::size_t> JsonValue::Count() const {
    if (kind != Kind::Number || !(number >= 0 && number < 1e15) || number != std::floor(number))
        return std::nullopt;
    return static_cast<std::size_t>(number);
}

std::optional<JsonValue> ParseJson(std::string_view text) {
    return Parser(text).Document();
}

} // namespace obsidra::host::mesh
