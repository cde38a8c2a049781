/* The scene database's check of its own consistency, for the tests and soak runs of programs
 * that link the shared library: every live key resolves to its object and back, the tables of
 * siblings, kinds and names agree with the objects, no include, style or reference aims at a
 * dead object, renumbered keys are unique in their scope, and every cached bound equals a fresh
 * computation. It costs a walk over the whole database. */
#ifndef OBSIDRA_HC_CHECK_H
#define OBSIDRA_HC_CHECK_H

#include <obsidra/hc_export.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Returns how many faults were found (0: the database is sound) and, when report is not null,
 * writes them one a line, cut to capacity bytes with the terminating NUL. */
HC_EXPORT int HC_Check_Database(char* report, int capacity);

#ifdef __cplusplus
}
#endif

#endif
