// Block readers of a binary program file: what each keeps, its limits and
// its results 0 / 1 / 2.
#include <gtest/gtest.h>

#include "bin2asc/loader.h"
#include "core/alloc.h"
#include "test_decode_tp.h"
#include "text/decode_tables.h"

namespace {

using tp::bytes;

class Loader : public ::testing::Test {
  protected:
    void SetUp() override {
        lmalloc_begin();
        cur_side = 0;
        decode_tables_forget(0);
        decode_tables_forget(1);
    }
    void TearDown() override {
        for (int side = 0; side < 2; side++) {
            cur_side = side;
            free_program_blocks();
        }
        cur_side = 0;
        close();
        lmalloc_end();
    }
    /* Points bin_stream at a file holding b. */
    void open(const bytes &b) {
        close();
        bin_stream = std::tmpfile();
        ASSERT_NE(bin_stream, nullptr);
        if (!b.empty())
            std::fwrite(b.data(), 1, b.size(), bin_stream);
        std::rewind(bin_stream);
    }
    void close() {
        if (bin_stream)
            std::fclose(bin_stream);
        bin_stream = nullptr;
    }
    long remaining() {
        long here = std::ftell(bin_stream);
        std::fseek(bin_stream, 0, SEEK_END);
        long end = std::ftell(bin_stream);
        std::fseek(bin_stream, here, SEEK_SET);
        return end - here;
    }
};

TEST_F(Loader, NameRecordWithSubtypeKeepsItsBytes) {
    open(tp::name_record("MAIN", 3));
    EXPECT_EQ(read_prog_block(), 0);
    EXPECT_EQ(prog_has_subtype[0], 1);
    EXPECT_EQ(prog_subtype[0], 3);
    bytes expect = tp::name_record("MAIN", 3);
    EXPECT_EQ(bytes(prog_header[0], prog_header[0] + 20), expect);
    EXPECT_EQ(remaining(), 0);
}

TEST_F(Loader, NameRecordShortFormHasNoSubtype) {
    bytes rec = tp::name_record("AB", 0, true);
    ASSERT_EQ(rec.size(), 19u);
    rec[1] = 0x7E; /* any value is taken at offset 1 */
    open(rec);
    EXPECT_EQ(read_prog_block(), 0);
    EXPECT_EQ(prog_has_subtype[0], 0);
    EXPECT_EQ(prog_subtype[0], 0);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(prog_header[0] + 3)), "AB");
    EXPECT_EQ(prog_header[0][1], 0x7E);
}

TEST_F(Loader, NameRecordFaults) {
    bytes wrong_tag = tp::name_record("A");
    wrong_tag[0] = 1;
    bytes no_end = tp::name_record("A");
    no_end[19] = 0;
    bytes cut = tp::name_record("A");
    cut.resize(10);
    for (const bytes &b : {wrong_tag, no_end, cut, bytes()}) {
        open(b);
        EXPECT_EQ(read_prog_block(), 2);
    }
}

TEST_F(Loader, AttributeBlockIsKeptWithItsHead) {
    tp::attr_fields a;
    a.owner = "ME";
    a.line_count = 7;
    bytes block = tp::attr_block(a);
    open(block);
    control_r_mode = 1;
    EXPECT_EQ(read_attr_block(), 0);
    EXPECT_EQ(control_r_mode, 0);
    ASSERT_NE(attr_block[0], nullptr);
    EXPECT_EQ(attr_block_size[0], 75);
    EXPECT_EQ(bytes(attr_block[0], attr_block[0] + 75), bytes(block.begin(), block.begin() + 75));
    EXPECT_EQ(remaining(), 0);
}

TEST_F(Loader, AttributeBlockOfAnyLengthForTheMainProgram) {
    bytes b = {1, 0, 3, 'x', 'y', 'z', 0xFF, 0xFF};
    open(b);
    EXPECT_EQ(read_attr_block(), 0);
    EXPECT_EQ(attr_block_size[0], 6);
    /* What the file did not give reads as zero. */
    EXPECT_EQ(attr_block[0][3], 'x');
    EXPECT_EQ(attr_block[0][60], 0);
}

TEST_F(Loader, AttributeBlockFaults) {
    bytes good = tp::attr_block();
    bytes wrong_tag = good;
    wrong_tag[0] = 2;
    bytes open_end = good;
    open_end[76] = 0;
    bytes cut = good;
    cut.resize(40);
    for (const bytes &b : {wrong_tag, open_end, cut}) {
        open(b);
        EXPECT_EQ(read_attr_block(), 2);
    }
}

TEST_F(Loader, LinesKeepLengthPayloadAndZeroGuard) {
    open(tp::line_block({{30, 'X', 0}, {255}, {}}));
    EXPECT_EQ(read_line_block(), 0);
    ASSERT_EQ(main_line_count[0], 3);
    const uint8_t *l0 = main_lines[0][0];
    EXPECT_EQ(bytes(l0, l0 + 7), (bytes{0, 3, 30, 'X', 0, 0, 0}));
    EXPECT_EQ(bytes(main_lines[0][1], main_lines[0][1] + 5), (bytes{0, 1, 255, 0, 0}));
    EXPECT_EQ(record_length(main_lines[0][2]), 0);
}

TEST_F(Loader, EmptyBlocksLoadWithCountZero) {
    open({2, 255, 255, 3, 255, 255, 4, 255, 255});
    EXPECT_EQ(read_line_block(), 0);
    EXPECT_EQ(read_pos_block(), 0);
    EXPECT_EQ(read_appl_block(), 0);
    EXPECT_EQ(main_line_count[0], 0);
    EXPECT_EQ(pos_count[0], 0);
    EXPECT_EQ(appl_high_group[0], -1);
    EXPECT_EQ(appl_low_group[0], -1);
    EXPECT_EQ(appl_loaded[0], 1);
}

TEST_F(Loader, LineArrayGrowsByThousandsPastTheFirstThousand) {
    for (int n : {1000, 1001}) {
        std::vector<bytes> lines(static_cast<size_t>(n), bytes{255});
        open(tp::line_block(lines));
        EXPECT_EQ(read_line_block(), 0);
        EXPECT_EQ(main_line_count[0], n);
        EXPECT_EQ(main_line_capacity[0], n == 1000 ? 1000 : 2000);
        free_line_blocks();
    }
}

TEST_F(Loader, LineBlockFaultsLeaveTheCountAsItWas) {
    bytes cut_payload = tp::line_block({{30, 'A', 'B', 0}});
    cut_payload.resize(5);
    bytes no_end = {2, 0, 1, 255};
    bytes wrong_tag = {3, 255, 255};
    for (const bytes &b : {cut_payload, no_end, wrong_tag}) {
        open(b);
        EXPECT_EQ(read_line_block(), 2);
        EXPECT_EQ(main_line_count[0], 0);
    }
}

/* A position record payload: number, mask, K, group data, comment. */
bytes position(int number, const std::string &comment, int group_bytes = 4) {
    bytes p;
    tp::put16(p, number);
    p.push_back(1);
    size_t k_at = p.size();
    p.push_back(0);
    bytes group(static_cast<size_t>(group_bytes), 0);
    group[0] = static_cast<uint8_t>(group_bytes);
    tp::append(p, group);
    if (!comment.empty()) {
        p[k_at] = static_cast<uint8_t>(1 + group_bytes);
        p.insert(p.end(), comment.begin(), comment.end());
        p.push_back(0);
        if (p.size() % 2)
            p.push_back(0);
    }
    return p;
}

TEST_F(Loader, PositionCommentsPointIntoTheirRecords) {
    bytes uninit;
    tp::put16(uninit, 9);
    open(tp::pos_block({position(1, "abc"), position(2, ""), uninit}));
    EXPECT_EQ(read_pos_block(), 0);
    ASSERT_EQ(pos_count[0], 3);
    ASSERT_NE(pos_comments[0][0], nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(pos_comments[0][0])), "abc");
    EXPECT_EQ(pos_comments[0][0], pos_records[0][0] + 5 + 5);
    EXPECT_EQ(pos_comments[0][1], nullptr);
    EXPECT_EQ(pos_comments[0][2], nullptr);
    EXPECT_EQ(record_length(pos_records[0][2]), 2);
    for (int i = 0; i < 3; i++)
        EXPECT_EQ(pos_used[0][i], 0);
}

TEST_F(Loader, PositionCommentOffsetPastTheRecordIsDropped) {
    bytes p = position(1, "");
    p[3] = 200; /* K far behind the record's end */
    open(tp::pos_block({p}));
    EXPECT_EQ(read_pos_block(), 0);
    EXPECT_EQ(pos_comments[0][0], nullptr);
}

TEST_F(Loader, PositionArraysGrowByHundredsPastTwoHundred) {
    for (int n : {200, 201}) {
        std::vector<bytes> recs;
        for (int i = 1; i <= n; i++)
            recs.push_back(position(i, ""));
        open(tp::pos_block(recs));
        EXPECT_EQ(read_pos_block(), 0);
        EXPECT_EQ(pos_count[0], n);
        EXPECT_EQ(pos_capacity[0], n == 200 ? 200 : 300);
        free_pos_block();
    }
}

TEST_F(Loader, ApplicationTablesSizedByTheFirstRecords) {
    open(tp::appl_block({{3, 2, {'S', 'P', 'O', 'T', 1}},
                         {3, 0, {'X'}},
                         {1, 5, {}},
                         {1, 4, {9, 9}}}));
    EXPECT_EQ(read_appl_block(), 0);
    EXPECT_EQ(appl_high_group[0], 3);
    EXPECT_EQ(appl_low_group[0], 1);
    EXPECT_EQ(appl_high_record[0][3], 2);
    EXPECT_EQ(appl_high_record[0][1], 5);
    EXPECT_EQ(appl_groups[0][2], nullptr);
    const uint8_t *r = appl_groups[0][3][2];
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(bytes(r, r + 10), (bytes{0, 3, 0, 2, 5, 'S', 'P', 'O', 'T', 1}));
    EXPECT_EQ(appl_groups[0][3][1], nullptr);
    EXPECT_EQ(bytes(appl_groups[0][1][4], appl_groups[0][1][4] + 7), (bytes{0, 1, 0, 4, 2, 9, 9}));
}

TEST_F(Loader, ApplicationRecordsMustFall) {
    bytes rising_type = tp::appl_block({{1, 0, {}}, {2, 0, {}}});
    bytes rising_instance = tp::appl_block({{2, 1, {}}, {2, 3, {}}});
    bytes cut = tp::appl_block({{2, 1, {1, 2, 3}}});
    cut.resize(cut.size() - 4);
    bytes wrong_tag = {5, 255, 255};
    for (const bytes &b : {rising_type, rising_instance, cut, wrong_tag}) {
        open(b);
        EXPECT_EQ(read_appl_block(), 2);
    }
}

TEST_F(Loader, ApplicationRowsHostileInSizeRunOutOfMemory) {
    std::vector<tp::appl_record> recs;
    for (int type = 200; type > 0; type--)
        recs.push_back({type, 65534, {}});
    open(tp::appl_block(recs));
    EXPECT_EQ(read_appl_block(), 1);
}

/* Main program and its daughters, numbered from 1. */
bytes with_daughters(int count, int lines_each) {
    bytes b = tp::program("MAIN", {tp::remark("main")});
    b.push_back(5);
    for (int d = 1; d <= count; d++) {
        char name[16];
        std::snprintf(name, sizeof name, "MAIN....%04d", d);
        std::vector<bytes> lines(static_cast<size_t>(lines_each), tp::remark("d"));
        tp::append(b, tp::daughter(name, lines));
    }
    return b;
}

TEST_F(Loader, DaughtersAreReadIntoTheirSlots) {
    open(with_daughters(3, 2));
    int32_t codes[6];
    EXPECT_EQ(read_program_blocks(codes), 0);
    EXPECT_EQ(daughter_high[0], 3);
    for (int slot = 1; slot <= 3; slot++) {
        EXPECT_EQ(daughter_number[0][slot], slot);
        EXPECT_EQ(daughter_line_count[0][slot], 2);
        EXPECT_EQ(daughter_attr[0][slot][72], 65); /* CONTROL_CODE low byte */
        EXPECT_EQ(daughter_has_subtype[0][slot], 1);
    }
    EXPECT_EQ(daughter_number[0][4], 0);
}

TEST_F(Loader, DaughterNumberComesFromTheNinthCharacter) {
    bytes b = tp::program("M", {});
    b.push_back(5);
    tp::append(b, tp::daughter("ABCDEFGH0042", {}));
    tp::append(b, tp::daughter("ABCDEFGHxy", {}));
    open(b);
    int32_t codes[6];
    EXPECT_EQ(read_program_blocks(codes), 0);
    EXPECT_EQ(daughter_number[0][1], 42);
    EXPECT_EQ(daughter_number[0][2], 0);
}

TEST_F(Loader, DaughterAreaWithAnotherTagOrNoneMeansNoDaughters) {
    for (int tail : {-1, 6}) {
        bytes b = tp::program("M", {});
        if (tail >= 0)
            b.push_back(static_cast<uint8_t>(tail));
        open(b);
        int32_t codes[6];
        EXPECT_EQ(read_program_blocks(codes), 0);
        EXPECT_EQ(daughter_high[0], 0);
        free_program_blocks();
    }
}

TEST_F(Loader, TruncatedDaughterAreaKeepsTheDaughtersReadSoFar) {
    bytes full = with_daughters(2, 3);
    size_t main_end = tp::program("MAIN", {tp::remark("main")}).size() + 1;
    size_t daughter_size = (full.size() - main_end) / 2;
    size_t second = main_end + daughter_size;
    struct cut_case {
        size_t at;
        int high;
        int second_lines;
    };
    /* Cut inside the second daughter's name record, inside its first
       line, inside its last block. */
    for (cut_case c : {cut_case{second + 5, 1, 0}, cut_case{second + 20 + 77 + 3, 2, 0},
                       cut_case{full.size() - 1, 2, 3}}) {
        open(bytes(full.begin(), full.begin() + static_cast<long>(c.at)));
        int32_t codes[6];
        EXPECT_EQ(read_program_blocks(codes), 0) << c.at;
        EXPECT_EQ(daughter_line_count[0][1], 3) << c.at;
        EXPECT_EQ(daughter_high[0], c.high) << c.at;
        EXPECT_EQ(daughter_line_count[0][2], c.second_lines) << c.at;
        free_program_blocks();
    }
}

TEST_F(Loader, LongDaughterAttributeBlockStaysInItsSlot) {
    bytes b = tp::program("M", {});
    b.push_back(5);
    tp::append(b, tp::name_record("M.......0001"));
    bytes attr = {1, 0, 200};
    attr.resize(203, 0x5A);
    tp::end_mark(attr);
    tp::append(b, attr);
    tp::append(b, tp::line_block({{255}}));
    tp::append(b, tp::pos_block({position(1, "big", 40)}));
    tp::append(b, tp::appl_block({{1, 1, bytes(200, 1)}}));
    open(b);
    int32_t codes[6];
    EXPECT_EQ(read_program_blocks(codes), 0);
    EXPECT_EQ(daughter_high[0], 1);
    EXPECT_EQ(daughter_line_count[0][1], 1);
    EXPECT_EQ(daughter_attr[0][1][79], 0x5A);
}

TEST_F(Loader, EveryCutBeforeTheDaughterAreaFails) {
    bytes full = tp::name_record("P", 1);
    tp::append(full, tp::attr_block());
    tp::append(full, tp::line_block({tp::remark("a"), {255}}));
    tp::append(full, tp::pos_block({position(1, "c")}));
    tp::append(full, tp::appl_block({{2, 1, {1}}, {1, 0, {'A', 'R', 'C', 'W', 1}}}));
    for (size_t cut = 0; cut < full.size(); cut++) {
        open(bytes(full.begin(), full.begin() + static_cast<long>(cut)));
        int32_t codes[6];
        EXPECT_EQ(read_program_blocks(codes), 1) << "cut at " << cut;
        free_program_blocks();
    }
    open(full);
    int32_t codes[6];
    EXPECT_EQ(read_program_blocks(codes), 0);
}

TEST_F(Loader, ReleaseFreesEverythingALoadTook) {
    size_t before = lmalloc_live_blocks();
    open(with_daughters(2, 2));
    int32_t codes[6];
    ASSERT_EQ(read_program_blocks(codes), 0);
    EXPECT_GT(lmalloc_live_blocks(), before);
    free_program_blocks();
    EXPECT_EQ(lmalloc_live_blocks(), before);
}

TEST_F(Loader, SidesAreIndependent) {
    open(tp::program("LEFT", {{255}, {255}}));
    int32_t codes[6];
    cur_side = 0;
    ASSERT_EQ(read_program_blocks(codes), 0);
    open(tp::program("RIGHT", {{255}}));
    cur_side = 1;
    ASSERT_EQ(read_program_blocks(codes), 0);
    EXPECT_EQ(main_line_count[0], 2);
    EXPECT_EQ(main_line_count[1], 1);
    EXPECT_STREQ(reinterpret_cast<char *>(prog_header[0] + 4), "LEFT");
    EXPECT_STREQ(reinterpret_cast<char *>(prog_header[1] + 4), "RIGHT");
}

} // namespace
