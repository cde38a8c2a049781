// obsidra-scene ifc: imports an IFC building and tells what came of it.
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "commands.h"
#include "host/ifc/ifc_importer.h"
#include "text/text.h"

namespace obsidra::tools {

namespace {

constexpr const char* kUsage =
    "usage: obsidra-scene ifc FILE.ifc [--tree] [--warnings] [--segment PATH]\n";

std::string Metres(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f m", value);
    return text;
}

void PrintCounts(const host::ifc::IfcBuilding& building, std::ostream& out) {
    std::map<std::string, int> perDiscipline;
    std::map<std::pair<std::string, std::string>, int> perMajor;
    std::map<CategoryPath, int> perMinor;
    for (const host::ifc::IfcComponent& c : building.Components()) {
        ++perDiscipline[c.category.discipline];
        ++perMajor[{c.category.discipline, c.category.majorCategory}];
        ++perMinor[c.category];
    }
    // In the viewer's order, which the project data keeps.
    out << "components by discipline and category:\n";
    for (const DisciplineData& discipline : building.Project().disciplines) {
        out << "  " << discipline.name << "  " << perDiscipline[discipline.name] << "\n";
        for (const MajorCategoryData& major : discipline.majorCategories) {
            out << "    " << major.name << "  " << perMajor[{discipline.name, major.name}] << "\n";
            for (const MinorCategoryData& minor : major.minorCategories)
                out << "      " << minor.name << "  "
                    << perMinor[{discipline.name, major.name, minor.name}] << "\n";
        }
    }
}

std::string LastLevel(HC_KEY segment) {
    char path[HC_TEXT_MAX];
    HC_Show_Segment(segment, path);
    const std::string text = path;
    return text.substr(text.rfind('/') + 1);
}

// The segments under the import as the scene holds them: name, key, user options and the
// number of shells.
void PrintTree(HC_KEY root, int depth, std::ostream& out) {
    HC_Open_Segment_By_Key(root);
    char options[HC_TEXT_MAX] = "";
    if (HC_Show_Existence("user options") > 0) HC_Show_User_Options(options);
    const int shells = HC_Show_Existence("shells");
    std::vector<HC_KEY> children;
    HC_Begin_Contents_Search(".", "segments");
    char type[HC_TEXT_MAX];
    HC_KEY child = 0;
    while (HC_Find_Contents(type, &child))
        children.push_back(child);
    HC_End_Contents_Search();
    HC_Close_Segment();
    out << std::string(static_cast<std::size_t>(depth) * 2, ' ') << LastLevel(root) << "  ["
        << text::KeyText(root) << "]";
    if (options[0]) out << "  " << options;
    if (shells > 0) out << "  shells " << shells;
    out << "\n";
    for (HC_KEY key : children)
        PrintTree(key, depth + 1, out);
}

} // namespace

int IfcCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::string file;
    bool tree = false;
    bool listWarnings = false;
    host::ifc::ImportOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--tree") {
            tree = true;
        } else if (args[i] == "--warnings") {
            listWarnings = true;
        } else if (args[i] == "--segment" && i + 1 < args.size()) {
            options.segment = args[++i];
        } else if (file.empty() && !args[i].starts_with("--")) {
            file = args[i];
        } else {
            err << kUsage;
            return 2;
        }
    }
    if (file.empty()) {
        err << kUsage;
        return 2;
    }
    host::ifc::ImportResult result = host::ifc::ImportIfcFile(file, options);
    if (!result.building) {
        err << "obsidra-scene: " << result.error << "\n";
        return 1;
    }
    const host::ifc::IfcBuilding& building = *result.building;
    const ProjectData& project = building.Project();
    out << "project: " << project.name << " (" << building.Schema() << "), "
        << building.Components().size() << " components, " << building.ShellCount()
        << " shells, under " << options.segment << "\n";
    out << "floors, from the lowest up:\n";
    for (const host::ifc::IfcFloor& floor : building.Floors()) {
        out << "  " << floor.name;
        if (floor.isStorey)
            out << "  elevation " << Metres(floor.elevation) << "  height " << Metres(floor.height);
        out << "  " << floor.componentCount << " components\n";
    }
    PrintCounts(building, out);
    out << "warnings: " << result.warnings.size() << "\n";
    if (listWarnings)
        for (const std::string& warning : result.warnings)
            out << "  " << warning << "\n";
    if (tree) PrintTree(building.Segment(), 0, out);
    return 0;
}

} // namespace obsidra::tools
