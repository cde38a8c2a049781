// Generated buildings of any size for tests and benchmarks.
#pragma once

#include <cstddef>
#include <vector>

#include <obsidra/host.h>

namespace obsidra::components::testing {

// Every discipline has the same categories, every minor category has one component group on
// each floor, and every group the same number of components.
struct BuildingShape {
    int projects = 1;
    int floors = 2;
    int disciplines = 2;
    int majorCategoriesPerDiscipline = 2;
    int minorCategoriesPerMajor = 2;
    int componentsPerGroup = 2;
    int geometriesPerComponent = 2;

    std::size_t ComponentCount() const;
    std::size_t GeometryCount() const;
};

// Names are unique and sort as their numbers do ("F01", "专业01", "小类01-02-03"). Component
// handles and geometry IDs count from 1 across the whole building; each geometry has one shown
// part, one hidden part, an index and a typed partition. Negative sizes count as zero.
std::vector<ProjectData> MakeSyntheticBuilding(const BuildingShape& shape);

} // namespace obsidra::components::testing
