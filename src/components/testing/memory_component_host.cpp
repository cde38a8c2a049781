#include "components/testing/memory_component_host.h"

#include <utility>

namespace obsidra::components::testing {

class MemoryComponentHost::StoredProject final : public ComponentHost::Project {
public:
    explicit StoredProject(std::optional<ProjectData> data) : m_data(std::move(data)) {}

    const ProjectData* GetProjectData() override { return m_data ? &*m_data : nullptr; }

private:
    std::optional<ProjectData> m_data;
};

class MemoryComponentHost::StoredGeometry final : public ComponentHost::GeometryHandle,
                                                  public ComponentHost::Geometry {
public:
    StoredGeometry(std::int64_t id, std::vector<VisibilityCall>& calls)
        : m_id(id), m_calls(&calls) {}

    Geometry* GetGeometry() override { return this; }

    void SetVisible(bool visible) override {
        m_visible = visible;
        m_calls->push_back({m_id, visible});
    }

    void SetXRay(bool xRay) override { m_xRay = xRay; }
    void SetHighlighted(bool highlighted) override { m_highlighted = highlighted; }

    bool Visible() const { return m_visible; }
    bool XRay() const { return m_xRay; }
    bool Highlighted() const { return m_highlighted; }

private:
    std::int64_t m_id;
    std::vector<VisibilityCall>* m_calls;
    bool m_visible = true;
    bool m_xRay = false;
    bool m_highlighted = false;
};

MemoryComponentHost::MemoryComponentHost() = default;

MemoryComponentHost::MemoryComponentHost(std::vector<ProjectData> projects) {
    for (ProjectData& project : projects)
        AddProject(std::move(project));
}

MemoryComponentHost::~MemoryComponentHost() = default;

void MemoryComponentHost::AddProject(ProjectData project) {
    for (const auto& [path, groups] : project.componentIndex)
        for (const ComponentGroupData& group : groups)
            for (const ComponentData& component : group.components)
                for (const GeometryData& geometry : component.geometries)
                    m_geometries.try_emplace(geometry.id, std::make_shared<StoredGeometry>(
                                                              geometry.id, m_visibilityCalls));
    m_projects.push_back(std::make_unique<StoredProject>(std::move(project)));
}

void MemoryComponentHost::AddEmptyProjectObject() {
    m_projects.push_back(std::make_unique<StoredProject>(std::nullopt));
}

void MemoryComponentHost::SetHighlighted(std::vector<std::uint64_t> componentHandles) {
    m_highlighted = std::move(componentHandles);
}

void MemoryComponentHost::SetMinorCategoryCounts(MinorCategoryCounts counts) {
    m_minorCategoryCounts = std::move(counts);
}

std::optional<bool> MemoryComponentHost::IsVisible(std::int64_t geometryId) const {
    const auto found = m_geometries.find(geometryId);
    if (found == m_geometries.end()) return std::nullopt;
    return found->second->Visible();
}

std::optional<bool> MemoryComponentHost::IsXRay(std::int64_t geometryId) const {
    const auto found = m_geometries.find(geometryId);
    if (found == m_geometries.end()) return std::nullopt;
    return found->second->XRay();
}

std::optional<bool> MemoryComponentHost::IsHighlighted(std::int64_t geometryId) const {
    const auto found = m_geometries.find(geometryId);
    if (found == m_geometries.end()) return std::nullopt;
    return found->second->Highlighted();
}

void MemoryComponentHost::ClearRecordedCalls() {
    m_visibilityCalls.clear();
    m_redrawCount = 0;
    m_lookupCount = 0;
}

void MemoryComponentHost::CollectHighlightedComponents(std::vector<std::uint64_t>& handles) {
    handles.insert(handles.end(), m_highlighted.begin(), m_highlighted.end());
}

std::shared_ptr<ComponentHost::GeometryHandle>
MemoryComponentHost::FindGeometry(std::int64_t geometryId) {
    ++m_lookupCount;
    const auto found = m_geometries.find(geometryId);
    if (found == m_geometries.end()) return nullptr;
    return found->second;
}

void MemoryComponentHost::CollectMinorCategoryCounts(MinorCategoryCounts& counts) {
    if (m_minorCategoryCounts) {
        counts = *m_minorCategoryCounts;
        return;
    }
    for (const auto& project : m_projects) {
        const ProjectData* data = project->GetProjectData();
        if (!data) continue;
        for (const auto& [path, groups] : data->componentIndex) {
            std::int32_t& count = counts[path.minorCategory];
            for (const ComponentGroupData& group : groups)
                count += static_cast<std::int32_t>(group.components.size());
        }
    }
}

void MemoryComponentHost::CollectProjects(std::vector<Project*>& projects) {
    for (const auto& project : m_projects)
        projects.push_back(project.get());
}

} // namespace obsidra::components::testing
