// The passes of an optimisation that work on shells: duplicates, merging, instancing.
#include <cstring>
#include <functional>
#include <string_view>
#include <unordered_map>

#include "hc/geometry_data.h"
#include "hc/optimize_passes.h"

namespace hc {

namespace {

const Geometry& ShellAt(const Database& db, Slot slot) {
    return static_cast<const Geometry&>(*db.Get(slot));
}

bool SamePoints(const std::vector<HC_POINT>& a, const std::vector<HC_POINT>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(HC_POINT)) == 0);
}

bool SameDetails(const ShellDetails* a, const ShellDetails* b) {
    if (!a || !b) return a == b;
    auto sameColors = [](const auto& x, const auto& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), [](const auto& p, const auto& q) {
            return p.has_value() == q.has_value() &&
                   (!p || std::memcmp(&*p, &*q, sizeof(HC_POINT)) == 0);
        });
    };
    return a->regions == b->regions && a->edgeVisibilities == b->edgeVisibilities &&
           a->lodTypes == b->lodTypes && sameColors(a->faceColors, b->faceColors) &&
           sameColors(a->vertexNormals, b->vertexNormals);
}

bool SameShell(const Geometry& a, const Geometry& b) {
    return a.ints == b.ints && SamePoints(a.points, b.points) &&
           SameDetails(DetailsOf(a), DetailsOf(b));
}

size_t ShellHash(const Geometry& shell) {
    std::string_view points(reinterpret_cast<const char*>(shell.points.data()),
                            shell.points.size() * sizeof(HC_POINT));
    std::string_view faces(reinterpret_cast<const char*>(shell.ints.data()),
                           shell.ints.size() * sizeof(int));
    return std::hash<std::string_view>()(points) * 31 + std::hash<std::string_view>()(faces);
}

// Appends one list of a shell's details to the merged shell's, or count unset entries when the
// shell has none of that list.
template <typename T>
void AppendDetail(std::vector<T>& to, const std::vector<T>* from, size_t count, const T& unset) {
    if (from && !from->empty())
        to.insert(to.end(), from->begin(), from->end());
    else
        to.insert(to.end(), count, unset);
}

} // namespace

bool Optimizer::IsPlainShell(Slot item) const {
    const auto& shell = ShellAt(m_db, item);
    return shell.type == ContentKind::Shell && !shell.attributes && shell.References().empty() &&
           !Pinned(item) && IsWellFormed(shell);
}

void Optimizer::RemoveDuplicateShells(Slot segment) {
    // Shells with the same data and attributes in one segment draw the same pixels twice.
    std::unordered_multimap<size_t, Slot> kept;
    for (Slot item : Items(segment)) {
        const Geometry& shell = ShellAt(m_db, item);
        if (shell.type != ContentKind::Shell || !shell.References().empty() || Pinned(item))
            continue;
        size_t hash = ShellHash(shell);
        bool duplicate = false;
        for (auto [at, end] = kept.equal_range(hash); at != end && !duplicate; ++at) {
            const Geometry& other = ShellAt(m_db, at->second);
            duplicate = SameShell(shell, other) &&
                        AttributeSignature(shell, true) == AttributeSignature(other, true);
        }
        if (duplicate)
            m_db.DeleteObject(item);
        else
            kept.emplace(hash, item);
    }
}

void Optimizer::MergeShells(Slot segment) {
    std::vector<const Geometry*> shells;
    bool regions = false, colors = false, edges = false, normals = false;
    for (Slot item : Items(segment)) {
        if (!IsPlainShell(item)) continue;
        const Geometry& shell = ShellAt(m_db, item);
        const ShellDetails* details = DetailsOf(shell);
        if (details && !details->lodTypes.empty()) continue;
        shells.push_back(&shell);
        regions = regions || (details && !details->regions.empty());
        colors = colors || (details && !details->faceColors.empty());
        edges = edges || (details && !details->edgeVisibilities.empty());
        normals = normals || (details && !details->vertexNormals.empty());
    }
    if (shells.size() < 2) return;
    // With a mapping asked for, each face's region says which of the shells it came from.
    const bool mapping = m_choices.generateMapping && !regions;
    Geometry& merged = *m_db.AddGeometry(segment, ContentKind::Shell);
    ShellDetails* details =
        regions || colors || edges || normals || mapping ? &ObtainDetails(merged) : nullptr;
    for (size_t i = 0; i < shells.size(); ++i) {
        const Geometry& shell = *shells[i];
        const int base = static_cast<int>(merged.points.size());
        merged.points.insert(merged.points.end(), shell.points.begin(), shell.points.end());
        for (const FaceLoop& loop : FaceLoops(shell.ints)) {
            merged.ints.push_back(shell.ints[loop.position]);
            for (int k = 1; k <= loop.count; ++k)
                merged.ints.push_back(shell.ints[loop.position + k] + base);
        }
        if (!details) continue;
        const ShellDetails* own = DetailsOf(shell);
        const size_t faces = FaceCount(shell.ints);
        if (mapping)
            details->regions.insert(details->regions.end(), faces, static_cast<int>(i));
        else if (regions)
            AppendDetail(details->regions, own ? &own->regions : nullptr, faces, 0);
        if (colors)
            AppendDetail(details->faceColors, own ? &own->faceColors : nullptr, faces,
                         std::optional<HC_POINT>());
        if (edges)
            AppendDetail(details->edgeVisibilities, own ? &own->edgeVisibilities : nullptr,
                         static_cast<size_t>(EdgeCount(shell.ints)), int8_t(-1));
        if (normals)
            AppendDetail(details->vertexNormals, own ? &own->vertexNormals : nullptr,
                         shell.points.size(), std::optional<HC_VECTOR>());
    }
    TrimDetails(merged);
    m_db.PlacementChanged(merged.slot);
    for (const Geometry* shell : shells)
        m_db.DeleteObject(shell->slot);
}

void Optimizer::InstanceShells(const std::vector<Slot>& segments) {
    // The shared copies live where nothing draws them unless included.
    const char* const kLibrary = "/include library/instanced shells";
    const std::string top = m_db.Pathname(segments.front());
    if (top == "/" || top == "/include library" || top.starts_with(kLibrary)) return;
    std::unordered_multimap<size_t, std::vector<Slot>> groups;
    for (Slot segment : segments) {
        for (Slot item : Items(segment)) {
            if (!IsPlainShell(item)) continue;
            const Geometry& shell = ShellAt(m_db, item);
            size_t hash = ShellHash(shell);
            bool placed = false;
            for (auto [at, end] = groups.equal_range(hash); at != end && !placed; ++at) {
                placed = SameShell(shell, ShellAt(m_db, at->second.front()));
                if (placed) at->second.push_back(item);
            }
            if (!placed) groups.emplace(hash, std::vector<Slot>{item});
        }
    }
    Slot library = kNoSlot;
    for (auto& [hash, members] : groups) {
        if (members.size() < 2) continue;
        if (library == kNoSlot) library = m_db.ResolvePathFrom(m_db.Root(), kLibrary, true);
        Slot definition = m_db.FindOrMakeChild(library, "");
        Geometry& copy = *m_db.AddGeometry(definition, ContentKind::Shell);
        CopyGeometryData(ShellAt(m_db, members.front()), copy);
        m_db.PlacementChanged(copy.slot);
        for (Slot member : members) {
            m_db.AddLink(m_db.Get(member)->owner, ContentKind::Include, definition, "");
            m_db.DeleteObject(member);
        }
    }
}

} // namespace hc
