#include "hc/undo_log.h"

#include <algorithm>

#include "hc/database.h"

namespace hc {

namespace {

ChangeKind CreatedKind(const Object& object) {
    return object.kind == ObjectKind::Segment    ? ChangeKind::SegmentCreated
           : object.kind == ObjectKind::Geometry ? ChangeKind::Geometry
                                                 : ChangeKind::Links;
}

} // namespace

// --- Steps ---------------------------------------------------------------------------------------

void UndoLog::Begin(std::string_view name) {
    if (m_depth++ > 0) return;
    m_open.name = name.substr(0, HC_TEXT_MAX - 1);
    m_firstNew = static_cast<Slot>(m_db.m_objects.size());
}

bool UndoLog::End() {
    if (m_depth == 0) return false;
    if (--m_depth > 0) return true;
    if (!m_open.records.empty()) {
        m_redo.clear();
        m_undo.push_back(std::move(m_open));
        while (m_undo.size() > m_limit)
            m_undo.pop_front();
    }
    m_open = {};
    m_imaged.clear();
    return true;
}

bool UndoLog::Undo() {
    return Replay(m_undo, m_redo, true);
}

bool UndoLog::Redo() {
    return Replay(m_redo, m_undo, false);
}

bool UndoLog::Replay(std::deque<Step>& from, std::deque<Step>& to, bool undo) {
    if (m_depth > 0 || from.empty()) return false;
    Step step = std::move(from.back());
    from.pop_back();
    m_applying = true;
    if (undo) {
        for (auto record = step.records.rbegin(); record != step.records.rend(); ++record)
            Apply(*record, true);
    } else {
        for (Record& record : step.records)
            Apply(record, false);
    }
    m_applying = false;
    to.push_back(std::move(step));
    return true;
}

void UndoLog::SetLimit(size_t steps) {
    m_limit = steps;
    while (m_undo.size() > m_limit)
        m_undo.pop_front();
    if (m_limit == 0) m_redo.clear();
}

void UndoLog::Clear() {
    Forget();
    m_open = {};
    m_imaged.clear();
    m_depth = 0;
}

void UndoLog::Forget() {
    m_undo.clear();
    m_redo.clear();
}

// --- Recording -----------------------------------------------------------------------------------

void UndoLog::Release(ObjectPtr& object) {
    if (Recording())
        m_open.records.back().object = std::move(object);
    else
        object.reset();
}

UndoLog::Record& UndoLog::Push(Sort sort, Slot slot) {
    Record& record = m_open.records.emplace_back();
    record.sort = sort;
    record.slot = slot;
    return record;
}

void UndoLog::RecordCreated(Slot slot) {
    Push(Sort::Created, slot);
}

void UndoLog::RecordDetaching(Slot slot) {
    // A deletion detaches a link inside the subtree whose owner went already: that changes no list.
    if (m_db.Get(m_db.Get(slot)->owner)) Push(Sort::Detached, slot).place = PlaceOf(slot);
}

void UndoLog::RecordDestroying(Slot slot, bool named) {
    Record& record = Push(Sort::Destroyed, slot);
    record.named = named;
    record.key = KeyOf(slot);
}

void UndoLog::RecordPlacing(Slot slot) {
    const Object& object = *m_db.Get(slot);
    Record& record = Push(Sort::Placed, slot);
    record.owner = object.owner;
    record.place = PlaceOf(slot);
    record.key = KeyOf(slot);
    record.image = std::make_unique<Image>();
    if (object.kind == ObjectKind::Segment)
        record.image->name = static_cast<const Segment&>(object).name;
}

void UndoLog::RecordKey(Slot slot) {
    Push(Sort::Key, slot).key = KeyOf(slot);
}

void UndoLog::RecordTarget(Slot link) {
    Push(Sort::Target, link).place = static_cast<const Link*>(m_db.Get(link))->target;
}

void UndoLog::RecordImage(Slot slot, Sort sort) {
    if (!m_imaged.insert(uint64_t(slot) << 8 | uint64_t(sort)).second) return;
    Object& object = *m_db.Get(slot);
    auto image = std::make_unique<Image>();
    switch (sort) {
    case Sort::Attributes:
        if (object.attributes)
            image->attributes = std::make_unique<AttributeSet>(*object.attributes);
        break;
    case Sort::Definitions:
        if (auto& definitions = static_cast<Segment&>(object).definitions)
            image->definitions = std::make_unique<Definitions>(*definitions);
        break;
    default: {
        const auto& item = static_cast<const Geometry&>(object);
        GeometryData& data = image->geometry;
        data.points = item.points;
        data.ints = item.ints;
        data.text = item.Text();
        data.values = item.Values();
        if (item.extras && item.extras->shell)
            data.shell = std::make_unique<ShellDetails>(*item.extras->shell);
        break;
    }
    }
    Push(sort, slot).image = std::move(image);
}

// --- Applying ------------------------------------------------------------------------------------

void UndoLog::Apply(Record& record, bool undo) {
    switch (record.sort) {
    case Sort::Created:
        return undo ? TakeOut(record) : PutBack(record);
    case Sort::Detached:
        if (undo) {
            Attach(record.slot, record.place);
            NoteAppeared(record.slot);
        } else {
            record.place = PlaceOf(record.slot);
            m_db.Note(record.slot, ChangeKind::Deleted);
            m_db.Detach(record.slot);
        }
        return;
    case Sort::Destroyed:
        if (undo) {
            Slot slot = record.slot;
            m_db.m_objects[slot] = std::move(record.object);
            ++m_db.m_live;
            Object& object = *m_db.m_objects[slot];
            // What it included may have changed while it was gone.
            object.boundsStale = true;
            if (record.named)
                m_db.m_names.Insert(slot, object.owner, static_cast<Segment&>(object).name);
            GiveKey(slot, record.key);
            NoteIncoming(slot);
        } else {
            Slot slot = record.slot;
            record.key = TakeKey(slot);
            const Object& object = *m_db.m_objects[slot];
            if (record.named)
                m_db.m_names.Erase(slot, object.owner, static_cast<const Segment&>(object).name);
            m_db.m_incoming.erase(slot);
            record.object = std::move(m_db.m_objects[slot]);
            --m_db.m_live;
        }
        return;
    case Sort::Placed:
        return SwapPlace(record);
    case Sort::Key:
        return SwapKey(record);
    case Sort::Target:
        return SwapTarget(record);
    default:
        return SwapImage(record);
    }
}

void UndoLog::TakeOut(Record& record) {
    Slot slot = record.slot;
    record.place = PlaceOf(slot);
    record.key = TakeKey(slot);
    if (m_db.Get(slot)->kind != ObjectKind::StaticModel) m_db.Note(slot, ChangeKind::Deleted);
    m_db.Detach(slot);
    record.object = std::move(m_db.m_objects[slot]);
    --m_db.m_live;
}

void UndoLog::PutBack(Record& record) {
    Slot slot = record.slot;
    m_db.m_objects[slot] = std::move(record.object);
    ++m_db.m_live;
    m_db.m_objects[slot]->boundsStale = true;
    Attach(slot, record.place);
    GiveKey(slot, record.key);
    NoteIncoming(slot);
    NoteAppeared(slot);
}

void UndoLog::SwapPlace(Record& record) {
    Slot slot = record.slot;
    Object& object = *m_db.Get(slot);
    Slot owner = object.owner;
    Slot place = PlaceOf(slot);
    SavedKey key = TakeKey(slot);
    m_db.Detach(slot);
    object.owner = record.owner;
    if (object.kind == ObjectKind::Segment)
        std::swap(static_cast<Segment&>(object).name, record.image->name);
    Attach(slot, record.place);
    GiveKey(slot, record.key);
    record.owner = owner;
    record.place = place;
    record.key = key;
    m_db.Note(slot, ChangeKind::Moved);
}

void UndoLog::SwapKey(Record& record) {
    SavedKey key = TakeKey(record.slot);
    GiveKey(record.slot, record.key);
    record.key = key;
    m_db.Note(record.slot, ChangeKind::Keys);
}

void UndoLog::SwapTarget(Record& record) {
    auto& link = static_cast<Link&>(*m_db.Get(record.slot));
    std::swap(link.target, record.place);
    NoteIncoming(record.slot);
    m_db.PlacementChanged(record.slot);
    m_db.Note(record.slot, ChangeKind::Links);
}

void UndoLog::SwapImage(Record& record) {
    Slot slot = record.slot;
    Object& object = *m_db.Get(slot);
    Image& image = *record.image;
    switch (record.sort) {
    case Sort::Attributes:
        std::swap(object.attributes, image.attributes);
        m_db.Note(slot, ChangeKind::Attributes);
        break;
    case Sort::Definitions:
        std::swap(static_cast<Segment&>(object).definitions, image.definitions);
        m_db.Note(slot, ChangeKind::Definitions);
        break;
    default: {
        auto& item = static_cast<Geometry&>(object);
        GeometryData& data = image.geometry;
        std::swap(item.points, data.points);
        std::swap(item.ints, data.ints);
        if (item.extras || !data.text.empty() || !data.values.empty() || data.shell) {
            GeometryExtras& extras = item.Extras();
            std::swap(extras.text, data.text);
            std::swap(extras.values, data.values);
            std::swap(extras.shell, data.shell);
        }
        m_db.Note(slot, ChangeKind::Geometry);
        break;
    }
    }
    // A modelling matrix or the item's shape may have changed.
    m_db.PlacementChanged(slot);
}

// --- Places and keys -----------------------------------------------------------------------------

Slot UndoLog::PlaceOf(Slot slot) const {
    const Object& object = *m_db.Get(slot);
    const Object* owner = m_db.Get(object.owner);
    if (!owner || object.kind == ObjectKind::StaticModel) return kNoSlot;
    if (owner->kind == ObjectKind::Geometry) {
        const auto& references = static_cast<const Geometry*>(owner)->References();
        return static_cast<Slot>(std::find(references.begin(), references.end(), slot) -
                                 references.begin());
    }
    return m_db.Prev(slot);
}

void UndoLog::Attach(Slot slot, Slot place) {
    Object& object = *m_db.Get(slot);
    Object* owner = m_db.Get(object.owner);
    if (!owner) return;
    if (owner->kind == ObjectKind::Geometry) {
        auto& references = static_cast<Geometry*>(owner)->Extras().references;
        references.insert(references.begin() + std::min<size_t>(place, references.size()), slot);
    } else if (object.kind == ObjectKind::StaticModel) {
        static_cast<Segment*>(owner)->staticModel = slot;
    } else {
        auto& segment = *static_cast<Segment*>(owner);
        InsertAfter(m_db.ListFor(segment, object), place, slot);
        if (object.kind == ObjectKind::Segment) {
            const std::string& name = static_cast<Segment&>(object).name;
            if (!name.empty()) m_db.m_names.Insert(slot, segment.slot, name);
        }
    }
    m_db.PlacementChanged(slot);
}

void UndoLog::InsertAfter(ChildList& list, Slot previous, Slot slot) {
    Slot next = previous == kNoSlot ? list.first : m_db.Next(previous);
    m_db.m_siblings[slot] = {previous, next};
    if (previous != kNoSlot)
        m_db.m_siblings[previous].next = slot;
    else
        list.first = slot;
    if (next != kNoSlot)
        m_db.m_siblings[next].prev = slot;
    else
        list.last = slot;
    ++list.count;
}

UndoLog::SavedKey UndoLog::KeyOf(Slot slot) const {
    auto user = m_db.m_userKeys.find(slot);
    if (user == m_db.m_userKeys.end()) return {};
    return {user->second.key, user->second.global, user->second.scope};
}

UndoLog::SavedKey UndoLog::TakeKey(Slot slot) {
    SavedKey key = KeyOf(slot);
    m_db.ForgetKey(slot);
    return key;
}

void UndoLog::GiveKey(Slot slot, const SavedKey& key) {
    if (key.key == 0) return;
    if (key.global)
        m_db.m_globalKeys[key.key] = slot;
    else
        m_db.m_localKeys[{key.scope, key.key}] = slot;
    m_db.m_userKeys[slot] = {key.key, key.global, key.scope};
    m_db.m_objects[slot]->renumbered = true;
}

void UndoLog::NoteIncoming(Slot slot) {
    const Object& object = *m_db.Get(slot);
    if (object.kind != ObjectKind::Link) return;
    Slot target = static_cast<const Link&>(object).target;
    if (target == kNoSlot) return;
    std::vector<Slot>& incoming = m_db.m_incoming[target];
    if (std::find(incoming.begin(), incoming.end(), slot) == incoming.end())
        incoming.push_back(slot);
}

void UndoLog::NoteAppeared(Slot slot) {
    const Object& object = *m_db.Get(slot);
    if (object.kind != ObjectKind::StaticModel) m_db.Note(slot, CreatedKind(object));
}

} // namespace hc
