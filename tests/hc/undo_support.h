#pragma once

// What the undo tests compare: the scene as one text.

#include <cstdio>
#include <string>

#include <obsidra/hc.h>
#include <obsidra/hc_undo.h>

#include "hc/database.h"
#include "hc/metafile.h"
#include "hc/text.h"

// The scene's metafile text, then every object in contents order with its key and original key
// (keys the text does not show), the number of live objects (what undo took out must not stay)
// and, with bounds, those of "/" (bounds cached before an undo must not survive it; with include
// cycles they depend on the order they were computed in).
inline std::string SceneText(bool bounds = true) {
    hc::Database& db = hc::Current();
    std::string text = hc::MetafileText(db, db.Root());
    for (const hc::Found& found :
         db.Contents(db.Root(), hc::Filter::ParseOrReport("everything"), true, false))
        text += std::string(hc::TypeWord(found.type)) + " " + hc::KeyText(db.KeyOf(found.slot)) +
                " " + hc::KeyText(hc::OriginalKey(found.slot)) + "\n";
    text += "live " + std::to_string(db.LiveObjects());
    HC_POINT min, max;
    if (bounds && HC_Compute_Circumcuboid("/", &min, &max))
        for (float v : {min.x, min.y, min.z, max.x, max.y, max.z})
            text += " " + std::to_string(v);
    return text;
}

// Runs an edit as one named step.
template <typename Edit>
void InStep(const char* name, Edit&& edit) {
    HC_Begin_Undo_Step(name);
    edit();
    HC_End_Undo_Step();
}
