#include <fstream>
#include <random>
#include <sstream>
#include <thread>

#include "ifc_test.h"
#include "tiny_building.h"

namespace obsidra::host::ifc::testing {
namespace {

class IfcImportErrorsTest : public IfcTest {
protected:
    static std::string HouseText() {
        std::ifstream in(HousePath(), std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return std::move(text).str();
    }

    static std::string Replace(std::string text, std::string_view from, std::string_view to) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) text.replace(at, from.size(), to);
        return text;
    }

    // Everything in the scene, to compare before and after a failed import.
    static std::vector<std::pair<std::string, HC_KEY>> Scene() {
        return List("/...", "everything");
    }
};

TEST_F(IfcImportErrorsTest, BadFilesGiveAClearErrorAndLeaveTheSceneAlone) {
    std::mt19937 random(11);
    std::string garbage(3000, '\0');
    for (char& c : garbage)
        c = static_cast<char>(random());
    const std::string house = HouseText();
    const std::string tiny = TinyBuildingText();
    const std::string header = tiny.substr(0, tiny.find("DATA;"));
    const struct {
        const char* name;
        std::string text;
        const char* error;
    } rows[] = {
        {"empty", "", "does not begin with ISO-10303-21;"},
        {"garbage", garbage, "does not begin with ISO-10303-21;"},
        {"a text file", "hello\nworld\n", "does not begin with ISO-10303-21;"},
        {"cut in half", house.substr(0, house.size() / 2), "cut short"},
        {"cut before the end line", house.substr(0, house.rfind("END-ISO")), "cut short"},
        {"no data section", header + "END-ISO-10303-21;\n", "no DATA section"},
        {"data section not closed", house.substr(0, house.size() / 2) + "\nEND-ISO-10303-21;\n",
         "DATA section is not closed"},
        {"no project",
         header + "DATA;\n#1=IFCCARTESIANPOINT((0.,0.,0.));\nENDSEC;\n"
                  "END-ISO-10303-21;\n",
         "holds no IfcProject"},
        {"a reference to nothing", Replace(tiny, "(#100,#120),#50", "(#100,#999),#50"), "999"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        HC_Reset_System();
        HC_Open_Segment("/other");
        HC_Close_Segment();
        const auto before = Scene();
        const ImportResult result = ImportIfcText(row.text, "bad");
        EXPECT_FALSE(result.building);
        EXPECT_FALSE(result.cancelled);
        EXPECT_NE(result.error.find(row.error), std::string::npos) << result.error;
        EXPECT_EQ(Scene(), before);
    }
}

// Entities the reader cannot take cost themselves and the references to them, each kind of
// problem told once with where it was first met; the building is as it is without them.
TEST_F(IfcImportErrorsTest, EntitiesThatCannotBeReadAreSkippedWithOneWarningEach) {
    const ImportResult clean = ImportIfcText(TinyBuildingText(), "tiny", {"/clean", {}});
    ASSERT_TRUE(clean.building) << clean.error;
    EXPECT_TRUE(clean.warnings.empty());
    const ImportResult result =
        ImportIfcFile(OBSIDRA_TEST_DATA "/tiny_unknown_entities.ifc", {"/skipped", {}});
    ASSERT_TRUE(result.building) << result.error;
    EXPECT_EQ(result.warnings,
              (std::vector<std::string>{
                  "line 66: #9998=IFCANNOTATIONFOOBAR skipped: an entity the reader does not "
                  "know (x 2)",
                  "line 68: #9997=IFCCARTESIANPOINT skipped: 3 arguments where the entity takes 1",
                  "line 69: skipped, not an entity instance: #9996 IFCWALL('x')",
                  "line 57: #161=IFCRELCONTAINEDINSPATIALSTRUCTURE lost its reference to "
                  "skipped #9999",
                  "line 70: #9995=IFCSTYLEDITEM lost its reference to skipped #9998",
              }));
    EXPECT_EQ(result.building->Components().size(), clean.building->Components().size());
    EXPECT_EQ(result.building->ShellCount(), clean.building->ShellCount());
    ASSERT_EQ(result.building->Floors().size(), clean.building->Floors().size());
    for (std::size_t i = 0; i < clean.building->Floors().size(); ++i) {
        EXPECT_EQ(result.building->Floors()[i].name, clean.building->Floors()[i].name);
        EXPECT_EQ(result.building->Floors()[i].componentCount,
                  clean.building->Floors()[i].componentCount);
    }
}

TEST_F(IfcImportErrorsTest, TheImportSegmentMustBeAbsolutePlainAndEmpty) {
    HC_Open_Segment("/busy");
    HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    int faces[] = {3, 0, 1, 2};
    HC_Insert_Shell(3, points, 4, faces);
    HC_Close_Segment();
    HC_Open_Segment("/ready");
    HC_Set_Color("faces=red");
    HC_Close_Segment();
    const auto before = Scene();
    const struct {
        const char* segment;
        const char* error;
    } rows[] = {
        {"relative", "must be an absolute path"},
        {"", "must be an absolute path"},
        {"/a/../b", "must name its levels plainly"},
        {"/a/*", "must name its levels plainly"},
        {"/BUSY", "is not empty"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.segment);
        const ImportResult result = ImportIfcText(TinyBuildingText(), "tiny", {row.segment, {}});
        EXPECT_FALSE(result.building);
        EXPECT_NE(result.error.find(row.error), std::string::npos) << result.error;
        EXPECT_EQ(Scene(), before);
    }
    // A segment with attributes but no contents takes the import and keeps its attributes.
    const ImportResult ready = ImportIfcText(TinyBuildingText(), "tiny", {"/Ready/", {}});
    ASSERT_TRUE(ready.building) << ready.error;
    EXPECT_EQ(Path(ready.building->Segment()), "/ready");
    EXPECT_EQ(Colour(ready.building->Segment()), "faces=red");
    // A second import goes beside the first without disturbing it.
    const ImportResult second = ImportIfcText(TinyBuildingText(), "tiny", {"/new/deep", {}});
    ASSERT_TRUE(second.building) << second.error;
    EXPECT_EQ(second.building->Components().size(), ready.building->Components().size());
    EXPECT_EQ(List("/ready/...", "shells").size(), ready.building->ShellCount());
}

TEST_F(IfcImportErrorsTest, ProgressRunsThroughThePhasesToTheEnd) {
    std::vector<std::pair<ImportPhase, double>> reports;
    ImportOptions options;
    options.progress = [&](ImportPhase phase, double fraction) {
        reports.emplace_back(phase, fraction);
        return true;
    };
    ASSERT_TRUE(ImportIfcFile(HousePath(), options).building);
    ASSERT_FALSE(reports.empty());
    for (std::size_t i = 1; i < reports.size(); ++i) {
        EXPECT_LE(reports[i - 1].first, reports[i].first) << i;
        EXPECT_LE(reports[i - 1].second, reports[i].second) << i;
    }
    for (ImportPhase phase :
         {ImportPhase::Reading, ImportPhase::Parsing, ImportPhase::Meshing, ImportPhase::Building})
        EXPECT_TRUE(std::any_of(reports.begin(), reports.end(), [phase](const auto& r) {
            return r.first == phase;
        })) << PhaseName(phase);
    EXPECT_EQ(reports.front().second, 0.0);
    EXPECT_EQ(reports.back(), std::make_pair(ImportPhase::Building, 1.0));
}

// Cancelled at the n-th report of each phase: nothing of the import stays, and a segment that
// was there before stays as it was.
TEST_F(IfcImportErrorsTest, ACancelledImportLeavesNothingBehind) {
    for (ImportPhase phase : {ImportPhase::Reading, ImportPhase::Parsing, ImportPhase::Meshing,
                              ImportPhase::Building}) {
        for (int n : {1, 2}) {
            SCOPED_TRACE(std::string(PhaseName(phase)) + " #" + std::to_string(n));
            HC_Reset_System();
            HC_Open_Segment("/kept");
            HC_Close_Segment();
            const auto before = Scene();
            int seen = 0;
            ImportOptions options;
            options.segment = "/kept";
            options.progress = [&](ImportPhase at, double) { return at != phase || ++seen < n; };
            const ImportResult result = ImportIfcFile(HousePath(), options);
            EXPECT_FALSE(result.building);
            EXPECT_TRUE(result.cancelled);
            EXPECT_EQ(result.error, "the import was cancelled");
            EXPECT_EQ(Scene(), before);
            options.segment = "/fresh";
            seen = 0;
            EXPECT_TRUE(ImportIfcFile(HousePath(), options).cancelled);
            EXPECT_EQ(Scene(), before);
        }
    }
}

} // namespace
} // namespace obsidra::host::ifc::testing

namespace obsidra::host::ifc::testing {
namespace {

// Preparing on another thread leaves the scene alone; only writing the prepared building
// changes it, and a failed preparation writes nothing.
TEST_F(IfcImportErrorsTest, PreparedOnAWorkerWrittenOnTheScenesThread) {
    HC_Reset_System();
    const auto before = Scene();
    PreparedIfc prepared;
    PreparedIfc garbage;
    std::thread worker([&] {
        prepared = PrepareIfcFile(HousePath());
        garbage = PrepareIfcText("ISO-10303-21;\nDATA;\n", "garbage");
    });
    worker.join();
    ASSERT_TRUE(prepared.model);
    EXPECT_FALSE(garbage.model);
    EXPECT_EQ(Scene(), before);

    const ImportResult failed = WriteIfcBuilding(std::move(garbage));
    EXPECT_FALSE(failed.building);
    EXPECT_NE(failed.error.find("garbage: "), std::string::npos) << failed.error;
    EXPECT_EQ(Scene(), before);
    ASSERT_TRUE(WriteIfcBuilding(std::move(prepared), {"/prepared", {}}).building);
    EXPECT_NE(Scene(), before);
}

} // namespace
} // namespace obsidra::host::ifc::testing
