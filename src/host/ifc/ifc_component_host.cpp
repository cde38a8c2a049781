#include "host/ifc/ifc_component_host.h"

#include <algorithm>

namespace obsidra::host::ifc {

// Shows and hides one shell of the building through its visibility attribute: the shell's
// own, so that the component viewer's boxes act on exactly the geometry they stand for.
class IfcComponentHost::Shell final : public ComponentHost::GeometryHandle,
                                      public ComponentHost::Geometry {
public:
    Shell(HC_KEY key, const IfcComponentHost& host) : m_key(key), m_host(host) {}

    ComponentHost::Geometry* GetGeometry() override { return this; }

    void SetVisible(bool visible) override {
        // The shell may have been deleted in the scene since the import.
        if (!HC_Show_Existence_By_Key(m_key, "self")) return;
        HC_Open_Geometry(m_key);
        HC_Set_Visibility(visible ? "everything=on" : "everything=off");
        HC_Close_Geometry();
    }

    void SetXRay(bool xRay) override {
        if (m_host.m_xRay) m_host.m_xRay(m_key, xRay);
    }

    void SetHighlighted(bool highlighted) override {
        if (m_host.m_highlight) m_host.m_highlight(m_key, highlighted);
    }

private:
    HC_KEY m_key;
    const IfcComponentHost& m_host;
};

IfcComponentHost::IfcComponentHost(IfcBuilding building) : m_building(std::move(building)) {
    for (const IfcComponent& component : m_building.Components())
        for (HC_KEY shell : component.shells)
            m_shells.emplace(shell, std::make_shared<Shell>(shell, *this));
}

IfcComponentHost::~IfcComponentHost() = default;

void IfcComponentHost::SetSelection(const std::vector<std::uint64_t>& handles) {
    m_selection.clear();
    for (std::uint64_t handle : handles)
        if (m_building.FindComponent(handle) &&
            std::find(m_selection.begin(), m_selection.end(), handle) == m_selection.end())
            m_selection.push_back(handle);
}

bool IfcComponentHost::SelectByKey(HC_KEY key) {
    const IfcComponent* component = m_building.ComponentOfKey(key);
    if (!component) return false;
    if (std::find(m_selection.begin(), m_selection.end(), component->handle) == m_selection.end())
        m_selection.push_back(component->handle);
    return true;
}

void IfcComponentHost::RedrawView() {
    if (m_redraw) m_redraw();
}

void IfcComponentHost::CollectHighlightedComponents(std::vector<std::uint64_t>& handles) {
    handles.insert(handles.end(), m_selection.begin(), m_selection.end());
}

std::shared_ptr<ComponentHost::GeometryHandle>
IfcComponentHost::FindGeometry(std::int64_t geometryId) {
    const auto found = m_shells.find(geometryId);
    if (found == m_shells.end() || !HC_Show_Existence_By_Key(geometryId, "self")) return nullptr;
    return found->second;
}

void IfcComponentHost::CollectMinorCategoryCounts(MinorCategoryCounts& counts) {
    for (const IfcComponent& component : m_building.Components())
        ++counts[component.category.minorCategory];
}

void IfcComponentHost::CollectProjects(std::vector<ComponentHost::Project*>& projects) {
    projects.push_back(this);
}

} // namespace obsidra::host::ifc
