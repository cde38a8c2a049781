#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <sstream>
#include <unordered_map>

#include "hc/error.h"
#include "hc/geometry_data.h"
#include "hc/metafile.h"
#include "hc/metafile_syntax.h"
#include "hc/text.h"

namespace hc {

using namespace metafile;

namespace {

// What a list is, found once after parsing so that checks compare numbers, not names.
enum class Element : uint8_t {
    Unknown,
    Tuple,
    Kind,
    Segment,
    External,
    Key,
    Points,
    Ints,
    Values,
    String,
    Item,
    Regions,
    FaceColors,
    EdgeVisibilities,
    VertexNormals,
    Lods
};

struct Node {
    enum Type : uint8_t { List, String, Atom } type;
    Element element = Element::Unknown;    // lists
    ContentKind kind = ContentKind::Count; // lists of Element::Kind
    uint32_t parent = 0;
    int line = 0;
    int column = 0;
    std::string_view text; // a list's element name ("" for a tuple), a string's value, an atom
    std::span<const uint32_t> children;
};

// The parsed file: nodes with views into the text (or into unescaped copies of strings that
// held escapes), and every node's children in one array.
struct ParsedFile {
    std::string source;
    std::deque<std::string> unescaped;
    std::vector<Node> nodes;
    std::vector<uint32_t> childIndex;
};

std::string Where(const Node& node) {
    return "line " + std::to_string(node.line) + ", column " + std::to_string(node.column);
}

Element ElementOf(std::string_view name, ContentKind& kind) {
    static const std::pair<std::string_view, Element> kElements[] = {
        {"segment", Element::Segment},
        {"external", Element::External},
        {"key", Element::Key},
        {"points", Element::Points},
        {"ints", Element::Ints},
        {"values", Element::Values},
        {"string", Element::String},
        {"item", Element::Item},
        {"regions", Element::Regions},
        {"face_colors", Element::FaceColors},
        {"edge_visibilities", Element::EdgeVisibilities},
        {"vertex_normals", Element::VertexNormals},
        {"lods", Element::Lods},
    };
    if (name.empty()) return Element::Tuple;
    for (const auto& [word, element] : kElements)
        if (EqualsIgnoreCase(name, word)) return element;
    if (KindOfElement(name, kind) && kind != ContentKind::StaticModel &&
        kind != ContentKind::Segment)
        return Element::Kind;
    return Element::Unknown;
}

// --- Parsing: text to a flat node list (node 0 is the file), without recursion -------------------

bool Parse(std::string_view input, ParsedFile& file, std::string& error) {
    file.source = input;
    std::string_view text = file.source;
    std::vector<Node>& nodes = file.nodes;
    nodes.clear();
    nodes.reserve(text.size() / 4 + 1);
    nodes.push_back(Node{Node::List, Element::Segment, ContentKind::Count, 0, 1, 1, {}, {}});
    std::vector<uint32_t> open{0};
    int line = 1;
    size_t lineStart = 0;
    auto fail = [&](int atLine, size_t at, const std::string& what) {
        error =
            "line " + std::to_string(atLine) + ", column " + std::to_string(at + 1) + ": " + what;
        return false;
    };
    auto add = [&](Node::Type type, std::string_view value, int atLine, int atColumn) {
        nodes.push_back(Node{
            type, Element::Unknown, ContentKind::Count, open.back(), atLine, atColumn, value, {}});
    };
    for (size_t i = 0; i < text.size();) {
        char c = text[i];
        int column = static_cast<int>(i - lineStart) + 1;
        if (c == '\n') {
            ++line;
            lineStart = ++i;
        } else if (std::isspace(static_cast<unsigned char>(c))) {
            ++i;
        } else if (c == ';') {
            while (i < text.size() && text[i] != '\n')
                ++i;
        } else if (c == '(') {
            size_t start = ++i;
            while (i < text.size() &&
                   (std::isalnum(static_cast<unsigned char>(text[i])) || text[i] == '_'))
                ++i;
            std::string_view name = text.substr(start, i - start);
            if (!name.empty() && !std::isalpha(static_cast<unsigned char>(name[0]))) {
                i = start; // a tuple of numbers such as (1 2 3)
                name = {};
            }
            add(Node::List, name, line, column);
            open.push_back(static_cast<uint32_t>(nodes.size() - 1));
        } else if (c == ')') {
            if (open.size() == 1) return fail(line, i - lineStart, "\")\" closes nothing");
            open.pop_back();
            ++i;
        } else if (c == '"') {
            int startLine = line;
            size_t startColumn = i - lineStart;
            size_t first = i + 1;
            bool escaped = false;
            std::string value;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\n') {
                    ++line;
                    lineStart = i + 1;
                }
                if (text[i] != '\\' || i + 1 >= text.size()) {
                    value += text[i];
                    continue;
                }
                escaped = true;
                char e = text[++i];
                if (e == 'n') {
                    value += '\n';
                } else if (e == 't') {
                    value += '\t';
                } else if (e == 'r') {
                    value += '\r';
                } else if (e == 'x' && i + 2 < text.size() &&
                           std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                           std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
                    unsigned byte = 0;
                    std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, 16);
                    value += static_cast<char>(byte);
                    i += 2;
                } else {
                    value += e;
                }
            }
            if (i >= text.size()) return fail(startLine, startColumn, "the string is not closed");
            std::string_view view = text.substr(first, i - first);
            if (escaped) view = file.unescaped.emplace_back(std::move(value));
            ++i;
            add(Node::String, view, startLine, static_cast<int>(startColumn) + 1);
        } else if (static_cast<unsigned char>(c) < 0x20) {
            // Said plainly, rather than as whatever mistake the bytes happen to make first.
            return fail(line, i - lineStart, "a control character: binary data, not metafile text");
        } else {
            size_t start = i;
            while (i < text.size() && !std::isspace(static_cast<unsigned char>(text[i])) &&
                   text[i] != '(' && text[i] != ')' && text[i] != '"' && text[i] != ';')
                ++i;
            add(Node::Atom, text.substr(start, i - start), line, column);
        }
    }
    if (open.size() > 1) {
        const Node& unclosed = nodes[open.back()];
        error = Where(unclosed) + ": (" + std::string(unclosed.text) + " is not closed";
        return false;
    }
    // Every node's children, in file order, side by side in one array.
    std::vector<uint32_t> counts(nodes.size(), 0);
    for (size_t n = 1; n < nodes.size(); ++n)
        ++counts[nodes[n].parent];
    std::vector<uint32_t> begin(nodes.size(), 0);
    for (size_t n = 1; n < nodes.size(); ++n)
        begin[n] = begin[n - 1] + counts[n - 1];
    file.childIndex.assign(nodes.size() > 0 ? nodes.size() - 1 : 0, 0);
    std::vector<uint32_t> fill = begin;
    for (size_t n = 1; n < nodes.size(); ++n)
        file.childIndex[fill[nodes[n].parent]++] = static_cast<uint32_t>(n);
    // Files repeat a few element names many times: each spelling is looked up once.
    std::unordered_map<std::string_view, std::pair<Element, ContentKind>> known;
    for (size_t n = 0; n < nodes.size(); ++n) {
        nodes[n].children = {file.childIndex.data() + begin[n], counts[n]};
        if (n == 0 || nodes[n].type != Node::List) continue;
        auto [entry, added] = known.try_emplace(nodes[n].text);
        if (added) entry->second.first = ElementOf(nodes[n].text, entry->second.second);
        nodes[n].element = entry->second.first;
        nodes[n].kind = entry->second.second;
    }
    return true;
}

bool IsNumber(const Node& node) {
    if (node.type != Node::Atom || node.text.empty()) return false;
    float value;
    auto [end, error] =
        std::from_chars(node.text.data(), node.text.data() + std::string(node.text).size(), value);
    return error == std::errc{} && end == node.text.data() + std::string(node.text).size();
}

bool IsInteger(const Node& node) {
    if (node.type != Node::Atom || node.text.empty()) return false;
    long long value;
    auto [end, error] =
        std::from_chars(node.text.data(), node.text.data() + std::string(node.text).size(), value);
    return error == std::errc{} && end == node.text.data() + std::string(node.text).size();
}

float FloatOf(const Node& node) {
    float value = 0;
    std::from_chars(node.text.data(), node.text.data() + std::string(node.text).size(), value);
    return value;
}

long long IntegerOf(const Node& node) {
    long long value = 0;
    std::from_chars(node.text.data(), node.text.data() + std::string(node.text).size(), value);
    return value;
}

bool Is(const Node& node, Element element) {
    return node.type == Node::List && node.element == element;
}

bool IsKind(const Node& node, ContentKind kind) {
    return Is(node, Element::Kind) && node.kind == kind;
}

// --- Checking: every element before anything is loaded -----------------------------------------

enum class Context { Segment, Geometry, Link, Camera, Payload };

// The elements that carry an item's data, and those that carry a shell's details.
bool IsPayload(const Node& node) {
    for (Element e :
         {Element::Points, Element::Ints, Element::Values, Element::String, Element::Item})
        if (Is(node, e)) return true;
    return false;
}

bool IsShellDetail(const Node& node) {
    for (Element e : {Element::Regions, Element::FaceColors, Element::EdgeVisibilities,
                      Element::VertexNormals, Element::Lods})
        if (Is(node, e)) return true;
    return false;
}

const Node* ChildOf(const std::vector<Node>& nodes, const Node& node, Element element) {
    for (uint32_t c : node.children)
        if (Is(nodes[c], element)) return &nodes[c];
    return nullptr;
}

std::vector<float> FloatsOf(const std::vector<Node>& nodes, const Node* list) {
    std::vector<float> values;
    if (list)
        for (uint32_t c : list->children)
            values.push_back(FloatOf(nodes[c]));
    return values;
}

std::vector<int> IntsOf(const std::vector<Node>& nodes, const Node* list) {
    std::vector<int> values;
    if (list)
        for (uint32_t c : list->children)
            values.push_back(static_cast<int>(IntegerOf(nodes[c])));
    return values;
}

// Triples of numbers; "nan nan nan" is a value that is not set.
std::vector<std::optional<HC_POINT>> OptionalTriples(const std::vector<Node>& nodes,
                                                     const Node* list) {
    std::vector<float> v = FloatsOf(nodes, list);
    std::vector<std::optional<HC_POINT>> triples;
    for (size_t i = 0; i + 2 < v.size(); i += 3) {
        if (std::isnan(v[i]) && std::isnan(v[i + 1]) && std::isnan(v[i + 2]))
            triples.emplace_back();
        else
            triples.push_back(HC_POINT{v[i], v[i + 1], v[i + 2]});
    }
    return triples;
}

// Fills an item from its element: points, integers, numbers, text and a shell's details.
void FillGeometry(const std::vector<Node>& nodes, const Node& node, Geometry& item) {
    std::vector<float> points = FloatsOf(nodes, ChildOf(nodes, node, Element::Points));
    for (size_t i = 0; i + 2 < points.size(); i += 3)
        item.points.push_back({points[i], points[i + 1], points[i + 2]});
    item.ints = IntsOf(nodes, ChildOf(nodes, node, Element::Ints));
    if (const Node* values = ChildOf(nodes, node, Element::Values))
        item.Extras().values = FloatsOf(nodes, values);
    if (const Node* text = ChildOf(nodes, node, Element::String))
        for (uint32_t c : text->children)
            item.Extras().text = nodes[c].text;
    bool details = false;
    for (uint32_t c : node.children)
        details = details || IsShellDetail(nodes[c]);
    if (!details) return;
    auto shell = std::make_unique<ShellDetails>();
    shell->regions = IntsOf(nodes, ChildOf(nodes, node, Element::Regions));
    shell->faceColors = OptionalTriples(nodes, ChildOf(nodes, node, Element::FaceColors));
    for (int v : IntsOf(nodes, ChildOf(nodes, node, Element::EdgeVisibilities)))
        shell->edgeVisibilities.push_back(static_cast<int8_t>(v));
    shell->vertexNormals = OptionalTriples(nodes, ChildOf(nodes, node, Element::VertexNormals));
    if (const Node* lods = ChildOf(nodes, node, Element::Lods))
        for (uint32_t c : lods->children)
            shell->lodTypes.emplace_back(nodes[c].text);
    item.Extras().shell = std::move(shell);
}

class Checker {
public:
    explicit Checker(const std::vector<Node>& nodes) : m_nodes(nodes) {}

    bool Check(std::string& error) {
        for (size_t i = 1; i < m_nodes.size(); ++i) {
            const Node& node = m_nodes[i];
            if (!CheckPlace(node) || (node.type == Node::List && !CheckElement(node))) {
                error = Where(m_failed ? *m_failed : node) + ": " + m_error;
                return false;
            }
        }
        return true;
    }

private:
    bool Fail(const Node& node, std::string what) {
        m_failed = &node;
        m_error = std::move(what);
        return false;
    }

    Context ContextOf(const Node& list) const {
        ContentKind kind;
        if (&list == &m_nodes[0] || Is(list, Element::Segment) || Is(list, Element::External))
            return Context::Segment;
        if (IsKind(list, ContentKind::Camera)) return Context::Camera;
        if (KindOfElement(list.text, kind) && IsGeometry(kind)) return Context::Geometry;
        if (KindOfElement(list.text, kind) &&
            (kind == ContentKind::Include || kind == ContentKind::Style ||
             kind == ContentKind::NamedStyle || kind == ContentKind::Reference))
            return Context::Link;
        return Context::Payload;
    }

    // Whether an element may stand where it stands.
    bool CheckPlace(const Node& node) {
        if (node.type != Node::List)
            return node.parent == 0 ? Fail(node, "a value outside any element") : true;
        const Node& parent = m_nodes[node.parent];
        Context context = ContextOf(parent);
        ContentKind kind;
        bool known = KindOfElement(node.text, kind) && kind != ContentKind::StaticModel &&
                     kind != ContentKind::Segment;
        std::string_view name = node.text;
        bool payload = IsPayload(node) || IsShellDetail(node);
        if (!known && !payload && name != "" && !Is(node, Element::Segment) &&
            !Is(node, Element::External) && !Is(node, Element::Key))
            return Fail(node, "unknown element \"" + std::string(node.text) + "\"");
        bool ok = false;
        switch (context) {
        case Context::Segment:
            ok = Is(node, Element::Segment) || Is(node, Element::Key) ||
                 (Is(node, Element::External) && node.parent == 0) || known;
            break;
        case Context::Geometry:
            ok = (IsPayload(node) && !Is(node, Element::Item)) ||
                 (IsShellDetail(node) && IsKind(parent, ContentKind::Shell)) ||
                 Is(node, Element::Key) ||
                 (known && (IsAttribute(kind) || kind == ContentKind::Reference));
            break;
        case Context::Link:
            ok = Is(node, Element::Key) || (known && IsAttribute(kind)) ||
                 (Is(node, Element::Item) && IsKind(parent, ContentKind::Reference));
            break;
        case Context::Camera:
            ok = name.empty();
            break;
        case Context::Payload:
            ok = Is(node, Element::Points) && IsKind(parent, ContentKind::ClipRegion);
            break;
        }
        if (!ok && name.empty()) return Fail(node, "a bare ( ... ) belongs only in a (Camera");
        if (!ok && node.parent == 0)
            return Fail(node, "(" + std::string(node.text) + " does not belong at the top");
        if (!ok)
            return Fail(node, "(" + std::string(node.text) + " does not belong in (" +
                                  std::string(parent.text));
        return true;
    }

    // The values of an element (its strings, atoms and tuples, not its nested elements), checked
    // against a pattern: s string, n number, i integer, t tuple of three numbers, w number or
    // string, r string or (Item ...), p (Points ...); a final '?' makes the last one optional.
    bool Values(const Node& node, std::string_view pattern) {
        std::vector<const Node*> values;
        for (uint32_t c : node.children) {
            const Node& child = m_nodes[c];
            bool value = child.type != Node::List || child.text.empty() ||
                         Is(child, Element::Item) ||
                         (Is(child, Element::Points) && IsKind(node, ContentKind::ClipRegion));
            if (value) values.push_back(&child);
        }
        bool optional = !pattern.empty() && pattern.back() == '?';
        if (optional) pattern.remove_suffix(1);
        if (values.size() > pattern.size() || values.size() + (optional ? 1 : 0) < pattern.size())
            return Fail(node,
                        "(" + std::string(node.text) + " takes " + Describe(pattern, optional));
        for (size_t i = 0; i < values.size(); ++i) {
            const Node& v = *values[i];
            bool ok = false;
            switch (pattern[i]) {
            case 's':
                ok = v.type == Node::String;
                break;
            case 'n':
                ok = IsNumber(v);
                break;
            case 'i':
                ok = IsInteger(v);
                break;
            case 'w':
                ok = v.type == Node::String || IsNumber(v);
                break;
            case 't':
                ok = v.type == Node::List && v.text.empty();
                break;
            case 'r':
                ok = v.type == Node::String || Is(v, Element::Item);
                break;
            case 'p':
                ok = Is(v, Element::Points);
                break;
            }
            if (!ok)
                return Fail(v,
                            "(" + std::string(node.text) + " takes " + Describe(pattern, optional));
        }
        return true;
    }

    static std::string Describe(std::string_view pattern, bool optional) {
        static const char* const kWords[] = {"a string",
                                             "a number",
                                             "an integer",
                                             "a point",
                                             "a number or a string",
                                             "a path or an (Item ...)",
                                             "(Points ...)"};
        std::string text;
        for (size_t i = 0; i < pattern.size(); ++i) {
            size_t w = std::string_view("snitwrp").find(pattern[i]);
            text += (i ? ", " : "") + std::string(kWords[w]);
        }
        if (optional) text += " (the last may be left out)";
        return text.empty() ? "nothing" : text;
    }

    bool Numbers(const Node& node, size_t multiple, bool integers) {
        for (uint32_t c : node.children)
            if (!(integers ? IsInteger(m_nodes[c]) : IsNumber(m_nodes[c])))
                return Fail(m_nodes[c], "\"" + std::string(m_nodes[c].text) + "\" is not " +
                                            (integers ? "an integer" : "a number"));
        if (node.children.size() % multiple)
            return Fail(node, "points need three coordinates each");
        return true;
    }

    bool CheckElement(const Node& node) {
        if (node.text.empty()) {
            if (!Numbers(node, 1, false)) return false;
            return node.children.size() == 3 ? true : Fail(node, "a point takes three numbers");
        }
        if (Is(node, Element::Points)) return Numbers(node, 3, false);
        if (Is(node, Element::Values)) return Numbers(node, 1, false);
        if (Is(node, Element::Ints) || Is(node, Element::Regions) ||
            Is(node, Element::EdgeVisibilities))
            return Numbers(node, 1, true);
        if (Is(node, Element::FaceColors) || Is(node, Element::VertexNormals))
            return Numbers(node, 3, false);
        if (Is(node, Element::Lods)) {
            for (uint32_t c : node.children)
                if (m_nodes[c].type != Node::String) return Fail(m_nodes[c], "(Lods takes strings");
            return true;
        }
        if (Is(node, Element::String)) return Values(node, "s");
        if (Is(node, Element::Item)) return Values(node, "si");
        if (Is(node, Element::Key)) return Values(node, "is?");
        if (Is(node, Element::External)) {
            if (!Values(node, "s")) return false;
            return Str(node).starts_with("/") ? true
                                              : Fail(node, "an (External needs an absolute path");
        }
        if (Is(node, Element::Segment)) {
            if (!Values(node, "s")) return false;
            std::string name = Str(node);
            bool reserved = name == "." || name == ".." || name == "*" || name == "..." ||
                            name == "...." || name.find('/') != std::string::npos ||
                            (!name.empty() && name.front() == '@');
            return reserved ? Fail(node, "\"" + name + "\" cannot be a segment name") : true;
        }
        ContentKind kind;
        KindOfElement(node.text, kind);
        if (IsGeometry(kind)) {
            Geometry item(kind);
            FillGeometry(m_nodes, node, item);
            return IsWellFormed(item)
                       ? true
                       : Fail(node, "(" + std::string(node.text) + " does not hold what a " +
                                        std::string(TypeWord(kind)) + " needs");
        }
        switch (kind) {
        case ContentKind::Include:
        case ContentKind::Style:
        case ContentKind::NamedStyle:
            return Values(node, "ss?");
        case ContentKind::Reference:
            return Values(node, "rss?");
        case ContentKind::ShaderDefinition:
            return Values(node, "sss");
        case ContentKind::UserValue:
        case ContentKind::UserIndex:
            return Values(node, kind == ContentKind::UserIndex ? "ii" : "i");
        case ContentKind::UserData:
            return Values(node, "is");
        case ContentKind::ConditionalAction:
            return Values(node, "sss");
        case ContentKind::Camera:
            return Values(node, "tttnnsn?");
        case ContentKind::ClipRegion:
            return Values(node, "ps");
        case ContentKind::EdgeWeight:
        case ContentKind::LineWeight:
        case ContentKind::MarkerSize:
            return Values(node, "w");
        case ContentKind::TextSpacing:
            return Values(node, "n");
        case ContentKind::TextPath:
            return Values(node, "nnn");
        case ContentKind::Window:
            return Values(node, "nnnn");
        case ContentKind::ModellingMatrix:
        case ContentKind::TextureMatrix:
            return Values(node, "nnnnnnnnnnnnnnnn");
        default:
            return Values(node, IsDefinition(kind) ? "ss" : "s");
        }
    }

    std::string Str(const Node& node) const {
        for (uint32_t c : node.children)
            if (m_nodes[c].type == Node::String) return std::string(m_nodes[c].text);
        return {};
    }

    const std::vector<Node>& m_nodes;
    const Node* m_failed = nullptr;
    std::string m_error;
};

// --- Loading: checked nodes into the database ----------------------------------------------------

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
            // Nameless segments are numbered in file order, as the writer numbered them.
            if (index != 0 && Is(node, Element::Segment) && Value(node, 0).text.empty())
                m_nameless.push_back(segment);
            // Subsegments are loaded after their parent's other contents, in file order.
            std::vector<std::pair<size_t, Slot>> children;
            for (uint32_t c : node.children) {
                const Node& child = m_nodes[c];
                if (Is(child, Element::Segment)) {
                    children.emplace_back(c, m_db.FindOrMakeChild(segment, Value(child, 0).text));
                } else if (Is(child, Element::External)) {
                    Slot external = m_db.ResolvePathFrom(m_db.Root(), Value(child, 0).text, true);
                    if (external != kNoSlot) children.emplace_back(c, external);
                } else {
                    LoadItem(child, segment, segment);
                }
            }
            if (index != 0) ApplyKey(node, segment);
            for (auto it = children.rbegin(); it != children.rend(); ++it)
                pending.push_back(*it);
        }
        // Targets are found once everything is loaded: they may come later in the file.
        for (const Deferred& d : m_deferred)
            Resolve(d);
    }

private:
    // The n-th value (string, atom or tuple) of a list.
    const Node& Value(const Node& node, size_t n) const {
        static const Node kNone{Node::Atom, Element::Unknown, ContentKind::Count, 0, 0, 0, {}, {}};
        size_t seen = 0;
        for (uint32_t c : node.children) {
            const Node& child = m_nodes[c];
            if (child.type == Node::List && !child.text.empty()) continue;
            if (seen++ == n) return child;
        }
        return kNone;
    }

    const Node* Child(const Node& node, Element element) const {
        return ChildOf(m_nodes, node, element);
    }

    std::vector<HC_POINT> PointsOf(const Node* points) const {
        std::vector<HC_POINT> result;
        if (!points) return result;
        const auto& c = points->children;
        for (size_t i = 0; i + 2 < c.size(); i += 3)
            result.push_back(
                {FloatOf(m_nodes[c[i]]), FloatOf(m_nodes[c[i + 1]]), FloatOf(m_nodes[c[i + 2]])});
        return result;
    }

    void LoadItem(const Node& node, Slot segment, Slot owner) {
        ContentKind kind;
        if (node.type != Node::List || !KindOfElement(node.text, kind)) return; // Key, payload
        if (IsAttribute(kind)) {
            LoadAttribute(node, kind, owner);
        } else if (IsDefinition(kind)) {
            LoadDefinition(node, kind, segment);
        } else if (IsGeometry(kind)) {
            LoadGeometry(node, kind, segment);
        } else {
            LoadLink(node, kind, segment, owner);
        }
    }

    void LoadAttribute(const Node& node, ContentKind kind, Slot owner) {
        Attribute& a = m_db.ObtainAttribute(owner, kind);
        switch (kind) {
        case ContentKind::UserValue:
            a.integer = IntegerOf(Value(node, 0));
            break;
        case ContentKind::UserIndex: {
            auto value = static_cast<uintptr_t>(IntegerOf(Value(node, 1)));
            std::string bytes(sizeof value, '\0');
            std::memcpy(bytes.data(), &value, sizeof value);
            a.entries[static_cast<long>(IntegerOf(Value(node, 0)))] = bytes;
            break;
        }
        case ContentKind::UserData:
            a.entries[static_cast<long>(IntegerOf(Value(node, 0)))] = Value(node, 1).text;
            break;
        case ContentKind::ConditionalAction:
            a.actions.push_back({std::string(Value(node, 0).text), std::string(Value(node, 1).text),
                                 std::string(Value(node, 2).text)});
            break;
        case ContentKind::Camera: {
            a.numbers.clear();
            for (size_t t = 0; t < 3; ++t)
                for (uint32_t c : Value(node, t).children)
                    a.numbers.push_back(FloatOf(m_nodes[c]));
            a.numbers.push_back(FloatOf(Value(node, 3)));
            a.numbers.push_back(FloatOf(Value(node, 4)));
            a.numbers.push_back(FloatOf(Value(node, 6)));
            a.text = Value(node, 5).text;
            break;
        }
        case ContentKind::ClipRegion:
            a.points = PointsOf(Child(node, Element::Points));
            a.text = Value(node, 0).text;
            break;
        case ContentKind::EdgeWeight:
        case ContentKind::LineWeight:
        case ContentKind::MarkerSize:
            if (Value(node, 0).type == Node::String) {
                a.numbers = {-1.0f};
                a.text = Value(node, 0).text;
            } else {
                a.numbers = {FloatOf(Value(node, 0))};
            }
            break;
        case ContentKind::TextSpacing:
        case ContentKind::TextPath:
        case ContentKind::Window:
        case ContentKind::ModellingMatrix:
        case ContentKind::TextureMatrix:
            a.numbers.clear();
            for (uint32_t c : node.children)
                a.numbers.push_back(FloatOf(m_nodes[c]));
            break;
        default:
            if (IsOptionString(kind)) {
                m_db.RemoveAttribute(owner, kind);
                if (!Value(node, 0).text.empty()) m_db.SetText(owner, kind, Value(node, 0).text);
                return;
            }
            a.text = Value(node, 0).text;
            break;
        }
        m_db.AttributeChanged(owner, kind);
    }

    void LoadDefinition(const Node& node, ContentKind kind, Slot segment) {
        Definition definition;
        definition.name = Value(node, 0).text;
        if (kind == ContentKind::NamedStyleDefinition) {
            m_deferred.push_back({&node, segment, kNoSlot});
            return;
        }
        definition.text = Value(node, 1).text;
        definition.source = Value(node, 2).text;
        m_db.Define(segment, kind, std::move(definition));
    }

    void LoadGeometry(const Node& node, ContentKind kind, Slot segment) {
        Geometry* geometry = m_db.AddGeometry(segment, kind);
        if (!geometry) return;
        FillGeometry(m_nodes, node, *geometry);
        LoadNested(node, geometry->slot, segment);
    }

    void LoadLink(const Node& node, ContentKind kind, Slot segment, Slot owner) {
        Slot link = kNoSlot;
        if (kind == ContentKind::NamedStyle) {
            link = m_db.AddNamedStyle(owner, Value(node, 0).text, Value(node, 1).text);
        } else {
            // Aimed at the root until the whole file is loaded.
            size_t first = Child(node, Element::Item) ? 0 : 1;
            link = m_db.AddLink(owner, kind, m_root, Value(node, first).text,
                                Value(node, first + 1).text);
            m_deferred.push_back({&node, segment, link});
        }
        LoadNested(node, link, segment);
    }

    // Attributes, keys and attached references nested in an item.
    void LoadNested(const Node& node, Slot item, Slot segment) {
        if (item == kNoSlot) return;
        for (uint32_t c : node.children)
            LoadItem(m_nodes[c], segment, item);
        ApplyKey(node, item);
    }

    void ApplyKey(const Node& node, Slot slot) {
        const Node* key = Child(node, Element::Key);
        if (!key) return;
        std::string scope(Value(*key, 1).text);
        m_db.Renumber(slot, IntegerOf(Value(*key, 0)), scope.empty() ? "global" : scope);
    }

    // What waits for the end of the load: a link's target (link set) or a named style's source.
    struct Deferred {
        const Node* node;
        Slot segment;
        Slot link;
    };

    // A path of the file, where "@#n" levels name the file's n-th nameless segment.
    std::string Translate(std::string_view path) const {
        std::string result;
        for (size_t start = 0; start <= path.size();) {
            size_t slash = std::min(path.find('/', start), path.size());
            std::string_view level = path.substr(start, slash - start);
            if (level.starts_with("@#")) {
                size_t n = std::strtoul(std::string(level.substr(2)).c_str(), nullptr, 10);
                result +=
                    n < m_nameless.size() ? "@" + KeyText(OriginalKey(m_nameless[n])) : "@none";
            } else {
                result += level;
            }
            if (slash < path.size()) result += '/';
            start = slash + 1;
        }
        return result;
    }

    Slot SegmentAt(std::string_view path, bool create) {
        return m_db.ResolvePathFrom(m_root, Translate(path), create);
    }

    void Resolve(const Deferred& d) {
        const Node& node = *d.node;
        if (d.link == kNoSlot) {
            Definition definition;
            definition.name = Value(node, 0).text;
            definition.segment = SegmentAt(Value(node, 1).text, true);
            if (definition.segment != kNoSlot)
                m_db.Define(d.segment, ContentKind::NamedStyleDefinition, std::move(definition));
            return;
        }
        Slot target = kNoSlot;
        if (const Node* item = Child(node, Element::Item)) {
            const Segment* owner = m_db.GetSegment(SegmentAt(Value(*item, 0).text, false));
            long long index = IntegerOf(Value(*item, 1));
            target = owner ? owner->geometry.first : kNoSlot;
            while (target != kNoSlot && index-- > 0)
                target = m_db.Next(target);
            if (target == kNoSlot)
                ReportError(Where(*item) + ": the referenced item does not exist");
        } else {
            target = SegmentAt(Value(node, 0).text, true);
        }
        if (target == kNoSlot)
            m_db.DeleteObject(d.link);
        else
            m_db.SetLinkTarget(d.link, target);
    }

    Database& m_db;
    const std::vector<Node>& m_nodes;
    Slot m_root = kNoSlot;
    std::vector<Deferred> m_deferred;
    std::vector<Slot> m_nameless;
};

} // namespace

namespace {

// A metafile's text, parsed and checked: loading it cannot fail.
bool Prepare(std::string_view text, ParsedFile& file, std::string& error) {
    return Parse(text, file, error) && Checker(file.nodes).Check(error);
}

// Metafiles are read whole; a larger file is refused rather than exhausting memory (its nodes
// take several times its size).
constexpr std::uintmax_t kMaxMetafileBytes = std::uintmax_t(1) << 30;

bool ReadFileText(std::string_view file, std::string& text, std::string& error) {
    const std::string name(file);
    auto fail = [&](const std::string& why) {
        error = "cannot read \"" + name + "\": " + why;
        return false;
    };
    std::error_code code;
    const auto status = std::filesystem::status(name, code);
    if (code) return fail(code.message());
    if (std::filesystem::is_directory(status)) return fail("it is a directory");
    if (std::filesystem::is_regular_file(status)) {
        const std::uintmax_t size = std::filesystem::file_size(name, code);
        if (!code && size > kMaxMetafileBytes)
            return fail("it holds " + std::to_string(size) +
                        " bytes, more than a metafile may (1 GiB)");
    }
    std::ifstream in{name, std::ios::binary};
    if (!in) return fail(std::strerror(errno));
    std::stringstream content;
    content << in.rdbuf();
    if (in.bad()) return fail("the file could not be read to its end");
    text = std::move(content).str();
    // Every metafile written begins with its header line: an empty one is a save that failed.
    if (text.empty()) return fail("the file is empty");
    return true;
}

} // namespace

bool LoadMetafileText(Database& db, std::string_view text, Slot segment, std::string& error) {
    ParsedFile file;
    if (!Prepare(text, file, error)) return false;
    if (!db.GetSegment(segment)) {
        error = "the segment to load into does not exist";
        return false;
    }
    Loader(db, file.nodes).Load(segment);
    return true;
}

bool LoadMetafileFile(Database& db, std::string_view file, Slot segment, std::string& error) {
    std::string text;
    if (!ReadFileText(file, text, error)) return false;
    if (LoadMetafileText(db, text, segment, error)) return true;
    error = std::string(file) + ": " + error;
    return false;
}

// The file is read and checked before the segment is made, so that a file that cannot be read
// or holds a mistake changes nothing.
Slot ReadMetafile(Session& session, std::string_view file, std::string_view segment,
                  std::string_view /*options*/) {
    std::string text, error;
    ParsedFile parsed;
    if (!ReadFileText(file, text, error)) {
        ReportError(error);
        return kNoSlot;
    }
    if (!Prepare(text, parsed, error)) {
        ReportError(std::string(file) + ": " + error);
        return kNoSlot;
    }
    Slot slot = session.ResolvePath(segment.empty() ? "." : segment, true);
    if (slot == kNoSlot) return kNoSlot;
    Loader(session.Db(), parsed.nodes).Load(slot);
    return slot;
}

} // namespace hc
