#include <functional>
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
    std::function<std::string()> make;
    std::string expected;
};

void ExpectTexts(std::initializer_list<TextRow> rows) {
    for (const TextRow& row : rows)
        EXPECT_EQ(row.make(), row.expected) << row.name;
}

TEST(InformationText, OrderText) {
    ExpectTexts({
        {"not set", [] { return OrderText(0xFFFFFFFF); }, "未设置"},
        {"zero", [] { return OrderText(0); }, "0"},
        {"largest set value", [] { return OrderText(0xFFFFFFFE); }, "4294967294"},
    });
}

TEST(InformationText, ProjectDisciplineAndCategories) {
    ExpectTexts({
        {"project",
         [] {
             return InformationText(ProjectRecord{9, "工程A", "住宅", 3});
         },
         "工程名：工程A\r\n工程类型：住宅\r\n工程Order:3\r\n"},
        {"project without order",
         [] {
             return InformationText(ProjectRecord{9, "", "", kOrderNotSet});
         },
         "工程名：\r\n工程类型：\r\n工程Order:未设置\r\n"},
        {"discipline",
         [] {
             return InformationText(DisciplineRecord{9, "建筑", 0});
         },
         "专业名：建筑\r\n专业Order：0\r\n"},
        {"major category",
         [] {
             return InformationText(MajorCategoryRecord{9, "墙体", 12});
         },
         "大类名：墙体\r\n大类Order:12\r\n"},
        {"minor category without style",
         [] {
             return InformationText(MinorCategoryRecord{9, "外墙", kOrderNotSet, {}});
         },
         "小类名:外墙\r\n小类Order:未设置\r\n"},
    });
}

TEST(InformationText, MinorCategoryStyle) {
    ExpectTexts({
        {"full style: channels on the 0..0.1 scale, texture, text settings",
         [] {
             return InformationText(MinorCategoryRecord{9, "外墙", 1, FullStyle()});
         },
         "小类名:外墙\r\n小类Order:1\r\n"
         "颜色(R:0.100000, G:0.000000, B:0.050196, A:0.100000)\r\nZBuffer:7\r\n"
         "纹理名：砖.png\r\n"
         "文字大小：2.500000\r\n文字大小类型:1\r\n文字对齐类型:2\r\n"},
        {"no texture line without a texture name",
         [] {
             DisplayStyle style = FullStyle();
             style.textureName.clear();
             return DisplayStyleText(style);
         },
         "颜色(R:0.100000, G:0.000000, B:0.050196, A:0.100000)\r\nZBuffer:7\r\n"
         "文字大小：2.500000\r\n文字大小类型:1\r\n文字对齐类型:2\r\n"},
        {"only bits 0 to 3 set: not a style",
         [] {
             DisplayStyle style = FullStyle();
             style.flags = 0x000F;
             return DisplayStyleText(style);
         },
         ""},
        {"highest flag bit alone is a style",
         [] {
             DisplayStyle style;
             style.flags = 0x8000;
             return DisplayStyleText(style);
         },
         "颜色(R:0.000000, G:0.000000, B:0.000000, A:0.000000)\r\nZBuffer:0\r\n"
         "文字大小：0.000000\r\n文字大小类型:0\r\n文字对齐类型:0\r\n"},
    });
}

TEST(InformationText, FloorAttributeAndComponent) {
    ExpectTexts({
        {"floor",
         [] {
             return InformationText(FloorRecord{9, "F1", 1, -3.25, 3.3});
         },
         "楼层名:F1\r\n楼层Order:1\r\n楼层底标高:-3.250000\r\n层高:3.300000\r\n"},
        {"attribute ends without a line end, so its count line continues it",
         [] {
             const AttributeRecord record{Text("A1"), "外墙属性", "普通", Text("none"), "墙"};
             return InformationText(record) + CountLine(NodeKind::Attribute, 2);
         },
         "属性Guid:A1\r\n属性名:外墙属性\r\n分区类型:普通\r\n主构件Guid:\r\n"
         "主构件类型:墙当前属性下构件数：2\r\n"},
        {"component with connected components in list order",
         [] {
             const ComponentRecord record{
                 5, Text("QT-1"), {Text("QT-3"), Text("QT-2")}, Text("QT-0"), {}};
             return InformationText(record);
         },
         "构件Guid：QT-1\r\n主构件Guid：QT-0\r\n连接构件Guid:QT-3\r\n连接构件Guid:QT-2\r\n"},
        {"component whose ids are none",
         [] {
             return InformationText(
                 ComponentRecord{5, Text("none"), {Text("none")}, Text("none"), {}});
         },
         "构件Guid：\r\n主构件Guid：\r\n连接构件Guid:\r\n"},
    });
}

TEST(InformationText, Geometry) {
    ExpectTexts({
        {"bare geometry",
         [] {
             return InformationText(GeometryRecord{-42, false, {}, {}, {}});
         },
         "几何ID：-42\r\n非全几何\r\n"},
        {"whole geometry with a 64-bit id",
         [] {
             return InformationText(GeometryRecord{0x123456789AB, true, {}, {}, {}});
         },
         "几何ID：1250999896491\r\n全几何\r\n"},
        {"kind-1 parts in key order with parameters by name; other kinds add nothing",
         [] {
             GeometryRecord record{7, true, {}, {}, {}};
             record.parts.emplace(2, Part("P9", "隐藏", "x"));
             record.parts.emplace(1,
                                  Part("P1", "板", "楼板", {{"厚度", "200"}, {"材质", "混凝土"}}));
             record.parts.emplace(1, Part("P2", "梁", "", {}));
             record.parts.emplace(0, Part("P0", "隐藏", "x"));
             return InformationText(record);
         },
         "几何ID：7\r\n全几何\r\n"
         "零件信息：\r\nGuid:P1\r\n名称：板\r\n类型：楼板\r\n参数:厚度=200\r\n参数:材质=混凝土\r\n"
         "零件信息：\r\nGuid:P2\r\n名称：梁\r\n类型：\r\n"},
        {"only parts of another kind: no part lines",
         [] {
             GeometryRecord record{7, false, {}, {}, {}};
             record.parts.emplace(2, Part("P9", "隐藏", "x", {{"a", "b"}}));
             return InformationText(record);
         },
         "几何ID：7\r\n非全几何\r\n"},
        {"index: index Id first, then management Id",
         [] {
             return InformationText(GeometryRecord{7, false, {}, {3, 0xFFFFFFFE}, {}});
         },
         "几何ID：7\r\n非全几何\r\n几何索引Id：4294967294\r\n几何索引管理Id:3\r\n"},
        {"no index when the management Id is missing",
         [] {
             return InformationText(GeometryRecord{7, false, {}, {0xFFFFFFFF, 3}, {}});
         },
         "几何ID：7\r\n非全几何\r\n"},
        {"no index when the index Id is missing",
         [] {
             return InformationText(GeometryRecord{7, false, {}, {3, 0xFFFFFFFF}, {}});
         },
         "几何ID：7\r\n非全几何\r\n"},
        {"partitions in list order, after the index",
         [] {
             GeometryRecord record{7, false, {}, {0, 0}, {}};
             record.partitions.push_back({Text("Z2"), "二区", "结构"});
             record.partitions.push_back({Text("Z1"), "一区", ""});
             return InformationText(record);
         },
         "几何ID：7\r\n非全几何\r\n几何索引Id：0\r\n几何索引管理Id:0\r\n"
         "分区Guid:Z2\r\n分区名：二区\r\n分区类型：结构\r\n"
         "分区Guid:Z1\r\n分区名：一区\r\n分区类型：\r\n"},
    });
}

TEST(InformationText, CountLines) {
    const struct {
        NodeKind kind;
        std::string expected;
    } rows[] = {
        {NodeKind::Project, "当前工程所有构件数：12\r\n"},
        {NodeKind::Discipline, "当前专业下构件数：12\r\n"},
        {NodeKind::MajorCategory, "当前大类下构件数：12\r\n"},
        {NodeKind::MinorCategory, "当前小类下构件数：12\r\n"},
        {NodeKind::Floor, "当前楼层下构件数：12\r\n"},
        {NodeKind::Attribute, "当前属性下构件数：12\r\n"},
        {NodeKind::Root, ""},
        {NodeKind::None, ""},
        {NodeKind::Component, ""},
        {NodeKind::Geometry, ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CountLine(row.kind, 12), row.expected) << static_cast<int>(row.kind);
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
