// The draw batches of a view's scene, kept up to date from the database's change journal: the
// first Sync walks the scene once; later ones rebuild only what changed since (a segment's own
// geometry after a geometry edit, a segment's subtree after its attributes or links changed)
// and drop what was deleted. Headless: the renderer asks which batches changed and uploads those.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <obsidra/hc.h>
#include <obsidra/hc_journal.h>

#include "host/view/draw_batch.h"
#include "host/view/scene_extract.h"

namespace obsidra::host::view {

// A segment where the walk reached it: a segment included twice is two instances.
struct SegmentInstance {
    HC_KEY segment = 0;  // as the walk found it
    HC_KEY original = 0; // HC_Show_Original_Key of it, as the journal names it
    // The includes (and references to segments) the walk passed through, outermost first.
    std::vector<HC_KEY> links;
    int parent = -1;
    std::vector<int> children;
    std::vector<HC_KEY> styles; // original keys of the style sources it takes
    NetState net;               // what this segment passes down
    DrawBatch batch;            // its own geometry
    bool alive = false;
};

class SceneCache {
public:
    explicit SceneCache(HC_KEY root);
    SceneCache(const SceneCache&) = delete;
    SceneCache& operator=(const SceneCache&) = delete;

    // Brings the batches up to date with the database.
    void Sync();
    // Forgets everything: the next Sync walks the whole scene again.
    void Invalidate() { m_walked = false; }

    // Instances by id; the ids of dead ones are used again.
    const std::vector<SegmentInstance>& Instances() const { return m_instances; }
    // The ids whose batch was built, rebuilt or dropped since the last call.
    std::vector<int> TakeTouched();
    // The world box of everything drawn.
    Box Bounds() const;
    // Segments whose own batch was built by the last Sync.
    int BuiltLastSync() const { return m_built; }

private:
    int NewInstance();
    void Walk(HC_KEY segment, std::vector<HC_KEY> links, int parent);
    // Reads a segment's contents into its instance; returns the segments to walk below it.
    struct Child {
        HC_KEY segment;
        HC_KEY link; // 0 for a subsegment
    };
    std::vector<Child> Visit(int id);
    void BuildBatch(int id);
    void Drop(int id);
    void Rewalk(int id);
    void RefreshAll();
    void Apply(const std::vector<HC_CHANGE>& changes);
    void ForEachInstance(const std::unordered_multimap<HC_KEY, int>& index, HC_KEY key,
                         std::vector<int>& out) const;

    HC_KEY m_root;
    bool m_walked = false;
    HC_REVISION m_revision = 0;
    std::vector<SegmentInstance> m_instances;
    std::vector<int> m_free;
    std::vector<int> m_touched;
    // Original segment key to the instances of that segment, and a style source's original key
    // to the instances that take it as a style.
    std::unordered_multimap<HC_KEY, int> m_bySegment;
    std::unordered_multimap<HC_KEY, int> m_byStyle;
    int m_built = 0;
};

} // namespace obsidra::host::view
