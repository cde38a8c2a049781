// A small JSON reader for the headers of mesh files: the structure and the numbers, which is
// what a header states; string values are skipped and keys kept as written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace obsidra::host::mesh {

struct JsonValue {
    enum class Kind { Null, Bool, Number, String, Array, Object };
    Kind kind = Kind::Null;
    double number = 0;
    std::vector<JsonValue> items;  // an array's, or an object's values
    std::vector<std::string> keys; // an object's, one for each value

    // The member of an object, the item of an array at a whole-number index; or null.
    const JsonValue* Member(std::string_view key) const;
    const JsonValue* Item(const JsonValue* index) const;
    // A whole number of at least 0, or nothing.
    std::optional<std::size_t> Count() const;
};

// Nothing for text that is not JSON or nests deeper than a header would.
std::optional<JsonValue> ParseJson(std::string_view text);

} // namespace obsidra::host::mesh
