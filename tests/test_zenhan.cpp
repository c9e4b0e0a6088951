// Shift-JIS width conversions: table values, voiced forms, hiragana, and the
// places where the two directions are deliberately not inverses.
#include <gtest/gtest.h>

#include <cstdint>

#include "text/zenhan.h"

namespace {

struct pair_case {
    uint16_t from;
    uint16_t to;
};

TEST(Zenhan, HalfToFullSamples) {
    const pair_case cases[] = {
        {0x20, 0x8140}, {'"', 0x8168}, {'-', 0x817C}, {'0', 0x824F}, {':', 0x8146},
        {'@', 0x8197},  {'A', 0x8260}, {'\\', 0x818F}, {'`', 0x8165}, {'a', 0x8281},
        {'~', 0x8150},  {0xA0, 0x8140}, {0xA5, 0x8145}, {0xA6, 0x8392}, {0xAF, 0x8362},
        {0xB0, 0x815B}, {0xB6, 0x834A}, {0xCA, 0x836E}, {0xD1, 0x8380}, {0xDD, 0x8393},
        {0xDE, 0x814A}, {0xDF, 0x814B},
        // Outside both tables nothing changes.
        {0x1F, 0x1F},   {0x7F, 0x7F},   {0x9F, 0x9F},   {0xE0, 0xE0},   {0x8341, 0x8341},
    };
    for (const pair_case &c : cases)
        EXPECT_EQ(half_to_full(c.from), c.to) << std::hex << c.from;
}

TEST(Zenhan, FullToHalfSamples) {
    const pair_case cases[] = {
        {0x8341, 0xB1},   // ア
        {0x82AA, 0xB6DE}, // が, by way of the hiragana step
        {0x8260, 0x41},   // Ａ
        {0x8142, 0xA1},   // 。
        {0x889F, 0x889F}, // 亜 has no half form
        {0x8394, 0xB3DE}, // ヴ
        {0x8370, 0xCADF}, // パ
        {0x837C, 0xCEDF}, // ポ
        {0x8368, 0xC4DE}, // ド
        {0x8340, 0xA7},   {0x8362, 0xAF}, {0x8383, 0xAC}, {0x8387, 0xAE}, // small forms
        {0x838E, 0xDC},   {0x8390, 0xB2}, {0x8391, 0xB4}, {0x8395, 0xB6}, {0x8396, 0xB9},
        {0x837F, 0x837F}, // not a character
        {0x8397, 0x8397}, {0x833F, 0x833F},
        {0x829F, 0xA7},   {0x82A0, 0xB1}, {0x82DD, 0xD0}, {0x82DE, 0xD1}, {0x82F1, 0xDD},
        {0x829E, 0x829E}, {0x82F2, 0x82F2},
        {0x8140, 0x20},   {0x8150, '~'},  {0x815B, 0xB0}, {0x814A, 0xDE}, {0x814B, 0xDF},
        {0x8175, 0xA2},   {0x8176, 0xA3}, {0x8141, 0xA4}, {0x8145, 0xA5},
        {0x0000, 0x0000}, {0x0041, 0x0041},
    };
    for (const pair_case &c : cases)
        EXPECT_EQ(full_to_half(c.from), c.to) << std::hex << c.from;
}

TEST(Zenhan, PrintableBytesComeBack) {
    for (uint16_t b = 0x21; b <= 0x7E; b++)
        EXPECT_EQ(full_to_half(half_to_full(b)), b) << std::hex << b;
    for (uint16_t b = 0xA1; b <= 0xDF; b++)
        EXPECT_EQ(full_to_half(half_to_full(b)), b) << std::hex << b;
    // Both blanks widen to the ideographic space, which narrows to ASCII.
    EXPECT_EQ(full_to_half(half_to_full(0xA0)), 0x20);
}

TEST(Zenhan, VoicedFormsSitRightBehindTheirBase) {
    for (uint16_t b = 0xA0; b <= 0xDF; b++) {
        uint16_t full = half_to_full(b);
        uint8_t byte = static_cast<uint8_t>(b);
        if (is_voicable(byte)) {
            EXPECT_EQ(full_to_half(static_cast<uint16_t>(full + 1)), (b << 8) | 0xDE) << b;
        }
        if (is_semi_voicable(byte)) {
            EXPECT_EQ(full_to_half(static_cast<uint16_t>(full + 2)), (b << 8) | 0xDF) << b;
        }
    }
}

TEST(Zenhan, VoicingRanges) {
    struct {
        uint8_t byte;
        bool voicable, semi;
    } cases[] = {{181, false, false}, {182, true, false},  {196, true, false},
                 {197, false, false}, {201, false, false}, {202, true, true},
                 {206, true, true},   {207, false, false}, {0xB3, false, false}};
    for (const auto &c : cases) {
        EXPECT_EQ(is_voicable(c.byte), c.voicable) << int(c.byte);
        EXPECT_EQ(is_semi_voicable(c.byte), c.semi) << int(c.byte);
    }
}

} // namespace
