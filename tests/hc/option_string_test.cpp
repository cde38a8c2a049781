#include <gtest/gtest.h>

#include "hc/option_string.h"

namespace {

using hc::OptionList;

TEST(OptionStrings, ParseNormalisesNamesAndKeepsValues) {
    struct {
        const char* text;
        const char* formatted;
    } const rows[] = {
        {"faces=red", "faces=red"},
        {" Faces = Red ,  EDGES=blue", "faces=Red,edges=blue"},
        {"no  Hidden   Surfaces", "no hidden surfaces"},
        {"static model", "static model"},
        {"a=1, a=2", "a=2"},
        {"lod=(levels=3, ratio=0.5), x", "lod=(levels=3, ratio=0.5),x"},
        {"name=\"a, b = c\"", "name=\"a, b = c\""},
        {"", ""},
        {" , ,", ""},
    };
    for (const auto& row : rows) {
        OptionList list;
        ASSERT_TRUE(OptionList::Parse(row.text, list)) << row.text;
        EXPECT_EQ(list.Format(), row.formatted) << row.text;
    }
}

TEST(OptionStrings, TextsThatDoNotParseLeaveTheListEmpty) {
    for (const char* text : {"a=(b", "a=b)", "=red", "a=\"open", "(x)=1"}) {
        OptionList list;
        OptionList::Parse("kept=1", list);
        EXPECT_FALSE(OptionList::Parse(text, list)) << text;
        EXPECT_TRUE(list.Empty()) << text;
    }
}

TEST(OptionStrings, MergeOverridesOptionByOptionAndTellsOnFromOff) {
    OptionList parent, child;
    ASSERT_TRUE(OptionList::Parse("faces=red, edges=blue, static model", parent));
    ASSERT_TRUE(OptionList::Parse("edges=green, no static model, markers=off", child));
    parent.Merge(child);
    EXPECT_EQ(parent.Format(), "faces=red,edges=green,no static model,markers=off");
    EXPECT_FALSE(parent.IsOn("static model"));
    EXPECT_FALSE(parent.IsOn("markers"));
    EXPECT_TRUE(parent.IsOn("faces"));
    EXPECT_FALSE(parent.IsOn("lines"));
}

} // namespace
