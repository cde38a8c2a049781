#pragma once

// The scene database is one shared library that a host and the module both link, so that a
// process holds one scene. It is built with hidden visibility: only what carries HC_EXPORT is
// in its dynamic symbol table.
#define HC_EXPORT __attribute__((visibility("default")))
