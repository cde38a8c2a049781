#include <gtest/gtest.h>

#include "host/mesh/json_reader.h"

namespace obsidra::host::mesh {
namespace {

TEST(JsonReaderTest, ReadsTheStructureAndNumbers) {
    const auto root = ParseJson(R"( {"a": [1, 2.5e1, "x\"]"], "b": {"c": true, "d": null}} )");
    ASSERT_TRUE(root);
    const JsonValue* a = root->Member("a");
    ASSERT_TRUE(a && a->items.size() == 3);
    EXPECT_EQ(a->items[1].Count(), 25u);
    EXPECT_EQ(a->items[2].kind, JsonValue::Kind::String);
    EXPECT_EQ(a->Item(&a->items[0]), &a->items[1]);
    EXPECT_FALSE(a->Item(&a->items[1])) << "no item 25";
    EXPECT_EQ(root->Member("b")->Member("c")->kind, JsonValue::Kind::Bool);
    EXPECT_FALSE(root->Member("z"));
}

TEST(JsonReaderTest, RefusesWhatIsNotJson) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    for (const std::string text : {"", "{", R"({"a" 1})", R"({"a":1,})", "[1 2]", R"(["open)",
                                   "tru", "{} {}", "-", "\"a\nb\"", deep.c_str()}) {
        SCOPED_TRACE(text.substr(0, 20));
        EXPECT_FALSE(ParseJson(text));
    }
    EXPECT_FALSE(ParseJson("[-1]")->items[0].Count());
    EXPECT_FALSE(ParseJson("[1.5]")->items[0].Count());
}

} // namespace
} // namespace obsidra::host::mesh
