#include <gtest/gtest.h>
#include <random>

#include "components/component_id.h"
#include "host/ifc/ifc_guid.h"

namespace obsidra::host::ifc {
namespace {

using components::IdentifierText;

std::string Shown(const Guid& guid) {
    return IdentifierText(ComponentId{guid, {}});
}

// Expected values worked out apart from this code, with arbitrary-precision integers: the
// GlobalId read as one base-64 number, printed as a 128-bit hexadecimal GUID.
TEST(IfcGuidTest, DecodesGlobalIdsAsBase64Numbers) {
    const struct {
        const char* globalId;
        const char* guid;
    } rows[] = {
        {"0000000000000000000000", "00000000-0000-0000-0000-000000000000"},
        {"3$$$$$$$$$$$$$$$$$$$$$", "ffffffff-ffff-ffff-ffff-ffffffffffff"},
        {"0000000000000000000001", "00000000-0000-0000-0000-000000000001"},
        {"0000000000000000000010", "00000000-0000-0000-0000-000000000040"},
        {"1000000000000000000000", "40000000-0000-0000-0000-000000000000"},
        {"3g46_woBL6sugXeY5_WP6n", "ea106fba-c8b5-46db-8aa1-a2217e8191b1"},
        {"1C6JH2QOP0lwj7ou2leSLH", "4c193442-6986-40bf-ab47-cb80afa1c551"},
        {"2W4bl$KK1Brv_UEOkAThqU", "a0125bff-5140-4bd7-9f9e-398b8a76bd1e"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.globalId);
        const std::optional<Guid> guid = DecodeIfcGuid(row.globalId);
        ASSERT_TRUE(guid);
        EXPECT_EQ(Shown(*guid), row.guid);
        EXPECT_EQ(EncodeIfcGuid(*guid), row.globalId);
    }
}

TEST(IfcGuidTest, RejectsWhatIsNotAGlobalId) {
    const char* rows[] = {
        "",
        "000000000000000000000",   // 21 characters
        "00000000000000000000000", // 23
        "4000000000000000000000",  // a first digit above 3 overflows 128 bits
        "$000000000000000000000",
        "0000000000000000000+00", // RFC 4648's alphabet, not IFC's
        "0000000000000000000/00",
        "00000000000000000000 0",
        "0000000000000000000\xC3\xA4",
    };
    for (const char* text : rows)
        EXPECT_FALSE(DecodeIfcGuid(text)) << "\"" << text << "\"";
}

TEST(IfcGuidTest, EncodingAndDecodingAreInverse) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 1000; ++i) {
        Guid guid;
        const std::uint64_t high = random();
        const std::uint64_t low = random();
        guid.data1 = static_cast<std::uint32_t>(high >> 32);
        guid.data2 = static_cast<std::uint16_t>(high >> 16);
        guid.data3 = static_cast<std::uint16_t>(high);
        for (int b = 0; b < 8; ++b)
            guid.data4[b] = static_cast<std::uint8_t>(low >> (56 - 8 * b));
        const std::string globalId = EncodeIfcGuid(guid);
        ASSERT_EQ(globalId.size(), 22u);
        ASSERT_LE(globalId[0], '3');
        ASSERT_EQ(DecodeIfcGuid(globalId), guid) << globalId;
    }
}

TEST(IfcGuidTest, AnIdentifierKeepsAGlobalIdThatDoesNotDecode) {
    EXPECT_EQ(IdFromGlobalId("3g46_woBL6sugXeY5_WP6n").text, "");
    EXPECT_EQ(IdentifierText(IdFromGlobalId("3g46_woBL6sugXeY5_WP6n")),
              "ea106fba-c8b5-46db-8aa1-a2217e8191b1");
    EXPECT_EQ(IdentifierText(IdFromGlobalId("not-a-guid")), "not-a-guid");
    EXPECT_EQ(IdentifierText(IdFromGlobalId("")), "");
}

} // namespace
} // namespace obsidra::host::ifc
