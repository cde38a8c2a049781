// The attribute functions of the C interface: set, unset, show and net show of every kind, on
// the innermost open item.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "hc/api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

// The open item that attribute calls work on, kNoSlot (reported) when it was deleted.
Slot Target() {
    return CurrentSession().AttributeTarget();
}

std::string Word(ContentKind kind) {
    return std::string(TypeWord(kind));
}

// The local attribute of the open item; reported when it is not set.
const Attribute* Local(ContentKind kind) {
    Slot target = Target();
    const Attribute* attribute = Current().LocalAttribute(target, kind);
    if (!attribute && target != kNoSlot) ReportError("no " + Word(kind) + " is set here");
    return attribute;
}

void Remove(ContentKind kind) {
    Slot target = Target();
    if (target != kNoSlot && !Current().RemoveAttribute(target, kind))
        ReportError("no " + Word(kind) + " is set here");
}

// The values of one kind that make the net value, nearest first; reported when there is none.
std::vector<const Attribute*> Net(int keyCount, const HC_KEY* keys, ContentKind kind,
                                  bool reportNone = true) {
    Database& db = Current();
    std::vector<const Attribute*> chain;
    if (keyCount < 0 || (keyCount > 0 && !keys)) {
        ReportError("bad key path");
        return chain;
    }
    Slot start = keyCount == 0 ? Target() : CurrentSession().Require(keys[0]);
    if (start == kNoSlot) return chain;
    std::vector<Slot> includes;
    for (int i = 1; i < keyCount; ++i)
        includes.push_back(CurrentSession().Require(keys[i]));
    chain = db.NetChain(db.NetPath(start, includes), kind);
    if (chain.empty() && reportNone) ReportError("no " + Word(kind) + " is in effect here");
    return chain;
}

std::string LocalText(const Attribute& attribute) {
    return IsOptionString(attribute.kind) ? attribute.options.Format() : attribute.text;
}

bool HasBareOption(const OptionList& options) {
    for (const Option& option : options.Options())
        if (option.value.empty() && !option.negated) return true;
    return false;
}

std::string NetText(const std::vector<const Attribute*>& chain) {
    if (chain.empty()) return {};
    if (!IsOptionString(chain.front()->kind)) return chain.front()->text;
    OptionList merged;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        // A colour named alone colours everything: what was inherited no longer shows.
        if ((*it)->kind == ContentKind::Color && HasBareOption((*it)->options)) merged = {};
        merged.Merge((*it)->options);
    }
    return merged.Format();
}

// The value's numbers, or zeros when it is not set.
float Number(const Attribute* attribute, size_t index) {
    return attribute && index < attribute->numbers.size() ? attribute->numbers[index] : 0.0f;
}

void PutNumbers(const Attribute* attribute, std::initializer_list<float*> outs, size_t first = 0) {
    size_t i = first;
    for (float* out : outs)
        Put(out, Number(attribute, i++));
}

// Sets the numbers of a kind on the open item.
void SetNumbers(ContentKind kind, std::vector<float> numbers, std::string text = {}) {
    Slot target = Target();
    if (target == kNoSlot) return;
    Attribute& attribute = Current().ObtainAttribute(target, kind);
    attribute.numbers = std::move(numbers);
    attribute.text = std::move(text);
    Current().AttributeChanged(target, kind);
}

void PutPoint(HC_POINT* out, const Attribute* attribute, size_t first) {
    if (out)
        *out = {Number(attribute, first), Number(attribute, first + 1),
                Number(attribute, first + 2)};
}

// --- Weights: a plain number, or a text with units stored with the number -1 --------------

void SetWeight(ContentKind kind, double weight) {
    if (!(weight >= 0)) {
        ReportError("a " + Word(kind) + " must not be negative");
        return;
    }
    SetNumbers(kind, {static_cast<float>(weight)});
}

void SetVariableWeight(ContentKind kind, const char* weight) {
    std::string_view text = Trim(Text(weight));
    if (text.empty()) {
        ReportError("no " + Word(kind) + " given");
        return;
    }
    SetNumbers(kind, {-1.0f}, std::string(text));
}

std::string WeightText(const Attribute* attribute) {
    if (!attribute) return {};
    if (Number(attribute, 0) < 0) return attribute->text;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%g", static_cast<double>(Number(attribute, 0)));
    return buffer;
}

const Attribute* Nearest(const std::vector<const Attribute*>& chain) {
    return chain.empty() ? nullptr : chain.front();
}

// --- Matrices ------------------------------------------------------------------------------------

void SetMatrix(ContentKind kind, const float* matrix) {
    if (!matrix) {
        ReportError("no matrix given");
        return;
    }
    SetNumbers(kind, std::vector<float>(matrix, matrix + 16));
}

void ShowMatrix(const Attribute* attribute, float* matrix) {
    if (matrix)
        for (size_t i = 0; i < 16; ++i)
            matrix[i] = Number(attribute, i);
}

void NetMatrix(const std::vector<const Attribute*>& chain, float* matrix) {
    float product[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (const Attribute* attribute : chain) {
        if (attribute->numbers.size() == 16)
            MultiplyMatrices(product, attribute->numbers.data(), product);
    }
    if (matrix) std::copy(product, product + 16, matrix);
}

// --- Camera: position, target, up, width, height, near limit in numbers; projection in text -----

void ShowCamera(const Attribute* camera, HC_POINT* position, HC_POINT* target, HC_VECTOR* up,
                float* width, float* height, char* projection) {
    PutPoint(position, camera, 0);
    PutPoint(target, camera, 3);
    PutPoint(up, camera, 6);
    PutNumbers(camera, {width, height}, 9);
    CopyOut(camera ? camera->text : std::string(), projection);
}

// --- Clip region ---------------------------------------------------------------------------------

void ShowClipRegion(const Attribute* region, int* loops, int* loopCounts, HC_POINT* points,
                    char* options) {
    int total = region ? static_cast<int>(region->points.size()) : 0;
    Put(loops, region ? 1 : 0);
    if (loopCounts && region) loopCounts[0] = total;
    if (points && region) std::copy(region->points.begin(), region->points.end(), points);
    CopyOut(region ? region->text : std::string(), options);
}

// --- Indexed entries -----------------------------------------------------------------------------

void SetEntry(ContentKind kind, long index, std::string bytes) {
    Slot target = Target();
    if (target == kNoSlot) return;
    Current().ObtainAttribute(target, kind).entries[index] = std::move(bytes);
    Current().AttributeChanged(target, kind);
}

void UnSetEntry(ContentKind kind, long index) {
    Slot target = Target();
    const Attribute* attribute = Current().LocalAttribute(target, kind);
    if (!attribute || !attribute->entries.count(index)) {
        if (target != kNoSlot)
            ReportError("no " + Word(kind) + " " + std::to_string(index) + " is set here");
        return;
    }
    Attribute& mine = Current().ObtainAttribute(target, kind);
    mine.entries.erase(index);
    if (mine.entries.empty())
        Current().RemoveAttribute(target, kind);
    else
        Current().AttributeChanged(target, kind);
}

int EntryCount(ContentKind kind) {
    const Attribute* attribute = Current().LocalAttribute(Target(), kind);
    return attribute ? static_cast<int>(attribute->entries.size()) : 0;
}

// --- Conditional actions -------------------------------------------------------------------------

// Takes off blanks and the pairs of parentheses that enclose a whole part, as a shown action
// list puts them; parentheses inside ("(a | b) & c") stay.
std::string_view Unbracket(std::string_view text) {
    text = Trim(text);
    while (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
        int depth = 0;
        bool encloses = true;
        for (size_t i = 0; i < text.size() && encloses; ++i) {
            depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
            if (depth == 0 && i + 1 < text.size()) encloses = false;
        }
        if (!encloses) break;
        text = Trim(text.substr(1, text.size() - 2));
    }
    return text;
}

const ConditionalAction* FindAction(const Attribute* attribute, std::string_view type) {
    if (!attribute) return nullptr;
    for (const ConditionalAction& action : attribute->actions)
        if (EqualsIgnoreCase(action.type, Trim(type))) return &action;
    return nullptr;
}

} // namespace

extern "C" {

// --- Option strings and texts --------------------------------------------------------------------

#define HC_TEXT_ATTRIBUTE(Name, Kind)                                                              \
    void HC_Set_##Name(const char* options) {                                                      \
        HC_API(HC_Set_##Name);                                                                     \
        Current().SetText(Target(), ContentKind::Kind, Text(options));                             \
    }                                                                                              \
    void HC_UnSet_##Name(void) {                                                                   \
        HC_API(HC_UnSet_##Name);                                                                   \
        Remove(ContentKind::Kind);                                                                 \
    }                                                                                              \
    void HC_Show_##Name(char* options) {                                                           \
        HC_API(HC_Show_##Name);                                                                    \
        const Attribute* attribute = Local(ContentKind::Kind);                                     \
        CopyOut(attribute ? LocalText(*attribute) : std::string(), options);                       \
    }                                                                                              \
    void HC_PShow_Net_##Name(int keyCount, const HC_KEY* keys, char* options) {                    \
        HC_API(HC_PShow_Net_##Name);                                                               \
        CopyOut(NetText(Net(keyCount, keys, ContentKind::Kind)), options);                         \
    }

HC_TEXT_ATTRIBUTE(Color, Color)
HC_TEXT_ATTRIBUTE(Visibility, Visibility)
HC_TEXT_ATTRIBUTE(Selectability, Selectability)
HC_TEXT_ATTRIBUTE(Callback, Callback)
HC_TEXT_ATTRIBUTE(Rendering_Options, RenderingOptions)
HC_TEXT_ATTRIBUTE(User_Options, UserOptions)
HC_TEXT_ATTRIBUTE(Unicode_Options, UnicodeOptions)
HC_TEXT_ATTRIBUTE(Heuristics, Heuristics)
HC_TEXT_ATTRIBUTE(Text_Font, TextFont)
HC_TEXT_ATTRIBUTE(Driver_Options, DriverOptions)
HC_TEXT_ATTRIBUTE(Handedness, Handedness)
HC_TEXT_ATTRIBUTE(Conditions, Conditions)
HC_TEXT_ATTRIBUTE(Text_Alignment, TextAlignment)
HC_TEXT_ATTRIBUTE(Window_Pattern, WindowPattern)
HC_TEXT_ATTRIBUTE(Window_Frame, WindowFrame)
HC_TEXT_ATTRIBUTE(Line_Pattern, LinePattern)
HC_TEXT_ATTRIBUTE(Edge_Pattern, EdgePattern)
HC_TEXT_ATTRIBUTE(Face_Pattern, FacePattern)
HC_TEXT_ATTRIBUTE(Marker_Symbol, MarkerSymbol)
HC_TEXT_ATTRIBUTE(Color_Map, ColorMap)

#define HC_TEXT_LENGTH(Name, Kind)                                                                 \
    void HC_Show_##Name##_Length(int* length) {                                                    \
        HC_API(HC_Show_##Name##_Length);                                                           \
        const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::Kind);        \
        Put(length, attribute ? static_cast<int>(LocalText(*attribute).size()) : 0);               \
    }

HC_TEXT_LENGTH(User_Options, UserOptions)
HC_TEXT_LENGTH(Unicode_Options, UnicodeOptions)
HC_TEXT_LENGTH(Color_Map, ColorMap)

void HC_Set_Geometry_Options(const char* options) {
    HC_API(HC_Set_Geometry_Options);
    Slot target = Target();
    const Object* object = Current().Get(target);
    if (!object) return;
    if (object->kind == ObjectKind::Segment) {
        ReportError("geometry options belong to geometry items: open one first");
        return;
    }
    if (Trim(Text(options)).empty())
        Current().RemoveAttribute(target, ContentKind::GeometryOptions);
    else
        Current().SetText(target, ContentKind::GeometryOptions, Text(options));
}

void HC_Show_Geometry_Options(char* options) {
    HC_API(HC_Show_Geometry_Options);
    // Unset geometry options read as an empty text: asking is how a caller finds out.
    const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::GeometryOptions);
    CopyOut(attribute ? LocalText(*attribute) : std::string(), options);
}

void HC_Define_System_Options(const char* options) {
    HC_API(HC_Define_System_Options);
    OptionList parsed;
    if (!OptionList::Parse(Text(options), parsed)) {
        ReportError("cannot understand the options \"" + std::string(Text(options)) + "\"");
        return;
    }
    Current().SystemOptions().Merge(parsed);
}

void HC_Show_System_Options(char* options) {
    HC_API(HC_Show_System_Options);
    CopyOut(Current().SystemOptions().Format(), options);
}

// --- Numbers -------------------------------------------------------------------------------------

void HC_Set_User_Value(int64_t value) {
    HC_API(HC_Set_User_Value);
    Slot target = Target();
    if (target == kNoSlot) return;
    Current().ObtainAttribute(target, ContentKind::UserValue).integer = value;
    Current().AttributeChanged(target, ContentKind::UserValue);
}

void HC_UnSet_User_Value(void) {
    HC_API(HC_UnSet_User_Value);
    Remove(ContentKind::UserValue);
}

void HC_Show_User_Value(int64_t* value) {
    HC_API(HC_Show_User_Value);
    const Attribute* attribute = Local(ContentKind::UserValue);
    Put(value, attribute ? attribute->integer : int64_t{0});
}

void HC_PShow_Net_User_Value(int keyCount, const HC_KEY* keys, int64_t* value) {
    HC_API(HC_PShow_Net_User_Value);
    const Attribute* attribute = Nearest(Net(keyCount, keys, ContentKind::UserValue));
    Put(value, attribute ? attribute->integer : int64_t{0});
}

void HC_Set_Text_Spacing(double spacing) {
    HC_API(HC_Set_Text_Spacing);
    SetNumbers(ContentKind::TextSpacing, {float(spacing)});
}

void HC_UnSet_Text_Spacing(void) {
    HC_API(HC_UnSet_Text_Spacing);
    Remove(ContentKind::TextSpacing);
}

void HC_Show_Text_Spacing(float* spacing) {
    HC_API(HC_Show_Text_Spacing);
    PutNumbers(Local(ContentKind::TextSpacing), {spacing});
}

void HC_PShow_Net_Text_Spacing(int keyCount, const HC_KEY* keys, float* spacing) {
    HC_API(HC_PShow_Net_Text_Spacing);
    PutNumbers(Nearest(Net(keyCount, keys, ContentKind::TextSpacing)), {spacing});
}

void HC_Set_Text_Path(double x, double y, double z) {
    HC_API(HC_Set_Text_Path);
    SetNumbers(ContentKind::TextPath, {float(x), float(y), float(z)});
}

void HC_UnSet_Text_Path(void) {
    HC_API(HC_UnSet_Text_Path);
    Remove(ContentKind::TextPath);
}

void HC_Show_Text_Path(float* x, float* y, float* z) {
    HC_API(HC_Show_Text_Path);
    PutNumbers(Local(ContentKind::TextPath), {x, y, z});
}

void HC_PShow_Net_Text_Path(int keyCount, const HC_KEY* keys, float* x, float* y, float* z) {
    HC_API(HC_PShow_Net_Text_Path);
    PutNumbers(Nearest(Net(keyCount, keys, ContentKind::TextPath)), {x, y, z});
}

void HC_Set_Window(double left, double right, double bottom, double top) {
    HC_API(HC_Set_Window);
    if (!(left < right && bottom < top)) {
        ReportError("a window needs left < right and bottom < top");
        return;
    }
    SetNumbers(ContentKind::Window, {float(left), float(right), float(bottom), float(top)});
}

void HC_UnSet_Window(void) {
    HC_API(HC_UnSet_Window);
    Remove(ContentKind::Window);
}

void HC_Show_Window(float* left, float* right, float* bottom, float* top) {
    HC_API(HC_Show_Window);
    PutNumbers(Local(ContentKind::Window), {left, right, bottom, top});
}

void HC_PShow_Net_Window(int keyCount, const HC_KEY* keys, float* left, float* right, float* bottom,
                         float* top) {
    HC_API(HC_PShow_Net_Window);
    PutNumbers(Nearest(Net(keyCount, keys, ContentKind::Window)), {left, right, bottom, top});
}

// --- Matrices ------------------------------------------------------------------------------------

#define HC_MATRIX_ATTRIBUTE(Name, Kind)                                                            \
    void HC_Set_##Name(const float* matrix) {                                                      \
        HC_API(HC_Set_##Name);                                                                     \
        SetMatrix(ContentKind::Kind, matrix);                                                      \
    }                                                                                              \
    void HC_UnSet_##Name(void) {                                                                   \
        HC_API(HC_UnSet_##Name);                                                                   \
        Remove(ContentKind::Kind);                                                                 \
    }                                                                                              \
    void HC_Show_##Name(float* matrix) {                                                           \
        HC_API(HC_Show_##Name);                                                                    \
        ShowMatrix(Local(ContentKind::Kind), matrix);                                              \
    }                                                                                              \
    void HC_PShow_Net_##Name(int keyCount, const HC_KEY* keys, float* matrix) {                    \
        HC_API(HC_PShow_Net_##Name);                                                               \
        NetMatrix(Net(keyCount, keys, ContentKind::Kind, false), matrix);                          \
    }

HC_MATRIX_ATTRIBUTE(Modelling_Matrix, ModellingMatrix)
HC_MATRIX_ATTRIBUTE(Texture_Matrix, TextureMatrix)

// --- Camera --------------------------------------------------------------------------------------

void HC_Set_Camera(const HC_POINT* position, const HC_POINT* target, const HC_VECTOR* up,
                   double width, double height, const char* projection) {
    HC_API(HC_Set_Camera);
    if (!position || !target || !up) {
        ReportError("a camera needs a position, a target and an up vector");
        return;
    }
    const Attribute* present = Current().LocalAttribute(Target(), ContentKind::Camera);
    float nearLimit = Number(present, 11);
    std::string word = ToLower(Trim(Text(projection)));
    SetNumbers(ContentKind::Camera,
               {position->x, position->y, position->z, target->x, target->y, target->z, up->x,
                up->y, up->z, float(width), float(height), nearLimit},
               word.empty() ? "perspective" : word);
}

void HC_Set_Camera_Near_Limit(double limit) {
    HC_API(HC_Set_Camera_Near_Limit);
    Slot target = Target();
    if (!Current().LocalAttribute(target, ContentKind::Camera)) {
        if (target != kNoSlot) ReportError("no camera is set here");
        return;
    }
    Attribute& camera = Current().ObtainAttribute(target, ContentKind::Camera);
    camera.numbers.resize(12);
    camera.numbers[11] = float(limit);
    Current().AttributeChanged(target, ContentKind::Camera);
}

void HC_UnSet_Camera(void) {
    HC_API(HC_UnSet_Camera);
    Remove(ContentKind::Camera);
}

void HC_Show_Camera(HC_POINT* position, HC_POINT* target, HC_VECTOR* up, float* width,
                    float* height, char* projection) {
    HC_API(HC_Show_Camera);
    ShowCamera(Local(ContentKind::Camera), position, target, up, width, height, projection);
}

void HC_Show_Camera_Near_Limit(float* limit) {
    HC_API(HC_Show_Camera_Near_Limit);
    Put(limit, Number(Local(ContentKind::Camera), 11));
}

void HC_PShow_Net_Camera(int keyCount, const HC_KEY* keys, HC_POINT* position, HC_POINT* target,
                         HC_VECTOR* up, float* width, float* height, char* projection) {
    HC_API(HC_PShow_Net_Camera);
    ShowCamera(Nearest(Net(keyCount, keys, ContentKind::Camera)), position, target, up, width,
               height, projection);
}

void HC_PShow_Net_Camera_Near_Limit(int keyCount, const HC_KEY* keys, float* limit) {
    HC_API(HC_PShow_Net_Camera_Near_Limit);
    Put(limit, Number(Nearest(Net(keyCount, keys, ContentKind::Camera)), 11));
}

// --- Weights -------------------------------------------------------------------------------------

#define HC_WEIGHT_ATTRIBUTE(Name, NetVariable, Kind)                                               \
    void HC_Set_##Name(double weight) {                                                            \
        HC_API(HC_Set_##Name);                                                                     \
        SetWeight(ContentKind::Kind, weight);                                                      \
    }                                                                                              \
    void HC_Set_Variable_##Name(const char* weight) {                                              \
        HC_API(HC_Set_Variable_##Name);                                                            \
        SetVariableWeight(ContentKind::Kind, weight);                                              \
    }                                                                                              \
    void HC_UnSet_##Name(void) {                                                                   \
        HC_API(HC_UnSet_##Name);                                                                   \
        Remove(ContentKind::Kind);                                                                 \
    }                                                                                              \
    void HC_Show_##Name(float* weight) {                                                           \
        HC_API(HC_Show_##Name);                                                                    \
        Put(weight, Number(Local(ContentKind::Kind), 0));                                          \
    }                                                                                              \
    void HC_Show_Variable_##Name(char* weight) {                                                   \
        HC_API(HC_Show_Variable_##Name);                                                           \
        CopyOut(WeightText(Local(ContentKind::Kind)), weight);                                     \
    }                                                                                              \
    void HC_PShow_Net_##Name(int keyCount, const HC_KEY* keys, float* weight) {                    \
        HC_API(HC_PShow_Net_##Name);                                                               \
        Put(weight, Number(Nearest(Net(keyCount, keys, ContentKind::Kind)), 0));                   \
    }                                                                                              \
    void HC_PShow_Net_##NetVariable(int keyCount, const HC_KEY* keys, char* weight) {              \
        HC_API(HC_PShow_Net_##NetVariable);                                                        \
        CopyOut(WeightText(Nearest(Net(keyCount, keys, ContentKind::Kind))), weight);              \
    }

HC_WEIGHT_ATTRIBUTE(Edge_Weight, Var_Edge_Weight, EdgeWeight)
HC_WEIGHT_ATTRIBUTE(Line_Weight, Var_Line_Weight, LineWeight)
HC_WEIGHT_ATTRIBUTE(Marker_Size, Var_Marker_Size, MarkerSize)

// --- Clip region ---------------------------------------------------------------------------------

void HC_Set_Polygonal_Clip_Region(int count, const HC_POINT* points, const char* options) {
    HC_API(HC_Set_Polygonal_Clip_Region);
    if (count < 3 || !points) {
        ReportError("a clip region needs at least three points");
        return;
    }
    Slot target = Target();
    if (target == kNoSlot) return;
    Attribute& region = Current().ObtainAttribute(target, ContentKind::ClipRegion);
    region.points.assign(points, points + count);
    region.text = Trim(Text(options));
    Current().AttributeChanged(target, ContentKind::ClipRegion);
}

void HC_UnSet_Clip_Region(void) {
    HC_API(HC_UnSet_Clip_Region);
    Remove(ContentKind::ClipRegion);
}

void HC_Show_Clip_Region_Size(int* loops, int* total, char* options) {
    HC_API(HC_Show_Clip_Region_Size);
    const Attribute* region = Local(ContentKind::ClipRegion);
    ShowClipRegion(region, loops, nullptr, nullptr, options);
    Put(total, region ? static_cast<int>(region->points.size()) : 0);
}

void HC_Show_Clip_Region(int* loops, int* loopCounts, HC_POINT* points, char* options) {
    HC_API(HC_Show_Clip_Region);
    ShowClipRegion(Local(ContentKind::ClipRegion), loops, loopCounts, points, options);
}

void HC_PShow_Net_Clip_Region_Size(int keyCount, const HC_KEY* keys, int* loops, int* total,
                                   char* options) {
    HC_API(HC_PShow_Net_Clip_Region_Size);
    const Attribute* region = Nearest(Net(keyCount, keys, ContentKind::ClipRegion));
    ShowClipRegion(region, loops, nullptr, nullptr, options);
    Put(total, region ? static_cast<int>(region->points.size()) : 0);
}

void HC_PShow_Net_Clip_Region(int keyCount, const HC_KEY* keys, int* loops, int* loopCounts,
                              HC_POINT* points, char* options) {
    HC_API(HC_PShow_Net_Clip_Region);
    ShowClipRegion(Nearest(Net(keyCount, keys, ContentKind::ClipRegion)), loops, loopCounts, points,
                   options);
}

// --- User indices and user data ------------------------------------------------------------------

void HC_Set_User_Index(long index, const void* value) {
    HC_API(HC_Set_User_Index);
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    SetEntry(ContentKind::UserIndex, index, std::move(bytes));
}

void HC_Show_User_Index_Count(int* count) {
    HC_API(HC_Show_User_Index_Count);
    Put(count, EntryCount(ContentKind::UserIndex));
}

void HC_Show_User_Indices(int* count, long* indices, void** values) {
    HC_API(HC_Show_User_Indices);
    const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::UserIndex);
    Put(count, EntryCount(ContentKind::UserIndex));
    if (!attribute) return;
    size_t i = 0;
    for (const auto& [index, bytes] : attribute->entries) {
        if (indices) indices[i] = index;
        if (values) std::memcpy(&values[i], bytes.data(), sizeof(void*));
        ++i;
    }
}

void HC_Show_One_User_Index(long index, void** value) {
    HC_API(HC_Show_One_User_Index);
    const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::UserIndex);
    auto entry = attribute ? attribute->entries.find(index) : decltype(attribute->entries.end()){};
    if (!attribute || entry == attribute->entries.end()) {
        ReportError("no user index " + std::to_string(index) + " is set here");
        Put<void*>(value, nullptr);
        return;
    }
    if (value) std::memcpy(value, entry->second.data(), sizeof(void*));
}

void HC_UnSet_One_User_Index(long index) {
    HC_API(HC_UnSet_One_User_Index);
    UnSetEntry(ContentKind::UserIndex, index);
}

void HC_Set_User_Data(long index, const void* data, long size) {
    HC_API(HC_Set_User_Data);
    if (size < 0 || (size > 0 && !data)) {
        ReportError("bad user data");
        return;
    }
    SetEntry(ContentKind::UserData, index,
             std::string(static_cast<const char*>(data), static_cast<size_t>(size)));
}

void HC_Show_User_Data_Count(int* count) {
    HC_API(HC_Show_User_Data_Count);
    Put(count, EntryCount(ContentKind::UserData));
}

void HC_Show_User_Data_Indices(int* count, long* indices) {
    HC_API(HC_Show_User_Data_Indices);
    const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::UserData);
    Put(count, EntryCount(ContentKind::UserData));
    if (attribute && indices)
        for (const auto& entry : attribute->entries)
            *indices++ = entry.first;
}

void HC_Show_One_User_Data(long index, void* data, long size, long* actualSize) {
    HC_API(HC_Show_One_User_Data);
    const Attribute* attribute = Current().LocalAttribute(Target(), ContentKind::UserData);
    auto entry = attribute ? attribute->entries.find(index) : decltype(attribute->entries.end()){};
    if (!attribute || entry == attribute->entries.end()) {
        ReportError("no user data " + std::to_string(index) + " is set here");
        Put(actualSize, 0L);
        return;
    }
    Put(actualSize, static_cast<long>(entry->second.size()));
    if (data && size > 0)
        std::memcpy(data, entry->second.data(), std::min(entry->second.size(), size_t(size)));
}

void HC_UnSet_One_User_Data(long index) {
    HC_API(HC_UnSet_One_User_Data);
    UnSetEntry(ContentKind::UserData, index);
}

// --- Conditional actions -------------------------------------------------------------------------

void HC_Set_Conditional_Action(const char* options, const char* condition) {
    HC_API(HC_Set_Conditional_Action);
    std::string_view action = Unbracket(Text(options));
    size_t equals = action.find('=');
    ConditionalAction made{ToLower(Trim(action.substr(0, equals))),
                           equals == std::string_view::npos
                               ? std::string()
                               : std::string(Trim(action.substr(equals + 1))),
                           std::string(Unbracket(Text(condition)))};
    if (made.type.empty() || made.condition.empty()) {
        ReportError("a conditional action needs a type and a condition");
        return;
    }
    Slot target = Target();
    if (target == kNoSlot) return;
    Attribute& attribute = Current().ObtainAttribute(target, ContentKind::ConditionalAction);
    auto same = std::find_if(attribute.actions.begin(), attribute.actions.end(),
                             [&](const ConditionalAction& a) { return a.type == made.type; });
    if (same != attribute.actions.end())
        *same = std::move(made);
    else
        attribute.actions.push_back(std::move(made));
    Current().AttributeChanged(target, ContentKind::ConditionalAction);
}

void HC_UnSet_Conditional_Actions(void) {
    HC_API(HC_UnSet_Conditional_Actions);
    Remove(ContentKind::ConditionalAction);
}

void HC_Show_Cond_Action_Types(char* types) {
    HC_API(HC_Show_Cond_Action_Types);
    const Attribute* attribute = Local(ContentKind::ConditionalAction);
    std::string list;
    if (attribute)
        for (const ConditionalAction& action : attribute->actions)
            list += (list.empty() ? "" : ",") + action.type;
    CopyOut(list, types);
}

void HC_Show_One_Conditional_Action(const char* type, char* options, char* condition) {
    HC_API(HC_Show_One_Conditional_Action);
    const ConditionalAction* action =
        FindAction(Current().LocalAttribute(Target(), ContentKind::ConditionalAction), Text(type));
    if (!action)
        ReportError("no conditional action \"" + std::string(Text(type)) + "\" is set here");
    CopyOut(action ? action->options : std::string(), options);
    CopyOut(action ? action->condition : std::string(), condition);
}

} // extern "C"
