/* Undo and redo of scene edits.
 *
 * Edits are undone a step at a time. A caller opens a step with a name ("Delete", "Paste"),
 * makes its HC_ calls, and closes it; the database records, while a step is open, what each
 * change needs to be taken back (the objects a deletion removes, an attribute's value before
 * its first change in the step), not a copy of the scene, so a step's memory grows with what it
 * changed. Steps nest: an inner step folds into the outermost one, and a step that changed
 * nothing is dropped.
 *
 * Undoing a step puts the scene back as it was before it, with the very keys it had (a deleted
 * subtree comes back with its keys, names, order, attributes, geometry, includes, styles, and
 * the references from elsewhere that pointed into it); redoing it puts the scene back as it was
 * after it. Both are recorded in the change journal like any change. A step closed after an undo
 * forgets the steps that could be redone.
 *
 * Changes made while no step is open are not recorded, so a host that builds a large scene pays
 * nothing for undo. Such a change makes the recorded steps forget themselves (the undo and redo
 * lists are emptied): their inverses were made for the scene as it was. Code that changes the
 * scene between undoable edits should do so in a step of its own. HC_Reset_System empties both
 * lists and closes any open step. */
#ifndef OBSIDRA_HC_UNDO_H
#define OBSIDRA_HC_UNDO_H

#include <obsidra/hc.h>
#include <obsidra/hc_export.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How many steps are kept when no limit is set. */
#define HC_UNDO_DEFAULT_LIMIT 100

/* Opens a step; its name is what "Undo" and "Redo" menu entries name (cut at HC_TEXT_MAX). The
 * name of a step opened inside another is ignored. */
HC_EXPORT void HC_Begin_Undo_Step(const char* name);
/* Closes the innermost open step; closing the outermost one keeps it (unless it changed nothing).
 * Closing a step that is not open is reported. */
HC_EXPORT void HC_End_Undo_Step(void);

/* Undoes the latest kept step, or redoes the latest undone one; returns false (and changes
 * nothing) when there is none. Reported and refused while a step is open. */
HC_EXPORT bool HC_Undo(void);
HC_EXPORT bool HC_Redo(void);

/* Whether a step can be undone (redone); its name is written to name, which may be null. */
HC_EXPORT bool HC_Show_Undo_Step(char* name);
HC_EXPORT bool HC_Show_Redo_Step(char* name);

/* The most steps kept (the oldest ones are forgotten first): a bound on the memory undo holds.
 * 0 turns recording off: steps still nest but record nothing. A negative limit is reported. */
HC_EXPORT void HC_Set_Undo_Limit(int steps);
HC_EXPORT int HC_Show_Undo_Limit(void);

#ifdef __cplusplus
}
#endif

#endif
