#pragma once

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <obsidra/hc.h>

// A file's bytes; empty if it cannot be read.
inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// A fresh database for each test, with the error handler's messages collected.
class HcTest : public ::testing::Test {
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

    static std::string Type(HC_KEY key) {
        char type[HC_TEXT_MAX];
        HC_Show_Key_Type(key, type);
        return type;
    }
    static std::string Path(HC_KEY key) {
        char path[HC_TEXT_MAX];
        HC_Show_Segment(key, path);
        return path;
    }
    // Every item a contents search yields, as "type" words with their keys.
    static std::vector<std::pair<std::string, HC_KEY>> List(const char* scope, const char* filter) {
        std::vector<std::pair<std::string, HC_KEY>> items;
        HC_Begin_Contents_Search(scope, filter);
        char type[HC_TEXT_MAX];
        HC_KEY key;
        while (HC_Find_Contents(type, &key))
            items.emplace_back(type, key);
        HC_End_Contents_Search();
        return items;
    }
    static std::vector<std::string> Types(const char* scope, const char* filter) {
        std::vector<std::string> types;
        for (auto& [type, key] : List(scope, filter))
            types.push_back(type);
        return types;
    }
    static HC_KEY Triangle() {
        HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        int faces[] = {3, 0, 1, 2};
        return HC_Insert_Shell(3, points, 4, faces);
    }

private:
    static void Capture(const char* function, const char* message) {
        Errors().push_back(std::string(function) + ": " + message);
    }
};
