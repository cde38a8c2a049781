#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hc {

// One option of an option string: "name", "no name" or "name = value", where a value may be a
// parenthesised list of further options. Names are case-insensitive and kept in lower case with
// single blanks; values are kept as written.
struct Option {
    std::string name;
    std::string value; // empty for the bare form
    bool negated = false;

    bool operator==(const Option&) const = default;
};

class OptionList {
public:
    // Parses a comma-separated option string. Returns false (leaving the list empty) when the
    // text does not parse: unbalanced parentheses or quotes, or an option without a name.
    static bool Parse(std::string_view text, OptionList& result);

    // Replaces the option of the same name, or appends it.
    void Set(Option option);
    // Options of other replace options of the same name; new names are appended in order.
    void Merge(const OptionList& other);
    // The options as text, "name", "no name" or "name=value", joined by ",".
    std::string Format() const;

    const Option* Find(std::string_view name) const;
    bool IsOn(std::string_view name) const; // set, and neither negated nor "off"
    bool Empty() const { return m_options.empty(); }
    const std::vector<Option>& Options() const { return m_options; }

private:
    std::vector<Option> m_options;
};

} // namespace hc
