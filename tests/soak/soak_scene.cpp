#include "soak/soak_scene.h"

#include <algorithm>
#include <set>

namespace obsidra::soak {

namespace {

int Next(std::mt19937& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

template <typename T, size_t N>
const T& Pick(std::mt19937& random, const T (&items)[N]) {
    return items[Next(random, 0, static_cast<int>(N) - 1)];
}

float Real(std::mt19937& random) {
    return std::uniform_real_distribution<float>(-50, 50)(random);
}

HC_POINT Point(std::mt19937& random) {
    return {Real(random), Real(random), Real(random)};
}

// One item or attribute in the open segment; includes and styles name library segments.
void RandomContent(std::mt19937& random, const std::vector<HC_KEY>& library,
                   std::vector<HC_KEY>& segments, std::vector<HC_KEY>& items) {
    static const char* const kColors[] = {"faces=red", "edges=blue, faces=green", "red",
                                          "markers=(r=0.5 g=0.2 b=1)"};
    static const char* const kVisibilities[] = {"off", "faces=off", "edges=on, markers=off"};
    switch (Next(random, 0, 13)) {
    case 0:
        HC_Set_Color(Pick(random, kColors));
        break;
    case 1:
        HC_Set_Visibility(Pick(random, kVisibilities));
        break;
    case 2: {
        float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        for (int i = 12; i < 15; ++i)
            matrix[i] = Real(random);
        matrix[0] = matrix[5] = matrix[10] = 1 + Next(random, 0, 3);
        HC_Set_Modelling_Matrix(matrix);
        break;
    }
    case 3:
        HC_Set_User_Options(("k" + std::to_string(Next(random, 0, 9)) + "=v").c_str());
        break;
    case 4: {
        HC_POINT points[] = {Point(random), Point(random), Point(random), Point(random)};
        int faces[] = {3, 0, 1, 2, 3, 1, 2, 3};
        items.push_back(HC_Insert_Shell(4, points, 8, faces));
        break;
    }
    case 5:
        items.push_back(HC_Insert_Text(Real(random), Real(random), 0, "label"));
        break;
    case 6: {
        HC_POINT points[] = {Point(random), Point(random), Point(random)};
        items.push_back(HC_Insert_Polyline(3, points));
        break;
    }
    case 7:
        items.push_back(HC_Insert_Marker(Real(random), Real(random), Real(random)));
        break;
    case 8: {
        HC_POINT a = Point(random), b = Point(random), c = Point(random);
        items.push_back(HC_Insert_Circle(&a, &b, &c));
        break;
    }
    case 9:
        HC_Define_Line_Style(("ls" + std::to_string(Next(random, 0, 3))).c_str(), "4 on, 2 off");
        HC_Define_Local_Texture("t", "source=x.png");
        break;
    case 10:
        HC_Include_Segment_By_Key(library[Next(random, 0, int(library.size()) - 1)]);
        break;
    case 11:
        HC_Style_Segment_By_Key(library[Next(random, 0, int(library.size()) - 1)]);
        break;
    case 12:
        HC_Define_Named_Style("look", "/soak styles/look");
        HC_Named_Style_Segment("look");
        break;
    default:
        if (!items.empty() && Next(random, 0, 1))
            HC_Reference_Geometry_By_Key(items[Next(random, 0, int(items.size()) - 1)]);
        else if (!segments.empty())
            HC_Reference_Geometry_By_Key(segments[Next(random, 0, int(segments.size()) - 1)]);
        break;
    }
}

} // namespace

TreeSession::TreeSession()
    : m_model(std::make_unique<HBaseModel>()), m_view(std::make_unique<HBaseView>(m_model.get())) {
    Rebuild();
}

TreeSession::~TreeSession() {
    m_tree.reset();
    m_view.reset();
    m_model.reset();
}

void TreeSession::Rebuild() {
    m_tree.reset();
    m_tree = std::make_unique<HoopsSegmentTree>(m_view.get(), &m_graph, -1, &m_notifier);
    m_notifier.Clear();
}

std::vector<TreeGraphItem*> TreeSession::Nodes(size_t limit) const {
    std::vector<TreeGraphItem*> nodes;
    std::vector<TreeGraphItem*> pending{m_graph.GetRoot()};
    while (!pending.empty() && nodes.size() < limit) {
        TreeGraphItem* node = pending.back();
        pending.pop_back();
        if (!node) continue;
        nodes.push_back(node);
        for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling())
            pending.push_back(child);
    }
    return nodes;
}

void TreeSession::ExpandAll(int depth, int limit) {
    // One node at a time, found again from the top: an expansion may remake the nodes around
    // it, the expanded one too. A node tried once is not tried again, expanded or not.
    std::set<const TreeGraphItem*> tried;
    for (int expanded = 0; expanded < limit; ++expanded) {
        TreeGraphItem* next = nullptr;
        std::vector<std::pair<TreeGraphItem*, int>> pending{{m_tree->GetTopNode(), 0}};
        while (!pending.empty() && !next) {
            auto [node, level] = pending.back();
            pending.pop_back();
            if (!node) continue;
            if (!node->IsExpanded() && !tried.contains(node)) {
                next = node;
            } else if (level < depth) {
                for (TreeGraphItem* c = node->GetFirstChild(); c; c = c->GetNextSibling())
                    pending.push_back({c, level + 1});
            }
        }
        if (!next) return;
        tried.insert(next);
        m_tree->ExpandNode(next);
    }
}

std::vector<HC_KEY> Library() {
    std::vector<HC_KEY> parts;
    for (const char* name : {"/soak library/door", "/soak library/window", "/soak library/frame"}) {
        parts.push_back(HC_Open_Segment(name));
        if (HC_Show_Existence("geometry") == 0) {
            HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
            int faces[] = {3, 0, 1, 2};
            HC_Insert_Shell(3, points, 4, faces);
            HC_Set_Color("faces=grey");
        }
        HC_Close_Segment();
    }
    return parts;
}

void BuildRandomScene(HC_KEY segment, std::mt19937& random, int size) {
    HC_Open_Segment("/soak styles/look");
    HC_Set_Color("lines=yellow");
    HC_Close_Segment();
    const std::vector<HC_KEY> library = Library();
    std::vector<HC_KEY> segments{segment};
    std::vector<HC_KEY> items;
    HC_Open_Segment_By_Key(segment);
    for (int made = 0; made < size; ++made) {
        // A new segment below a random one made so far, filled with a few things.
        HC_KEY owner = segments[Next(random, 0, int(segments.size()) - 1)];
        HC_Open_Segment_By_Key(owner);
        const std::string name =
            Next(random, 0, 4) == 0 ? std::string() : "s" + std::to_string(Next(random, 0, 40));
        HC_KEY child = HC_Open_Segment(name.c_str());
        for (int n = Next(random, 0, 4); n > 0; --n)
            RandomContent(random, library, segments, items);
        HC_Close_Segment();
        HC_Close_Segment();
        segments.push_back(child);
        if (Next(random, 0, 9) == 0)
            HC_Renumber_Key(child, 5000 + made, Next(random, 0, 1) ? "global" : "local");
    }
    HC_Close_Segment();
}

std::string RandomText(std::mt19937& random) {
    static const char* const kTexts[] = {
        "faces=red",
        "edges=blue, no faces",
        "red",
        "off",
        "on",
        "markers=off, lines=on",
        "1 0 0 0 0 1 0 0 0 0 1 0 5 5 5 1",
        "1 2 3",
        "2.5",
        "-1",
        "0",
        "k1=v1, k2=\"two words\"",
        "4 on, 2 off",
        "source=x.png",
        "renamed",
        "s1",
        "a/b",
        "..",
        "/",
        "*",
        "@FFFFFFFFFFFFFFF3",
        "",
        " ",
        "(",
        ")",
        "faces=(",
        "faces=red$$faces=blue",
        "red$$green",
        "k1$$unset",
        "s1$$delete",
        "label$$delete",
        "shell$$delete",
        "1e40 1e40",
        "nan nan nan",
        "very long text very long text very long text very long text very long text",
        "\xff\xfe\x01",
        "ünï",
        "text \"quoted\"",
    };
    std::string text = Pick(random, kTexts);
    // Now and then a mangled form: cut, doubled, or a random byte put in.
    switch (Next(random, 0, 9)) {
    case 0:
        text = text.substr(0, Next(random, 0, int(text.size())));
        break;
    case 1:
        text += text;
        break;
    case 2:
        text.insert(Next(random, 0, int(text.size())), 1, static_cast<char>(Next(random, 1, 255)));
        break;
    default:
        break;
    }
    return text;
}

std::vector<std::string> AttributeNames(const HoopsSegmentTree& tree) {
    std::vector<std::string> names;
    for (const auto& attribute : tree.GetDescriptorLists().segmentAttributes)
        names.emplace_back(attribute->GetName());
    return names;
}

} // namespace obsidra::soak
