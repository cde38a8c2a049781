/* The scene database's change journal.
 *
 * Every change made through the C interface is recorded: the database counts revisions, one per
 * change, and keeps the last HC_CHANGE_HISTORY changes. A host asks what changed since a revision
 * it saw, or defines a listener that hears, after each HC_ call that changed something, what that
 * call changed. A call that changes nothing (a failed call, a dead key, unsetting what is not
 * set, deleting nothing) records nothing; setting an attribute is recorded even when the value
 * it sets is the one the attribute had. The journal says what changed, not how: a change names
 * the object and the segment it lies in, by their original keys (HC_Show_Original_Key), which
 * stay valid whatever the object is renumbered to. A deleted segment is reported once, for
 * itself, not for everything that went with it. */
#ifndef OBSIDRA_HC_JOURNAL_H
#define OBSIDRA_HC_JOURNAL_H

#include <obsidra/hc.h>
#include <obsidra/hc_export.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int64_t HC_REVISION;

/* How many changes the journal remembers. */
#define HC_CHANGE_HISTORY 65536

typedef enum {
    HC_CHANGE_SEGMENT_CREATED = 1, /* a segment was made (also by a copy or a metafile) */
    HC_CHANGE_DELETED,             /* an object was deleted, with everything below it */
    HC_CHANGE_MOVED,               /* a segment was renamed, or an object moved to another owner */
    HC_CHANGE_ATTRIBUTES,          /* an attribute of the object was set or unset */
    HC_CHANGE_GEOMETRY,            /* a geometry item was inserted or edited */
    HC_CHANGE_DEFINITIONS,         /* the segment's definitions (textures, styles...) changed */
    HC_CHANGE_LINKS, /* an include, style, named style or reference was made or aimed */
    HC_CHANGE_KEYS   /* the object was renumbered */
} HC_CHANGE_KIND;

typedef struct {
    HC_REVISION revision;
    HC_KEY key;     /* the object changed (original key) */
    HC_KEY segment; /* the segment that holds it (original key); 0 for "/" itself */
    HC_CHANGE_KIND kind;
} HC_CHANGE;

/* The revision the database is at: the number of the latest change. */
HC_EXPORT HC_REVISION HC_Show_Revision(void);

/* The changes made after a revision, oldest first: up to capacity of them are copied into
 * changes (which may be null when capacity is 0), and their number is returned. Returns -1 when
 * the journal no longer holds them all (the revision is older than its history, or the system
 * was reset since): the caller must then refresh everything. */
HC_EXPORT int HC_Show_Changes_Since(HC_REVISION since, HC_CHANGE* changes, int capacity);

/* A listener hears, after each HC_ call that changed something, the changes that call made
 * (count >= 1), or count -1 and no changes when they were more than the history holds or the
 * system was reset: then it must refresh everything. It may call HC_ functions; what they change
 * it hears afterwards, in a call of its own. */
typedef void (*HC_CHANGE_LISTENER)(const HC_CHANGE* changes, int count, void* user);

/* Listeners stay defined across HC_Reset_System. Defining one twice (same function and user)
 * defines it once; undefining one that is not defined does nothing. */
HC_EXPORT void HC_Define_Change_Listener(HC_CHANGE_LISTENER listener, void* user);
HC_EXPORT void HC_UnDefine_Change_Listener(HC_CHANGE_LISTENER listener, void* user);

#ifdef __cplusplus
}
#endif

#endif
