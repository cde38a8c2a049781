#include <algorithm>
#include <map>

#include "components/component_id.h"
#include "host/ifc/ifc_guid.h"
#include "ifc_test.h"
#include "tiny_building.h"

namespace obsidra::host::ifc::testing {
namespace {

using components::IdentifierText;

class IfcImporterTest : public IfcTest {
protected:
    static IfcBuilding ImportTiny() {
        ImportResult result = ImportIfcText(TinyBuildingText(), "tiny");
        if (!result.building) ADD_FAILURE() << result.error;
        return result.building ? std::move(*result.building) : IfcBuilding{};
    }

    // The components with that GlobalId, in file order.
    static std::vector<const IfcComponent*> WithGlobalId(const IfcBuilding& building,
                                                         std::string_view globalId) {
        std::vector<const IfcComponent*> found;
        for (const IfcComponent& c : building.Components())
            if (c.globalId == globalId) found.push_back(&c);
        return found;
    }
    static const IfcComponent& One(const IfcBuilding& building, std::string_view globalId) {
        static const IfcComponent none;
        const auto found = WithGlobalId(building, globalId);
        EXPECT_EQ(found.size(), 1u) << globalId;
        return found.empty() ? none : *found.front();
    }

    // The component's entry in the project's component index, with the group it is in.
    static std::pair<const ComponentData*, const ComponentGroupData*>
    InIndex(const IfcBuilding& building, const IfcComponent& component) {
        const auto groups = building.Project().componentIndex.find(component.category);
        if (groups != building.Project().componentIndex.end())
            for (const ComponentGroupData& group : groups->second)
                for (const ComponentData& data : group.components)
                    if (data.handle == component.handle) return {&data, &group};
        ADD_FAILURE() << component.globalId << " is not in the component index";
        return {nullptr, nullptr};
    }

    static const MinorCategoryData* Minor(const ProjectData& project, const CategoryPath& path) {
        for (const DisciplineData& d : project.disciplines)
            for (const MajorCategoryData& major : d.majorCategories)
                for (const MinorCategoryData& minor : major.minorCategories)
                    if (d.name == path.discipline && major.name == path.majorCategory &&
                        minor.name == path.minorCategory)
                        return &minor;
        return nullptr;
    }

    // The z (or x) range in world coordinates of a component's shells.
    static std::pair<float, float> WorldRange(const IfcComponent& component, int axis) {
        float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        HC_Open_Segment_By_Key(component.segment);
        if (HC_Show_Existence("modelling matrix") > 0) HC_Show_Modelling_Matrix(matrix);
        HC_Close_Segment();
        std::pair<float, float> range{1e30f, -1e30f};
        for (HC_KEY shell : component.shells) {
            int count = 0;
            int faceListLength = 0;
            HC_Show_Shell_Size(shell, &count, &faceListLength);
            std::vector<HC_POINT> points(count), world(count);
            std::vector<int> faces(faceListLength);
            HC_Show_Shell(shell, &count, points.data(), &faceListLength, faces.data());
            HC_Compute_Transformed_Points(count, points.data(), matrix, world.data());
            for (const HC_POINT& p : world) {
                const float v = axis == 0 ? p.x : axis == 1 ? p.y : p.z;
                range = {std::min(range.first, v), std::max(range.second, v)};
            }
        }
        return range;
    }
};

TEST_F(IfcImporterTest, TheHouseHasItsStoreyAndTheSiteStandsOnNoFloor) {
    const IfcBuilding building = ImportHouse();
    EXPECT_EQ(building.Schema(), "IFC4");
    const ProjectData& project = building.Project();
    EXPECT_EQ(project.name, "IfcOpenHouse");
    EXPECT_EQ(project.type, "IFC4"); // the project names no type of its own
    EXPECT_EQ(project.handle, static_cast<std::uint64_t>(building.Segment()));
    EXPECT_EQ(Path(building.Segment()), "/ifc");

    ASSERT_EQ(building.Floors().size(), 2u);
    const IfcFloor& storey = building.Floors()[0];
    EXPECT_TRUE(storey.isStorey);
    EXPECT_EQ(storey.name, "楼层1"); // the storey has no name
    EXPECT_EQ(storey.elevation, 0.0);
    // The only storey runs to the top of the roof, which the file puts above 5 m.
    EXPECT_GT(storey.height, 5.0);
    EXPECT_LT(storey.height, 7.0);
    EXPECT_EQ(storey.componentCount, 40);
    EXPECT_EQ(Path(storey.segment), "/ifc/楼层1");
    EXPECT_FALSE(building.Floors()[1].isStorey);
    EXPECT_EQ(building.Floors()[1].name, "无楼层");
    EXPECT_EQ(building.Floors()[1].componentCount, 1);

    ASSERT_EQ(project.floors.size(), 1u);
    const FloorData& floor = project.floors.at("楼层1");
    EXPECT_EQ(floor.handle, static_cast<std::uint64_t>(storey.segment));
    EXPECT_EQ(floor.order, 0u);
    EXPECT_EQ(floor.bottomElevation, 0.0);
    EXPECT_EQ(floor.storeyHeight, storey.height);
    EXPECT_EQ(One(building, "3bqf5ZY_nDpfb1hfmOkxFk").ifcClass, "IfcSite");
}

// The file's 47 products less its 4 openings, its building and its storey: the windows and
// the roof have no body of their own but stand for their parts.
TEST_F(IfcImporterTest, EveryProductWithABodyOrPartsIsAComponent) {
    const IfcBuilding building = ImportHouse();
    std::map<std::string, std::pair<int, int>> perClass; // components, shells
    for (const IfcComponent& c : building.Components()) {
        ++perClass[c.ifcClass].first;
        perClass[c.ifcClass].second += static_cast<int>(c.shells.size());
    }
    const std::map<std::string, std::pair<int, int>> expected = {
        {"IfcDoor", {1, 1}},   {"IfcFooting", {1, 1}},     {"IfcMember", {20, 20}},
        {"IfcPlate", {5, 5}},  {"IfcRoof", {1, 0}},        {"IfcSite", {1, 1}},
        {"IfcSlab", {2, 2}},   {"IfcStairFlight", {1, 1}}, {"IfcWallStandardCase", {4, 4}},
        {"IfcWindow", {5, 0}},
    };
    EXPECT_EQ(perClass, expected);
    EXPECT_EQ(building.ShellCount(), 35u);
}

TEST_F(IfcImporterTest, AComponentIsFoundByItsGuidHandleSegmentAndShells) {
    const IfcBuilding building = ImportHouse();
    const IfcComponent& wall = One(building, "3g46_woBL6sugXeY5_WP6n");
    EXPECT_EQ(wall.name, "South wall");
    EXPECT_EQ(wall.handle, static_cast<std::uint64_t>(wall.segment));
    EXPECT_EQ(Path(wall.segment), "/ifc/楼层1/3g46_woBL6sugXeY5_WP6n");
    EXPECT_EQ(UserOptions(wall.segment), "ifc class=IfcWallStandardCase,name=South wall");
    EXPECT_EQ(building.FindComponent(wall.handle), &wall);
    ASSERT_EQ(wall.shells.size(), 1u);
    EXPECT_EQ(building.ComponentOfKey(wall.shells[0]), &wall);
    EXPECT_EQ(building.ComponentOfKey(wall.segment), &wall);
    EXPECT_EQ(building.ComponentOfKey(building.Floors()[0].segment), nullptr);
    EXPECT_EQ(building.ComponentOfKey(123456), nullptr);
    EXPECT_EQ(building.FindComponent(42), nullptr);

    const auto [data, group] = InIndex(building, wall);
    ASSERT_TRUE(data);
    EXPECT_EQ(IdentifierText(data->id), "ea106fba-c8b5-46db-8aa1-a2217e8191b1");
    EXPECT_EQ(group->floorName, "楼层1");
}

TEST_F(IfcImporterTest, GeometryIdsAreTheKeysOfTheComponentsShells) {
    const IfcBuilding building = ImportHouse();
    std::size_t geometries = 0;
    for (const auto& [path, groups] : building.Project().componentIndex)
        for (const ComponentGroupData& group : groups)
            for (const ComponentData& component : group.components) {
                const IfcComponent* c = building.FindComponent(component.handle);
                ASSERT_TRUE(c);
                for (const GeometryData& geometry : component.geometries) {
                    ++geometries;
                    EXPECT_EQ(Type(geometry.id), "shell");
                    EXPECT_EQ(HC_Show_Owner_Original_Key(geometry.id), c->segment);
                    int points = 0;
                    int faces = 0;
                    HC_Show_Shell_Size(geometry.id, &points, &faces);
                    EXPECT_GT(points, 3);
                    EXPECT_GT(faces, 3);
                    EXPECT_EQ(geometry.wholeGeometry, component.geometries.size() == 1);
                    // The element's own attributes are its first part.
                    ASSERT_FALSE(geometry.parts.empty());
                    const PartData& first = geometry.parts.begin()->second;
                    EXPECT_EQ(geometry.parts.begin()->first, kShownPartKind);
                    EXPECT_EQ(first.type, c->ifcClass);
                    EXPECT_EQ(first.parameters.at("GlobalId"), c->globalId);
                }
            }
    EXPECT_EQ(geometries, building.ShellCount());
    EXPECT_EQ(List("/ifc/...", "shells").size(), geometries);
}

TEST_F(IfcImporterTest, PlacementsAndColoursAreTheFilesOwn) {
    const IfcBuilding building = ImportHouse();
    // The south wall: a 10 m x 0.36 m profile extruded 3 m up from the storey at 0.
    const IfcComponent& wall = One(building, "3g46_woBL6sugXeY5_WP6n");
    const auto [bottom, top] = WorldRange(wall, 2);
    EXPECT_NEAR(bottom, 0.0f, 1e-4f);
    EXPECT_NEAR(top, 3.0f, 1e-4f);
    const auto [west, east] = WorldRange(wall, 0);
    EXPECT_NEAR(east - west, 10.0f, 1e-3f);
    // Its surface style: IFCCOLOURRGB($,0.75,0.73,0.68).
    EXPECT_EQ(Colour(wall.segment), "faces=(r=0.750 g=0.730 b=0.680)");
    const MinorCategoryData* walls = Minor(building.Project(), wall.category);
    ASSERT_TRUE(walls);
    EXPECT_NE(walls->style.flags & 0xFFF0, 0);
    EXPECT_EQ(walls->style.red, 191);
    EXPECT_EQ(walls->style.green, 186);
    EXPECT_EQ(walls->style.blue, 173);
    EXPECT_EQ(walls->style.alpha, 255);
}

TEST_F(IfcImporterTest, PartsFollowTheirWholeAndOpeningsJoinFillerAndHost) {
    const IfcBuilding building = ImportHouse();
    const IfcComponent& window = One(building, "3lY7vAqg1AOuHmhrmPSRNL");
    EXPECT_EQ(window.category, (CategoryPath{"建筑", "窗", "窗"}));
    EXPECT_TRUE(window.shells.empty());
    const ComponentId windowId = IdFromGlobalId(window.globalId);
    // A mullion of that window: its own categories, the window's discipline.
    const IfcComponent& mullion = One(building, "1DDgU0hLvBH8oWeOKX3GI2");
    EXPECT_EQ(mullion.category, (CategoryPath{"建筑", "杆件", "竖梃"}));
    EXPECT_EQ(InIndex(building, mullion).first->mainComponentId, windowId);
    EXPECT_EQ(InIndex(building, window).first->mainComponentId.text, "none");

    // The door fills an opening in the east wall.
    const IfcComponent& door = One(building, "0Tif_$wI1FwAwq$OJt24I8");
    const IfcComponent& eastWall = One(building, "3hw7qrktPAl8j6w3qKhwKm");
    EXPECT_EQ(InIndex(building, door).first->connectedIds,
              std::vector<ComponentId>{IdFromGlobalId(eastWall.globalId)});
    EXPECT_EQ(InIndex(building, eastWall).first->connectedIds,
              std::vector<ComponentId>{IdFromGlobalId(door.globalId)});
}

TEST_F(IfcImporterTest, FloorsGoByElevationWithNamesKeptApart) {
    const IfcBuilding building = ImportTiny();
    ASSERT_EQ(building.Floors().size(), 2u);
    // "Level/1" comes first in the file but stands 3 m up; "level/1" differs only in case.
    const IfcFloor& lower = building.Floors()[0];
    const IfcFloor& upper = building.Floors()[1];
    EXPECT_EQ(lower.name, "level/1");
    EXPECT_EQ(upper.name, "Level/1 (2)");
    EXPECT_EQ(Path(lower.segment), "/ifc/level_1");
    EXPECT_EQ(Path(upper.segment), "/ifc/Level_1 (2)");
    EXPECT_DOUBLE_EQ(lower.elevation, 0.0);
    EXPECT_DOUBLE_EQ(upper.elevation, 3.0);
    EXPECT_DOUBLE_EQ(lower.height, 3.0);
    // The top storey's walls are 2.5 m high.
    EXPECT_NEAR(upper.height, 2.5, 1e-6);
    EXPECT_EQ(building.Project().floors.at("level/1").order, 0u);
    EXPECT_EQ(building.Project().floors.at("Level/1 (2)").order, 1u);
}

TEST_F(IfcImporterTest, SharedAndMalformedGlobalIdsStillNameTheirComponents) {
    const IfcBuilding building = ImportTiny();
    const auto walls = WithGlobalId(building, "3WallA0000000000000000");
    ASSERT_EQ(walls.size(), 2u);
    EXPECT_EQ(Path(walls[0]->segment), "/ifc/Level_1 (2)/3WallA0000000000000000");
    EXPECT_EQ(Path(walls[1]->segment), "/ifc/Level_1 (2)/3WallA0000000000000000 (2)");
    EXPECT_NE(walls[0]->handle, walls[1]->handle);
    EXPECT_EQ(InIndex(building, *walls[0]).first->id, InIndex(building, *walls[1]).first->id);

    const IfcComponent& proxy = One(building, "not-a-guid");
    EXPECT_EQ(Path(proxy.segment), "/ifc/level_1/not-a-guid");
    EXPECT_EQ(InIndex(building, proxy).first->id, (ComponentId{{}, "not-a-guid"}));
}

TEST_F(IfcImporterTest, OccurrencePropertiesOverrideTheTypesAndDecideTheCategory) {
    const IfcBuilding building = ImportTiny();
    const auto walls = WithGlobalId(building, "3WallA0000000000000000");
    ASSERT_EQ(walls.size(), 2u);
    // The type's Pset_WallCommon says IsExternal, the occurrence's own set a FireRating.
    EXPECT_EQ(walls[0]->category, (CategoryPath{"建筑", "墙", "外墙"}));
    EXPECT_EQ(walls[1]->category, (CategoryPath{"建筑", "墙", "墙"}));
    const auto [typed, group] = InIndex(building, *walls[0]);
    ASSERT_TRUE(typed);
    ASSERT_EQ(typed->geometries.size(), 1u);
    std::map<std::string, std::string, Utf16Less> common;
    for (const auto& [kind, part] : typed->geometries[0].parts)
        if (part.name == "Pset_WallCommon") common = part.parameters;
    EXPECT_EQ(common, (std::map<std::string, std::string, Utf16Less>{{"FireRating", "F90"},
                                                                     {"IsExternal", "true"}}));
    // Grouped under its type.
    EXPECT_EQ(group->attributeKey, IdFromGlobalId("4Type00000000000000000"));
    const MinorCategoryData* external = Minor(building.Project(), walls[0]->category);
    ASSERT_TRUE(external);
    EXPECT_EQ(external->attributes.at(group->attributeKey).name, "Type W");
    // Without a type or an ObjectType, the IFC class names the group.
    const ComponentGroupData* untyped = InIndex(building, *walls[1]).second;
    const MinorCategoryData* plain = Minor(building.Project(), walls[1]->category);
    ASSERT_TRUE(untyped && plain);
    EXPECT_EQ(plain->attributes.at(untyped->attributeKey).name, "IfcWall");
    EXPECT_EQ(IdentifierText(untyped->attributeKey), "");
}

TEST_F(IfcImporterTest, TranslucentColoursAndPlacementsGoIntoTheScene) {
    const IfcBuilding building = ImportTiny();
    const IfcComponent& wall = *WithGlobalId(building, "3WallA0000000000000000").at(0);
    EXPECT_EQ(Colour(wall.segment),
              "faces=(diffuse=(r=1.000 g=0.000 b=0.000),transmission=(r=0.500 g=0.500 b=0.500))");
    float matrix[16];
    HC_Open_Segment_By_Key(wall.segment);
    HC_Show_Modelling_Matrix(matrix);
    HC_Close_Segment();
    // Placed 1 m along x on the storey 3 m up: translation in the last row.
    EXPECT_FLOAT_EQ(matrix[12], 1.0f);
    EXPECT_FLOAT_EQ(matrix[13], 0.0f);
    EXPECT_FLOAT_EQ(matrix[14], 3.0f);
    const auto [bottom, top] = WorldRange(wall, 2);
    EXPECT_NEAR(bottom, 3.0f, 1e-5f);
    EXPECT_NEAR(top, 5.5f, 1e-5f);
    const auto [west, east] = WorldRange(wall, 0);
    EXPECT_NEAR(west, -1.0f, 1e-5f);
    EXPECT_NEAR(east, 3.0f, 1e-5f);
}

TEST_F(IfcImporterTest, ConnectionsAndAssembliesRelateComponents) {
    const IfcBuilding building = ImportTiny();
    const IfcComponent& wall = *WithGlobalId(building, "3WallA0000000000000000").at(0);
    const IfcComponent& proxy = One(building, "not-a-guid");
    EXPECT_EQ(InIndex(building, wall).first->connectedIds,
              std::vector<ComponentId>{InIndex(building, proxy).first->id});
    EXPECT_EQ(InIndex(building, proxy).first->connectedIds,
              std::vector<ComponentId>{InIndex(building, wall).first->id});

    const IfcComponent& frame = One(building, "2Frame0000000000000000");
    const IfcComponent& beam = One(building, "2Beam00000000000000000");
    EXPECT_EQ(frame.category, (CategoryPath{"结构", "构件组", "刚架"}));
    EXPECT_TRUE(frame.shells.empty());
    EXPECT_EQ(frame.floor, "level/1");
    // The beam says it bears no load, but it belongs to the frame.
    EXPECT_EQ(beam.category, (CategoryPath{"结构", "梁", "梁"}));
    EXPECT_EQ(beam.floor, "level/1");
    EXPECT_EQ(InIndex(building, beam).first->mainComponentId,
              IdFromGlobalId("2Frame0000000000000000"));
}

TEST_F(IfcImporterTest, CategoriesAreOrderedAndHandledOnce) {
    const IfcBuilding building = ImportHouse();
    const ProjectData& project = building.Project();
    std::vector<std::string> disciplines;
    std::vector<std::uint64_t> handles;
    for (std::size_t d = 0; d < project.disciplines.size(); ++d) {
        const DisciplineData& discipline = project.disciplines[d];
        disciplines.push_back(discipline.name);
        EXPECT_EQ(discipline.order, d);
        handles.push_back(discipline.handle);
        for (std::size_t m = 0; m < discipline.majorCategories.size(); ++m) {
            EXPECT_EQ(discipline.majorCategories[m].order, m);
            handles.push_back(discipline.majorCategories[m].handle);
            for (const MinorCategoryData& minor : discipline.majorCategories[m].minorCategories) {
                handles.push_back(minor.handle);
                EXPECT_TRUE(project.componentIndex.contains(
                    {discipline.name, discipline.majorCategories[m].name, minor.name}));
            }
        }
    }
    EXPECT_EQ(disciplines, (std::vector<std::string>{"建筑", "结构", "其他"}));
    std::sort(handles.begin(), handles.end());
    EXPECT_EQ(std::adjacent_find(handles.begin(), handles.end()), handles.end());
}

} // namespace
} // namespace obsidra::host::ifc::testing
