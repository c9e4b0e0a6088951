// Application groups on the listing side: numbering of new groups, the
// defaults the writer completes (spot header, motion schedule, tracking
// group), and the parsers and printers that other families plug in.
#include <gtest/gtest.h>

#include <cstdio>

#include "binfmt/image_appl.h"
#include "binfmt/writer.h"
#include "core/alloc.h"
#include "core/config.h"
#include "core/run_state.h"
#include "sections/appl_section.h"
#include "sections/appl_store.h"
#include "test_appl_util.h"
#include "text/lexer.h"
#include "text/put_line.h"
#include "vorex_zd.h"

namespace {

using appl_test::block;
using appl_test::record;

const std::string muap_arc = std::string("MUAP\0\0\0\x01\0\0\0\0", 12);
const std::string muap_spot = std::string("MUAP\0\0\0\x02\0\0\0\0", 12);

class ApplStore : public ::testing::Test {
protected:
    void SetUp() override {
        lmalloc_begin();
        image_begin();
        appl_header_reset();
        appl_run_reset();
    }
    void TearDown() override {
        opt_smartfollow = 0;
        appl_header_reset();
        appl_run_reset();
        image_release();
        lmalloc_end();
    }
    /* The application block as write_appl_block writes the image. */
    static std::string written(int32_t *status = nullptr) {
        output_stream = std::tmpfile();
        int32_t rc = write_appl_block();
        if (status)
            *status = rc;
        std::string bytes;
        std::rewind(output_stream);
        int c;
        while ((c = std::fgetc(output_stream)) != EOF)
            bytes += static_cast<char>(c);
        std::fclose(output_stream);
        output_stream = nullptr;
        return bytes;
    }
    static std::string read_back(int32_t type, int32_t instance) {
        uint8_t buffer[256];
        if (appl_read(type, instance, buffer, sizeof buffer) != 0)
            return "<none>";
        return std::string(reinterpret_cast<char *>(buffer + 1), buffer[0]);
    }
};

TEST_F(ApplStore, NewGroupsNumberUpFromZero) {
    int32_t group = -1;
    ASSERT_EQ(appl_new_group(reinterpret_cast<const uint8_t *>("AAAA"), 4, nullptr, &group), 0);
    EXPECT_EQ(group, 0);
    ASSERT_EQ(appl_new_group(reinterpret_cast<const uint8_t *>("BBBBx"), 5, nullptr, &group), 0);
    EXPECT_EQ(group, 1);
    ASSERT_EQ(appl_add_record(1, 2, reinterpret_cast<const uint8_t *>("zz"), 2), 0);
    ASSERT_EQ(appl_new_group(reinterpret_cast<const uint8_t *>(""), 0, nullptr, &group), 0);
    EXPECT_EQ(group, 2);
    EXPECT_EQ(read_back(1, 0), "BBBBx");
    EXPECT_EQ(read_back(1, 2), "zz");
    EXPECT_EQ(read_back(2, 0), "");
    EXPECT_EQ(appl_image_has("BBBB"), 1);
    EXPECT_EQ(appl_image_has("CCCC"), 0);
    int32_t status = -1;
    EXPECT_EQ(vzt::hex(written(&status)),
              vzt::hex(block({record(2, 0, ""), record(1, 2, "zz"), record(1, 0, "BBBBx"), record(0, 0, "AAAA")})));
    EXPECT_EQ(status, 0);
}

TEST_F(ApplStore, SpotInstructionsWithoutHeaderGetEquipmentOne) {
    set_spot_instructions_seen(1);
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({record(1, 0, "SPOT\x01"), record(0, 0, muap_spot)})));
}

TEST_F(ApplStore, SpotDefaultKeepsAMaskThatIsThere) {
    ASSERT_EQ(appl_make_muap(1, nullptr), 0);
    set_spot_instructions_seen(1);
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({record(1, 0, "SPOT\x01"), record(0, 0, muap_arc)})));
}

TEST_F(ApplStore, NoSpotDefaultWhenTheListingGaveAHeader) {
    set_spot_instructions_seen(1);
    set_spot_header_seen(1);
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({})));
}

TEST_F(ApplStore, ImpliedGroupsComeLast) {
    opt_smartfollow = 1;
    set_spot_instructions_seen(1);
    program_tracked = 1;
    EXPECT_EQ(vzt::hex(written()),
              vzt::hex(block({record(3, 1, std::string(2, '\0')), record(3, 0, "LNTK"),
                              record(2, 1, std::string(1, '\0')), record(2, 0, "MOTN"), record(1, 0, "SPOT\x01"),
                              record(0, 0, muap_spot)})));
}

TEST_F(ApplStore, DispenseScheduleBeatsTheOptionAndAGroupMadeBeatsBoth) {
    opt_smartfollow = 1;
    dispense_schedule = 4;
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({record(0, 1, "\x04"), record(0, 0, "MOTN")})));
    image_begin();
    appl_run_reset();
    ASSERT_EQ(appl_make_motion(9, nullptr), 0);
    dispense_schedule = 4;
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({record(0, 1, "\x09"), record(0, 0, "MOTN")})));
}

TEST_F(ApplStore, RunResetPutsTheStateBack) {
    dispense_schedule = 3;
    program_tracked = 1;
    appl_run_reset();
    EXPECT_EQ(dispense_schedule, -1);
    EXPECT_EQ(program_tracked, 0);
    EXPECT_EQ(vzt::hex(written()), vzt::hex(block({})));
}

/* ---- families that plug in ---------------------------------------------- */

int32_t line_track_calls = 0;

/* Takes LINE_TRACK ; and makes its group, as the tracking family will. */
int32_t fake_line_track(scan_ctx *ctx) {
    line_track_calls++;
    if (expect_token(ctx, 1721) != 0 || expect_token(ctx, 132) != 0)
        return 1;
    int32_t group = 0;
    int32_t rc = appl_new_group(reinterpret_cast<const uint8_t *>("LNTK"), 4, ctx, &group);
    const uint8_t rec[3] = {5, 1, 2};
    return rc ? rc : appl_add_record(group, 1, rec, 3);
}

int32_t fake_pallet(scan_ctx *ctx) {
    token_rec tok;
    do
        next_token(ctx, &tok);
    while (tok.code != 132 && tok.code != tok_eof);
    return appl_make_equipment("PLCG", 1, ctx);
}

int32_t fake_track_printer(int32_t group) {
    char line[32];
    std::snprintf(line, sizeof line, "  LNTK in %d", static_cast<int>(group));
    put_line(line);
    return 0;
}

class ApplPlugIn : public ::testing::Test {
protected:
    void SetUp() override {
        vzt::load_builtin_cell();
        line_track_calls = 0;
    }
    void TearDown() override {
        appl_set_header_parser(1721, nullptr);
        appl_set_pallet_parser(nullptr);
        appl_set_group_printer("LNTK", nullptr);
    }
};

TEST_F(ApplPlugIn, LineTrackParserIsCalledAndItsFailureIsASyntaxError) {
    ASSERT_EQ(appl_set_header_parser(1721, fake_line_track), 0);
    auto r = vzt::listing_to_binary(appl_test::program("LINE_TRACK;\n"));
    ASSERT_EQ(r.ok, 1);
    EXPECT_EQ(line_track_calls, 1);
    EXPECT_EQ(vzt::hex(appl_test::appl_block(r.tp)),
              vzt::hex(block({record(0, 1, "\x05\x01\x02"), record(0, 0, "LNTK")})));
    r = vzt::listing_to_binary(appl_test::program("LINE_TRACK ON;\n"));
    EXPECT_EQ(r.code, 89);
    EXPECT_FALSE(r.written);
}

TEST_F(ApplPlugIn, OnlyTheTableCodesTakeAParser) {
    EXPECT_EQ(appl_set_header_parser(1200, nullptr), 0);
    EXPECT_EQ(appl_set_header_parser(1215, nullptr), 0);
    EXPECT_EQ(appl_set_header_parser(299, fake_line_track), 1);
    EXPECT_EQ(appl_set_group_printer("SPOX", fake_track_printer), 1);
    EXPECT_EQ(appl_set_group_printer(nullptr, fake_track_printer), 1);
}

TEST_F(ApplPlugIn, PalletParserTakesWhatNoEntryTakes) {
    appl_set_pallet_parser(fake_pallet);
    auto r = vzt::listing_to_binary(appl_test::program("PALLETIZING[1] ;\n"));
    ASSERT_EQ(r.ok, 1);
    EXPECT_EQ(vzt::hex(appl_test::appl_block(r.tp)), vzt::hex(block({record(0, 0, "PLCG\x01")})));
    appl_set_pallet_parser(nullptr);
    EXPECT_EQ(vzt::listing_to_binary(appl_test::program("PALLETIZING[1] ;\n")).code, 88);
}

TEST_F(ApplPlugIn, GroupPrinterPrintsInItsPlace) {
    std::string tp = vzt::listing_to_binary(appl_test::program("BIN[4C,4E,54,4B:01,00];\nBIN[41,52,43,57,01];\n")).tp;
    EXPECT_EQ(appl_test::appl_lines(vzt::binary_to_listing(tp)), "  ARC Welding Equipment Number : 1 ;\r\n");
    ASSERT_EQ(appl_set_group_printer("LNTK", fake_track_printer), 0);
    EXPECT_EQ(appl_test::appl_lines(vzt::binary_to_listing(tp)),
              "  LNTK in 0\r\n  ARC Welding Equipment Number : 1 ;\r\n");
}

} // namespace
