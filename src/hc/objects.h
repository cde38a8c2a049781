#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

#include "hc/attribute.h"
#include "hc/box.h"
#include "hc/content_kind.h"

#if defined(__SANITIZE_ADDRESS__)
#define OBSIDRA_POOLED_OBJECTS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OBSIDRA_POOLED_OBJECTS 0
#endif
#endif
#ifndef OBSIDRA_POOLED_OBJECTS
#define OBSIDRA_POOLED_OBJECTS 1
#endif

namespace hc {

// An object's place in the key table. Its original key is derived from it (OriginalKey), and a
// slot is never handed out twice, so a dead key stays dead.
using Slot = uint32_t;
constexpr Slot kNoSlot = UINT32_MAX;

constexpr HC_KEY OriginalKey(Slot slot) {
    return -static_cast<HC_KEY>(slot) - 2;
}

enum class ObjectKind : uint8_t { Segment, Geometry, Link, StaticModel };

// A doubly linked list threaded through the database's sibling table (Database::Next and Prev):
// O(1) append and unlink, creation order kept.
struct ChildList {
    Slot first = kNoSlot;
    Slot last = kNoSlot;
    uint32_t count = 0;
};

// The objects carry no virtual table (a million segments would pay for it): ObjectDeleter
// destroys each as its own kind.
struct Object {
    Object(ObjectKind kind, ContentKind type) : kind(kind), type(type) {}

    ObjectKind kind;
    ContentKind type;
    bool renumbered = false;
    bool boundsStale = true; // segments: whether bounds must be computed again
    Slot slot = kNoSlot;
    Slot owner = kNoSlot;
    std::unique_ptr<AttributeSet> attributes;
};

// A named definition held by a segment: a texture, glyph, line style, named style, shader or
// font.
struct Definition {
    std::string name;
    std::string text;       // the definition; a shader's options; a glyph's bytes
    std::string source;     // a shader's source
    Slot segment = kNoSlot; // a named style's source segment
};

// Definitions a segment holds, by kind; few segments have any, so they live apart.
struct Definitions {
    std::vector<Definition>
        lists[static_cast<size_t>(kLastDefinition) - static_cast<size_t>(kFirstDefinition) + 1];

    std::vector<Definition>& Of(ContentKind kind) {
        return lists[static_cast<size_t>(kind) - static_cast<size_t>(kFirstDefinition)];
    }
};

struct Segment : Object {
    Segment() : Object(ObjectKind::Segment, ContentKind::Segment) {}

    // The definitions of one kind (an IsDefinition kind).
    const std::vector<Definition>& DefinitionsOf(ContentKind kind) const {
        static const std::vector<Definition> kNone;
        return definitions ? definitions->Of(kind) : kNone;
    }
    std::vector<Definition>& MutableDefinitionsOf(ContentKind kind) {
        if (!definitions) definitions = std::make_unique<Definitions>();
        return definitions->Of(kind);
    }

    std::string name; // empty for a nameless segment
    ChildList segments;
    ChildList links; // includes, styles, named styles and references
    ChildList geometry;
    Slot staticModel = kNoSlot;
    std::unique_ptr<Definitions> definitions;
    Box bounds; // in the segment's own coordinates, while boundsStale is false
};

// A shell's face regions, face colours, edge visibilities, vertex normals and levels of detail.
// Each list is empty until something of its kind is set, then holds one entry per face, edge
// (docs/formats.md) or point; few shells have any, so they live apart.
struct ShellDetails {
    std::vector<int> regions;
    std::vector<std::optional<HC_POINT>> faceColors;
    std::vector<int8_t> edgeVisibilities; // -1 not set, 0 off, 1 on
    std::vector<std::optional<HC_VECTOR>> vertexNormals;
    std::vector<std::string> lodTypes; // by level; empty: not set
};

// What only some geometry items have: a text (text strings, image formats, options), further
// numbers (radii, knots, weights, angles), references attached while the item was open, a
// shell's details.
struct GeometryExtras {
    std::string text;
    std::vector<float> values;
    std::vector<Slot> references;
    std::unique_ptr<ShellDetails> shell;
};

// Geometry data in one shape for every kind: points, integers (face lists, counts) and, rarely
// present, the extras.
struct Geometry : Object {
    explicit Geometry(ContentKind type) : Object(ObjectKind::Geometry, type) {}

    const std::string& Text() const {
        static const std::string kNone;
        return extras ? extras->text : kNone;
    }
    const std::vector<float>& Values() const {
        static const std::vector<float> kNone;
        return extras ? extras->values : kNone;
    }
    const std::vector<Slot>& References() const {
        static const std::vector<Slot> kNone;
        return extras ? extras->references : kNone;
    }
    GeometryExtras& Extras() {
        if (!extras) extras = std::make_unique<GeometryExtras>();
        return *extras;
    }

    std::vector<HC_POINT> points;
    std::vector<int> ints;
    std::unique_ptr<GeometryExtras> extras;
};

// An include, style, named style or reference item.
struct Link : Object {
    explicit Link(ContentKind type) : Object(ObjectKind::Link, type) {}

    Slot target = kNoSlot; // unused by named styles, which resolve their name when asked
    std::string condition;
    std::string filter;    // references
    std::string styleName; // named styles
};

struct StaticModel : Object {
    StaticModel() : Object(ObjectKind::StaticModel, ContentKind::StaticModel) {}
};

// Objects of one kind come from blocks of their own, so that a walk along a list or down a tree
// finds them close together, in the order they were made, instead of spread between every
// shell's points and face lists; freed places are used again. The blocks live as long as the
// process. Sanitizer builds take each object from the heap, so that a use after free is caught.
template <typename T>
class ObjectPool {
public:
    static void* Take() {
#if OBSIDRA_POOLED_OBJECTS
        Pool& pool = Instance();
        if (pool.free) {
            void* place = pool.free;
            pool.free = *static_cast<void**>(place);
            return place;
        }
        if (pool.left == 0) {
            pool.blocks.emplace_back(new Place[kBlockObjects]);
            pool.next = pool.blocks.back().get();
            pool.left = kBlockObjects;
        }
        --pool.left;
        return pool.next++;
#else
        return ::operator new(sizeof(T));
#endif
    }
    static void Give(void* place) {
#if OBSIDRA_POOLED_OBJECTS
        Pool& pool = Instance();
        *static_cast<void**>(place) = pool.free;
        pool.free = place;
#else
        ::operator delete(place);
#endif
    }

private:
    static constexpr size_t kBlockObjects = 4096;
    struct Place {
        alignas(T) unsigned char bytes[sizeof(T)];
    };
    struct Pool {
        std::vector<std::unique_ptr<Place[]>> blocks;
        Place* next = nullptr;
        size_t left = 0;
        void* free = nullptr;
    };
    // Never destroyed: the database behind the C interface gives its objects back at exit, after
    // function-local statics made later than it are gone.
    static Pool& Instance() {
        static Pool* pool = new Pool;
        return *pool;
    }
};

// An object's own modelling matrix (16 numbers, row vectors), or null when it has none.
inline const float* LocalMatrix(const Object& object) {
    const Attribute* matrix =
        object.attributes ? object.attributes->Find(ContentKind::ModellingMatrix) : nullptr;
    return matrix && matrix->numbers.size() == 16 ? matrix->numbers.data() : nullptr;
}

template <typename T>
void DestroyObject(Object* object) {
    static_cast<T*>(object)->~T();
    ObjectPool<T>::Give(object);
}

struct ObjectDeleter {
    void operator()(Object* object) const {
        switch (object->kind) {
        case ObjectKind::Segment:
            return DestroyObject<Segment>(object);
        case ObjectKind::Geometry:
            return DestroyObject<Geometry>(object);
        case ObjectKind::Link:
            return DestroyObject<Link>(object);
        case ObjectKind::StaticModel:
            return DestroyObject<StaticModel>(object);
        }
    }
};

using ObjectPtr = std::unique_ptr<Object, ObjectDeleter>;

template <typename T, typename... Args>
ObjectPtr NewObject(Args&&... args) {
    return ObjectPtr(new (ObjectPool<T>::Take()) T(std::forward<Args>(args)...));
}

} // namespace hc
