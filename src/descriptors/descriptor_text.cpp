#include "descriptors/descriptor_text.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstdlib>

#include "descriptors/geometry_descriptors.h"

namespace obsidra::descriptors {

namespace {

bool IsSeparator(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',';
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// One token of a number list: a number, and where labelled also "Label:number" or the label
// alone.
bool ReadToken(std::string_view token, bool labelled, std::vector<double>& numbers) {
    if (size_t colon = token.rfind(':'); labelled && colon != std::string_view::npos) {
        for (char c : token.substr(0, colon))
            if (!IsLetter(c)) return false;
        if (colon == 0) return false;
        token.remove_prefix(colon + 1);
        if (token.empty()) return true;
    }
    std::string copy(token);
    char* end = nullptr;
    errno = 0;
    double value = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size() || errno == ERANGE || !std::isfinite(value) ||
        std::fabs(value) > FLT_MAX)
        return false;
    numbers.push_back(value);
    return true;
}

bool IsGeometryType(std::string_view type) {
    if (text::EqualsIgnoreCase(type, "geometry")) return true;
    for (const GeometryInfo& info : kGeometryTable)
        if (text::EqualsIgnoreCase(type, info.nameWord)) return true;
    return false;
}

} // namespace

void AppendFormat(std::string& out, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    AppendBounded(out, text::VFormat(format, arguments));
    va_end(arguments);
}

void AppendBounded(std::string& text, std::string_view more) {
    if (text.size() >= kTextSize - 1) return;
    text.append(more.substr(0, kTextSize - 1 - text.size()));
}

size_t ScanNumbers(std::string_view text, float* numbers, size_t count) {
    std::string copy(text);
    const char* at = copy.c_str();
    for (size_t read = 0; read < count; ++read) {
        char* end = nullptr;
        float value = std::strtof(at, &end);
        if (end == at) return read;
        numbers[read] = value;
        at = end;
    }
    return count;
}

std::optional<long long> ScanInteger(std::string_view text) {
    std::string copy(text);
    char* end = nullptr;
    errno = 0;
    long long value = std::strtoll(copy.c_str(), &end, 10);
    if (end == copy.c_str() || errno == ERANGE) return std::nullopt;
    return value;
}

std::optional<std::vector<double>> ReadNumberList(std::string_view text, bool labelled) {
    std::vector<double> numbers;
    size_t at = 0;
    while (at < text.size()) {
        if (IsSeparator(text[at])) {
            ++at;
            continue;
        }
        size_t end = at;
        while (end < text.size() && !IsSeparator(text[end]))
            ++end;
        if (!ReadToken(text.substr(at, end - at), labelled, numbers)) return std::nullopt;
        at = end;
    }
    return numbers;
}

std::optional<std::vector<double>> ReadBracketedNumbers(std::string_view text) {
    std::vector<double> numbers;
    for (size_t open = text.find('<'); open != std::string_view::npos;
         open = text.find('<', open + 1)) {
        size_t close = text.find('>', open + 1);
        if (close == std::string_view::npos) return std::nullopt;
        std::optional<std::vector<double>> group =
            ReadNumberList(text.substr(open + 1, close - open - 1), true);
        if (!group) return std::nullopt;
        numbers.insert(numbers.end(), group->begin(), group->end());
        open = close;
    }
    return numbers;
}

HC_KEY OpenGeometryKey() {
    HC_KEY key = 0;
    char type[HC_TEXT_MAX] = "";
    char status[HC_TEXT_MAX] = "";
    HC_Begin_Open_Item_Search();
    bool found = HC_Find_Open_Item(&key, type, status);
    HC_End_Open_Item_Search();
    return found && IsGeometryType(type) ? key : 0;
}

int ExistenceHere(std::string_view filter) {
    std::string word(filter);
    HC_KEY geometry = OpenGeometryKey();
    return geometry ? HC_Show_Existence_By_Key(geometry, word.c_str())
                    : HC_Show_Existence(word.c_str());
}

} // namespace obsidra::descriptors
