#include <algorithm>
#include <cstring>
#include <set>
#include <unordered_map>

#include "hc/atomic_file.h"
#include "hc/error.h"
#include "hc/metafile.h"
#include "hc/metafile_syntax.h"
#include "hc/text.h"

namespace hc {

using namespace metafile;

namespace {

class Writer {
public:
    Writer(const Database& db, Slot root, MetafileOptions options)
        : m_db(db), m_root(root), m_options(options) {}

    std::string Write() {
        m_out = kHeader;
        NumberNameless(m_root);
        WriteTree(m_root, 0, true);
        // Included segments outside the saved one, and what they include in turn.
        for (size_t i = 0; i < m_external.size(); ++i) {
            m_out += "(External " + Quoted(m_db.Pathname(m_external[i])) + "\n";
            WriteTree(m_external[i], 1, true);
            m_out += ")\n";
        }
        return m_out;
    }

private:
    // A segment's contents and its subtree; top is written without its own Segment element.
    void WriteTree(Slot top, int topDepth, bool bare) {
        struct Step {
            Slot segment;
            int depth;
            bool close;
        };
        std::vector<Step> pending{{top, topDepth, false}};
        while (!pending.empty()) {
            Step step = pending.back();
            pending.pop_back();
            if (step.close) {
                Indent(step.depth);
                m_out += ")\n";
                continue;
            }
            const Segment& segment = *m_db.GetSegment(step.segment);
            int inner = step.depth;
            if (!(bare && step.segment == top)) {
                Indent(step.depth);
                m_out += "(Segment " + Quoted(segment.name) + "\n";
                inner = step.depth + 1;
                pending.push_back({step.segment, step.depth, true});
            }
            WriteOwnContents(segment, inner);
            for (Slot c = segment.segments.last; c != kNoSlot; c = m_db.Prev(c))
                pending.push_back({c, inner, false});
        }
    }

    // Indentation stops growing deep down, so that a very deep tree writes a file of linear size.
    void Indent(int depth) { m_out.append(static_cast<size_t>(std::min(depth, 32)) * 2, ' '); }

    void Open(int depth, ContentKind kind) {
        Indent(depth);
        m_out.append("(").append(ElementName(kind));
    }

    void WriteOwnContents(const Segment& segment, int depth) {
        WriteKey(segment, depth);
        WriteAttributes(segment, depth);
        WriteDefinitions(segment, depth);
        for (Slot c = segment.links.first; c != kNoSlot; c = m_db.Next(c))
            WriteLink(static_cast<const Link&>(*m_db.Get(c)), depth);
        for (Slot c = segment.geometry.first; c != kNoSlot; c = m_db.Next(c))
            WriteGeometry(static_cast<const Geometry&>(*m_db.Get(c)), depth);
    }

    void WriteKey(const Object& object, int depth) {
        if (!object.renumbered) return;
        Indent(depth);
        m_out += "(Key " + std::to_string(m_db.KeyOf(object.slot)) +
                 (m_db.HasLocalKey(object.slot) ? " \"local\")\n" : " \"global\")\n");
    }

    void WriteNumbers(const std::vector<float>& numbers) {
        for (float n : numbers)
            m_out += " " + Number(n);
    }

    void WriteAttributes(const Object& object, int depth) {
        if (!object.attributes) return;
        for (const Attribute& a : object.attributes->Items())
            WriteAttribute(a, depth);
    }

    void WriteAttribute(const Attribute& a, int depth) {
        switch (a.kind) {
        case ContentKind::UserIndex:
        case ContentKind::UserData:
            for (const auto& [index, bytes] : a.entries) {
                Open(depth, a.kind);
                m_out += " " + std::to_string(index) + " ";
                if (a.kind == ContentKind::UserData) {
                    m_out += Quoted(bytes);
                } else {
                    uintptr_t value = 0;
                    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
                    m_out += std::to_string(value);
                }
                m_out += ")\n";
            }
            return;
        case ContentKind::ConditionalAction:
            for (const ConditionalAction& action : a.actions) {
                Open(depth, a.kind);
                m_out += " " + Quoted(action.type) + " " + Quoted(action.options) + " " +
                         Quoted(action.condition) + ")\n";
            }
            return;
        default:
            break;
        }
        Open(depth, a.kind);
        switch (a.kind) {
        case ContentKind::UserValue:
            m_out += " " + std::to_string(a.integer);
            break;
        case ContentKind::Camera:
            // The camera's own form: (Camera (position) (target) (up) width height "projection"),
            // then the near limit when one is set.
            for (size_t p = 0; p < 9; p += 3) {
                m_out += " (" + Number(a.numbers[p]) + " " + Number(a.numbers[p + 1]) + " " +
                         Number(a.numbers[p + 2]) + ")";
            }
            m_out +=
                " " + Number(a.numbers[9]) + " " + Number(a.numbers[10]) + " " + Quoted(a.text);
            if (a.numbers.size() > 11 && a.numbers[11] != 0) m_out += " " + Number(a.numbers[11]);
            break;
        case ContentKind::ClipRegion:
            m_out += " (Points";
            for (const HC_POINT& p : a.points)
                m_out += " " + Number(p.x) + " " + Number(p.y) + " " + Number(p.z);
            m_out += ") " + Quoted(a.text);
            break;
        case ContentKind::EdgeWeight:
        case ContentKind::LineWeight:
        case ContentKind::MarkerSize:
            m_out += " " + (a.numbers.at(0) < 0 ? Quoted(a.text) : Number(a.numbers[0]));
            break;
        case ContentKind::TextSpacing:
        case ContentKind::TextPath:
        case ContentKind::Window:
        case ContentKind::ModellingMatrix:
        case ContentKind::TextureMatrix:
            WriteNumbers(a.numbers);
            break;
        default:
            m_out += " " + Quoted(IsOptionString(a.kind) ? a.options.Format() : a.text);
            break;
        }
        m_out += ")\n";
    }

    void WriteDefinitions(const Segment& segment, int depth) {
        for (size_t k = size_t(kFirstDefinition); k <= size_t(kLastDefinition); ++k) {
            auto kind = ContentKind(k);
            if (kind == ContentKind::TextureDefinition && !m_options.saveTextures) continue;
            for (const Definition& d : segment.DefinitionsOf(kind)) {
                // A named style whose source segment was deleted names nothing any more.
                if (kind == ContentKind::NamedStyleDefinition && !m_db.GetSegment(d.segment))
                    continue;
                Open(depth, kind);
                m_out += " " + Quoted(d.name) + " ";
                m_out +=
                    Quoted(kind == ContentKind::NamedStyleDefinition ? Path(d.segment) : d.text);
                if (kind == ContentKind::ShaderDefinition) m_out += " " + Quoted(d.source);
                m_out += ")\n";
            }
        }
    }

    void WriteLink(const Link& link, int depth) {
        Open(depth, link.type);
        m_out += " ";
        if (link.type == ContentKind::NamedStyle) {
            m_out += Quoted(link.styleName);
        } else if (const Object* target = m_db.Get(link.target);
                   target && target->kind != ObjectKind::Segment) {
            // A geometry item: its segment and its place among that segment's geometry.
            Slot owner = m_db.OwnerSegment(link.target);
            int index = 0;
            for (Slot c = m_db.GetSegment(owner)->geometry.first; c != link.target;
                 c = m_db.Next(c))
                ++index;
            m_out += "(Item " + Quoted(Path(owner)) + " " + std::to_string(index) + ")";
        } else {
            if (link.type == ContentKind::Include) Follow(link.target);
            m_out += Quoted(Path(link.target));
        }
        m_out += " " + Quoted(link.condition);
        if (link.type == ContentKind::Reference) m_out += " " + Quoted(link.filter);
        if (link.renumbered || link.attributes) {
            m_out += "\n";
            WriteKey(link, depth + 1);
            WriteAttributes(link, depth + 1);
            Indent(depth);
        }
        m_out += ")\n";
    }

    void WriteGeometry(const Geometry& geometry, int depth) {
        Open(depth, geometry.type);
        if (!geometry.points.empty()) {
            m_out += " (Points";
            for (const HC_POINT& p : geometry.points)
                m_out += " " + Number(p.x) + " " + Number(p.y) + " " + Number(p.z);
            m_out += ")";
        }
        if (!geometry.ints.empty()) {
            m_out += " (Ints";
            for (int i : geometry.ints)
                m_out += " " + std::to_string(i);
            m_out += ")";
        }
        if (!geometry.Values().empty()) {
            m_out += " (Values";
            WriteNumbers(geometry.Values());
            m_out += ")";
        }
        if (!geometry.Text().empty()) m_out += " (String " + Quoted(geometry.Text()) + ")";
        if (geometry.extras && geometry.extras->shell) WriteShellDetails(*geometry.extras->shell);
        if (geometry.renumbered || geometry.attributes || !geometry.References().empty()) {
            m_out += "\n";
            WriteKey(geometry, depth + 1);
            WriteAttributes(geometry, depth + 1);
            for (Slot r : geometry.References())
                WriteLink(static_cast<const Link&>(*m_db.Get(r)), depth + 1);
            Indent(depth);
        }
        m_out += ")\n";
    }

    // A value that is not set is written as "nan" (a number that is no coordinate).
    template <typename Optional>
    void WriteTriples(const char* element, const std::vector<Optional>& triples) {
        if (triples.empty()) return;
        m_out += std::string(" (") + element;
        for (const auto& t : triples)
            m_out +=
                t ? " " + Number(t->x) + " " + Number(t->y) + " " + Number(t->z) : " nan nan nan";
        m_out += ")";
    }

    template <typename Integer>
    void WriteIntegers(const char* element, const std::vector<Integer>& values) {
        if (values.empty()) return;
        m_out += std::string(" (") + element;
        for (Integer v : values)
            m_out += " " + std::to_string(int(v));
        m_out += ")";
    }

    void WriteShellDetails(const ShellDetails& details) {
        WriteIntegers("Regions", details.regions);
        WriteTriples("Face_Colors", details.faceColors);
        WriteIntegers("Edge_Visibilities", details.edgeVisibilities);
        WriteTriples("Vertex_Normals", details.vertexNormals);
        if (!details.lodTypes.empty()) {
            m_out += " (Lods";
            for (const std::string& type : details.lodTypes)
                m_out += " " + Quoted(type);
            m_out += ")";
        }
    }

    bool Inside(Slot segment) const {
        for (Slot s = segment; s != kNoSlot; s = m_db.Get(s)->owner)
            if (s == m_root) return true;
        return false;
    }

    // With "follow cross-references", an included segment outside the saved one is saved too.
    void Follow(Slot target) {
        if (!m_options.followCrossReferences || !m_db.GetSegment(target) || Inside(target)) return;
        for (Slot s = target; s != kNoSlot; s = m_db.Get(s)->owner)
            if (m_followed.count(s)) return;
        if (m_followed.insert(target).second) {
            m_external.push_back(target);
            NumberNameless(target);
        }
    }

    // Nameless segments are numbered in the order the file holds them (the order a reader
    // meets them in), so that paths through them can be written as "@#n".
    void NumberNameless(Slot top) {
        std::vector<Slot> pending{top};
        while (!pending.empty()) {
            Slot s = pending.back();
            pending.pop_back();
            const Segment& segment = *m_db.GetSegment(s);
            if (segment.name.empty() && s != top) m_nameless.emplace(s, m_nextNameless++);
            for (Slot c = segment.segments.last; c != kNoSlot; c = m_db.Prev(c))
                pending.push_back(c);
        }
    }

    // Targets inside the saved segment are written relative to it, so that the file can be read
    // into another segment; others keep their absolute path. A nameless level written in this
    // file is "@#n".
    std::string Path(Slot segment) const {
        if (segment == m_root) return ".";
        std::vector<Slot> levels;
        Slot s = segment;
        for (; s != kNoSlot && s != m_root && s != m_db.Root(); s = m_db.Get(s)->owner)
            levels.push_back(s);
        std::string path = s == m_root ? "." : "";
        if (levels.empty()) return "/";
        for (auto it = levels.rbegin(); it != levels.rend(); ++it) {
            const Segment& level = *m_db.GetSegment(*it);
            auto number = m_nameless.find(*it);
            path += '/';
            if (!level.name.empty())
                path += level.name;
            else if (number != m_nameless.end())
                path += "@#" + std::to_string(number->second);
            else
                path += "@" + KeyText(OriginalKey(*it));
        }
        return path;
    }

    const Database& m_db;
    Slot m_root;
    MetafileOptions m_options;
    std::string m_out;
    std::vector<Slot> m_external;
    std::set<Slot> m_followed;
    std::unordered_map<Slot, int> m_nameless;
    int m_nextNameless = 0;
};

} // namespace

MetafileOptions MetafileOptions::Parse(std::string_view text) {
    MetafileOptions options;
    OptionList list;
    if (!OptionList::Parse(text, list)) return options;
    options.followCrossReferences = list.IsOn("follow cross-references");
    // "save state = textures" or a list such as "save state = (textures, fonts)".
    if (const Option* saveState = list.Find("save state"); saveState && !saveState->negated)
        options.saveTextures = ToLower(saveState->value).find("textures") != std::string::npos;
    return options;
}

std::string MetafileText(const Database& db, Slot segment, MetafileOptions options) {
    return db.GetSegment(segment) ? Writer(db, segment, options).Write() : std::string();
}

void WriteMetafile(Session& session, std::string_view segment, std::string_view file,
                   std::string_view options) {
    Slot slot = session.ResolvePath(segment, false);
    if (slot == kNoSlot) return;
    std::string error;
    if (!WriteFileAtomically(std::string(file),
                             MetafileText(session.Db(), slot, MetafileOptions::Parse(options)),
                             error))
        ReportError(error);
}

} // namespace hc
