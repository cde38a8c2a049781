// The IFC importer's steps, split where the scene database comes in: parsing and meshing on
// the reading thread, the scene and the project data on the database's.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/ifc/ifc_importer.h"
#include "host/ifc/ifc_layout.h"
#include "host/ifc/ifc_project_builder.h"
#include "host/ifc/ifc_scene_writer.h"
#include "host/ifc/ifc_source.h"
#include "host/viewer/scene_reader.h"

namespace obsidra::host::viewer {

namespace {

// IFC++ reads every schema into its IFC4 classes; the building tells the one the file names.
std::string FileSchemaOf(std::string_view text) {
    const std::size_t header = text.find("FILE_SCHEMA");
    const std::size_t open = text.find('\'', header);
    const std::size_t close = open == std::string_view::npos ? open : text.find('\'', open + 1);
    if (header == std::string_view::npos || close == std::string_view::npos ||
        close > text.find("DATA;"))
        return {};
    return std::string(text.substr(open + 1, close - open - 1));
}

class PendingIfc final : public PendingScene {
public:
    PendingIfc(ifc::ModelData data, std::string name, std::vector<std::string> warnings)
        : m_data(std::move(data)), m_name(std::move(name)), m_plan(ifc::PlanFloors(m_data)),
          m_classes(ifc::ClassifyProducts(m_data)) {
        m_warnings = std::move(warnings);
    }

    bool Write(HC_KEY segment, std::string& error) override {
        ifc::ImportTarget target;
        target.key = segment;
        // Once read, a building is written whole: the user cancels a read, not a write.
        ifc::ImportProgress progress(nullptr);
        ifc::SceneKeys keys;
        if (!ifc::WriteScene(target, m_data, m_plan, m_classes, progress, keys, error))
            return false;
        m_building = ifc::BuildProject(m_data, m_plan, m_classes, keys, m_name);
        return true;
    }
    std::optional<ifc::IfcBuilding> TakeBuilding() override { return std::move(m_building); }

private:
    ifc::ModelData m_data;
    std::string m_name;
    ifc::FloorPlan m_plan;
    std::vector<ifc::Classification> m_classes;
    std::optional<ifc::IfcBuilding> m_building;
};

SceneReadResult Failure(std::string error) {
    SceneReadResult result;
    result.error = std::move(error);
    return result;
}

} // namespace

SceneReadResult ReadIfcFile(const std::string& path, const ReadProgress& progress) {
    const ifc::ProgressCallback callback = [progress](ifc::ImportPhase, double done) {
        return !progress || progress(done);
    };
    ifc::ImportProgress importProgress(callback);
    SceneReadResult cancelled;
    cancelled.cancelled = true;
    if (!importProgress.Report(ifc::ImportPhase::Reading, 0)) return cancelled;
    std::error_code code;
    if (std::filesystem::is_directory(path, code))
        return Failure("cannot open " + path + ": it is a directory");
    std::ifstream in(path, std::ios::binary);
    if (!in) return Failure("cannot open " + path + ": " + std::strerror(errno));
    std::ostringstream buffer;
    buffer << in.rdbuf();
    std::string text = std::move(buffer).str();
    if (std::string problem = ifc::CheckStepText(text); !problem.empty())
        return Failure(path + ": " + problem);

    ifc::SourceMessages messages;
    ifc::ModelData data;
    std::string error;
    try {
        const std::string schema = FileSchemaOf(text);
        std::unique_ptr<ifc::IfcSource> source =
            ifc::IfcSource::Parse(std::move(text), importProgress, messages, error);
        if (importProgress.Cancelled()) return cancelled;
        if (!source) return Failure(path + ": " + error);
        data = source->Collect();
        data.schema = schema;
        if (!source->Mesh(data, importProgress, messages)) return cancelled;
    } catch (const std::exception& e) {
        return Failure(path + ": IFC++ failed: " + e.what());
    } catch (...) {
        return Failure(path + ": IFC++ failed");
    }
    ifc::KeepComponents(data);
    SceneReadResult result;
    result.scene = std::make_unique<PendingIfc>(
        std::move(data), std::filesystem::path(path).stem().string(), std::move(messages.warnings));
    return result;
}

} // namespace obsidra::host::viewer
