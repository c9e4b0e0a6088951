// The robot model table: the built-in rows, the name exports, and rows a
// host adds with addrobotconfig.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/config.h"
#include "core/messages.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace {

class ConfigModels : public ::testing::Test {
protected:
    void SetUp() override {
        robot_models_restore_builtin();
        zdclearparam();
    }
    void TearDown() override {
        robot_models_restore_builtin();
        zdclearparam();
    }
    uint16_t count() {
        uint16_t n = 0;
        EXPECT_EQ(zdgetnumrobot(&n), 0);
        return n;
    }
};

TEST_F(ConfigModels, BuiltinRowsInKeyOrder) {
    EXPECT_EQ(count(), 72);
    EXPECT_EQ(robot_models_builtin_count, 72);
    for (int i = 1; i < 72; i++)
        EXPECT_LT(std::strcmp(robot_models[i - 1].key, robot_models[i].key), 0) << i;
}

TEST_F(ConfigModels, BuiltinRowsAreWellFormed) {
    int bench = 0, weldmini = 0;
    for (int i = 0; i < 72; i++) {
        const robot_model &m = robot_models[i];
        std::string key = m.key;
        if (key == "ARMLESS") {
            EXPECT_EQ(m.axes, 0);
            EXPECT_EQ(m.has_f + m.has_l + m.has_u + m.has_t, 0);
            continue;
        }
        bench += key.rfind("BENCHARM", 0) == 0;
        weldmini += key.rfind("WELDMINI", 0) == 0;
        EXPECT_GE(m.axes, 4) << key;
        EXPECT_LE(m.axes, 7) << key;
        EXPECT_LE(key.size(), ROBOT_LINEAR_KEY_MAX) << key;
        EXPECT_GT(std::strlen(m.english_name), 0u) << key;
        /* A letter is on by default only where it exists. */
        EXPECT_TRUE(!m.default_f || m.has_f) << key;
        EXPECT_TRUE(!m.default_l || m.has_l) << key;
        EXPECT_TRUE(!m.default_u || m.has_u) << key;
        EXPECT_TRUE(!m.default_t || m.has_t) << key;
        char utf8[256];
        sjis_to_utf8(m.japanese_name, utf8, sizeof utf8);
        EXPECT_EQ(std::string(utf8).find("\xEF\xBF\xBD"), std::string::npos) << key;
    }
    EXPECT_GE(bench, 1);
    EXPECT_GE(weldmini, 1);
    EXPECT_GE(robot_model_find("ARMLESS"), 0);
}

TEST_F(ConfigModels, LinearRowsBelongToModels) {
    ASSERT_GT(robot_linear_builtin_count, 0);
    for (int i = 0; i < robot_linear_builtin_count; i++) {
        const robot_linear_row &r = robot_linear_axes[i];
        int32_t row = robot_model_find(r.key);
        ASSERT_GE(row, 0) << r.key;
        for (int k = robot_models[row].axes; k < ROBOT_LINEAR_FLAGS; k++)
            EXPECT_EQ(r.linear[k], 0) << r.key << " axis " << k;
    }
    EXPECT_EQ(robot_linear_axes[robot_linear_builtin_count].key[0], 0);
    const robot_linear_row *scara = robot_linear_find("SC4-0400-03");
    ASSERT_NE(scara, nullptr);
    EXPECT_EQ(scara->linear[2], 1);
    EXPECT_EQ(robot_linear_find("GA6-1400-12"), nullptr);
}

TEST_F(ConfigModels, NamesByRow) {
    char key[512], name[512];
    int32_t row = robot_model_find("GA6-1400-12");
    ASSERT_GE(row, 0);
    EXPECT_EQ(zdgetrobotname(static_cast<uint16_t>(row), key, name), 0);
    EXPECT_STREQ(key, "GA6-1400-12");
    EXPECT_STREQ(name, "General-purpose 6-axis arm 1400mm 12kg");
    EXPECT_EQ(zdgetrobotnamejpn(0, key, name), 0);
    EXPECT_STREQ(key, "ARMLESS");
    EXPECT_STREQ(name, "\x83\x8D\x83\x7B\x83\x62\x83\x67\x82\xC8\x82\xB5\x20\x95\x74\x89\xC1\x8E\xB2\x82\xCC\x82\xDD");
    /* The end row and rows beyond the table give empty texts. */
    for (uint16_t r : {uint16_t(72), uint16_t(199), uint16_t(200), uint16_t(65535)}) {
        std::strcpy(key, "x");
        std::strcpy(name, "x");
        EXPECT_EQ(zdgetrobotname(r, key, name), 0);
        EXPECT_STREQ(key, "");
        EXPECT_STREQ(name, "");
    }
    EXPECT_EQ(zdgetnumrobot(nullptr), 0);
}

TEST_F(ConfigModels, AddedRowWithThreeStateLetters) {
    EXPECT_EQ(addrobotconfig("MYARM7", "\xCF\xB2\xB1\xB0\xD1", "My arm", "RRRRRRL", 1, 0, 2, 1, -1, 0, -1), 1);
    EXPECT_EQ(count(), 73);
    const robot_model &m = robot_models[72];
    EXPECT_STREQ(m.key, "MYARM7");
    EXPECT_EQ(m.axes, 7);
    EXPECT_EQ(m.turn[0], 1);
    EXPECT_EQ(m.turn[1], 0);
    EXPECT_EQ(m.turn[2], 2);
    EXPECT_EQ(m.has_f, 1);
    EXPECT_EQ(m.has_l, 0);
    EXPECT_EQ(m.has_u, 0);
    EXPECT_EQ(m.has_t, 0);
    EXPECT_EQ(m.default_f, 0);
    EXPECT_EQ(m.default_l, 1);
    EXPECT_EQ(m.default_u, 0);
    EXPECT_EQ(m.default_t, 1);
    EXPECT_EQ(m.default_turn[0] | m.default_turn[1] | m.default_turn[2], 0);
    char key[512], name[512];
    zdgetrobotnamejpn(72, key, name);
    EXPECT_STREQ(name, "\xCF\xB2\xB1\xB0\xD1");

    const robot_linear_row *lin = robot_linear_find("MYARM7");
    ASSERT_NE(lin, nullptr);
    EXPECT_EQ(lin->linear[5], 0);
    EXPECT_EQ(lin->linear[6], 1);

    /* The new model serves a group like a built-in one. */
    EXPECT_EQ(zdsetparam("ROBOT", "MYARM7 L", "1"), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 8);
    EXPECT_EQ(scr_grp[0].config_mask, 0x80020001u);
    EXPECT_EQ(axis_is_linear[0][6], 1);
    EXPECT_EQ(axis_is_linear[0][7], 1);
    int8_t turns[3];
    uint8_t flags;
    EXPECT_EQ(group_default_config(1, turns, &flags), 0);
    EXPECT_EQ(flags, 0x50);
}

TEST_F(ConfigModels, OnlyACapitalLMakesALinearRow) {
    EXPECT_EQ(addrobotconfig("ROT6", "", "", "RRRRRl", 1, 1, 1, 1, 0, 1, 1), 1);
    EXPECT_EQ(robot_linear_find("ROT6"), nullptr);
    EXPECT_EQ(robot_linear_axes[robot_linear_builtin_count].key[0], 0);
}

TEST_F(ConfigModels, AddRefusals) {
    EXPECT_EQ(addrobotconfig("", "", "", "RRRR", 0, 0, 0, 0, 0, 0, 0), 0);
    EXPECT_EQ(addrobotconfig(nullptr, "", "", "RRRR", 0, 0, 0, 0, 0, 0, 0), 0);
    EXPECT_EQ(addrobotconfig("TEN", "", "", "RRRRRRRRRR", 0, 0, 0, 0, 0, 0, 0), 0);
    EXPECT_EQ(count(), 72);
    EXPECT_EQ(addrobotconfig("NULLS", nullptr, nullptr, nullptr, 0, 0, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(robot_models[72].axes, 0);
    EXPECT_STREQ(robot_models[72].english_name, "");
}

TEST_F(ConfigModels, TableFullAtRow198) {
    int added = 0;
    while (addrobotconfig(("X" + std::to_string(added)).c_str(), "", "x", "RRRRRR", 1, 1, 1, 1, 0, 1, 1))
        added++;
    EXPECT_EQ(added, ROBOT_MODEL_LAST_FREE_ROW + 1 - 72);
    EXPECT_EQ(count(), 199);
    EXPECT_EQ(robot_models[199].key, nullptr);
    EXPECT_GE(robot_model_find("X126"), 0);
    robot_models_restore_builtin();
    EXPECT_EQ(count(), 72);
    EXPECT_EQ(robot_model_find("X0"), -1);
}

TEST_F(ConfigModels, LinearTableFullFailsButKeepsTheModel) {
    int free_rows = ROBOT_LINEAR_CAPACITY - 1 - robot_linear_builtin_count;
    for (int i = 0; i < free_rows; i++)
        ASSERT_EQ(addrobotconfig(("G" + std::to_string(i)).c_str(), "", "", "LLLR", 0, 0, 1, 0, 0, 0, 0), 1) << i;
    EXPECT_EQ(addrobotconfig("GFULL", "", "", "LLLR", 0, 0, 1, 0, 0, 0, 0), 0);
    EXPECT_GE(robot_model_find("GFULL"), 0);
    EXPECT_EQ(robot_linear_find("GFULL"), nullptr);
    EXPECT_EQ(robot_linear_axes[ROBOT_LINEAR_CAPACITY - 1].key[0], 0);
    robot_models_restore_builtin();
    EXPECT_EQ(robot_linear_find("G0"), nullptr);
    EXPECT_EQ(robot_linear_axes[robot_linear_builtin_count].key[0], 0);
}

TEST_F(ConfigModels, AddedRowsSurviveTheClear) {
    ASSERT_EQ(addrobotconfig("KEEP", "", "", "RRRR", 0, 0, 0, 0, 0, 0, 0), 1);
    zdclearparam();
    EXPECT_EQ(count(), 73);
}

} // namespace
