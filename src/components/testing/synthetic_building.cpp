#include "components/testing/synthetic_building.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

namespace obsidra::components::testing {

namespace {

std::size_t Count(int value) {
    return value > 0 ? static_cast<std::size_t>(value) : 0;
}

std::string Numbered(const char* prefix, std::size_t a) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%s%02zu", prefix, a);
    return buffer;
}

std::string Numbered(const char* prefix, std::size_t a, std::size_t b) {
    return Numbered(prefix, a) + Numbered("-", b);
}

std::string Numbered(const char* prefix, std::size_t a, std::size_t b, std::size_t c) {
    return Numbered(prefix, a, b) + Numbered("-", c);
}

// Distinct GUIDs for distinct serials; kind keeps components, attributes, parts and
// partitions apart.
ComponentId MakeId(std::uint8_t kind, std::uint64_t serial) {
    ComponentId id;
    id.guid.data1 = static_cast<std::uint32_t>(serial);
    id.guid.data2 = static_cast<std::uint16_t>(serial >> 32);
    id.guid.data3 = 0x4000;
    id.guid.data4 = {0x80, kind, 0, 0, 0, 0, 0, 0};
    return id;
}

enum IdKind : std::uint8_t { kComponentId = 1, kAttributeId, kPartId, kPartitionId };

class Generator {
public:
    explicit Generator(const BuildingShape& shape) : m_shape(shape) {}

    std::vector<ProjectData> Run() {
        std::vector<ProjectData> projects;
        for (std::size_t p = 1; p <= Count(m_shape.projects); ++p)
            projects.push_back(MakeProject(p));
        return projects;
    }

private:
    ProjectData MakeProject(std::size_t p) {
        ProjectData project;
        project.handle = p;
        project.name = Numbered("工程", p);
        project.type = "建筑";
        project.order = static_cast<std::uint32_t>(p);
        for (std::size_t f = 1; f <= Count(m_shape.floors); ++f)
            project.floors.emplace(
                Numbered("F", f),
                FloorData{f, static_cast<std::uint32_t>(f), 3.0 * static_cast<double>(f - 1), 3.0});
        for (std::size_t d = 1; d <= Count(m_shape.disciplines); ++d)
            project.disciplines.push_back(MakeDiscipline(project, d));
        return project;
    }

    DisciplineData MakeDiscipline(ProjectData& project, std::size_t d) {
        DisciplineData discipline{
            NextHandle(), Numbered("专业", d), static_cast<std::uint32_t>(d), {}};
        for (std::size_t ma = 1; ma <= Count(m_shape.majorCategoriesPerDiscipline); ++ma) {
            MajorCategoryData major{
                NextHandle(), Numbered("大类", d, ma), static_cast<std::uint32_t>(ma), {}};
            for (std::size_t mi = 1; mi <= Count(m_shape.minorCategoriesPerMajor); ++mi) {
                MinorCategoryData minor = MakeMinorCategory(d, ma, mi);
                project.componentIndex.emplace(
                    CategoryPath{discipline.name, major.name, minor.name},
                    MakeGroups(project, minor.attributes.begin()->first));
                major.minorCategories.push_back(std::move(minor));
            }
            discipline.majorCategories.push_back(std::move(major));
        }
        return discipline;
    }

    MinorCategoryData MakeMinorCategory(std::size_t d, std::size_t ma, std::size_t mi) {
        MinorCategoryData minor{
            NextHandle(), Numbered("小类", d, ma, mi), static_cast<std::uint32_t>(mi), {}, {}};
        minor.style.flags = 0x0010;
        minor.style.red = 200;
        minor.style.green = 180;
        minor.style.blue = 160;
        minor.style.alpha = 255;
        minor.style.textSize = 2.5f;
        AttributeData attribute;
        attribute.id = MakeId(kAttributeId, ++m_attributeSerial);
        attribute.name = minor.name + "属性";
        attribute.partitionType = "普通";
        attribute.mainComponentId.text = "none";
        attribute.mainComponentType = "墙";
        minor.attributes.emplace(attribute.id, std::move(attribute));
        return minor;
    }

    std::vector<ComponentGroupData> MakeGroups(ProjectData& project, const ComponentId& attribute) {
        std::vector<ComponentGroupData> groups;
        for (const auto& [floorName, floor] : project.floors) {
            ComponentGroupData group{floorName, attribute, {}};
            group.components.reserve(Count(m_shape.componentsPerGroup));
            for (std::size_t c = 0; c < Count(m_shape.componentsPerGroup); ++c)
                group.components.push_back(MakeComponent(project));
            groups.push_back(std::move(group));
        }
        return groups;
    }

    ComponentData MakeComponent(ProjectData& project) {
        const std::uint64_t serial = ++m_componentSerial;
        ComponentData component{serial, MakeId(kComponentId, serial), {}, {}, {}};
        component.mainComponentId = component.id;
        if (serial > 1) component.connectedIds.push_back(MakeId(kComponentId, serial - 1));
        component.geometries.reserve(Count(m_shape.geometriesPerComponent));
        for (std::size_t g = 0; g < Count(m_shape.geometriesPerComponent); ++g)
            component.geometries.push_back(MakeGeometry(project));
        return component;
    }

    GeometryData MakeGeometry(ProjectData& project) {
        const auto serial = ++m_geometrySerial;
        GeometryData geometry;
        geometry.id = static_cast<std::int64_t>(serial);
        geometry.wholeGeometry = serial % 2 == 1;
        PartData shown{
            MakeId(kPartId, serial), "零件", "板", {{"厚度", "200"}, {"材质", "混凝土"}}};
        geometry.parts.emplace(kShownPartKind, std::move(shown));
        geometry.parts.emplace(kShownPartKind + 1, PartData{MakeId(kPartId, ~serial), "", "", {}});
        geometry.index = {1, static_cast<std::uint32_t>(serial)};
        PartitionData partition{MakeId(kPartitionId, serial), "分区"};
        project.partitionTypes.emplace(partition.id, "结构");
        geometry.partitions.push_back(std::move(partition));
        return geometry;
    }

    std::uint64_t NextHandle() { return ++m_handleSerial; }

    const BuildingShape& m_shape;
    std::uint64_t m_handleSerial = 0;
    std::uint64_t m_attributeSerial = 0;
    std::uint64_t m_componentSerial = 0;
    std::uint64_t m_geometrySerial = 0;
};

} // namespace

std::size_t BuildingShape::ComponentCount() const {
    return Count(projects) * Count(floors) * Count(disciplines) *
           Count(majorCategoriesPerDiscipline) * Count(minorCategoriesPerMajor) *
           Count(componentsPerGroup);
}

std::size_t BuildingShape::GeometryCount() const {
    return ComponentCount() * Count(geometriesPerComponent);
}

std::vector<ProjectData> MakeSyntheticBuilding(const BuildingShape& shape) {
    return Generator(shape).Run();
}

} // namespace obsidra::components::testing
