#include "hc/option_string.h"

#include "hc/text.h"

namespace hc {

namespace {

// The first separator outside quotes and parentheses, or npos.
size_t FindTopLevel(std::string_view text, char wanted) {
    size_t found = std::string_view::npos;
    ScanOutsideQuotes(text, [&](size_t i, int depth) {
        if (found == std::string_view::npos && depth == 0 && text[i] == wanted) found = i;
    });
    return found;
}

} // namespace

bool OptionList::Parse(std::string_view text, OptionList& result) {
    result.m_options.clear();
    if (!ScanOutsideQuotes(text, [](size_t, int) {})) return false;
    OptionList parsed;
    for (std::string_view item : SplitList(text, ',')) {
        if (item.empty()) continue;
        Option option;
        size_t equals = FindTopLevel(item, '=');
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
