// The HC_ functions of the change journal, and the scope that publishes each call's changes.
#include <obsidra/hc_journal.h>

#include "hc/api_support.h"

using namespace hc;

namespace hc {

void ChangeScope::PublishChanges() {
    Journal::s_unpublished = false;
    Current().Changes().Publish();
}

} // namespace hc

extern "C" {

HC_REVISION HC_Show_Revision(void) {
    return Current().Changes().Revision();
}

int HC_Show_Changes_Since(HC_REVISION since, HC_CHANGE* changes, int capacity) {
    HC_API(HC_Show_Changes_Since);
    return Current().Changes().Since(since, changes, capacity);
}

void HC_Define_Change_Listener(HC_CHANGE_LISTENER listener, void* user) {
    HC_API(HC_Define_Change_Listener);
    Current().Changes().AddListener(listener, user);
}

void HC_UnDefine_Change_Listener(HC_CHANGE_LISTENER listener, void* user) {
    HC_API(HC_UnDefine_Change_Listener);
    Current().Changes().RemoveListener(listener, user);
}

} // extern "C"
