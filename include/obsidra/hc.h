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

/* Geometry. */
HC_KEY HC_Insert_Shell(int pointCount, const HC_POINT* points, int faceListLength,
                       const int* faceList);
HC_KEY HC_Insert_Polyline(int count, const HC_POINT* points);
HC_KEY HC_Insert_Line(double xa, double ya, double za, double xb, double yb, double zb);
HC_KEY HC_Insert_Marker(double x, double y, double z);
HC_KEY HC_Insert_Text(double x, double y, double z, const char* text);
void HC_Show_Shell_Size(HC_KEY key, int* pointCount, int* faceListLength);
void HC_Show_Shell(HC_KEY key, int* pointCount, HC_POINT* points, int* faceListLength,
                   int* faceList);
void HC_Show_Polyline_Count(HC_KEY key, int* count);
void HC_Show_Polyline(HC_KEY key, int* count, HC_POINT* points);
void HC_Show_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb, float* zb);
void HC_Show_Marker(HC_KEY key, float* x, float* y, float* z);
void HC_Show_Text(HC_KEY key, float* x, float* y, float* z, char* text);

/* Option-string attributes of the open segment or geometry item (see docs/formats.md). Setting
 * merges option by option into what is set; a "Show" of an unset attribute reports an error. */
void HC_Set_Color(const char* options);
void HC_Set_Visibility(const char* options);
void HC_Set_Heuristics(const char* options);
void HC_Set_Rendering_Options(const char* options);
void HC_Set_Selectability(const char* options);
void HC_Set_User_Options(const char* options);
void HC_UnSet_Color(void);
void HC_UnSet_Visibility(void);
void HC_UnSet_Heuristics(void);
void HC_UnSet_Rendering_Options(void);
void HC_UnSet_Selectability(void);
void HC_UnSet_User_Options(void);
void HC_Show_Color(char* options);
void HC_Show_Visibility(char* options);
void HC_Show_Heuristics(char* options);
void HC_Show_Rendering_Options(char* options);
void HC_Show_Selectability(char* options);
void HC_Show_User_Options(char* options);

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
