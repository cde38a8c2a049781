#include "host/ifc/ifc_guid.h"

#include <array>

namespace obsidra::host::ifc {

namespace {

constexpr std::string_view kDigits =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr std::size_t kGlobalIdLength = 22;

int DigitValue(char c) {
    const std::size_t at = kDigits.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

// The GUID's bytes in the order they are written: data1 and data2, data3 big-endian, then data4.
using GuidBytes = std::array<std::uint8_t, 16>;

GuidBytes ToBytes(const Guid& guid) {
    GuidBytes bytes{};
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(guid.data1 >> (24 - 8 * i));
    bytes[4] = static_cast<std::uint8_t>(guid.data2 >> 8);
    bytes[5] = static_cast<std::uint8_t>(guid.data2);
    bytes[6] = static_cast<std::uint8_t>(guid.data3 >> 8);
    bytes[7] = static_cast<std::uint8_t>(guid.data3);
    for (int i = 0; i < 8; ++i)
        bytes[8 + i] = guid.data4[i];
    return bytes;
}

Guid FromBytes(const GuidBytes& bytes) {
    Guid guid;
    for (int i = 0; i < 4; ++i)
        guid.data1 = (guid.data1 << 8) | bytes[i];
    guid.data2 = static_cast<std::uint16_t>((bytes[4] << 8) | bytes[5]);
    guid.data3 = static_cast<std::uint16_t>((bytes[6] << 8) | bytes[7]);
    for (int i = 0; i < 8; ++i)
        guid.data4[i] = bytes[8 + i];
    return guid;
}

} // namespace

std::optional<Guid> DecodeIfcGuid(std::string_view globalId) {
    if (globalId.size() != kGlobalIdLength) return std::nullopt;
    // Schoolbook base conversion on the 16 bytes: multiply by 64, add the digit.
    GuidBytes bytes{};
    for (std::size_t i = 0; i < kGlobalIdLength; ++i) {
        const int digit = DigitValue(globalId[i]);
        if (digit < 0 || (i == 0 && digit > 3)) return std::nullopt;
        unsigned carry = static_cast<unsigned>(digit);
        for (std::size_t b = bytes.size(); b-- > 0;) {
            const unsigned value = bytes[b] * 64u + carry;
            bytes[b] = static_cast<std::uint8_t>(value);
            carry = value >> 8;
        }
    }
    return FromBytes(bytes);
}

std::string EncodeIfcGuid(const Guid& guid) {
    GuidBytes bytes = ToBytes(guid);
    std::string text(kGlobalIdLength, '0');
    for (std::size_t i = kGlobalIdLength; i-- > 0;) {
        // Divide the 128-bit number by 64; the remainder is the next digit from the right.
        unsigned remainder = 0;
        for (std::uint8_t& byte : bytes) {
            const unsigned value = (remainder << 8) | byte;
            byte = static_cast<std::uint8_t>(value / 64);
            remainder = value % 64;
        }
        text[i] = kDigits[remainder];
    }
    return text;
}

ComponentId IdFromGlobalId(std::string_view globalId) {
    ComponentId id;
    if (const std::optional<Guid> guid = DecodeIfcGuid(globalId))
        id.guid = *guid;
    else
        id.text = globalId.empty() ? std::string("none") : std::string(globalId);
    return id;
}

} // namespace obsidra::host::ifc
