#include "hc/metafile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "hc/error.h"
#include "hc/text.h"

namespace hc {

namespace {

constexpr std::string_view kHeader = ";; Obsidra metafile 1\n";

// "rendering options" <-> "Rendering_Options": element names are the type words in title case.
std::string ElementName(ContentKind kind) {
    std::string name(TypeWord(kind));
    bool start = true;
    for (char& c : name) {
        if (c == ' ') {
            c = '_';
            start = true;
        } else if (start) {
            c = static_cast<char>(c - 'a' + 'A');
            start = false;
        }
    }
    return name;
}

bool KindOfElement(std::string_view element, ContentKind& kind) {
    for (size_t i = 0; i < kContentKindCount; ++i) {
        auto candidate = static_cast<ContentKind>(i);
        if (EqualsIgnoreCase(ElementName(candidate), element)) {
            kind = candidate;
            return true;
        }
    }
    return false;
}

std::string Quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        out += c;
    }
    return out + '"';
}

std::string Number(float value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.9g", static_cast<double>(value));
    return buffer;
}

// --- Writing -------------------------------------------------------------------------------------

class Writer {
public:
    Writer(const Database& db, Slot root) : m_db(db), m_root(root), m_rootPath(db.Pathname(root)) {}

    std::string Write() {
        m_out = kHeader;
        // Explicit stack: (segment, depth) to open, or a closing parenthesis at a depth.
        struct Step {
            Slot segment;
            int depth;
            bool close;
        };
        std::vector<Step> pending{{m_root, 0, false}};
        while (!pending.empty()) {
            Step step = pending.back();
            pending.pop_back();
            if (step.close) {
                m_out += ")\n";
                continue;
            }
            const Segment& segment = *m_db.GetSegment(step.segment);
            int inner = step.depth;
            if (step.segment != m_root) {
                Indent(step.depth);
                m_out += "(Segment " + Quoted(segment.name) + "\n";
                inner = step.depth + 1;
                pending.push_back({step.segment, step.depth, true});
            }
            WriteOwnContents(segment, inner);
            for (Slot c = segment.segments.last; c != kNoSlot; c = m_db.Get(c)->prev)
                pending.push_back({c, inner, false});
        }
        return m_out;
    }

private:
    // Indentation stops growing deep down, so that a very deep tree writes a file of linear size.
    void Indent(int depth) { m_out.append(static_cast<size_t>(std::min(depth, 32)) * 2, ' '); }

    void WriteOwnContents(const Segment& segment, int depth) {
        WriteKey(segment, depth);
        WriteAttributes(segment, depth);
        for (const NamedStyleDefinition& d : segment.NamedStyles()) {
            Indent(depth);
            m_out +=
                "(Named_Style_Definition " + Quoted(d.name) + " " + Quoted(Path(d.source)) + ")\n";
        }
        for (Slot c = segment.links.first; c != kNoSlot; c = m_db.Get(c)->next)
            WriteLink(static_cast<const Link&>(*m_db.Get(c)), depth);
        for (Slot c = segment.geometry.first; c != kNoSlot; c = m_db.Get(c)->next)
            WriteGeometry(static_cast<const Geometry&>(*m_db.Get(c)), depth);
    }

    void WriteKey(const Object& object, int depth) {
        if (!object.renumbered) return;
        Indent(depth);
        m_out += "(Key " + std::to_string(m_db.KeyOf(object.slot)) +
                 (m_db.HasLocalKey(object.slot) ? " \"local\")\n" : " \"global\")\n");
    }

    void WriteAttributes(const Object& object, int depth) {
        if (!object.attributes) return;
        for (const auto& [kind, options] : object.attributes->options) {
            Indent(depth);
            m_out.append("(").append(ElementName(kind)).append(" ");
            m_out.append(Quoted(options.Format())).append(")\n");
        }
    }

    void WriteLink(const Link& link, int depth) {
        Indent(depth);
        m_out.append("(").append(ElementName(link.type)).append(" ");
        if (link.type == ContentKind::NamedStyle) {
            m_out += Quoted(link.styleName);
        } else if (const Object* target = m_db.Get(link.target);
                   target && target->kind != ObjectKind::Segment) {
            // A geometry item: its segment and its place among that segment's geometry.
            Slot owner = m_db.OwnerSegment(link.target);
            int index = 0;
            for (Slot c = m_db.GetSegment(owner)->geometry.first; c != link.target;
                 c = m_db.Get(c)->next)
                ++index;
            m_out += "(Item " + Quoted(Path(owner)) + " " + std::to_string(index) + ")";
        } else {
            m_out += Quoted(Path(link.target));
        }
        m_out += " " + Quoted(link.condition);
        if (link.type == ContentKind::Reference) m_out += " " + Quoted(link.filter);
        bool nested = link.renumbered || link.attributes;
        if (nested) {
            m_out += "\n";
            WriteKey(link, depth + 1);
            WriteAttributes(link, depth + 1);
            Indent(depth);
        }
        m_out += ")\n";
    }

    void WriteGeometry(const Geometry& geometry, int depth) {
        Indent(depth);
        m_out.append("(").append(ElementName(geometry.type));
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
            for (float v : geometry.Values())
                m_out += " " + Number(v);
            m_out += ")";
        }
        if (!geometry.Text().empty()) m_out += " (String " + Quoted(geometry.Text()) + ")";
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

    // Targets inside the saved segment are written relative to it, so that the file can be read
    // into another segment; others keep their absolute path.
    std::string Path(Slot segment) const {
        std::string path = m_db.Pathname(segment);
        if (segment == m_root) return ".";
        if (m_rootPath == "/") return "." + path;
        if (path.starts_with(m_rootPath) && path[m_rootPath.size()] == '/')
            return "." + path.substr(m_rootPath.size());
        return path;
    }

    const Database& m_db;
    Slot m_root;
    std::string m_rootPath;
    std::string m_out;
};

// --- Reading -------------------------------------------------------------------------------------

struct Node {
    enum Type { List, String, Atom } type;
    std::string text; // element name of a list, value of a string or atom
    std::vector<size_t> children;
    int line;
};

// Parses text into a flat node list (node 0 is the file itself, a list). Iterative, so that deep
// nesting cannot exhaust the stack.
bool Parse(std::string_view text, std::vector<Node>& nodes, std::string& error) {
    nodes.assign(1, Node{Node::List, "", {}, 1});
    std::vector<size_t> open{0};
    int line = 1;
    for (size_t i = 0; i < text.size();) {
        char c = text[i];
        if (c == '\n') {
            ++line;
            ++i;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            ++i;
        } else if (c == ';') {
            while (i < text.size() && text[i] != '\n')
                ++i;
        } else if (c == '(') {
            size_t start = ++i;
            while (i < text.size() &&
                   (std::isalnum(static_cast<unsigned char>(text[i])) || text[i] == '_'))
                ++i;
            if (i == start) {
                error = "line " + std::to_string(line) + ": an element name must follow \"(\"";
                return false;
            }
            nodes[open.back()].children.push_back(nodes.size());
            open.push_back(nodes.size());
            nodes.push_back({Node::List, std::string(text.substr(start, i - start)), {}, line});
        } else if (c == ')') {
            if (open.size() == 1) {
                error = "line " + std::to_string(line) + ": \")\" closes nothing";
                return false;
            }
            open.pop_back();
            ++i;
        } else if (c == '"') {
            std::string value;
            int startLine = line;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\n') ++line;
                if (text[i] == '\\' && i + 1 < text.size()) {
                    ++i;
                    value += text[i] == 'n' ? '\n' : text[i];
                } else {
                    value += text[i];
                }
            }
            if (i >= text.size()) {
                error = "line " + std::to_string(startLine) + ": the string is not closed";
                return false;
            }
            ++i;
            nodes[open.back()].children.push_back(nodes.size());
            nodes.push_back({Node::String, std::move(value), {}, startLine});
        } else {
            size_t start = i;
            while (i < text.size() && !std::isspace(static_cast<unsigned char>(text[i])) &&
                   text[i] != '(' && text[i] != ')' && text[i] != '"' && text[i] != ';')
                ++i;
            nodes[open.back()].children.push_back(nodes.size());
            nodes.push_back({Node::Atom, std::string(text.substr(start, i - start)), {}, line});
        }
    }
    if (open.size() > 1) {
        error = "line " + std::to_string(nodes[open.back()].line) + ": (" +
                nodes[open.back()].text + " is not closed";
        return false;
    }
    return true;
}

// Checks every element before anything is loaded, so that a file with a mistake loads nothing.
bool Validate(const std::vector<Node>& nodes, std::string& error) {
    auto fail = [&error](const Node& node, const std::string& what) {
        error = "line " + std::to_string(node.line) + ": " + what;
        return false;
    };
    for (size_t i = 1; i < nodes.size(); ++i) {
        const Node& node = nodes[i];
        if (node.type != Node::List) continue;
        std::string_view name = node.text;
        bool integers = EqualsIgnoreCase(name, "Ints");
        bool numbers =
            integers || EqualsIgnoreCase(name, "Points") || EqualsIgnoreCase(name, "Values");
        if (numbers) {
            for (size_t c : node.children) {
                char* end = nullptr;
                const std::string& text = nodes[c].text;
                if (integers)
                    (void)std::strtol(text.c_str(), &end, 10);
                else
                    (void)std::strtof(text.c_str(), &end);
                if (nodes[c].type != Node::Atom || *end || text.empty())
                    return fail(nodes[c], "\"" + text + "\" is not a number");
            }
            if (EqualsIgnoreCase(name, "Points") && node.children.size() % 3)
                return fail(node, "points need three coordinates each");
            continue;
        }
        ContentKind kind;
        bool known =
            EqualsIgnoreCase(name, "Segment") || EqualsIgnoreCase(name, "Key") ||
            EqualsIgnoreCase(name, "Named_Style_Definition") || EqualsIgnoreCase(name, "String") ||
            EqualsIgnoreCase(name, "Item") ||
            (KindOfElement(name, kind) && kind != ContentKind::StaticModel && !IsDefinition(kind));
        if (!known) return fail(node, "unknown element \"" + node.text + "\"");
    }
    for (size_t c : nodes[0].children)
        if (nodes[c].type != Node::List) return fail(nodes[c], "a value outside any element");
    return true;
}

class Loader {
public:
    Loader(Database& db, const std::vector<Node>& nodes) : m_db(db), m_nodes(nodes) {}

    void Load(Slot root) {
        m_root = root;
        std::vector<std::pair<size_t, Slot>> pending{{0, root}};
        while (!pending.empty()) {
            auto [index, segment] = pending.back();
            pending.pop_back();
            const Node& node = m_nodes[index];
            // Subsegments are loaded after their parent's other contents, in file order.
            std::vector<std::pair<size_t, Slot>> children;
            for (size_t c : node.children) {
                const Node& child = m_nodes[c];
                if (EqualsIgnoreCase(child.text, "Segment"))
                    children.emplace_back(c, m_db.FindOrMakeChild(segment, Str(child, 0)));
                else
                    LoadItem(child, segment, segment);
            }
            if (index != 0) ApplyKey(node, segment);
            for (auto it = children.rbegin(); it != children.rend(); ++it)
                pending.push_back(*it);
        }
        for (const auto& [item, link] : m_itemTargets)
            ResolveItemTarget(*item, link);
    }

private:
    // The n-th string or atom among a list's values.
    std::string Str(const Node& node, size_t n) const {
        size_t seen = 0;
        for (size_t c : node.children) {
            if (m_nodes[c].type == Node::List) continue;
            if (seen++ == n) return m_nodes[c].text;
        }
        return {};
    }

    const Node* Child(const Node& node, std::string_view name) const {
        for (size_t c : node.children)
            if (m_nodes[c].type == Node::List && EqualsIgnoreCase(m_nodes[c].text, name))
                return &m_nodes[c];
        return nullptr;
    }

    void LoadItem(const Node& node, Slot segment, Slot owner) {
        if (node.type != Node::List || EqualsIgnoreCase(node.text, "Key")) return;
        if (EqualsIgnoreCase(node.text, "Named_Style_Definition")) {
            Slot source = m_db.ResolvePathFrom(m_root, Str(node, 1), true);
            if (source != kNoSlot) m_db.DefineNamedStyle(segment, Str(node, 0), source);
            return;
        }
        ContentKind kind;
        if (!KindOfElement(node.text, kind)) return; // payload elements, read by their item
        if (IsAttribute(kind)) {
            m_db.SetOptions(owner, kind, Str(node, 0));
            return;
        }
        if (IsGeometry(kind)) {
            LoadGeometry(node, kind, segment);
            return;
        }
        Slot link = kNoSlot;
        if (kind == ContentKind::NamedStyle) {
            link = m_db.AddNamedStyle(owner, Str(node, 0), Str(node, 1));
        } else if (const Node* item = Child(node, "Item")) {
            // Geometry targets may come later in the file: aimed at the root until all is loaded.
            link = m_db.AddLink(owner, kind, m_root, Str(node, 0), Str(node, 1));
            m_itemTargets.emplace_back(item, link);
        } else {
            Slot target = m_db.ResolvePathFrom(m_root, Str(node, 0), true);
            if (target == kNoSlot) return; // reported; the rest still loads
            link = m_db.AddLink(owner, kind, target, Str(node, 1), Str(node, 2));
        }
        LoadNested(node, link, segment);
    }

    void LoadGeometry(const Node& node, ContentKind kind, Slot segment) {
        Geometry* geometry = m_db.AddGeometry(segment, kind);
        if (!geometry) return;
        if (const Node* points = Child(node, "Points")) {
            const auto& c = points->children;
            for (size_t i = 0; i + 2 < c.size(); i += 3)
                geometry->points.push_back({std::strtof(m_nodes[c[i]].text.c_str(), nullptr),
                                            std::strtof(m_nodes[c[i + 1]].text.c_str(), nullptr),
                                            std::strtof(m_nodes[c[i + 2]].text.c_str(), nullptr)});
        }
        if (const Node* ints = Child(node, "Ints"))
            for (size_t c : ints->children)
                geometry->ints.push_back(
                    static_cast<int>(std::strtol(m_nodes[c].text.c_str(), nullptr, 10)));
        if (const Node* values = Child(node, "Values"))
            for (size_t c : values->children)
                geometry->Extras().values.push_back(std::strtof(m_nodes[c].text.c_str(), nullptr));
        if (const Node* text = Child(node, "String")) geometry->Extras().text = Str(*text, 0);
        LoadNested(node, geometry->slot, segment);
    }

    // Attributes, keys and attached references nested in an item.
    void LoadNested(const Node& node, Slot item, Slot segment) {
        if (item == kNoSlot) return;
        for (size_t c : node.children)
            LoadItem(m_nodes[c], segment, item);
        ApplyKey(node, item);
    }

    void ApplyKey(const Node& node, Slot slot) {
        const Node* key = Child(node, "Key");
        if (!key) return;
        HC_KEY value = std::strtoll(Str(*key, 0).c_str(), nullptr, 10);
        std::string scope = Str(*key, 1);
        // A local key is registered with its owner, which must be current while renumbering.
        Slot owner = m_db.OwnerSegment(slot);
        if (owner != kNoSlot) m_db.OpenSegmentByKey(m_db.KeyOf(owner));
        m_db.Renumber(m_db.KeyOf(slot), value, scope.empty() ? "global" : scope);
        if (owner != kNoSlot) m_db.CloseSegment();
    }

    void ResolveItemTarget(const Node& item, Slot link) {
        const Segment* owner = m_db.GetSegment(m_db.ResolvePathFrom(m_root, Str(item, 0), false));
        long index = std::strtol(Str(item, 1).c_str(), nullptr, 10);
        Slot target = owner ? owner->geometry.first : kNoSlot;
        while (target != kNoSlot && index-- > 0)
            target = m_db.Get(target)->next;
        if (target == kNoSlot || index > 0) {
            ReportError("line " + std::to_string(item.line) +
                        ": the referenced item does not exist");
            m_db.DeleteObject(link);
            return;
        }
        m_db.SetLinkTarget(link, target);
    }

    Database& m_db;
    const std::vector<Node>& m_nodes;
    Slot m_root = kNoSlot;
    std::vector<std::pair<const Node*, Slot>> m_itemTargets;
};

} // namespace

std::string MetafileText(const Database& db, Slot segment) {
    return db.GetSegment(segment) ? Writer(db, segment).Write() : std::string();
}

bool LoadMetafileText(Database& db, std::string_view text, Slot segment, std::string& error) {
    std::vector<Node> nodes;
    if (!Parse(text, nodes, error) || !Validate(nodes, error)) return false;
    if (!db.GetSegment(segment)) {
        error = "the segment to load into does not exist";
        return false;
    }
    Loader(db, nodes).Load(segment);
    return true;
}

void WriteMetafile(Database& db, std::string_view segment, std::string_view file,
                   std::string_view /*options*/) {
    Slot slot = db.ResolvePath(segment, false);
    if (slot == kNoSlot) return;
    std::ofstream out{std::string(file), std::ios::binary};
    out << MetafileText(db, slot);
    if (!out) ReportError("cannot write \"" + std::string(file) + "\"");
}

Slot ReadMetafile(Database& db, std::string_view file, std::string_view segment,
                  std::string_view /*options*/) {
    std::ifstream in{std::string(file), std::ios::binary};
    if (!in) {
        ReportError("cannot read \"" + std::string(file) + "\"");
        return kNoSlot;
    }
    std::stringstream text;
    text << in.rdbuf();
    Slot slot = db.ResolvePath(segment.empty() ? "." : segment, true);
    if (slot == kNoSlot) return kNoSlot;
    std::string error;
    if (!LoadMetafileText(db, text.str(), slot, error)) {
        ReportError(std::string(file) + ": " + error);
        return kNoSlot;
    }
    return slot;
}

} // namespace hc
