#include <gtest/gtest.h>
#include <string>

#include "components/information_text.h"

namespace obsidra::components {
namespace {

ComponentId Text(std::string text) {
    ComponentId id;
    id.text = std::move(text);
    return id;
}

DisplayStyle FullStyle() {
    DisplayStyle style;
    style.flags = 0x0010;
    style.red = 255;
    style.green = 0;
    style.blue = 128;
    style.alpha = 255;
    style.zBuffer = 7;
    style.textureName = "砖.png";
    style.textSize = 2.5f;
    style.textSizeType = 1;
    style.textAlignmentType = 2;
    return style;
}

PartData Part(std::string id, std::string name, std::string type,
              std::map<std::string, std::string, Utf16Less> parameters = {}) {
    return {Text(std::move(id)), std::move(name), std::move(type), std::move(parameters)};
}

struct TextRow {
    const char* name;
    std::string text;
    std::string expected;
};

// The records as the tree's nodes show them are checked in the selection tests; these are the
// values the sample building does not have.
void ExpectTexts(std::initializer_list<TextRow> rows) {
    for (const TextRow& row : rows)
        EXPECT_EQ(row.text, row.expected) << row.name;
}

DisplayStyle Style(void (*change)(DisplayStyle&)) {
    DisplayStyle style = FullStyle();
    change(style);
    return style;
}

GeometryRecord WithParts() {
    GeometryRecord record{7, true, {}, {}, {}};
    record.parts.emplace(2, Part("P9", "隐藏", "x"));
    record.parts.emplace(1, Part("P1", "板", "楼板", {{"厚度", "200"}, {"材质", "混凝土"}}));
    record.parts.emplace(1, Part("P2", "梁", "", {}));
    record.parts.emplace(0, Part("P0", "隐藏", "x"));
    return record;
}

GeometryRecord WithPartitions() {
    GeometryRecord record{7, false, {}, {0, 0}, {}};
    record.partitions.push_back({Text("Z2"), "二区", "结构"});
    record.partitions.push_back({Text("Z1"), "一区", ""});
    return record;
}

TEST(InformationText, RecordsAndStyles) {
    GeometryRecord otherKindOnly{7, false, {}, {}, {}};
    otherKindOnly.parts.emplace(2, Part("P9", "隐藏", "x", {{"a", "b"}}));
    ExpectTexts({
        {"order zero", OrderText(0), "0"},
        {"largest set order", OrderText(0xFFFFFFFE), "4294967294"},
        {"full style: channels on the 0..0.1 scale, texture, text settings",
         InformationText(MinorCategoryRecord{9, "外墙", 1, FullStyle()}),
         "小类名:外墙\r\n小类Order:1\r\n"
         "颜色(R:0.100000, G:0.000000, B:0.050196, A:0.100000)\r\nZBuffer:7\r\n"
         "纹理名：砖.png\r\n"
         "文字大小：2.500000\r\n文字大小类型:1\r\n文字对齐类型:2\r\n"},
        {"no texture line without a texture name",
         DisplayStyleText(Style([](DisplayStyle& style) { style.textureName.clear(); })),
         "颜色(R:0.100000, G:0.000000, B:0.050196, A:0.100000)\r\nZBuffer:7\r\n"
         "文字大小：2.500000\r\n文字大小类型:1\r\n文字对齐类型:2\r\n"},
        {"only bits 0 to 3 set: not a style",
         DisplayStyleText(Style([](DisplayStyle& style) { style.flags = 0x000F; })), ""},
        {"highest flag bit alone is a style", DisplayStyleText(Style([](DisplayStyle& style) {
             style = {};
             style.flags = 0x8000;
         })),
         "颜色(R:0.000000, G:0.000000, B:0.000000, A:0.000000)\r\nZBuffer:0\r\n"
         "文字大小：0.000000\r\n文字大小类型:0\r\n文字对齐类型:0\r\n"},
        {"attribute with a main component of none",
         InformationText(AttributeRecord{Text("A1"), "外墙属性", "普通", Text("none"), "墙"}),
         "属性Guid:A1\r\n属性名:外墙属性\r\n分区类型:普通\r\n主构件Guid:\r\n主构件类型:墙"},
        {"component with connected components in list order",
         InformationText(
             ComponentRecord{5, Text("QT-1"), {Text("QT-3"), Text("QT-2")}, Text("QT-0"), {}}),
         "构件Guid：QT-1\r\n主构件Guid：QT-0\r\n连接构件Guid:QT-3\r\n连接构件Guid:QT-2\r\n"},
        {"component whose ids are none",
         InformationText(ComponentRecord{5, Text("none"), {Text("none")}, Text("none"), {}}),
         "构件Guid：\r\n主构件Guid：\r\n连接构件Guid:\r\n"},
        {"whole geometry with a negative 64-bit id",
         InformationText(GeometryRecord{-0x123456789AB, true, {}, {}, {}}),
         "几何ID：-1250999896491\r\n全几何\r\n"},
        {"kind-1 parts in key order with parameters by name; other kinds add nothing",
         InformationText(WithParts()),
         "几何ID：7\r\n全几何\r\n"
         "零件信息：\r\nGuid:P1\r\n名称：板\r\n类型：楼板\r\n参数:厚度=200\r\n参数:材质=混凝土\r\n"
         "零件信息：\r\nGuid:P2\r\n名称：梁\r\n类型：\r\n"},
        {"only parts of another kind: no part lines", InformationText(otherKindOnly),
         "几何ID：7\r\n非全几何\r\n"},
        {"index: index Id first, then management Id",
         InformationText(GeometryRecord{7, false, {}, {3, 0xFFFFFFFE}, {}}),
         "几何ID：7\r\n非全几何\r\n几何索引Id：4294967294\r\n几何索引管理Id:3\r\n"},
        {"no index when the management Id is missing",
         InformationText(GeometryRecord{7, false, {}, {0xFFFFFFFF, 3}, {}}),
         "几何ID：7\r\n非全几何\r\n"},
        {"no index when the index Id is missing",
         InformationText(GeometryRecord{7, false, {}, {3, 0xFFFFFFFF}, {}}),
         "几何ID：7\r\n非全几何\r\n"},
        {"partitions in list order, after the index", InformationText(WithPartitions()),
         "几何ID：7\r\n非全几何\r\n几何索引Id：0\r\n几何索引管理Id:0\r\n"
         "分区Guid:Z2\r\n分区名：二区\r\n分区类型：结构\r\n"
         "分区Guid:Z1\r\n分区名：一区\r\n分区类型：\r\n"},
    });
}

TEST(GeometryRecordCopy, PartitionTypesComeFromTheProjectMap) {
    GeometryData geometry;
    geometry.id = 3;
    geometry.partitions = {{Text("Z1"), "一区"}, {Text("Z2"), "二区"}};
    const std::map<ComponentId, std::string> types{{Text("Z2"), "结构"}, {Text("Z3"), "装饰"}};

    const GeometryRecord record = MakeGeometryRecord(geometry, types);

    ASSERT_EQ(record.partitions.size(), 2u);
    EXPECT_EQ(record.partitions[0].type, "");
    EXPECT_EQ(record.partitions[1].type, "结构");
}

} // namespace
} // namespace obsidra::components
