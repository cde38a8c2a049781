#include "components/records.h"

namespace obsidra::components {

ProjectRecord MakeProjectRecord(const ProjectData& project) {
    return {project.handle, project.name, project.type, project.order};
}

DisciplineRecord MakeDisciplineRecord(const DisciplineData& discipline) {
    return {discipline.handle, discipline.name, discipline.order};
}

MajorCategoryRecord MakeMajorCategoryRecord(const MajorCategoryData& category) {
    return {category.handle, category.name, category.order};
}

MinorCategoryRecord MakeMinorCategoryRecord(const MinorCategoryData& category) {
    return {category.handle, category.name, category.order, category.style};
}

FloorRecord MakeFloorRecord(std::string_view name, const FloorData& floor) {
    return {floor.handle, std::string(name), floor.order, floor.bottomElevation,
            floor.storeyHeight};
}

AttributeRecord MakeAttributeRecord(const AttributeData& attribute) {
    return {attribute.id, attribute.name, attribute.partitionType, attribute.mainComponentId,
            attribute.mainComponentType};
}

ComponentRecord MakeComponentRecord(const ComponentData& component) {
    ComponentRecord record{
        component.handle, component.id, component.connectedIds, component.mainComponentId, {}};
    record.geometryIds.reserve(component.geometries.size());
    for (const GeometryData& geometry : component.geometries)
        record.geometryIds.push_back(geometry.id);
    return record;
}

GeometryRecord MakeGeometryRecord(const GeometryData& geometry,
                                  const std::map<ComponentId, std::string>& partitionTypes) {
    GeometryRecord record{geometry.id, geometry.wholeGeometry, geometry.parts, geometry.index, {}};
    record.partitions.reserve(geometry.partitions.size());
    for (const PartitionData& partition : geometry.partitions) {
        const auto type = partitionTypes.find(partition.id);
        record.partitions.push_back({partition.id, partition.name,
                                     type != partitionTypes.end() ? type->second : std::string()});
    }
    return record;
}

} // namespace obsidra::components
