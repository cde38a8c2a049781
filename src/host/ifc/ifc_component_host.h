// The component host of an imported IFC building: the component viewer and the statistics
// dialog work on it, and it works on the scene that the import wrote.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include <obsidra/host.h>

#include "host/ifc/ifc_building.h"

namespace obsidra::host::ifc {

class IfcComponentHost final : public ComponentHost,
                               private ComponentHost::View,
                               private ComponentHost::GeometryIndex,
                               private ComponentHost::Model,
                               private ComponentHost::ProjectSource,
                               private ComponentHost::Project {
public:
    explicit IfcComponentHost(IfcBuilding building);
    ~IfcComponentHost() override;

    const IfcBuilding& Building() const { return m_building; }

    // Called when the viewer asks for a repaint after showing or hiding geometry.
    void SetRedraw(std::function<void()> redraw) { m_redraw = std::move(redraw); }
    // Told when the viewer asks for a shell to be drawn see-through (x-ray) or as it is: a
    // display mode of the host's view, which the scene does not keep.
    void SetXRayHandler(std::function<void(HC_KEY shell, bool xRay)> handler) {
        m_xRay = std::move(handler);
    }
    // Told when a shell becomes part of the node selected in the component viewer's tree, or
    // stops being so: the view marks it.
    void SetHighlightHandler(std::function<void(HC_KEY shell, bool highlighted)> handler) {
        m_highlight = std::move(handler);
    }

    // The components the host has selected, which the viewer marks red. Handles that name no
    // component of the building are left out.
    void SetSelection(const std::vector<std::uint64_t>& handles);
    // Selects the component that the scene object of the key belongs to (a picked shell, a
    // component segment); false, changing nothing, when it belongs to none.
    bool SelectByKey(HC_KEY key);
    void ClearSelection() { m_selection.clear(); }
    const std::vector<std::uint64_t>& Selection() const { return m_selection; }

    ComponentHost::View* GetView() override { return this; }
    ComponentHost::GeometryIndex* GetGeometryIndex() override { return this; }
    ComponentHost::Model* GetModel() override { return this; }

private:
    class Shell;

    void RedrawView() override;
    void CollectHighlightedComponents(std::vector<std::uint64_t>& handles) override;
    std::shared_ptr<ComponentHost::GeometryHandle> FindGeometry(std::int64_t geometryId) override;
    ComponentHost::ProjectSource* GetProjectSource() override { return this; }
    void CollectMinorCategoryCounts(MinorCategoryCounts& counts) override;
    void CollectProjects(std::vector<ComponentHost::Project*>& projects) override;
    const ProjectData* GetProjectData() override { return &m_building.Project(); }

    IfcBuilding m_building;
    std::function<void()> m_redraw;
    std::function<void(HC_KEY, bool)> m_xRay;
    std::function<void(HC_KEY, bool)> m_highlight;
    std::vector<std::uint64_t> m_selection;
    std::unordered_map<std::int64_t, std::shared_ptr<Shell>> m_shells;
};

} // namespace obsidra::host::ifc
