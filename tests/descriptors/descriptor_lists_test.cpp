// The tree lists nodes in the order of its descriptor lists, so each list is checked against the
// order written out here by hand rather than against the tables it is made from.
#include <string>

#include "descriptor_test.h"

using namespace obsidra::descriptors;

namespace {

// The names of a list, joined by commas.
template <typename List>
std::string Names(const List& list) {
    std::string names;
    for (const auto& descriptor : list)
        names += (names.empty() ? "" : ",") + std::string(descriptor->GetName());
    return names;
}

TEST(DescriptorListsTest, ListsComeInTheTreesOrder) {
    DescriptorLists lists = MakeDescriptorLists();
    EXPECT_EQ(Names(lists.segmentAttributes),
              "COLOR,VISIBILITY,SELECTABILITY,CALLBACK,RENDERING OPTIONS,USER OPTIONS,"
              "UNICODE OPTIONS,USER VALUE,USER INDEX,USER DATA,CAMERA,MODELLING MATRIX,"
              "TEXTURE MATRIX,HEURISTICS,TEXT FONT,DRIVER OPTIONS,SYSTEM OPTIONS,HANDEDNESS,"
              "WINDOW,CLIP REGION,VARIABLE EDGE WEIGHT,EDGE WEIGHT,VARIABLE LINE WEIGHT,"
              "LINE WEIGHT,VARIABLE MARKER SIZE,MARKER SIZE,CONDITION,TEXT ALIGNMENT,"
              "WINDOW PATTERN,WINDOW FRAME,LINE PATTERN,EDGE PATTERN,FACE PATTERN,MARKER SYMBOL,"
              "TEXT PATH,TEXT SPACING,COLOR MAP,GEOMETRY OPTIONS,CONDITIONAL ACTION");
    EXPECT_EQ(Names(lists.geometry),
              "SHELL,POLYLINE,MARKER,CIRCLE,POLYGON,CIRCULAR CHORD,CIRCULAR ARC,CIRCULAR WEDGE,"
              "CUTTING PLANE,NURBS CURVE,NURBS SURFACE,DISTANT LIGHT,LOCAL LIGHT,SPOT LIGHT,TEXT,"
              "IMAGE,ELLIPSE,ELLIPTICAL ARC,MESH,CYLINDER,POLYCYLINDER,LINE,SPHERE,GRID,"
              "INFINITE LINE,INFINITE RAY");
    EXPECT_EQ(Names(lists.definitions), "LOCAL TEXTURE,GLYPH DEFINITION,LINE PATTERN DEFINITION,"
                                        "Font,NAMED STYLE DEFINITION,SHADER");
    EXPECT_EQ(
        Names(lists.shellMeshLightAttributes),
        "COLOR,GEOMETRY OPTIONS,USER VALUE,USER OPTIONS,USER INDEX,USER DATA,UNICODE OPTIONS");
    EXPECT_EQ(Names(lists.geometryItemAttributes),
              "USER VALUE,USER OPTIONS,UNICODE OPTIONS,USER INDEX,USER DATA,GEOMETRY OPTIONS");
    EXPECT_EQ(Names(lists.textItemAttributes),
              "TEXT ALIGNMENT,TEXT FONT,TEXT PATH,TEXT SPACING,MODELLING MATRIX,USER VALUE,"
              "USER OPTIONS,USER INDEX,USER DATA,UNICODE OPTIONS");
    EXPECT_EQ(Names(lists.referencedItemAttributes),
              "COLOR,USER VALUE,USER OPTIONS,USER INDEX,USER DATA,UNICODE OPTIONS,MODELLING MATRIX,"
              "TEXT ALIGNMENT,TEXT FONT,TEXT PATH,TEXT SPACING,MARKER SYMBOL,MARKER SIZE,"
              "LINE WEIGHT,LINE PATTERN,VISIBILITY");
}

// Each list holds its own descriptors: a clip region's remembered points are one list's.
TEST(DescriptorListsTest, ListsShareNoDescriptor) {
    DescriptorLists first = MakeDescriptorLists();
    DescriptorLists second = MakeDescriptorLists();
    EXPECT_NE(first.segmentAttributes[0].get(), second.segmentAttributes[0].get());
    EXPECT_NE(first.shellMeshLightAttributes[0].get(), first.referencedItemAttributes[0].get());
}

TEST(DescriptorListsTest, GeometryItemsGetTheListOfTheirType) {
    DescriptorLists lists = MakeDescriptorLists();
    const struct {
        const char* type;
        bool throughReference;
        const AttributeList* list;
    } cases[] = {
        {"shell", false, &lists.shellMeshLightAttributes},
        {"mesh", false, &lists.shellMeshLightAttributes},
        {"spot light", false, &lists.shellMeshLightAttributes},
        {"distant light", false, &lists.shellMeshLightAttributes},
        {"text", false, &lists.textItemAttributes},
        {"polyline", false, &lists.geometryItemAttributes},
        {"circular arc", false, &lists.geometryItemAttributes},
        {"shell", true, &lists.referencedItemAttributes},
        {"text", true, &lists.referencedItemAttributes},
    };
    for (const auto& row : cases)
        EXPECT_EQ(&lists.ForGeometryItem(row.type, row.throughReference), row.list)
            << row.type << (row.throughReference ? " through a reference" : "");
}

} // namespace
