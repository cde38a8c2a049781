#include "descriptors/definition_descriptors.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "descriptors/descriptor_text.h"

using namespace obsidra::descriptors;

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// --- Descriptions and definitions ----------------------------------------------------------------

std::string Line(const std::string& name, const std::string& definition) {
    return Format("%s - %s", name.c_str(), definition.c_str());
}

std::string DescribeTexture(const std::string& name) {
    return Line(name, ShowText([&](char* text) { HC_Show_Local_Texture(name.c_str(), text); }));
}

void DefineTexture(const std::string& name, std::string_view definition) {
    HC_UnDefine_Local_Texture(name.c_str());
    HC_Define_Local_Texture(name.c_str(), std::string(definition).c_str());
}

// Glyph data are bytes, not text: shown as signed numbers, the way glyphs are written down.
std::string DescribeGlyph(const std::string& name) {
    int size = 0;
    HC_Show_Glyph_Size(name.c_str(), &size);
    std::vector<char> data(static_cast<size_t>(std::max(size, 0)));
    if (!data.empty()) HC_Show_Glyph(name.c_str(), data.data());
    std::string bytes;
    for (char byte : data)
        AppendFormat(bytes, bytes.empty() ? "%d" : " %d", int(static_cast<signed char>(byte)));
    return Line(name, bytes);
}

void DefineGlyph(const std::string& name, std::string_view definition) {
    std::optional<std::vector<double>> numbers = ReadNumberList(definition);
    if (!numbers || numbers->empty()) return;
    std::vector<char> data;
    for (double number : *numbers) {
        if (number != std::trunc(number) || number < -128 || number > 127) return;
        data.push_back(static_cast<char>(static_cast<signed char>(number)));
    }
    HC_Define_Glyph(name.c_str(), static_cast<int>(data.size()), data.data());
}

std::string DescribeLineStyle(const std::string& name) {
    return Line(name, ShowText([&](char* text) { HC_Show_Line_Style(name.c_str(), text); }));
}

void DefineLineStyle(const std::string& name, std::string_view definition) {
    HC_Define_Line_Style(name.c_str(), std::string(definition).c_str());
}

std::string DescribeNamedStyle(const std::string& name) {
    return Line(name, ShowText([&](char* text) { HC_Show_Named_Style(name.c_str(), text); }));
}

void DefineNamedStyle(const std::string& name, std::string_view definition) {
    HC_Define_Named_Style(name.c_str(), std::string(definition).c_str());
}

constexpr std::string_view kSourceOpen = "\n{\n";
constexpr std::string_view kSourceClose = "\n}";

std::string DescribeShader(const std::string& name) {
    char options[HC_TEXT_MAX] = "";
    char source[HC_TEXT_MAX] = "";
    HC_Show_Shader(name.c_str(), options, source);
    return Format("%s - %s\n{\n%s\n}", name.c_str(), options, source);
}

// A definition shaped as a shader's line shows it ("options\n{\nsource\n}") gives both parts;
// any other definition is the options alone.
void DefineShader(const std::string& name, std::string_view definition) {
    std::string_view options = definition, source;
    size_t open = definition.find(kSourceOpen);
    size_t close = definition.rfind(kSourceClose);
    // The line break that opens the source may also be the one that closes an empty source.
    if (open != std::string_view::npos && close != std::string_view::npos && close >= open + 2) {
        options = definition.substr(0, open);
        size_t first = open + kSourceOpen.size();
        source = close > first ? definition.substr(first, close - first) : std::string_view();
    }
    HC_Define_Shader(name.c_str(), std::string(options).c_str(), std::string(source).c_str());
}

// --- Splitting lines -----------------------------------------------------------------------------

enum class SplitRule : uint8_t {
    WholeLine, // all of it is the name
    Separator, // name " - " definition
    FirstWord, // the shader rule
};

std::optional<DefinitionText> Split(SplitRule rule, std::string_view text) {
    switch (rule) {
    case SplitRule::WholeLine:
        return DefinitionText{std::string(text), {}};
    case SplitRule::Separator: {
        size_t at = text.find(" - ");
        if (at == std::string_view::npos) return std::nullopt;
        return DefinitionText{std::string(text.substr(0, at)), std::string(text.substr(at + 3))};
    }
    case SplitRule::FirstWord: {
        size_t start = 0;
        while (start < text.size() && IsBlank(text[start]))
            ++start;
        size_t end = start;
        while (end < text.size() && !IsBlank(text[end]) && end - start < kTextSize - 1)
            ++end;
        size_t dash = text.find('-');
        if (end == start || dash == std::string_view::npos) return std::nullopt;
        std::string_view definition =
            dash + 2 <= text.size() ? text.substr(dash + 2) : std::string_view();
        return DefinitionText{std::string(text.substr(start, end - start)),
                              std::string(definition)};
    }
    }
    return std::nullopt;
}

// --- The table -----------------------------------------------------------------------------------

int FontCount() {
    if (!HC_Show_Existence("driver options")) return 0;
    return HC_Create_Segment(".") != HC_Create_Segment("/") ? 1 : 0;
}

struct DefinitionCalls {
    DefinitionKind kind;
    void (*begin)();
    bool (*find)(char*);
    void (*end)();
    std::string (*describe)(const std::string& name); // null: the name stands alone
    void (*define)(const std::string& name, std::string_view definition); // null: none
    SplitRule split;
    int (*count)(); // null: how many the database counts of the name word
};

constexpr DefinitionCalls kDefinitionCalls[] = {
    {DefinitionKind::LocalTexture, HC_Begin_Local_Texture_Search, HC_Find_Texture,
     HC_End_Texture_Search, DescribeTexture, DefineTexture, SplitRule::Separator, nullptr},
    {DefinitionKind::Glyph, HC_Begin_Glyph_Search, HC_Find_Glyph, HC_End_Glyph_Search,
     DescribeGlyph, DefineGlyph, SplitRule::FirstWord, nullptr},
    {DefinitionKind::LinePattern, HC_Begin_Line_Style_Search, HC_Find_Line_Style,
     HC_End_Line_Style_Search, DescribeLineStyle, DefineLineStyle, SplitRule::FirstWord, nullptr},
    {DefinitionKind::Font, [] { HC_Begin_Font_Search(".", "specific"); }, HC_Find_Font,
     HC_End_Font_Search, nullptr, nullptr, SplitRule::WholeLine, FontCount},
    {DefinitionKind::NamedStyle, HC_Begin_Named_Style_Search, HC_Find_Named_Style,
     HC_End_Named_Style_Search, DescribeNamedStyle, DefineNamedStyle, SplitRule::FirstWord,
     nullptr},
    {DefinitionKind::Shader, HC_Begin_Shader_Search, HC_Find_Shader, HC_End_Shader_Search,
     DescribeShader, DefineShader, SplitRule::FirstWord, nullptr},
};

constexpr bool InKindOrder() {
    if (std::size(kDefinitionCalls) != kDefinitionKindCount) return false;
    for (size_t i = 0; i < kDefinitionKindCount; ++i)
        if (kDefinitionCalls[i].kind != kDefinitionTable[i].kind) return false;
    return true;
}
static_assert(InKindOrder(), "one row per definition kind, in the order of the kinds");

const DefinitionCalls& CallsOf(DefinitionKind kind) {
    return kDefinitionCalls[static_cast<size_t>(kind)];
}

} // namespace

std::string HoopsDefineGeometry::Describe(std::string_view) {
    return {};
}

void HoopsDefineGeometry::Define(std::string_view, std::string_view) {}

std::optional<DefinitionText> HoopsDefineGeometry::SplitText(std::string_view text) {
    return Split(SplitRule::WholeLine, text);
}

std::string_view DefinitionKindDescriptor::GetName() const {
    return kDefinitionTable[static_cast<size_t>(Kind())].nameWord;
}

int DefinitionKindDescriptor::Count() {
    const DefinitionCalls& calls = CallsOf(Kind());
    return calls.count ? calls.count() : HoopsDefineGeometry::Count();
}

void DefinitionKindDescriptor::BeginSearch() {
    CallsOf(Kind()).begin();
}

void DefinitionKindDescriptor::EndSearch() {
    CallsOf(Kind()).end();
}

bool DefinitionKindDescriptor::FindNext(std::string& text) {
    const DefinitionCalls& calls = CallsOf(Kind());
    char name[HC_TEXT_MAX] = "";
    if (!calls.find(name)) return false;
    text = calls.describe ? calls.describe(name) : std::string(name);
    return true;
}

std::string DefinitionKindDescriptor::Describe(std::string_view name) {
    const DefinitionCalls& calls = CallsOf(Kind());
    return calls.describe ? calls.describe(std::string(name)) : std::string();
}

void DefinitionKindDescriptor::Define(std::string_view name, std::string_view definition) {
    const DefinitionCalls& calls = CallsOf(Kind());
    if (calls.define) calls.define(std::string(name), definition);
}

std::optional<DefinitionText> DefinitionKindDescriptor::SplitText(std::string_view text) {
    return Split(CallsOf(Kind()).split, text);
}

std::string_view HoopsReference::GetName() const {
    return "REFERENCE";
}

std::string HoopsReference::Describe(HC_KEY key) {
    int count = 0;
    HC_Show_Reference_Keys_Count(key, &count);
    return Format("%d keys", count);
}

namespace obsidra::descriptors {

std::unique_ptr<HoopsDefineGeometry> MakeDefinition(DefinitionKind kind) {
    switch (kind) {
#define OBSIDRA_CASE(Class, Kind, Word)                                                            \
    case DefinitionKind::Kind: {                                                                   \
        static_assert(Class::kKind == DefinitionKind::Kind);                                       \
        return std::make_unique<Class>();                                                          \
    }
        OBSIDRA_DEFINITION_DESCRIPTORS(OBSIDRA_CASE)
#undef OBSIDRA_CASE
    }
    return nullptr;
}

} // namespace obsidra::descriptors
