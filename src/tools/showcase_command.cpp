#include <cmath>

#include <obsidra/hc.h>

#include "commands.h"

namespace obsidra::tools {

namespace {

// A scene with every geometry kind and most attributes, built through the C interface as a host
// would build it.
void BuildShowcase() {
    const float lift[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 2, 1};
    HC_Open_Segment("/showcase");
    HC_Set_User_Options("title=\"every kind of geometry\",author=Obsidra");
    HC_Set_Heuristics("backplane cull");
    HC_POINT eye{10, -10, 8}, target{0, 0, 0}, up{0, 0, 1};
    HC_Set_Camera(&eye, &target, &up, 12, 9, "perspective");
    HC_Set_Camera_Near_Limit(0.01);
    HC_Define_Local_Texture("checker", "source=checker.png, tiling");
    HC_Define_Line_Style("dash dot", "4 pixels dash, 2 pixels blank, 1 pixel dash, 2 pixels blank");
    HC_Define_Shader("toon", "multitexture", "float4 main() { return 1; }");
    HC_Define_Glyph("tick", 5, "\x02\x00\x00\x01\x01");
    HC_Define_Named_Style("highlight", "/showcase/styles/highlight");

    HC_Open_Segment("styles/highlight");
    HC_Set_Color("faces=yellow, edges=black");
    HC_Set_Line_Weight(2);
    HC_Close_Segment();

    HC_Open_Segment("surfaces");
    HC_Set_Color("faces=light grey");
    HC_Set_Visibility("edges=on");
    HC_POINT cube[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                       {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    int cubeFaces[] = {4, 0, 3, 2, 1, 4, 4, 5, 6, 7, 4, 0, 1, 5, 4,
                       4, 1, 2, 6, 5, 4, 2, 3, 7, 6, 4, 3, 0, 4, 7};
    HC_KEY shell = HC_Insert_Shell(8, cube, 30, cubeFaces);
    HC_Set_Face_Regions(shell, 0, 3, 1);
    HC_Open_Geometry(shell);
    HC_Set_User_Value(42);
    HC_Close_Geometry();
    HC_POINT grid[9];
    for (int i = 0; i < 9; ++i)
        grid[i] = {float(i % 3) + 2, float(i / 3), std::sin(float(i)) * 0.2f};
    HC_Insert_Mesh(3, 3, grid);
    HC_POINT triangle[] = {{5, 0, 0}, {6, 0, 0}, {5.5f, 1, 0}};
    HC_Insert_Polygon(3, triangle);
    HC_POINT center{8, 0, 0};
    HC_VECTOR axis{0, 0, 1}, ortho{1, 0, 0};
    HC_Insert_Sphere(&center, 0.75, &axis, &ortho);
    HC_POINT bottom{10, 0, 0}, top{10, 0, 2};
    HC_Insert_Cylinder(&bottom, &top, 0.5, "both");
    HC_POINT tube[] = {{12, 0, 0}, {12, 1, 1}, {13, 1, 2}};
    float radii[] = {0.3f, 0.2f, 0.1f};
    HC_Insert_PolyCylinder(3, tube, 3, radii, "first");
    HC_POINT controls[] = {{0, 3, 0}, {1, 4, 0}, {0, 5, 0}, {1, 6, 0},
                           {0, 3, 1}, {1, 4, 1}, {0, 5, 1}, {1, 6, 1}};
    HC_Insert_NURBS_Surface(1, 1, 4, 2, controls, nullptr, nullptr, nullptr);
    HC_POINT origin{-4, -4, 0}, along{-3, -4, 0}, across{-4, -3, 0};
    HC_Insert_Grid("quadrilateral", &origin, &along, &across, 8, 8);
    HC_Close_Segment();

    HC_Open_Segment("curves");
    HC_Set_Modelling_Matrix(lift);
    HC_Set_Line_Pattern("dash dot");
    HC_POINT zigzag[] = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}};
    HC_Insert_Polyline(4, zigzag);
    HC_Insert_Line(0, 2, 0, 3, 2, 0);
    HC_Insert_Infinite_Line(0, 3, 0, 1, 3, 0);
    HC_Insert_Infinite_Ray(0, 4, 0, 1, 5, 0);
    HC_POINT a{4, 0, 0}, b{5, 1, 0}, c{6, 0, 0};
    HC_Insert_Circle(&a, &b, &c);
    HC_Insert_Circular_Arc(&a, &b, &c);
    HC_POINT a2{4, 2, 0}, b2{5, 3, 0}, c2{6, 2, 0};
    HC_Insert_Circular_Chord(&a2, &b2, &c2);
    HC_POINT a3{4, 4, 0}, b3{5, 5, 0}, c3{6, 4, 0};
    HC_Insert_Circular_Wedge(&a3, &b3, &c3);
    HC_POINT middle{8, 0, 0}, major{10, 0, 0}, minor{8, 1, 0};
    HC_Insert_Ellipse(&middle, &major, &minor);
    HC_POINT middle2{8, 3, 0}, major2{10, 3, 0}, minor2{8, 4, 0};
    HC_Insert_Elliptical_Arc(&middle2, &major2, &minor2, 0.0, 0.5);
    HC_POINT curve[] = {{0, 6, 0}, {1, 7, 0}, {2, 6, 0}, {3, 7, 0}};
    HC_Insert_NURBS_Curve(3, 4, curve, nullptr, nullptr, 0, 1);
    HC_Close_Segment();

    HC_Open_Segment("annotations");
    HC_Set_Text_Font("name=sans serif, size=12 pt");
    HC_Set_Text_Alignment("<v");
    HC_Set_Marker_Symbol("(*)");
    HC_Set_Variable_Marker_Size("0.5 oru");
    HC_Insert_Text(0, -2, 0, "Every kind of geometry");
    HC_Insert_Marker(0, -3, 0);
    const unsigned char pixels[2 * 2 * 3] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
    HC_Insert_Image(2, -3, 0, "rgb", 2, 2, pixels);
    HC_Named_Style_Segment("highlight");
    HC_Close_Segment();

    HC_Open_Segment("lights");
    HC_Insert_Distant_Light(-1, -1, -1);
    HC_Insert_Local_Light(0, 0, 10);
    HC_POINT spot{5, 5, 10}, aim{5, 5, 0};
    HC_Insert_Spot_Light(&spot, &aim, "illumination cone = 30");
    HC_Insert_Cutting_Plane(0, 0, -1, 3);
    HC_Close_Segment();

    HC_Open_Segment("instances");
    HC_Conditional_Include("/showcase/surfaces", "detailed");
    HC_Style_Segment("/showcase/styles/highlight");
    HC_Filtered_Reference_By_Key(HC_Create_Segment("/showcase/curves"), "", "no lines");
    HC_Close_Segment();
    HC_Close_Segment();
}

} // namespace

int ShowcaseCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() != 1) {
        err << "usage: obsidra-scene showcase OUT.hmf\n";
        return 2;
    }
    BuildShowcase();
    HC_Write_Metafile("/", args[0].c_str(), "save state = textures");
    return 0;
}

} // namespace obsidra::tools
