#pragma once

#include <string>
#include <string_view>

#include "hc/database.h"
#include "hc/session.h"

namespace hc {

// The metafile text format (docs/formats.md): the contents of one segment as nested
// parenthesised elements, e.g. (Segment "walls" (Color "faces=red") (Shell ...)).

// What a metafile is written with: "follow cross-references" also saves the segments that the
// saved one includes from outside itself; "save state = textures" saves texture definitions.
struct MetafileOptions {
    bool followCrossReferences = false;
    bool saveTextures = false;

    static MetafileOptions Parse(std::string_view text);
};

// Everything the segment holds, below it too, as metafile text.
std::string MetafileText(const Database& db, Slot segment, MetafileOptions options = {});
// Loads metafile text into a segment. A text with a mistake loads nothing; the error names its
// line and column. Returns whether the text was loaded.
bool LoadMetafileText(Database& db, std::string_view text, Slot segment, std::string& error);

// Loads a metafile into a segment; error says "cannot read" the file, or names the file and
// the text's mistake.
bool LoadMetafileFile(Database& db, std::string_view file, Slot segment, std::string& error);

// The files behind HC_Write_Metafile and HC_Read_Metafile, with paths relative to the session's
// current segment; failures are reported, not thrown.
void WriteMetafile(Session& session, std::string_view segment, std::string_view file,
                   std::string_view options);
Slot ReadMetafile(Session& session, std::string_view file, std::string_view segment,
                  std::string_view options);

} // namespace hc
