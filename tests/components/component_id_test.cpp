#include <compare>
#include <gtest/gtest.h>
#include <string>

#include <obsidra/host.h>

#include "components/component_id.h"

namespace obsidra::components {
namespace {

ComponentId Id(std::string text, Guid guid = {}) {
    return ComponentId{guid, std::move(text)};
}

constexpr Guid kSampleGuid{
    0x0000abcd, 0x0001, 0xf00d, {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef}};

TEST(IdentifierText, ShowsTextGuidOrNothing) {
    const struct {
        const char* name;
        ComponentId id;
        std::string expected;
    } rows[] = {
        {"guid in lower case, bytes in order", Id("", kSampleGuid),
         "0000abcd-0001-f00d-0123-456789abcdef"},
        {"zero guid keeps its leading zeros", Id(""), "00000000-0000-0000-0000-000000000000"},
        {"largest guid",
         Id("", {0xffffffff, 0xffff, 0xffff, {255, 255, 255, 255, 255, 255, 255, 255}}),
         "ffffffff-ffff-ffff-ffff-ffffffffffff"},
        {"text replaces the guid", Id("QT-001", kSampleGuid), "QT-001"},
        {"none shows as nothing", Id("none", kSampleGuid), ""},
        {"only the exact word none is special", Id("None", kSampleGuid), "None"},
        {"non-ASCII text", Id("构件甲", kSampleGuid), "构件甲"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(IdentifierText(row.id), row.expected) << row.name;
}

TEST(ComponentIdOrder, TextFirstThenGuidFieldByField) {
    const struct {
        const char* name;
        ComponentId a;
        ComponentId b;
        std::strong_ordering expected;
    } rows[] = {
        {"texts decide before the guid", Id("A", {9}), Id("B", {1}), std::strong_ordering::less},
        {"empty text sorts first", Id("", {9}), Id("x", {1}), std::strong_ordering::less},
        {"32-bit part", Id("", {2, 0}), Id("", {1, 9}), std::strong_ordering::greater},
        {"first 16-bit part", Id("t", {1, 1, 9}), Id("t", {1, 2, 0}), std::strong_ordering::less},
        {"second 16-bit part", Id("", {1, 1, 2}), Id("", {1, 1, 1}), std::strong_ordering::greater},
        {"bytes compare unsigned", Id("", {1, 1, 1, {0x80}}), Id("", {1, 1, 1, {0x7f}}),
         std::strong_ordering::greater},
        {"last byte", Id("", {1, 1, 1, {0, 0, 0, 0, 0, 0, 0, 1}}),
         Id("", {1, 1, 1, {0, 0, 0, 0, 0, 0, 0, 2}}), std::strong_ordering::less},
        {"same text and guid", Id("t", kSampleGuid), Id("t", kSampleGuid),
         std::strong_ordering::equal},
        {"texts compare as UTF-16: U+1F600 before U+FF21", Id("😀"), Id("Ａ"),
         std::strong_ordering::less},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.a <=> row.b, row.expected) << row.name;
        EXPECT_EQ(row.b <=> row.a, 0 <=> (row.a <=> row.b)) << row.name << " (reversed)";
    }
}

TEST(Utf16Less, OrdersAsUtf16CodeUnits) {
    const struct {
        const char* name;
        std::string a;
        std::string b;
        bool aLess;
    } rows[] = {
        {"ASCII", "abc", "abd", true},
        {"prefix first", "ab", "abc", true},
        {"equal", "楼层", "楼层", false},
        {"BMP characters by code point", "一", "丁", true},
        {"supplementary before U+E000 and above", "𠀀", "\xEE\x80\x80", true},
        {"supplementary after the rest of the BMP", "𠀀", "龥", false},
        {"two supplementary characters", "𠀀", "𠀁", true},
        // Malformed input must still give a strict order, or ordered maps lose entries.
        {"malformed sequences differing inside", "\xE4\xB8\x41", "\xE4\xB9\x41", true},
        {"malformed after well-formed", "\xE4\x41", "中", false},
        {"overlong encoding is not its character", "\xC1\x81", "B", false},
        {"stray continuation byte", "a\x80", "a\xC2\x80", false},
        {"a string ending inside a character is no prefix", "\xC2", "\xC2\xAD", false},
    };
    const Utf16Less less;
    for (const auto& row : rows) {
        EXPECT_EQ(less(row.a, row.b), row.aLess) << row.name;
        if (row.a != row.b) {
            EXPECT_NE(less(row.a, row.b), less(row.b, row.a)) << row.name << " (asymmetry)";
        }
    }
}

} // namespace
} // namespace obsidra::components
