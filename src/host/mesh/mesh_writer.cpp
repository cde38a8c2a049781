#include "host/mesh/mesh_writer.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

#include "text/text.h"

namespace obsidra::host::mesh {

namespace {

std::string Number(float value) {
    char buffer[32];
    // to_chars, unlike printf, ignores the locale a GUI may have set.
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3);
    return std::string(buffer, end.ptr);
}

std::string ColourOptions(const Rgb& colour) {
    return "faces=(r=" + Number(colour.red) + " g=" + Number(colour.green) +
           " b=" + Number(colour.blue) + ")";
}

// The colour most of a node's shells have (the first met among equals).
std::optional<Rgb> NodeColour(const MeshScene& scene, const MeshNode& node) {
    std::vector<std::pair<Rgb, int>> tally;
    for (std::size_t index : node.shells) {
        const std::optional<Rgb>& colour = scene.shells[index].colour;
        if (!colour) continue;
        auto found = std::find_if(tally.begin(), tally.end(),
                                  [&](const auto& entry) { return entry.first == *colour; });
        if (found == tally.end())
            tally.emplace_back(*colour, 1);
        else
            ++found->second;
    }
    if (tally.empty()) return std::nullopt;
    return std::max_element(tally.begin(), tally.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
}

// Sibling names made unique without regard to case, as the database compares them.
class UniqueNames {
public:
    std::string Unique(const std::string& name) {
        std::string candidate = name;
        for (int n = 2; !m_taken.insert(text::ToLower(candidate)).second; ++n)
            candidate = name + " (" + std::to_string(n) + ")";
        return candidate;
    }

private:
    std::set<std::string> m_taken;
};

} // namespace

std::string SegmentNameOf(std::string_view nodeName) {
    std::string name(text::Trim(nodeName));
    std::replace(name.begin(), name.end(), '/', '_');
    if (name.empty()) return "node";
    if (name == "." || name == ".." || name.front() == '@') return "_" + name;
    return name;
}

void WriteMeshScene(const MeshScene& scene, HC_KEY segment, const MeshProgress& progress) {
    std::size_t placed = 0;
    for (const MeshNode& node : scene.nodes)
        placed += node.shells.size();
    std::vector<HC_KEY> keys(scene.nodes.size(), segment);
    std::map<int, UniqueNames> names; // by parent node
    std::size_t written = 0;
    for (std::size_t n = 0; n < scene.nodes.size(); ++n) {
        const MeshNode& node = scene.nodes[n];
        if (node.parent < 0) {
            HC_Open_Segment_By_Key(segment);
        } else {
            HC_Open_Segment_By_Key(keys[static_cast<std::size_t>(node.parent)]);
            keys[n] = HC_Open_Segment(names[node.parent].Unique(SegmentNameOf(node.name)).c_str());
        }
        if (node.matrix) HC_Set_Modelling_Matrix(node.matrix->data());
        const std::optional<Rgb> colour = NodeColour(scene, node);
        if (colour) HC_Set_Color(ColourOptions(*colour).c_str());
        for (std::size_t index : node.shells) {
            const MeshShell& shell = scene.shells[index];
            if (shell.faceCount == 0) continue; // a mesh of points or lines only
            const HC_KEY key =
                HC_Insert_Shell(static_cast<int>(shell.points.size()), shell.points.data(),
                                static_cast<int>(shell.faces.size()), shell.faces.data());
            if (shell.colour && shell.colour != colour) {
                HC_Open_Geometry(key);
                HC_Set_Color(ColourOptions(*shell.colour).c_str());
                HC_Close_Geometry();
            }
            if (progress && ++written % 16 == 0) progress(double(written) / double(placed));
        }
        if (node.parent >= 0) HC_Close_Segment();
        HC_Close_Segment();
    }
    if (progress) progress(1);
}

} // namespace obsidra::host::mesh
