#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

#include "../hc/hc_test.h"
#include "descriptors/descriptor_lists.h"

inline bool operator==(const HC_POINT& a, const HC_POINT& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline void PrintTo(const HC_POINT& p, std::ostream* out) {
    *out << "(" << p.x << ", " << p.y << ", " << p.z << ")";
}

inline HC_KEY InsertTriangle() {
    HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    int faces[] = {3, 0, 1, 2};
    return HC_Insert_Shell(3, points, 4, faces);
}

// A fresh database for each test, with the error handler's messages collected.
class DescriptorTest : public HcTest {};
