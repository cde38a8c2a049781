// The HC_ functions: thin wrappers that name themselves for error reports and forward to the
// process-wide database and the session over it.
#include "hc/api_support.h"
#include "hc/metafile.h"

using namespace hc;
using namespace hc::api;

namespace {

// A segment's pathname into a caller's buffer ("" for no segment). Callers ask this once per item
// of long searches: the text's capacity is kept between calls (the database is single-threaded).
void CopyPathname(const Database& db, Slot segment, char* buffer) {
    static std::string path;
    if (segment == kNoSlot)
        path.clear();
    else
        db.Pathname(segment, path);
    CopyOut(path, buffer);
}

Link* LinkOf(HC_KEY key, ContentKind type) {
    Database& db = Current();
    Slot slot = CurrentSession().Require(key);
    Object* object = db.Get(slot);
    if (object && object->kind == ObjectKind::Link && object->type == type)
        return static_cast<Link*>(object);
    if (object) ReportError("key " + KeyText(key) + " is not a " + std::string(TypeWord(type)));
    return nullptr;
}

// Where a new link goes: a reference made while a geometry item is open is attached to that
// item, everything else goes into the current segment.
Slot LinkOwner(ContentKind type) {
    Database& db = Current();
    Slot target = CurrentSession().AttributeTarget();
    Object* object = db.Get(target);
    if (type == ContentKind::Reference && object && object->kind != ObjectKind::Segment)
        return target;
    return CurrentSegmentOrReport();
}

HC_KEY AddLinkByPath(ContentKind type, const char* segment, const char* condition) {
    Database& db = Current();
    Slot target = CurrentSession().ResolvePath(Text(segment), true);
    if (target == kNoSlot) return 0;
    return KeyOrZero(db.AddLink(LinkOwner(type), type, target, Text(condition)));
}

HC_KEY AddLinkByKey(ContentKind type, HC_KEY key, const char* condition,
                    const char* filter = nullptr) {
    Database& db = Current();
    Slot target = CurrentSession().Require(key);
    if (target == kNoSlot) return 0;
    Object* object = db.Get(target);
    bool segment = object->kind == ObjectKind::Segment;
    if (!segment && (type != ContentKind::Reference || object->kind != ObjectKind::Geometry)) {
        ReportError("key " + KeyText(key) + " cannot be the target of a " +
                    std::string(TypeWord(type)));
        return 0;
    }
    return KeyOrZero(db.AddLink(LinkOwner(type), type, target, Text(condition), Text(filter)));
}

void ShowLink(HC_KEY key, ContentKind type, char* pathname, char* condition) {
    CopyOut("", pathname);
    CopyOut("", condition);
    if (Link* link = LinkOf(key, type)) {
        CopyOut(Current().Pathname(Current().LinkTarget(*link)), pathname);
        CopyOut(link->condition, condition);
    }
}

HC_KEY LinkTargetKey(HC_KEY key, ContentKind type, char* pathname) {
    CopyOut("", pathname);
    Link* link = LinkOf(key, type);
    if (!link) return 0;
    Slot target = Current().LinkTarget(*link);
    if (target != kNoSlot) CopyOut(Current().Pathname(target), pathname);
    return KeyOrZero(target);
}

void DefineNamedStyle(std::string_view name, Slot source) {
    if (!Current().GetSegment(source)) {
        ReportError("a named style's source must be a segment");
        return;
    }
    Definition definition;
    definition.name = name;
    definition.segment = source;
    Current().Define(CurrentSegmentOrReport(), ContentKind::NamedStyleDefinition,
                     std::move(definition));
}

} // namespace

namespace {
// A segment's reference items; a geometry item's attached references; a reference's target.
std::vector<Slot> ReferenceKeys(HC_KEY key) {
    Database& db = Current();
    Object* object = db.Get(CurrentSession().Require(key));
    std::vector<Slot> slots;
    if (!object) return slots;
    if (object->kind == ObjectKind::Segment) {
        for (Found found : db.Contents(
                 object->slot,
                 [] {
                     std::vector<std::string> unused;
                     return Filter::Parse("references", unused);
                 }(),
                 false, false))
            slots.push_back(found.slot);
    } else if (object->kind == ObjectKind::Geometry) {
        slots = static_cast<Geometry*>(object)->References();
    } else if (object->type == ContentKind::Reference) {
        if (Slot target = db.LinkTarget(*static_cast<Link*>(object)); target != kNoSlot)
            slots.push_back(target);
    }
    return slots;
}
} // namespace

extern "C" {

void HC_Define_Error_Handler(HC_ERROR_HANDLER handler) {
    SetErrorHandler(handler);
}

void HC_Reset_System(void) {
    ChangeScope changeScope;
    Current().Reset();
    CurrentSession().Reset();
}

// --- Segments ------------------------------------------------------------------------------------

HC_KEY HC_Open_Segment(const char* segment) {
    HC_API(HC_Open_Segment);
    return KeyOrZero(CurrentSession().OpenSegment(Text(segment)));
}

void HC_Open_Segment_By_Key(HC_KEY key) {
    HC_API(HC_Open_Segment_By_Key);
    CurrentSession().OpenSegmentByKey(key);
}

void HC_Close_Segment(void) {
    HC_API(HC_Close_Segment);
    CurrentSession().CloseSegment();
}

HC_KEY HC_Create_Segment(const char* segment) {
    HC_API(HC_Create_Segment);
    return KeyOrZero(CurrentSession().ResolvePath(Text(segment), true));
}

void HC_Delete_Segment(const char* segment) {
    HC_API(HC_Delete_Segment);
    Database& db = Current();
    for (Slot slot : CurrentSession().ResolvePattern(Text(segment)))
        db.DeleteObject(slot);
}

void HC_Delete_By_Key(HC_KEY key) {
    HC_API(HC_Delete_By_Key);
    Database& db = Current();
    if (Slot slot = CurrentSession().Require(key); slot != kNoSlot) db.DeleteObject(slot);
}

void HC_Rename_Segment(const char* oldName, const char* newName) {
    HC_API(HC_Rename_Segment);
    Current().RenameSegment(CurrentSession().CurrentSegment(), Text(oldName), Text(newName));
}

void HC_Move_By_Key(HC_KEY key, const char* newOwner) {
    HC_API(HC_Move_By_Key);
    Database& db = Current();
    if (Slot slot = CurrentSession().Require(key); slot != kNoSlot)
        db.MoveObject(slot, CurrentSession().CurrentSegment(), Text(newOwner));
}

void HC_Copy_Segment(const char* oldName, const char* newName) {
    HC_API(HC_Copy_Segment);
    Current().CopySegment(CurrentSession().CurrentSegment(), Text(oldName), Text(newName));
}

void HC_Flush_Contents(const char* segment, const char* filter) {
    HC_API(HC_Flush_Contents);
    Current().FlushContents(CurrentSession().CurrentSegment(), Text(segment), Text(filter));
}

void HC_Show_Segment(HC_KEY key, char* pathname) {
    HC_API(HC_Show_Segment);
    Database& db = Current();
    Slot slot = CurrentSession().Require(key);
    if (slot != kNoSlot && !db.GetSegment(slot)) slot = db.OwnerSegment(slot);
    CopyPathname(db, slot, pathname);
}

// --- Keys ----------------------------------------------------------------------------------------

void HC_Show_Key_Type(HC_KEY key, char* type) {
    HC_API(HC_Show_Key_Type);
    Database& db = Current();
    Object* object = db.Get(CurrentSession().Require(key));
    CopyOut(object ? TypeWord(object->type) : std::string_view(), type);
}

HC_KEY HC_Show_Original_Key(HC_KEY key) {
    HC_API(HC_Show_Original_Key);
    Slot slot = CurrentSession().Require(key);
    return slot == kNoSlot ? 0 : OriginalKey(slot);
}

HC_KEY HC_Show_Owner_By_Key(HC_KEY key, char* ownerPathname) {
    HC_API(HC_Show_Owner_By_Key);
    Database& db = Current();
    Slot slot = CurrentSession().Require(key);
    Slot owner = db.OwnerSegment(slot);
    if (slot != kNoSlot && owner == kNoSlot) ReportError("the root segment has no owner");
    CopyOut(owner == kNoSlot ? std::string() : db.Pathname(owner), ownerPathname);
    return KeyOrZero(owner);
}

HC_KEY HC_Show_Owner_Original_Key(HC_KEY key) {
    HC_API(HC_Show_Owner_Original_Key);
    Database& db = Current();
    Slot slot = CurrentSession().Require(key);
    Slot owner = db.OwnerSegment(slot);
    if (slot != kNoSlot && owner == kNoSlot) ReportError("the root segment has no owner");
    return owner == kNoSlot ? 0 : OriginalKey(owner);
}

HC_KEY HC_Renumber_Key(HC_KEY oldKey, HC_KEY newKey, const char* scope) {
    HC_API(HC_Renumber_Key);
    Slot slot = CurrentSession().Require(oldKey);
    return slot == kNoSlot ? 0 : Current().Renumber(slot, newKey, Text(scope));
}

// --- Contents searches ---------------------------------------------------------------------------

void HC_Begin_Contents_Search(const char* scope, const char* filter) {
    HC_API(HC_Begin_Contents_Search);
    CurrentSession().BeginContentsSearch(Text(scope), Text(filter));
}

bool HC_Find_Contents(char* type, HC_KEY* key) {
    HC_API(HC_Find_Contents);
    std::string_view word;
    HC_KEY found = 0;
    bool more = CurrentSession().FindContents(word, found);
    CopyOut(word, type);
    Put(key, found);
    return more;
}

void HC_Show_Contents_Count(int* count) {
    HC_API(HC_Show_Contents_Count);
    Put(count, CurrentSession().ContentsCount());
}

void HC_End_Contents_Search(void) {
    HC_API(HC_End_Contents_Search);
    CurrentSession().EndContentsSearch();
}

void HC_Begin_Segment_Search(const char* segment) {
    HC_API(HC_Begin_Segment_Search);
    CurrentSession().BeginSegmentSearch(Text(segment));
}

bool HC_Find_Segment(char* segment) {
    HC_API(HC_Find_Segment);
    Database& db = Current();
    Slot found = CurrentSession().FindSegment();
    if (found == kNoSlot) return false;
    CopyPathname(db, found, segment);
    return true;
}

void HC_Show_Segment_Count(int* count) {
    HC_API(HC_Show_Segment_Count);
    Put(count, CurrentSession().SegmentSearchCount());
}

void HC_End_Segment_Search(void) {
    HC_API(HC_End_Segment_Search);
    CurrentSession().EndSegmentSearch();
}

int HC_Show_Existence(const char* filter) {
    HC_API(HC_Show_Existence);
    Database& db = Current();
    if (ToLower(Trim(Text(filter))) == "self")
        return db.GetSegment(CurrentSession().CurrentSegment()) ? 1 : 0;
    Filter parsed = Filter::ParseOrReport(Text(filter));
    // An open geometry item answers for its own attributes, the current segment otherwise.
    Slot target = CurrentSession().AttributeTarget();
    return db.Count(db.Get(target) ? target : CurrentSession().CurrentSegment(), parsed);
}

int HC_Show_Existence_By_Key(HC_KEY key, const char* filter) {
    HC_API(HC_Show_Existence_By_Key);
    Database& db = Current();
    Slot slot = CurrentSession().Resolve(key);
    if (ToLower(Trim(Text(filter))) == "self") return slot == kNoSlot ? 0 : 1;
    if (slot == kNoSlot) return 0;
    Filter parsed = Filter::ParseOrReport(Text(filter));
    return db.Count(slot, parsed);
}

int HC_QShow_Existence(const char* segment, const char* filter) {
    HC_API(HC_QShow_Existence);
    Database& db = Current();
    Slot slot = kNoSlot;
    {
        // Asking whether a segment exists is no misuse: its absence is answered, not reported.
        ErrorSilence silence;
        slot = CurrentSession().ResolvePath(Text(segment), false);
    }
    if (slot == kNoSlot) return 0;
    return HC_Show_Existence_By_Key(db.KeyOf(slot), filter);
}

// --- Includes, styles, named styles --------------------------------------------------------------

HC_KEY HC_Include_Segment(const char* segment) {
    HC_API(HC_Include_Segment);
    return AddLinkByPath(ContentKind::Include, segment, nullptr);
}

HC_KEY HC_Include_Segment_By_Key(HC_KEY segmentKey) {
    HC_API(HC_Include_Segment_By_Key);
    return AddLinkByKey(ContentKind::Include, segmentKey, nullptr);
}

HC_KEY HC_Conditional_Include(const char* segment, const char* condition) {
    HC_API(HC_Conditional_Include);
    return AddLinkByPath(ContentKind::Include, segment, condition);
}

HC_KEY HC_Conditional_Include_By_Key(HC_KEY segmentKey, const char* condition) {
    HC_API(HC_Conditional_Include_By_Key);
    return AddLinkByKey(ContentKind::Include, segmentKey, condition);
}

HC_KEY HC_Show_Include_Segment(HC_KEY key, char* pathname) {
    HC_API(HC_Show_Include_Segment);
    return LinkTargetKey(key, ContentKind::Include, pathname);
}

void HC_Show_Conditional_Include(HC_KEY key, char* pathname, char* condition) {
    HC_API(HC_Show_Conditional_Include);
    ShowLink(key, ContentKind::Include, pathname, condition);
}

HC_KEY HC_Style_Segment(const char* segment) {
    HC_API(HC_Style_Segment);
    return AddLinkByPath(ContentKind::Style, segment, nullptr);
}

HC_KEY HC_Style_Segment_By_Key(HC_KEY segmentKey) {
    HC_API(HC_Style_Segment_By_Key);
    return AddLinkByKey(ContentKind::Style, segmentKey, nullptr);
}

HC_KEY HC_Conditional_Style(const char* segment, const char* condition) {
    HC_API(HC_Conditional_Style);
    return AddLinkByPath(ContentKind::Style, segment, condition);
}

HC_KEY HC_Conditional_Style_By_Key(HC_KEY segmentKey, const char* condition) {
    HC_API(HC_Conditional_Style_By_Key);
    return AddLinkByKey(ContentKind::Style, segmentKey, condition);
}

HC_KEY HC_Show_Style_Segment(HC_KEY key, char* pathname) {
    HC_API(HC_Show_Style_Segment);
    return LinkTargetKey(key, ContentKind::Style, pathname);
}

void HC_Show_Conditional_Style(HC_KEY key, char* pathname, char* condition) {
    HC_API(HC_Show_Conditional_Style);
    ShowLink(key, ContentKind::Style, pathname, condition);
}

void HC_Define_Named_Style(const char* styleName, const char* sourceSegment) {
    HC_API(HC_Define_Named_Style);
    Slot source = CurrentSession().ResolvePath(Text(sourceSegment), true);
    if (source != kNoSlot) DefineNamedStyle(Text(styleName), source);
}

void HC_Define_Named_Style_By_Key(const char* styleName, HC_KEY sourceKey) {
    HC_API(HC_Define_Named_Style_By_Key);
    Slot source = CurrentSession().Require(sourceKey);
    if (source != kNoSlot) DefineNamedStyle(Text(styleName), source);
}

void HC_UnDefine_Named_Style(const char* styleName) {
    HC_API(HC_UnDefine_Named_Style);
    if (!Current().UnDefine(CurrentSegmentOrReport(), ContentKind::NamedStyleDefinition,
                            Text(styleName)))
        ReportError("no named style \"" + std::string(Text(styleName)) + "\" is defined here");
}

HC_KEY HC_Show_Named_Style(const char* styleName, char* sourceSegment) {
    HC_API(HC_Show_Named_Style);
    Database& db = Current();
    Slot source = db.FindNamedStyle(CurrentSession().CurrentSegment(), Text(styleName));
    if (source == kNoSlot) ReportError("no named style \"" + std::string(Text(styleName)) + "\"");
    CopyOut(source == kNoSlot ? std::string() : db.Pathname(source), sourceSegment);
    return KeyOrZero(source);
}

HC_KEY HC_Named_Style_Segment(const char* styleName) {
    HC_API(HC_Named_Style_Segment);
    return KeyOrZero(Current().AddNamedStyle(CurrentSegmentOrReport(), Text(styleName), {}));
}

HC_KEY HC_Conditional_Named_Style(const char* styleName, const char* condition) {
    HC_API(HC_Conditional_Named_Style);
    return KeyOrZero(
        Current().AddNamedStyle(CurrentSegmentOrReport(), Text(styleName), Text(condition)));
}

void HC_Show_Named_Style_Segment(HC_KEY key, char* styleName) {
    HC_API(HC_Show_Named_Style_Segment);
    Link* link = LinkOf(key, ContentKind::NamedStyle);
    CopyOut(link ? link->styleName : std::string(), styleName);
}

// --- References ----------------------------------------------------------------------------------

HC_KEY HC_Reference_Geometry(const char* segment) {
    HC_API(HC_Reference_Geometry);
    return AddLinkByPath(ContentKind::Reference, segment, nullptr);
}

HC_KEY HC_Reference_Geometry_By_Key(HC_KEY key) {
    HC_API(HC_Reference_Geometry_By_Key);
    return AddLinkByKey(ContentKind::Reference, key, nullptr);
}

HC_KEY HC_Conditional_Reference(const char* segment, const char* condition) {
    HC_API(HC_Conditional_Reference);
    return AddLinkByPath(ContentKind::Reference, segment, condition);
}

HC_KEY HC_Conditional_Reference_By_Key(HC_KEY key, const char* condition) {
    HC_API(HC_Conditional_Reference_By_Key);
    return AddLinkByKey(ContentKind::Reference, key, condition);
}

HC_KEY HC_Filtered_Reference_By_Key(HC_KEY key, const char* condition, const char* filter) {
    HC_API(HC_Filtered_Reference_By_Key);
    return AddLinkByKey(ContentKind::Reference, key, condition, filter);
}

HC_KEY HC_Show_Reference_Geometry(HC_KEY key) {
    HC_API(HC_Show_Reference_Geometry);
    return LinkTargetKey(key, ContentKind::Reference, nullptr);
}

HC_KEY HC_Show_Reference_Geometry_Filt(HC_KEY key, char* filter) {
    HC_API(HC_Show_Reference_Geometry_Filt);
    Link* link = LinkOf(key, ContentKind::Reference);
    CopyOut(link ? link->filter : std::string(), filter);
    return link ? KeyOrZero(Current().LinkTarget(*link)) : 0;
}

HC_KEY HC_Show_Conditional_Reference(HC_KEY key, char* condition) {
    HC_API(HC_Show_Conditional_Reference);
    Link* link = LinkOf(key, ContentKind::Reference);
    CopyOut(link ? link->condition : std::string(), condition);
    return link ? KeyOrZero(Current().LinkTarget(*link)) : 0;
}

void HC_Show_Reference_Keys_Count(HC_KEY key, int* count) {
    HC_API(HC_Show_Reference_Keys_Count);
    Put(count, static_cast<int>(ReferenceKeys(key).size()));
}

void HC_Show_Reference_Keys(HC_KEY key, int* count, HC_KEY* keys) {
    HC_API(HC_Show_Reference_Keys);
    std::vector<Slot> slots = ReferenceKeys(key);
    Put(count, static_cast<int>(slots.size()));
    if (keys)
        for (size_t i = 0; i < slots.size(); ++i)
            keys[i] = Current().KeyOf(slots[i]);
}

// --- Open geometry -------------------------------------------------------------------------------

void HC_Open_Geometry(HC_KEY key) {
    HC_API(HC_Open_Geometry);
    CurrentSession().OpenGeometry(key);
}

void HC_Close_Geometry(void) {
    HC_API(HC_Close_Geometry);
    CurrentSession().CloseGeometry();
}

void HC_Begin_Open_Item_Search(void) {
    HC_API(HC_Begin_Open_Item_Search);
    CurrentSession().BeginOpenItemSearch();
}

bool HC_Find_Open_Item(HC_KEY* key, char* type, char* status) {
    HC_API(HC_Find_Open_Item);
    HC_KEY found = 0;
    std::string word;
    bool more = CurrentSession().FindOpenItem(found, word);
    Put(key, found);
    CopyOut(word, type);
    CopyOut("", status);
    return more;
}

void HC_End_Open_Item_Search(void) {
    HC_API(HC_End_Open_Item_Search);
    CurrentSession().EndOpenItemSearch();
}

// --- Text and metafiles --------------------------------------------------------------------------

void HC_Parse_String(const char* text, const char* delimiter, int offset, char* field) {
    HC_API(HC_Parse_String);
    CopyOut(ParseField(Text(text), Text(delimiter), offset), field);
}

void HC_Write_Metafile(const char* segment, const char* file, const char* options) {
    HC_API(HC_Write_Metafile);
    WriteMetafile(CurrentSession(), Text(segment), Text(file), Text(options));
}

HC_KEY HC_Read_Metafile(const char* file, const char* segment, const char* options) {
    HC_API(HC_Read_Metafile);
    return KeyOrZero(ReadMetafile(CurrentSession(), Text(file), Text(segment), Text(options)));
}

} // extern "C"
