#include <random>

#include "hc/database.h"
#include "hc/geometry_data.h"
#include "hc/metafile.h"
#include "hc/session.h"
#include "hc_test.h"

namespace {

// Builds a random scene below the open segment: subsegments (some nameless), every attribute
// kind, every geometry kind's data, definitions, includes, styles, named styles, references.
// Every geometry item of examples/showcase.hmf, one of each kind.
const std::vector<std::unique_ptr<hc::Geometry>>& Templates() {
    static const std::vector<std::unique_ptr<hc::Geometry>> templates = [] {
        hc::Database scratch;
        std::string error;
        hc::LoadMetafileText(scratch, ReadFile(OBSIDRA_SOURCE_DIR "/examples/showcase.hmf"),
                             scratch.Root(), error);
        std::vector<std::unique_ptr<hc::Geometry>> items;
        std::vector<std::string> unknown;
        for (hc::Found found : scratch.Contents(
                 scratch.Root(), hc::Filter::Parse("geometry", unknown), true, false)) {
            const auto& source = static_cast<const hc::Geometry&>(*scratch.Get(found.slot));
            items.push_back(std::make_unique<hc::Geometry>(source.type));
            hc::CopyGeometryData(source, *items.back());
        }
        return items;
    }();
    return templates;
}

class RandomScene {
public:
    explicit RandomScene(unsigned seed) : m_random(seed) {}

    void Build(int depth) {
        for (int i = Next(0, 4); i > 0; --i)
            Item();
        if (depth == 0) return;
        for (int i = Next(0, 3); i > 0; --i) {
            HC_KEY child =
                HC_Open_Segment(Next(0, 4) == 0 ? "" : ("s" + std::to_string(Next(0, 99))).c_str());
            m_segments.push_back(child);
            Build(depth - 1);
            HC_Close_Segment();
        }
    }

private:
    int Next(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    float Real() { return std::uniform_real_distribution<float>(-100, 100)(m_random); }
    HC_POINT Point() { return {Real(), Real(), Real()}; }
    std::string Word() {
        static const char* const kWords[] = {"say \\\"hi\\\"", "a b",        "x=\"q,\"", "ünï",
                                             "tab\there",      "line\nbreak"};
        return kWords[Next(0, 5)];
    }

    void Item() {
        hc::Database& db = hc::Current();
        switch (Next(0, 16)) {
        case 0:
            HC_Set_Color(
                ("faces=" + std::string(Next(0, 1) ? "red" : "blue") + ",edges=green").c_str());
            break;
        case 1:
            HC_Set_User_Options(("k" + std::to_string(Next(0, 9)) + "=\"" + Word() + "\"").c_str());
            break;
        case 2: {
            float m[16];
            for (float& v : m)
                v = Real();
            HC_Set_Modelling_Matrix(m);
            break;
        }
        case 3: {
            HC_POINT p = Point(), t = Point(), u{0, 1, 0};
            HC_Set_Camera(&p, &t, &u, 10, 5, Next(0, 1) ? "orthographic" : "stretched");
            if (Next(0, 1)) HC_Set_Camera_Near_Limit(0.125);
            break;
        }
        case 4:
            Next(0, 1) ? HC_Set_Line_Weight(Next(0, 5)) : HC_Set_Variable_Line_Weight("1.5 pixels");
            HC_Set_Text_Alignment("<^");
            HC_Set_Heuristics("static model");
            HC_Set_User_Value(Next(-1000, 1000));
            break;
        case 5: {
            HC_POINT region[] = {Point(), Point(), Point()};
            HC_Set_Polygonal_Clip_Region(3, region, "window");
            HC_Set_Window(-1, 1, -2, 2);
            HC_Set_Text_Path(1, 2, 3);
            break;
        }
        case 6:
            HC_Set_User_Index(Next(0, 50),
                              reinterpret_cast<void*>(static_cast<uintptr_t>(Next(1, 1 << 20))));
            HC_Set_User_Data(Next(0, 50), "\x01\x00\xff", 3);
            HC_Set_Conditional_Action(("type" + std::to_string(Next(0, 3)) + " = go").c_str(),
                                      "cond");
            break;
        case 7:
            HC_Define_Local_Texture(("t" + std::to_string(Next(0, 5))).c_str(), "source=x.png");
            HC_Define_Glyph("g", 3, "\x02\x7f\x80");
            HC_Define_Shader("sh", "opt", "src {\n}");
            break;
        case 8:
            HC_Define_Line_Style("ls", "dash");
            HC_Define_Font("f", "size=3");
            HC_Define_Named_Style("ns", "/styles/a");
            HC_Named_Style_Segment("ns");
            break;
        case 9:
            HC_Conditional_Include("/library/part", Next(0, 1) ? "" : "night");
            HC_Style_Segment("/styles/a");
            break;
        case 10:
            if (!m_segments.empty())
                HC_Filtered_Reference_By_Key(m_segments[Next(0, int(m_segments.size()) - 1)], "c",
                                             "no lines");
            break;
        case 11:
            if (!m_items.empty())
                HC_Reference_Geometry_By_Key(m_items[Next(0, int(m_items.size()) - 1)]);
            break;
        default: {
            // An item of any kind, copied from the bundled showcase.
            const hc::Geometry& model = *Templates()[Next(0, int(Templates().size()) - 1)];
            hc::Geometry* item = db.AddGeometry(hc::CurrentSession().CurrentSegment(), model.type);
            hc::CopyGeometryData(model, *item);
            HC_KEY key = db.KeyOf(item->slot);
            if (Next(0, 3) == 0) {
                HC_Open_Geometry(key);
                HC_Set_Visibility("off");
                HC_Close_Geometry();
            }
            if (Next(0, 5) == 0)
                HC_Renumber_Key(key, 1000 + static_cast<HC_KEY>(m_items.size()), "global");
            m_items.push_back(key);
        }
        }
    }

    std::mt19937 m_random;
    std::vector<HC_KEY> m_segments;
    std::vector<HC_KEY> m_items;
};

std::string Save(const char* segment) {
    hc::Database& db = hc::Current();
    return hc::MetafileText(db, hc::CurrentSession().ResolvePath(segment, false),
                            hc::MetafileOptions::Parse("save state = textures"));
}

class MetafileRoundTrip : public HcTest {
protected:
    // Every item below a segment, segments by name (nameless ones as "@", since their keys
    // change on reading), as one text.
    static std::string Census(const char* segment) {
        std::string census;
        HC_Open_Segment(segment);
        for (auto& [type, key] : List("...", "everything, static model")) {
            census += type;
            if (type == "segment") {
                char name[HC_TEXT_MAX];
                HC_Parse_String(Path(key).c_str(), "/", -1, name);
                census += name[0] == '@' ? std::string(" @") : " " + std::string(name);
            }
            census += ";";
        }
        HC_Close_Segment();
        return census;
    }
};

TEST_F(MetafileRoundTrip, RandomScenesReadBackTheSame) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        HC_Reset_System();
        HC_Create_Segment("/library/part");
        HC_Create_Segment("/styles/a");
        HC_Open_Segment("/scene");
        RandomScene(seed).Build(3);
        HC_Close_Segment();
        TakeErrors();
        std::string text = Save("/scene");
        std::string census = Census("/scene");
        size_t objects = hc::Current().LiveObjects();

        HC_Reset_System();
        HC_Create_Segment("/library/part");
        HC_Create_Segment("/styles/a");
        std::string error;
        hc::Database& db = hc::Current();
        ASSERT_TRUE(
            hc::LoadMetafileText(db, text, hc::CurrentSession().ResolvePath("/scene", true), error))
            << "seed " << seed << ": " << error;
        EXPECT_EQ(Save("/scene"), text) << "seed " << seed;
        EXPECT_EQ(Census("/scene"), census) << "seed " << seed;
        EXPECT_EQ(db.LiveObjects(), objects) << "seed " << seed;
        EXPECT_TRUE(TakeErrors().empty()) << "seed " << seed;
    }
}

TEST_F(MetafileRoundTrip, OptionsFollowIncludesOutsideAndSaveTextures) {
    HC_Open_Segment("/outside/part");
    Triangle();
    HC_Include_Segment("/outside/more");
    HC_Close_Segment();
    HC_Open_Segment("/outside/more");
    HC_Insert_Marker(1, 2, 3);
    HC_Close_Segment();
    HC_Open_Segment("/scene");
    HC_Include_Segment("/outside/part");
    HC_Define_Local_Texture("wood", "source=wood.png");
    HC_Close_Segment();
    hc::Database& db = hc::Current();
    hc::Slot scene = hc::CurrentSession().ResolvePath("/scene", false);
    std::string plain = hc::MetafileText(db, scene);
    std::string full = hc::MetafileText(
        db, scene, hc::MetafileOptions::Parse("follow cross-references, save state = textures"));
    EXPECT_EQ(plain.find("External"), std::string::npos);
    EXPECT_EQ(plain.find("Texture_Definition"), std::string::npos);
    EXPECT_NE(full.find("(External \"/outside/part\""), std::string::npos);
    EXPECT_NE(full.find("(External \"/outside/more\""), std::string::npos) << "followed in turn";
    EXPECT_NE(full.find("(Texture_Definition \"wood\" \"source=wood.png\")"), std::string::npos);

    HC_Reset_System();
    std::string error;
    ASSERT_TRUE(
        hc::LoadMetafileText(db, full, hc::CurrentSession().ResolvePath("/copy", true), error))
        << error;
    HC_Open_Segment("/outside");
    EXPECT_EQ(List("...", "shells, markers").size(), 2u);
    HC_Close_Segment();
}

} // namespace
