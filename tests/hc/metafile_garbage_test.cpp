#include <random>

#include "hc/database.h"
#include "hc/metafile.h"
#include "hc/session.h"
#include "hc_test.h"

namespace {

using MetafileGarbage = HcTest;

// Mangled metafiles either load or are refused with a message and change nothing; none crashes,
// hangs or leaks (the sanitizer build runs this too).
TEST_F(MetafileGarbage, MangledFilesLoadWholeOrNotAtAll) {
    const std::string original = ReadFile(OBSIDRA_SOURCE_DIR "/examples/showcase.hmf");
    ASSERT_FALSE(original.empty());
    const char kNoise[] = "()\"\\ \n;x-.0123456789eE@/#";
    std::mt19937 random(2024);
    hc::Database& db = hc::Current();
    int refused = 0;
    for (int round = 0; round < 400; ++round) {
        std::string text = original;
        for (int edits = 1 + round % 5; edits > 0; --edits) {
            size_t at = std::uniform_int_distribution<size_t>(0, text.size() - 1)(random);
            switch (random() % 4) {
            case 0:
                text[at] = kNoise[random() % (sizeof kNoise - 1)];
                break;
            case 1:
                text.erase(at, 1 + random() % 8);
                break;
            case 2:
                text.insert(at, 1, kNoise[random() % (sizeof kNoise - 1)]);
                break;
            default:
                text.resize(at);
                break;
            }
            if (text.empty()) text = "(";
        }
        HC_Reset_System();
        size_t before = db.LiveObjects();
        std::string error;
        if (!hc::LoadMetafileText(db, text, hc::CurrentSession().ResolvePath("/target", true),
                                  error)) {
            ++refused;
            EXPECT_FALSE(error.empty());
            EXPECT_EQ(error.rfind("line ", 0), 0u) << error;
            EXPECT_EQ(db.LiveObjects(), before + 1) << "only /target, made before the load";
        }
        TakeErrors();
    }
    EXPECT_GT(refused, 100) << "the mangling should break most files";
}

} // namespace
