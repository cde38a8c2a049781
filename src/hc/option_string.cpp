#include "hc/option_string.h"

#include "hc/text.h"

namespace hc {

namespace {

bool Balanced(std::string_view text) {
    int depth = 0;
    char quote = 0;
    for (char c : text) {
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'' || c == '`') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth < 0) {
            return false;
        }
    }
    return depth == 0 && quote == 0;
}

size_t FindOutsideQuotes(std::string_view text, char wanted) {
    char quote = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'' || c == '`') {
            quote = c;
        } else if (c == wanted) {
            return i;
        }
    }
    return std::string_view::npos;
}

} // namespace

bool OptionList::Parse(std::string_view text, OptionList& result) {
    result.m_options.clear();
    if (!Balanced(text)) return false;
    OptionList parsed;
    for (std::string_view item : SplitList(text, ',')) {
        if (item.empty()) continue;
        Option option;
        size_t equals = FindOutsideQuotes(item, '=');
        std::string_view name = item.substr(0, equals);
        if (equals != std::string_view::npos)
            option.value = std::string(Trim(item.substr(equals + 1)));
        option.name = CollapseBlanks(ToLower(name));
        if (option.name.starts_with("no ")) {
            option.negated = true;
            option.name.erase(0, 3);
        }
        if (option.name.empty() || option.name.find_first_of("()\"'`") != std::string::npos)
            return false;
        parsed.Set(std::move(option));
    }
    result = std::move(parsed);
    return true;
}

void OptionList::Set(Option option) {
    for (Option& mine : m_options) {
        if (mine.name == option.name) {
            mine = std::move(option);
            return;
        }
    }
    m_options.push_back(std::move(option));
}

void OptionList::Merge(const OptionList& other) {
    for (const Option& option : other.m_options)
        Set(option);
}

std::string OptionList::Format() const {
    std::string text;
    for (const Option& option : m_options) {
        if (!text.empty()) text += ',';
        if (option.negated) text += "no ";
        text += option.name;
        if (!option.value.empty()) {
            text += '=';
            text += option.value;
        }
    }
    return text;
}

const Option* OptionList::Find(std::string_view name) const {
    for (const Option& option : m_options)
        if (option.name == name) return &option;
    return nullptr;
}

bool OptionList::IsOn(std::string_view name) const {
    const Option* option = Find(name);
    return option && !option->negated && !EqualsIgnoreCase(option->value, "off");
}

} // namespace hc
