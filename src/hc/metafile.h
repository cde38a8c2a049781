#pragma once

#include <string>
#include <string_view>

#include "hc/database.h"

namespace hc {

// The metafile text format (docs/formats.md): the contents of one segment as nested
// parenthesised elements, e.g. (Segment "walls" (Color "faces=red") (Shell ...)).

// Everything the segment holds, below it too, as metafile text.
std::string MetafileText(const Database& db, Slot segment);
// Loads metafile text into a segment. On a syntax error nothing is loaded and the error names
// the line; returns whether the text was loaded.
bool LoadMetafileText(Database& db, std::string_view text, Slot segment, std::string& error);

// The files behind HC_Write_Metafile and HC_Read_Metafile; failures are reported, not thrown.
void WriteMetafile(Database& db, std::string_view segment, std::string_view file,
                   std::string_view options);
Slot ReadMetafile(Database& db, std::string_view file, std::string_view segment,
                  std::string_view options);

} // namespace hc
