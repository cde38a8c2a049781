#include "host/ifc/ifc_mapping.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace obsidra::host::ifc {

namespace {

using D = Discipline;
using L = LoadBearingRule;

constexpr Rgba Rgb(int red, int green, int blue, float alpha = 1) {
    return {red / 255.0f, green / 255.0f, blue / 255.0f, alpha};
}

// Major categories in the order the viewer lists them, with the colour of elements that the
// file leaves uncoloured: light, neutral colours for the building fabric, glass translucent,
// water blue, air pale blue, heat orange, power yellow.
constexpr MajorCategory kMajors[] = {
    {"墙", Rgb(230, 222, 200)},         {"幕墙", Rgb(140, 180, 210, 0.5f)},
    {"门", Rgb(150, 105, 70)},          {"窗", Rgb(160, 200, 230, 0.5f)},
    {"板", Rgb(200, 200, 200)},         {"屋顶", Rgb(170, 90, 70)},
    {"楼梯", Rgb(205, 205, 200)},       {"坡道", Rgb(205, 205, 200)},
    {"栏杆", Rgb(110, 110, 115)},       {"面层", Rgb(225, 218, 205)},
    {"空间", Rgb(170, 210, 170, 0.3f)}, {"家具", Rgb(195, 155, 110)},
    {"遮阳", Rgb(150, 150, 150)},       {"烟囱", Rgb(160, 100, 80)},
    {"电梯", Rgb(150, 150, 160)},       {"构件部件", Rgb(190, 190, 190)},
    {"柱", Rgb(185, 185, 185)},         {"梁", Rgb(175, 175, 175)},
    {"杆件", Rgb(165, 165, 170)},       {"板材", Rgb(180, 185, 195)},
    {"基础", Rgb(150, 150, 145)},       {"桩", Rgb(140, 140, 135)},
    {"钢筋", Rgb(130, 70, 50)},         {"连接件", Rgb(95, 95, 100)},
    {"构件组", Rgb(170, 170, 170)},     {"管道", Rgb(70, 130, 200)},
    {"管件", Rgb(70, 130, 200)},        {"阀门", Rgb(200, 60, 60)},
    {"卫生器具", Rgb(240, 240, 240)},   {"给排水设备", Rgb(90, 150, 200)},
    {"消防", Rgb(210, 40, 40)},         {"风管", Rgb(160, 190, 215)},
    {"风管附件", Rgb(140, 170, 200)},   {"风口", Rgb(215, 215, 215)},
    {"暖通设备", Rgb(200, 130, 70)},    {"桥架", Rgb(225, 180, 50)},
    {"电缆", Rgb(50, 50, 50)},          {"灯具", Rgb(250, 240, 180)},
    {"开关插座", Rgb(240, 240, 235)},   {"配电设备", Rgb(100, 105, 125)},
    {"电气设备", Rgb(180, 180, 190)},   {"弱电设备", Rgb(120, 160, 120)},
    {"分布构件", Rgb(170, 170, 190)},   {"场地", Rgb(140, 170, 110)},
    {"其他构件", Rgb(200, 200, 200)},   {"虚拟构件", Rgb(220, 220, 220, 0.2f)},
    {"注释", Rgb(90, 90, 90)},
};

constexpr PredefinedMinor kWall[] = {{"PARAPET", "女儿墙"},
                                     {"PARTITIONING", "隔墙"},
                                     {"SHEAR", "剪力墙"},
                                     {"RETAININGWALL", "挡土墙"}};
constexpr PredefinedMinor kDoor[] = {{"GATE", "大门"}, {"TRAPDOOR", "检修门"}};
constexpr PredefinedMinor kWindow[] = {{"SKYLIGHT", "天窗"}, {"LIGHTDOME", "采光顶"}};
constexpr PredefinedMinor kSlab[] = {
    {"FLOOR", "楼板"}, {"ROOF", "屋面板"}, {"LANDING", "平台板"}, {"BASESLAB", "底板"}};
constexpr PredefinedMinor kRailing[] = {{"HANDRAIL", "扶手"}, {"GUARDRAIL", "护栏"}};
constexpr PredefinedMinor kCovering[] = {{"CEILING", "吊顶"},       {"FLOORING", "楼地面"},
                                         {"CLADDING", "外饰面"},    {"ROOFING", "屋面层"},
                                         {"INSULATION", "保温层"},  {"MEMBRANE", "防水层"},
                                         {"SKIRTINGBOARD", "踢脚"}, {"MOLDING", "线脚"}};
constexpr PredefinedMinor kSpace[] = {{"PARKING", "停车位"}, {"EXTERNAL", "室外空间"}};
constexpr PredefinedMinor kFurniture[] = {
    {"CHAIR", "椅子"},         {"TABLE", "桌子"}, {"DESK", "书桌"}, {"BED", "床"},
    {"FILECABINET", "文件柜"}, {"SHELF", "搁架"}, {"SOFA", "沙发"}};
constexpr PredefinedMinor kTransport[] = {
    {"ELEVATOR", "电梯"}, {"ESCALATOR", "自动扶梯"}, {"MOVINGWALKWAY", "自动人行道"}};
constexpr PredefinedMinor kColumn[] = {{"PILASTER", "壁柱"}};
constexpr PredefinedMinor kBeam[] = {{"LINTEL", "过梁"}, {"JOIST", "托梁"}};
constexpr PredefinedMinor kMember[] = {
    {"BRACE", "支撑"},    {"CHORD", "弦杆"},  {"MULLION", "竖梃"},
    {"POST", "立柱"},     {"PURLIN", "檩条"}, {"RAFTER", "椽条"},
    {"STRINGER", "纵梁"}, {"STRUT", "压杆"},  {"STUD", "龙骨"}};
constexpr PredefinedMinor kPlate[] = {{"CURTAIN_PANEL", "幕墙面板"}};
constexpr PredefinedMinor kFooting[] = {{"PAD_FOOTING", "独立基础"},
                                        {"STRIP_FOOTING", "条形基础"},
                                        {"PILE_CAP", "承台"},
                                        {"FOOTING_BEAM", "基础梁"}};
constexpr PredefinedMinor kFastener[] = {
    {"BOLT", "螺栓"}, {"ANCHORBOLT", "锚栓"}, {"STUDSHEARCONNECTOR", "栓钉"}};
constexpr PredefinedMinor kAssembly[] = {{"TRUSS", "桁架"},
                                         {"BRACED_FRAME", "支撑框架"},
                                         {"RIGID_FRAME", "刚架"},
                                         {"REINFORCEMENT_UNIT", "钢筋笼"}};
constexpr PredefinedMinor kPipe[] = {{"FLEXIBLESEGMENT", "软管"}, {"GUTTER", "天沟"}};
constexpr PredefinedMinor kPipeFitting[] = {
    {"BEND", "弯头"}, {"JUNCTION", "三通"}, {"TRANSITION", "变径"}};
constexpr PredefinedMinor kValve[] = {{"CHECK", "止回阀"},
                                      {"GATEVALVE", "闸阀"},
                                      {"PRESSUREREDUCING", "减压阀"},
                                      {"SAFETYCUTOFF", "安全阀"},
                                      {"FAUCET", "水龙头"}};
constexpr PredefinedMinor kSanitary[] = {{"TOILETPAN", "坐便器"}, {"WASHHANDBASIN", "洗手盆"},
                                         {"SINK", "水槽"},        {"BATH", "浴缸"},
                                         {"SHOWER", "淋浴器"},    {"URINAL", "小便器"}};
constexpr PredefinedMinor kWaste[] = {
    {"FLOORTRAP", "地漏"}, {"FLOORWASTE", "地漏"}, {"ROOFDRAIN", "雨水斗"}};
constexpr PredefinedMinor kFire[] = {
    {"SPRINKLER", "喷头"}, {"FIREHYDRANT", "消火栓"}, {"HOSEREEL", "消防卷盘"}};
constexpr PredefinedMinor kDuct[] = {{"FLEXIBLESEGMENT", "软风管"}};
constexpr PredefinedMinor kDuctFitting[] = {
    {"BEND", "风管弯头"}, {"JUNCTION", "风管三通"}, {"TRANSITION", "风管变径"}};
constexpr PredefinedMinor kDamper[] = {{"FIREDAMPER", "防火阀"}, {"SMOKEDAMPER", "排烟阀"}};
constexpr PredefinedMinor kAirTerminal[] = {
    {"DIFFUSER", "散流器"}, {"GRILLE", "格栅风口"}, {"LOUVRE", "百叶风口"}};
constexpr PredefinedMinor kCableCarrier[] = {{"CABLELADDERSEGMENT", "梯式桥架"},
                                             {"CABLETRAYSEGMENT", "托盘式桥架"},
                                             {"CABLETRUNKINGSEGMENT", "线槽"},
                                             {"CONDUITSEGMENT", "线管"}};
constexpr PredefinedMinor kCable[] = {{"BUSBARSEGMENT", "母线"}, {"CONDUCTORSEGMENT", "导线"}};
constexpr PredefinedMinor kLight[] = {{"SECURITYLIGHTING", "应急灯"}};
constexpr PredefinedMinor kOutlet[] = {
    {"POWEROUTLET", "电源插座"}, {"DATAOUTLET", "数据插座"}, {"TELEPHONEOUTLET", "电话插座"}};
constexpr PredefinedMinor kBoard[] = {{"SWITCHBOARD", "配电柜"}};
constexpr PredefinedMinor kGeographic[] = {{"TERRAIN", "地形"}};

// One row per IFC class. Classes of the same major category stand together, in the order of
// kMajors; a minor category's Order is its first appearance below.
constexpr ClassRule kRules[] = {
    // Architecture.
    {"IfcWall", D::Architecture, "墙", "墙", kWall, "外墙", "内墙", L::TrueMeansStructure},
    {"IfcCurtainWall", D::Architecture, "幕墙", "幕墙"},
    {"IfcDoor", D::Architecture, "门", "门", kDoor, "外门", "内门"},
    {"IfcWindow", D::Architecture, "窗", "窗", kWindow, "外窗", "内窗"},
    {"IfcSlab", D::Architecture, "板", "板", kSlab, {}, {}, L::TrueMeansStructure},
    {"IfcRoof", D::Architecture, "屋顶", "屋顶"},
    {"IfcStair", D::Architecture, "楼梯", "楼梯"},
    {"IfcStairFlight", D::Architecture, "楼梯", "梯段"},
    {"IfcRamp", D::Architecture, "坡道", "坡道"},
    {"IfcRampFlight", D::Architecture, "坡道", "坡道段"},
    {"IfcRailing", D::Architecture, "栏杆", "栏杆", kRailing},
    {"IfcCovering", D::Architecture, "面层", "面层", kCovering},
    {"IfcSpace", D::Architecture, "空间", "房间", kSpace},
    {"IfcFurniture", D::Architecture, "家具", "家具", kFurniture},
    {"IfcFurnishingElement", D::Architecture, "家具", "家具", {}, {}, {}, L::None, false, true},
    {"IfcSystemFurnitureElement", D::Architecture, "家具", "系统家具"},
    {"IfcShadingDevice", D::Architecture, "遮阳", "遮阳"},
    {"IfcChimney", D::Architecture, "烟囱", "烟囱"},
    {"IfcTransportElement", D::Architecture, "电梯", "运输设备", kTransport},
    {"IfcBuildingElementPart", D::Architecture, "构件部件", "构件部件"},
    // Structure.
    {"IfcColumn", D::Structure, "柱", "柱", kColumn, {}, {}, L::FalseMeansArchitecture},
    {"IfcBeam", D::Structure, "梁", "梁", kBeam, {}, {}, L::FalseMeansArchitecture},
    {"IfcMember", D::Structure, "杆件", "杆件", kMember},
    {"IfcPlate", D::Structure, "板材", "板材", kPlate},
    {"IfcFooting", D::Structure, "基础", "基础", kFooting},
    {"IfcPile", D::Structure, "桩", "桩"},
    {"IfcReinforcingBar", D::Structure, "钢筋", "钢筋"},
    {"IfcReinforcingMesh", D::Structure, "钢筋", "钢筋网"},
    {"IfcTendon", D::Structure, "钢筋", "预应力筋"},
    {"IfcTendonAnchor", D::Structure, "钢筋", "锚具"},
    {"IfcDiscreteAccessory", D::Structure, "连接件", "附件"},
    {"IfcFastener", D::Structure, "连接件", "紧固件"},
    {"IfcMechanicalFastener", D::Structure, "连接件", "机械紧固件", kFastener},
    {"IfcElementAssembly", D::Structure, "构件组", "构件组", kAssembly},
    // Plumbing; pipework that serves heating or cooling goes with the HVAC by its system.
    {"IfcPipeSegment", D::Plumbing, "管道", "管道", kPipe, {}, {}, L::None, true},
    {"IfcPipeFitting", D::Plumbing, "管件", "管件", kPipeFitting, {}, {}, L::None, true},
    {"IfcValve", D::Plumbing, "阀门", "阀门", kValve, {}, {}, L::None, true},
    {"IfcSanitaryTerminal", D::Plumbing, "卫生器具", "卫生器具", kSanitary},
    {"IfcWasteTerminal", D::Plumbing, "卫生器具", "排水附件", kWaste},
    {"IfcPump", D::Plumbing, "给排水设备", "水泵", {}, {}, {}, L::None, true},
    {"IfcTank", D::Plumbing, "给排水设备", "水箱", {}, {}, {}, L::None, true},
    {"IfcFlowMeter", D::Plumbing, "给排水设备", "流量计", {}, {}, {}, L::None, true},
    {"IfcInterceptor", D::Plumbing, "给排水设备", "隔油池"},
    {"IfcDistributionChamberElement", D::Plumbing, "给排水设备", "检查井"},
    {"IfcStackTerminal", D::Plumbing, "给排水设备", "通气帽"},
    {"IfcFireSuppressionTerminal", D::Plumbing, "消防", "消防末端", kFire},
    // HVAC.
    {"IfcDuctSegment", D::Hvac, "风管", "风管", kDuct},
    {"IfcDuctFitting", D::Hvac, "风管", "风管管件", kDuctFitting},
    {"IfcDamper", D::Hvac, "风管附件", "风阀", kDamper},
    {"IfcDuctSilencer", D::Hvac, "风管附件", "消声器"},
    {"IfcAirTerminal", D::Hvac, "风口", "风口", kAirTerminal},
    {"IfcAirTerminalBox", D::Hvac, "风口", "末端装置"},
    {"IfcFan", D::Hvac, "暖通设备", "风机"},
    {"IfcBoiler", D::Hvac, "暖通设备", "锅炉"},
    {"IfcChiller", D::Hvac, "暖通设备", "冷水机组"},
    {"IfcCoolingTower", D::Hvac, "暖通设备", "冷却塔"},
    {"IfcUnitaryEquipment", D::Hvac, "暖通设备", "空调机组"},
    {"IfcSpaceHeater", D::Hvac, "暖通设备", "散热器"},
    {"IfcCooledBeam", D::Hvac, "暖通设备", "冷梁"},
    {"IfcCoil", D::Hvac, "暖通设备", "盘管"},
    {"IfcHeatExchanger", D::Hvac, "暖通设备", "换热器"},
    {"IfcAirToAirHeatRecovery", D::Hvac, "暖通设备", "热回收装置"},
    {"IfcCompressor", D::Hvac, "暖通设备", "压缩机"},
    {"IfcCondenser", D::Hvac, "暖通设备", "冷凝器"},
    {"IfcEvaporator", D::Hvac, "暖通设备", "蒸发器"},
    {"IfcEvaporativeCooler", D::Hvac, "暖通设备", "蒸发冷却器"},
    {"IfcHumidifier", D::Hvac, "暖通设备", "加湿器"},
    {"IfcFilter", D::Hvac, "暖通设备", "过滤器"},
    {"IfcBurner", D::Hvac, "暖通设备", "燃烧器"},
    {"IfcTubeBundle", D::Hvac, "暖通设备", "管束"},
    // Electrical.
    {"IfcCableCarrierSegment", D::Electrical, "桥架", "桥架", kCableCarrier},
    {"IfcCableCarrierFitting", D::Electrical, "桥架", "桥架配件"},
    {"IfcCableSegment", D::Electrical, "电缆", "电缆", kCable},
    {"IfcCableFitting", D::Electrical, "电缆", "电缆接头"},
    {"IfcLightFixture", D::Electrical, "灯具", "灯具", kLight},
    {"IfcLamp", D::Electrical, "灯具", "光源"},
    {"IfcSwitchingDevice", D::Electrical, "开关插座", "开关"},
    {"IfcOutlet", D::Electrical, "开关插座", "插座", kOutlet},
    {"IfcElectricDistributionBoard", D::Electrical, "配电设备", "配电箱", kBoard},
    {"IfcTransformer", D::Electrical, "配电设备", "变压器"},
    {"IfcElectricGenerator", D::Electrical, "配电设备", "发电机"},
    {"IfcElectricFlowStorageDevice", D::Electrical, "配电设备", "蓄电设备"},
    {"IfcProtectiveDevice", D::Electrical, "配电设备", "保护装置"},
    {"IfcJunctionBox", D::Electrical, "配电设备", "接线盒"},
    {"IfcElectricAppliance", D::Electrical, "电气设备", "电器"},
    {"IfcElectricMotor", D::Electrical, "电气设备", "电动机"},
    {"IfcSolarDevice", D::Electrical, "电气设备", "太阳能设备"},
    {"IfcAudioVisualAppliance", D::Electrical, "弱电设备", "音视频设备"},
    {"IfcCommunicationsAppliance", D::Electrical, "弱电设备", "通信设备"},
    {"IfcSensor", D::Electrical, "弱电设备", "传感器"},
    {"IfcAlarm", D::Electrical, "弱电设备", "报警器"},
    {"IfcActuator", D::Electrical, "弱电设备", "执行器"},
    {"IfcController", D::Electrical, "弱电设备", "控制器"},
    {"IfcUnitaryControlElement", D::Electrical, "弱电设备", "控制面板"},
    {"IfcFlowInstrument", D::Electrical, "弱电设备", "仪表"},
    // IFC2x3's generic distribution classes, for elements whose type object says no more.
    {"IfcFlowSegment", D::Other, "分布构件", "管线段", {}, {}, {}, L::None, true, true},
    {"IfcFlowFitting", D::Other, "分布构件", "管线配件", {}, {}, {}, L::None, true, true},
    {"IfcFlowTerminal", D::Other, "分布构件", "末端设备", {}, {}, {}, L::None, true, true},
    {"IfcFlowController", D::Other, "分布构件", "控制设备", {}, {}, {}, L::None, true, true},
    {"IfcFlowMovingDevice", D::Other, "分布构件", "输送设备", {}, {}, {}, L::None, true, true},
    {"IfcFlowStorageDevice", D::Other, "分布构件", "储存设备", {}, {}, {}, L::None, true, true},
    {"IfcFlowTreatmentDevice", D::Other, "分布构件", "处理设备", {}, {}, {}, L::None, true, true},
    {"IfcEnergyConversionDevice",
     D::Other,
     "分布构件",
     "能量转换设备",
     {},
     {},
     {},
     L::None,
     true,
     true},
    {"IfcDistributionControlElement",
     D::Other,
     "分布构件",
     "控制元件",
     {},
     {},
     {},
     L::None,
     true,
     true},
    {"IfcDistributionFlowElement",
     D::Other,
     "分布构件",
     "分布构件",
     {},
     {},
     {},
     L::None,
     true,
     true},
    {"IfcDistributionElement", D::Other, "分布构件", "分布构件", {}, {}, {}, L::None, true, true},
    // Other.
    {"IfcSite", D::Other, "场地", "场地"},
    {"IfcGeographicElement", D::Other, "场地", "地理要素", kGeographic},
    {"IfcBuilding", D::Other, "场地", "建筑物"},
    {"IfcBuildingStorey", D::Other, "场地", "楼层体块"},
    {"IfcBuildingElementProxy", D::Other, "其他构件", "其他构件"},
    {"IfcCivilElement", D::Other, "其他构件", "土建构件"},
    {"IfcProjectionElement", D::Other, "其他构件", "凸出构件"},
    {"IfcDistributionPort", D::Other, "其他构件", "端口"},
    {"IfcVirtualElement", D::Other, "虚拟构件", "虚拟构件"},
    {"IfcAnnotation", D::Other, "注释", "注释"},
};

// Elements of a class without a rule.
constexpr ClassRule kUnknownClass = {"", D::Other, "其他构件", "其他构件"};

constexpr std::string_view kDisciplineNames[kDisciplineCount] = {"建筑", "结构", "给排水",
                                                                 "暖通", "电气", "其他"};

std::string_view WithoutCaseSuffix(std::string_view ifcClass) {
    for (std::string_view suffix : {"StandardCase", "ElementedCase"})
        if (ifcClass.size() > suffix.size() && ifcClass.ends_with(suffix))
            return ifcClass.substr(0, ifcClass.size() - suffix.size());
    return ifcClass;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return (x >= 'a' && x <= 'z' ? x - 32 : x) == (y >= 'a' && y <= 'z' ? y - 32 : y);
    });
}

// The rule that a type object's class points at: "IfcPipeSegmentType" names IfcPipeSegment.
const ClassRule* RuleOfType(std::string_view typeClass) {
    if (!typeClass.ends_with("Type")) return nullptr;
    return FindClassRule(typeClass.substr(0, typeClass.size() - 4));
}

std::string_view MinorOf(const ClassRule& rule, const ElementFacts& facts) {
    for (const PredefinedMinor& entry : rule.byPredefinedType)
        if (EqualsIgnoreCase(entry.predefinedType, facts.predefinedType)) return entry.minor;
    if (facts.isExternal && !rule.externalMinor.empty())
        return *facts.isExternal ? rule.externalMinor : rule.internalMinor;
    return rule.minor;
}

Discipline DisciplineOf(const ClassRule& rule, const ElementFacts& facts) {
    if (rule.bySystem && facts.systemDiscipline) return *facts.systemDiscipline;
    if (rule.loadBearing == L::TrueMeansStructure && facts.loadBearing == true) return D::Structure;
    if (rule.loadBearing == L::FalseMeansArchitecture && facts.loadBearing == false)
        return D::Architecture;
    return rule.discipline;
}

} // namespace

std::string_view DisciplineName(Discipline discipline) {
    return kDisciplineNames[static_cast<int>(discipline)];
}

std::span<const ClassRule> ClassRules() {
    return kRules;
}
std::span<const MajorCategory> MajorCategories() {
    return kMajors;
}

const ClassRule* FindClassRule(std::string_view ifcClass) {
    ifcClass = WithoutCaseSuffix(ifcClass);
    for (const ClassRule& rule : kRules)
        if (EqualsIgnoreCase(rule.ifcClass, ifcClass)) return &rule;
    return nullptr;
}

std::uint32_t MajorRank(std::string_view major) {
    for (std::size_t i = 0; i < std::size(kMajors); ++i)
        if (kMajors[i].name == major) return static_cast<std::uint32_t>(i);
    return static_cast<std::uint32_t>(std::size(kMajors));
}

std::uint32_t MinorRank(std::string_view major, std::string_view minor) {
    std::vector<std::string_view> seen;
    auto note = [&](std::string_view name) {
        if (!name.empty() && std::find(seen.begin(), seen.end(), name) == seen.end())
            seen.push_back(name);
    };
    for (const ClassRule& rule : kRules) {
        if (rule.major != major) continue;
        note(rule.minor);
        note(rule.externalMinor);
        note(rule.internalMinor);
        for (const PredefinedMinor& entry : rule.byPredefinedType)
            note(entry.minor);
    }
    const auto at = std::find(seen.begin(), seen.end(), minor);
    return static_cast<std::uint32_t>(at - seen.begin());
}

Classification Classify(const ElementFacts& facts) {
    const ClassRule* rule = FindClassRule(facts.ifcClass);
    if (!rule || rule->generic)
        if (const ClassRule* byType = RuleOfType(facts.typeClass)) rule = byType;
    if (!rule) rule = &kUnknownClass;
    Classification result;
    result.discipline = DisciplineOf(*rule, facts);
    result.major = rule->major;
    result.minor = MinorOf(*rule, facts);
    result.colour = kMajors[MajorRank(rule->major)].colour;
    return result;
}

std::optional<Discipline> DisciplineOfSystem(std::string_view type) {
    static constexpr std::string_view kPlumbing[] = {
        "DOMESTICCOLDWATER", "DOMESTICHOTWATER", "DRAINAGE",   "FIREPROTECTION",
        "RAINWATER",         "SEWAGE",           "STORMWATER", "VENT",
        "WASTEWATER",        "WATERSUPPLY"};
    static constexpr std::string_view kHvac[] = {
        "AIRCONDITIONING", "CHILLEDWATER",  "CONDENSERWATER", "EXHAUST",
        "HEATING",         "REFRIGERATION", "VENTILATION"};
    static constexpr std::string_view kElectrical[] = {"AUDIOVISUAL",
                                                       "COMMUNICATION",
                                                       "CONTROL",
                                                       "DATA",
                                                       "EARTHING",
                                                       "ELECTRICAL",
                                                       "ELECTROACOUSTIC",
                                                       "LIGHTING",
                                                       "LIGHTNINGPROTECTION",
                                                       "POWERGENERATION",
                                                       "SECURITY",
                                                       "SIGNAL",
                                                       "TELEPHONE",
                                                       "TV"};
    auto in = [type](std::span<const std::string_view> names) {
        return std::any_of(names.begin(), names.end(),
                           [type](std::string_view name) { return EqualsIgnoreCase(name, type); });
    };
    if (in(kPlumbing)) return D::Plumbing;
    if (in(kHvac)) return D::Hvac;
    if (in(kElectrical)) return D::Electrical;
    return std::nullopt;
}

} // namespace obsidra::host::ifc
