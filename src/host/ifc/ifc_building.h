// A building imported from an IFC file: its project data and where its components stand in
// the scene.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <obsidra/hc.h>
#include <obsidra/host.h>

namespace obsidra::host::ifc {

struct IfcComponent {
    // The component's handle is the key of its segment, so that either finds the other.
    std::uint64_t handle = 0;
    HC_KEY segment = 0;
    std::string globalId;
    std::string ifcClass;
    std::string name;
    CategoryPath category;
    std::string floor;
    std::vector<HC_KEY> shells; // the ids of its geometries
};

struct IfcFloor {
    std::string name;
    HC_KEY segment = 0;
    bool isStorey = true; // false for the floor of the components outside every storey
    double elevation = 0;
    double height = 0;
    int componentCount = 0;
};

class IfcBuilding {
public:
    IfcBuilding() = default;
    IfcBuilding(ProjectData project, std::string schema, HC_KEY segment,
                std::vector<IfcFloor> floors, std::vector<IfcComponent> components);

    const ProjectData& Project() const { return m_project; }
    // The schema the file was written in: IFC2X3, IFC4, ...
    const std::string& Schema() const { return m_schema; }
    // The segment the scene was imported under.
    HC_KEY Segment() const { return m_segment; }
    // From the lowest storey up, then the floor of components outside every storey.
    const std::vector<IfcFloor>& Floors() const { return m_floors; }
    // In the order of the file.
    const std::vector<IfcComponent>& Components() const { return m_components; }
    std::size_t ShellCount() const;

    const IfcComponent* FindComponent(std::uint64_t handle) const;
    // The component whose segment is, or holds, the object of the key (a shell, an attribute
    // holder, the segment itself); null for any other key.
    const IfcComponent* ComponentOfKey(HC_KEY key) const;

private:
    ProjectData m_project;
    std::string m_schema;
    HC_KEY m_segment = 0;
    std::vector<IfcFloor> m_floors;
    std::vector<IfcComponent> m_components;
    std::unordered_map<std::uint64_t, std::size_t> m_byHandle;
};

} // namespace obsidra::host::ifc
