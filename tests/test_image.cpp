// The program image: attribute fields, line lists, daughters, positions and
// the number tables, as the listing side fills them.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "binfmt/image.h"
#include "core/alloc.h"

namespace {

class ImageTest : public ::testing::Test {
protected:
    void SetUp() override { image_begin(); }
    void TearDown() override {
        image_release();
        lmalloc_end();
    }
};

std::vector<uint8_t> line_bytes(int32_t index) {
    const uint8_t *data = nullptr;
    int32_t length = -1;
    if (line_at(index, &data, &length) != 0)
        return {};
    return std::vector<uint8_t>(data, data + length);
}

std::vector<uint8_t> pos_record(uint16_t number, uint8_t fill, int32_t length) {
    std::vector<uint8_t> r(static_cast<size_t>(length), fill);
    r[0] = static_cast<uint8_t>(number >> 8);
    r[1] = static_cast<uint8_t>(number);
    return r;
}

} // namespace

TEST_F(ImageTest, BeginSetsAttributeDefaults) {
    EXPECT_EQ(image_attr.default_group, 1);
    EXPECT_EQ(image_attr.task_priority, 50);
    EXPECT_EQ(image_attr.protect, 1);
    EXPECT_EQ(image_attr.owner[0], '\0');
    EXPECT_EQ(image_attr.comment[0], '\0');
    EXPECT_EQ(image_attr.create, 0u);
    EXPECT_EQ(image_attr.control_code, 0);
    EXPECT_EQ(image_name[0], '\0');
    EXPECT_EQ(image_subtype, 0);
    EXPECT_EQ(image_daughter_high, 0);
    EXPECT_EQ(line_count(), 0);
    EXPECT_EQ(pos_record_count(), 0);
    EXPECT_EQ(position_numbers.capacity, 128);
    EXPECT_EQ(position_numbers.free_slots, 128);
    EXPECT_EQ(label_numbers.capacity, 128);
    EXPECT_EQ(number_count(&label_numbers), 0);
}

TEST_F(ImageTest, BeginForgetsThePreviousRun) {
    const uint8_t line[] = {30, 'X', 0};
    ASSERT_EQ(line_append(line, 3), 0);
    ASSERT_EQ(note_position(4), 0);
    image_attr.protect = 2;
    image_set_name("OLD");
    image_begin();
    EXPECT_EQ(line_count(), 0);
    EXPECT_EQ(position_known(4), 103);
    EXPECT_EQ(image_attr.protect, 1);
    EXPECT_STREQ(image_name, "");
}

TEST_F(ImageTest, NameKeepsEightCharacters) {
    EXPECT_EQ(image_set_name("ABCDEFGHIJK"), 0);
    EXPECT_STREQ(image_name, "ABCDEFGH");
    image_set_name("P1");
    EXPECT_STREQ(image_name, "P1");
    EXPECT_EQ(image_name[3], '\0');
}

TEST_F(ImageTest, AttrSetResultsByFieldNumber) {
    const uint16_t v = 7;
    struct row {
        int32_t field;
        int32_t size;
        int32_t result;
    };
    const row rows[] = {
        {-1, 2, 0},      {19, 2, 0},      {3, 2, 458786},  {4, 4, 458786}, {5, 2, 458786},
        {6, 2, 458786},  {7, 2, 458786},  {9, 1, 458806},  {10, 0, 458806}, {18, 1, 458806},
        {9, 2, 0},       {18, 2, 0},      {13, 4, 0},
    };
    for (const row &r : rows)
        EXPECT_EQ(attr_set("P", r.field, &v, r.size), r.result) << "field " << r.field << " size " << r.size;
}

TEST_F(ImageTest, AttrSetStoresEachSixteenBitField) {
    struct row {
        int32_t field;
        const uint16_t *target;
    };
    const row rows[] = {
        {9, &image_attr.version},        {10, &image_attr.default_group}, {11, &image_attr.protect},
        {12, &image_attr.stack_size},    {13, &image_attr.task_priority}, {14, &image_attr.time_slice},
        {15, &image_attr.busy_lamp_off}, {16, &image_attr.abort_request}, {17, &image_attr.pause_request},
        {18, &image_attr.control_code},
    };
    uint16_t value = 1000;
    for (const row &r : rows) {
        value++;
        ASSERT_EQ(attr_set("P", r.field, &value, 2), 0);
        EXPECT_EQ(*r.target, value) << "field " << r.field;
    }
    const int16_t negative = -3;
    ASSERT_EQ(attr_set("P", 9, &negative, 2), 0);
    EXPECT_EQ(static_cast<int16_t>(image_attr.version), -3);
    /* A refused size leaves the field alone. */
    const uint16_t other = 5;
    EXPECT_EQ(attr_set("P", 12, &other, 1), 458806);
    EXPECT_EQ(image_attr.stack_size, 1004);
}

TEST_F(ImageTest, AttrSetCutsTexts) {
    const char owner[] = "ABCDEFGHIJKL";
    const char comment[] = "0123456789abcdefXYZ";
    ASSERT_EQ(attr_set("P", 1, owner, sizeof owner), 0);
    EXPECT_EQ(std::string(image_attr.owner), "ABCDEFGHI");
    ASSERT_EQ(attr_set("P", 2, comment, sizeof comment), 0);
    EXPECT_EQ(std::string(image_attr.comment, 16), "0123456789abcdef");
    EXPECT_EQ(image_attr.comment[16], '\0');
    EXPECT_EQ(image_attr.comment[17], '\0');
    /* A shorter text clears what the longer one left. */
    ASSERT_EQ(attr_set("P", 1, "AB", 3), 0);
    EXPECT_EQ(std::memcmp(image_attr.owner, "AB\0\0\0\0\0\0\0\0", 10), 0);
    /* The size bounds the bytes read. */
    ASSERT_EQ(attr_set("P", 2, "LONGCOMMENT", 4), 0);
    EXPECT_STREQ(image_attr.comment, "LONG");
    ASSERT_EQ(attr_set("P", 0, "NAMEISLONG", 12), 0);
    EXPECT_STREQ(image_name, "NAMEISLO");
    const char *source = "L P[1] 100mm/sec FINE ;";
    ASSERT_EQ(attr_set("P", 8, source, 0), 0);
    EXPECT_EQ(image_source_text, source);
}

TEST_F(ImageTest, LinesKeepOrderAndPrivateCopies) {
    uint8_t first[] = {30, 'A', 0};
    const uint8_t empty[] = {255};
    ASSERT_EQ(line_append(first, 3), 0);
    ASSERT_EQ(line_append(empty, 1), 0);
    first[1] = 'Z';
    EXPECT_EQ(line_count(), 2);
    EXPECT_EQ(line_bytes(0), (std::vector<uint8_t>{30, 'A', 0}));
    EXPECT_EQ(line_bytes(1), (std::vector<uint8_t>{255}));
    const uint8_t *data = nullptr;
    int32_t length = 0;
    EXPECT_EQ(line_at(2, &data, &length), 1) << "the index of the count is the empty tail";
    EXPECT_EQ(line_at(-1, &data, &length), 1);
    /* Going back works after walking forward. */
    EXPECT_EQ(line_bytes(0)[1], 'A');
}

TEST_F(ImageTest, LineLengthLimit) {
    std::vector<uint8_t> big(256, 7);
    EXPECT_EQ(line_append(big.data(), 256), 197);
    EXPECT_EQ(line_append(big.data(), -1), 197);
    EXPECT_EQ(line_count(), 0);
    EXPECT_EQ(line_append(big.data(), 255), 0);
    EXPECT_EQ(line_append(nullptr, 0), 0);
    EXPECT_EQ(line_bytes(0).size(), 255u);
    EXPECT_EQ(line_bytes(1).size(), 0u);
    EXPECT_EQ(line_count(), 2);
}

TEST_F(ImageTest, ManyLinesWalkInOrder) {
    for (int32_t i = 0; i < 5000; i++) {
        uint8_t bytes[2] = {static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)};
        ASSERT_EQ(line_append(bytes, 2), 0);
    }
    for (int32_t i = 0; i < 5000; i++) {
        std::vector<uint8_t> b = line_bytes(i);
        ASSERT_EQ(b.size(), 2u);
        ASSERT_EQ(b[0] << 8 | b[1], i);
    }
    EXPECT_EQ(line_bytes(4321)[1], 4321 & 0xFF);
}

TEST_F(ImageTest, DaughterListsAreSeparate) {
    const uint8_t a[] = {1, 2};
    const uint8_t b[] = {3};
    ASSERT_EQ(daughter_line_append(a, 2, 2), 0);
    EXPECT_EQ(image_daughter_high, 2);
    ASSERT_EQ(daughter_line_append(b, 1, 1), 0);
    EXPECT_EQ(image_daughter_high, 2) << "a lower number does not lower it";
    ASSERT_EQ(daughter_line_append(b, 1, 2), 0);
    EXPECT_EQ(daughter_line_count(1), 1);
    EXPECT_EQ(daughter_line_count(2), 2);
    EXPECT_EQ(daughter_line_count(3), 0);
    EXPECT_EQ(line_count(), 0);
    const uint8_t *data = nullptr;
    int32_t length = 0;
    ASSERT_EQ(daughter_line_at(0, &data, &length, 2), 0);
    EXPECT_EQ(length, 2);
    EXPECT_EQ(data[1], 2);
    ASSERT_EQ(daughter_line_at(1, &data, &length, 2), 0);
    EXPECT_EQ(data[0], 3);
    EXPECT_EQ(daughter_line_at(2, &data, &length, 2), 1);
    EXPECT_EQ(daughter_line_at(0, &data, &length, 3), 1);
}

TEST_F(ImageTest, DaughterNumbersOutsideTheTableAreRefused) {
    const uint8_t a[] = {1};
    EXPECT_EQ(daughter_line_append(a, 1, 7999), 0);
    EXPECT_EQ(image_daughter_high, 7999);
    const int32_t bad[] = {0, -1, 8000, 100000};
    for (int32_t n : bad) {
        EXPECT_EQ(daughter_line_append(a, 1, n), 115) << n;
        EXPECT_EQ(daughter_line_count(n), 0) << n;
    }
    EXPECT_EQ(image_daughter_high, 7999);
    std::vector<uint8_t> big(256, 0);
    EXPECT_EQ(daughter_line_append(big.data(), 256, 1), 197);
}

TEST_F(ImageTest, PositionsInNumberOrder) {
    const uint16_t numbers[] = {5, 2, 9, 7, 1};
    for (uint16_t n : numbers) {
        std::vector<uint8_t> r = pos_record(n, static_cast<uint8_t>(n), 6);
        ASSERT_EQ(pos_append(r.data(), 6), 0) << n;
    }
    std::vector<uint8_t> dup = pos_record(9, 0, 4);
    EXPECT_EQ(pos_append(dup.data(), 4), 102);
    EXPECT_EQ(pos_record_count(), 5);
    const int expected[] = {1, 2, 5, 7, 9};
    for (int32_t i = 0; i < 5; i++) {
        const uint8_t *data = nullptr;
        int32_t length = 0;
        ASSERT_EQ(pos_at(i, &data, &length), 0);
        EXPECT_EQ(length, 6);
        EXPECT_EQ(data[0] << 8 | data[1], expected[i]);
        EXPECT_EQ(data[5], expected[i]) << "the duplicate did not replace the record";
    }
    const uint8_t *data = nullptr;
    int32_t length = 0;
    EXPECT_EQ(pos_at(5, &data, &length), 1);
    EXPECT_EQ(pos_exists(5), 102);
    EXPECT_EQ(pos_exists(6), 0);
    EXPECT_EQ(pos_defined(7), 1);
    EXPECT_EQ(pos_defined(8), 0);
    EXPECT_EQ(pos_defined(-1), 0);
    EXPECT_EQ(pos_defined(70000), 0);
}

TEST_F(ImageTest, PositionRecordsNeedANumber) {
    const uint8_t one[] = {0};
    EXPECT_EQ(pos_append(one, 1), 1);
    EXPECT_EQ(pos_append(nullptr, 4), 1);
    const uint8_t uninit[] = {0x01, 0x00};
    EXPECT_EQ(pos_append(uninit, 2), 0);
    EXPECT_EQ(pos_defined(256), 1);
}

TEST_F(ImageTest, PositionNumbersSortedWithoutDuplicates) {
    const int32_t used[] = {10, 3, 10, 7, 3, 1, 12};
    for (int32_t n : used)
        ASSERT_EQ(note_position(n), 0);
    ASSERT_EQ(number_count(&position_numbers), 5);
    const int32_t expected[] = {1, 3, 7, 10, 12};
    for (int32_t i = 0; i < 5; i++)
        EXPECT_EQ(position_numbers.values[i], expected[i]);
    EXPECT_EQ(position_known(7), 0);
    EXPECT_EQ(position_known(8), 103);
    EXPECT_EQ(position_known(0), 103);
    EXPECT_EQ(position_known(13), 103);
}

TEST_F(ImageTest, NumberTablesGrowByThirtyTwo) {
    for (int32_t n = 128; n >= 1; n--)
        ASSERT_EQ(note_position(n * 2), 0);
    EXPECT_EQ(position_numbers.capacity, 128);
    EXPECT_EQ(position_numbers.free_slots, 0);
    ASSERT_EQ(note_position(3), 0);
    EXPECT_EQ(position_numbers.capacity, 160);
    EXPECT_EQ(position_numbers.free_slots, 31);
    EXPECT_EQ(position_numbers.values[0], 2);
    EXPECT_EQ(position_numbers.values[1], 3);
    EXPECT_EQ(position_numbers.values[2], 4);
    EXPECT_EQ(position_numbers.values[128], 256);

    for (int32_t n = 1; n <= 129; n++)
        ASSERT_EQ(note_label(1000 - n), 0);
    EXPECT_EQ(label_numbers.capacity, 160);
    EXPECT_EQ(number_count(&label_numbers), 129);
    EXPECT_EQ(label_numbers.values[0], 999);
    EXPECT_EQ(label_numbers.values[128], 871);
}

TEST_F(ImageTest, LabelsInOrderOfDefinition) {
    const int32_t defined[] = {5, 1, 70000, -2, 3};
    for (int32_t n : defined)
        ASSERT_EQ(note_label(n), 0) << n;
    const int32_t again[] = {5, 70000, -2, 3};
    for (int32_t n : again)
        EXPECT_EQ(note_label(n), 102) << n;
    ASSERT_EQ(number_count(&label_numbers), 5);
    for (int32_t i = 0; i < 5; i++)
        EXPECT_EQ(label_numbers.values[i], defined[i]);
}

TEST_F(ImageTest, ReleaseFreesLineNodesAndSurvivesAnEndedList) {
    const uint8_t line[] = {255};
    for (int i = 0; i < 10; i++)
        ASSERT_EQ(line_append(line, 1), 0);
    ASSERT_EQ(daughter_line_append(line, 1, 3), 0);
    size_t before = lmalloc_live_blocks();
    image_release();
    /* Each line had a node of its own; the bytes stay for lmalloc_end. */
    EXPECT_LE(lmalloc_live_blocks(), before - 10);
    EXPECT_EQ(line_count(), 0);
    EXPECT_EQ(daughter_line_count(3), 0);

    image_begin();
    ASSERT_EQ(line_append(line, 1), 0);
    ASSERT_EQ(note_position(2), 0);
    lmalloc_end();
    /* The stores' blocks are gone: nothing may touch them. */
    const uint8_t *data = nullptr;
    int32_t length = 0;
    EXPECT_EQ(line_at(0, &data, &length), 1);
    EXPECT_EQ(position_known(2), 103);
    image_release();
    EXPECT_EQ(line_count(), 0);
    /* The stores pick up a fresh list when used again. */
    ASSERT_EQ(line_append(line, 1), 0);
    EXPECT_EQ(line_count(), 1);
    EXPECT_EQ(position_numbers.capacity, 128);
}
