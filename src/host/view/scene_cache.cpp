#include "host/view/scene_cache.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_set>

#include "text/text.h"

namespace obsidra::host::view {

namespace {

struct Found {
    HC_KEY key;
    std::string type;
};

// The contents of the open segment that pass a filter.
std::vector<Found> Contents(const char* filter) {
    std::vector<Found> found;
    char type[HC_TEXT_MAX];
    HC_KEY key = 0;
    HC_Begin_Contents_Search(".", filter);
    while (HC_Find_Contents(type, &key))
        found.push_back({key, type});
    HC_End_Contents_Search();
    return found;
}

// Merges what the open segment sets itself into net.
void MergeOwn(NetState& net) {
    char options[HC_TEXT_MAX];
    if (HC_Show_Existence("color")) {
        HC_Show_Color(options);
        net.colour.Merge(options, true);
    }
    if (HC_Show_Existence("visibility")) {
        HC_Show_Visibility(options);
        net.visibility.Merge(options, false);
    }
    if (HC_Show_Existence("condition")) {
        HC_Show_Conditions(options);
        net.conditions.Merge(options, false);
    }
}

// Whether a condition ("night", "!night", "a & b") holds for the conditions set.
bool ConditionHolds(std::string_view condition, const OptionMap& conditions) {
    for (std::string_view term : obsidra::text::Fields(condition, '&')) {
        bool negated = !term.empty() && term.front() == '!';
        if (negated) term = obsidra::text::Trim(term.substr(1));
        if (term.empty()) continue;
        const std::string* value = conditions.Find(obsidra::text::ToLower(term));
        bool set = value && *value != "off";
        if (set == negated) return false;
    }
    return true;
}

void Erase(std::unordered_multimap<HC_KEY, int>& index, HC_KEY key, int id) {
    auto [first, last] = index.equal_range(key);
    for (auto it = first; it != last; ++it)
        if (it->second == id) {
            index.erase(it);
            return;
        }
}

} // namespace

SceneCache::SceneCache(HC_KEY root) : m_root(root) {}

std::vector<int> SceneCache::TakeTouched() {
    std::vector<int> touched;
    touched.swap(m_touched);
    std::sort(touched.begin(), touched.end());
    touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    return touched;
}

Box SceneCache::Bounds() const {
    Box box;
    for (const SegmentInstance& instance : m_instances)
        if (instance.alive) box.Add(instance.batch.bounds);
    return box;
}

int SceneCache::NewInstance() {
    int id;
    if (!m_free.empty()) {
        id = m_free.back();
        m_free.pop_back();
        m_instances[id] = SegmentInstance{};
    } else {
        id = static_cast<int>(m_instances.size());
        m_instances.emplace_back();
    }
    m_instances[id].alive = true;
    return id;
}

void SceneCache::Walk(HC_KEY segment, std::vector<HC_KEY> links, int parent) {
    // A stack of its own rather than recursion: scenes may be deeper than the call stack.
    struct Pending {
        HC_KEY segment;
        std::vector<HC_KEY> links;
        int parent;
    };
    std::vector<Pending> stack{{segment, std::move(links), parent}};
    while (!stack.empty()) {
        Pending next = std::move(stack.back());
        stack.pop_back();
        int id = NewInstance();
        SegmentInstance& instance = m_instances[id];
        instance.segment = next.segment;
        instance.original = HC_Show_Original_Key(next.segment);
        instance.links = std::move(next.links);
        instance.parent = next.parent;
        if (next.parent >= 0) m_instances[next.parent].children.push_back(id);
        m_bySegment.emplace(instance.original, id);
        std::vector<Child> children = Visit(id);
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            std::vector<HC_KEY> childLinks = m_instances[id].links;
            if (it->link) childLinks.push_back(it->link);
            stack.push_back({it->segment, std::move(childLinks), id});
        }
    }
}

std::vector<SceneCache::Child> SceneCache::Visit(int id) {
    std::vector<Child> children;
    HC_KEY segment = m_instances[id].segment;
    int parent = m_instances[id].parent;
    NetState net = parent >= 0 ? m_instances[parent].net : NetState{};
    std::vector<HC_KEY> styles;
    char path[HC_TEXT_MAX];
    char text[HC_TEXT_MAX];

    HC_Open_Segment_By_Key(segment);
    std::vector<Found> contents = Contents("segments, includes, styles, named styles, references");
    // Styles first: what the segment sets itself wins over them.
    for (const Found& link : contents) {
        HC_KEY source = 0;
        if (link.type == "style") {
            source = HC_Show_Style_Segment(link.key, path);
        } else if (link.type == "named style") {
            HC_Show_Named_Style_Segment(link.key, text);
            source = text[0] ? HC_Show_Named_Style(text, path) : 0;
        }
        if (source == 0 || source == -1) continue;
        styles.push_back(HC_Show_Original_Key(source));
        HC_Open_Segment_By_Key(source);
        MergeOwn(net);
        HC_Close_Segment();
    }
    MergeOwn(net);
    if (HC_Show_Existence("modelling matrix")) {
        Mat4 own;
        HC_Show_Modelling_Matrix(own.m.data());
        net.matrix = Then(own, net.matrix);
    }
    for (const Found& item : contents) {
        if (item.type == "segment") {
            children.push_back({item.key, 0});
        } else if (item.type == "include") {
            HC_Show_Conditional_Include(item.key, path, text);
            if (!ConditionHolds(text, net.conditions)) continue;
            children.push_back({HC_Show_Include_Segment(item.key, path), item.key});
        } else if (item.type == "reference") {
            HC_KEY target = HC_Show_Reference_Geometry(item.key);
            if (HC_Show_Existence_By_Key(target, "self") == 0) continue;
            HC_Show_Key_Type(target, text);
            if (std::strcmp(text, "segment") == 0) children.push_back({target, item.key});
        }
    }
    HC_Close_Segment();

    // An include of a segment the walk is already inside would never end.
    std::erase_if(children, [&](const Child& child) {
        if (!child.link) return false;
        HC_KEY original = HC_Show_Original_Key(child.segment);
        for (int at = id; at >= 0; at = m_instances[at].parent)
            if (m_instances[at].original == original) return true;
        return false;
    });
    for (HC_KEY style : styles)
        m_byStyle.emplace(style, id);
    m_instances[id].styles = std::move(styles);
    m_instances[id].net = std::move(net);
    BuildBatch(id);
    return children;
}

void SceneCache::BuildBatch(int id) {
    SegmentInstance& instance = m_instances[id];
    instance.batch = DrawBatch{};
    char type[HC_TEXT_MAX];
    HC_Open_Segment_By_Key(instance.segment);
    std::vector<Found> items = Contents("geometry, references");
    HC_Close_Segment();
    for (const Found& item : items) {
        if (item.type != "reference") {
            ExtractItem(item.key, item.type, instance.net, instance.batch);
            continue;
        }
        HC_KEY target = HC_Show_Reference_Geometry(item.key);
        if (HC_Show_Existence_By_Key(target, "self") == 0) continue;
        HC_Show_Key_Type(target, type);
        if (std::strcmp(type, "segment") != 0)
            ExtractItem(target, type, instance.net, instance.batch);
    }
    ++m_built;
    m_touched.push_back(id);
}

void SceneCache::Drop(int id) {
    std::vector<int> stack{id};
    SegmentInstance& top = m_instances[id];
    if (top.parent >= 0) std::erase(m_instances[top.parent].children, id);
    while (!stack.empty()) {
        int at = stack.back();
        stack.pop_back();
        SegmentInstance& instance = m_instances[at];
        if (!instance.alive) continue;
        stack.insert(stack.end(), instance.children.begin(), instance.children.end());
        Erase(m_bySegment, instance.original, at);
        for (HC_KEY style : instance.styles)
            Erase(m_byStyle, style, at);
        instance = SegmentInstance{};
        m_free.push_back(at);
        m_touched.push_back(at);
    }
}

void SceneCache::Rewalk(int id) {
    SegmentInstance& instance = m_instances[id];
    HC_KEY segment = instance.segment;
    std::vector<HC_KEY> links = instance.links;
    int parent = instance.parent;
    Drop(id);
    if (HC_Show_Existence_By_Key(segment, "self") != 0) Walk(segment, std::move(links), parent);
}

void SceneCache::RefreshAll() {
    for (int id = 0; id < static_cast<int>(m_instances.size()); ++id)
        if (m_instances[id].alive) m_touched.push_back(id);
    m_instances.clear();
    m_free.clear();
    m_bySegment.clear();
    m_byStyle.clear();
    if (HC_Show_Existence_By_Key(m_root, "self") != 0) Walk(m_root, {}, -1);
    m_walked = true;
}

void SceneCache::ForEachInstance(const std::unordered_multimap<HC_KEY, int>& index, HC_KEY key,
                                 std::vector<int>& out) const {
    auto [first, last] = index.equal_range(key);
    for (auto it = first; it != last; ++it)
        out.push_back(it->second);
}

void SceneCache::Sync() {
    m_built = 0;
    HC_REVISION now = HC_Show_Revision();
    if (!m_walked) {
        RefreshAll();
        m_revision = now;
        return;
    }
    if (now == m_revision) return;
    HC_REVISION pending = now - m_revision;
    std::vector<HC_CHANGE> changes(pending > 0 && pending <= HC_CHANGE_HISTORY ? pending : 0);
    int count = changes.empty() ? -1
                                : HC_Show_Changes_Since(m_revision, changes.data(),
                                                        static_cast<int>(changes.size()));
    m_revision = now;
    if (count < 0) {
        RefreshAll();
        return;
    }
    changes.resize(count);
    Apply(changes);
}

void SceneCache::Apply(const std::vector<HC_CHANGE>& changes) {
    std::vector<int> drop, rewalk, rebuild;
    for (const HC_CHANGE& change : changes) {
        switch (change.kind) {
        case HC_CHANGE_DEFINITIONS: // a named style may now mean another segment
        case HC_CHANGE_KEYS:        // the batches hold the keys items had
            RefreshAll();
            return;
        case HC_CHANGE_SEGMENT_CREATED:
        case HC_CHANGE_LINKS:
            ForEachInstance(m_bySegment, change.segment, rewalk);
            break;
        case HC_CHANGE_DELETED:
        case HC_CHANGE_MOVED:
            if (m_bySegment.contains(change.key)) {
                ForEachInstance(m_bySegment, change.key, drop);
                if (change.kind == HC_CHANGE_MOVED)
                    ForEachInstance(m_bySegment, change.segment, rewalk);
            } else {
                // An item or a link went: the owner's batch, and for a link what it brought.
                ForEachInstance(m_bySegment, change.segment, rewalk);
            }
            break;
        case HC_CHANGE_ATTRIBUTES:
            if (m_bySegment.contains(change.key) || m_byStyle.contains(change.key)) {
                ForEachInstance(m_bySegment, change.key, rewalk);
                ForEachInstance(m_byStyle, change.key, rewalk);
            } else {
                ForEachInstance(m_bySegment, change.segment, rebuild);
            }
            break;
        case HC_CHANGE_GEOMETRY:
            ForEachInstance(m_bySegment, change.segment, rebuild);
            break;
        }
    }
    // Ids die as they are dropped and may be handed out again by a walk, so each step works on
    // the originals (key, links) it noted before any of them is done.
    std::unordered_set<int> dropped(drop.begin(), drop.end());
    for (int id : drop)
        if (m_instances[id].alive) Drop(id);
    std::unordered_set<int> walked(rewalk.begin(), rewalk.end());
    auto underAnother = [&](int id) {
        for (int at = m_instances[id].parent; at >= 0; at = m_instances[at].parent)
            if (walked.contains(at)) return true;
        return false;
    };
    struct Target {
        HC_KEY original;
        std::vector<HC_KEY> links;
    };
    auto targetsOf = [&](const std::vector<int>& ids, bool skipWalked) {
        std::vector<Target> targets;
        std::unordered_set<int> seen;
        for (int id : ids)
            if (seen.insert(id).second && !dropped.contains(id) && m_instances[id].alive &&
                !(skipWalked && walked.contains(id)) && !underAnother(id))
                targets.push_back({m_instances[id].original, m_instances[id].links});
        return targets;
    };
    std::vector<Target> toWalk = targetsOf(rewalk, false);
    std::vector<Target> toBuild = targetsOf(rebuild, true);
    auto find = [&](const Target& target) {
        auto [first, last] = m_bySegment.equal_range(target.original);
        for (auto it = first; it != last; ++it)
            if (m_instances[it->second].links == target.links) return it->second;
        return -1;
    };
    for (const Target& target : toWalk)
        if (int id = find(target); id >= 0) Rewalk(id);
    for (const Target& target : toBuild)
        if (int id = find(target); id >= 0) BuildBatch(id);
}

} // namespace obsidra::host::view
