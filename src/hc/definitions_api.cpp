// The definition functions of the C interface: local textures, glyphs, line styles, shaders,
// fonts and the search over named styles, each defined in the current segment.
#include <string>
#include <vector>

#include "hc/api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

// Fonts every segment can use without defining them.
const char* const kBuiltInFonts[] = {"sans serif", "serif", "typewriter", "stroked", "roman"};

void DefineText(ContentKind kind, const char* name, std::string text, std::string source = {}) {
    Definition definition;
    definition.name = Text(name);
    definition.text = std::move(text);
    definition.source = std::move(source);
    Current().Define(CurrentSegmentOrReport(), kind, std::move(definition));
}

void UnDefine(ContentKind kind, const char* name) {
    Slot segment = CurrentSegmentOrReport();
    if (segment != kNoSlot && !Current().UnDefine(segment, kind, Text(name)))
        ReportError("no " + std::string(TypeWord(kind)) + " \"" + std::string(Text(name)) +
                    "\" here");
}

// The definition visible from the current segment; reported when there is none.
const Definition* Find(ContentKind kind, const char* name) {
    const Definition* definition =
        Current().FindDefinition(CurrentSession().CurrentSegment(), kind, Text(name), true);
    if (!definition)
        ReportError("no " + std::string(TypeWord(kind)) + " \"" + std::string(Text(name)) + "\"");
    return definition;
}

void BeginSearch(ContentKind kind, std::vector<std::string> names = {}) {
    if (const Segment* segment = Current().GetSegment(CurrentSession().CurrentSegment()))
        for (const Definition& definition : segment->DefinitionsOf(kind))
            names.push_back(definition.name);
    CurrentSession().BeginNameSearch(kind, std::move(names));
}

bool FindNext(ContentKind kind, char* name) {
    std::string found;
    if (!CurrentSession().FindName(kind, found)) return false;
    CopyOut(found, name);
    return true;
}

} // namespace

extern "C" {

void HC_Define_Local_Texture(const char* name, const char* definition) {
    HC_API(HC_Define_Local_Texture);
    DefineText(ContentKind::TextureDefinition, name, std::string(Trim(Text(definition))));
}

void HC_UnDefine_Local_Texture(const char* name) {
    HC_API(HC_UnDefine_Local_Texture);
    UnDefine(ContentKind::TextureDefinition, name);
}

void HC_Show_Local_Texture(const char* name, char* definition) {
    HC_API(HC_Show_Local_Texture);
    const Definition* found = Find(ContentKind::TextureDefinition, name);
    CopyOut(found ? found->text : std::string(), definition);
}

void HC_Begin_Local_Texture_Search(void) {
    HC_API(HC_Begin_Local_Texture_Search);
    BeginSearch(ContentKind::TextureDefinition);
}

void HC_Begin_Texture_Search(void) {
    HC_API(HC_Begin_Texture_Search);
    BeginSearch(ContentKind::TextureDefinition);
}

bool HC_Find_Texture(char* name) {
    HC_API(HC_Find_Texture);
    return FindNext(ContentKind::TextureDefinition, name);
}

void HC_End_Texture_Search(void) {
    HC_API(HC_End_Texture_Search);
    CurrentSession().EndNameSearch(ContentKind::TextureDefinition);
}

void HC_Define_Glyph(const char* name, int size, const char* data) {
    HC_API(HC_Define_Glyph);
    if (size < 0 || (size > 0 && !data)) {
        ReportError("bad glyph data");
        return;
    }
    DefineText(ContentKind::GlyphDefinition, name, std::string(data ? data : "", size_t(size)));
}

void HC_UnDefine_Glyph(const char* name) {
    HC_API(HC_UnDefine_Glyph);
    UnDefine(ContentKind::GlyphDefinition, name);
}

void HC_Show_Glyph_Size(const char* name, int* size) {
    HC_API(HC_Show_Glyph_Size);
    const Definition* found = Find(ContentKind::GlyphDefinition, name);
    Put(size, found ? static_cast<int>(found->text.size()) : 0);
}

void HC_Show_Glyph(const char* name, char* data) {
    HC_API(HC_Show_Glyph);
    const Definition* found = Find(ContentKind::GlyphDefinition, name);
    // Glyph data are bytes, not a text: copied whole, without a terminating NUL.
    if (found && data) std::copy(found->text.begin(), found->text.end(), data);
}

void HC_Begin_Glyph_Search(void) {
    HC_API(HC_Begin_Glyph_Search);
    BeginSearch(ContentKind::GlyphDefinition);
}

bool HC_Find_Glyph(char* name) {
    HC_API(HC_Find_Glyph);
    return FindNext(ContentKind::GlyphDefinition, name);
}

void HC_End_Glyph_Search(void) {
    HC_API(HC_End_Glyph_Search);
    CurrentSession().EndNameSearch(ContentKind::GlyphDefinition);
}

void HC_Define_Line_Style(const char* name, const char* definition) {
    HC_API(HC_Define_Line_Style);
    DefineText(ContentKind::LineStyleDefinition, name, std::string(Trim(Text(definition))));
}

void HC_UnDefine_Line_Style(const char* name) {
    HC_API(HC_UnDefine_Line_Style);
    UnDefine(ContentKind::LineStyleDefinition, name);
}

void HC_Show_Line_Style(const char* name, char* definition) {
    HC_API(HC_Show_Line_Style);
    const Definition* found = Find(ContentKind::LineStyleDefinition, name);
    CopyOut(found ? found->text : std::string(), definition);
}

void HC_Begin_Line_Style_Search(void) {
    HC_API(HC_Begin_Line_Style_Search);
    BeginSearch(ContentKind::LineStyleDefinition);
}

bool HC_Find_Line_Style(char* name) {
    HC_API(HC_Find_Line_Style);
    return FindNext(ContentKind::LineStyleDefinition, name);
}

void HC_End_Line_Style_Search(void) {
    HC_API(HC_End_Line_Style_Search);
    CurrentSession().EndNameSearch(ContentKind::LineStyleDefinition);
}

void HC_Define_Shader(const char* name, const char* options, const char* source) {
    HC_API(HC_Define_Shader);
    DefineText(ContentKind::ShaderDefinition, name, std::string(Trim(Text(options))),
               std::string(Text(source)));
}

void HC_UnDefine_Shader(const char* name) {
    HC_API(HC_UnDefine_Shader);
    UnDefine(ContentKind::ShaderDefinition, name);
}

void HC_Show_Shader(const char* name, char* options, char* source) {
    HC_API(HC_Show_Shader);
    const Definition* found = Find(ContentKind::ShaderDefinition, name);
    CopyOut(found ? found->text : std::string(), options);
    CopyOut(found ? found->source : std::string(), source);
}

void HC_Begin_Shader_Search(void) {
    HC_API(HC_Begin_Shader_Search);
    BeginSearch(ContentKind::ShaderDefinition);
}

bool HC_Find_Shader(char* name) {
    HC_API(HC_Find_Shader);
    return FindNext(ContentKind::ShaderDefinition, name);
}

void HC_End_Shader_Search(void) {
    HC_API(HC_End_Shader_Search);
    CurrentSession().EndNameSearch(ContentKind::ShaderDefinition);
}

void HC_Define_Font(const char* name, const char* options) {
    HC_API(HC_Define_Font);
    DefineText(ContentKind::FontDefinition, name, std::string(Trim(Text(options))));
}

void HC_UnDefine_Font(const char* name) {
    HC_API(HC_UnDefine_Font);
    UnDefine(ContentKind::FontDefinition, name);
}

void HC_Begin_Font_Search(const char* /*display*/, const char* /*filter*/) {
    HC_API(HC_Begin_Font_Search);
    BeginSearch(ContentKind::FontDefinition, {std::begin(kBuiltInFonts), std::end(kBuiltInFonts)});
}

bool HC_Find_Font(char* name) {
    HC_API(HC_Find_Font);
    return FindNext(ContentKind::FontDefinition, name);
}

void HC_End_Font_Search(void) {
    HC_API(HC_End_Font_Search);
    CurrentSession().EndNameSearch(ContentKind::FontDefinition);
}

void HC_Begin_Named_Style_Search(void) {
    HC_API(HC_Begin_Named_Style_Search);
    BeginSearch(ContentKind::NamedStyleDefinition);
}

bool HC_Find_Named_Style(char* styleName) {
    HC_API(HC_Find_Named_Style);
    return FindNext(ContentKind::NamedStyleDefinition, styleName);
}

void HC_End_Named_Style_Search(void) {
    HC_API(HC_End_Named_Style_Search);
    CurrentSession().EndNameSearch(ContentKind::NamedStyleDefinition);
}

} // extern "C"
