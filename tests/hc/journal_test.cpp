#include <functional>
#include <tuple>

#include <obsidra/hc_journal.h>

#include "hc_test.h"

namespace {

// /a (coloured, a texture, a shell, an include of /lib) with a child b; /other includes /a/b.
struct Scene {
    HC_KEY root, a, b, lib, other, shell, include, outsideInclude;
};

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
    const HC_POINT point{2, 2, 2};
    const struct {
        const char* name;
        std::function<HC_KEY(const Scene&)> edit; // returns what it made, if anything
        std::function<std::vector<Seen>(const Scene&, HC_KEY made)> expected;
    } rows[] = {
        {"create segment", [](const Scene&) { return HC_Create_Segment("/a/c"); },
         [](const Scene& s, HC_KEY made) {
             return std::vector<Seen>{{made, s.a, HC_CHANGE_SEGMENT_CREATED}};
         }},
        {"delete a subtree: its root once, and a link into it from outside",
         [](const Scene& s) {
             HC_Delete_By_Key(s.a);
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.a, s.root, HC_CHANGE_DELETED},
                                      {s.outsideInclude, s.other, HC_CHANGE_DELETED}};
         }},
        {"rename",
         [](const Scene&) {
             HC_Rename_Segment("/a/b", "/a/bb");
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.b, s.a, HC_CHANGE_MOVED}};
         }},
        {"move an item",
         [](const Scene& s) {
             HC_Move_By_Key(s.shell, "/lib");
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.shell, s.lib, HC_CHANGE_MOVED}};
         }},
        {"copy",
         [](const Scene&) {
             HC_Copy_Segment("/a/b", "/copy");
             return HC_Create_Segment("/copy");
         },
         [](const Scene& s, HC_KEY made) {
             return std::vector<Seen>{{made, s.root, HC_CHANGE_SEGMENT_CREATED}};
         }},
        {"set an attribute, even to the value it has",
         [](const Scene& s) {
             InA(s, [] { HC_Set_Color("faces=red"); });
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.a, s.root, HC_CHANGE_ATTRIBUTES}};
         }},
        {"unset an attribute",
         [](const Scene& s) {
             InA(s, [] { HC_UnSet_Color(); });
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.a, s.root, HC_CHANGE_ATTRIBUTES}};
         }},
        {"insert geometry",
         [](const Scene& s) {
             HC_KEY made = 0;
             InA(s, [&] { made = HC_Insert_Line(0, 0, 0, 1, 1, 1); });
             return made;
         },
         [](const Scene& s, HC_KEY made) {
             return std::vector<Seen>{{made, s.a, HC_CHANGE_GEOMETRY}};
         }},
        {"edit geometry",
         [&point](const Scene& s) {
             HC_Edit_Shell_Points(s.shell, 3, 0, 1, &point);
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.shell, s.a, HC_CHANGE_GEOMETRY}};
         }},
        {"set a shell's face colours",
         [&point](const Scene& s) {
             HC_MSet_Face_Colors_By_Value(s.shell, 0, 1, &point);
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.shell, s.a, HC_CHANGE_GEOMETRY}};
         }},
        {"delete geometry",
         [](const Scene& s) {
             HC_Delete_By_Key(s.shell);
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.shell, s.a, HC_CHANGE_DELETED}};
         }},
        {"define and undefine",
         [](const Scene& s) {
             InA(s, [] {
                 HC_Define_Local_Texture("stone", "source=stone.png");
                 HC_UnDefine_Local_Texture("wood");
             });
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.a, s.root, HC_CHANGE_DEFINITIONS},
                                      {s.a, s.root, HC_CHANGE_DEFINITIONS}};
         }},
        {"include",
         [](const Scene& s) {
             HC_KEY made = 0;
             InA(s, [&] { made = HC_Style_Segment("/lib"); });
             return made;
         },
         [](const Scene& s, HC_KEY made) {
             return std::vector<Seen>{{made, s.a, HC_CHANGE_LINKS}};
         }},
        {"named style",
         [](const Scene& s) {
             HC_KEY made = 0;
             InA(s, [&] { made = HC_Named_Style_Segment("plain"); });
             return made;
         },
         [](const Scene& s, HC_KEY made) {
             return std::vector<Seen>{{made, s.a, HC_CHANGE_LINKS}};
         }},
        {"renumber and back",
         [](const Scene& s) {
             HC_Renumber_Key(s.b, 77, "global");
             HC_Renumber_Key(77, s.b, "global");
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.b, s.a, HC_CHANGE_KEYS}, {s.b, s.a, HC_CHANGE_KEYS}};
         }},
        {"flush",
         [](const Scene&) {
             HC_Flush_Contents("/a", "geometry, attributes");
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.shell, s.a, HC_CHANGE_DELETED},
                                      {s.a, s.root, HC_CHANGE_ATTRIBUTES}};
         }},
        // Calls that change nothing.
        {"reads, opens and searches",
         [](const Scene& s) {
             InA(s, [] { HC_Create_Segment("b"); });
             HcTest::List("/...", "everything");
             return HC_KEY(0);
         },
         [](const Scene&, HC_KEY) { return std::vector<Seen>{}; }},
        {"dead key",
         [](const Scene& s) {
             HC_Delete_By_Key(s.b);
             HC_KEY dead = s.b;
             HC_Delete_By_Key(dead);
             HC_Move_By_Key(dead, "/lib");
             HC_Renumber_Key(dead, 5, "global");
             HC_Edit_Shell_Points(dead, 0, 0, 0, nullptr);
             return HC_KEY(0);
         },
         [](const Scene& s, HC_KEY) {
             return std::vector<Seen>{{s.b, s.a, HC_CHANGE_DELETED},
                                      {s.outsideInclude, s.other, HC_CHANGE_DELETED}};
         }},
        {"failed calls",
         [&point](const Scene& s) {
             HC_Rename_Segment("/a/b", "/lib/..."); // a reserved name
             HC_Move_By_Key(s.a, "/a/b");           // below itself
             HC_Edit_Shell_Points(s.shell, 9, 0, 1, &point);
             InA(s, [] { HC_Set_Color("faces=(("); });
             return HC_KEY(0);
         },
         [](const Scene&, HC_KEY) { return std::vector<Seen>{}; }},
        {"nothing to unset, delete, undefine, flush or renumber",
         [](const Scene& s) {
             InA(s, [] {
                 HC_UnSet_Visibility();
                 HC_UnDefine_Local_Texture("marble");
             });
             HC_Delete_Segment("/nothing*");
             HC_Flush_Contents("/a/b", "geometry");
             HC_Renumber_Key(s.b, s.b, "global");
             return HC_KEY(0);
         },
         [](const Scene&, HC_KEY) { return std::vector<Seen>{}; }},
    };
    for (const auto& row : rows) {
        HC_Reset_System();
        const Scene scene = Build();
        const HC_REVISION before = HC_Show_Revision();
        const HC_KEY made = row.edit(scene);
        EXPECT_EQ(ChangesSince(before), row.expected(scene, made)) << row.name;
        EXPECT_EQ(HC_Show_Revision(), before + HC_REVISION(row.expected(scene, made).size()))
            << row.name;
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
