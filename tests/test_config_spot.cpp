// The spot warning list: entries only with the spot option, flagging by
// position number, and the export's numbering.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/config.h"
#include "core/error_codes.h"
#include "core/spot_warnings.h"
#include "vorex_zd.h"

namespace {

class ConfigSpotWarnings : public ::testing::Test {
protected:
    void SetUp() override {
        zdclearparam();
        spot_warnings_reset();
        ASSERT_EQ(zdsetparam("SPOT", "SERVOGUN", ""), 1);
    }
    void TearDown() override {
        spot_warnings_reset();
        zdclearparam();
    }
    std::string fetch(int32_t n, int32_t expected) {
        char text[SPOT_WARNING_TEXT];
        std::strcpy(text, "untouched");
        EXPECT_EQ(zdgetspotwarnings(n, text), expected) << n;
        return text;
    }
};

TEST_F(ConfigSpotWarnings, NothingWithoutTheSpotOption) {
    ASSERT_EQ(zdsetparam("SPOT", "AIRGUN", ""), 1);
    EXPECT_EQ(spot_warning_add(1, 2, "L P[1] SPOT[1]"), 0);
    EXPECT_EQ(spot_warning_flag(1), 0);
    EXPECT_EQ(spot_warnings_entries(), 0);
    EXPECT_EQ(zdgetspotwarningscount(), 0);
    EXPECT_EQ(spot_warning_flag(0), 0);
}

TEST_F(ConfigSpotWarnings, OnlyFlaggedEntriesCount) {
    EXPECT_EQ(spot_warning_add(0, 0, "none"), 1);
    EXPECT_EQ(spot_warning_add(1, 2, "L P[1] SPOT[1] ;"), 0);
    EXPECT_EQ(spot_warning_add(3, 0, "L P[3] SPOT[2] ;"), 0);
    EXPECT_EQ(spot_warning_add(0, 4, "L P[4] SPOT[3] ;"), 0);
    EXPECT_EQ(spot_warnings_entries(), 3);
    EXPECT_EQ(zdgetspotwarningscount(), 0);
    EXPECT_EQ(spot_warning_flag(0), 1);
    EXPECT_EQ(spot_warning_flag(2), 0);
    EXPECT_EQ(spot_warning_flag(4), 0);
    EXPECT_EQ(spot_warning_flag(9), 0);
    EXPECT_EQ(zdgetspotwarningscount(), 2);
    EXPECT_EQ(fetch(1, 1), "L P[1] SPOT[1] ;");
    EXPECT_EQ(fetch(2, 2), "L P[4] SPOT[3] ;");
    EXPECT_EQ(fetch(3, 0), "untouched");
    EXPECT_EQ(fetch(-1, 0), "untouched");
}

TEST_F(ConfigSpotWarnings, NumberZeroCopiesAnUnflaggedFirstEntry) {
    ASSERT_EQ(spot_warning_add(1, 0, "first"), 0);
    ASSERT_EQ(spot_warning_add(2, 0, "second"), 0);
    spot_warning_flag(2);
    EXPECT_EQ(fetch(0, 0), "first");
    spot_warning_flag(1);
    EXPECT_EQ(fetch(0, 0), "untouched");
}

TEST_F(ConfigSpotWarnings, TextIsCutTo511Bytes) {
    std::string longer(700, 'S');
    ASSERT_EQ(spot_warning_add(5, 6, longer.c_str()), 0);
    ASSERT_EQ(spot_warning_add(7, 0, nullptr), 0);
    spot_warning_flag(5);
    spot_warning_flag(7);
    EXPECT_EQ(fetch(1, 1), std::string(511, 'S'));
    EXPECT_EQ(fetch(2, 2), "");
}

TEST_F(ConfigSpotWarnings, GrowsPastItsFirstSizeAndResets) {
    const int n = SPOT_WARNINGS_FIRST + 3 * SPOT_WARNINGS_STEP + 5;
    for (int i = 1; i <= n; i++)
        ASSERT_EQ(spot_warning_add(i, 0, ("line " + std::to_string(i)).c_str()), 0) << i;
    for (int i = 1; i <= n; i += 2)
        spot_warning_flag(i);
    EXPECT_EQ(zdgetspotwarningscount(), (n + 1) / 2);
    EXPECT_EQ(fetch((n + 1) / 2, (n + 1) / 2), "line " + std::to_string(n));
    spot_warnings_reset();
    EXPECT_EQ(spot_warnings_entries(), 0);
    EXPECT_EQ(zdgetspotwarningscount(), 0);
    EXPECT_EQ(spot_warning_add(1, 0, "again"), 0);
    spot_warning_flag(1);
    EXPECT_EQ(fetch(1, 1), "again");
}

TEST_F(ConfigSpotWarnings, ListSurvivesAConfigurationClear) {
    ASSERT_EQ(spot_warning_add(1, 0, "kept"), 0);
    spot_warning_flag(1);
    zdclearparam();
    EXPECT_EQ(zdgetspotwarningscount(), 1);
    EXPECT_EQ(fetch(1, 1), "kept");
}

} // namespace
