#include "host/ifc/ifc_importer.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/ifc/ifc_layout.h"
#include "host/ifc/ifc_project_builder.h"
#include "host/ifc/ifc_scene_writer.h"
#include "host/ifc/ifc_source.h"

namespace obsidra::host::ifc {

namespace {

constexpr std::string_view kStepHeader = "ISO-10303-21;";
constexpr std::string_view kStepTrailer = "END-ISO-10303-21;";

ImportResult Failure(std::string error, SourceMessages messages = {}) {
    ImportResult result;
    result.error = std::move(error);
    result.warnings = std::move(messages.warnings);
    return result;
}

ImportResult Cancelled(SourceMessages messages = {}) {
    ImportResult result = Failure("the import was cancelled", std::move(messages));
    result.cancelled = true;
    return result;
}

// The schema the header names, e.g. FILE_SCHEMA(('IFC2X3')); IFC++ reads every schema into
// its IFC4 classes and no longer tells.
std::string FileSchemaOf(std::string_view text) {
    const std::size_t header = text.find("FILE_SCHEMA");
    const std::size_t data = text.find("DATA;");
    if (header == std::string_view::npos || header > data) return {};
    const std::size_t open = text.find('\'', header);
    const std::size_t close = open == std::string_view::npos ? open : text.find('\'', open + 1);
    if (close == std::string_view::npos || close > data) return {};
    return std::string(text.substr(open + 1, close - open - 1));
}

PreparedIfc Prepared(ImportResult failure, SourceMessages messages = {}) {
    PreparedIfc prepared;
    prepared.failure = std::move(failure);
    prepared.warnings = std::move(messages.warnings);
    return prepared;
}

PreparedIfc Prepare(std::string text, const std::string& name, ImportProgress& progress,
                    const MeshOptions& mesh) {
    if (!progress.Report(ImportPhase::Reading, 1)) return Prepared(Cancelled());
    if (std::string problem = CheckStepText(text); !problem.empty())
        return Prepared(Failure(name + ": " + problem));

    SourceMessages messages;
    auto data = std::make_unique<ModelData>();
    // IFC++ catches what goes wrong inside a product; whatever it lets through ends the import
    // like any other error.
    try {
        const std::string schema = FileSchemaOf(text);
        std::string error;
        std::unique_ptr<IfcSource> source =
            IfcSource::Parse(std::move(text), progress, messages, error);
        if (progress.Cancelled()) return Prepared(Cancelled(), std::move(messages));
        if (!source) return Prepared(Failure(name + ": " + error), std::move(messages));
        *data = source->Collect();
        data->schema = schema;
        if (!source->Mesh(*data, progress, messages, mesh))
            return Prepared(Cancelled(), std::move(messages));
    } catch (const std::exception& e) {
        return Prepared(Failure(name + ": IFC++ failed: " + e.what()), std::move(messages));
    } catch (...) {
        return Prepared(Failure(name + ": IFC++ failed"), std::move(messages));
    }
    PreparedIfc prepared = Prepared({}, std::move(messages));
    prepared.name = name;
    prepared.model = std::move(data);
    return prepared;
}

} // namespace

std::string CheckStepText(std::string_view text) {
    std::size_t start = 0;
    if (text.starts_with("\xEF\xBB\xBF")) start = 3;
    start = text.find_first_not_of(" \t\r\n", start);
    if (start == std::string_view::npos || text.substr(start, kStepHeader.size()) != kStepHeader)
        return "not an IFC file: it does not begin with " + std::string(kStepHeader);
    const std::size_t end = text.find_last_not_of(" \t\r\n\x1A");
    if (end + 1 < kStepTrailer.size() ||
        text.substr(end + 1 - kStepTrailer.size(), kStepTrailer.size()) != kStepTrailer)
        return "the file is cut short: it does not end with " + std::string(kStepTrailer);
    const std::size_t data = text.find("DATA;");
    if (data == std::string_view::npos) return "not an IFC file: it has no DATA section";
    if (text.find("ENDSEC;", data) == std::string_view::npos)
        return "the file is cut short: its DATA section is not closed";
    return {};
}

PreparedIfc::PreparedIfc() = default;
PreparedIfc::PreparedIfc(PreparedIfc&&) noexcept = default;
PreparedIfc& PreparedIfc::operator=(PreparedIfc&&) noexcept = default;
PreparedIfc::~PreparedIfc() = default;

PreparedIfc PrepareIfcFile(const std::string& path, const ProgressCallback& callback,
                           const MeshOptions& mesh) {
    ImportProgress progress(callback);
    if (!progress.Report(ImportPhase::Reading, 0)) return Prepared(Cancelled());
    std::error_code code;
    if (std::filesystem::is_directory(path, code))
        return Prepared(Failure("cannot open " + path + ": it is a directory"));
    // The text is read whole and IFC++ keeps several times its size: a larger file is refused
    // before it is read.
    constexpr std::uintmax_t kMaxBytes = std::uintmax_t(1) << 30;
    if (const std::uintmax_t size = std::filesystem::file_size(path, code);
        !code && size > kMaxBytes)
        return Prepared(Failure("cannot open " + path + ": it holds " + std::to_string(size) +
                                " bytes, more than an IFC file may (1 GiB)"));
    std::ifstream in(path, std::ios::binary);
    if (!in) return Prepared(Failure("cannot open " + path + ": " + std::strerror(errno)));
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) return Prepared(Failure("cannot read " + path));
    return Prepare(std::move(text).str(), std::filesystem::path(path).stem().string(), progress,
                   mesh);
}

PreparedIfc PrepareIfcText(std::string text, const std::string& name,
                           const ProgressCallback& callback, const MeshOptions& mesh) {
    ImportProgress progress(callback);
    return Prepare(std::move(text), name, progress, mesh);
}

ImportResult WriteIfcBuilding(PreparedIfc prepared, const ImportOptions& options) {
    if (!prepared.model) return std::move(prepared.failure);
    SourceMessages messages{{}, std::move(prepared.warnings)};
    ImportTarget target;
    std::string error;
    if (!FindImportTarget(options.segment, target, error))
        return Failure(error, std::move(messages));

    ImportProgress progress(options.progress);
    ModelData& data = *prepared.model;
    KeepComponents(data);
    const FloorPlan plan = PlanFloors(data);
    const std::vector<Classification> classes = ClassifyProducts(data);
    SceneKeys keys;
    if (!WriteScene(target, data, plan, classes, progress, keys, error))
        return progress.Cancelled() ? Cancelled(std::move(messages))
                                    : Failure(error, std::move(messages));
    ImportResult result;
    result.building = BuildProject(data, plan, classes, keys, prepared.name);
    result.warnings = std::move(messages.warnings);
    progress.Report(ImportPhase::Building, 1);
    return result;
}

ImportResult ImportIfcFile(const std::string& path, const ImportOptions& options) {
    return WriteIfcBuilding(PrepareIfcFile(path, options.progress), options);
}

ImportResult ImportIfcText(std::string text, const std::string& name,
                           const ImportOptions& options) {
    return WriteIfcBuilding(PrepareIfcText(std::move(text), name, options.progress), options);
}

} // namespace obsidra::host::ifc
