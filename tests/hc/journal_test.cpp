#include <functional>
#include <tuple>

#include <obsidra/hc_journal.h>

#include "hc_test.h"

namespace {

// /a (coloured, a texture, a shell, an include of /lib) with a child b; /other includes /a/b.
// made is what an edit made, if anything.
struct Scene {
    HC_KEY root, a, b, lib, other, shell, include, outsideInclude, made;
};
using S = Scene;

} // namespace

class Journal : public HcTest {
protected:
    static Scene Build();
};

Scene Journal::Build() {
    Scene s{};
    s.root = HC_Create_Segment("/");
    s.lib = HC_Create_Segment("/lib");
    s.a = HC_Open_Segment("/a");
    HC_Set_Color("faces=red");
    HC_Define_Local_Texture("wood", "source=wood.png");
    s.shell = Triangle();
    s.include = HC_Include_Segment("/lib");
    s.b = HC_Create_Segment("b");
    HC_Close_Segment();
    s.other = HC_Open_Segment("/other");
    s.outsideInclude = HC_Include_Segment("/a/b");
    HC_Close_Segment();
    return s;
}

namespace {

// What a change says, revision apart.
using Seen = std::tuple<HC_KEY, HC_KEY, HC_CHANGE_KIND>;
// What a change must say, by the scene's names for its keys.
struct Want {
    HC_KEY Scene::*key;
    HC_KEY Scene::*segment;
    HC_CHANGE_KIND kind;
};

std::vector<Seen> ChangesSince(HC_REVISION since) {
    int count = HC_Show_Changes_Since(since, nullptr, 0);
    std::vector<HC_CHANGE> changes(size_t(std::max(count, 0)));
    HC_Show_Changes_Since(since, changes.data(), count);
    std::vector<Seen> seen;
    for (const HC_CHANGE& c : changes)
        seen.emplace_back(c.key, c.segment, c.kind);
    return seen;
}

void InA(const Scene& s, const std::function<void()>& edit) {
    HC_Open_Segment_By_Key(s.a);
    edit();
    HC_Close_Segment();
}

} // namespace

TEST_F(Journal, EveryKindOfEditIsRecordedWithItsKeyAndNoOpsAreNot) {
    static const HC_POINT point{2, 2, 2};
    const struct {
        const char* name;
        std::function<void(Scene&)> edit;
        std::vector<Want> expected;
    } rows[] = {
        {"create segment",
         [](S& s) { s.made = HC_Create_Segment("/a/c"); },
         {{&S::made, &S::a, HC_CHANGE_SEGMENT_CREATED}}},
        {"delete a subtree: its root once, and a link into it from outside",
         [](S& s) { HC_Delete_By_Key(s.a); },
         {{&S::a, &S::root, HC_CHANGE_DELETED},
          {&S::outsideInclude, &S::other, HC_CHANGE_DELETED}}},
        {"rename",
         [](S&) { HC_Rename_Segment("/a/b", "/a/bb"); },
         {{&S::b, &S::a, HC_CHANGE_MOVED}}},
        {"move an item",
         [](S& s) { HC_Move_By_Key(s.shell, "/lib"); },
         {{&S::shell, &S::lib, HC_CHANGE_MOVED}}},
        {"copy",
         [](S& s) {
             HC_Copy_Segment("/a/b", "/copy");
             s.made = HC_Create_Segment("/copy");
         },
         {{&S::made, &S::root, HC_CHANGE_SEGMENT_CREATED}}},
        {"set an attribute, even to the value it has",
         [](S& s) { InA(s, [] { HC_Set_Color("faces=red"); }); },
         {{&S::a, &S::root, HC_CHANGE_ATTRIBUTES}}},
        {"unset an attribute",
         [](S& s) { InA(s, [] { HC_UnSet_Color(); }); },
         {{&S::a, &S::root, HC_CHANGE_ATTRIBUTES}}},
        {"insert geometry",
         [](S& s) { InA(s, [&] { s.made = HC_Insert_Line(0, 0, 0, 1, 1, 1); }); },
         {{&S::made, &S::a, HC_CHANGE_GEOMETRY}}},
        {"edit geometry",
         [](S& s) { HC_Edit_Shell_Points(s.shell, 3, 0, 1, &point); },
         {{&S::shell, &S::a, HC_CHANGE_GEOMETRY}}},
        {"set a shell's face colours",
         [](S& s) { HC_MSet_Face_Colors_By_Value(s.shell, 0, 1, &point); },
         {{&S::shell, &S::a, HC_CHANGE_GEOMETRY}}},
        {"delete geometry",
         [](S& s) { HC_Delete_By_Key(s.shell); },
         {{&S::shell, &S::a, HC_CHANGE_DELETED}}},
        {"define and undefine",
         [](S& s) {
             InA(s, [] {
                 HC_Define_Local_Texture("stone", "source=stone.png");
                 HC_UnDefine_Local_Texture("wood");
             });
         },
         {{&S::a, &S::root, HC_CHANGE_DEFINITIONS}, {&S::a, &S::root, HC_CHANGE_DEFINITIONS}}},
        {"include",
         [](S& s) { InA(s, [&] { s.made = HC_Style_Segment("/lib"); }); },
         {{&S::made, &S::a, HC_CHANGE_LINKS}}},
        {"named style",
         [](S& s) { InA(s, [&] { s.made = HC_Named_Style_Segment("plain"); }); },
         {{&S::made, &S::a, HC_CHANGE_LINKS}}},
        {"renumber and back",
         [](S& s) {
             HC_Renumber_Key(s.b, 77, "global");
             HC_Renumber_Key(77, s.b, "global");
         },
         {{&S::b, &S::a, HC_CHANGE_KEYS}, {&S::b, &S::a, HC_CHANGE_KEYS}}},
        {"flush",
         [](S&) { HC_Flush_Contents("/a", "geometry, attributes"); },
         {{&S::shell, &S::a, HC_CHANGE_DELETED}, {&S::a, &S::root, HC_CHANGE_ATTRIBUTES}}},
        // Calls that change nothing.
        {"reads, opens and searches",
         [](S& s) {
             InA(s, [] { HC_Create_Segment("b"); });
             HcTest::List("/...", "everything");
         },
         {}},
        {"dead key",
         [](S& s) {
             HC_Delete_By_Key(s.b);
             HC_Delete_By_Key(s.b);
             HC_Move_By_Key(s.b, "/lib");
             HC_Renumber_Key(s.b, 5, "global");
             HC_Edit_Shell_Points(s.b, 0, 0, 0, nullptr);
         },
         {{&S::b, &S::a, HC_CHANGE_DELETED}, {&S::outsideInclude, &S::other, HC_CHANGE_DELETED}}},
        {"failed calls",
         [](S& s) {
             HC_Rename_Segment("/a/b", "/lib/..."); // a reserved name
             HC_Move_By_Key(s.a, "/a/b");           // below itself
             HC_Edit_Shell_Points(s.shell, 9, 0, 1, &point);
             InA(s, [] { HC_Set_Color("faces=(("); });
         },
         {}},
        {"nothing to unset, delete, undefine, flush or renumber",
         [](S& s) {
             InA(s, [] {
                 HC_UnSet_Visibility();
                 HC_UnDefine_Local_Texture("marble");
             });
             HC_Delete_Segment("/nothing*");
             HC_Flush_Contents("/a/b", "geometry");
             HC_Renumber_Key(s.b, s.b, "global");
         },
         {}},
    };
    for (const auto& row : rows) {
        HC_Reset_System();
        Scene scene = Build();
        const HC_REVISION before = HC_Show_Revision();
        row.edit(scene);
        std::vector<Seen> expected;
        for (const Want& want : row.expected)
            expected.emplace_back(scene.*want.key, scene.*want.segment, want.kind);
        EXPECT_EQ(ChangesSince(before), expected) << row.name;
        EXPECT_EQ(HC_Show_Revision(), before + HC_REVISION(expected.size())) << row.name;
        TakeErrors();
    }
}

namespace {

struct Heard {
    std::vector<std::vector<Seen>> calls; // one per notification; a -1 count as an empty one

    static void Listen(const HC_CHANGE* changes, int count, void* user) {
        std::vector<Seen> call;
        for (int i = 0; i < count; ++i)
            call.emplace_back(changes[i].key, changes[i].segment, changes[i].kind);
        static_cast<Heard*>(user)->calls.push_back(call);
    }
};

} // namespace

TEST_F(Journal, ListenersHearEachCallThatChangedSomethingOnceUntilUndefined) {
    const Scene s = Build();
    Heard heard;
    HC_Define_Change_Listener(&Heard::Listen, &heard);
    HC_Define_Change_Listener(&Heard::Listen, &heard);
    HC_Delete_By_Key(s.a); // two changes in one call
    HC_Create_Segment("/lib");
    HC_KEY made = HC_Create_Segment("/lib/x");
    ASSERT_EQ(heard.calls.size(), 2u);
    EXPECT_EQ(heard.calls[0], (std::vector<Seen>{{s.a, s.root, HC_CHANGE_DELETED},
                                                 {s.outsideInclude, s.other, HC_CHANGE_DELETED}}));
    EXPECT_EQ(heard.calls[1], (std::vector<Seen>{{made, s.lib, HC_CHANGE_SEGMENT_CREATED}}));

    // A reset is heard as "refresh everything"; the listener stays.
    HC_Reset_System();
    ASSERT_EQ(heard.calls.size(), 3u);
    EXPECT_TRUE(heard.calls[2].empty());

    HC_UnDefine_Change_Listener(&Heard::Listen, &heard);
    HC_Create_Segment("/after");
    EXPECT_EQ(heard.calls.size(), 3u);
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(Journal, QuestionsBeyondTheHistoryAnswerRefreshEverything) {
    const HC_REVISION start = HC_Show_Revision();
    HC_Open_Segment("/a");
    for (int i = 0; i <= HC_CHANGE_HISTORY; ++i)
        HC_Set_Color("faces=red");
    HC_Close_Segment();
    const HC_REVISION now = HC_Show_Revision();
    EXPECT_EQ(now - start, HC_CHANGE_HISTORY + 2);
    EXPECT_EQ(HC_Show_Changes_Since(start, nullptr, 0), -1);
    EXPECT_EQ(HC_Show_Changes_Since(now - HC_CHANGE_HISTORY, nullptr, 0), HC_CHANGE_HISTORY);
    HC_CHANGE last[2];
    EXPECT_EQ(HC_Show_Changes_Since(now - 1, last, 2), 1);
    EXPECT_EQ(last[0].revision, now);
    EXPECT_EQ(last[0].kind, HC_CHANGE_ATTRIBUTES);
    EXPECT_TRUE(TakeErrors().empty());

    EXPECT_EQ(HC_Show_Changes_Since(now + 1, nullptr, 0), -1);
    EXPECT_EQ(TakeErrors().size(), 1u) << "a revision not reached is reported";

    HC_Reset_System();
    EXPECT_EQ(HC_Show_Changes_Since(now, nullptr, 0), -1) << "the reset forgot the history";
    EXPECT_EQ(HC_Show_Changes_Since(HC_Show_Revision(), nullptr, 0), 0);
    const HC_REVISION reset = HC_Show_Revision();
    HC_Reset_System();
    EXPECT_EQ(HC_Show_Revision(), reset) << "a reset of what nothing changed changes nothing";
}
