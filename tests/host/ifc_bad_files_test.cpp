#include <filesystem>
#include <fstream>
#include <random>
#include <unistd.h>

#include "ifc_test.h"

namespace obsidra::host::ifc::testing {
namespace {

namespace fs = std::filesystem;

using IfcBadFilesTest = IfcTest;

// Files that are no IFC building, as a user might open them: each is refused with the file's
// name and what was wrong, and the scene stays as it was.
TEST_F(IfcBadFilesTest, FilesThatAreNoBuildingAreRefusedByName) {
    const fs::path folder =
        fs::path(::testing::TempDir()) / ("ifc_bad_files_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    std::mt19937 random(5);
    std::string garbage(4096, '\0');
    for (char& c : garbage)
        c = static_cast<char>(random());
    fs::create_directories(folder / "folder.ifc");
    const struct {
        const char* file;
        std::string text;
        const char* error;
        bool write = true;
    } rows[] = {
        {"empty.ifc", "", "empty: not an IFC file"},
        {"garbage.ifc", garbage, "garbage: not an IFC file"},
        {"scene.ifc", ";; Obsidra metafile 1\n(Segment \"a\")\n", "scene: not an IFC file"},
        {"huge.ifc", {}, "huge.ifc: it holds 2147483648 bytes, more than an IFC file may"},
        {"missing.ifc", {}, "missing.ifc: No such file or directory", false},
        {"folder.ifc", {}, "folder.ifc: it is a directory", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const fs::path file = folder / row.file;
        if (row.write) std::ofstream(file, std::ios::binary) << row.text;
        if (std::string_view(row.file) == "huge.ifc")
            fs::resize_file(file, std::uintmax_t(2) << 30); // sparse: costs no disk
        HC_Reset_System();
        HC_Open_Segment("/other");
        HC_Close_Segment();
        const auto before = List("/...", "everything");
        const ImportResult result = ImportIfcFile(file.string());
        EXPECT_FALSE(result.building);
        EXPECT_NE(result.error.find(row.error), std::string::npos) << result.error;
        EXPECT_EQ(List("/...", "everything"), before);
    }
    fs::remove_all(folder);
}

} // namespace
} // namespace obsidra::host::ifc::testing
