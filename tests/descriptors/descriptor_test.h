#pragma once

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

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

// A fresh database for each test, with the error handler's messages collected, and helpers that
// open the places descriptors work on.
class DescriptorTest : public ::testing::Test {
protected:
    void SetUp() override {
        HC_Reset_System();
        Errors().clear();
        HC_Define_Error_Handler(&Capture);
    }
    void TearDown() override { HC_Define_Error_Handler(nullptr); }

    static std::vector<std::string>& Errors() {
        static std::vector<std::string> errors;
        return errors;
    }
    // The messages reported since the last call, emptied.
    static std::vector<std::string> TakeErrors() { return std::exchange(Errors(), {}); }

private:
    static void Capture(const char* function, const char* message) {
        Errors().push_back(std::string(function) + ": " + message);
    }
};
