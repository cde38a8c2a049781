#include <functional>

#include <obsidra/hc_check.h>

#include "hc/database.h"
#include "hc/invariants.h"
#include "hc/metafile.h"
#include "hc_test.h"

namespace hc {

// Reaches the database's tables to damage them the way a faulty mutator would.
class DatabaseProbe {
public:
    explicit DatabaseProbe(Database& db) : m_db(db) {}

    Object& ObjectOf(HC_KEY key) { return *m_db.Get(m_db.Resolve(key)); }
    Segment& SegmentOf(HC_KEY key) { return static_cast<Segment&>(ObjectOf(key)); }
    Link& LinkOf(HC_KEY key) { return static_cast<Link&>(ObjectOf(key)); }
    Slot SlotOf(HC_KEY key) { return m_db.Resolve(key); }
    ContentKind& TypeOf(HC_KEY key) { return m_db.m_types[SlotOf(key)]; }
    Slot& PrevOf(HC_KEY key) { return m_db.m_siblings[SlotOf(key)].prev; }
    NameIndex& Names() { return m_db.m_names; }
    auto& Incoming() { return m_db.m_incoming; }
    auto& GlobalKeys() { return m_db.m_globalKeys; }
    size_t& Live() { return m_db.m_live; }

private:
    Database& m_db;
};

} // namespace hc

namespace {

std::string Joined(const std::vector<std::string>& faults) {
    std::string text;
    for (const std::string& fault : faults)
        text += fault + "\n";
    return text;
}

// A scene with something of every kind the checks look at: named and nameless segments, an
// include cycle, a style and a named style, references to a segment and to an item, an attached
// reference, keys renumbered globally and locally, moved and deleted objects, matrices, bounds
// asked for and then made stale again.
struct Scene {
    HC_KEY walls, door, window, frame, include, reference, shell;
};

class Invariants : public HcTest {
protected:
    static Scene BuildScene();
};

Scene Invariants::BuildScene() {
    Scene scene{};
    float shift[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
    scene.walls = HC_Open_Segment("/house/walls");
    scene.shell = Triangle();
    HC_Set_Modelling_Matrix(shift);
    scene.door = HC_Open_Segment("door");
    Triangle();
    HC_Close_Segment();
    scene.window = HC_Open_Segment("");
    HC_Set_Modelling_Matrix(shift);
    Triangle();
    HC_Close_Segment();
    HC_Close_Segment();
    scene.frame = HC_Open_Segment("/library/frame");
    Triangle();
    scene.include = HC_Include_Segment("/house");
    HC_Close_Segment();
    HC_Open_Segment("/house");
    HC_Include_Segment("/library/frame");
    HC_Style_Segment("/library");
    HC_Define_Named_Style("plain", "/library");
    HC_Named_Style_Segment("plain");
    scene.reference = HC_Reference_Geometry_By_Key(scene.shell);
    HC_Close_Segment();
    HC_Open_Geometry(scene.shell);
    HC_Reference_Geometry_By_Key(scene.door);
    HC_Close_Geometry();
    HC_Renumber_Key(scene.door, 77, "global");
    HC_Renumber_Key(scene.shell, 78, "local");
    HC_POINT min, max;
    HC_Show_Bounding_Cuboid_By_Key(HC_Show_Original_Key(77), &min, &max);
    HC_Show_Bounding_Cuboid_By_Key(scene.frame, &min, &max);
    HC_Move_By_Key(scene.window, "/library");
    HC_Open_Segment("/doomed");
    HC_Include_Segment("/house/walls");
    HC_Close_Segment();
    HC_Delete_Segment("/doomed");
    HC_Show_Bounding_Cuboid_By_Key(scene.walls, &min, &max);
    scene.door = HC_Show_Original_Key(77);
    scene.shell = HC_Show_Original_Key(scene.shell);
    return scene;
}

TEST_F(Invariants, HealthyScenesPass) {
    hc::Database& db = hc::Current();
    EXPECT_EQ(Joined(hc::CheckInvariants(db)), "") << "an empty database";
    BuildScene();
    EXPECT_EQ(Joined(hc::CheckInvariants(db)), "");
    std::string error;
    ASSERT_TRUE(hc::LoadMetafileText(db, ReadFile(OBSIDRA_SOURCE_DIR "/examples/showcase.hmf"),
                                     db.Root(), error))
        << error;
    HC_POINT min, max;
    HC_Compute_Circumcuboid("/", &min, &max);
    EXPECT_EQ(Joined(hc::CheckInvariants(db)), "");
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(Invariants, EachKindOfDamageIsReported) {
    const struct {
        const char* name;
        std::function<void(hc::DatabaseProbe&, const Scene&)> damage;
        const char* fault;
    } rows[] = {
        {"kind table", [](auto& p, auto& s) { p.TypeOf(s.door) = hc::ContentKind::Shell; },
         "the kind table says shell"},
        {"sibling table", [](auto& p, auto& s) { p.PrevOf(s.reference) = hc::kNoSlot; },
         "its previous sibling is wrong"},
        {"list count", [](auto& p, auto& s) { ++p.SegmentOf(s.walls).segments.count; },
         "a list counts 2 items but holds 1"},
        {"an object left out of its list",
         [](auto& p, auto& s) {
             auto& list = p.SegmentOf(s.walls).segments;
             list = {};
         },
         "is met 0 times from its owner"},
        {"name index",
         [](auto& p, auto& s) { p.Names().Erase(p.SlotOf(s.door), p.SlotOf(s.walls), "door"); },
         "segment /house/walls/door is not found by its name"},
        {"a link at a dead object",
         [](auto& p, auto& s) { p.LinkOf(s.include).target = p.SlotOf(s.door) + 1000; },
         "aims at a dead object"},
        {"a link its target does not know",
         [](auto& p, auto& s) { p.Incoming().erase(p.SlotOf(s.shell)); },
         "is unknown to its target"},
        {"renumbered key table", [](auto& p, auto&) { p.GlobalKeys().erase(77); },
         "its global key 4D is not in the key table"},
        {"renumbered key shared", [](auto& p, auto& s) { p.GlobalKeys()[77] = p.SlotOf(s.walls); },
         "segment /house/walls/door: its key 4D does not resolve to it"},
        {"live count", [](auto& p, auto&) { ++p.Live(); }, "live objects"},
        {"cached bounds", [](auto& p, auto& s) { p.SegmentOf(s.door).bounds.max.x += 1; },
         "segment /house/walls/door: cached bounds"},
        {"a stale segment under a fresh one",
         [](auto& p, auto& s) { p.SegmentOf(s.door).boundsStale = true; },
         "segment /house/walls has cached bounds although segment /house/walls/door"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        HC_Reset_System();
        const Scene scene = BuildScene();
        hc::Database& db = hc::Current();
        ASSERT_EQ(Joined(hc::CheckInvariants(db)), "");
        hc::DatabaseProbe probe(db);
        row.damage(probe, scene);
        const std::string faults = Joined(hc::CheckInvariants(db));
        EXPECT_NE(faults.find(row.fault), std::string::npos) << faults;
        char report[64];
        EXPECT_GT(HC_Check_Database(report, sizeof report), 0);
        EXPECT_EQ(report, faults.substr(0, sizeof report - 1)) << "the exported check, cut short";
    }
}

} // namespace
