// Shared by the IFC importer's tests: a fresh scene database for each test with its error
// messages collected, the sample house, and small questions to the scene.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

#include "../hc/hc_test.h"
#include "host/ifc/ifc_importer.h"

namespace obsidra::host::ifc::testing {

inline std::string HousePath() {
    return OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc";
}

class IfcTest : public ::HcTest {
protected:
    // An import reports nothing to the scene database's error handler.
    void TearDown() override {
        EXPECT_TRUE(Errors().empty()) << "first scene database error: " << Errors().front();
        HcTest::TearDown();
    }

    // Imports the house under /ifc; the test stops when that fails.
    static IfcBuilding ImportHouse() {
        ImportResult result = ImportIfcFile(HousePath());
        if (!result.building) ADD_FAILURE() << result.error;
        return result.building ? std::move(*result.building) : IfcBuilding{};
    }

    // A text attribute of a segment or geometry item, or "" when it is not set.
    template <typename Show>
    static std::string Attribute(HC_KEY key, const char* kind, Show show) {
        char text[HC_TEXT_MAX] = "";
        const bool segment = Type(key) == "segment";
        if (segment)
            HC_Open_Segment_By_Key(key);
        else
            HC_Open_Geometry(key);
        const bool set =
            segment ? HC_Show_Existence(kind) > 0 : HC_Show_Existence_By_Key(key, kind) > 0;
        if (set) show(text);
        if (segment)
            HC_Close_Segment();
        else
            HC_Close_Geometry();
        return text;
    }
    static std::string UserOptions(HC_KEY key) {
        return Attribute(key, "user options", HC_Show_User_Options);
    }
    static std::string Colour(HC_KEY key) { return Attribute(key, "color", HC_Show_Color); }
    static std::string Visibility(HC_KEY key) {
        return Attribute(key, "visibility", HC_Show_Visibility);
    }
};

} // namespace obsidra::host::ifc::testing
