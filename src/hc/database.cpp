#include "hc/database.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <unordered_set>

#include "hc/error.h"
#include "hc/geometry_data.h"
#include "hc/segment_pattern.h"
#include "hc/text.h"

namespace hc {

namespace {

// How many siblings ahead a long walk asks for the objects it will read: the objects of a list
// lie apart in memory, and each would otherwise be a wait.
constexpr int kPrefetchDistance = 8;

bool IsReservedLevel(std::string_view level) {
    return level == "." || level == ".." || level == "*" || level == "..." || level == "...." ||
           (!level.empty() && level.front() == '@');
}

} // namespace

Database::Database()
    : m_names([this](Slot slot) -> std::pair<Slot, std::string_view> {
          const auto* segment = static_cast<const Segment*>(m_objects[slot].get());
          return {segment->owner, segment->name};
      }) {
    Reset();
}

Database::~Database() = default;

void Database::Reset() {
    m_undo.Clear();
    m_objects.clear();
    m_siblings.clear();
    m_types.clear();
    m_names.Clear();
    m_incoming.clear();
    m_userKeys.clear();
    m_globalKeys.clear();
    m_localKeys.clear();
    m_systemOptions = {};
    m_live = 0;
    Adopt(NewObject<Segment>(), kNoSlot);
    m_journal.Restart();
}

// --- Keys -------------------------------------------------------------------------------------

Slot Database::Resolve(HC_KEY key, Slot localScope) const {
    if (key < -1) {
        uint64_t slot = static_cast<uint64_t>(-(key + 2));
        return slot < m_objects.size() && m_objects[slot] ? static_cast<Slot>(slot) : kNoSlot;
    }
    if (key <= 0) return kNoSlot;
    if (!m_localKeys.empty()) {
        auto local = m_localKeys.find({localScope, key});
        if (local != m_localKeys.end() && Get(local->second)) return local->second;
    }
    auto global = m_globalKeys.find(key);
    return global != m_globalKeys.end() && Get(global->second) ? global->second : kNoSlot;
}

Slot Database::Require(HC_KEY key, Slot localScope) const {
    Slot slot = Resolve(key, localScope);
    if (slot == kNoSlot) ReportError("invalid key " + KeyText(key));
    return slot;
}

HC_KEY Database::Renumber(Slot slot, HC_KEY newKey, std::string_view scope) {
    if (!Get(slot)) return 0;
    std::string word = ToLower(Trim(scope));
    bool global = word.starts_with("g");
    if (!global && !word.starts_with("l")) {
        ReportError("scope must be \"local\" or \"global\", not \"" + std::string(scope) + "\"");
        return 0;
    }
    if (newKey == OriginalKey(slot)) {
        if (m_objects[slot]->renumbered) {
            m_undo.Rekeying(slot);
            ForgetKey(slot);
            Note(slot, ChangeKind::Keys);
        }
        return newKey;
    }
    if (newKey <= 0) {
        ReportError(
            "a new key must be positive: zero, -1 and negative keys belong to the database");
        return 0;
    }
    Slot owner = OwnerSegment(slot);
    auto globalHit = m_globalKeys.find(newKey);
    auto localHit = m_localKeys.find({owner, newKey});
    if ((globalHit != m_globalKeys.end() && globalHit->second != slot) ||
        (localHit != m_localKeys.end() && localHit->second != slot)) {
        ReportError("key " + KeyText(newKey) + " is already in use");
        return 0;
    }
    m_undo.Rekeying(slot);
    ForgetKey(slot);
    if (global)
        m_globalKeys[newKey] = slot;
    else
        m_localKeys[{owner, newKey}] = slot;
    m_userKeys[slot] = {newKey, global, owner};
    m_objects[slot]->renumbered = true;
    Note(slot, ChangeKind::Keys);
    return newKey;
}

bool Database::HasLocalKey(Slot slot) const {
    auto user = m_userKeys.find(slot);
    return user != m_userKeys.end() && !user->second.global;
}

bool Database::ForgetKey(Slot slot) {
    Object* object = Get(slot);
    if (!object || !object->renumbered) return false;
    UserKey user = m_userKeys.at(slot);
    if (user.global)
        m_globalKeys.erase(user.key);
    else
        m_localKeys.erase({user.scope, user.key});
    m_userKeys.erase(slot);
    object->renumbered = false;
    return true;
}

Slot Database::OwnerSegment(Slot slot) const {
    const Object* object = Get(slot);
    if (!object) return kNoSlot;
    // A deletion asks this of objects whose owners it has freed already: they have none.
    for (Slot owner = object->owner; owner != kNoSlot; owner = Get(owner)->owner) {
        if (!Get(owner)) return kNoSlot;
        if (Get(owner)->kind == ObjectKind::Segment) return owner;
    }
    return kNoSlot;
}

std::string Database::Pathname(Slot slot) const {
    std::string path;
    Pathname(slot, path);
    return path;
}

void Database::Pathname(Slot slot, std::string& path) const {
    if (slot == Root()) {
        path.assign("/");
        return;
    }
    // Measured on the way up, then written from the end: no list of levels, and no allocation
    // when path is large enough already.
    auto nameless = [](const Segment& s) { return "@" + KeyText(OriginalKey(s.slot)); };
    size_t length = 0;
    for (const Segment* s = GetSegment(slot); s && s->slot != Root(); s = GetSegment(s->owner))
        length += 1 + (s->name.empty() ? nameless(*s).size() : s->name.size());
    path.assign(length, '/');
    size_t end = length;
    for (const Segment* s = GetSegment(slot); s && s->slot != Root(); s = GetSegment(s->owner)) {
        const std::string generated = s->name.empty() ? nameless(*s) : std::string();
        const std::string& name = s->name.empty() ? generated : s->name;
        end -= name.size();
        path.replace(end, name.size(), name);
        --end;
    }
}

// --- Object bookkeeping ----------------------------------------------------------------------

Slot Database::Adopt(ObjectPtr object, Slot owner) {
    Slot slot = static_cast<Slot>(m_objects.size());
    object->slot = slot;
    object->owner = owner;
    Object& adopted = *object;
    m_objects.push_back(std::move(object));
    m_siblings.emplace_back();
    m_types.push_back(adopted.type);
    ++m_live;
    Object* ownerObject = Get(owner);
    if (!ownerObject) return slot;
    PlacementChanged(slot);
    // A static model follows from the heuristics attribute, whose change is recorded.
    if (adopted.kind != ObjectKind::StaticModel)
        Note(slot, adopted.kind == ObjectKind::Segment    ? ChangeKind::SegmentCreated
                   : adopted.kind == ObjectKind::Geometry ? ChangeKind::Geometry
                                                          : ChangeKind::Links);
    if (ownerObject->kind == ObjectKind::Geometry) {
        static_cast<Geometry*>(ownerObject)->Extras().references.push_back(slot);
    } else if (adopted.kind == ObjectKind::StaticModel) {
        static_cast<Segment*>(ownerObject)->staticModel = slot;
    } else {
        Append(ListFor(*static_cast<Segment*>(ownerObject), adopted), slot);
    }
    m_undo.Created(slot);
    return slot;
}

ChildList& Database::ListFor(Segment& owner, const Object& object) {
    switch (object.kind) {
    case ObjectKind::Segment:
        return owner.segments;
    case ObjectKind::Geometry:
        return owner.geometry;
    default:
        return owner.links;
    }
}

void Database::Append(ChildList& list, Slot slot) {
    m_siblings[slot] = {list.last, kNoSlot};
    if (list.last != kNoSlot)
        m_siblings[list.last].next = slot;
    else
        list.first = slot;
    list.last = slot;
    ++list.count;
}

void Database::Unlink(ChildList& list, Slot slot) {
    const Siblings siblings = m_siblings[slot];
    if (siblings.prev != kNoSlot)
        m_siblings[siblings.prev].next = siblings.next;
    else
        list.first = siblings.next;
    if (siblings.next != kNoSlot)
        m_siblings[siblings.next].prev = siblings.prev;
    else
        list.last = siblings.prev;
    m_siblings[slot] = {};
    --list.count;
}

void Database::Detach(Slot slot) {
    Object* object = Get(slot);
    Object* owner = object ? Get(object->owner) : nullptr;
    if (!owner) return;
    PlacementChanged(slot);
    if (owner->kind == ObjectKind::Geometry) {
        auto& refs = static_cast<Geometry*>(owner)->Extras().references;
        refs.erase(std::remove(refs.begin(), refs.end(), slot), refs.end());
        return;
    }
    auto& segment = *static_cast<Segment*>(owner);
    if (object->kind == ObjectKind::StaticModel) {
        segment.staticModel = kNoSlot;
        return;
    }
    Unlink(ListFor(segment, *object), slot);
    if (object->kind == ObjectKind::Segment) {
        const std::string& name = static_cast<Segment*>(object)->name;
        if (!name.empty()) m_names.Erase(slot, segment.slot, name);
    }
}

void Database::DeleteObject(Slot slot) {
    if (slot == Root()) {
        ReportError("the root segment cannot be deleted");
        return;
    }
    if (!Get(slot)) return;
    Note(slot, ChangeKind::Deleted);
    m_undo.Detaching(slot);
    Detach(slot);
    // Iterative, so that a deep tree cannot exhaust the stack.
    std::vector<Slot> pending{slot};
    // A child's key is forgotten while its owner still lives: a local key is filed under the
    // owner's segment, which is gone by the time the child's turn comes.
    auto take = [this, &pending](Slot child) {
        ForgetKey(child);
        pending.push_back(child);
    };
    while (!pending.empty()) {
        Slot s = pending.back();
        pending.pop_back();
        Object* object = Get(s);
        if (!object) continue;
        bool named = false;
        if (object->kind == ObjectKind::Segment) {
            auto& segment = *static_cast<Segment*>(object);
            for (const ChildList* list : {&segment.segments, &segment.links, &segment.geometry})
                for (Slot c = list->first; c != kNoSlot; c = Next(c))
                    pending.push_back(c);
            if (segment.staticModel != kNoSlot) pending.push_back(segment.staticModel);
            if (s != slot && !segment.name.empty()) {
                m_names.Erase(s, segment.owner, segment.name);
                named = true;
            }
        } else if (object->kind == ObjectKind::Geometry) {
            for (Slot r : static_cast<Geometry*>(object)->References())
                take(r);
        }
        // Includes, styles and references of a deleted object go with it.
        if (auto incoming = m_incoming.find(s); incoming != m_incoming.end()) {
            // A link aimed here twice is listed twice, and must be detached once.
            std::sort(incoming->second.begin(), incoming->second.end());
            incoming->second.erase(std::unique(incoming->second.begin(), incoming->second.end()),
                                   incoming->second.end());
            for (Slot link : incoming->second) {
                if (Link* l = static_cast<Link*>(Get(link)); l && l->target == s) {
                    // Links from outside the deleted subtree are deletions of their own; those
                    // inside go with their owners' lists.
                    if (!IsGoing(link, slot)) {
                        Note(link, ChangeKind::Deleted);
                        m_undo.Detaching(link);
                        Detach(link);
                    }
                    pending.push_back(link);
                }
            }
            m_incoming.erase(incoming);
        }
        Destroy(s, named);
    }
}

void Database::Destroy(Slot slot, bool named) {
    m_undo.Destroying(slot, named);
    ForgetKey(slot);
    m_undo.Release(m_objects[slot]);
    --m_live;
}

Slot Database::MakeSegment(Slot owner, std::string_view name) {
    ObjectPtr segment = NewObject<Segment>();
    static_cast<Segment&>(*segment).name = name;
    Slot slot = Adopt(std::move(segment), owner);
    if (!name.empty()) m_names.Insert(slot, owner, name);
    return slot;
}

bool Database::IsGoing(Slot slot, Slot deleted) const {
    for (Slot s = slot; s != kNoSlot;) {
        const Object* object = Get(s);
        // Whatever is gone already went with the deleted subtree.
        if (s == deleted || !object) return true;
        s = object->owner;
    }
    return false;
}

bool Database::IsInside(Slot segment, Slot ancestor) const {
    for (Slot s = segment; s != kNoSlot; s = Get(s)->owner)
        if (s == ancestor) return true;
    return false;
}

// --- Paths ---------------------------------------------------------------------------------------

Slot Database::ChildByLevel(Slot segment, std::string_view level) const {
    if (level.front() != '@') return m_names.Find(segment, level);
    uint64_t bits = 0;
    auto [end, error] = std::from_chars(level.data() + 1, level.data() + level.size(), bits, 16);
    if (error != std::errc{} || end != level.data() + level.size()) return kNoSlot;
    Slot slot = Resolve(static_cast<HC_KEY>(bits));
    const Segment* child = GetSegment(slot);
    return child && child->owner == segment && child->name.empty() ? slot : kNoSlot;
}

Slot Database::FindOrMakeChild(Slot owner, std::string_view name) {
    Slot child = name.empty() ? kNoSlot : m_names.Find(owner, name);
    return child != kNoSlot ? child : MakeSegment(owner, name);
}

Slot Database::ResolvePathFrom(Slot segment, std::string_view path, bool create) {
    path = Trim(path);
    if (!GetSegment(segment) && (path.empty() || path.front() != '/')) {
        ReportError("the open segment no longer exists");
        return kNoSlot;
    }
    if (path.empty()) {
        if (create) return MakeSegment(segment, "");
        ReportError("an empty segment name names no segment");
        return kNoSlot;
    }
    // Wildcards name no single segment; refuse them before any level is created.
    for (size_t start = 0; start <= path.size();) {
        size_t slash = std::min(path.find('/', start), path.size());
        std::string_view level = Trim(path.substr(start, slash - start));
        if (level == "*" || level == "..." || level == "....") {
            ReportError("\"" + std::string(level) + "\" is not allowed in this segment name");
            return kNoSlot;
        }
        start = slash + 1;
    }
    if (path.front() == '/') {
        segment = Root();
        path.remove_prefix(1);
    }
    while (!path.empty()) {
        size_t slash = path.find('/');
        std::string_view level = Trim(path.substr(0, slash));
        path = slash == std::string_view::npos ? std::string_view{} : path.substr(slash + 1);
        if (level.empty() || level == ".") continue;
        if (level == "..") {
            if (segment == Root()) {
                ReportError("\"..\" goes above the root segment");
                return kNoSlot;
            }
            segment = Get(segment)->owner;
            continue;
        }
        Slot child = ChildByLevel(segment, level);
        if (child == kNoSlot) {
            if (!create || level.front() == '@') {
                ReportError("no segment \"" + std::string(level) + "\" in " + Pathname(segment));
                return kNoSlot;
            }
            child = MakeSegment(segment, level);
        }
        segment = child;
    }
    return segment;
}

// The pattern's levels run as a small automaton: each segment on the way carries the set of
// places in the pattern it has reached (bit i: the levels before i are matched), and a child
// goes on with the places its name lets it reach. The walk is depth first with one cursor per
// level, so segments come out parents first, children in list order, each once however many
// ways it matches.
std::vector<Slot> Database::ResolvePatternFrom(Slot base, std::string_view text) {
    std::vector<Slot> result;
    const SegmentPattern pattern = SplitPattern(Trim(text));
    if (!pattern.error.empty()) {
        ReportError(std::string(pattern.error) + ": \"" + std::string(Trim(text)) + "\"");
        return result;
    }
    const Segment* start = GetSegment(ResolvePathFrom(base, pattern.base, false));
    if (!start) return result;
    const std::vector<PatternLevel>& levels = pattern.levels;
    const uint64_t matched = uint64_t(1) << levels.size();
    // "..." may match no level at all, so reaching it reaches the level after it too.
    auto close = [&](uint64_t places) {
        for (size_t i = 0; i < levels.size(); ++i)
            if ((places >> i & 1) && levels[i].kind == PatternLevel::Kind::AnyLevels)
                places |= uint64_t(2) << i;
        return places;
    };
    struct Frame {
        Slot cursor; // the next child to look at
        Slot ahead;  // a child further on, whose object is asked for early
        bool only;   // the cursor is the one child that can match
        uint64_t places;
    };
    std::vector<Frame> frames;
    auto enter = [&](const Segment& segment, uint64_t places) {
        if (places & matched) result.push_back(segment.slot);
        places &= ~matched;
        if (!places || segment.segments.first == kNoSlot) return;
        if (std::has_single_bit(places)) {
            const PatternLevel& level = levels[std::countr_zero(places)];
            if (level.kind == PatternLevel::Kind::Name) {
                // One name to follow: the name index finds it without passing every child.
                if (Slot c = ChildByLevel(segment.slot, level.text); c != kNoSlot)
                    frames.push_back({c, kNoSlot, true, places});
                return;
            }
        }
        Slot ahead = segment.segments.first;
        for (int i = 0; i < kPrefetchDistance && ahead != kNoSlot; ++i) {
            __builtin_prefetch(m_objects[ahead].get());
            ahead = Next(ahead);
        }
        frames.push_back({segment.segments.first, ahead, false, places});
    };
    enter(*start, close(1));
    while (!frames.empty()) {
        Frame& frame = frames.back();
        const Slot c = frame.cursor;
        if (c == kNoSlot) {
            frames.pop_back();
            continue;
        }
        frame.cursor = frame.only ? kNoSlot : Next(c);
        if (frame.ahead != kNoSlot) {
            __builtin_prefetch(m_objects[frame.ahead].get());
            frame.ahead = Next(frame.ahead);
        }
        const Segment& child = *static_cast<const Segment*>(m_objects[c].get());
        uint64_t next = 0;
        for (uint64_t rest = frame.places; rest; rest &= rest - 1) {
            const size_t i = std::countr_zero(rest);
            const PatternLevel& level = levels[i];
            switch (level.kind) {
            case PatternLevel::Kind::AnyLevels:
                next |= uint64_t(1) << i;
                break;
            case PatternLevel::Kind::Contains:
                if (ContainsFolded(child.name, level.text)) next |= uint64_t(2) << i;
                break;
            case PatternLevel::Kind::Wildcard:
                if (MatchesWildcard(child.name, level.text)) next |= uint64_t(2) << i;
                break;
            case PatternLevel::Kind::Name:
                if (level.text.front() == '@' ? ChildByLevel(child.owner, level.text) == c
                                              : EqualsIgnoreCase(child.name, level.text))
                    next |= uint64_t(2) << i;
                break;
            }
        }
        if (next) enter(child, close(next)); // may move frames: frame is not used after
    }
    return result;
}

// --- Structure edits ----------------------------------------------------------------------------

void Database::RenameSegment(Slot from, std::string_view oldPath, std::string_view newPath) {
    Slot slot = ResolvePathFrom(from, oldPath, false);
    if (slot == kNoSlot) return;
    if (slot == Root()) {
        ReportError("the root segment cannot be renamed");
        return;
    }
    auto [base, name] = SplitLastLevel(Trim(newPath));
    name = Trim(name);
    if (name.empty() || IsReservedLevel(name)) {
        ReportError("\"" + std::string(newPath) + "\" is not a segment name");
        return;
    }
    Slot owner = base.empty() ? Get(slot)->owner : ResolvePathFrom(from, base, true);
    if (owner == kNoSlot) return;
    if (IsInside(owner, slot)) {
        ReportError("a segment cannot be moved below itself");
        return;
    }
    Slot existing = m_names.Find(owner, name);
    if (existing != kNoSlot && existing != slot) {
        ReportError("segment " + Pathname(existing) + " already exists");
        return;
    }
    Reparent(slot, owner, std::string(name));
}

void Database::DiscardSegmentName(Slot slot) {
    Segment* segment = GetSegment(slot);
    if (!segment || slot == Root() || segment->name.empty()) return;
    m_undo.Placing(slot);
    m_names.Erase(slot, segment->owner, segment->name);
    segment->name.clear();
    Note(slot, ChangeKind::Moved);
}

void Database::MoveObject(Slot slot, Slot from, std::string_view newOwnerPath) {
    Object* object = Get(slot);
    if (!object) return;
    if (slot == Root() || object->kind == ObjectKind::StaticModel) {
        ReportError("this item cannot be moved");
        return;
    }
    Slot owner = ResolvePathFrom(from, newOwnerPath, true);
    if (owner == kNoSlot) return;
    if (object->kind == ObjectKind::Segment) {
        auto& segment = *static_cast<Segment*>(object);
        if (IsInside(owner, slot)) {
            ReportError("a segment cannot be moved below itself");
            return;
        }
        if (!segment.name.empty() && m_names.Find(owner, segment.name) != kNoSlot) {
            ReportError("segment " + Pathname(owner) + "/" + segment.name + " already exists");
            return;
        }
    }
    Reparent(slot, owner,
             object->kind == ObjectKind::Segment ? static_cast<Segment*>(object)->name
                                                 : std::string());
}

void Database::Reparent(Slot slot, Slot owner, std::string name) {
    m_undo.Placing(slot);
    Object& object = *m_objects[slot];
    // A local key is local to the owner: it follows the item unless the new owner has it already.
    bool wasLocal = object.renumbered && !m_userKeys.at(slot).global;
    HC_KEY localKey = wasLocal ? m_userKeys.at(slot).key : 0;
    if (wasLocal) ForgetKey(slot);
    Detach(slot);
    object.owner = owner;
    Append(ListFor(*GetSegment(owner), object), slot);
    PlacementChanged(slot);
    if (object.kind == ObjectKind::Segment) {
        static_cast<Segment&>(object).name = std::move(name);
        const std::string& newName = static_cast<Segment&>(object).name;
        if (!newName.empty()) m_names.Insert(slot, owner, newName);
    }
    if (wasLocal && m_localKeys.find({owner, localKey}) == m_localKeys.end()) {
        m_localKeys[{owner, localKey}] = slot;
        m_userKeys[slot] = {localKey, false, owner};
        object.renumbered = true;
    }
    Note(slot, ChangeKind::Moved);
}

void Database::CopySegment(Slot from, std::string_view oldPath, std::string_view newPath) {
    auto [oldBase, oldLast] = SplitLastLevel(Trim(oldPath));
    auto [newBase, newLast] = SplitLastLevel(Trim(newPath));
    bool children = oldLast == "*";
    std::vector<Slot> sources = children ? ResolvePatternFrom(from, oldPath)
                                         : std::vector<Slot>{ResolvePathFrom(from, oldPath, false)};
    if (!sources.empty() && sources.front() == kNoSlot) return;
    if (!children) {
        if (newLast == "*") {
            ReportError("copying one segment needs a destination name, not \"*\"");
            return;
        }
        Slot destination = ResolvePathFrom(from, newPath, true);
        if (destination == kNoSlot) return;
        if (IsInside(destination, sources.front())) {
            ReportError("a segment cannot be copied into itself");
            return;
        }
        CopyInto(sources.front(), destination);
        return;
    }
    Slot destinationOwner = ResolvePathFrom(
        from, newLast == "*" ? (newBase.empty() ? std::string_view(".") : newBase) : newPath, true);
    if (destinationOwner == kNoSlot) return;
    for (Slot source : sources) {
        if (IsInside(destinationOwner, source)) {
            ReportError("a segment cannot be copied into itself");
            continue;
        }
        CopyInto(source, FindOrMakeChild(destinationOwner, GetSegment(source)->name));
    }
}

void Database::CopyInto(Slot source, Slot destination) {
    std::vector<std::pair<Slot, Slot>> pending{{source, destination}};
    while (!pending.empty()) {
        auto [from, to] = pending.back();
        pending.pop_back();
        const Segment& src = *GetSegment(from);
        if (src.attributes) {
            for (const Attribute& attribute : src.attributes->Items()) {
                Attribute& mine = ObtainAttribute(to, attribute.kind);
                if (IsOptionString(attribute.kind))
                    mine.options.Merge(attribute.options);
                else
                    mine = attribute;
                AttributeChanged(to, attribute.kind);
            }
        }
        for (size_t k = size_t(kFirstDefinition); k <= size_t(kLastDefinition); ++k)
            for (const Definition& definition : src.DefinitionsOf(ContentKind(k)))
                Define(to, ContentKind(k), definition);
        for (const ChildList* list : {&src.links, &src.geometry})
            for (Slot c = list->first; c != kNoSlot; c = Next(c))
                CopyObject(*m_objects[c], to);
        for (Slot c = src.segments.first; c != kNoSlot; c = Next(c))
            pending.emplace_back(c, FindOrMakeChild(to, GetSegment(c)->name));
        UpdateStaticModel(to);
    }
}

void Database::CopyObject(const Object& source, Slot destination) {
    ObjectPtr copy;
    if (source.kind == ObjectKind::Geometry) {
        const auto& geometry = static_cast<const Geometry&>(source);
        copy = NewObject<Geometry>(geometry.type);
        CopyGeometryData(geometry, static_cast<Geometry&>(*copy));
    } else {
        const auto& link = static_cast<const Link&>(source);
        copy = NewObject<Link>(link.type);
        auto& l = static_cast<Link&>(*copy);
        l.target = link.target;
        l.condition = link.condition;
        l.filter = link.filter;
        l.styleName = link.styleName;
    }
    if (source.attributes) copy->attributes = std::make_unique<AttributeSet>(*source.attributes);
    Slot slot = Adopt(std::move(copy), destination);
    if (source.kind == ObjectKind::Link) {
        if (Slot target = static_cast<Link&>(*m_objects[slot]).target; target != kNoSlot)
            NoteIncoming(target, slot);
    } else {
        for (Slot r : static_cast<const Geometry&>(source).References())
            CopyObject(*m_objects[r], slot);
    }
}

void Database::FlushContents(Slot from, std::string_view pattern, std::string_view filterText) {
    Filter filter = Filter::ParseOrReport(filterText);
    for (Slot segment : ResolvePatternFrom(from, pattern))
        if (GetSegment(segment)) FlushSegment(segment, filter);
}

void Database::FlushSegment(Slot slot, const Filter& filter) {
    Segment& segment = *GetSegment(slot);
    std::vector<Slot> doomed;
    for (const ChildList* list : {&segment.segments, &segment.links, &segment.geometry})
        for (Slot c = list->first; c != kNoSlot; c = Next(c))
            if (filter.Has(m_objects[c]->type)) doomed.push_back(c);
    for (Slot c : doomed)
        DeleteObject(c);
    bool definitions = false;
    for (size_t k = size_t(kFirstDefinition); k <= size_t(kLastDefinition); ++k) {
        if (segment.definitions && filter.Has(ContentKind(k)) &&
            !segment.definitions->Of(ContentKind(k)).empty()) {
            m_undo.ChangingDefinitions(slot);
            segment.definitions->Of(ContentKind(k)).clear();
            definitions = true;
        }
    }
    if (definitions) Note(slot, ChangeKind::Definitions);
    auto flushed = [&](const Attribute& attribute) { return filter.Has(attribute.kind); };
    if (segment.attributes && std::any_of(segment.attributes->Items().begin(),
                                          segment.attributes->Items().end(), flushed)) {
        m_undo.ChangingAttributes(slot);
        std::erase_if(segment.attributes->Items(), flushed);
        Note(slot, ChangeKind::Attributes);
        if (segment.attributes->Empty()) segment.attributes.reset();
    }
    UpdateStaticModel(slot);
    if (filter.Has(ContentKind::ModellingMatrix)) PlacementChanged(slot);
}

void Database::UpdateStaticModel(Slot slot) {
    Segment& segment = *GetSegment(slot);
    const Attribute* heuristics = LocalAttribute(slot, ContentKind::Heuristics);
    bool wanted = heuristics && heuristics->options.IsOn("static model");
    if (wanted && segment.staticModel == kNoSlot)
        Adopt(NewObject<StaticModel>(), slot);
    else if (!wanted && segment.staticModel != kNoSlot)
        DeleteObject(segment.staticModel);
}

// --- Links ---------------------------------------------------------------------------------------

Slot Database::AddLink(Slot owner, ContentKind type, Slot target, std::string_view condition,
                       std::string_view filter) {
    if (!Get(target) || !Get(owner)) return kNoSlot;
    ObjectPtr object = NewObject<Link>(type);
    auto& link = static_cast<Link&>(*object);
    link.target = target;
    link.condition = Trim(condition);
    link.filter = Trim(filter);
    Slot slot = Adopt(std::move(object), owner);
    NoteIncoming(target, slot);
    return slot;
}

void Database::NoteIncoming(Slot target, Slot link) {
    std::vector<Slot>& incoming = m_incoming[target];
    // Links that died or were aimed elsewhere are dropped lazily, whenever the list has doubled.
    if (incoming.size() >= 64 && (incoming.size() & (incoming.size() - 1)) == 0)
        std::erase_if(incoming, [this, target](Slot s) {
            auto* l = static_cast<Link*>(Get(s));
            return !l || l->target != target;
        });
    incoming.push_back(link);
}

void Database::SetLinkTarget(Slot slot, Slot target) {
    Object* object = Get(slot);
    if (!object || object->kind != ObjectKind::Link || !Get(target)) return;
    auto* link = static_cast<Link*>(object);
    m_undo.Retargeting(slot);
    link->target = target;
    NoteIncoming(target, slot);
    PlacementChanged(slot);
    Note(slot, ChangeKind::Links);
}

Slot Database::AddNamedStyle(Slot owner, std::string_view styleName, std::string_view condition) {
    if (!GetSegment(owner)) return kNoSlot;
    ObjectPtr object = NewObject<Link>(ContentKind::NamedStyle);
    auto& link = static_cast<Link&>(*object);
    link.styleName = Trim(styleName);
    link.condition = Trim(condition);
    return Adopt(std::move(object), owner);
}

Slot Database::FindNamedStyle(Slot slot, std::string_view name) const {
    const Definition* definition =
        FindDefinition(slot, ContentKind::NamedStyleDefinition, name, true);
    return definition && GetSegment(definition->segment) ? definition->segment : kNoSlot;
}

void Database::Define(Slot slot, ContentKind kind, Definition definition) {
    Segment* segment = GetSegment(slot);
    if (!segment) return;
    definition.name = Trim(definition.name);
    if (definition.name.empty()) {
        ReportError("a definition needs a name");
        return;
    }
    m_undo.ChangingDefinitions(slot);
    Note(slot, ChangeKind::Definitions);
    for (Definition& present : segment->MutableDefinitionsOf(kind)) {
        if (EqualsIgnoreCase(present.name, definition.name)) {
            present = std::move(definition);
            return;
        }
    }
    segment->MutableDefinitionsOf(kind).push_back(std::move(definition));
}

bool Database::UnDefine(Slot slot, ContentKind kind, std::string_view name) {
    Segment* segment = GetSegment(slot);
    if (!segment || !segment->definitions) return false;
    auto named = [&](const Definition& definition) {
        return EqualsIgnoreCase(definition.name, Trim(name));
    };
    std::vector<Definition>& definitions = segment->definitions->Of(kind);
    if (std::none_of(definitions.begin(), definitions.end(), named)) return false;
    m_undo.ChangingDefinitions(slot);
    std::erase_if(definitions, named);
    Note(slot, ChangeKind::Definitions);
    return true;
}

const Definition* Database::FindDefinition(Slot slot, ContentKind kind, std::string_view name,
                                           bool inherited) const {
    name = Trim(name);
    for (const Segment* segment = GetSegment(slot); segment;
         segment = inherited ? GetSegment(segment->owner) : nullptr)
        for (const Definition& definition : segment->DefinitionsOf(kind))
            if (EqualsIgnoreCase(definition.name, name)) return &definition;
    return nullptr;
}

Slot Database::LinkTarget(const Link& link) const {
    if (link.type == ContentKind::NamedStyle)
        return FindNamedStyle(OwnerSegment(link.slot), link.styleName);
    return Get(link.target) ? link.target : kNoSlot;
}

// --- Geometry and attributes ---------------------------------------------------------------------

Geometry* Database::AddGeometry(Slot owner, ContentKind type) {
    if (!GetSegment(owner)) return nullptr;
    Slot slot = Adopt(NewObject<Geometry>(type), owner);
    return static_cast<Geometry*>(Get(slot));
}

void Database::GeometryChanged(Slot slot) {
    if (Get(slot)) Note(slot, ChangeKind::Geometry);
}

const Attribute* Database::LocalAttribute(Slot slot, ContentKind kind) const {
    const Object* target = Get(slot);
    return target && target->attributes ? target->attributes->Find(kind) : nullptr;
}

Attribute& Database::ObtainAttribute(Slot slot, ContentKind kind) {
    m_undo.ChangingAttributes(slot);
    Object& target = *m_objects[slot];
    if (!target.attributes) target.attributes = std::make_unique<AttributeSet>();
    return target.attributes->Obtain(kind);
}

bool Database::RemoveAttribute(Slot slot, ContentKind kind) {
    Object* target = Get(slot);
    if (!target || !target->attributes || !target->attributes->Find(kind)) return false;
    m_undo.ChangingAttributes(slot);
    target->attributes->Remove(kind);
    if (target->attributes->Empty()) target->attributes.reset();
    AttributeChanged(slot, kind);
    return true;
}

void Database::AttributeChanged(Slot slot, ContentKind kind) {
    Note(slot, ChangeKind::Attributes);
    if (kind == ContentKind::Heuristics && GetSegment(slot)) UpdateStaticModel(slot);
    if (kind == ContentKind::ModellingMatrix) PlacementChanged(slot);
}

void Database::SetText(Slot slot, ContentKind kind, std::string_view text) {
    if (!Get(slot)) return;
    if (!IsOptionString(kind)) {
        ObtainAttribute(slot, kind).text = Trim(text);
        AttributeChanged(slot, kind);
        return;
    }
    OptionList parsed;
    if (!OptionList::Parse(text, parsed) || parsed.Empty()) {
        ReportError("cannot understand the options \"" + std::string(text) + "\"");
        return;
    }
    Attribute& attribute = ObtainAttribute(slot, kind);
    // A colour named alone ("red") colours everything, so it replaces what was set.
    bool whole = kind == ContentKind::Color &&
                 std::any_of(parsed.Options().begin(), parsed.Options().end(),
                             [](const Option& o) { return o.value.empty() && !o.negated; });
    if (whole) attribute.options = {};
    attribute.options.Merge(parsed);
    AttributeChanged(slot, kind);
}

std::vector<Slot> Database::NetPath(Slot start, const std::vector<Slot>& includes) const {
    std::vector<Slot> path;
    size_t next = 0;
    for (Slot s = start; s != kNoSlot && Get(s);) {
        path.push_back(s);
        const Object* include = next < includes.size() ? Get(includes[next]) : nullptr;
        if (include && include->type == ContentKind::Include &&
            static_cast<const Link*>(include)->target == s) {
            s = include->owner;
            ++next;
        } else {
            s = Get(s)->owner;
        }
    }
    return path;
}

std::vector<const Attribute*> Database::NetChain(const std::vector<Slot>& path,
                                                 ContentKind kind) const {
    std::vector<const Attribute*> chain;
    for (Slot s : path)
        if (const Attribute* attribute = LocalAttribute(s, kind)) chain.push_back(attribute);
    return chain;
}

// --- Contents ------------------------------------------------------------------------------------

template <typename Visit>
bool Database::VisitContents(const Segment& segment, const Filter& filter, Visit&& visit) const {
    // Lists are walked on the sibling and type tables alone; no object is read.
    auto walk = [&](const ChildList& list, auto&& wanted) {
        for (Slot c = list.first; c != kNoSlot; c = Next(c))
            if (wanted(m_types[c]) && !visit(Found{c, m_types[c]})) return false;
        return true;
    };
    if (filter.Has(ContentKind::StaticModel) && segment.staticModel != kNoSlot &&
        !visit(Found{segment.staticModel, ContentKind::StaticModel}))
        return false;
    if (filter.Has(ContentKind::Segment)) {
        for (Slot c = segment.segments.first; c != kNoSlot; c = Next(c))
            if (!visit(Found{c, ContentKind::Segment})) return false;
    }
    for (ContentKind type : {ContentKind::Include, ContentKind::Style, ContentKind::NamedStyle,
                             ContentKind::Reference}) {
        if (segment.links.first != kNoSlot && filter.Has(type) &&
            !walk(segment.links, [type](ContentKind t) { return t == type; }))
            return false;
    }
    if (segment.geometry.first != kNoSlot && filter.HasAnyGeometry() &&
        !walk(segment.geometry, [&filter](ContentKind t) { return filter.Has(t); }))
        return false;
    for (size_t k = size_t(kFirstDefinition); segment.definitions && k <= size_t(kLastDefinition);
         ++k) {
        auto kind = ContentKind(k);
        if (filter.Has(kind) && !segment.DefinitionsOf(kind).empty() &&
            !visit(Found{segment.slot, kind}))
            return false;
    }
    if (segment.attributes && filter.HasAnyAttribute()) {
        for (const Attribute& attribute : segment.attributes->Items())
            if (filter.Has(attribute.kind) && !visit(Found{segment.slot, attribute.kind}))
                return false;
    }
    return true;
}

std::vector<Found> Database::Contents(Slot slot, const Filter& filter, bool subtree,
                                      bool throughIncludes) const {
    std::vector<Found> items;
    size_t limit = filter.FirstMatch() ? 1 : SIZE_MAX;
    auto collect = [&](Found found) {
        items.push_back(found);
        return items.size() < limit;
    };
    const Segment* start = GetSegment(slot);
    if (!start) return items;
    if (!subtree) {
        VisitContents(*start, filter, collect);
        return items;
    }
    // Segments before their children, each child's subtree before the next child's. Through
    // includes, each included segment is walked once per search, which also ends include cycles.
    std::unordered_set<Slot> included{slot};
    std::vector<Slot> pending{slot};
    while (!pending.empty()) {
        const Segment& segment = *GetSegment(pending.back());
        pending.pop_back();
        if (!VisitContents(segment, filter, collect)) break;
        if (throughIncludes) {
            for (Slot c = segment.links.last; c != kNoSlot; c = Prev(c)) {
                const auto& link = static_cast<const Link&>(*m_objects[c]);
                Slot target = link.type == ContentKind::Include ? LinkTarget(link) : kNoSlot;
                if (GetSegment(target) && included.insert(target).second) pending.push_back(target);
            }
        }
        for (Slot c = segment.segments.last; c != kNoSlot; c = Prev(c))
            pending.push_back(c);
    }
    return items;
}

int Database::Count(Slot slot, const Filter& filter) const {
    const Object* object = Get(slot);
    if (!object) return 0;
    int count = 0;
    if (object->kind == ObjectKind::Segment) {
        const auto& segment = *static_cast<const Segment*>(object);
        // Definitions are listed once per kind but counted one by one.
        VisitContents(segment, filter, [&](Found found) {
            count += IsDefinition(found.type) ? int(segment.DefinitionsOf(found.type).size()) : 1;
            return !filter.FirstMatch();
        });
    } else if (object->attributes) {
        for (const Attribute& attribute : object->attributes->Items())
            if (filter.Has(attribute.kind)) ++count;
    }
    if (object->kind == ObjectKind::Geometry)
        count += CountDetails(*static_cast<const Geometry*>(object), filter);
    return count;
}

Database& Current() {
    static Database database;
    return database;
}

} // namespace hc
