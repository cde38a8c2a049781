#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <obsidra/hc.h>

#include "hc/content_kind.h"
#include "hc/journal.h"
#include "hc/name_index.h"
#include "hc/objects.h"
#include "hc/undo_log.h"

namespace hc {

// One item a contents search yields: the object (for attributes and definitions, the segment
// that holds them) and what it is.
struct Found {
    Slot slot;
    ContentKind type;
};

// The scene database: segments with their subsegments, includes, styles, named styles,
// references, geometry and attributes, addressed by keys, and the journal of its changes. The
// caller's state that the C interface implies (what is open, the searches) is a Session's. Paths
// are resolved from a segment the caller names (a session's current segment). Every change is
// recorded in the journal; a call that changes nothing records nothing. Misuse is reported
// through ReportError and answered with nothing.
class Database {
public:
    Database();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Back to a database holding only "/". The journal goes on counting; its history before the
    // reset is forgotten.
    void Reset();
    Journal& Changes() { return m_journal; }
    UndoLog& Undo() { return m_undo; }

    // --- Keys -------------------------------------------------------------------------------
    // The live object a key names (original or renumbered), or kNoSlot. A key renumbered locally
    // is found only in the segment that holds it (localScope: "/" unless told).
    Slot Resolve(HC_KEY key, Slot localScope = 0) const;
    // As Resolve, but reports a dead or unknown key.
    Slot Require(HC_KEY key, Slot localScope = 0) const;
    Object* Get(Slot slot) const {
        return slot < m_objects.size() ? m_objects[slot].get() : nullptr;
    }
    // Inline: walks and searches ask this once per object.
    Segment* GetSegment(Slot slot) const {
        Object* object = Get(slot);
        return object && object->kind == ObjectKind::Segment ? static_cast<Segment*>(object)
                                                             : nullptr;
    }
    // The neighbours of an object in its owner's list (kNoSlot at either end). They live in a
    // table of their own, so walking a long list reads one small array in order instead of
    // every object it passes.
    Slot Next(Slot slot) const { return m_siblings[slot].next; }
    Slot Prev(Slot slot) const { return m_siblings[slot].prev; }
    // The key an object answers to now: its renumbered key, or else its original key.
    // Without renumbered keys in the database the object itself is not read: long searches
    // then touch only the slot table.
    HC_KEY KeyOf(Slot slot) const {
        const Object* object = Get(slot);
        if (!object) return 0;
        if (m_userKeys.empty()) return OriginalKey(slot);
        return object->renumbered ? RenumberedKey(slot) : OriginalKey(slot);
    }
    HC_KEY Renumber(Slot slot, HC_KEY newKey, std::string_view scope);
    // Whether the object goes by a key that is unique only within its owner.
    bool HasLocalKey(Slot slot) const;
    // The segment that holds an object (for an attached reference, its geometry's segment).
    Slot OwnerSegment(Slot slot) const;
    std::string Pathname(Slot segment) const;
    // As above, into path, whose capacity a caller asking often can keep.
    void Pathname(Slot segment, std::string& path) const;
    Slot Root() const { return 0; }
    size_t LiveObjects() const { return m_live; }

    // --- Segments ---------------------------------------------------------------------------
    // Resolves a path relative to base; with create, missing levels are made and "" makes a new
    // nameless child. Reports and returns kNoSlot on a bad path.
    Slot ResolvePathFrom(Slot base, std::string_view path, bool create);
    // The named child of a segment, made if missing; "" makes a new nameless child.
    Slot FindOrMakeChild(Slot owner, std::string_view name);
    // The segments a pattern names (hc/segment_pattern.h), relative to base: parents before
    // children, children in list order.
    std::vector<Slot> ResolvePatternFrom(Slot base, std::string_view pattern);
    // Deletes an object with everything below it and every link to any of it; the journal hears
    // of the object alone.
    void DeleteObject(Slot slot);
    // The edits by path take their paths relative to base.
    void RenameSegment(Slot base, std::string_view oldPath, std::string_view newPath);
    // Makes a segment nameless, where it stands; its path becomes its key's.
    void DiscardSegmentName(Slot segment);
    void MoveObject(Slot slot, Slot base, std::string_view newOwnerPath);
    void CopySegment(Slot base, std::string_view oldPath, std::string_view newPath);
    void FlushContents(Slot base, std::string_view pattern, std::string_view filter);

    // --- Links ------------------------------------------------------------------------------
    // An include, style or reference in a segment, or a reference attached to a geometry item.
    Slot AddLink(Slot owner, ContentKind type, Slot target, std::string_view condition,
                 std::string_view filter = {});
    Slot AddNamedStyle(Slot owner, std::string_view styleName, std::string_view condition);
    // The source of a named style visible from a segment (its own definitions, then its
    // ancestors'), or kNoSlot.
    Slot FindNamedStyle(Slot segment, std::string_view name) const;

    // --- Definitions (kinds from kFirstDefinition to kLastDefinition) ---------------------------
    // Defines a name in a segment, replacing a definition of the same name (names are
    // case-insensitive).
    void Define(Slot segment, ContentKind kind, Definition definition);
    bool UnDefine(Slot segment, ContentKind kind, std::string_view name);
    // The definition of a name in a segment, or with inherited in the nearest ancestor that
    // has one; null when there is none.
    const Definition* FindDefinition(Slot segment, ContentKind kind, std::string_view name,
                                     bool inherited) const;
    void SetLinkTarget(Slot link, Slot target);
    // The target of a link, kNoSlot when it has none or the target is gone.
    Slot LinkTarget(const Link& link) const;

    // --- Geometry ---------------------------------------------------------------------------
    Geometry* AddGeometry(Slot owner, ContentKind type);
    // Call before changing an item's data in place, and after it GeometryChanged (and
    // PlacementChanged when its shape changed).
    void GeometryChanging(Slot item) { m_undo.ChangingGeometry(item); }
    void GeometryChanged(Slot item);

    // --- Attributes -------------------------------------------------------------------------
    // The attribute set locally on an object, or null.
    const Attribute* LocalAttribute(Slot target, ContentKind kind) const;
    // The attribute of a live object, made empty when missing; call AttributeChanged after
    // changing it (it records the change).
    Attribute& ObtainAttribute(Slot target, ContentKind kind);
    bool RemoveAttribute(Slot target, ContentKind kind);
    void AttributeChanged(Slot target, ContentKind kind);
    // Sets a text attribute: an option string merges into what is set, reporting a text that
    // does not parse; any other text replaces the value.
    void SetText(Slot target, ContentKind kind, std::string_view text);
    // The objects whose attributes make a net value, nearest first: start (a segment or
    // geometry item) and its owners; where the walk reaches the target of the next include of
    // includes, it goes on from that include's owner.
    std::vector<Slot> NetPath(Slot start, const std::vector<Slot>& includes) const;
    // The attributes of one kind along a net path, nearest first.
    std::vector<const Attribute*> NetChain(const std::vector<Slot>& path, ContentKind kind) const;
    // The database's own options (HC_Define_System_Options), not a segment's.
    OptionList& SystemOptions() { return m_systemOptions; }

    // --- Bounds -----------------------------------------------------------------------------
    // A segment's bounds in its own coordinates: its geometry, its subsegments, included and
    // referenced segments and items, each through its own modelling matrix. Cached per segment
    // and computed again only for what changed.
    Box SegmentBounds(Slot segment);
    // The bounds of any object: a segment's as above, an item's in its own coordinates, a
    // reference's target as placed.
    Box ObjectBounds(Slot slot);
    // Call when an object's placement in its owner changed: it was added, removed, edited, or
    // given another modelling matrix.
    void PlacementChanged(Slot slot);

    // --- Contents ---------------------------------------------------------------------------
    // The items of one segment that pass the filter, in contents order (scope "."), or of the
    // segment and all below it (subtree), also through includes (throughIncludes).
    std::vector<Found> Contents(Slot segment, const Filter& filter, bool subtree,
                                bool throughIncludes) const;
    // How many items of one segment (or of one geometry item's attributes) pass the filter.
    int Count(Slot slot, const Filter& filter) const;

private:
    friend class UndoLog;
    friend std::vector<std::string> CheckInvariants(Database& db);
    // White-box tests reach the tables through it, to damage them on purpose.
    friend class DatabaseProbe;

    struct UserKey {
        HC_KEY key;
        bool global;
        Slot scope; // the segment a local key is unique in
    };
    struct LocalKey {
        Slot owner;
        HC_KEY key;
        bool operator==(const LocalKey&) const = default;
    };
    struct LocalKeyHash {
        size_t operator()(const LocalKey& k) const {
            return std::hash<HC_KEY>()(k.key) ^ (static_cast<size_t>(k.owner) << 1);
        }
    };

    HC_KEY RenumberedKey(Slot slot) const { return m_userKeys.at(slot).key; }
    Slot Adopt(ObjectPtr object, Slot owner);
    ChildList& ListFor(Segment& owner, const Object& object);
    void Append(ChildList& list, Slot slot);
    void Unlink(ChildList& list, Slot slot);
    void Detach(Slot slot); // from its owner's list and the name index
    void Reparent(Slot slot, Slot owner, std::string name);
    void NoteIncoming(Slot target, Slot link);
    // The segments whose bounds use an object's placed bounds: its owner, the owners of links
    // to it.
    void PushUsers(Slot slot, std::vector<Slot>& segments) const;
    void MarkStale(std::vector<Slot> segments);
    // An object's bounds as placed in its owner: through its own modelling matrix.
    Box PlacedBounds(Slot slot);
    // Frees an object a deletion takes (named: its name is in the name index), or gives it to the
    // open undo step.
    void Destroy(Slot slot, bool named);
    Slot MakeSegment(Slot owner, std::string_view name);
    Slot ChildByLevel(Slot segment, std::string_view level) const;
    bool IsInside(Slot segment, Slot ancestor) const;
    // Whether an object goes with the deletion of another: it or an owner is that one, or was
    // destroyed already by the same deletion.
    bool IsGoing(Slot slot, Slot deleted) const;
    void CopyInto(Slot source, Slot destination);
    void CopyObject(const Object& source, Slot destinationSegment);
    void FlushSegment(Slot segment, const Filter& filter);
    void UpdateStaticModel(Slot segment);
    // Whether the object had a renumbered key to forget.
    bool ForgetKey(Slot slot);
    void Note(Slot slot, ChangeKind kind) {
        m_undo.Unrecorded();
        m_journal.Record({slot, OwnerSegment(slot), kind});
    }
    // Calls visit(Found) for each item of one segment that passes the filter, in contents order,
    // until it returns false.
    template <typename Visit>
    bool VisitContents(const Segment& segment, const Filter& filter, Visit&& visit) const;

    std::vector<ObjectPtr> m_objects; // by slot; null once deleted
    struct Siblings {
        Slot prev = kNoSlot;
        Slot next = kNoSlot;
    };
    std::vector<Siblings> m_siblings; // by slot
    // What each object is, by slot (it never changes), so that filtering a list reads no object.
    std::vector<ContentKind> m_types;
    size_t m_live = 0;
    NameIndex m_names;
    std::unordered_map<Slot, std::vector<Slot>> m_incoming; // target -> links to it
    std::unordered_map<Slot, UserKey> m_userKeys;
    std::unordered_map<HC_KEY, Slot> m_globalKeys;
    std::unordered_map<LocalKey, Slot, LocalKeyHash> m_localKeys;
    OptionList m_systemOptions;
    Journal m_journal;
    UndoLog m_undo{*this};
};

// The process-wide database behind the C interface.
Database& Current();

} // namespace hc
