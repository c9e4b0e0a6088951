// The zdsetparam setters: robot groups, macros, spot, arc and options, and
// what zdclearparam clears and keeps.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/config.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace {

class ConfigSetters : public ::testing::Test {
protected:
    void SetUp() override {
        zdclearparam();
        robot_models_restore_builtin();
    }
    void TearDown() override {
        zdclearparam();
        robot_models_restore_builtin();
    }
};

TEST_F(ConfigSetters, RobotGroupFromAModelRow) {
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "1"), 1);
    EXPECT_EQ(group_count, 1);
    EXPECT_EQ(scr_grp[0].num_axes, 6);
    EXPECT_EQ(scr_grp[0].num_rob_axes, 6);
    /* F, U and T exist, the three turns are editable. */
    EXPECT_EQ(scr_grp[0].config_mask, 0xB0010101u);
    EXPECT_STREQ(group_model[0], "GA6-1400-12");
    EXPECT_EQ(group_model_row[0], robot_model_find("GA6-1400-12"));
    EXPECT_EQ(bench_model, 0);
    for (int i = 0; i < MAX_GROUP_AXES; i++)
        EXPECT_EQ(axis_is_linear[0][i], 0) << i;
}

TEST_F(ConfigSetters, ExtendedAxesRotaryAndLinear) {
    EXPECT_EQ(zdsetparam("robot", "GA6-1400-12 RL", "2"), 1);
    EXPECT_EQ(group_count, 2);
    EXPECT_EQ(scr_grp[1].num_axes, 8);
    EXPECT_EQ(scr_grp[1].num_rob_axes, 6);
    EXPECT_EQ(axis_is_linear[1][6], 0);
    EXPECT_EQ(axis_is_linear[1][7], 1);
    /* Lower-case l is linear too; blanks between letters are dropped. */
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12  l r", "3"), 1);
    EXPECT_EQ(scr_grp[2].num_axes, 8);
    EXPECT_EQ(axis_is_linear[2][6], 1);
    EXPECT_EQ(axis_is_linear[2][7], 0);
}

TEST_F(ConfigSetters, ModelLinearAxesComeFromTheirTable) {
    EXPECT_EQ(zdsetparam("ROBOT", "SC4-0600-10 L", "1"), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 5);
    EXPECT_EQ(scr_grp[0].num_rob_axes, 4);
    const int32_t expected[MAX_GROUP_AXES] = {0, 0, 1, 0, 1, 0, 0, 0, 0};
    for (int i = 0; i < MAX_GROUP_AXES; i++)
        EXPECT_EQ(axis_is_linear[0][i], expected[i]) << i;
    /* A model set again clears the kinds the group had. */
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-0900-07", "1"), 1);
    for (int i = 0; i < MAX_GROUP_AXES; i++)
        EXPECT_EQ(axis_is_linear[0][i], 0) << i;
}

TEST_F(ConfigSetters, FourLettersOnAnArmAreRefused) {
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12 RRRL", "1"), 0);
    EXPECT_EQ(group_count, 0);
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12 RRL", "1"), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 9);
}

TEST_F(ConfigSetters, ArmlessTakesTheFreeAxesAsItsOwn) {
    EXPECT_EQ(zdsetparam("ROBOT", "ARMLESS LLRR", "1"), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 4);
    EXPECT_EQ(scr_grp[0].num_rob_axes, 4);
    EXPECT_EQ(scr_grp[0].config_mask, 0u);
    const int32_t expected[4] = {1, 1, 0, 0};
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(axis_is_linear[0][i], expected[i]) << i;
    EXPECT_EQ(zdsetparam("ROBOT", "ARMLESS RRRRRRRRR", "2"), 1);
    EXPECT_EQ(scr_grp[1].num_axes, 9);
    /* A group holds at most nine axes. */
    EXPECT_EQ(zdsetparam("ROBOT", "ARMLESS RRRRRRRRRR", "3"), 0);
}

TEST_F(ConfigSetters, SevenAxesAndThreeExtendedStayInBounds) {
    EXPECT_EQ(zdsetparam("ROBOT", "TR7-1400-12 RLL", "1"), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 10);
    EXPECT_EQ(scr_grp[0].num_rob_axes, 7);
    EXPECT_EQ(axis_is_linear[0][0], 1); /* the rail */
    EXPECT_EQ(axis_is_linear[0][7], 0);
    EXPECT_EQ(axis_is_linear[0][8], 1);
}

TEST_F(ConfigSetters, RobotSetterRefusals) {
    const struct {
        const char *key;
        const char *group;
    } refused[] = {
        {"GA6-1400-12", "0"}, {"GA6-1400-12", "6"}, {"GA6-1400-12", "x"}, {"NOSUCH", "1"},
        {"ga6-1400-12", "1"}, {"GA6-1400", "1"},   {"", "1"},            {" GA6-1400-12", "1"},
    };
    for (const auto &r : refused)
        EXPECT_EQ(zdsetparam("ROBOT", r.key, r.group), 0) << r.key << " / " << r.group;
    EXPECT_EQ(zdsetparam("ROBOT", nullptr, "1"), 0);
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12", nullptr), 0);
    EXPECT_EQ(group_count, 0);
}

TEST_F(ConfigSetters, GroupCountOnlyRises) {
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "3"), 1);
    EXPECT_EQ(group_count, 3);
    EXPECT_EQ(zdsetparam("ROBOT", "GA5-0900-05", "1"), 1);
    EXPECT_EQ(group_count, 3);
    EXPECT_EQ(scr_grp[0].num_axes, 5);
}

TEST_F(ConfigSetters, BenchModelFollowsTheLastModelSet) {
    EXPECT_EQ(zdsetparam("ROBOT", "BENCHARM6-0550", "1"), 1);
    EXPECT_EQ(bench_model, 1);
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "2"), 1);
    EXPECT_EQ(bench_model, 0);
    EXPECT_EQ(zdsetparam("ROBOT", "WELDMINI6-0700", "2"), 1);
    EXPECT_EQ(bench_model, 1);
    /* Set before the letters are checked, so a refused group changes it. */
    EXPECT_EQ(zdsetparam("ROBOT", "GA6-1400-12 RRRR", "3"), 0);
    EXPECT_EQ(bench_model, 0);
}

TEST_F(ConfigSetters, ConfigMaskOfOtherModels) {
    EXPECT_EQ(zdsetparam("ROBOT", "SC4-0400-03", "1"), 1);
    EXPECT_EQ(scr_grp[0].config_mask, 0x40010000u);
    EXPECT_EQ(zdsetparam("ROBOT", "DL4-0800-03", "1"), 1);
    EXPECT_EQ(scr_grp[0].config_mask, 0x00020000u);
    EXPECT_EQ(zdsetparam("ROBOT", "GA7-1000-10", "1"), 1);
    EXPECT_EQ(scr_grp[0].config_mask, 0xF0010101u);
}

TEST_F(ConfigSetters, DefaultConfigOfAGroup) {
    int8_t turns[3] = {9, 9, 9};
    uint8_t flags = 9;
    EXPECT_EQ(group_default_config(0, turns, &flags), 1);
    EXPECT_EQ(flags, 0);
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "1"), 1);
    ASSERT_EQ(zdsetparam("ROBOT", "SC4-0400-03", "2"), 1);
    EXPECT_EQ(group_default_config(1, turns, &flags), 0);
    EXPECT_EQ(flags, 0x30); /* N U T */
    EXPECT_EQ(turns[0] | turns[1] | turns[2], 0);
    EXPECT_EQ(group_default_config(2, turns, &flags), 0);
    EXPECT_EQ(flags, 0x40);
}

TEST_F(ConfigSetters, SystemVariables) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12 R", "2"), 1);
    void *p = nullptr;
    EXPECT_EQ(system_variable("*SYSTEM*", "$SCR_GRP", 0, 0, &p), 0);
    ASSERT_EQ(p, static_cast<void *>(scr_grp));
    EXPECT_EQ(static_cast<scr_group *>(p)[1].num_axes, 7);
    EXPECT_EQ(system_variable("*SYSTEM*", "$SCR", 0, 0, &p), 0);
    ASSERT_EQ(p, static_cast<void *>(&group_count));
    EXPECT_EQ(*static_cast<int8_t *>(p), 2);
    void *untouched = &p;
    EXPECT_EQ(system_variable("*SYSTEM*", "$SCR_X", 0, 0, &untouched), 0);
    EXPECT_EQ(untouched, static_cast<void *>(&p));
    EXPECT_EQ(group_record(2), &scr_grp[1]);
    EXPECT_EQ(group_record(0), nullptr);
    EXPECT_EQ(group_record(6), nullptr);
}

TEST_F(ConfigSetters, MacroTwiceKeepsOneRowWithTheLastNumber) {
    EXPECT_EQ(zdsetparam("MACRO", "WELD_START", "3"), 1);
    EXPECT_EQ(zdsetparam("Macro", "WELD_START", "7"), 1);
    EXPECT_EQ(macro_count, 1);
    EXPECT_STREQ(macro_table[0].name, "WELD_START");
    EXPECT_EQ(macro_table[0].number, 7);
    /* Names compare exactly. */
    EXPECT_EQ(zdsetparam("MACRO", "weld_start", "2"), 1);
    EXPECT_EQ(macro_count, 2);
    EXPECT_EQ(macro_find("weld_start"), 1);
    EXPECT_EQ(macro_find("WELD"), -1);
}

TEST_F(ConfigSetters, MacroNameLength) {
    EXPECT_EQ(zdsetparam("MACRO", "ABCDEFGHIJKLMNOP", "1"), 1);  /* 16 */
    EXPECT_EQ(zdsetparam("MACRO", "ABCDEFGHIJKLMNOPQ", "2"), 0); /* 17 */
    EXPECT_EQ(zdsetparam("MACRO", "", "3"), 0);
    EXPECT_EQ(macro_count, 1);
}

TEST_F(ConfigSetters, The261stMacroIsRefused) {
    for (int i = 0; i < MACRO_CAPACITY; i++) {
        std::string name = "M" + std::to_string(i);
        ASSERT_EQ(zdsetparam("MACRO", name.c_str(), std::to_string(i + 1).c_str()), 1) << i;
    }
    EXPECT_EQ(macro_count, 260);
    EXPECT_EQ(zdsetparam("MACRO", "ONE_TOO_MANY", "1"), 0);
    EXPECT_EQ(macro_count, 260);
    /* A name already there still takes a new number. */
    EXPECT_EQ(zdsetparam("MACRO", "M259", "5"), 1);
    EXPECT_EQ(macro_table[259].number, 5);
}

TEST_F(ConfigSetters, SpotSettings) {
    EXPECT_EQ(zdsetparam("SPOT", "servogun", ""), 1);
    EXPECT_EQ(spot_servo_gun, 1);
    EXPECT_EQ(zdsetparam("SPOT", "AIRGUN", ""), 1);
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(zdsetparam("SPOT", "STROKE", "1"), 1);
    EXPECT_EQ(spot_stroke, 1);
    /* STROKE 5 is stored and reported as a failure. */
    EXPECT_EQ(zdsetparam("SPOT", "STROKE", "5"), 0);
    EXPECT_EQ(spot_stroke, 5);
    EXPECT_EQ(zdsetparam("SPOT", "STROKE", "0"), 1);
    EXPECT_EQ(spot_stroke, 0);
    /* PRESSURE converts its key word: always 0, always good. */
    EXPECT_EQ(zdsetparam("SPOT", "PRESSURE", "1"), 1);
    EXPECT_EQ(spot_pressure, 0);
    EXPECT_EQ(zdsetparam("SPOT", "pressure", "9"), 1);
    EXPECT_EQ(spot_pressure, 0);
    EXPECT_EQ(zdsetparam("SPOT", "GUN", "1"), 0);
}

TEST_F(ConfigSetters, ArcSettings) {
    const struct {
        const char *key;
        const char *value;
        int32_t result;
        int32_t *field;
        int32_t expected;
    } steps[] = {
        {"PROCESS", "TIG", 1, &arc_process, 1},  {"process", "MIG", 1, &arc_process, 0},
        {"PROCESS", "TIG", 1, &arc_process, 1},  {"PROCESS", "CO2", 1, &arc_process, 0},
        {"PROCESS", "LASER", 0, &arc_process, 0}, {"PROCESS", "tig", 0, &arc_process, 0},
        {"POWER", "WIRE", 1, &arc_power, 0},      {"POWER", "WIRE", 1, &arc_wire_mode, 1},
        {"POWER", "CURRENT", 1, &arc_power, 1},   {"POWER", "VOLTS", 0, &arc_power, 1},
        {"WIRE_UNIT", "CM_MIN", 1, &arc_wire_unit, 1}, {"wire_unit", "IPM", 1, &arc_wire_unit, 2},
        {"WIRE_UNIT", "INCH", 0, &arc_wire_unit, 2},   {"WIRE_UNIT", "MM_SEC", 1, &arc_wire_unit, 0},
        {"ASTIME", "7", 1, &arc_astime, 0},       {"SPEED", "1", 0, &arc_power, 1},
    };
    for (const auto &s : steps) {
        EXPECT_EQ(zdsetparam("ARC", s.key, s.value), s.result) << s.key << " " << s.value;
        EXPECT_EQ(*s.field, s.expected) << s.key << " " << s.value;
    }
    /* Nothing clears the wire mode, once set. */
    EXPECT_EQ(arc_wire_mode, 1);
    EXPECT_EQ(arc_power_wire, 1);
    EXPECT_EQ(&arc_process_tig, &arc_process);
}

TEST_F(ConfigSetters, OptionSettings) {
    EXPECT_EQ(zdsetparam("PARAM", "SMARTFOLLOW", "1"), 1);
    EXPECT_EQ(opt_smartfollow, 1);
    EXPECT_EQ(zdsetparam("param", "vision_q770", "1"), 1);
    EXPECT_EQ(opt_vision, 1);
    /* Other values are stored and reported as a failure. */
    EXPECT_EQ(zdsetparam("PARAM", "DISPENSE", "2"), 0);
    EXPECT_EQ(opt_dispense, 2);
    EXPECT_EQ(zdsetparam("PARAM", "DISPENSE", "0"), 1);
    EXPECT_EQ(opt_dispense, 0);
    EXPECT_EQ(zdsetparam("PARAM", "PAINT", "1"), 0);
}

TEST_F(ConfigSetters, UnknownSection) {
    EXPECT_EQ(zdsetparam("WELD", "STROKE", "1"), 0);
    EXPECT_EQ(zdsetparam(nullptr, "STROKE", "1"), 0);
    EXPECT_EQ(zdsetparam("", "", ""), 0);
    EXPECT_EQ(spot_stroke, 0);
}

TEST_F(ConfigSetters, ClearKeepsModelsGroupsAndArc) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12 R", "2"), 1);
    ASSERT_EQ(zdsetparam("MACRO", "M1", "1"), 1);
    ASSERT_EQ(zdsetparam("SPOT", "SERVOGUN", ""), 1);
    ASSERT_EQ(zdsetparam("SPOT", "STROKE", "1"), 1);
    ASSERT_EQ(zdsetparam("ARC", "PROCESS", "TIG"), 1);
    ASSERT_EQ(zdsetparam("ARC", "WIRE_UNIT", "IPM"), 1);
    ASSERT_EQ(zdsetparam("PARAM", "VISION_Q770", "1"), 1);
    ASSERT_EQ(addrobotconfig("MY4", "", "mine", "RRRR", 0, 0, 1, 0, 0, 0, 0), 1);
    track_sensor_default = 0;
    dispense_default = 0;
    zdclearparam();
    EXPECT_EQ(group_count, 0);
    EXPECT_EQ(macro_count, 0);
    EXPECT_EQ(macro_find("M1"), -1);
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(spot_stroke, 0);
    EXPECT_EQ(opt_vision, 0);
    EXPECT_EQ(track_sensor_default, 5);
    EXPECT_EQ(dispense_default, 5);
    EXPECT_EQ(arc_process, 1);
    EXPECT_EQ(arc_wire_unit, 2);
    EXPECT_EQ(scr_grp[1].num_axes, 7);
    EXPECT_GE(robot_model_find("MY4"), 0);
}

TEST_F(ConfigSetters, AtoiAndWords) {
    EXPECT_EQ(config_atoi(" 42x"), 42);
    EXPECT_EQ(config_atoi("-7"), -7);
    EXPECT_EQ(config_atoi("+3"), 3);
    EXPECT_EQ(config_atoi("abc"), 0);
    EXPECT_EQ(config_atoi(nullptr), 0);
    EXPECT_EQ(config_atoi("99999999999999999999"), INT32_MAX);
    EXPECT_EQ(config_atoi("-99999999999999999999"), INT32_MIN);
    EXPECT_TRUE(config_same_word("Servogun", "SERVOGUN"));
    EXPECT_FALSE(config_same_word("SERVOGUNS", "SERVOGUN"));
    EXPECT_TRUE(config_same_word(nullptr, ""));
}

} // namespace
