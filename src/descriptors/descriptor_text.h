#pragma once

// Shared by the descriptor families: the one-line texts they write and read, and the questions
// they ask about the open item. Not part of the layer's interface.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

#include "text/text.h"

namespace obsidra::descriptors {

// The texts a descriptor writes are what its callers' 4096-byte buffers held: at most
// kTextSize - 1 bytes, cut there.
inline constexpr size_t kTextSize = HC_TEXT_MAX;

static_assert(kTextSize == text::kBufferSize);

using text::Format;

// printf appended to text; what would run past kTextSize - 1 bytes is cut.
void AppendFormat(std::string& text, const char* format, ...) __attribute__((format(printf, 2, 3)));
void AppendBounded(std::string& text, std::string_view more);

// What an HC_Show_* call writes into a buffer of HC_TEXT_MAX bytes.
template <typename Show>
std::string ShowText(Show&& show) {
    char buffer[HC_TEXT_MAX] = "";
    show(buffer);
    return buffer;
}

// Reads up to count numbers from the start of text as repeated "%f" would, blanks between them;
// answers how many were read. Whatever follows them is ignored.
size_t ScanNumbers(std::string_view text, float* numbers, size_t count);
std::optional<long long> ScanInteger(std::string_view text);

// Numbers separated by blanks, tabs, commas and line breaks, each finite and within the range of
// a float; where labelled, a token may carry a label that ends in a colon ("Radius:2.5"). Empty
// when any token does not read.
std::optional<std::vector<double>> ReadNumberList(std::string_view text, bool labelled = false);
// The numbers between every "<" and the ">" after it, in order: the point lists that the edit
// window appends to a geometry's label. Empty when a group does not read.
std::optional<std::vector<double>> ReadBracketedNumbers(std::string_view text);

// The key of the innermost open item when that item is a geometry item, else 0.
HC_KEY OpenGeometryKey();
// HC_Show_Existence for the innermost open item: the open geometry item's attributes when one is
// open, else the current segment's contents.
int ExistenceHere(std::string_view filter);

} // namespace obsidra::descriptors
