// The coordinates "Edit" appends, one row per kind and shell face-list shape.
#include <functional>
#include <string>
#include <vector>

#include "hc/hc_test.h"
#include "scenetree/edit_appendix.h"

using obsidra::scenetree::EditAppendix;

namespace {

using EditAppendixTest = HcTest;

HC_KEY Shell(std::vector<HC_POINT> points, std::vector<int> faces) {
    return HC_Insert_Shell(static_cast<int>(points.size()), points.data(),
                           static_cast<int>(faces.size()), faces.data());
}

TEST_F(EditAppendixTest, EachKindInTheFormItsDescriptorReadsBack) {
    const HC_POINT p0{0, 0, 0}, p1{1, 0, 0}, p2{0, 1, 0}, p3{1, 1, 0}, p4{2, 2, 1};
    const struct {
        const char* kind;
        std::function<HC_KEY()> insert;
        const char* expected;
    } kRows[] = {
        {"SHELL", [&] { return Shell({p4}, {}); }, "\n2.000000, 2.000000, 1.000000\n\n"},
        {"SHELL",
         [&] {
             return Shell({p0, p1, p2}, {3, 0, 1, 2});
         },
         "\n0.000000, 0.000000, 0.000000,     1.000000, 0.000000, 0.000000,     "
         "0.000000, 1.000000, 0.000000\n3, 0,1,2\n"},
        // Two triangles: the first gets its trailing blanks, the last none.
        {"SHELL",
         [&] {
             return Shell({p0, p1, p2, p3}, {3, 0, 1, 2, 3, 1, 3, 2});
         },
         "\n0.000000, 0.000000, 0.000000,     1.000000, 0.000000, 0.000000,     "
         "0.000000, 1.000000, 0.000000,     1.000000, 1.000000, 0.000000\n"
         "3, 0,1,2   3, 1,3,2\n"},
        // A pentagon before a triangle: place 5 plus count 5 reaches the list's end, no blanks.
        {"SHELL",
         [&] {
             return Shell({p0, p1, p3, p2, p4}, {5, 0, 1, 2, 3, 4, 3, 0, 1, 4});
         },
         "\n0.000000, 0.000000, 0.000000,     1.000000, 0.000000, 0.000000,     "
         "1.000000, 1.000000, 0.000000,     0.000000, 1.000000, 0.000000,     "
         "2.000000, 2.000000, 1.000000\n5, 0,1,2,3,43, 0,1,4\n"},
        {"MESH",
         [&] {
             const HC_POINT grid[] = {p0, p1, p2, p3};
             return HC_Insert_Mesh(2, 2, grid);
         },
         "\n<0.000000 0.000000 0.000000, 1.000000 0.000000 0.000000>\n"
         "<0.000000 1.000000 0.000000, 1.000000 1.000000 0.000000>\n"},
        {"CIRCULAR ARC", [&] { return HC_Insert_Circular_Arc(&p1, &p2, &p4); },
         "\n<1.000000 0.000000 0.000000, 0.000000 1.000000 0.000000, "
         "2.000000 2.000000 1.000000>\n"},
        {"POLYLINE",
         [&] {
             const HC_POINT line[] = {p0, p4};
             return HC_Insert_Polyline(2, line);
         },
         "\n<0.000000 0.000000 0.000000, 2.000000 2.000000 1.000000>\n"},
        {"POLYGON",
         [&] {
             const HC_POINT corners[] = {p0, p1, p2};
             return HC_Insert_Polygon(3, corners);
         },
         "\n<0.000000 0.000000 0.000000, 1.000000 0.000000 0.000000, "
         "0.000000 1.000000 0.000000>\n"},
        {"ELLIPTICAL ARC", [&] { return HC_Insert_Elliptical_Arc(&p4, &p1, &p2, 0.25, 0.75); },
         "\n<Cenrter:2.000000 2.000000 1.000000, Major:1.000000 0.000000 0.000000, "
         "Minor:0.000000 1.000000 0.000000>\n"},
        {"CIRCLE",
         [&] {
             const HC_VECTOR up{0, 0, 1};
             return HC_Insert_Circle_By_Radius(&p4, 1.5, &up);
         },
         "\n<Cenrter:2.000000 2.000000 1.000000, Radius:1.500000, "
         "Normal:0.000000 0.000000 1.000000>\n"},
        {"CUTTING PLANE", [&] { return HC_Insert_Cutting_Plane(0, 0, 1, -2); },
         "\n<a:0.000000, b:0.000000 c:1.000000, d:-2.000000>\n"},
    };
    HC_Open_Segment("/items");
    for (const auto& row : kRows) {
        const HC_KEY key = row.insert();
        const std::string kind = row.kind;
        EXPECT_EQ(EditAppendix(key, [&](const char* k) { return kind == k; }), row.expected)
            << row.kind;
    }
    const HC_KEY marker = HC_Insert_Marker(0, 0, 0);
    EXPECT_EQ(EditAppendix(marker, [](const char* k) { return std::string(k) == "MARKER"; }), "")
        << "kinds without coordinates append nothing";
    HC_Close_Segment();
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
}

} // namespace
