#include "descriptors/attribute_descriptors.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "descriptors/descriptor_text.h"

using namespace obsidra::descriptors;

namespace {

// --- The families' tables --------------------------------------------------------------------

enum class TextPresence : uint8_t {
    Counted,               // the database counts the name word
    CountedWithLength,     // ... and the shown text is not empty
    UserOptionsWithLength, // user options are counted and this kind's text is not empty
};

struct TextCalls {
    AttributeKind kind;
    void (*set)(const char*);
    void (*unset)();
    void (*show)(char*);
    void (*showNet)(int, const HC_KEY*, char*);
    void (*length)(int*); // asked before showing, where the database offers it
    TextPresence presence;
};

#define OBSIDRA_TEXT_CALLS(Name) HC_Set_##Name, HC_UnSet_##Name, HC_Show_##Name, HC_PShow_Net_##Name

constexpr TextCalls kTextCalls[] = {
    {AttributeKind::Color, OBSIDRA_TEXT_CALLS(Color), nullptr, TextPresence::Counted},
    {AttributeKind::Visibility, OBSIDRA_TEXT_CALLS(Visibility), nullptr, TextPresence::Counted},
    {AttributeKind::Selectability, OBSIDRA_TEXT_CALLS(Selectability), nullptr,
     TextPresence::Counted},
    {AttributeKind::Callback, OBSIDRA_TEXT_CALLS(Callback), nullptr, TextPresence::Counted},
    {AttributeKind::RenderingOptions, OBSIDRA_TEXT_CALLS(Rendering_Options), nullptr,
     TextPresence::Counted},
    {AttributeKind::UserOptions, OBSIDRA_TEXT_CALLS(User_Options), HC_Show_User_Options_Length,
     TextPresence::CountedWithLength},
    {AttributeKind::UnicodeOptions, OBSIDRA_TEXT_CALLS(Unicode_Options),
     HC_Show_Unicode_Options_Length, TextPresence::UserOptionsWithLength},
    {AttributeKind::Heuristics, OBSIDRA_TEXT_CALLS(Heuristics), nullptr, TextPresence::Counted},
    {AttributeKind::TextFont, OBSIDRA_TEXT_CALLS(Text_Font), nullptr, TextPresence::Counted},
    {AttributeKind::DriverOptions, OBSIDRA_TEXT_CALLS(Driver_Options), nullptr,
     TextPresence::Counted},
    {AttributeKind::Handedness, OBSIDRA_TEXT_CALLS(Handedness), nullptr, TextPresence::Counted},
    {AttributeKind::Condition, OBSIDRA_TEXT_CALLS(Conditions), nullptr, TextPresence::Counted},
    {AttributeKind::TextAlignment, OBSIDRA_TEXT_CALLS(Text_Alignment), nullptr,
     TextPresence::Counted},
    {AttributeKind::WindowPattern, OBSIDRA_TEXT_CALLS(Window_Pattern), nullptr,
     TextPresence::Counted},
    {AttributeKind::WindowFrame, OBSIDRA_TEXT_CALLS(Window_Frame), nullptr, TextPresence::Counted},
    {AttributeKind::LinePattern, OBSIDRA_TEXT_CALLS(Line_Pattern), nullptr, TextPresence::Counted},
    {AttributeKind::EdgePattern, OBSIDRA_TEXT_CALLS(Edge_Pattern), nullptr, TextPresence::Counted},
    {AttributeKind::FacePattern, OBSIDRA_TEXT_CALLS(Face_Pattern), nullptr, TextPresence::Counted},
    {AttributeKind::MarkerSymbol, OBSIDRA_TEXT_CALLS(Marker_Symbol), nullptr,
     TextPresence::Counted},
    {AttributeKind::ColorMap, OBSIDRA_TEXT_CALLS(Color_Map), HC_Show_Color_Map_Length,
     TextPresence::Counted},
};

#undef OBSIDRA_TEXT_CALLS

constexpr size_t kMostNumbers = 16;

struct NumbersCalls {
    AttributeKind kind;
    size_t count;
    void (*set)(const float*);
    void (*unset)();
    void (*show)(float*);
    void (*showNet)(float*);
};

constexpr NumbersCalls kNumbersCalls[] = {
    {AttributeKind::ModellingMatrix, 16, HC_Set_Modelling_Matrix, HC_UnSet_Modelling_Matrix,
     HC_Show_Modelling_Matrix, [](float* m) { HC_PShow_Net_Modelling_Matrix(0, nullptr, m); }},
    {AttributeKind::TextureMatrix, 16, HC_Set_Texture_Matrix, HC_UnSet_Texture_Matrix,
     HC_Show_Texture_Matrix, [](float* m) { HC_PShow_Net_Texture_Matrix(0, nullptr, m); }},
    {AttributeKind::Window, 4, [](const float* v) { HC_Set_Window(v[0], v[1], v[2], v[3]); },
     HC_UnSet_Window, [](float* v) { HC_Show_Window(v, v + 1, v + 2, v + 3); },
     [](float* v) { HC_PShow_Net_Window(0, nullptr, v, v + 1, v + 2, v + 3); }},
    {AttributeKind::TextPath, 3, [](const float* v) { HC_Set_Text_Path(v[0], v[1], v[2]); },
     HC_UnSet_Text_Path, [](float* v) { HC_Show_Text_Path(v, v + 1, v + 2); },
     [](float* v) { HC_PShow_Net_Text_Path(0, nullptr, v, v + 1, v + 2); }},
    {AttributeKind::TextSpacing, 1, [](const float* v) { HC_Set_Text_Spacing(v[0]); },
     HC_UnSet_Text_Spacing, HC_Show_Text_Spacing,
     [](float* v) { HC_PShow_Net_Text_Spacing(0, nullptr, v); }},
};

// One row per pair, found by either member's kind; the plain member's name word is the pair's
// presence test.
struct WeightCalls {
    AttributeKind kind;
    AttributeKind variableKind;
    void (*set)(double);
    void (*setVariable)(const char*);
    void (*unset)();
    void (*show)(float*);
    void (*showVariable)(char*);
    void (*showNet)(int, const HC_KEY*, float*);
    void (*showNetVariable)(int, const HC_KEY*, char*);
};

#define OBSIDRA_WEIGHT_CALLS(Name, NetVariable)                                                    \
    HC_Set_##Name, HC_Set_Variable_##Name, HC_UnSet_##Name, HC_Show_##Name,                        \
        HC_Show_Variable_##Name, HC_PShow_Net_##Name, HC_PShow_Net_##NetVariable

constexpr WeightCalls kWeightCalls[] = {
    {AttributeKind::EdgeWeight, AttributeKind::VariableEdgeWeight,
     OBSIDRA_WEIGHT_CALLS(Edge_Weight, Var_Edge_Weight)},
    {AttributeKind::LineWeight, AttributeKind::VariableLineWeight,
     OBSIDRA_WEIGHT_CALLS(Line_Weight, Var_Line_Weight)},
    {AttributeKind::MarkerSize, AttributeKind::VariableMarkerSize,
     OBSIDRA_WEIGHT_CALLS(Marker_Size, Var_Marker_Size)},
};

#undef OBSIDRA_WEIGHT_CALLS

// Whether the rows name every kind of a family exactly once, and no other kind.
template <typename Row, size_t N>
constexpr bool CoversFamily(const Row (&rows)[N], AttributeKind Row::*column,
                            AttributeFamily family) {
    for (const AttributeInfo& info : kAttributeTable) {
        int found = 0;
        for (const Row& row : rows)
            found += row.*column == info.kind ? 1 : 0;
        if (found != (info.family == family ? 1 : 0)) return false;
    }
    return true;
}

static_assert(CoversFamily(kTextCalls, &TextCalls::kind, AttributeFamily::Text));
static_assert(CoversFamily(kNumbersCalls, &NumbersCalls::kind, AttributeFamily::Numbers));
static_assert(CoversFamily(kWeightCalls, &WeightCalls::kind, AttributeFamily::Weight));
static_assert(CoversFamily(kWeightCalls, &WeightCalls::variableKind,
                           AttributeFamily::VariableWeight));
static_assert(std::all_of(std::begin(kNumbersCalls), std::end(kNumbersCalls),
                          [](const NumbersCalls& row) { return row.count <= kMostNumbers; }));

// The family's row of a kind; CoversFamily guarantees there is one for every kind of the family.
template <typename Row, size_t N>
const Row& RowOf(const Row (&rows)[N], AttributeKind kind,
                 AttributeKind Row::*column = &Row::kind) {
    return *std::find_if(std::begin(rows), std::end(rows),
                         [&](const Row& row) { return row.*column == kind; });
}

const WeightCalls& PairOf(AttributeKind kind) {
    return RowOf(kWeightCalls, kind, &WeightCalls::variableKind);
}

std::string_view NameWord(AttributeKind kind) {
    return InfoOf(kind).nameWord;
}

std::string Numbers(const float* values, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
        AppendFormat(text, i == 0 ? "%f" : " %f", double(values[i]));
    return text;
}

float PlainWeight(const WeightCalls& calls) {
    float weight = 0;
    calls.show(&weight);
    return weight;
}

bool PairExists(const WeightCalls& calls) {
    return ExistenceHere(NameWord(calls.kind)) == 1;
}

// Up to which length USER INDEX and USER DATA keep appending entries.
constexpr size_t kListBound = 3996;

void CloseList(std::string& text) {
    if (text.size() >= kListBound) AppendBounded(text, ", ...");
    AppendBounded(text, "}");
}

// The parts of a shown entry are trimmed of spaces and tabs only.
constexpr std::string_view kSpaceOrTab = " \t";

std::string_view Trim(std::string_view part) {
    return obsidra::text::Trim(part, kSpaceOrTab);
}

// Whether the "(" that opens text is closed by its last character.
bool Enclosed(std::string_view text) {
    if (text.size() < 2 || text.front() != '(' || text.back() != ')') return false;
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth == 0) return i + 1 == text.size();
    }
    return false;
}

// A part of a shown action entry without the parentheses that the entry put around it: the
// unmatched ones at its ends, then the pairs that enclose it whole.
std::string Unwrap(std::string_view part) {
    part = Trim(part);
    int depth = 0;
    for (char c : part)
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    while (depth < 0 && !part.empty() && part.back() == ')') {
        part = Trim(part.substr(0, part.size() - 1));
        ++depth;
    }
    while (depth > 0 && !part.empty() && part.front() == '(') {
        part = Trim(part.substr(1));
        --depth;
    }
    while (Enclosed(part))
        part = Trim(part.substr(1, part.size() - 2));
    return std::string(part);
}

std::string_view DropFirst(std::string_view part) {
    return part.empty() ? part : part.substr(1);
}

} // namespace

// --- The base and the families ---------------------------------------------------------------

std::string_view HoopsAttribute::GetName() const {
    return NameWord(Kind());
}

bool HoopsAttribute::Exists() {
    return ExistenceHere(GetName()) == 1;
}

void TextAttribute::Set(std::string_view text) {
    RowOf(kTextCalls, Kind()).set(std::string(text).c_str());
}

void TextAttribute::UnSet() {
    RowOf(kTextCalls, Kind()).unset();
}

std::string TextAttribute::Show() {
    const TextCalls& calls = RowOf(kTextCalls, Kind());
    if (calls.length) {
        int length = 0;
        calls.length(&length);
        if (length < 1) return {};
    }
    return ShowText(calls.show);
}

std::string TextAttribute::ShowNet() {
    const TextCalls& calls = RowOf(kTextCalls, Kind());
    return ShowText([&](char* text) { calls.showNet(0, nullptr, text); });
}

bool TextAttribute::Exists() {
    const TextCalls& calls = RowOf(kTextCalls, Kind());
    int length = 0;
    switch (calls.presence) {
    case TextPresence::Counted:
        return HoopsAttribute::Exists();
    case TextPresence::CountedWithLength:
        if (ExistenceHere(GetName()) < 1) return false;
        break;
    case TextPresence::UserOptionsWithLength:
        if (ExistenceHere(NameWord(AttributeKind::UserOptions)) < 1) return false;
        break;
    }
    calls.length(&length);
    return length >= 1;
}

void NumbersAttribute::Set(std::string_view text) {
    const NumbersCalls& calls = RowOf(kNumbersCalls, Kind());
    float values[kMostNumbers] = {};
    if (ScanNumbers(text, values, calls.count) == calls.count) calls.set(values);
}

void NumbersAttribute::UnSet() {
    RowOf(kNumbersCalls, Kind()).unset();
}

std::string NumbersAttribute::Show() {
    const NumbersCalls& calls = RowOf(kNumbersCalls, Kind());
    float values[kMostNumbers] = {};
    calls.show(values);
    return Numbers(values, calls.count);
}

std::string NumbersAttribute::ShowNet() {
    const NumbersCalls& calls = RowOf(kNumbersCalls, Kind());
    float values[kMostNumbers] = {};
    calls.showNet(values);
    return Numbers(values, calls.count);
}

void WeightAttribute::Set(std::string_view text) {
    float weight = 0;
    if (ScanNumbers(text, &weight, 1) == 1) RowOf(kWeightCalls, Kind()).set(weight);
}

void WeightAttribute::UnSet() {
    RowOf(kWeightCalls, Kind()).unset();
}

std::string WeightAttribute::Show() {
    return Format("%f", double(PlainWeight(RowOf(kWeightCalls, Kind()))));
}

std::string WeightAttribute::ShowNet() {
    float weight = 0;
    RowOf(kWeightCalls, Kind()).showNet(0, nullptr, &weight);
    return Format("%f", double(weight));
}

bool WeightAttribute::Exists() {
    const WeightCalls& calls = RowOf(kWeightCalls, Kind());
    return PairExists(calls) && PlainWeight(calls) >= 0;
}

void VariableWeightAttribute::Set(std::string_view text) {
    PairOf(Kind()).setVariable(std::string(text).c_str());
}

void VariableWeightAttribute::UnSet() {
    PairOf(Kind()).unset();
}

std::string VariableWeightAttribute::Show() {
    return ShowText(PairOf(Kind()).showVariable);
}

std::string VariableWeightAttribute::ShowNet() {
    const WeightCalls& calls = PairOf(Kind());
    return ShowText([&](char* text) { calls.showNetVariable(0, nullptr, text); });
}

bool VariableWeightAttribute::Exists() {
    const WeightCalls& calls = PairOf(Kind());
    return PairExists(calls) && PlainWeight(calls) < 0;
}

// --- User value, indices and data ----------------------------------------------------------------

void HoopsAttributeUserValue::Set(std::string_view text) {
    if (std::optional<long long> value = ScanInteger(text)) HC_Set_User_Value(*value);
}

void HoopsAttributeUserValue::UnSet() {
    HC_UnSet_User_Value();
}

std::string HoopsAttributeUserValue::Show() {
    int64_t value = 0;
    HC_Show_User_Value(&value);
    return Format("%lld", static_cast<long long>(value));
}

std::string HoopsAttributeUserValue::ShowNet() {
    int64_t value = 0;
    HC_PShow_Net_User_Value(0, nullptr, &value);
    return Format("%lld", static_cast<long long>(value));
}

namespace {

// The user indices of the open item, in the database's order, with their values.
struct UserIndices {
    std::vector<long> indices;
    std::vector<void*> values;
};

UserIndices ShowUserIndices() {
    int count = 0;
    HC_Show_User_Index_Count(&count);
    UserIndices shown{std::vector<long>(static_cast<size_t>(std::max(count, 0))),
                      std::vector<void*>(static_cast<size_t>(std::max(count, 0)))};
    if (count > 0) HC_Show_User_Indices(&count, shown.indices.data(), shown.values.data());
    return shown;
}

std::vector<long> ShowUserDataIndices() {
    int count = 0;
    HC_Show_User_Data_Count(&count);
    std::vector<long> indices(static_cast<size_t>(std::max(count, 0)));
    if (count > 0) HC_Show_User_Data_Indices(&count, indices.data());
    return indices;
}

} // namespace

void HoopsAttributeUserIndex::Set(std::string_view) {}

void HoopsAttributeUserIndex::UnSet() {
    for (long index : ShowUserIndices().indices)
        HC_UnSet_One_User_Index(index);
}

std::string HoopsAttributeUserIndex::Show() {
    UserIndices shown = ShowUserIndices();
    if (shown.indices.empty()) return {};
    std::string text = Format("%d : { (%lu = %p)", static_cast<int>(shown.indices.size()),
                              static_cast<unsigned long>(shown.indices[0]), shown.values[0]);
    for (size_t i = 1; i < shown.indices.size() && text.size() < kListBound; ++i)
        AppendFormat(text, ", (%lu = %p)", static_cast<unsigned long>(shown.indices[i]),
                     shown.values[i]);
    CloseList(text);
    return text;
}

std::string HoopsAttributeUserIndex::ShowNet() {
    return {};
}

bool HoopsAttributeUserIndex::Exists() {
    int count = 0;
    HC_Show_User_Index_Count(&count);
    return count >= 1;
}

void HoopsAttributeUserData::Set(std::string_view) {}

void HoopsAttributeUserData::UnSet() {
    for (long index : ShowUserDataIndices())
        HC_UnSet_One_User_Data(index);
}

std::string HoopsAttributeUserData::Show() {
    std::vector<long> indices = ShowUserDataIndices();
    if (indices.empty()) return {};
    std::string text = Format("%d : {%llu", static_cast<int>(indices.size()),
                              static_cast<unsigned long long>(indices[0]));
    for (size_t i = 1; i < indices.size() && text.size() < kListBound; ++i)
        AppendFormat(text, ", %llu", static_cast<unsigned long long>(indices[i]));
    CloseList(text);
    return text;
}

std::string HoopsAttributeUserData::ShowNet() {
    return {};
}

bool HoopsAttributeUserData::Exists() {
    int count = 0;
    HC_Show_User_Data_Count(&count);
    return count >= 1;
}

// --- Camera --------------------------------------------------------------------------------------

namespace {

struct Camera {
    HC_POINT position{}, target{};
    HC_VECTOR up{};
    float width = 0, height = 0, nearLimit = 0;
    char projection[HC_TEXT_MAX] = "";
};

std::string CameraText(const Camera& c) {
    return Format("Pos: %f %f %f Target: %f %f %f Up: %f %f %f Width: %f Height: %f Near Limit: "
                  "%f Projection:%s",
                  double(c.position.x), double(c.position.y), double(c.position.z),
                  double(c.target.x), double(c.target.y), double(c.target.z), double(c.up.x),
                  double(c.up.y), double(c.up.z), double(c.width), double(c.height),
                  double(c.nearLimit), c.projection);
}

} // namespace

void HoopsAttributeCamera::Set(std::string_view text) {
    std::string line(text);
    Camera c;
    int fields = std::sscanf(
        line.c_str(),
        "Pos: %f %f %f Target: %f %f %f Up: %f %f %f Width: %f Height: %f Near Limit: %f "
        "Projection:%4095s",
        &c.position.x, &c.position.y, &c.position.z, &c.target.x, &c.target.y, &c.target.z, &c.up.x,
        &c.up.y, &c.up.z, &c.width, &c.height, &c.nearLimit, c.projection);
    if (fields < 12) {
        fields =
            std::sscanf(line.c_str(), "(Camera (%f %f %f) (%f %f %f) (%f %f %f) %f %f \"%4095s\")",
                        &c.position.x, &c.position.y, &c.position.z, &c.target.x, &c.target.y,
                        &c.target.z, &c.up.x, &c.up.y, &c.up.z, &c.width, &c.height, c.projection);
        if (char* quote = std::strchr(c.projection, '"')) *quote = '\0';
    }
    if (fields >= 12) HC_Set_Camera(&c.position, &c.target, &c.up, c.width, c.height, c.projection);
}

void HoopsAttributeCamera::UnSet() {
    HC_UnSet_Camera();
}

std::string HoopsAttributeCamera::Show() {
    Camera c;
    HC_Show_Camera(&c.position, &c.target, &c.up, &c.width, &c.height, c.projection);
    HC_Show_Camera_Near_Limit(&c.nearLimit);
    return CameraText(c);
}

std::string HoopsAttributeCamera::ShowNet() {
    Camera c;
    HC_PShow_Net_Camera(0, nullptr, &c.position, &c.target, &c.up, &c.width, &c.height,
                        c.projection);
    HC_PShow_Net_Camera_Near_Limit(0, nullptr, &c.nearLimit);
    return CameraText(c);
}

// --- System options ------------------------------------------------------------------------------

void HoopsAttributeSystemOptions::Set(std::string_view text) {
    HC_Define_System_Options(std::string(text).c_str());
}

void HoopsAttributeSystemOptions::UnSet() {}

std::string HoopsAttributeSystemOptions::Show() {
    return ShowText(HC_Show_System_Options);
}

std::string HoopsAttributeSystemOptions::ShowNet() {
    return ShowText(HC_Show_System_Options);
}

// The root is the segment whose key is the key of "/"; asking the database for the root's owner
// would report an error on every question.
bool HoopsAttributeSystemOptions::Exists() {
    HC_KEY here = HC_Open_Segment(".");
    HC_Close_Segment();
    return here < 0 && here == HC_Create_Segment("/");
}

// --- Clip region ---------------------------------------------------------------------------------

void HoopsAttributeClipRegion::Set(std::string_view text) {
    constexpr std::string_view kSpecs = "Specs:";
    size_t specs = text.find(kSpecs);
    if (m_points.empty() || specs == std::string_view::npos) return;
    HC_Set_Polygonal_Clip_Region(static_cast<int>(m_points.size()), m_points.data(),
                                 std::string(text.substr(specs + kSpecs.size())).c_str());
}

void HoopsAttributeClipRegion::UnSet() {
    HC_UnSet_Clip_Region();
}

std::string HoopsAttributeClipRegion::Show() {
    int loops = 0, total = 0;
    char specs[HC_TEXT_MAX] = "";
    HC_Show_Clip_Region_Size(&loops, &total, specs);
    std::string text = Format("Loops:%d Total:%d Specs:%s", loops, total, specs);
    m_points.assign(static_cast<size_t>(std::max(total, 0)), HC_POINT{});
    if (!m_points.empty()) {
        std::vector<int> loopCounts(static_cast<size_t>(std::max(loops, 1)), total);
        HC_Show_Clip_Region(&loops, loopCounts.data(), m_points.data(), specs);
    }
    return text;
}

std::string HoopsAttributeClipRegion::ShowNet() {
    int loops = 0, total = 0;
    char specs[HC_TEXT_MAX] = "";
    HC_PShow_Net_Clip_Region_Size(0, nullptr, &loops, &total, specs);
    return Format("Loops:%d Total:%d Specs:%s", loops, total, specs);
}

// --- Geometry options ----------------------------------------------------------------------------

void HoopsAttributeGeometryOptions::Set(std::string_view text) {
    if (OpenGeometryKey()) HC_Set_Geometry_Options(std::string(text).c_str());
}

void HoopsAttributeGeometryOptions::UnSet() {
    if (OpenGeometryKey()) HC_Set_Geometry_Options("");
}

std::string HoopsAttributeGeometryOptions::Show() {
    return OpenGeometryKey() ? ShowText(HC_Show_Geometry_Options) : std::string();
}

std::string HoopsAttributeGeometryOptions::ShowNet() {
    return {};
}

bool HoopsAttributeGeometryOptions::Exists() {
    return !Show().empty();
}

// --- Conditional actions -------------------------------------------------------------------------

void HoopsAttributeConditionalAction::Set(std::string_view text) {
    for (std::string_view entry : obsidra::text::Fields(text, ',', kSpaceOrTab)) {
        size_t question = entry.find('?');
        std::string_view condition = Trim(entry.substr(0, question));
        std::string_view action = question == std::string_view::npos
                                      ? std::string_view()
                                      : Trim(entry.substr(question + 1));
        if (condition.size() >= kTextSize || action.size() >= kTextSize) continue;
        HC_Set_Conditional_Action(Unwrap(DropFirst(action)).c_str(),
                                  Unwrap(DropFirst(condition)).c_str());
    }
}

void HoopsAttributeConditionalAction::UnSet() {
    HC_UnSet_Conditional_Actions();
}

std::string HoopsAttributeConditionalAction::Show() {
    std::string types = ShowText(HC_Show_Cond_Action_Types);
    if (types.empty()) return {};
    std::string text;
    int count = 1 + static_cast<int>(std::count(types.begin(), types.end(), ','));
    for (int i = 0; i < count; ++i) {
        std::string type =
            ShowText([&](char* field) { HC_Parse_String(types.c_str(), ",", i, field); });
        char options[HC_TEXT_MAX] = "";
        char condition[HC_TEXT_MAX] = "";
        HC_Show_One_Conditional_Action(type.c_str(), options, condition);
        AppendBounded(text, "((");
        AppendBounded(text, condition);
        AppendBounded(text, ") ? (");
        AppendBounded(text, type);
        AppendBounded(text, " = ");
        AppendBounded(text, options[0] ? options : "segment");
        AppendBounded(text, ")), ");
    }
    text.resize(text.size() - 2);
    return text;
}

std::string HoopsAttributeConditionalAction::ShowNet() {
    return {};
}

// --- Making descriptors --------------------------------------------------------------------------

namespace obsidra::descriptors {

std::unique_ptr<HoopsAttribute> MakeAttribute(AttributeKind kind) {
    switch (kind) {
#define OBSIDRA_CASE(Class, Kind, Word, Family)                                                    \
    case AttributeKind::Kind: {                                                                    \
        static_assert(Class::kKind == AttributeKind::Kind);                                        \
        return std::make_unique<Class>();                                                          \
    }
        OBSIDRA_ATTRIBUTE_DESCRIPTORS(OBSIDRA_CASE)
#undef OBSIDRA_CASE
    }
    return nullptr;
}

} // namespace obsidra::descriptors
