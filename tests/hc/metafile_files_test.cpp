#include <filesystem>
#include <fstream>
#include <random>
#include <unistd.h>

#include <obsidra/hc_journal.h>

#include "hc/atomic_file.h"
#include "hc/database.h"
#include "hc/metafile.h"
#include "hc_test.h"

namespace {

namespace fs = std::filesystem;

class MetafileFiles : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_folder = fs::path(testing::TempDir()) /
                   ("metafile_files_" + std::to_string(::getpid()) + "_" +
                    testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    void TearDown() override {
        hc::FailFileWritesAfter(std::nullopt);
        fs::permissions(m_folder, fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(m_folder);
        HcTest::TearDown();
    }

    static void Write(const fs::path& file, std::string_view text) {
        std::ofstream(file, std::ios::binary) << text;
    }
    static std::string SceneText() { return hc::MetafileText(hc::Current(), 0); }
    // The names in the folder, to see that no temporary file is left behind.
    std::vector<std::string> Listing() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path m_folder;
};

TEST_F(MetafileFiles, AFailedWriteLeavesTheOldFileIntact) {
    const std::string file = (m_folder / "scene.hmf").string();
    HC_Open_Segment("/scene/walls");
    Triangle();
    HC_Close_Segment();
    HC_Write_Metafile("/scene", file.c_str(), "");
    const std::string old = ReadFile(file);
    ASSERT_FALSE(old.empty());
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    HC_Open_Segment("/scene/roof");
    HC_Set_Color("faces=red");
    HC_Close_Segment();
    for (size_t bytes : {size_t(0), size_t(1), old.size() / 2, old.size()}) {
        SCOPED_TRACE(bytes);
        hc::FailFileWritesAfter(bytes);
        HC_Write_Metafile("/scene", file.c_str(), "");
        EXPECT_EQ(TakeErrors(), std::vector<std::string>{"HC_Write_Metafile: cannot write \"" +
                                                         file + "\": No space left on device"});
        EXPECT_EQ(ReadFile(file), old);
        EXPECT_EQ(Listing(), std::vector<std::string>{"scene.hmf"});
    }
    hc::FailFileWritesAfter(std::nullopt);
    HC_Write_Metafile("/scene", file.c_str(), "");
    EXPECT_TRUE(TakeErrors().empty());
    EXPECT_NE(ReadFile(file), old);
    EXPECT_EQ(Listing(), std::vector<std::string>{"scene.hmf"});
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << "a file written again keeps its permissions";
}

TEST_F(MetafileFiles, WritesThatCannotBeginAreReportedWithTheFile) {
    Write(m_folder / "kept.hmf", "(Segment \"kept\")");
    const struct {
        const char* name;
        std::string file;
        const char* cause;
    } rows[] = {
        {"a folder that does not exist", (m_folder / "none" / "x.hmf").string(),
         "No such file or directory"},
        {"a folder", m_folder.string(), "Is a directory"},
        {"a folder, named with a slash", m_folder.string() + "/", "Is a directory"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        HC_Write_Metafile("/", row.file.c_str(), "");
        EXPECT_EQ(TakeErrors(), std::vector<std::string>{"HC_Write_Metafile: cannot write \"" +
                                                         row.file + "\": " + row.cause});
        EXPECT_EQ(Listing(), std::vector<std::string>{"kept.hmf"});
    }
}

TEST_F(MetafileFiles, AFolderWithoutWritePermissionKeepsItsFile) {
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    Write(m_folder / "kept.hmf", "(Segment \"kept\")");
    fs::permissions(m_folder, fs::perms::owner_read | fs::perms::owner_exec);
    const std::string kept = (m_folder / "kept.hmf").string();
    HC_Write_Metafile("/", kept.c_str(), "");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"HC_Write_Metafile: cannot write \"" + kept +
                                                     "\": Permission denied"});
    EXPECT_EQ(ReadFile(kept), "(Segment \"kept\")");
}

// Files that are not metafiles are refused with the file's name and what was wrong, and change
// nothing: not even the segment they were to be read into is made.
TEST_F(MetafileFiles, BadFilesAreRefusedAndChangeNothing) {
    std::mt19937 random(7);
    std::string garbage(4096, '\0');
    for (char& c : garbage)
        c = static_cast<char>(random());
    HC_Open_Segment("/scene/walls");
    Triangle();
    HC_Close_Segment();
    const std::string good = SceneText();
    const fs::path huge = m_folder / "huge.hmf";
    Write(huge, "");
    fs::resize_file(huge, (std::uintmax_t(1) << 30) + 1); // sparse: costs no disk
    const struct {
        const char* name;
        const char* file;
        std::string text;
        const char* error;
    } rows[] = {
        {"missing", "missing.hmf", {}, "No such file or directory"},
        {"a folder", "folder.hmf", {}, "it is a directory"},
        {"huge", "huge.hmf", {}, "it holds 1073741825 bytes, more than a metafile may"},
        {"binary garbage", "garbage.hmf", garbage, "binary data, not metafile text"},
        {"a picture", "picture.hmf", "\x89PNG\r\n\x1a\n", "line 2, column 1: a control"},
        {"empty", "empty.hmf", "", "the file is empty"},
        {"cut short", "cut.hmf", good.substr(0, good.size() / 2), "is not closed"},
        {"another format", "house.ifc", "ISO-10303-21;\nHEADER;\n", "line 1, column 1: "},
    };
    fs::create_directory(m_folder / "folder.hmf");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string file = (m_folder / row.file).string();
        if (row.file != std::string_view("missing.hmf") && !fs::exists(file)) Write(file, row.text);
        const HC_REVISION revision = HC_Show_Revision();
        EXPECT_EQ(HC_Read_Metafile(file.c_str(), "/scene/loaded", ""), 0);
        const std::vector<std::string> errors = TakeErrors();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_NE(errors[0].find(file), std::string::npos) << errors[0];
        EXPECT_NE(errors[0].find(row.error), std::string::npos) << errors[0];
        EXPECT_EQ(HC_Show_Revision(), revision);
        EXPECT_EQ(SceneText(), good);
    }
}

} // namespace
