/* Questions the C interface answers too slowly for a scene of a million segments, answered
 * from the scene database's own lists.
 *
 * A contents search copies every item it will return when it begins, so listing one page of a
 * segment with a million children, or learning that a leaf segment holds nothing a search
 * looks for, would cost a whole copy each time. These functions read the database in place:
 * none changes it, none reports an error (a key that names no segment gets the empty answer),
 * and each costs what its answer costs. They work on the same process-wide database as the
 * functions of hc.h. docs/architecture.md tells where they are used. */
#ifndef OBSIDRA_HC_FASTPATH_H
#define OBSIDRA_HC_FASTPATH_H

#include <stddef.h>
#include <stdint.h>

#include <obsidra/hc.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How many subsegments the segment has; 0 for a key that names no segment. */
HC_EXPORT int HC_Fast_Subsegment_Count(HC_KEY segment);

/* The keys of subsegments first to last (0-based, both included), in the order and with the
 * keys a "segments" contents search gives them, written to keys, which has room for
 * last - first + 1; returns how many were written, fewer when the segment has fewer. The list
 * is walked from whichever end of it is nearer. */
HC_EXPORT int HC_Fast_Subsegment_Keys(HC_KEY segment, int first, int last, HC_KEY* keys);

/* The 1-based place of a subsegment in its owner's listing; 0 when key is no subsegment of
 * segment. */
HC_EXPORT int HC_Fast_Subsegment_Position(HC_KEY segment, HC_KEY key);

/* A segment's own name as the last level of its pathname shows it: "/" for the root, "" for a
 * nameless segment (whose pathname shows "@" and its key instead), NULL for a key that names no
 * segment; its length in bytes goes to length unless that is NULL. The text is the database's
 * own: it stays valid until the segment is renamed or deleted, and is neither copied nor
 * measured, since a name search asks it of every segment it passes. */
HC_EXPORT const char* HC_Fast_Segment_Name(HC_KEY segment, size_t* length);

/* What a segment holds, by list, as a sum of these bits; 0 for a key that names no segment. */
enum {
    HC_HOLDS_SUBSEGMENTS = 1,
    HC_HOLDS_LINKS = 2, /* includes, styles, named styles, references */
    HC_HOLDS_GEOMETRY = 4,
    HC_HOLDS_DEFINITIONS = 8,
    HC_HOLDS_STATIC_MODEL = 16
};
HC_EXPORT unsigned HC_Fast_Segment_Holds(HC_KEY segment);

/* One item of a contents search with what a walk asks of it next, in one call. */
typedef struct {
    HC_KEY key;
    /* The type word HC_Find_Contents gives ("segment", "shell"), the database's own text. */
    const char* type;
    size_t type_length;
    /* For a segment, what HC_Fast_Segment_Holds and HC_Fast_Segment_Name answer; 0 and NULL
     * for any other item. */
    unsigned holds;
    const char* name;
    size_t name_length;
} HC_FAST_CONTENTS_ITEM;

/* The next item of the innermost contents search, as HC_Find_Contents finds it; false at the
 * end, with item unchanged. A search walking a million segments would otherwise ask three
 * questions of each. */
HC_EXPORT bool HC_Fast_Find_Contents(HC_FAST_CONTENTS_ITEM* item);

/* A census of the geometry at and below a key. */
typedef enum {
    HC_CENSUS_SHELL,
    HC_CENSUS_MESH,
    HC_CENSUS_POLYLINE,
    HC_CENSUS_LINE,
    HC_CENSUS_POLYGON,
    HC_CENSUS_CIRCLE,
    HC_CENSUS_CIRCULAR_ARC,
    HC_CENSUS_CIRCULAR_CHORD,
    HC_CENSUS_CIRCULAR_WEDGE,
    HC_CENSUS_ELLIPSE,
    HC_CENSUS_ELLIPTICAL_ARC,
    HC_CENSUS_IMAGE,
    HC_CENSUS_MARKER,
    HC_CENSUS_LOCAL_LIGHT,
    HC_CENSUS_DISTANT_LIGHT,
    HC_CENSUS_SPOT_LIGHT,
    HC_CENSUS_CUTTING_PLANE,
    HC_CENSUS_POLYCYLINDER,
    HC_CENSUS_CYLINDER,
    HC_CENSUS_SPHERE,
    HC_CENSUS_NURBS_CURVE,
    HC_CENSUS_NURBS_SURFACE,
    HC_CENSUS_TEXT,
    HC_CENSUS_INFINITE_LINE,
    HC_CENSUS_INFINITE_RAY,
    HC_CENSUS_GRID,
    HC_CENSUS_KINDS
} HC_CENSUS_KIND;
typedef struct {
    /* Items of each kind, by HC_CENSUS_KIND. */
    uint32_t counts[HC_CENSUS_KINDS];
    /* Faces of shells (holes are not faces), meshes (two triangles a quad) and polygons. */
    uint32_t faces;
    /* Of those faces, the ones with three vertices. */
    uint32_t triangles;
    /* Vertices of shells, meshes and polygons. */
    uint32_t vertices;
} HC_CENSUS;

/* Counts what the key holds into census (emptied first): one geometry item, or a segment's
 * subtree, where included segments count each time they are included and an include cycle is
 * walked once around. */
HC_EXPORT void HC_Fast_Census(HC_KEY key, HC_CENSUS* census);

/* Reads a metafile (docs/formats.md) into a segment given by key. Returns whether it was read;
 * otherwise nothing was loaded and error (HC_TEXT_MAX bytes) says why, "cannot read FILE" or
 * "FILE: " and the mistake with its line and column. Nothing goes to the error handler: the
 * caller that asks this way reports the failure itself. */
HC_EXPORT bool HC_Fast_Read_Metafile(const char* file, HC_KEY segment, char* error);

/* Process-wide services by name: one pointer per name, for what the static layers must share
 * although each shared object in the process carries its own copy of them (the registry of
 * input handlers, which a host fills and the module reads). The first caller that finds no
 * service defines its own; every later caller, in any library, shows that one. Defining null
 * forgets the name. Resetting the scene keeps them: they belong to the process, not to the
 * scene. The database only keeps the pointer; what it points at stays its definer's, and
 * must outlive every caller that may show it. */
HC_EXPORT void HC_Fast_Define_Service(const char* name, void* service);
/* The service defined under that name, or NULL. */
HC_EXPORT void* HC_Fast_Show_Service(const char* name);

#ifdef __cplusplus
}
#endif

#endif
