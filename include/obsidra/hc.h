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
HC_EXPORT void HC_Define_Error_Handler(HC_ERROR_HANDLER handler);

/* Back to an empty database holding only "/", with nothing open and no search begun. */
HC_EXPORT void HC_Reset_System(void);

/* Segments. */
HC_EXPORT HC_KEY HC_Open_Segment(const char* segment);
HC_EXPORT void HC_Open_Segment_By_Key(HC_KEY key);
HC_EXPORT void HC_Close_Segment(void);
HC_EXPORT HC_KEY HC_Create_Segment(const char* segment);
HC_EXPORT void HC_Delete_Segment(const char* segment);
HC_EXPORT void HC_Delete_By_Key(HC_KEY key);
HC_EXPORT void HC_Rename_Segment(const char* oldName, const char* newName);
HC_EXPORT void HC_Move_By_Key(HC_KEY key, const char* newOwner);
HC_EXPORT void HC_Copy_Segment(const char* oldName, const char* newName);
HC_EXPORT void HC_Flush_Contents(const char* segment, const char* filter);
HC_EXPORT void HC_Show_Segment(HC_KEY key, char* pathname);
/* Restructures the segments a path or pattern names, and what lies below them, so that they hold
 * fewer segments and items and draw the same; the options are listed in docs/optimize.md. An
 * unknown option is reported and nothing changes. */
HC_EXPORT void HC_Optimize_Segment_Tree(const char* segment, const char* options);

/* Keys. */
HC_EXPORT void HC_Show_Key_Type(HC_KEY key, char* type);
HC_EXPORT HC_KEY HC_Show_Original_Key(HC_KEY key);
HC_EXPORT HC_KEY HC_Show_Owner_By_Key(HC_KEY key, char* ownerPathname);
HC_EXPORT HC_KEY HC_Show_Owner_Original_Key(HC_KEY key);
HC_EXPORT HC_KEY HC_Renumber_Key(HC_KEY oldKey, HC_KEY newKey, const char* scope);

/* Contents searches and existence. */
HC_EXPORT void HC_Begin_Contents_Search(const char* scope, const char* filter);
HC_EXPORT bool HC_Find_Contents(char* type, HC_KEY* key);
HC_EXPORT void HC_Show_Contents_Count(int* count);
HC_EXPORT void HC_End_Contents_Search(void);
HC_EXPORT int HC_Show_Existence(const char* filter);
HC_EXPORT int HC_Show_Existence_By_Key(HC_KEY key, const char* filter);
/* As HC_Show_Existence for a named segment: 0 for a segment that does not exist ("self" asks
 * just that), which is not reported. */
HC_EXPORT int HC_QShow_Existence(const char* segment, const char* filter);

/* Segment searches: the segments a pattern names, relative to the open segment. In a level,
 * "*" stands for any run of characters and "%" for any one; a level "..." stands for any number
 * of levels, none included. "/scene/.../x*" names every segment below "/scene" whose name
 * begins with "x". HC_Find_Segment gives each one's pathname and returns false after the last. */
HC_EXPORT void HC_Begin_Segment_Search(const char* segment);
HC_EXPORT bool HC_Find_Segment(char* segment);
HC_EXPORT void HC_Show_Segment_Count(int* count);
HC_EXPORT void HC_End_Segment_Search(void);

/* Includes and styles. */
HC_EXPORT HC_KEY HC_Include_Segment(const char* segment);
HC_EXPORT HC_KEY HC_Include_Segment_By_Key(HC_KEY segmentKey);
HC_EXPORT HC_KEY HC_Conditional_Include(const char* segment, const char* condition);
HC_EXPORT HC_KEY HC_Conditional_Include_By_Key(HC_KEY segmentKey, const char* condition);
HC_EXPORT HC_KEY HC_Show_Include_Segment(HC_KEY key, char* pathname);
HC_EXPORT void HC_Show_Conditional_Include(HC_KEY key, char* pathname, char* condition);
HC_EXPORT HC_KEY HC_Style_Segment(const char* segment);
HC_EXPORT HC_KEY HC_Style_Segment_By_Key(HC_KEY segmentKey);
HC_EXPORT HC_KEY HC_Conditional_Style(const char* segment, const char* condition);
HC_EXPORT HC_KEY HC_Conditional_Style_By_Key(HC_KEY segmentKey, const char* condition);
HC_EXPORT HC_KEY HC_Show_Style_Segment(HC_KEY key, char* pathname);
HC_EXPORT void HC_Show_Conditional_Style(HC_KEY key, char* pathname, char* condition);

/* Named styles: a name defined in a segment for a style source segment, applied by name. */
HC_EXPORT void HC_Define_Named_Style(const char* styleName, const char* sourceSegment);
HC_EXPORT void HC_Define_Named_Style_By_Key(const char* styleName, HC_KEY sourceKey);
HC_EXPORT void HC_UnDefine_Named_Style(const char* styleName);
HC_EXPORT HC_KEY HC_Show_Named_Style(const char* styleName, char* sourceSegment);
HC_EXPORT HC_KEY HC_Named_Style_Segment(const char* styleName);
HC_EXPORT HC_KEY HC_Conditional_Named_Style(const char* styleName, const char* condition);
HC_EXPORT void HC_Show_Named_Style_Segment(HC_KEY key, char* styleName);
HC_EXPORT void HC_Begin_Named_Style_Search(void);
HC_EXPORT bool HC_Find_Named_Style(char* styleName);
HC_EXPORT void HC_End_Named_Style_Search(void);

/* References to a segment or a geometry item, with an optional condition and filter. */
HC_EXPORT HC_KEY HC_Reference_Geometry(const char* segment);
HC_EXPORT HC_KEY HC_Reference_Geometry_By_Key(HC_KEY key);
HC_EXPORT HC_KEY HC_Conditional_Reference(const char* segment, const char* condition);
HC_EXPORT HC_KEY HC_Conditional_Reference_By_Key(HC_KEY key, const char* condition);
HC_EXPORT HC_KEY HC_Filtered_Reference_By_Key(HC_KEY key, const char* condition,
                                              const char* filter);
HC_EXPORT HC_KEY HC_Show_Reference_Geometry(HC_KEY key);
HC_EXPORT HC_KEY HC_Show_Reference_Geometry_Filt(HC_KEY key, char* filter);
HC_EXPORT HC_KEY HC_Show_Conditional_Reference(HC_KEY key, char* condition);
HC_EXPORT void HC_Show_Reference_Keys_Count(HC_KEY key, int* count);
HC_EXPORT void HC_Show_Reference_Keys(HC_KEY key, int* count, HC_KEY* keys);

/* Geometry items opened for attribute questions, and the search over what is open. */
HC_EXPORT void HC_Open_Geometry(HC_KEY key);
HC_EXPORT void HC_Close_Geometry(void);
HC_EXPORT void HC_Begin_Open_Item_Search(void);
HC_EXPORT bool HC_Find_Open_Item(HC_KEY* key, char* type, char* status);
HC_EXPORT void HC_End_Open_Item_Search(void);

/* Geometry. Every kind is inserted into the current segment and answers its key; the points of
 * circles and arcs are three points on the curve; NURBS weights and knots may be null (uniform).
 * HC_Show_* writes only through the pointers that are not null. */
HC_EXPORT HC_KEY HC_Insert_Shell(int pointCount, const HC_POINT* points, int faceListLength,
                                 const int* faceList);
HC_EXPORT HC_KEY HC_Insert_Polyline(int count, const HC_POINT* points);
HC_EXPORT HC_KEY HC_Insert_Polygon(int count, const HC_POINT* points);
HC_EXPORT HC_KEY HC_Insert_Line(double xa, double ya, double za, double xb, double yb, double zb);
HC_EXPORT HC_KEY HC_Insert_Infinite_Line(double xa, double ya, double za, double xb, double yb,
                                         double zb);
HC_EXPORT HC_KEY HC_Insert_Infinite_Ray(double xa, double ya, double za, double xb, double yb,
                                        double zb);
HC_EXPORT HC_KEY HC_Insert_Marker(double x, double y, double z);
HC_EXPORT HC_KEY HC_Insert_Text(double x, double y, double z, const char* text);
HC_EXPORT HC_KEY HC_Insert_Circle(const HC_POINT* first, const HC_POINT* second,
                                  const HC_POINT* third);
HC_EXPORT HC_KEY HC_Insert_Circle_By_Radius(const HC_POINT* center, double radius,
                                            const HC_VECTOR* normal);
HC_EXPORT HC_KEY HC_Insert_Circular_Arc(const HC_POINT* first, const HC_POINT* second,
                                        const HC_POINT* third);
HC_EXPORT HC_KEY HC_Insert_Circular_Chord(const HC_POINT* first, const HC_POINT* second,
                                          const HC_POINT* third);
HC_EXPORT HC_KEY HC_Insert_Circular_Wedge(const HC_POINT* first, const HC_POINT* second,
                                          const HC_POINT* third);
HC_EXPORT HC_KEY HC_Insert_Ellipse(const HC_POINT* center, const HC_POINT* major,
                                   const HC_POINT* minor);
HC_EXPORT HC_KEY HC_Insert_Elliptical_Arc(const HC_POINT* center, const HC_POINT* major,
                                          const HC_POINT* minor, double start, double end);
HC_EXPORT HC_KEY HC_Insert_Cutting_Plane(double a, double b, double c, double d);
HC_EXPORT HC_KEY HC_Insert_NURBS_Curve(int degree, int controlPointCount,
                                       const HC_POINT* controlPoints, const float* weights,
                                       const float* knots, double startU, double endU);
HC_EXPORT HC_KEY HC_Insert_NURBS_Surface(int uDegree, int vDegree, int uCount, int vCount,
                                         const HC_POINT* controlPoints, const float* weights,
                                         const float* uKnots, const float* vKnots);
HC_EXPORT HC_KEY HC_Insert_Distant_Light(double dx, double dy, double dz);
HC_EXPORT HC_KEY HC_Insert_Local_Light(double x, double y, double z);
HC_EXPORT HC_KEY HC_Insert_Spot_Light(const HC_POINT* position, const HC_POINT* target,
                                      const char* options);
HC_EXPORT HC_KEY HC_Insert_Image(double x, double y, double z, const char* format, int width,
                                 int height, const void* data);
HC_EXPORT HC_KEY HC_Insert_Mesh(int rows, int columns, const HC_POINT* points);
HC_EXPORT HC_KEY HC_Insert_Cylinder(const HC_POINT* first, const HC_POINT* second, double radius,
                                    const char* caps);
HC_EXPORT HC_KEY HC_Insert_PolyCylinder(int pointCount, const HC_POINT* points, int radiusCount,
                                        const float* radii, const char* caps);
HC_EXPORT HC_KEY HC_Insert_Sphere(const HC_POINT* center, double radius, const HC_VECTOR* axis,
                                  const HC_VECTOR* ortho);
HC_EXPORT HC_KEY HC_Insert_Grid(const char* type, const HC_POINT* origin,
                                const HC_POINT* reference1, const HC_POINT* reference2, int count1,
                                int count2);

HC_EXPORT void HC_Show_Shell_Size(HC_KEY key, int* pointCount, int* faceListLength);
HC_EXPORT void HC_Show_Shell(HC_KEY key, int* pointCount, HC_POINT* points, int* faceListLength,
                             int* faceList);
HC_EXPORT void HC_Show_Shell_Face_Count(HC_KEY key, int* faceCount);
HC_EXPORT void HC_Show_Shell_Tristrip_Count(HC_KEY key, int* tristripCount);
HC_EXPORT void HC_Show_Region_Range(HC_KEY key, int* lowest, int* highest);
HC_EXPORT void HC_Show_LOD_Type(HC_KEY key, int level, char* type);
HC_EXPORT void HC_Show_Polyline_Count(HC_KEY key, int* count);
HC_EXPORT void HC_Show_Polyline(HC_KEY key, int* count, HC_POINT* points);
HC_EXPORT void HC_Show_Polygon_Count(HC_KEY key, int* count);
HC_EXPORT void HC_Show_Polygon(HC_KEY key, int* count, HC_POINT* points);
HC_EXPORT void HC_Show_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb,
                            float* zb);
HC_EXPORT void HC_Show_Infinite_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb,
                                     float* yb, float* zb);
HC_EXPORT void HC_Show_Infinite_Ray(HC_KEY key, float* xa, float* ya, float* za, float* xb,
                                    float* yb, float* zb);
HC_EXPORT void HC_Show_Marker(HC_KEY key, float* x, float* y, float* z);
HC_EXPORT void HC_Show_Text(HC_KEY key, float* x, float* y, float* z, char* text);
HC_EXPORT void HC_Show_Text_Length(HC_KEY key, int* length);
HC_EXPORT void HC_Show_Circle(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
HC_EXPORT void HC_Show_Circle_By_Radius(HC_KEY key, HC_POINT* center, float* radius,
                                        HC_VECTOR* normal);
HC_EXPORT void HC_Show_Circular_Arc(HC_KEY key, HC_POINT* first, HC_POINT* second, HC_POINT* third);
HC_EXPORT void HC_Show_Circular_Chord(HC_KEY key, HC_POINT* first, HC_POINT* second,
                                      HC_POINT* third);
HC_EXPORT void HC_Show_Circular_Wedge(HC_KEY key, HC_POINT* first, HC_POINT* second,
                                      HC_POINT* third);
HC_EXPORT void HC_Show_Ellipse(HC_KEY key, HC_POINT* center, HC_POINT* major, HC_POINT* minor);
HC_EXPORT void HC_Show_Elliptical_Arc(HC_KEY key, HC_POINT* center, HC_POINT* major,
                                      HC_POINT* minor, float* start, float* end);
HC_EXPORT void HC_Show_Cutting_Plane(HC_KEY key, float* a, float* b, float* c, float* d);
HC_EXPORT void HC_Show_NURBS_Curve_Size(HC_KEY key, int* degree, int* controlPointCount);
HC_EXPORT void HC_Show_NURBS_Curve(HC_KEY key, int* degree, int* controlPointCount,
                                   HC_POINT* controlPoints, float* weights, float* knots,
                                   float* startU, float* endU);
HC_EXPORT void HC_Show_NURBS_Surface_Size(HC_KEY key, int* uDegree, int* vDegree, int* uCount,
                                          int* vCount);
HC_EXPORT void HC_Show_NURBS_Surface(HC_KEY key, int* uDegree, int* vDegree, int* uCount,
                                     int* vCount, HC_POINT* controlPoints, float* weights,
                                     float* uKnots, float* vKnots);
HC_EXPORT void HC_Show_Distant_Light(HC_KEY key, float* dx, float* dy, float* dz);
HC_EXPORT void HC_Show_Local_Light(HC_KEY key, float* x, float* y, float* z);
HC_EXPORT void HC_Show_Spot_Light(HC_KEY key, HC_POINT* position, HC_POINT* target, char* options);
HC_EXPORT void HC_Show_Image_Size(HC_KEY key, float* x, float* y, float* z, char* format,
                                  int* width, int* height);
HC_EXPORT void HC_Show_Image(HC_KEY key, float* x, float* y, float* z, char* format, int* width,
                             int* height, void* data);
HC_EXPORT void HC_Show_Mesh_Size(HC_KEY key, int* rows, int* columns);
HC_EXPORT void HC_Show_Mesh(HC_KEY key, int* rows, int* columns, HC_POINT* points);
HC_EXPORT void HC_Show_Cylinder(HC_KEY key, HC_POINT* first, HC_POINT* second, float* radius,
                                char* caps);
HC_EXPORT void HC_Show_PolyCylinder_Counts(HC_KEY key, int* pointCount, int* radiusCount);
HC_EXPORT void HC_Show_PolyCylinder(HC_KEY key, int* pointCount, HC_POINT* points, int* radiusCount,
                                    float* radii, char* caps);
HC_EXPORT void HC_Show_Sphere(HC_KEY key, HC_POINT* center, float* radius, HC_VECTOR* axis,
                              HC_VECTOR* ortho);
HC_EXPORT void HC_Show_Grid(HC_KEY key, char* type, HC_POINT* origin, HC_POINT* reference1,
                            HC_POINT* reference2, int* count1, int* count2);

/* Shell details: face regions, levels of detail and per-vertex, per-edge and per-face
 * attributes, which HC_Show_Existence_By_Key answers for "vertex attributes", "edge attributes"
 * and "face attributes". */
HC_EXPORT void HC_Set_Face_Regions(HC_KEY key, int firstFace, int faceCount, int region);
HC_EXPORT void HC_Set_LOD_Type(HC_KEY key, int level, const char* type);
HC_EXPORT void HC_MSet_Vertex_Normals(HC_KEY key, int offset, int count, const HC_VECTOR* normals);
HC_EXPORT void HC_MSet_Edge_Visibilities(HC_KEY key, int offset, int count, const char* visible);
HC_EXPORT void HC_MSet_Face_Colors_By_Value(HC_KEY key, int offset, int count, const HC_POINT* rgb);

/* Edits in place: the item keeps its key. Offsets and counts select what is replaced: count
 * entries from offset are deleted and the given ones inserted there. */
HC_EXPORT void HC_Edit_Shell_Points(HC_KEY key, int offset, int deleteCount, int insertCount,
                                    const HC_POINT* points);
HC_EXPORT void HC_Edit_Shell_Faces(HC_KEY key, int offset, int deleteCount, int insertListLength,
                                   const int* insertList);
HC_EXPORT void HC_Edit_Polyline(HC_KEY key, int offset, int deleteCount, int insertCount,
                                const HC_POINT* points);
HC_EXPORT void HC_Edit_Polygon(HC_KEY key, int offset, int deleteCount, int insertCount,
                               const HC_POINT* points);
HC_EXPORT void HC_Edit_Circle(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                              const HC_POINT* third);
HC_EXPORT void HC_Edit_Circle_By_Radius(HC_KEY key, const HC_POINT* center, double radius,
                                        const HC_VECTOR* normal);
HC_EXPORT void HC_Edit_Circular_Arc(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                                    const HC_POINT* third);
HC_EXPORT void HC_Edit_Elliptical_Arc(HC_KEY key, const HC_POINT* center, const HC_POINT* major,
                                      const HC_POINT* minor, double start, double end);
HC_EXPORT void HC_Edit_Cutting_Plane(HC_KEY key, double a, double b, double c, double d);
HC_EXPORT void HC_Edit_Mesh(HC_KEY key, int rowOffset, int columnOffset, int rowCount,
                            int columnCount, const HC_POINT* points);
/* Deletes deleteCount characters at (row, column) of the text and inserts insert there; text
 * items have one row. */
HC_EXPORT void HC_Edit_Text(HC_KEY key, int row, int column, int deleteCount, const char* insert);

/* Bounding volumes, in the coordinates of the object itself: a segment's own modelling matrix
 * does not apply to its bounds, its subsegments' matrices do. The info text has 'c' at index 5
 * for a cuboid ("type=cuboid") and 's' for a sphere ("type=sphere"); it is empty when the key
 * has no bounds. */
HC_EXPORT void HC_Show_Bounding_Info_By_Key(HC_KEY key, char* info);
HC_EXPORT void HC_Show_Bounding_Cuboid_By_Key(HC_KEY key, HC_POINT* min, HC_POINT* max);
HC_EXPORT void HC_Show_Bounding_Sphere_By_Key(HC_KEY key, HC_POINT* center, float* radius);
HC_EXPORT bool HC_Compute_Circumcuboid(const char* segment, HC_POINT* min, HC_POINT* max);
/* Points times a 4x4 matrix (row vectors, translation in the last row). */
HC_EXPORT void HC_Compute_Transformed_Points(int count, const HC_POINT* points, const float* matrix,
                                             HC_POINT* result);

/* Attributes of the innermost open item: a geometry item opened with HC_Open_Geometry, else the
 * current segment. HC_Set_* replaces the attribute (option-string attributes merge option by
 * option into what is set), HC_UnSet_* removes it, HC_Show_* shows the local value (reporting
 * an attribute that is not set) and HC_PShow_Net_* the value in effect: keyCount 0 asks at the
 * open item; otherwise keys[0] is the segment asked about and each further key an include
 * through which the walk up continues (docs/formats.md). */
#define HC_OPTION_ATTRIBUTE_DECLARATIONS(Name)                                                     \
    HC_EXPORT void HC_Set_##Name(const char* options);                                             \
    HC_EXPORT void HC_UnSet_##Name(void);                                                          \
    HC_EXPORT void HC_Show_##Name(char* options);                                                  \
    HC_EXPORT void HC_PShow_Net_##Name(int keyCount, const HC_KEY* keys, char* options);

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
HC_EXPORT void HC_Show_User_Options_Length(int* length);
HC_EXPORT void HC_Show_Unicode_Options_Length(int* length);
HC_EXPORT void HC_Show_Color_Map_Length(int* length);

/* Geometry options belong to geometry items only; setting "" removes them. */
HC_EXPORT void HC_Set_Geometry_Options(const char* options);
HC_EXPORT void HC_Show_Geometry_Options(char* options);

/* System options are the database's own, not a segment's. */
HC_EXPORT void HC_Define_System_Options(const char* options);
HC_EXPORT void HC_Show_System_Options(char* options);

/* Numbers. */
HC_EXPORT void HC_Set_User_Value(int64_t value);
HC_EXPORT void HC_UnSet_User_Value(void);
HC_EXPORT void HC_Show_User_Value(int64_t* value);
HC_EXPORT void HC_PShow_Net_User_Value(int keyCount, const HC_KEY* keys, int64_t* value);
HC_EXPORT void HC_Set_Text_Spacing(double spacing);
HC_EXPORT void HC_UnSet_Text_Spacing(void);
HC_EXPORT void HC_Show_Text_Spacing(float* spacing);
HC_EXPORT void HC_PShow_Net_Text_Spacing(int keyCount, const HC_KEY* keys, float* spacing);
HC_EXPORT void HC_Set_Text_Path(double x, double y, double z);
HC_EXPORT void HC_UnSet_Text_Path(void);
HC_EXPORT void HC_Show_Text_Path(float* x, float* y, float* z);
HC_EXPORT void HC_PShow_Net_Text_Path(int keyCount, const HC_KEY* keys, float* x, float* y,
                                      float* z);
HC_EXPORT void HC_Set_Window(double left, double right, double bottom, double top);
HC_EXPORT void HC_UnSet_Window(void);
HC_EXPORT void HC_Show_Window(float* left, float* right, float* bottom, float* top);
HC_EXPORT void HC_PShow_Net_Window(int keyCount, const HC_KEY* keys, float* left, float* right,
                                   float* bottom, float* top);

/* 4x4 matrices, row by row (row vectors, translation in the last row). Net modelling matrices
 * multiply down the tree: the local matrix first, then each owner's. */
HC_EXPORT void HC_Set_Modelling_Matrix(const float* matrix);
HC_EXPORT void HC_UnSet_Modelling_Matrix(void);
HC_EXPORT void HC_Show_Modelling_Matrix(float* matrix);
HC_EXPORT void HC_PShow_Net_Modelling_Matrix(int keyCount, const HC_KEY* keys, float* matrix);
HC_EXPORT void HC_Set_Texture_Matrix(const float* matrix);
HC_EXPORT void HC_UnSet_Texture_Matrix(void);
HC_EXPORT void HC_Show_Texture_Matrix(float* matrix);
HC_EXPORT void HC_PShow_Net_Texture_Matrix(int keyCount, const HC_KEY* keys, float* matrix);

/* Camera. */
HC_EXPORT void HC_Set_Camera(const HC_POINT* position, const HC_POINT* target, const HC_VECTOR* up,
                             double width, double height, const char* projection);
HC_EXPORT void HC_Set_Camera_Near_Limit(double limit);
HC_EXPORT void HC_UnSet_Camera(void);
HC_EXPORT void HC_Show_Camera(HC_POINT* position, HC_POINT* target, HC_VECTOR* up, float* width,
                              float* height, char* projection);
HC_EXPORT void HC_Show_Camera_Near_Limit(float* limit);
HC_EXPORT void HC_PShow_Net_Camera(int keyCount, const HC_KEY* keys, HC_POINT* position,
                                   HC_POINT* target, HC_VECTOR* up, float* width, float* height,
                                   char* projection);
HC_EXPORT void HC_PShow_Net_Camera_Near_Limit(int keyCount, const HC_KEY* keys, float* limit);

/* Weights and marker size: a number, or a text with units (the variable form). A variable
 * weight shows as a negative plain weight; a plain weight shows its number as the text. */
HC_EXPORT void HC_Set_Edge_Weight(double weight);
HC_EXPORT void HC_Set_Variable_Edge_Weight(const char* weight);
HC_EXPORT void HC_UnSet_Edge_Weight(void);
HC_EXPORT void HC_Show_Edge_Weight(float* weight);
HC_EXPORT void HC_Show_Variable_Edge_Weight(char* weight);
HC_EXPORT void HC_PShow_Net_Edge_Weight(int keyCount, const HC_KEY* keys, float* weight);
HC_EXPORT void HC_PShow_Net_Var_Edge_Weight(int keyCount, const HC_KEY* keys, char* weight);
HC_EXPORT void HC_Set_Line_Weight(double weight);
HC_EXPORT void HC_Set_Variable_Line_Weight(const char* weight);
HC_EXPORT void HC_UnSet_Line_Weight(void);
HC_EXPORT void HC_Show_Line_Weight(float* weight);
HC_EXPORT void HC_Show_Variable_Line_Weight(char* weight);
HC_EXPORT void HC_PShow_Net_Line_Weight(int keyCount, const HC_KEY* keys, float* weight);
HC_EXPORT void HC_PShow_Net_Var_Line_Weight(int keyCount, const HC_KEY* keys, char* weight);
HC_EXPORT void HC_Set_Marker_Size(double size);
HC_EXPORT void HC_Set_Variable_Marker_Size(const char* size);
HC_EXPORT void HC_UnSet_Marker_Size(void);
HC_EXPORT void HC_Show_Marker_Size(float* size);
HC_EXPORT void HC_Show_Variable_Marker_Size(char* size);
HC_EXPORT void HC_PShow_Net_Marker_Size(int keyCount, const HC_KEY* keys, float* size);
HC_EXPORT void HC_PShow_Net_Var_Marker_Size(int keyCount, const HC_KEY* keys, char* size);

/* Clip region: one polygon in the segment's coordinates, with an option text. */
HC_EXPORT void HC_Set_Polygonal_Clip_Region(int count, const HC_POINT* points, const char* options);
HC_EXPORT void HC_UnSet_Clip_Region(void);
HC_EXPORT void HC_Show_Clip_Region_Size(int* loops, int* total, char* options);
HC_EXPORT void HC_Show_Clip_Region(int* loops, int* loopCounts, HC_POINT* points, char* options);
HC_EXPORT void HC_PShow_Net_Clip_Region_Size(int keyCount, const HC_KEY* keys, int* loops,
                                             int* total, char* options);
HC_EXPORT void HC_PShow_Net_Clip_Region(int keyCount, const HC_KEY* keys, int* loops,
                                        int* loopCounts, HC_POINT* points, char* options);

/* User indices (an index with a pointer-sized value) and user data (an index with bytes). */
HC_EXPORT void HC_Set_User_Index(long index, const void* value);
HC_EXPORT void HC_Show_User_Index_Count(int* count);
HC_EXPORT void HC_Show_User_Indices(int* count, long* indices, void** values);
HC_EXPORT void HC_Show_One_User_Index(long index, void** value);
HC_EXPORT void HC_UnSet_One_User_Index(long index);
HC_EXPORT void HC_Set_User_Data(long index, const void* data, long size);
HC_EXPORT void HC_Show_User_Data_Count(int* count);
HC_EXPORT void HC_Show_User_Data_Indices(int* count, long* indices);
HC_EXPORT void HC_Show_One_User_Data(long index, void* data, long size, long* actualSize);
HC_EXPORT void HC_UnSet_One_User_Data(long index);

/* Conditional actions: one action of each type, with its options and its condition. The texts
 * may carry the parentheses that a shown action list puts around them. */
HC_EXPORT void HC_Set_Conditional_Action(const char* options, const char* condition);
HC_EXPORT void HC_UnSet_Conditional_Actions(void);
HC_EXPORT void HC_Show_Cond_Action_Types(char* types);
HC_EXPORT void HC_Show_One_Conditional_Action(const char* type, char* options, char* condition);

/* Definitions of the current segment: local textures, glyphs, line styles, shaders, fonts (and
 * the named styles above). Each search lists the current segment's own definitions. */
HC_EXPORT void HC_Define_Local_Texture(const char* name, const char* definition);
HC_EXPORT void HC_UnDefine_Local_Texture(const char* name);
HC_EXPORT void HC_Show_Local_Texture(const char* name, char* definition);
HC_EXPORT void HC_Begin_Local_Texture_Search(void);
HC_EXPORT void HC_Begin_Texture_Search(void);
HC_EXPORT bool HC_Find_Texture(char* name);
HC_EXPORT void HC_End_Texture_Search(void);
HC_EXPORT void HC_Define_Glyph(const char* name, int size, const char* data);
HC_EXPORT void HC_UnDefine_Glyph(const char* name);
HC_EXPORT void HC_Show_Glyph_Size(const char* name, int* size);
HC_EXPORT void HC_Show_Glyph(const char* name, char* data);
HC_EXPORT void HC_Begin_Glyph_Search(void);
HC_EXPORT bool HC_Find_Glyph(char* name);
HC_EXPORT void HC_End_Glyph_Search(void);
HC_EXPORT void HC_Define_Line_Style(const char* name, const char* definition);
HC_EXPORT void HC_UnDefine_Line_Style(const char* name);
HC_EXPORT void HC_Show_Line_Style(const char* name, char* definition);
HC_EXPORT void HC_Begin_Line_Style_Search(void);
HC_EXPORT bool HC_Find_Line_Style(char* name);
HC_EXPORT void HC_End_Line_Style_Search(void);
HC_EXPORT void HC_Define_Shader(const char* name, const char* options, const char* source);
HC_EXPORT void HC_UnDefine_Shader(const char* name);
HC_EXPORT void HC_Show_Shader(const char* name, char* options, char* source);
HC_EXPORT void HC_Begin_Shader_Search(void);
HC_EXPORT bool HC_Find_Shader(char* name);
HC_EXPORT void HC_End_Shader_Search(void);
/* Fonts: the built-in ones, then those defined in the current segment. */
HC_EXPORT void HC_Define_Font(const char* name, const char* options);
HC_EXPORT void HC_UnDefine_Font(const char* name);
HC_EXPORT void HC_Begin_Font_Search(const char* display, const char* filter);
HC_EXPORT bool HC_Find_Font(char* name);
HC_EXPORT void HC_End_Font_Search(void);

/* Text helpers. */
HC_EXPORT void HC_Parse_String(const char* text, const char* delimiter, int offset, char* field);

/* Metafiles: the text format of docs/formats.md. Write saves the named segment with everything
 * below it; read loads a file's contents into the named segment (created if needed). */
HC_EXPORT void HC_Write_Metafile(const char* segment, const char* file, const char* options);
HC_EXPORT HC_KEY HC_Read_Metafile(const char* file, const char* segment, const char* options);

#ifdef __cplusplus
}
#endif

#endif
