#include "host/ifc/ifc_scene_writer.h"

#include <algorithm>
#include <cstdio>

#include "host/ifc/ifc_text.h"

namespace obsidra::host::ifc {

namespace {

std::string ShownName(HC_KEY segment) {
    char path[HC_TEXT_MAX];
    HC_Show_Segment(segment, path);
    const std::string text = path;
    return text.substr(text.rfind('/') + 1);
}

// The child of segment whose name equals name without regard to ASCII case, or 0.
HC_KEY FindChild(HC_KEY segment, const std::string& name) {
    const std::string wanted = FoldAsciiCase(name);
    HC_KEY found = 0;
    HC_Open_Segment_By_Key(segment);
    HC_Begin_Contents_Search(".", "segments");
    char type[HC_TEXT_MAX];
    HC_KEY child = 0;
    while (!found && HC_Find_Contents(type, &child))
        if (FoldAsciiCase(ShownName(child)) == wanted) found = child;
    HC_End_Contents_Search();
    HC_Close_Segment();
    return found;
}

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

std::string UserOptions(std::string_view ifcClass, std::string_view name) {
    std::string options = "ifc class=" + OptionValue(ifcClass);
    if (!name.empty()) options += ",name=" + OptionValue(name);
    return options;
}

bool IsIdentity(const std::array<double, 16>& m) {
    for (int i = 0; i < 16; ++i)
        if (m[i] != (i % 5 == 0 ? 1.0 : 0.0)) return false;
    return true;
}

// The colour of the most faces: it goes on the segment, the others on their shells.
std::size_t MainPart(const std::vector<MeshPart>& parts) {
    std::size_t main = 0;
    for (std::size_t i = 1; i < parts.size(); ++i)
        if (parts[i].faces.size() > parts[main].faces.size()) main = i;
    return main;
}

Rgba ColourOf(const MeshPart& part, const Classification& category) {
    return part.coloured ? part.colour : category.colour;
}

class SceneWriter {
public:
    SceneWriter(const ModelData& data, const FloorPlan& plan,
                const std::vector<Classification>& classes, ImportProgress& progress,
                SceneKeys& keys)
        : m_data(data), m_plan(plan), m_classes(classes), m_progress(progress), m_keys(keys) {}

    // False, with the reason, when cancelled or when the database refuses a call.
    bool Write(std::string& error) {
        if (!m_progress.Report(ImportPhase::Building, 0)) {
            error = "cancelled";
            return false;
        }
        m_keys.floors.clear();
        m_keys.products.assign(m_data.products.size(), 0);
        m_keys.shells.assign(m_data.products.size(), {});
        NameSet floorNames;
        for (const FloorPlan::Floor& floor : m_plan.floors) {
            const HC_KEY key =
                HC_Open_Segment(floorNames.Unique(SegmentNameFor(floor.name)).c_str());
            if (!key) {
                error = "the scene database refused the segment of floor \"" + floor.name + "\"";
                return false;
            }
            m_keys.floors.push_back(key);
            const std::string options = floor.storey >= 0
                                            ? UserOptions("IfcBuildingStorey", floor.name) +
                                                  ",elevation=" + Number(floor.elevation)
                                            : "name=" + OptionValue(floor.name);
            HC_Set_User_Options(options.c_str());
            const bool written = WriteProducts(floor, error);
            HC_Close_Segment();
            if (!written) return false;
        }
        return true;
    }

private:
    bool WriteProducts(const FloorPlan::Floor& floor, std::string& error) {
        NameSet names;
        for (int index : floor.products) {
            const ProductData& p = m_data.products[index];
            const std::string name =
                names.Unique(SegmentNameFor(p.globalId.empty() ? p.ifcClass : p.globalId));
            const HC_KEY key = HC_Open_Segment(name.c_str());
            if (!key) {
                error =
                    "the scene database refused the segment of " + p.ifcClass + " " + p.globalId;
                return false;
            }
            m_keys.products[index] = key;
            const bool written = WriteProduct(p, m_classes[index], m_keys.shells[index], error);
            HC_Close_Segment();
            if (!written) return false;
            if (++m_written % 16 == 0 &&
                !m_progress.Report(ImportPhase::Building,
                                   0.8 * double(m_written) / double(m_data.products.size()))) {
                error = "cancelled";
                return false;
            }
        }
        return true;
    }

    static bool WriteProduct(const ProductData& p, const Classification& category,
                             std::vector<HC_KEY>& shells, std::string& error) {
        HC_Set_User_Options(UserOptions(p.ifcClass, p.name).c_str());
        return WriteProductGeometry(p, category, shells, error);
    }

    const ModelData& m_data;
    const FloorPlan& m_plan;
    const std::vector<Classification>& m_classes;
    ImportProgress& m_progress;
    SceneKeys& m_keys;
    std::size_t m_written = 0;
};

} // namespace

bool WriteProductGeometry(const ProductData& p, const Classification& category,
                          std::vector<HC_KEY>& shells, std::string& error) {
    if (p.meshes.empty()) return true;
    if (!IsIdentity(p.transform)) {
        float matrix[16];
        std::transform(p.transform.begin(), p.transform.end(), matrix,
                       [](double v) { return static_cast<float>(v); });
        HC_Set_Modelling_Matrix(matrix);
    }
    const Rgba segmentColour = ColourOf(p.meshes[MainPart(p.meshes)], category);
    HC_Set_Color(ColourOptions(segmentColour).c_str());
    for (const MeshPart& part : p.meshes) {
        const HC_KEY shell =
            HC_Insert_Shell(static_cast<int>(part.points.size()), part.points.data(),
                            static_cast<int>(part.faces.size()), part.faces.data());
        if (!shell) {
            error = "the scene database refused a shell of " + p.ifcClass + " " + p.globalId;
            return false;
        }
        shells.push_back(shell);
        if (const Rgba colour = ColourOf(part, category); !(colour == segmentColour)) {
            HC_Open_Geometry(shell);
            HC_Set_Color(ColourOptions(colour).c_str());
            HC_Close_Geometry();
        }
    }
    return true;
}

bool FindImportTarget(const std::string& path, ImportTarget& target, std::string& error) {
    target = {path, 0, {}};
    if (path.empty() || path.front() != '/') {
        error = "the import segment must be an absolute path, not \"" + path + "\"";
        return false;
    }
    HC_KEY at = HC_Open_Segment("/");
    HC_Close_Segment();
    std::string walked;
    std::size_t start = 1;
    while (start <= path.size()) {
        std::size_t end = path.find('/', start);
        if (end == std::string::npos) end = path.size();
        std::string level = path.substr(start, end - start);
        const std::size_t first = level.find_first_not_of(' ');
        level = first == std::string::npos
                    ? ""
                    : level.substr(first, level.find_last_not_of(' ') - first + 1);
        start = end + 1;
        if (level.empty() && end == path.size()) break;
        if (level.empty() || level == "." || level == ".." || level.front() == '@' ||
            level.find('*') != std::string::npos) {
            error = "the import segment \"" + path + "\" must name its levels plainly";
            return false;
        }
        walked += "/" + level;
        if (at) at = FindChild(at, level);
        if (!at && target.firstMissingPath.empty()) target.firstMissingPath = walked;
    }
    target.key = at;
    if (at) {
        HC_Open_Segment_By_Key(at);
        const int contents = HC_Show_Existence("segments, geometry");
        HC_Close_Segment();
        if (contents > 0) {
            error = "the import segment \"" + path + "\" is not empty";
            return false;
        }
    }
    return true;
}

bool WriteScene(const ImportTarget& target, const ModelData& data, const FloorPlan& plan,
                const std::vector<Classification>& classes, ImportProgress& progress,
                SceneKeys& keys, std::string& error) {
    keys.root = target.key ? target.key : HC_Open_Segment(target.path.c_str());
    if (!target.key) HC_Close_Segment();
    if (!keys.root) {
        error = "the scene database refused the segment \"" + target.path + "\"";
        return false;
    }
    HC_Open_Segment_By_Key(keys.root);
    SceneWriter writer(data, plan, classes, progress, keys);
    const bool written = writer.Write(error);
    HC_Close_Segment();
    if (written) return true;
    if (!target.firstMissingPath.empty()) {
        HC_Delete_Segment(target.firstMissingPath.c_str());
    } else {
        for (HC_KEY floor : keys.floors)
            HC_Delete_By_Key(floor);
    }
    keys = {};
    return false;
}

std::string ColourOptions(const Rgba& colour) {
    const std::string rgb =
        "r=" + Number(colour.red) + " g=" + Number(colour.green) + " b=" + Number(colour.blue);
    if (colour.alpha >= 1) return "faces=(" + rgb + ")";
    const std::string t = Number(1 - colour.alpha);
    return "faces=(diffuse=(" + rgb + "),transmission=(r=" + t + " g=" + t + " b=" + t + "))";
}

} // namespace obsidra::host::ifc
