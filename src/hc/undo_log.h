#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <obsidra/hc.h>
#include <obsidra/hc_undo.h>

#include "hc/objects.h"

namespace hc {

class Database;

// The steps that can be undone and redone, each a list of records that take a change back:
// objects a step made (taken out again on undo, kept for redo), objects it deleted (kept, put
// back into their own slots on undo: slots are never reused, so their keys come back with them),
// and the state an object had before the step changed it in place. A record holds what was
// there before; applying it swaps that with what is there now, so one record serves undo and
// redo. The database tells the log of every change through the hooks below; outside a step the
// hooks cost one test.
class UndoLog {
public:
    explicit UndoLog(Database& db) : m_db(db) {}
    UndoLog(const UndoLog&) = delete;
    UndoLog& operator=(const UndoLog&) = delete;

    // --- Steps ------------------------------------------------------------------------------
    void Begin(std::string_view name);
    // Closes the innermost step; false when none is open.
    bool End();
    int Depth() const { return m_depth; }
    // Both false when there is nothing to undo (redo). Not while a step is open.
    bool Undo();
    bool Redo();
    // The name of the step an undo (redo) would take back, or null.
    const std::string* UndoName() const { return m_undo.empty() ? nullptr : &m_undo.back().name; }
    const std::string* RedoName() const { return m_redo.empty() ? nullptr : &m_redo.back().name; }
    void SetLimit(size_t steps);
    size_t Limit() const { return m_limit; }
    // Forgets every step and closes the open ones.
    void Clear();

    // --- Hooks: called by the database before it changes what they name ---------------------
    // A change that no step records: the kept steps were made for the scene as it was.
    void Unrecorded() {
        if (m_depth == 0 && !m_applying && (!m_undo.empty() || !m_redo.empty())) Forget();
    }
    // After an object was made and placed in its owner.
    void Created(Slot slot) {
        if (Recording()) RecordCreated(slot);
    }
    // Before a deletion takes an object out of its owner's list.
    void Detaching(Slot slot) {
        if (Recording()) RecordDetaching(slot);
    }
    // Before a deletion frees an object; named: its name leaves the name index with it. The
    // object itself then goes to Release.
    void Destroying(Slot slot, bool named) {
        if (Recording()) RecordDestroying(slot, named);
    }
    // Keeps the object Destroying named, or frees it when nothing records.
    void Release(ObjectPtr& object);
    // Before an object moves to another owner or place, or a segment changes its name.
    void Placing(Slot slot) {
        if (Recording()) RecordPlacing(slot);
    }
    void Rekeying(Slot slot) {
        if (Recording()) RecordKey(slot);
    }
    void Retargeting(Slot link) {
        if (Recording()) RecordTarget(link);
    }
    // Before the first change of one sort to an object in a step that did not make it.
    void ChangingAttributes(Slot slot) {
        if (Recording() && slot < m_firstNew) RecordImage(slot, Sort::Attributes);
    }
    void ChangingDefinitions(Slot segment) {
        if (Recording() && segment < m_firstNew) RecordImage(segment, Sort::Definitions);
    }
    void ChangingGeometry(Slot item) {
        if (Recording() && item < m_firstNew) RecordImage(item, Sort::Geometry);
    }

private:
    enum class Sort : uint8_t {
        Created,
        Detached,
        Destroyed,
        Placed,
        Key,
        Target,
        Attributes,
        Definitions,
        Geometry
    };
    // A renumbered key; key 0 for none. A local key belongs to its scope segment.
    struct SavedKey {
        HC_KEY key = 0;
        bool global = false;
        Slot scope = kNoSlot;
    };
    struct GeometryData {
        std::vector<HC_POINT> points;
        std::vector<int> ints;
        std::string text;
        std::vector<float> values;
        std::unique_ptr<ShellDetails> shell;
    };
    // What an object had before a change in place: one of these, by the record's sort.
    struct Image {
        std::string name; // Placed
        std::unique_ptr<AttributeSet> attributes;
        std::unique_ptr<Definitions> definitions;
        GeometryData geometry;
    };
    struct Record {
        Sort sort;
        bool named = false; // Destroyed
        Slot slot;
        Slot owner = kNoSlot; // Placed
        // Created, Detached, Placed: the previous sibling (for a reference attached to a
        // geometry item, the index among its references); Target: the target.
        Slot place = kNoSlot;
        SavedKey key;                 // Created, Destroyed, Placed, Key
        ObjectPtr object;             // Created while undone, Destroyed while done
        std::unique_ptr<Image> image; // Placed, Attributes, Definitions, Geometry
    };
    struct Step {
        std::string name;
        std::vector<Record> records;
    };

    bool Recording() const { return m_depth > 0 && m_limit > 0 && !m_applying; }
    void Forget();
    Record& Push(Sort sort, Slot slot);
    void RecordCreated(Slot slot);
    void RecordDetaching(Slot slot);
    void RecordDestroying(Slot slot, bool named);
    void RecordPlacing(Slot slot);
    void RecordKey(Slot slot);
    void RecordTarget(Slot link);
    void RecordImage(Slot slot, Sort sort);

    // Applies the latest step of from (in reverse order to undo it) and moves it to to.
    bool Replay(std::deque<Step>& from, std::deque<Step>& to, bool undo);
    void Apply(Record& record, bool undo);
    void TakeOut(Record& record);
    void PutBack(Record& record);
    void SwapPlace(Record& record);
    void SwapKey(Record& record);
    void SwapTarget(Record& record);
    void SwapImage(Record& record);

    // Where an object stands in its owner, to put it back there (Record::place).
    Slot PlaceOf(Slot slot) const;
    void Attach(Slot slot, Slot place);
    void InsertAfter(ChildList& list, Slot previous, Slot slot);
    SavedKey KeyOf(Slot slot) const;
    SavedKey TakeKey(Slot slot);
    void GiveKey(Slot slot, const SavedKey& key);
    // A link's entry in its target's incoming list, which may have been dropped while it was out.
    void NoteIncoming(Slot link);
    void NoteAppeared(Slot slot);

    Database& m_db;
    std::deque<Step> m_undo;
    std::deque<Step> m_redo;
    Step m_open;
    int m_depth = 0;
    size_t m_limit = HC_UNDO_DEFAULT_LIMIT;
    bool m_applying = false;
    // Objects in slots from here on were made by the open step: undo takes them out whole, so
    // their changes in place need no record.
    Slot m_firstNew = 0;
    std::unordered_set<uint64_t> m_imaged; // slot and sort of the open step's images
};

} // namespace hc
