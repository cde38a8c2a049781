#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "hc/error.h"
#include "hc/metafile.h"
#include "hc/metafile_syntax.h"
#include "hc/text.h"

namespace hc {

using namespace metafile;

namespace {

struct Node {
    enum Type { List, String, Atom } type;
    std::string text; // a list's element name ("" for a bare tuple such as a camera's point)
    std::vector<size_t> children;
    size_t parent;
    int line;
    int column;
};

std::string Where(const Node& node) {
    return "line " + std::to_string(node.line) + ", column " + std::to_string(node.column);
}

// --- Parsing: text to a flat node list (node 0 is the file), without recursion -------------------

bool Parse(std::string_view text, std::vector<Node>& nodes, std::string& error) {
    nodes.assign(1, Node{Node::List, "", {}, 0, 1, 1});
    std::vector<size_t> open{0};
    int line = 1;
    size_t lineStart = 0;
    auto fail = [&](int atLine, size_t at, const std::string& what) {
        error =
            "line " + std::to_string(atLine) + ", column " + std::to_string(at + 1) + ": " + what;
        return false;
    };
    auto add = [&](Node node) {
        node.parent = open.back();
        nodes[open.back()].children.push_back(nodes.size());
        nodes.push_back(std::move(node));
    };
    for (size_t i = 0; i < text.size();) {
        char c = text[i];
        int column = static_cast<int>(i - lineStart) + 1;
        if (c == '\n') {
            ++line;
            lineStart = ++i;
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
            std::string name(text.substr(start, i - start));
            if (!name.empty() && !std::isalpha(static_cast<unsigned char>(name[0]))) {
                i = start; // a tuple of numbers such as (1 2 3)
                name.clear();
            }
            add({Node::List, std::move(name), {}, 0, line, column});
            open.push_back(nodes.size() - 1);
        } else if (c == ')') {
            if (open.size() == 1) return fail(line, i - lineStart, "\")\" closes nothing");
            open.pop_back();
            ++i;
        } else if (c == '"') {
            std::string value;
            int startLine = line;
            size_t startColumn = i - lineStart;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\n') {
                    ++line;
                    lineStart = i + 1;
                }
                if (text[i] != '\\' || i + 1 >= text.size()) {
                    value += text[i];
                    continue;
                }
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
                    value += static_cast<char>(
                        std::strtol(std::string(text.substr(i + 1, 2)).c_str(), nullptr, 16));
                    i += 2;
                } else {
                    value += e;
                }
            }
            if (i >= text.size()) return fail(startLine, startColumn, "the string is not closed");
            ++i;
            add({Node::String,
                 std::move(value),
                 {},
                 0,
                 startLine,
                 static_cast<int>(startColumn) + 1});
        } else {
            size_t start = i;
            while (i < text.size() && !std::isspace(static_cast<unsigned char>(text[i])) &&
                   text[i] != '(' && text[i] != ')' && text[i] != '"' && text[i] != ';')
                ++i;
            add({Node::Atom, std::string(text.substr(start, i - start)), {}, 0, line, column});
        }
    }
    if (open.size() > 1) {
        const Node& unclosed = nodes[open.back()];
        error = Where(unclosed) + ": (" + unclosed.text + " is not closed";
        return false;
    }
    return true;
}

// --- Checking: every element before anything is loaded -----------------------------------------

bool IsNumber(const Node& node) {
    if (node.type != Node::Atom || node.text.empty()) return false;
    char* end = nullptr;
    (void)std::strtod(node.text.c_str(), &end);
    return *end == '\0';
}

bool IsInteger(const Node& node) {
    if (node.type != Node::Atom || node.text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    (void)std::strtoll(node.text.c_str(), &end, 10);
    return *end == '\0' && errno == 0;
}

bool IsElement(const Node& node, std::string_view name) {
    return node.type == Node::List && EqualsIgnoreCase(node.text, name);
}

enum class Context { Segment, Geometry, Link, Camera, Payload };

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
        if (&list == &m_nodes[0] || IsElement(list, "Segment") || IsElement(list, "External"))
            return Context::Segment;
        if (IsElement(list, "Camera")) return Context::Camera;
        if (KindOfElement(list.text, kind) && IsGeometry(kind)) return Context::Geometry;
        if (KindOfElement(list.text, kind) &&
            (kind == ContentKind::Include || kind == ContentKind::Style ||
             kind == ContentKind::NamedStyle || kind == ContentKind::Reference))
            return Context::Link;
        return Context::Payload;
    }

    // Whether an element may stand where it stands.
    bool CheckPlace(const Node& node) {
        const Node& parent = m_nodes[node.parent];
        Context context = ContextOf(parent);
        if (node.type != Node::List) {
            if (node.parent == 0) return Fail(node, "a value outside any element");
            return true;
        }
        ContentKind kind;
        bool known = KindOfElement(node.text, kind) && kind != ContentKind::StaticModel &&
                     kind != ContentKind::Segment;
        std::string_view name = node.text;
        bool payload = IsElement(node, "Points") || IsElement(node, "Ints") ||
                       IsElement(node, "Values") || IsElement(node, "String") ||
                       IsElement(node, "Item");
        if (!known && !payload && name != "" && !IsElement(node, "Segment") &&
            !IsElement(node, "External") && !IsElement(node, "Key"))
            return Fail(node, "unknown element \"" + node.text + "\"");
        bool ok = false;
        switch (context) {
        case Context::Segment:
            ok = IsElement(node, "Segment") || IsElement(node, "Key") ||
                 (IsElement(node, "External") && node.parent == 0) || known;
            break;
        case Context::Geometry:
            ok = payload || IsElement(node, "Key") ||
                 (known && (IsAttribute(kind) || kind == ContentKind::Reference));
            break;
        case Context::Link:
            ok = IsElement(node, "Key") || (known && IsAttribute(kind)) ||
                 (IsElement(node, "Item") && IsElement(parent, "Reference"));
            break;
        case Context::Camera:
            ok = name.empty();
            break;
        case Context::Payload:
            ok = IsElement(node, "Points") && IsElement(parent, "Clip_Region");
            break;
        }
        if (!ok && name.empty()) return Fail(node, "a bare ( ... ) belongs only in a (Camera");
        if (!ok && node.parent == 0)
            return Fail(node, "(" + node.text + " does not belong at the top");
        if (!ok) return Fail(node, "(" + node.text + " does not belong in (" + parent.text);
        return true;
    }

    // The values of an element (its strings, atoms and tuples, not its nested elements), checked
    // against a pattern: s string, n number, i integer, t tuple of three numbers, w number or
    // string, r string or (Item ...), p (Points ...); a final '?' makes the last one optional.
    bool Values(const Node& node, std::string_view pattern) {
        std::vector<const Node*> values;
        for (size_t c : node.children) {
            const Node& child = m_nodes[c];
            bool value = child.type != Node::List || child.text.empty() ||
                         IsElement(child, "Item") ||
                         (IsElement(child, "Points") && IsElement(node, "Clip_Region"));
            if (value) values.push_back(&child);
        }
        bool optional = !pattern.empty() && pattern.back() == '?';
        if (optional) pattern.remove_suffix(1);
        if (values.size() > pattern.size() || values.size() + (optional ? 1 : 0) < pattern.size())
            return Fail(node, "(" + node.text + " takes " + Describe(pattern, optional));
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
                ok = v.type == Node::String || IsElement(v, "Item");
                break;
            case 'p':
                ok = IsElement(v, "Points");
                break;
            }
            if (!ok) return Fail(v, "(" + node.text + " takes " + Describe(pattern, optional));
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
        for (size_t c : node.children)
            if (!(integers ? IsInteger(m_nodes[c]) : IsNumber(m_nodes[c])))
                return Fail(m_nodes[c], "\"" + m_nodes[c].text + "\" is not " +
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
        if (IsElement(node, "Points")) return Numbers(node, 3, false);
        if (IsElement(node, "Values")) return Numbers(node, 1, false);
        if (IsElement(node, "Ints")) return Numbers(node, 1, true);
        if (IsElement(node, "String")) return Values(node, "s");
        if (IsElement(node, "Item")) return Values(node, "si");
        if (IsElement(node, "Key")) return Values(node, "is?");
        if (IsElement(node, "External")) {
            if (!Values(node, "s")) return false;
            return Str(node).starts_with("/") ? true
                                              : Fail(node, "an (External needs an absolute path");
        }
        if (IsElement(node, "Segment")) {
            if (!Values(node, "s")) return false;
            std::string name = Str(node);
            bool reserved = name == "." || name == ".." || name == "*" || name == "..." ||
                            name == "...." || name.find('/') != std::string::npos ||
                            (!name.empty() && name.front() == '@');
            return reserved ? Fail(node, "\"" + name + "\" cannot be a segment name") : true;
        }
        ContentKind kind;
        KindOfElement(node.text, kind);
        if (IsGeometry(kind)) return true;
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
        for (size_t c : node.children)
            if (m_nodes[c].type == Node::String) return m_nodes[c].text;
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
            if (IsElement(node, "Segment") && Value(node, 0).text.empty())
                m_nameless.push_back(segment);
            // Subsegments are loaded after their parent's other contents, in file order.
            std::vector<std::pair<size_t, Slot>> children;
            for (size_t c : node.children) {
                const Node& child = m_nodes[c];
                if (IsElement(child, "Segment")) {
                    children.emplace_back(c, m_db.FindOrMakeChild(segment, Value(child, 0).text));
                } else if (IsElement(child, "External")) {
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
        static const Node kNone{Node::Atom, "", {}, 0, 0, 0};
        size_t seen = 0;
        for (size_t c : node.children) {
            const Node& child = m_nodes[c];
            if (child.type == Node::List && !child.text.empty()) continue;
            if (seen++ == n) return child;
        }
        return kNone;
    }

    float FloatOf(const Node& node) const { return std::strtof(node.text.c_str(), nullptr); }
    long long IntegerOf(const Node& node) const {
        return std::strtoll(node.text.c_str(), nullptr, 10);
    }

    const Node* Child(const Node& node, std::string_view name) const {
        for (size_t c : node.children)
            if (IsElement(m_nodes[c], name)) return &m_nodes[c];
        return nullptr;
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
            a.actions.push_back({Value(node, 0).text, Value(node, 1).text, Value(node, 2).text});
            break;
        case ContentKind::Camera: {
            a.numbers.clear();
            for (size_t t = 0; t < 3; ++t)
                for (size_t c : Value(node, t).children)
                    a.numbers.push_back(FloatOf(m_nodes[c]));
            a.numbers.push_back(FloatOf(Value(node, 3)));
            a.numbers.push_back(FloatOf(Value(node, 4)));
            a.numbers.push_back(FloatOf(Value(node, 6)));
            a.text = Value(node, 5).text;
            break;
        }
        case ContentKind::ClipRegion:
            a.points = PointsOf(Child(node, "Points"));
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
            for (size_t c : node.children)
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
        geometry->points = PointsOf(Child(node, "Points"));
        if (const Node* ints = Child(node, "Ints"))
            for (size_t c : ints->children)
                geometry->ints.push_back(static_cast<int>(IntegerOf(m_nodes[c])));
        if (const Node* values = Child(node, "Values"))
            for (size_t c : values->children)
                geometry->Extras().values.push_back(FloatOf(m_nodes[c]));
        if (const Node* text = Child(node, "String"))
            geometry->Extras().text = Value(*text, 0).text;
        LoadNested(node, geometry->slot, segment);
    }

    void LoadLink(const Node& node, ContentKind kind, Slot segment, Slot owner) {
        Slot link = kNoSlot;
        if (kind == ContentKind::NamedStyle) {
            link = m_db.AddNamedStyle(owner, Value(node, 0).text, Value(node, 1).text);
        } else {
            // Aimed at the root until the whole file is loaded.
            size_t first = Child(node, "Item") ? 0 : 1;
            link = m_db.AddLink(owner, kind, m_root, Value(node, first).text,
                                Value(node, first + 1).text);
            m_deferred.push_back({&node, segment, link});
        }
        LoadNested(node, link, segment);
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
        std::string scope = Value(*key, 1).text;
        // A local key is registered with its owner, which must be current while renumbering.
        Slot owner = m_db.OwnerSegment(slot);
        if (owner != kNoSlot) m_db.OpenSegmentByKey(m_db.KeyOf(owner));
        m_db.Renumber(m_db.KeyOf(slot), IntegerOf(Value(*key, 0)),
                      scope.empty() ? "global" : scope);
        if (owner != kNoSlot) m_db.CloseSegment();
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
        if (const Node* item = Child(node, "Item")) {
            const Segment* owner = m_db.GetSegment(SegmentAt(Value(*item, 0).text, false));
            long long index = IntegerOf(Value(*item, 1));
            target = owner ? owner->geometry.first : kNoSlot;
            while (target != kNoSlot && index-- > 0)
                target = m_db.Get(target)->next;
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

bool LoadMetafileText(Database& db, std::string_view text, Slot segment, std::string& error) {
    std::vector<Node> nodes;
    if (!Parse(text, nodes, error) || !Checker(nodes).Check(error)) return false;
    if (!db.GetSegment(segment)) {
        error = "the segment to load into does not exist";
        return false;
    }
    Loader(db, nodes).Load(segment);
    return true;
}

void WriteMetafile(Database& db, std::string_view segment, std::string_view file,
                   std::string_view options) {
    Slot slot = db.ResolvePath(segment, false);
    if (slot == kNoSlot) return;
    std::ofstream out{std::string(file), std::ios::binary};
    out << MetafileText(db, slot, MetafileOptions::Parse(options));
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
