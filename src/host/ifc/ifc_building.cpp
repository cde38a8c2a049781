#include "host/ifc/ifc_building.h"

#include <numeric>

namespace obsidra::host::ifc {

IfcBuilding::IfcBuilding(ProjectData project, std::string schema, HC_KEY segment,
                         std::vector<IfcFloor> floors, std::vector<IfcComponent> components)
    : m_project(std::move(project)), m_schema(std::move(schema)), m_segment(segment),
      m_floors(std::move(floors)), m_components(std::move(components)) {
    m_byHandle.reserve(m_components.size());
    for (std::size_t i = 0; i < m_components.size(); ++i)
        m_byHandle.emplace(m_components[i].handle, i);
}

std::size_t IfcBuilding::ShellCount() const {
    return std::accumulate(
        m_components.begin(), m_components.end(), std::size_t{0},
        [](std::size_t sum, const IfcComponent& c) { return sum + c.shells.size(); });
}

const IfcComponent* IfcBuilding::FindComponent(std::uint64_t handle) const {
    const auto found = m_byHandle.find(handle);
    return found == m_byHandle.end() ? nullptr : &m_components[found->second];
}

const IfcComponent* IfcBuilding::ComponentOfKey(HC_KEY key) const {
    if (!HC_Show_Existence_By_Key(key, "self")) return nullptr;
    HC_KEY original = HC_Show_Original_Key(key);
    char type[HC_TEXT_MAX];
    HC_Show_Key_Type(original, type);
    if (std::string_view(type) != "segment") original = HC_Show_Owner_Original_Key(original);
    return FindComponent(static_cast<std::uint64_t>(original));
}

} // namespace obsidra::host::ifc
