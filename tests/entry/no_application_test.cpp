// A host without a QApplication: every export says so on stderr and does nothing.
#include <algorithm>
#include <cstdio>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <obsidra/exports.h>

namespace {

TEST(ExportsWithoutApplication, SayWhyAndDoNothing) {
    void* module = dlopen(OBSIDRA_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    auto clearAll = reinterpret_cast<decltype(&ClearAllDialog)>(dlsym(module, "ClearAllDialog"));
    auto showViewer =
        reinterpret_cast<decltype(&ShowOrnViewerDialog)>(dlsym(module, "ShowOrnViewerDialog"));
    auto showBrowser = reinterpret_cast<decltype(&ShowSegmentViewerDialog)>(
        dlsym(module, "ShowSegmentViewerDialog"));
    ASSERT_TRUE(clearAll && showViewer && showBrowser);

    testing::internal::CaptureStderr();
    showBrowser(nullptr, nullptr);
    showViewer(nullptr, nullptr);
    clearAll();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("ShowSegmentViewerDialog: the host has no QApplication"), std::string::npos)
        << said;
    EXPECT_NE(said.find("ShowOrnViewerDialog: the host has no QApplication"), std::string::npos);
    EXPECT_NE(said.find("ClearAllDialog: the host has no QApplication"), std::string::npos);
}

// The module's dynamic symbol table holds the five exports and nothing else of ours.
TEST(ModuleSymbols, OnlyTheFiveExports) {
    const std::string command = std::string("nm -D --defined-only ") + OBSIDRA_MODULE;
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::vector<std::string> functions;
    char line[1024];
    while (fgets(line, sizeof line, pipe)) {
        char type = 0;
        char name[900] = {};
        if (std::sscanf(line, "%*s %c %899s", &type, name) == 2 && (type == 'T' || type == 'W'))
            functions.push_back(name);
    }
    pclose(pipe);
    std::sort(functions.begin(), functions.end());
    EXPECT_EQ(functions,
              (std::vector<std::string>{"ClearAllDialog", "OrnViewerSelect", "ShowOrnTongJiDialog",
                                        "ShowOrnViewerDialog", "ShowSegmentViewerDialog"}));
}

} // namespace
