#pragma once

// The passes of an optimisation, shared by the files that implement them. Each keeps what the
// subtree draws: the same geometry in the same place, with the same net colour and visibility.

#include <string>
#include <unordered_set>
#include <vector>

#include "hc/database.h"
#include "hc/optimize.h"

namespace hc {

class Optimizer {
public:
    Optimizer(Database& db, const OptimizeChoices& choices) : m_db(db), m_choices(choices) {}

    // Replaces unconditional includes below root by copies of what they include.
    void ExpandIncludes(Slot root);
    // Appends the segments that includes below the roots reach, outside every root, to roots.
    void AddIncludedRoots(std::vector<Slot>& roots) const;
    // Objects that links, named styles or open items name keep their identity: they are never
    // merged away or deleted.
    void PinLinkedObjects();
    void OptimizeTree(Slot root);

private:
    // The segments of a subtree, parents before children.
    std::vector<Slot> Segments(Slot root) const;
    // One of a segment's lists, copied: the passes change the lists they walk.
    std::vector<Slot> ListOf(Slot segment, ChildList Segment::*list) const;
    std::vector<Slot> Children(Slot segment) const { return ListOf(segment, &Segment::segments); }
    std::vector<Slot> Items(Slot segment) const { return ListOf(segment, &Segment::geometry); }
    std::vector<Slot> Links(Slot segment) const { return ListOf(segment, &Segment::links); }
    bool Pinned(Slot slot) const { return m_pinned.count(slot) != 0; }
    bool IsInside(Slot segment, Slot ancestor) const;

    void DiscardUserData(const std::vector<Slot>& segments);
    void ExtractAttributes(Slot segment);
    void CollapseMatrices(const std::vector<Slot>& segments);
    void LocalizeMatrices(const std::vector<Slot>& segments);
    void ReorganizeAttributes(const std::vector<Slot>& segments);
    void ReorganizeSpatial(const std::vector<Slot>& segments);
    void RemoveDuplicateShells(Slot segment);
    void MergeShells(Slot segment);
    void InstanceShells(const std::vector<Slot>& segments);
    void ProcessNames(Slot root, const std::vector<Slot>& segments);

    // Whether b can be folded into its sibling a; may move user data to make it so.
    bool CanFold(Slot a, Slot b);
    void Fold(Slot into, Slot from);
    // Moves a segment's user data onto its items and subsegments.
    void LocalizeUserData(Slot segment);
    // Shells that may be merged, removed or shared: no attributes, references or pins.
    bool IsPlainShell(Slot item) const;

    Database& m_db;
    const OptimizeChoices& m_choices;
    std::unordered_set<Slot> m_pinned;
};

// The text that tells two attribute sets apart (empty for none); user data left out when
// withUserData is false.
std::string AttributeSignature(const Object& object, bool withUserData);
bool IsUserData(ContentKind kind);

} // namespace hc
