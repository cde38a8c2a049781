// The scene database library exports the functions its public headers declare and nothing of
// its own classes: a host that could reach hc:: would tie itself to the database's insides.
#include <cctype>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

namespace {

// The names of the library's defined dynamic symbols, demangled or not.
std::set<std::string> Exported(bool demangled) {
    std::string command = std::string(OBSIDRA_NM) + " -D --defined-only " +
                          (demangled ? "-C " : "") + "'" + OBSIDRA_HC_LIBRARY + "'";
    std::set<std::string> names;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return names;
    char line[8192];
    while (std::fgets(line, sizeof line, pipe)) {
        std::string text(line);
        // "address type name": the name is the rest of the line (demangled names hold spaces).
        size_t name = text.find(' ', text.find(' ') + 1);
        if (name != std::string::npos) names.insert(text.substr(name + 1, text.size() - name - 2));
    }
    pclose(pipe);
    return names;
}

// The identifier that ends just before position end of text.
std::string NameBefore(const std::string& text, size_t end) {
    size_t begin = end;
    while (begin > 0 &&
           (std::isalnum(static_cast<unsigned char>(text[begin - 1])) || text[begin - 1] == '_'))
        --begin;
    return text.substr(begin, end - begin);
}

// Every function a public header declares for export, the attribute families expanded.
std::set<std::string> Declared(const char* header) {
    std::ifstream in(std::string(OBSIDRA_SOURCE_DIR) + "/include/obsidra/" + header);
    std::stringstream content;
    content << in.rdbuf();
    const std::string text = content.str();
    std::set<std::string> names;
    for (size_t at = text.find("HC_EXPORT "); at != std::string::npos;
         at = text.find("HC_EXPORT ", at + 1)) {
        std::string name = NameBefore(text, text.find('(', at));
        if (name.rfind("HC_", 0) == 0) names.insert(name); // not the family's "##Name"
    }
    const std::string family = "\nHC_OPTION_ATTRIBUTE_DECLARATIONS(";
    for (size_t at = text.find(family); at != std::string::npos; at = text.find(family, at + 1)) {
        std::string name = NameBefore(text, text.find(')', at));
        for (const char* prefix : {"HC_Set_", "HC_UnSet_", "HC_Show_", "HC_PShow_Net_"})
            names.insert(prefix + name);
    }
    return names;
}

TEST(ExportedSymbols, EveryDeclaredFunctionIsExported) {
    std::set<std::string> exported = Exported(false);
    ASSERT_FALSE(exported.empty()) << "nm found nothing in " << OBSIDRA_HC_LIBRARY;
    for (const char* header :
         {"hc.h", "hc_fastpath.h", "hc_journal.h", "hc_undo.h", "hc_check.h"}) {
        std::set<std::string> declared = Declared(header);
        EXPECT_FALSE(declared.empty()) << header;
        for (const std::string& name : declared)
            EXPECT_TRUE(exported.count(name)) << name << " of " << header << " is not exported";
    }
    EXPECT_TRUE(exported.count("HC_Set_Color"));
    EXPECT_TRUE(exported.count("HC_Fast_Census"));
}

TEST(ExportedSymbols, NothingOfTheDatabasesInsides) {
    for (const std::string& name : Exported(false))
        EXPECT_EQ(name.find("_ZN2hc"), std::string::npos) << name;
    for (const std::string& name : Exported(true))
        EXPECT_EQ(name.find("hc::"), std::string::npos) << name;
}

} // namespace
