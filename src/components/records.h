// The records the component tree keeps for its nodes: copies of the host's project data, taken
// while the tree is built, so that the texts never reach back into the host.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/host.h>

namespace obsidra::components {

struct ProjectRecord {
    std::uint64_t handle = 0;
    std::string name;
    std::string type;
    std::uint32_t order = kOrderNotSet;
};

struct DisciplineRecord {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
};

struct MajorCategoryRecord {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
};

struct MinorCategoryRecord {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
    DisplayStyle style;
};

struct FloorRecord {
    std::uint64_t handle = 0;
    std::string name;
    std::uint32_t order = kOrderNotSet;
    double bottomElevation = 0.0;
    double storeyHeight = 0.0;
};

struct AttributeRecord {
    ComponentId id;
    std::string name;
    std::string partitionType;
    ComponentId mainComponentId;
    std::string mainComponentType;
};

struct ComponentRecord {
    std::uint64_t handle = 0;
    ComponentId id;
    std::vector<ComponentId> connectedIds;
    ComponentId mainComponentId;
    // The full geometry records sit on the component's geometry nodes; the component keeps
    // only which geometries are its own.
    std::vector<std::int64_t> geometryIds;
};

struct PartitionRecord {
    ComponentId id;
    std::string name;
    std::string type;
};

struct GeometryRecord {
    std::int64_t id = 0;
    bool wholeGeometry = false;
    std::multimap<std::uint32_t, PartData> parts;
    GeometryIndexData index;
    std::vector<PartitionRecord> partitions;
};

ProjectRecord MakeProjectRecord(const ProjectData& project);
DisciplineRecord MakeDisciplineRecord(const DisciplineData& discipline);
MajorCategoryRecord MakeMajorCategoryRecord(const MajorCategoryData& category);
MinorCategoryRecord MakeMinorCategoryRecord(const MinorCategoryData& category);
FloorRecord MakeFloorRecord(std::string_view name, const FloorData& floor);
AttributeRecord MakeAttributeRecord(const AttributeData& attribute);
ComponentRecord MakeComponentRecord(const ComponentData& component);
// A partition without an entry in partitionTypes gets an empty type.
GeometryRecord MakeGeometryRecord(const GeometryData& geometry,
                                  const std::map<ComponentId, std::string>& partitionTypes);

} // namespace obsidra::components
