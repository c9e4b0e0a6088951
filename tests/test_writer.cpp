// The .TP writer: whole files written from an image filled through its
// interface, compared byte for byte, and the writer's failures.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "binfmt/image.h"
#include "binfmt/image_appl.h"
#include "binfmt/writer.h"
#include "core/alloc.h"
#include "core/run_state.h"

namespace {

using bytes = std::vector<uint8_t>;

/* "00 0a ff" -> bytes; "zeros(n)" is not needed, see zeros(). */
bytes hex(const char *text) {
    bytes out;
    unsigned value = 0;
    int digits = 0;
    for (const char *p = text; *p; p++) {
        char c = *p;
        int d = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10
              : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
        if (d < 0)
            continue;
        value = value << 4 | static_cast<unsigned>(d);
        if (++digits == 2) {
            out.push_back(static_cast<uint8_t>(value));
            value = 0;
            digits = 0;
        }
    }
    return out;
}

bytes zeros(size_t n) { return bytes(n, 0); }

bytes operator+(bytes a, const bytes &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

bytes text_field(const char *text, size_t size) {
    bytes out(size, 0);
    std::memcpy(out.data(), text, std::strlen(text));
    return out;
}

/* The attribute block of a program with no /ATTR section. */
const bytes default_attr = hex("01 0048") + zeros(28) +
                           hex("00000000 00000000 00000000 00000000"   /* size, dates, reserved */
                               "0000 0000 00000000"                    /* version, lines, memory */
                               "0001 0000 0032 0000 0000 0000 0000"    /* protect .. pause */
                               "0001 0000 0000 ffff");                 /* group, control, reserved */

bytes name_record(uint8_t subtype, const char *name) {
    return hex("00 00 01") + bytes{subtype} + text_field(name, 14) + hex("ff ff");
}

std::string temp_path(const char *tag) {
    return ::testing::TempDir() + "vz_writer_" + tag + "_" + std::to_string(::getpid()) + ".TP";
}

bytes read_file(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/* Runs write_program into a fresh file and gives its bytes. */
bytes write_file(int32_t *result, const char *tag = "out") {
    std::string path = temp_path(tag);
    output_stream = std::fopen(path.c_str(), "wb");
    EXPECT_NE(output_stream, nullptr);
    *result = write_program();
    std::fclose(output_stream);
    output_stream = nullptr;
    bytes out = read_file(path);
    std::remove(path.c_str());
    return out;
}

void add_line(std::initializer_list<uint8_t> line) {
    bytes b(line);
    ASSERT_EQ(line_append(b.data(), static_cast<int32_t>(b.size())), 0);
}

void add_appl(int32_t type, int32_t instance, const std::string &payload) {
    ASSERT_EQ(appl_write(type, instance, reinterpret_cast<const uint8_t *>(payload.data()),
                         static_cast<int32_t>(payload.size()), APPL_MODE_REPLACE), 0);
}

int32_t spot_hook_argument = 0;
int32_t spot_hook_result = 0;
int32_t default_spot_header(int32_t argument) {
    spot_hook_argument = argument;
    int32_t type = 0, instance = 0;
    appl_find("P", "", 0, &type, &instance);
    const uint8_t label[] = {'S', 'P', 'O', 'T', 1};
    if (spot_hook_result == 0)
        appl_write(type, 0, label, 5, APPL_MODE_REPLACE);
    return spot_hook_result;
}

int32_t completed = 0;
int32_t complete_motion_schedule() {
    completed++;
    add_appl(7, 0, "MOTN");
    return 0;
}

class WriterTest : public ::testing::Test {
protected:
    void SetUp() override {
        image_begin();
        appl_header_reset();
        writer_set_spot_header_hook(nullptr);
        writer_set_appl_complete_hook(nullptr);
        take_write_count();
    }
    void TearDown() override {
        writer_set_spot_header_hook(nullptr);
        writer_set_appl_complete_hook(nullptr);
        appl_header_reset();
        image_release();
        lmalloc_end();
    }
};

} // namespace

TEST_F(WriterTest, SmallProgramHasTheDocumentedBytes) {
    image_set_name("A");
    add_line({0x1E, 0x58, 0x00});
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const bytes expected = hex(
        "00 00 01 00 41 00 00 00 00 00 00 00 00 00 00 00 00 00 ff ff"
        "01 00 48"
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
        "00 00 00 00  00 00 00 00  00 01  00 00  00 32"
        "00 00 00 00 00 00 00 00  00 01  00 00  00 00  ff ff"
        "02 00 03 1e 58 00 ff ff"
        "03 ff ff"
        "04 ff ff");
    ASSERT_EQ(expected.size(), 111u);
    EXPECT_EQ(file, expected);
}

TEST_F(WriterTest, EmptyProgramWithSubType) {
    image_set_name("MAIN");
    image_set_subtype(TP_SUBTYPE_MACRO);
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    EXPECT_EQ(file, name_record(3, "MAIN") + default_attr + hex("02 ffff 03 ffff 04 ffff"));
    EXPECT_EQ(file.size(), 106u);
}

TEST_F(WriterTest, AttributeFieldsAtTheirPlaces) {
    image_set_name("PROG1");
    const char owner[] = "MNEDITOR";
    const char comment[] = "Sixteen chars ok";
    attr_set("PROG1", ATTR_OWNER, owner, sizeof owner);
    attr_set("PROG1", ATTR_COMMENT, comment, sizeof comment);
    image_attr.prog_size = 0x01020304;
    image_attr.create = 0x0A0B0C0D;
    image_attr.modified = 0x11121314;
    image_attr.line_count = 0x2122;
    image_attr.memory_size = 0x31323334;
    image_attr.protect = 2;
    const uint16_t values[] = {0x4142, 0x0003, 0x0000, 0x5152, 0x000A, 0x6162, 0x7172, 0x8182, 0x9192, 0x0015, 0xA1A2};
    const int32_t fields[] = {ATTR_VERSION, ATTR_DEFAULT_GROUP, ATTR_PROTECT, ATTR_STACK_SIZE, ATTR_TASK_PRIORITY,
                              ATTR_TIME_SLICE, ATTR_BUSY_LAMP_OFF, ATTR_ABORT_REQUEST, ATTR_PAUSE_REQUEST,
                              ATTR_DEFAULT_GROUP, ATTR_CONTROL_CODE};
    for (size_t i = 0; i < std::size(fields); i++)
        ASSERT_EQ(attr_set("PROG1", fields[i], &values[i], 2), 0);
    image_attr.protect = 2;
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const bytes attr = hex("01 0048") + text_field("MNEDITOR", 10) + text_field("Sixteen chars ok", 18) +
                       hex("01020304 0A0B0C0D 11121314 00000000 4142 2122 31323334"
                           "0002 5152 0032 6162 7172 8182 9192 0015 A1A2 0000 ffff");
    ASSERT_GE(file.size(), 20 + attr.size());
    EXPECT_EQ(bytes(file.begin() + 20, file.begin() + 20 + static_cast<long>(attr.size())), attr)
        << "a task priority of 10 is written as 50";
}

TEST_F(WriterTest, LinesWithTheirLengths) {
    image_set_name("L");
    add_line({0xFF});
    add_line({0x1E, 'H', 'I', 0x00});
    bytes longest(255, 0xAB);
    ASSERT_EQ(line_append(longest.data(), 255), 0);
    ASSERT_EQ(line_append(nullptr, 0), 0);
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    EXPECT_EQ(file, name_record(0, "L") + default_attr + hex("02 0001 ff 0004 1e 48 49 00 00ff") + longest +
                        hex("0000 ffff 03 ffff 04 ffff"));
}

TEST_F(WriterTest, PositionsInOrderWithUninitialisedOnes) {
    image_set_name("P");
    const int32_t used[] = {7, 3, 1, 12};
    for (int32_t n : used)
        ASSERT_EQ(note_position(n), 0);
    const bytes p3 = hex("0003 01 00 24 0200 0100") + zeros(32);
    const bytes p12 = hex("000c 01 05 08 0900 0100 0000 0000 4142 0000");
    ASSERT_EQ(pos_append(p12.data(), static_cast<int32_t>(p12.size())), 0);
    ASSERT_EQ(pos_append(p3.data(), static_cast<int32_t>(p3.size())), 0);
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const bytes pos = hex("03") + hex("0002 0001") + hex("0029") + p3 + hex("0002 0007") + hex("0011") + p12 +
                      hex("ffff");
    EXPECT_EQ(file, name_record(0, "P") + default_attr + hex("02 ffff") + pos + hex("04 ffff"));
}

TEST_F(WriterTest, PositionNumbersKeepTheirGaps) {
    ASSERT_EQ(note_position(65535), 0);
    ASSERT_EQ(note_position(256), 0);
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const size_t at = 20 + 77 + 3;
    ASSERT_EQ(file.size(), at + 1 + 8 + 2 + 3);
    EXPECT_EQ(bytes(file.begin() + static_cast<long>(at), file.end()), hex("03 0002 0100 0002 ffff ffff 04 ffff"));
}

TEST_F(WriterTest, DaughtersFollowTheirTag) {
    image_set_name("MAIN");
    image_set_subtype(TP_SUBTYPE_JOB);
    image_attr.control_code = 0x0100;
    image_attr.default_group = 3;
    attr_set("MAIN", ATTR_COMMENT, "C", 2);
    add_line({0x81, 0x82});
    const uint8_t d1[] = {0x1E, 0x00};
    const uint8_t d2a[] = {0xFF};
    const uint8_t d2b[] = {0x01, 0x02, 0x03};
    ASSERT_EQ(daughter_line_append(d1, 2, 1), 0);
    ASSERT_EQ(daughter_line_append(d2a, 1, 2), 0);
    ASSERT_EQ(daughter_line_append(d2b, 3, 2), 0);
    ASSERT_EQ(note_position(1), 0);
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);

    const bytes fields = text_field("", 10) + text_field("C", 18) + zeros(16) + hex("0000");
    const bytes tail_main = hex("00000000 0001 0000 0032 0000 0000 0000 0000 0003 0100 0000 ffff");
    const bytes main_attr = hex("01 0048") + fields + hex("0000") + tail_main;
    auto daughter_attr = [&](uint16_t lines) {
        return hex("01 0048") + fields + bytes{static_cast<uint8_t>(lines >> 8), static_cast<uint8_t>(lines)} +
               hex("00000000 0001 0000 0032 0000 0000 0000 0000 0000 0041 0000 ffff");
    };
    const bytes expected =
        name_record(1, "MAIN") + main_attr + hex("02 0002 8182 ffff") + hex("03 0002 0001 ffff") + hex("04 ffff") +
        hex("05") +
        name_record(1, "MAIN....0001") + daughter_attr(1) + hex("02 0002 1e00 ffff 03 ffff 04 ffff") +
        name_record(1, "MAIN....0002") + daughter_attr(2) + hex("02 0001 ff 0003 010203 ffff 03 ffff 04 ffff");
    EXPECT_EQ(file, expected);
}

TEST_F(WriterTest, DaughterWithoutLinesStillWritten) {
    image_set_name("ABCDEFGH");
    image_daughter_high = 1;
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const size_t main_size = 20 + 77 + 3 + 3 + 3;
    ASSERT_EQ(file.size(), main_size + 1 + 20 + 77 + 9);
    EXPECT_EQ(file[main_size], 5);
    EXPECT_EQ(bytes(file.begin() + main_size + 1, file.begin() + main_size + 21), name_record(0, "ABCDEFGH0001"));
    EXPECT_EQ(bytes(file.end() - 9, file.end()), hex("02 ffff 03 ffff 04 ffff"));
}

TEST_F(WriterTest, DaughterNames) {
    struct row {
        const char *main;
        int32_t number;
        const char *name;
    };
    const row rows[] = {
        {"MAIN", 1, "MAIN....0001"},     {"ABCDEFGH", 1, "ABCDEFGH0001"}, {"", 12, "........0012"},
        {"X", 7999, "X.......7999"},     {"ABCDEFGH", 10000, "ABCDEFGH10000"},
    };
    for (const row &r : rows) {
        image_set_name(r.main);
        char name[14];
        std::memset(name, 0x55, sizeof name);
        daughter_name(r.number, name);
        EXPECT_EQ(bytes(name, name + 14), text_field(r.name, 14)) << r.name;
    }
}

TEST_F(WriterTest, ApplicationRecordsInFallingOrder) {
    image_set_name("AP");
    add_appl(0, 0, std::string("MUAP\0\0\0\x02\0\0\0\0", 12));
    add_appl(1, 0, "PLCG\x01");
    add_appl(1, 2, "ab");
    add_appl(1, 1, "");
    add_appl(2, 0, "SPOT\x01");
    int32_t rc = -1;
    bytes file = write_file(&rc);
    ASSERT_EQ(rc, 0);
    const bytes appl = hex("04") +
                       hex("0002 0000 05") + text_field("SPOT\x01", 5) +
                       hex("0001 0002 02 6162") +
                       hex("0001 0001 00") +
                       hex("0001 0000 05") + text_field("PLCG\x01", 5) +
                       hex("0000 0000 0c 4d554150 00000002 00000000") +
                       hex("ffff");
    EXPECT_EQ(file, name_record(0, "AP") + default_attr + hex("02 ffff 03 ffff") + appl);
}

TEST_F(WriterTest, ApplicationStoreFaultLeavesATruncatedFile) {
    image_set_name("BAD");
    add_line({0xFF});
    add_appl(0, 0, "SPOT\x01");
    add_appl(1, 0, "ARCW\x01");
    add_appl(1, 1, "zz");
    image_root->rows[1]->records[0][1] ^= 0x40; /* its sum no longer fits */
    int32_t rc = -1;
    bytes file = write_file(&rc);
    EXPECT_EQ(rc, 458855);
    EXPECT_EQ(file, name_record(0, "BAD") + default_attr + hex("02 0001 ff ffff 03 ffff") +
                        hex("04 0001 0001 02 7a7a"));
}

TEST_F(WriterTest, MissingLowestTypeIsReportedAfterTheBlock) {
    /* The block's result is that of its last lookup, type 0 here. */
    add_appl(1, 0, "SPOT\x01");
    int32_t rc = -1;
    bytes file = write_file(&rc);
    EXPECT_EQ(rc, 458871);
    const bytes tail = hex("04 0001 0000 05 53504f5401 ffff");
    ASSERT_EQ(tail.size(), 13u);
    EXPECT_EQ(bytes(file.end() - 13, file.end()), tail);
    EXPECT_EQ(file[file.size() - 14], 0xFF) << "the position block ends right before";
}

TEST_F(WriterTest, SpotDefaultOnlyWithoutAHeader) {
    writer_set_spot_header_hook(default_spot_header);
    struct row {
        int32_t instructions;
        int32_t header;
        bool called;
    };
    const row rows[] = {{0, 0, false}, {1, 0, true}, {1, 1, false}, {0, 1, false}};
    for (const row &r : rows) {
        image_begin();
        appl_header_reset();
        set_spot_instructions_seen(r.instructions);
        set_spot_header_seen(r.header);
        spot_hook_argument = 0;
        spot_hook_result = 0;
        int32_t rc = -1;
        bytes file = write_file(&rc);
        ASSERT_EQ(rc, 0);
        const bytes tail = r.called ? hex("04 0000 0000 05 53504f5401 ffff") : hex("04 ffff");
        EXPECT_EQ(bytes(file.end() - static_cast<long>(tail.size()), file.end()), tail)
            << r.instructions << r.header;
        EXPECT_EQ(spot_hook_argument, r.called ? 1 : 0);
    }
    appl_header_reset();
    EXPECT_EQ(spot_instructions_seen(), 0);
    EXPECT_EQ(spot_header_seen(), 0);
}

TEST_F(WriterTest, FailingDefaultStopsBeforeTheBlock) {
    writer_set_spot_header_hook(default_spot_header);
    set_spot_instructions_seen(1);
    spot_hook_result = 589860;
    int32_t rc = -1;
    bytes file = write_file(&rc);
    spot_hook_result = 0;
    EXPECT_EQ(rc, 589860);
    EXPECT_EQ(file, name_record(0, "") + default_attr + hex("02 ffff 03 ffff"));
}

TEST_F(WriterTest, CompletionHookRunsBeforeTheBlock) {
    writer_set_appl_complete_hook(complete_motion_schedule);
    completed = 0;
    int32_t rc = -1;
    bytes file = write_file(&rc);
    EXPECT_EQ(completed, 1);
    /* Types 0 to 6 have no row, so the last lookup reports it. */
    EXPECT_EQ(rc, 458871);
    EXPECT_EQ(bytes(file.end() - 12, file.end()), hex("04 0007 0000 04 4d4f544e ffff"));
}

TEST_F(WriterTest, BytePrimitivesAreBigEndianAndCounted) {
    std::string path = temp_path("prim");
    output_stream = std::fopen(path.c_str(), "wb");
    ASSERT_NE(output_stream, nullptr);
    write_byte(0x1FF);
    write_word(0xA1B2);
    write_long(0x01020304u);
    const uint8_t raw[] = {9, 8};
    write_bytes(raw, 2);
    EXPECT_EQ(take_write_count(), 9);
    EXPECT_EQ(take_write_count(), 0);
    std::fclose(output_stream);
    output_stream = nullptr;
    EXPECT_EQ(read_file(path), hex("ff a1b2 01020304 0908"));
    std::remove(path.c_str());
}

TEST_F(WriterTest, StreamThatRefusesBytesFailsTheAttributeBlock) {
    /* Room for the name record and ten bytes more, then every write fails. */
    std::vector<char> memory(30, 0x55);
    output_stream = fmemopen(memory.data(), memory.size(), "wb");
    ASSERT_NE(output_stream, nullptr);
    std::setvbuf(output_stream, nullptr, _IONBF, 0);
    image_set_name("FULL");
    int32_t rc = write_program();
    std::fclose(output_stream);
    output_stream = nullptr;
    EXPECT_EQ(rc, 101);
    EXPECT_EQ(bytes(memory.begin(), memory.begin() + 30), name_record(0, "FULL") + hex("01 0048") + zeros(7));
}

TEST_F(WriterTest, ReadOnlyStreamWritesNothing) {
    std::string path = temp_path("ro");
    {
        std::ofstream seed(path, std::ios::binary);
        seed << "OLD";
    }
    output_stream = std::fopen(path.c_str(), "rb");
    ASSERT_NE(output_stream, nullptr);
    int32_t rc = write_program();
    std::fclose(output_stream);
    output_stream = nullptr;
    EXPECT_EQ(rc, 101);
    EXPECT_EQ(read_file(path), hex("4f4c44"));
    std::remove(path.c_str());
}

TEST_F(WriterTest, FullDeviceIsNoticedAtTheEnd) {
    output_stream = std::fopen("/dev/full", "wb");
    if (!output_stream)
        GTEST_SKIP() << "no /dev/full here";
    add_line({0xFF});
    int32_t rc = write_program();
    std::fclose(output_stream);
    output_stream = nullptr;
    EXPECT_EQ(rc, 101);
}

TEST_F(WriterTest, NoStreamDoesNotCrash) {
    output_stream = nullptr;
    EXPECT_EQ(write_program(), 101);
}
