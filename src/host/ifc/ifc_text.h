// Text helpers of the IFC importer.
#pragma once

#include <string>
#include <string_view>

namespace obsidra::host::ifc {

// UTF-8 of text that IFC++ decoded into wide characters (UTF-32 here); characters that are not
// Unicode scalar values become U+FFFD.
std::string ToUtf8(std::wstring_view text);

// Equal when equal but for ASCII case, as the scene database compares segment names.
std::string FoldAsciiCase(std::string_view text);

// A name for a scene segment: "/" cannot stand in one, blanks around it would be dropped, and
// "", "." and ".." or a leading "@" mean something else in a path.
std::string SegmentNameFor(std::string_view text);

// A value for an option string: quoted when it holds anything an option string gives a meaning
// to, with a quote character the value does not contain.
std::string OptionValue(std::string_view value);

} // namespace obsidra::host::ifc
