// A component host that keeps its building in memory and records what the viewer asks of it:
// for tests, benchmarks and tools that have no host application.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <obsidra/host.h>

namespace obsidra::components::testing {

class MemoryComponentHost final : public ComponentHost,
                                  private ComponentHost::View,
                                  private ComponentHost::GeometryIndex,
                                  private ComponentHost::Model,
                                  private ComponentHost::ProjectSource {
public:
    struct VisibilityCall {
        std::int64_t geometryId = 0;
        bool visible = false;

        friend bool operator==(const VisibilityCall&, const VisibilityCall&) = default;
    };

    MemoryComponentHost();
    explicit MemoryComponentHost(std::vector<ProjectData> projects);
    ~MemoryComponentHost() override;

    // Every geometry of the project becomes findable and starts visible.
    void AddProject(ProjectData project);
    // A project object that yields no project data.
    void AddEmptyProjectObject();
    std::size_t ProjectCount() const { return m_projects.size(); }

    void SetHighlighted(std::vector<std::uint64_t> componentHandles);
    // Replaces the counts the model reports; until then they are counted from the projects.
    void SetMinorCategoryCounts(MinorCategoryCounts counts);

    const std::vector<VisibilityCall>& VisibilityCalls() const { return m_visibilityCalls; }
    int RedrawCount() const { return m_redrawCount; }
    int GeometryLookupCount() const { return m_lookupCount; }
    // Nothing for a geometry the host does not know.
    std::optional<bool> IsVisible(std::int64_t geometryId) const;
    std::optional<bool> IsXRay(std::int64_t geometryId) const;
    std::optional<bool> IsHighlighted(std::int64_t geometryId) const;
    void ClearRecordedCalls();

    ComponentHost::View* GetView() override { return this; }
    ComponentHost::GeometryIndex* GetGeometryIndex() override { return this; }
    ComponentHost::Model* GetModel() override { return this; }

private:
    class StoredProject;
    class StoredGeometry;

    void RedrawView() override { ++m_redrawCount; }
    void CollectHighlightedComponents(std::vector<std::uint64_t>& handles) override;
    std::shared_ptr<ComponentHost::GeometryHandle> FindGeometry(std::int64_t geometryId) override;
    ComponentHost::ProjectSource* GetProjectSource() override { return this; }
    void CollectMinorCategoryCounts(MinorCategoryCounts& counts) override;
    void CollectProjects(std::vector<ComponentHost::Project*>& projects) override;

    std::vector<std::unique_ptr<StoredProject>> m_projects;
    std::unordered_map<std::int64_t, std::shared_ptr<StoredGeometry>> m_geometries;
    std::vector<std::uint64_t> m_highlighted;
    std::optional<MinorCategoryCounts> m_minorCategoryCounts;
    std::vector<VisibilityCall> m_visibilityCalls;
    int m_redrawCount = 0;
    int m_lookupCount = 0;
};

} // namespace obsidra::components::testing
