#include "Foundation/SMCKeyData.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace corvane {
namespace {

TEST(SMCKeyData, EncodesEveryFieldAtItsOffset) {
    SMCKeyData data;
    data.key = 0x234B4559;
    data.version = {0x01, 0x02, 0x03, 0x04, 0x0506};
    data.powerLimit = {0x0708, 0x090A, 0x0B0C0D0E, 0x0F101112, 0x13141516};
    data.keyInfo = {0x1718191A, 0x1B1C1D1E, 0x1F};
    data.result = 0x20;
    data.status = 0x21;
    data.data8 = 0x22;
    data.data32 = 0x23242526;
    for (std::size_t i = 0; i < data.bytes.size(); ++i) {
        data.bytes[i] = static_cast<std::uint8_t>(0x30 + i);
    }
    // The controller's layout, written out by hand: little-endian integers, zero padding at
    // 10-11, 37-39 and 43.
    SMCRecord expected = {
        0x59, 0x45, 0x4B, 0x23, 0x01, 0x02, 0x03, 0x04, 0x06, 0x05, 0x00, 0x00,
        0x08, 0x07, 0x0A, 0x09, 0x0E, 0x0D, 0x0C, 0x0B, 0x12, 0x11, 0x10, 0x0F,
        0x16, 0x15, 0x14, 0x13, 0x1A, 0x19, 0x18, 0x17, 0x1E, 0x1D, 0x1C, 0x1B,
        0x1F, 0x00, 0x00, 0x00, 0x20, 0x21, 0x22, 0x00, 0x26, 0x25, 0x24, 0x23,
    };
    for (std::size_t i = 0; i < 32; ++i) {
        expected[48 + i] = static_cast<std::uint8_t>(0x30 + i);
    }
    EXPECT_EQ(encodeSMCKeyData(data), expected);
    expected[10] = expected[37] = expected[43] = 0xEE;
    EXPECT_EQ(decodeSMCKeyData(expected), data) << "padding must not leak into a field";
}

}  // namespace
}  // namespace corvane
