// The HC_ functions of undo and redo.
#include <obsidra/hc_undo.h>

#include "hc/api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

bool ShowStep(const std::string* step, char* name) {
    if (name) CopyOut(step ? *step : std::string(), name);
    return step != nullptr;
}

bool RefusedInStep() {
    if (Current().Undo().Depth() == 0) return false;
    ReportError("an undo step is open");
    return true;
}

} // namespace

extern "C" {

void HC_Begin_Undo_Step(const char* name) {
    HC_API(HC_Begin_Undo_Step);
    Current().Undo().Begin(Text(name));
}

void HC_End_Undo_Step(void) {
    HC_API(HC_End_Undo_Step);
    if (!Current().Undo().End()) ReportError("no undo step is open");
}

bool HC_Undo(void) {
    HC_API(HC_Undo);
    return !RefusedInStep() && Current().Undo().Undo();
}

bool HC_Redo(void) {
    HC_API(HC_Redo);
    return !RefusedInStep() && Current().Undo().Redo();
}

bool HC_Show_Undo_Step(char* name) {
    HC_API(HC_Show_Undo_Step);
    return ShowStep(Current().Undo().UndoName(), name);
}

bool HC_Show_Redo_Step(char* name) {
    HC_API(HC_Show_Redo_Step);
    return ShowStep(Current().Undo().RedoName(), name);
}

void HC_Set_Undo_Limit(int steps) {
    HC_API(HC_Set_Undo_Limit);
    if (steps < 0) {
        ReportError("the undo limit " + std::to_string(steps) + " is negative");
        return;
    }
    Current().Undo().SetLimit(size_t(steps));
}

int HC_Show_Undo_Limit(void) {
    HC_API(HC_Show_Undo_Limit);
    return static_cast<int>(Current().Undo().Limit());
}

} // extern "C"
