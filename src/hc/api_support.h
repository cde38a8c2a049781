#pragma once

// Shared by the files that implement the HC_ functions.

#include <string>
#include <string_view>

#include <obsidra/hc.h>

#include "hc/database.h"
#include "hc/error.h"
#include "hc/session.h"
#include "hc/text.h"

namespace hc {

// Publishes what one HC_ call changed to the journal's listeners once the call is over: nested
// calls (a call made by the database on the caller's behalf) wait for the outermost one.
class ChangeScope {
public:
    ChangeScope() { ++s_depth; }
    ~ChangeScope() {
        if (--s_depth == 0 && Journal::s_unpublished) PublishChanges();
    }
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;

private:
    static void PublishChanges();
    static inline int s_depth = 0;
};

} // namespace hc

// Names the function for the error reports of one call, and publishes its changes after it
// (the error scope is closed by then: a listener's own calls are named for themselves).
#define HC_API(name)                                                                               \
    ::hc::ChangeScope changeScope;                                                                 \
    ::hc::ApiScope apiScope(#name)

namespace hc::api {

inline std::string_view Text(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

template <typename T>
void Put(T* out, T value) {
    if (out) *out = value;
}

inline HC_POINT Point(double x, double y, double z) {
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

// The live object of a key, reported when the key is dead.
inline Object* ObjectOf(HC_KEY key) {
    return Current().Get(CurrentSession().Require(key));
}

// A geometry item of one kind, reported when the key names something else.
inline Geometry* GeometryOf(HC_KEY key, ContentKind type) {
    Object* object = ObjectOf(key);
    if (object && object->kind == ObjectKind::Geometry && object->type == type)
        return static_cast<Geometry*>(object);
    if (object) ReportError("key " + KeyText(key) + " is not a " + std::string(TypeWord(type)));
    return nullptr;
}

inline Slot CurrentSegmentOrReport() {
    Slot segment = CurrentSession().CurrentSegment();
    if (segment == kNoSlot) ReportError("the open segment no longer exists");
    return segment;
}

inline HC_KEY KeyOrZero(Slot slot) {
    return slot == kNoSlot ? 0 : Current().KeyOf(slot);
}

} // namespace hc::api
