// The application record store of the program image: records by type and
// instance, write modes, sums, lookup by label, and its status codes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "binfmt/image_appl.h"
#include "core/alloc.h"

namespace {

class ImageApplTest : public ::testing::Test {
protected:
    void SetUp() override { image_begin(); }
    void TearDown() override {
        image_release();
        lmalloc_end();
    }
};

int32_t put(int32_t type, int32_t instance, const std::string &bytes, int32_t mode = 2) {
    return appl_write(type, instance, reinterpret_cast<const uint8_t *>(bytes.data()),
                      static_cast<int32_t>(bytes.size()), mode);
}

/* Length byte and payload as appl_read gives them, or the status. */
std::string get(int32_t type, int32_t instance, int32_t *status = nullptr) {
    uint8_t buffer[256];
    int32_t rc = appl_read(type, instance, buffer, sizeof buffer);
    if (status)
        *status = rc;
    if (rc != 0)
        return {};
    return std::string(reinterpret_cast<char *>(buffer), 1 + buffer[0]);
}

} // namespace

TEST_F(ImageApplTest, EmptyStore) {
    EXPECT_EQ(image_root, nullptr);
    int32_t count = -1;
    EXPECT_EQ(appl_type_count(&count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(appl_instance_count(0, &count), 458872);
    int32_t status = 0;
    get(0, 0, &status);
    EXPECT_EQ(status, 458872);
}

TEST_F(ImageApplTest, WriteThenReadGivesLengthAndPayload) {
    ASSERT_EQ(put(0, 0, std::string("MUAP\0\0\0\x02\0\0\0\0", 12)), 0);
    ASSERT_EQ(put(0, 3, "xyz"), 0);
    EXPECT_EQ(get(0, 0), std::string("\x0C" "MUAP\0\0\0\x02\0\0\0\0", 13));
    EXPECT_EQ(get(0, 3), "\x03xyz");
    int32_t count = 0;
    EXPECT_EQ(appl_instance_count(0, &count), 0);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(image_root->rows[0]->in_use, 2);
    int32_t status = 0;
    get(0, 1, &status);
    EXPECT_EQ(status, 458871) << "a slot below the highest holds nothing";
    get(0, 4, &status);
    EXPECT_EQ(status, 458872);
    EXPECT_EQ(put(1, 0, ""), 0);
    EXPECT_EQ(get(1, 0), std::string("\0", 1));
}

TEST_F(ImageApplTest, StoredRecordHoldsLengthSumAndPayload) {
    /* The sum adds the bytes as signed values, kept in 8 bits. */
    ASSERT_EQ(put(0, 0, std::string("\x80\x7F\x05", 3)), 0);
    const uint8_t *record = image_root->rows[0]->records[0];
    EXPECT_EQ(record[0], 3);
    EXPECT_EQ(record[1], static_cast<uint8_t>(-128 + 127 + 5));
    EXPECT_EQ(record[2], 0x80);
    EXPECT_EQ(record[4], 0x05);
}

TEST_F(ImageApplTest, TablesGrowToTheHighestTypeAndInstance) {
    ASSERT_EQ(put(2, 0, "a"), 0);
    int32_t count = 0;
    appl_type_count(&count);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(image_root->in_use, 1);
    EXPECT_EQ(appl_instance_count(0, &count), 458871);
    EXPECT_EQ(appl_instance_count(3, &count), 458872);
    EXPECT_EQ(appl_instance_count(-1, &count), 458872);
    ASSERT_EQ(put(40, 300, "b"), 0);
    ASSERT_EQ(put(0, 0, "c"), 0);
    appl_type_count(&count);
    EXPECT_EQ(count, 41);
    EXPECT_EQ(image_root->in_use, 3);
    EXPECT_EQ(appl_instance_count(40, &count), 0);
    EXPECT_EQ(count, 301);
    EXPECT_EQ(get(2, 0), "\x01" "a");
    EXPECT_EQ(get(40, 300), "\x01" "b");
}

TEST_F(ImageApplTest, WriteModes) {
    struct row {
        const char *what;
        bool old_record;
        std::string data;
        int32_t mode;
        int32_t result;
        std::string after; /* length byte and payload afterwards, empty: none */
    };
    const row rows[] = {
        {"replace, none there", false, "AB", 2, 0, "\x02" "AB"},
        {"replace, other length", true, "ABC", 2, 0, "\x03" "ABC"},
        {"overwrite, none there", false, "AB", 4, 458871, ""},
        {"overwrite, other length", true, "ABC", 4, 458813, "\x02" "xy"},
        {"overwrite, same length", true, "AB", 4, 0, "\x02" "AB"},
        {"either, same length", true, "AB", 6, 0, "\x02" "AB"},
        {"either, other length", true, "A", 6, 0, "\x01" "A"},
        {"either, none there", false, "A", 6, 0, "\x01" "A"},
        {"no mode bits", true, "AB", 0, 458813, "\x02" "xy"},
        {"bits beyond the mode", true, "AB", 8, 458813, "\x02" "xy"},
        {"dry run", false, "AB", 1, 0, ""},
        {"dry run with replace", true, "ABC", 3, 0, "\x02" "xy"},
        {"dry run with a bad mode", true, "ABC", 9, 0, "\x02" "xy"},
    };
    for (const row &r : rows) {
        image_begin();
        if (r.old_record) {
            ASSERT_EQ(put(5, 1, "xy"), 0) << r.what;
        }
        EXPECT_EQ(put(5, 1, r.data, r.mode), r.result) << r.what;
        int32_t status = 0;
        std::string after = get(5, 1, &status);
        EXPECT_EQ(after, r.after) << r.what;
        if (r.after.empty()) {
            EXPECT_NE(status, 0) << r.what;
        }
    }
}

TEST_F(ImageApplTest, InstanceCountCountsNewRecordsOnly) {
    ASSERT_EQ(put(1, 0, "L"), 0);
    ASSERT_EQ(put(1, 1, "a"), 0);
    ASSERT_EQ(put(1, 1, "bb"), 0);
    ASSERT_EQ(put(1, 1, "cc", 6), 0);
    EXPECT_EQ(image_root->rows[1]->in_use, 2);
    EXPECT_EQ(get(1, 1), "\x02" "cc");
}

TEST_F(ImageApplTest, OutOfRangeArguments) {
    EXPECT_EQ(put(65535, 0, "a"), 458872);
    EXPECT_EQ(put(0, 65535, "a"), 458872);
    EXPECT_EQ(put(-1, 0, "a"), 458872);
    EXPECT_EQ(put(0, -1, "a"), 458872);
    std::string big(256, 'x');
    EXPECT_EQ(put(0, 0, big), 458872);
    EXPECT_EQ(image_root, nullptr);
    EXPECT_EQ(put(0, 0, std::string(255, 'x')), 0);
    EXPECT_EQ(get(0, 0).size(), 256u);
}

TEST_F(ImageApplTest, ReadChecksBufferAndSum) {
    ASSERT_EQ(put(0, 0, "SPOT\x01"), 0);
    uint8_t buffer[8];
    EXPECT_EQ(appl_read(0, 0, buffer, 5), 458763);
    EXPECT_EQ(appl_read(0, 0, buffer, 6), 0);
    EXPECT_EQ(buffer[0], 5);
    EXPECT_EQ(buffer[5], 1);
    image_root->rows[0]->records[0][1] ^= 1;
    EXPECT_EQ(appl_read(0, 0, buffer, 8), 458855);
}

TEST_F(ImageApplTest, FindByLabel) {
    ASSERT_EQ(put(0, 0, std::string("MUAP\0\0\0\x01", 8)), 0);
    ASSERT_EQ(put(1, 0, "ARCW\x01"), 0);
    ASSERT_EQ(put(2, 0, "ARCW\x02"), 0);
    ASSERT_EQ(put(2, 1, "data"), 0);
    int32_t type = -1, instance = -1;
    EXPECT_EQ(appl_find("P", "ARCW\x02", 5, &type, &instance), 0);
    EXPECT_EQ(type, 2);
    EXPECT_EQ(instance, 0);
    EXPECT_EQ(appl_find("P", "ARCW", 4, &type, &instance), 0);
    EXPECT_EQ(type, 1) << "the lowest type with the label";
    EXPECT_EQ(appl_find("P", "MUAP", 4, &type, &instance), 0);
    EXPECT_EQ(type, 0);
    EXPECT_EQ(appl_find("P", "SPOT", 4, &type, &instance), 458875);
    EXPECT_EQ(appl_find("P", "ARCW\x02\x00", 6, &type, &instance), 458875) << "longer than the label";
    EXPECT_EQ(appl_find("P", "data", 4, &type, &instance), 458875) << "only record 0 is a label";
}

TEST_F(ImageApplTest, EmptyNameGivesTheFirstFreeType) {
    int32_t type = -1, instance = -1;
    EXPECT_EQ(appl_find("P", "", 0, &type, &instance), 0);
    EXPECT_EQ(type, 0);
    ASSERT_EQ(put(0, 0, "MUAP"), 0);
    ASSERT_EQ(put(1, 0, "SPOT"), 0);
    EXPECT_EQ(appl_find("P", nullptr, 0, &type, &instance), 0);
    EXPECT_EQ(type, 2);
    ASSERT_EQ(put(4, 0, "LNTK"), 0);
    EXPECT_EQ(appl_find("P", "", 0, &type, &instance), 0);
    EXPECT_EQ(type, 2) << "the hole below the highest type";
}
