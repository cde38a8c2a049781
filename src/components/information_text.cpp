#include "components/information_text.h"

#include "components/component_id.h"
#include "text/text.h"

namespace obsidra::components {

using text::AppendFormat;

namespace {

// Channels are shown on a 0 to 0.1 scale (a full channel is 0.100000); texts that users and
// hosts compare against have always used that scale.
double ChannelValue(std::uint8_t channel) {
    return channel * 0.1 / 255.0;
}

} // namespace

std::string OrderText(std::uint32_t order) {
    if (order == kOrderNotSet) return "未设置";
    return std::to_string(order);
}

bool IsDisplayStyleSet(const DisplayStyle& style) {
    return (style.flags & 0xFFF0) != 0;
}

std::string DisplayStyleText(const DisplayStyle& style) {
    std::string text;
    if (!IsDisplayStyleSet(style)) return text;
    AppendFormat(text, "颜色(R:%f, G:%f, B:%f, A:%f)\r\nZBuffer:%u\r\n", ChannelValue(style.red),
                 ChannelValue(style.green), ChannelValue(style.blue), ChannelValue(style.alpha),
                 style.zBuffer);
    if (!style.textureName.empty()) AppendFormat(text, "纹理名：%s\r\n", style.textureName.c_str());
    AppendFormat(text, "文字大小：%f\r\n文字大小类型:%u\r\n文字对齐类型:%u\r\n",
                 static_cast<double>(style.textSize), unsigned{style.textSizeType},
                 unsigned{style.textAlignmentType});
    return text;
}

std::string InformationText(const ProjectRecord& record) {
    std::string text;
    AppendFormat(text, "工程名：%s\r\n工程类型：%s\r\n工程Order:%s\r\n", record.name.c_str(),
                 record.type.c_str(), OrderText(record.order).c_str());
    return text;
}

std::string InformationText(const DisciplineRecord& record) {
    std::string text;
    AppendFormat(text, "专业名：%s\r\n专业Order：%s\r\n", record.name.c_str(),
                 OrderText(record.order).c_str());
    return text;
}

std::string InformationText(const MajorCategoryRecord& record) {
    std::string text;
    AppendFormat(text, "大类名：%s\r\n大类Order:%s\r\n", record.name.c_str(),
                 OrderText(record.order).c_str());
    return text;
}

std::string InformationText(const MinorCategoryRecord& record) {
    std::string text;
    AppendFormat(text, "小类名:%s\r\n小类Order:%s\r\n", record.name.c_str(),
                 OrderText(record.order).c_str());
    text += DisplayStyleText(record.style);
    return text;
}

std::string InformationText(const FloorRecord& record) {
    std::string text;
    AppendFormat(text, "楼层名:%s\r\n楼层Order:%s\r\n楼层底标高:%lf\r\n层高:%lf\r\n",
                 record.name.c_str(), OrderText(record.order).c_str(), record.bottomElevation,
                 record.storeyHeight);
    return text;
}

std::string InformationText(const AttributeRecord& record) {
    std::string text;
    AppendFormat(text, "属性Guid:%s\r\n属性名:%s\r\n分区类型:%s\r\n主构件Guid:%s\r\n主构件类型:%s",
                 IdentifierText(record.id).c_str(), record.name.c_str(),
                 record.partitionType.c_str(), IdentifierText(record.mainComponentId).c_str(),
                 record.mainComponentType.c_str());
    return text;
}

std::string InformationText(const ComponentRecord& record) {
    std::string text;
    AppendFormat(text, "构件Guid：%s\r\n", IdentifierText(record.id).c_str());
    AppendFormat(text, "主构件Guid：%s\r\n", IdentifierText(record.mainComponentId).c_str());
    for (const ComponentId& connected : record.connectedIds)
        AppendFormat(text, "连接构件Guid:%s\r\n", IdentifierText(connected).c_str());
    return text;
}

std::string InformationText(const GeometryRecord& record) {
    std::string text;
    AppendFormat(text, "几何ID：%lld\r\n", static_cast<long long>(record.id));
    text += record.wholeGeometry ? "全几何\r\n" : "非全几何\r\n";
    const auto [first, last] = record.parts.equal_range(kShownPartKind);
    for (auto it = first; it != last; ++it) {
        const PartData& part = it->second;
        text += "零件信息：\r\n";
        AppendFormat(text, "Guid:%s\r\n名称：%s\r\n类型：%s\r\n", IdentifierText(part.id).c_str(),
                     part.name.c_str(), part.type.c_str());
        for (const auto& [name, value] : part.parameters)
            AppendFormat(text, "参数:%s=%s\r\n", name.c_str(), value.c_str());
    }
    if (record.index.managementId < kNoGeometryIndex && record.index.indexId < kNoGeometryIndex)
        AppendFormat(text, "几何索引Id：%u\r\n几何索引管理Id:%u\r\n", record.index.indexId,
                     record.index.managementId);
    for (const PartitionRecord& partition : record.partitions)
        AppendFormat(text, "分区Guid:%s\r\n分区名：%s\r\n分区类型：%s\r\n",
                     IdentifierText(partition.id).c_str(), partition.name.c_str(),
                     partition.type.c_str());
    return text;
}

std::string CountLine(NodeKind kind, int componentCount) {
    const char* format = nullptr;
    switch (kind) {
    case NodeKind::Project:
        format = "当前工程所有构件数：%d\r\n";
        break;
    case NodeKind::Discipline:
        format = "当前专业下构件数：%d\r\n";
        break;
    case NodeKind::MajorCategory:
        format = "当前大类下构件数：%d\r\n";
        break;
    case NodeKind::MinorCategory:
        format = "当前小类下构件数：%d\r\n";
        break;
    case NodeKind::Floor:
        format = "当前楼层下构件数：%d\r\n";
        break;
    case NodeKind::Attribute:
        format = "当前属性下构件数：%d\r\n";
        break;
    case NodeKind::None:
    case NodeKind::Root:
    case NodeKind::Component:
    case NodeKind::Geometry:
        break;
    }
    std::string line;
    if (format) AppendFormat(line, format, componentCount);
    return line;
}

} // namespace obsidra::components
