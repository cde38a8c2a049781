// How IFC elements become the component viewer's disciplines and categories. docs/ifc.md gives
// the reasons; the table itself is in ifc_mapping.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace obsidra::host::ifc {

enum class Discipline : std::uint8_t { Architecture, Structure, Plumbing, Hvac, Electrical, Other };
inline constexpr int kDisciplineCount = 6;

// The name the user sees: 建筑, 结构, 给排水, 暖通, 电气, 其他.
std::string_view DisciplineName(Discipline discipline);

struct Rgba {
    float red = 0, green = 0, blue = 0;
    float alpha = 1; // 1 is opaque

    friend bool operator==(const Rgba&, const Rgba&) = default;
};

// Load-bearing elements belong to the structure, whatever their class says, and a column or
// beam that the file marks as not load-bearing belongs to the architecture.
enum class LoadBearingRule : std::uint8_t {
    None,
    TrueMeansStructure,
    FalseMeansArchitecture,
};

struct PredefinedMinor {
    std::string_view predefinedType; // as the file writes it, e.g. "PARAPET"
    std::string_view minor;
};

struct ClassRule {
    std::string_view ifcClass; // without a "StandardCase" or "ElementedCase" ending
    Discipline discipline;
    std::string_view major;
    std::string_view minor; // when the file says nothing finer
    std::span<const PredefinedMinor> byPredefinedType = {};
    std::string_view externalMinor = {}; // by the IsExternal property, when set
    std::string_view internalMinor = {};
    LoadBearingRule loadBearing = LoadBearingRule::None;
    // The discipline follows the distribution system the element is assigned to.
    bool bySystem = false;
    // A class that says little (IFC2x3's flow classes): the element's type object decides
    // when its class has a rule of its own.
    bool generic = false;
};

struct MajorCategory {
    std::string_view name;
    Rgba colour; // for elements that the file gives no colour
};

std::span<const ClassRule> ClassRules();
std::span<const MajorCategory> MajorCategories();
// The rule of an IFC class, its "StandardCase"/"ElementedCase" ending ignored; null when none.
const ClassRule* FindClassRule(std::string_view ifcClass);
// The position of a major category in MajorCategories(), or of a minor category among the
// minors of its major in rule order: the Order the viewer shows.
std::uint32_t MajorRank(std::string_view major);
std::uint32_t MinorRank(std::string_view major, std::string_view minor);

// What the file says about one element.
struct ElementFacts {
    std::string_view ifcClass = {};       // e.g. "IfcWallStandardCase"
    std::string_view typeClass = {};      // its type object's class, e.g. "IfcWallType"
    std::string_view predefinedType = {}; // the element's, else its type's
    std::optional<bool> isExternal = {};
    std::optional<bool> loadBearing = {};
    // From the IfcDistributionSystem the element is assigned to, if any.
    std::optional<Discipline> systemDiscipline = {};
};

struct Classification {
    Discipline discipline = Discipline::Other;
    std::string_view major;
    std::string_view minor;
    Rgba colour;
};

Classification Classify(const ElementFacts& facts);

// The discipline of an IfcDistributionSystem by its predefined type (e.g. "HEATING"); nothing
// for types that say nothing about one.
std::optional<Discipline> DisciplineOfSystem(std::string_view distributionSystemType);

} // namespace obsidra::host::ifc
