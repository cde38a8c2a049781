// An IFC building prepared (parsed and meshed) on the reading thread and written on the
// database's, below the segment the viewer gives it.
#include "host/ifc/ifc_importer.h"
#include "host/ifc/ifc_layout.h"
#include "host/ifc/ifc_model.h"
#include "host/ifc/ifc_project_builder.h"
#include "host/ifc/ifc_scene_writer.h"
#include "host/viewer/scene_reader.h"

namespace obsidra::host::viewer {

namespace {

class PendingIfc final : public PendingScene {
public:
    explicit PendingIfc(ifc::PreparedIfc prepared) : m_prepared(std::move(prepared)) {
        m_warnings = std::move(m_prepared.warnings);
    }

    // WriteIfcBuilding's steps for a segment given by key: the viewer's segment is nameless,
    // below the nameless model, and the importer takes a path of plain names only.
    bool Write(HC_KEY segment, std::string& error) override {
        ifc::ModelData& data = *m_prepared.model;
        ifc::KeepComponents(data);
        const ifc::FloorPlan plan = ifc::PlanFloors(data);
        const std::vector<ifc::Classification> classes = ifc::ClassifyProducts(data);
        ifc::ImportTarget target;
        target.key = segment;
        // Once read, a building is written whole: the user cancels a read, not a write.
        ifc::ImportProgress progress(nullptr);
        ifc::SceneKeys keys;
        if (!ifc::WriteScene(target, data, plan, classes, progress, keys, error)) return false;
        m_building = ifc::BuildProject(data, plan, classes, keys, m_prepared.name);
        return true;
    }
    std::optional<ifc::IfcBuilding> TakeBuilding() override { return std::move(m_building); }

private:
    ifc::PreparedIfc m_prepared;
    std::optional<ifc::IfcBuilding> m_building;
};

// Products as they come from the meshing, with their placements and colours only.
class IfcPreview final : public PreviewPart {
public:
    void Add(const ifc::ProductData& p, const ifc::Classification& category) {
        ifc::ProductData& copy = m_products.emplace_back();
        copy.ifcClass = p.ifcClass;
        copy.globalId = p.globalId;
        copy.transform = p.transform;
        copy.meshes = p.meshes;
        m_categories.push_back(category);
    }
    bool Empty() const { return m_products.empty(); }

    void Write(HC_KEY segment) override {
        HC_Open_Segment_By_Key(segment);
        std::vector<HC_KEY> shells;
        std::string error;
        // What the database refuses here it refuses again when the file is written, and says
        // so then.
        for (std::size_t i = 0; i < m_products.size(); ++i) {
            HC_Open_Segment("");
            ifc::WriteProductGeometry(m_products[i], m_categories[i], shells, error);
            HC_Close_Segment();
        }
        HC_Close_Segment();
    }

private:
    std::vector<ifc::ProductData> m_products;
    std::vector<ifc::Classification> m_categories;
};

} // namespace

SceneReadResult ReadIfcFile(const std::string& path, const ReadProgress& progress,
                            const ReadPreview& preview) {
    ifc::MeshOptions mesh;
    std::vector<ifc::Classification> categories;
    if (preview)
        mesh.meshed = [&](const ifc::ModelData& model, const std::vector<int>& products) {
            if (categories.empty()) categories = ifc::ClassifyProducts(model);
            auto part = std::make_unique<IfcPreview>();
            for (int index : products)
                if (!model.products[index].meshes.empty())
                    part->Add(model.products[index], categories[index]);
            if (!part->Empty()) preview(std::move(part));
        };
    ifc::PreparedIfc prepared = ifc::PrepareIfcFile(
        path, [&progress](ifc::ImportPhase, double done) { return !progress || progress(done); },
        mesh);
    SceneReadResult result;
    if (prepared.model) {
        result.scene = std::make_unique<PendingIfc>(std::move(prepared));
    } else {
        result.error = std::move(prepared.failure.error);
        result.cancelled = prepared.failure.cancelled;
    }
    return result;
}

} // namespace obsidra::host::viewer
