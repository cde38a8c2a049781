/* The scene database's C interface.
 *
 * One process-wide database, like the graphics system whose interface this is: a stack of open
 * segments and geometry items, a stack of contents searches, keys that stay valid until their
 * object is deleted. Every function reports misuse through the error handler (see
 * HC_Define_Error_Handler) and then returns an empty text, a zero count or a zero key; none aborts.
 * Text out-parameters are written NUL-terminated and never longer than HC_TEXT_MAX bytes.
 * docs/formats.md describes paths, filters, option strings, keys and the contents order. */
#ifndef OBSIDRA_HC_H
#define OBSIDRA_HC_H

#include <stdbool.h>
#include <stdint.h>

#include <obsidra/hc_export.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int64_t HC_KEY;

typedef struct {
    float x, y, z;
} HC_POINT;

typedef HC_POINT HC_VECTOR;

/* Every text the database writes fits in this many bytes, the terminating NUL included. */
#define HC_TEXT_MAX 4096

/* Error reporting. The handler gets the name of the function that failed and the reason; a null
 * handler restores the default, which prints "HC_Function: reason" as one line on stderr. */
typedef void (*HC_ERROR_HANDLER)(const char* function, const char* message);
void HC_Define_Error_Handler(HC_ERROR_HANDLER handler);

/* Back to an empty database holding only "/", with nothing open and no search begun. */
void HC_Reset_System(void);

/* Segments. */
HC_KEY HC_Open_Segment(const char* segment);
void HC_Open_Segment_By_Key(HC_KEY key);
void HC_Close_Segment(void);
HC_KEY HC_Create_Segment(const char* segment);
void HC_Delete_Segment(const char* segment);
void HC_Delete_By_Key(HC_KEY key);
void HC_Rename_Segment(const char* oldName, const char* newName);
void HC_Move_By_Key(HC_KEY key, const char* newOwner);
void HC_Copy_Segment(const char* oldName, const char* newName);
void HC_Flush_Contents(const char* segment, const char* filter);
void HC_Show_Segment(HC_KEY key, char* pathname);
/* Restructures the segments a path or pattern names, and what lies below them, so that they hold
 * fewer segments and items and draw the same; the options are listed in docs/optimize.md. An
 * unknown option is reported and nothing changes. */
HC_EXPORT void HC_Optimize_Segment_Tree(const char* segment, const char* options);

/* Keys. */
void HC_Show_Key_Type(HC_KEY key, char* type);
HC_KEY HC_Show_Original_Key(HC_KEY key);
HC_KEY HC_Show_Owner_By_Key(HC_KEY key, char* ownerPathname);
HC_KEY HC_Show_Owner_Original_Key(HC_KEY key);
HC_KEY HC_Renumber_Key(HC_KEY oldKey, HC_KEY newKey, const char* scope);

/* Contents searches and existence. */
void HC_Begin_Contents_Search(const char* scope, const char* filter);
bool HC_Find_Contents(char* type, HC_KEY* key);
void HC_Show_Contents_Count(int* count);
void HC_End_Contents_Search(void);
int HC_Show_Existence(const char* filter);
int HC_Show_Existence_By_Key(HC_KEY key, const char* filter);
/* As HC_Show_Existence for a named segment: 0 for a segment that does not exist ("self" asks
 * just that), which is not reported. */
int HC_QShow_Existence(const char* segment, const char* filter);

/* Segment searches: the segments a pattern names, relative to the open segment. In a level,
 * "*" stands for any run of characters and "%" for any one; a level "..." stands for any number
 * of levels, none included. "/scene/.../x*" names every segment below "/scene" whose name
 * begins with "x". HC_Find_Segment gives each one's pathname and returns false after the last. */
void HC_Begin_Segment_Search(const char* segment);
bool HC_Find_Segment(char* segment);
void HC_Show_Segment_Count(int* count);
void HC_End_Segment_Search(void);

/* Includes and styles. */
HC_KEY HC_Include_Segment(const char* segment);
HC_KEY HC_Include_Segment_By_Key(HC_KEY segmentKey);
HC_KEY HC_Conditional_Include(const char* segment, const char* condition);
HC_KEY HC_Conditional_Include_By_Key(HC_KEY segmentKey, const char* condition);
HC_KEY HC_Show_Include_Segment(HC_KEY key, char* pathname);
void HC_Show_Conditional_Include(HC_KEY key, char* pathname, char* condition);
HC_KEY HC_Style_Segment(const char* segment);
HC_KEY HC_Style_Segment_By_Key(HC_KEY segmentKey);
HC_KEY HC_Conditional_Style(const char* segment, const char* condition);
HC_KEY HC_Conditional_Style_By_Key(HC_KEY segmentKey, const char* condition);
HC_KEY HC_Show_Style_Segment(HC_KEY key, char* pathname);
void HC_Show_Conditional_Style(HC_KEY key, char* pathname, char* condition);

/* Named styles: a name defined in a segment for a style source segment, applied by name. */
void HC_Define_Named_Style(const char* styleName, const char* sourceSegment);
void HC_Define_Named_Style_By_Key(const char* styleName, HC_KEY sourceKey);
void HC_UnDefine_Named_Style(const char* styleName);
HC_KEY HC_Show_Named_Style(const char* styleName, char* sourceSegment);
HC_KEY HC_Named_Style_Segment(const char* styleName);
HC_KEY HC_Conditional_Named_Style(const char* styleName, const char* condition);
void HC_Show_Named_Style_Segment(HC_KEY key, char* styleName);
void HC_Begin_Named_Style_Search(void);
bool HC_Find_Named_Style(char* styleName);
void HC_End_Named_Style_Search(void);

/* References to a segment or a geometry item, with an optional condition and filter. */
HC_KEY HC_Reference_Geometry(const char* segment);
HC_KEY HC_Reference_Geometry_By_Key(HC_KEY key);
HC_KEY HC_Conditional_Reference(const char* segment, const char* condition);
HC_KEY HC_Conditional_Reference_By_Key(HC_KEY key, const char* condition);
HC_KEY HC_Filtered_Reference_By_Key(HC_KEY key, const char* condition, const char* filter);
HC_KEY HC_Show_Reference_Geometry(HC_KEY key);
HC_KEY HC_Show_Reference_Geometry_Filt(HC_KEY key, char* filter);
HC_KEY HC_Show_Conditional_Reference(HC_KEY key, char* condition);
void HC_Show_Reference_Keys_Count(HC_KEY key, int* count);
void HC_Show_Reference_Keys(HC_KEY key, int* count, HC_KEY* keys);

/* Geometry items opened for attribute questions, and the search over what is open. */
void HC_Open_Geometry(HC_KEY key);
void HC_Close_Geometry(void);
void HC_Begin_Open_Item_Search(void);
bool HC_Find_Open_Item(HC_KEY* key, char* type, char* status);
void HC_End_Open_Item_Search(void);

/* Geometry. Every kind is inserted into the current segment and answers its key; the points of
 * circles and arcs are three points on the curve; NURBS weights and knots may be null (uniform).
 * HC_Show_* writes only through the pointers that are not null. */
HC_KEY HC_Insert_Shell(int pointCount, const HC_POINT* points, int faceListLength,
                       const int* faceList);
HC_KEY HC_Insert_Polyline(int count, const HC_POINT* points);
HC_KEY HC_Insert_Polygon(int count, const HC_POINT* points);
HC_KEY HC_Insert_Line(double xa, double ya, double za, double xb, double yb, double zb);
HC_KEY HC_Insert_Infinite_Line(double xa, double ya, double za, double xb, double yb, double zb);
HC_KEY HC_Insert_Infinite_Ray(double xa, double ya, double za, double xb, double yb, double zb);
HC_KEY HC_Insert_Marker(double x, double y, double z);
HC_KEY HC_Insert_Text(double x, double y, double z, const char* text);
HC_KEY HC_Insert_Circle(const HC_POINT* first, const HC_POINT* second, const HC_POINT* third);
HC_KEY HC_Insert_Circle_By_Radius(const HC_POINT* center, double radius, const HC_VECTOR* normal);
HC_KEY HC_Insert_Circular_Arc(const HC_POINT* first, const HC_POINT* second, const HC_POINT* third);
HC_KEY HC_Insert_Circular_Chord(const HC_POINT* first, const HC_POINT* second,
                                const HC_POINT* third);
HC_KEY HC_Insert_Circular_Wedge(const HC_POINT* first, const HC_POINT* second,
                                const HC_POINT* third);
HC_KEY HC_Insert_Ellipse(const HC_POINT* center, const HC_POINT* major, const HC_POINT* minor);
HC_KEY HC_Insert_Elliptical_Arc(const HC_POINT* center, const HC_POINT* major,
                                const HC_POINT* minor, double start, double end);
HC_KEY HC_Insert_Cutting_Plane(double a, double b, double c, double d);
HC_KEY HC_Insert_NURBS_Curve(int degree, int controlPointCount, const HC_POINT* controlPoints,
                             const float* weights, const float* knots, double startU, double endU);
HC_KEY HC_Insert_NURBS_Surface(int uDegree, int vDegree, int uCount, int vCount,
                               const HC_POINT* controlPoints, const float* weights,
                               const float* uKnots, const float* vKnots);
HC_KEY HC_Insert_Distant_Light(double dx, double dy, double dz);
HC_KEY HC_Insert_Local_Light(double x, double y, double z);
HC_KEY HC_Insert_Spot_Light(const HC_POINT* position, const HC_POINT* target, const char* options);
HC_KEY HC_Insert_Image(double x, double y, double z, const char* format, int width, int height,
                       const void* data);
HC_KEY HC_Insert_Mesh(int rows, int columns, const HC_POINT* points);
HC_KEY HC_Insert_Cylinder(const HC_POINT* first, const HC_POINT* second, double radius,
                          const char* caps);
HC_KEY HC_Insert_PolyCylinder(int pointCount, const HC_POINT* points, int radiusCount,
                              const float* radii, const char* caps);
HC_KEY HC_Insert_Sphere(const HC_POINT* center, double radius, const HC_VECTOR* axis,
                        const HC_VECTOR* ortho);
HC_KEY HC_Insert_Grid(const char* type, const HC_POINT* origin, const HC_POINT* reference1,
                      const HC_POINT* reference2, int count1, int count2);

void HC_Show_Shell_Size(HC_KEY key, int* pointCount, int* faceListLength);
void HC_Show_Shell(HC_KEY key, int* pointCount, HC_POINT* points, int* faceListLength,
                   int* faceList);
void HC_Show_Shell_Face_Count(HC_KEY key, int* faceCount);
void HC_Show_Shell_Tristrip_Count(HC_KEY key, int* tristripCount);
void HC_Show_Region_Range(HC_KEY key, int* lowest, int* highest);
void HC_Show_LOD_Type(HC_KEY key, int level, char* type);
void HC_Show_Polyline_Count(HC_KEY key, int* count);
void HC_Show_Polyline(HC_KEY key, int* count, HC_POINT* points);
void HC_Show_Polygon_Count(HC_KEY key, int* count);
void HC_Show_Polygon(HC_KEY key, int* count, HC_POINT* points);
void HC_Show_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb, float* zb);
void HC_Show_Infinite_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb,
                           float* zb);
void HC_Show_Infinite_Ray(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb,
                          float* zb);
void HC_Show_Marker(HC_KEY key, float* x, float* y, float* z);
void HC_Show_Text(HC_KEY key, float* x, float* y, float* z, char* text);
void HC_Show_Text_Length(HC_KEY key, int* length);
void HC_Show_Circle(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
void HC_Show_Circle_By_Radius(HC_KEY key, HC_POINT* center, float* radius, HC_VECTOR* normal);
void HC_Show_Circular_Arc(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
void HC_Show_Circular_Chord(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
void HC_Show_Circular_Wedge(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
void HC_Show_Ellipse(HC_KEY key, HC_POINT* center, HC_POINT* major, HC_POINT* minor);
void HC_Show_Elliptical_Arc(HC_KEY key, HC_POINT* center, HC_POINT* major, HC_POINT* minor,
                            float* start, float* end);
void HC_Show_Cutting_Plane(HC_KEY key, float* a, float* b, float* c, float* d);
void HC_Show_NURBS_Curve_Size(HC_KEY key, int* degree, int* controlPointCount);
void HC_Show_NURBS_Curve(HC_KEY key, int* degree, int* controlPointCount, HC_POINT* controlPoints,
                         float* weights, float* knots, float* startU, float* endU);
void HC_Show_NURBS_Surface_Size(HC_KEY key, int* uDegree, int* vDegree, int* uCount, int* vCount);
void HC_Show_NURBS_Surface(HC_KEY key, int* uDegree, int* vDegree, int* uCount, int* vCount,
                           HC_POINT* controlPoints, float* weights, float* uKnots, float* vKnots);
void HC_Show_Distant_Light(HC_KEY key, float* dx, float* dy, float* dz);
void HC_Show_Local_Light(HC_KEY key, float* x, float* y, float* z);
void HC_Show_Spot_Light(HC_KEY key, HC_POINT* position, HC_POINT* target, char* options);
void HC_Show_Image_Size(HC_KEY key, float* x, float* y, float* z, char* format, int* width,
                        int* height);
void HC_Show_Image(HC_KEY key, float* x, float* y, float* z, char* format, int* width, int* height,
                   void* data);
void HC_Show_Mesh_Size(HC_KEY key, int* rows, int* columns);
void HC_Show_Mesh(HC_KEY key, int* rows, int* columns, HC_POINT* points);
void HC_Show_Cylinder(HC_KEY key, HC_POINT* first, HC_POINT* second, float* radius, char* caps);
void HC_Show_PolyCylinder_Counts(HC_KEY key, int* pointCount, int* radiusCount);
void HC_Show_PolyCylinder(HC_KEY key, int* pointCount, HC_POINT* points, int* radiusCount,
                          float* radii, char* caps);
void HC_Show_Sphere(HC_KEY key, HC_POINT* center, float* radius, HC_VECTOR* axis, HC_VECTOR* ortho);
void HC_Show_Grid(HC_KEY key, char* type, HC_POINT* origin, HC_POINT* reference1,
                  HC_POINT* reference2, int* count1, int* count2);

/* Shell details: face regions, levels of detail and per-vertex, per-edge and per-face
 * attributes, which HC_Show_Existence_By_Key answers for "vertex attributes", "edge attributes"
 * and "face attributes". */
void HC_Set_Face_Regions(HC_KEY key, int firstFace, int faceCount, int region);
void HC_Set_LOD_Type(HC_KEY key, int level, const char* type);
void HC_MSet_Vertex_Normals(HC_KEY key, int offset, int count, const HC_VECTOR* normals);
void HC_MSet_Edge_Visibilities(HC_KEY key, int offset, int count, const char* visible);
void HC_MSet_Face_Colors_By_Value(HC_KEY key, int offset, int count, const HC_POINT* rgb);

/* Edits in place: the item keeps its key. Offsets and counts select what is replaced: count
 * entries from offset are deleted and the given ones inserted there. */
void HC_Edit_Shell_Points(HC_KEY key, int offset, int deleteCount, int insertCount,
                          const HC_POINT* points);
void HC_Edit_Shell_Faces(HC_KEY key, int offset, int deleteCount, int insertListLength,
                         const int* insertList);
void HC_Edit_Polyline(HC_KEY key, int offset, int deleteCount, int insertCount,
                      const HC_POINT* points);
void HC_Edit_Polygon(HC_KEY key, int offset, int deleteCount, int insertCount,
                     const HC_POINT* points);
void HC_Edit_Circle(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                    const HC_POINT* third);
void HC_Edit_Circle_By_Radius(HC_KEY key, const HC_POINT* center, double radius,
                              const HC_VECTOR* normal);
void HC_Edit_Circular_Arc(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                          const HC_POINT* third);
void HC_Edit_Elliptical_Arc(HC_KEY key, const HC_POINT* center, const HC_POINT* major,
                            const HC_POINT* minor, double start, double end);
void HC_Edit_Cutting_Plane(HC_KEY key, double a, double b, double c, double d);
void HC_Edit_Mesh(HC_KEY key, int rowOffset, int columnOffset, int rowCount, int columnCount,
                  const HC_POINT* points);
/* Deletes deleteCount characters at (row, column) of the text and inserts insert there; text
 * items have one row. */
void HC_Edit_Text(HC_KEY key, int row, int column, int deleteCount, const char* insert);

/* Bounding volumes, in the coordinates of the object itself: a segment's own modelling matrix
 * does not apply to its bounds, its subsegments' matrices do. The info text has 'c' at index 5
 * for a cuboid ("type=cuboid") and 's' for a sphere ("type=sphere"); it is empty when the key
 * has no bounds. */
void HC_Show_Bounding_Info_By_Key(HC_KEY key, char* info);
void HC_Show_Bounding_Cuboid_By_Key(HC_KEY key, HC_POINT* min, HC_POINT* max);
void HC_Show_Bounding_Sphere_By_Key(HC_KEY key, HC_POINT* center, float* radius);
bool HC_Compute_Circumcuboid(const char* segment, HC_POINT* min, HC_POINT* max);
/* Points times a 4x4 matrix (row vectors, translation in the last row). */
void HC_Compute_Transformed_Points(int count, const HC_POINT* points, const float* matrix,
                                   HC_POINT* result);

/* Attributes of the innermost open item: a geometry item opened with HC_Open_Geometry, else the
 * current segment. HC_Set_* replaces the attribute (option-string attributes merge option by
 * option into what is set), HC_UnSet_* removes it, HC_Show_* shows the local value (reporting
 * an attribute that is not set) and HC_PShow_Net_* the value in effect: keyCount 0 asks at the
 * open item; otherwise keys[0] is the segment asked about and each further key an include
 * through which the walk up continues (docs/formats.md). */
#define HC_OPTION_ATTRIBUTE_DECLARATIONS(Name)                                                     \
    void HC_Set_##Name(const char* options);                                                       \
    void HC_UnSet_##Name(void);                                                                    \
    void HC_Show_##Name(char* options);                                                            \
    void HC_PShow_Net_##Name(int keyCount, const HC_KEY* keys, char* options);

/* Option strings and texts. */
HC_OPTION_ATTRIBUTE_DECLARATIONS(Color)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Visibility)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Selectability)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Callback)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Rendering_Options)
HC_OPTION_ATTRIBUTE_DECLARATIONS(User_Options)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Unicode_Options)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Heuristics)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Text_Font)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Driver_Options)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Handedness)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Conditions)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Text_Alignment)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Window_Pattern)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Window_Frame)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Line_Pattern)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Edge_Pattern)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Face_Pattern)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Marker_Symbol)
HC_OPTION_ATTRIBUTE_DECLARATIONS(Color_Map)
void HC_Show_User_Options_Length(int* length);
void HC_Show_Unicode_Options_Length(int* length);
void HC_Show_Color_Map_Length(int* length);

/* Geometry options belong to geometry items only; setting "" removes them. */
void HC_Set_Geometry_Options(const char* options);
void HC_Show_Geometry_Options(char* options);

/* System options are the database's own, not a segment's. */
void HC_Define_System_Options(const char* options);
void HC_Show_System_Options(char* options);

/* Numbers. */
void HC_Set_User_Value(int64_t value);
void HC_UnSet_User_Value(void);
void HC_Show_User_Value(int64_t* value);
void HC_PShow_Net_User_Value(int keyCount, const HC_KEY* keys, int64_t* value);
void HC_Set_Text_Spacing(double spacing);
void HC_UnSet_Text_Spacing(void);
void HC_Show_Text_Spacing(float* spacing);
void HC_PShow_Net_Text_Spacing(int keyCount, const HC_KEY* keys, float* spacing);
void HC_Set_Text_Path(double x, double y, double z);
void HC_UnSet_Text_Path(void);
void HC_Show_Text_Path(float* x, float* y, float* z);
void HC_PShow_Net_Text_Path(int keyCount, const HC_KEY* keys, float* x, float* y, float* z);
void HC_Set_Window(double left, double right, double bottom, double top);
void HC_UnSet_Window(void);
void HC_Show_Window(float* left, float* right, float* bottom, float* top);
void HC_PShow_Net_Window(int keyCount, const HC_KEY* keys, float* left, float* right, float* bottom,
                         float* top);

/* 4x4 matrices, row by row (row vectors, translation in the last row). Net modelling matrices
 * multiply down the tree: the local matrix first, then each owner's. */
void HC_Set_Modelling_Matrix(const float* matrix);
void HC_UnSet_Modelling_Matrix(void);
void HC_Show_Modelling_Matrix(float* matrix);
void HC_PShow_Net_Modelling_Matrix(int keyCount, const HC_KEY* keys, float* matrix);
void HC_Set_Texture_Matrix(const float* matrix);
void HC_UnSet_Texture_Matrix(void);
void HC_Show_Texture_Matrix(float* matrix);
void HC_PShow_Net_Texture_Matrix(int keyCount, const HC_KEY* keys, float* matrix);

/* Camera. */
void HC_Set_Camera(const HC_POINT* position, const HC_POINT* target, const HC_VECTOR* up,
                   double width, double height, const char* projection);
void HC_Set_Camera_Near_Limit(double limit);
void HC_UnSet_Camera(void);
void HC_Show_Camera(HC_POINT* position, HC_POINT* target, HC_VECTOR* up, float* width,
                    float* height, char* projection);
void HC_Show_Camera_Near_Limit(float* limit);
void HC_PShow_Net_Camera(int keyCount, const HC_KEY* keys, HC_POINT* position, HC_POINT* target,
                         HC_VECTOR* up, float* width, float* height, char* projection);
void HC_PShow_Net_Camera_Near_Limit(int keyCount, const HC_KEY* keys, float* limit);

/* Weights and marker size: a number, or a text with units (the variable form). A variable
 * weight shows as a negative plain weight; a plain weight shows its number as the text. */
void HC_Set_Edge_Weight(double weight);
void HC_Set_Variable_Edge_Weight(const char* weight);
void HC_UnSet_Edge_Weight(void);
void HC_Show_Edge_Weight(float* weight);
void HC_Show_Variable_Edge_Weight(char* weight);
void HC_PShow_Net_Edge_Weight(int keyCount, const HC_KEY* keys, float* weight);
void HC_PShow_Net_Var_Edge_Weight(int keyCount, const HC_KEY* keys, char* weight);
void HC_Set_Line_Weight(double weight);
void HC_Set_Variable_Line_Weight(const char* weight);
void HC_UnSet_Line_Weight(void);
void HC_Show_Line_Weight(float* weight);
void HC_Show_Variable_Line_Weight(char* weight);
void HC_PShow_Net_Line_Weight(int keyCount, const HC_KEY* keys, float* weight);
void HC_PShow_Net_Var_Line_Weight(int keyCount, const HC_KEY* keys, char* weight);
void HC_Set_Marker_Size(double size);
void HC_Set_Variable_Marker_Size(const char* size);
void HC_UnSet_Marker_Size(void);
void HC_Show_Marker_Size(float* size);
void HC_Show_Variable_Marker_Size(char* size);
void HC_PShow_Net_Marker_Size(int keyCount, const HC_KEY* keys, float* size);
void HC_PShow_Net_Var_Marker_Size(int keyCount, const HC_KEY* keys, char* size);

/* Clip region: one polygon in the segment's coordinates, with an option text. */
void HC_Set_Polygonal_Clip_Region(int count, const HC_POINT* points, const char* options);
void HC_UnSet_Clip_Region(void);
void HC_Show_Clip_Region_Size(int* loops, int* total, char* options);
void HC_Show_Clip_Region(int* loops, int* loopCounts, HC_POINT* points, char* options);
void HC_PShow_Net_Clip_Region_Size(int keyCount, const HC_KEY* keys, int* loops, int* total,
                                   char* options);
void HC_PShow_Net_Clip_Region(int keyCount, const HC_KEY* keys, int* loops, int* loopCounts,
                              HC_POINT* points, char* options);

/* User indices (an index with a pointer-sized value) and user data (an index with bytes). */
void HC_Set_User_Index(long index, const void* value);
void HC_Show_User_Index_Count(int* count);
void HC_Show_User_Indices(int* count, long* indices, void** values);
void HC_Show_One_User_Index(long index, void** value);
void HC_UnSet_One_User_Index(long index);
void HC_Set_User_Data(long index, const void* data, long size);
void HC_Show_User_Data_Count(int* count);
void HC_Show_User_Data_Indices(int* count, long* indices);
void HC_Show_One_User_Data(long index, void* data, long size, long* actualSize);
void HC_UnSet_One_User_Data(long index);

/* Conditional actions: one action of each type, with its options and its condition. The texts
 * may carry the parentheses that a shown action list puts around them. */
void HC_Set_Conditional_Action(const char* options, const char* condition);
void HC_UnSet_Conditional_Actions(void);
void HC_Show_Cond_Action_Types(char* types);
void HC_Show_One_Conditional_Action(const char* type, char* options, char* condition);

/* Definitions of the current segment: local textures, glyphs, line styles, shaders, fonts (and
 * the named styles above). Each search lists the current segment's own definitions. */
void HC_Define_Local_Texture(const char* name, const char* definition);
void HC_UnDefine_Local_Texture(const char* name);
void HC_Show_Local_Texture(const char* name, char* definition);
void HC_Begin_Local_Texture_Search(void);
void HC_Begin_Texture_Search(void);
bool HC_Find_Texture(char* name);
void HC_End_Texture_Search(void);
void HC_Define_Glyph(const char* name, int size, const char* data);
void HC_UnDefine_Glyph(const char* name);
void HC_Show_Glyph_Size(const char* name, int* size);
void HC_Show_Glyph(const char* name, char* data);
void HC_Begin_Glyph_Search(void);
bool HC_Find_Glyph(char* name);
void HC_End_Glyph_Search(void);
void HC_Define_Line_Style(const char* name, const char* definition);
void HC_UnDefine_Line_Style(const char* name);
void HC_Show_Line_Style(const char* name, char* definition);
void HC_Begin_Line_Style_Search(void);
bool HC_Find_Line_Style(char* name);
void HC_End_Line_Style_Search(void);
void HC_Define_Shader(const char* name, const char* options, const char* source);
void HC_UnDefine_Shader(const char* name);
void HC_Show_Shader(const char* name, char* options, char* source);
void HC_Begin_Shader_Search(void);
bool HC_Find_Shader(char* name);
void HC_End_Shader_Search(void);
/* Fonts: the built-in ones, then those defined in the current segment. */
void HC_Define_Font(const char* name, const char* options);
void HC_UnDefine_Font(const char* name);
void HC_Begin_Font_Search(const char* display, const char* filter);
bool HC_Find_Font(char* name);
void HC_End_Font_Search(void);

/* Text helpers. */
void HC_Parse_String(const char* text, const char* delimiter, int offset, char* field);

/* Metafiles: the text format of docs/formats.md. Write saves the named segment with everything
 * below it; read loads a file's contents into the named segment (created if needed). */
void HC_Write_Metafile(const char* segment, const char* file, const char* options);
HC_KEY HC_Read_Metafile(const char* file, const char* segment, const char* options);

#ifdef __cplusplus
}
#endif

#endif
