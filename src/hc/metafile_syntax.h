#pragma once

// What the metafile writer and reader share: element names, quoting and numbers.

#include <string>
#include <string_view>

#include "hc/content_kind.h"

namespace hc::metafile {

inline constexpr std::string_view kHeader = ";; Obsidra metafile 1\n";

// Element names are the type words in title case with '_' for blanks: "rendering options" is
// Rendering_Options.
std::string ElementName(ContentKind kind);
bool KindOfElement(std::string_view element, ContentKind& kind);

// A string in double quotes; '"' and '\' are escaped, control characters and bytes that are not
// text are written as \n, \t, \r or \xHH.
std::string Quoted(std::string_view text);
// The shortest text that reads back as the same float.
std::string Number(float value);

} // namespace hc::metafile
