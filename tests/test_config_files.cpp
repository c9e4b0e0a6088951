// Reading a robot cell from its four files: the quoted-line reader, each
// file's rules, zdreadparam's directory forms and the built-in cell.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "core/config.h"
#include "core/run_state.h"
#include "vorex_zd.h"

namespace fs = std::filesystem;

namespace {

std::string nine_axes(const char *letters) {
    std::string s;
    for (int i = 0; i < 9; i++) {
        s += '"';
        if (letters[0] && i < static_cast<int>(std::strlen(letters)))
            s += letters[i];
        s += "\"\n";
    }
    return s;
}

class ConfigFiles : public ::testing::Test {
protected:
    void SetUp() override {
        static int serial = 0;
        dir = fs::temp_directory_path() /
              ("vz_config_" + std::to_string(getpid()) + "_" + std::to_string(serial++));
        fs::create_directories(dir);
        zdclearparam();
        robot_models_restore_builtin();
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(dir, ec);
        zdclearparam();
    }
    void write(const char *name, const std::string &text) {
        std::ofstream(dir / name, std::ios::binary) << text;
    }
    int32_t read(const std::string &suffix = "/") { return zdreadparam((dir.string() + suffix).c_str()); }

    fs::path dir;
};

int32_t read_line(const char *text, char *buf, size_t size, bool quoted) {
    static cfg_source src;
    if (text)
        src = {nullptr, text, std::strlen(text), 0};
    return quoted ? read_quoted_line(&src, buf, size) : cfg_read_line(&src, buf, size);
}

TEST_F(ConfigFiles, LinesEndInLfOrCrLf) {
    char buf[64];
    EXPECT_EQ(read_line("a\r\nbc\n\nlast", buf, sizeof buf, false), 1);
    EXPECT_STREQ(buf, "a");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, false), 1);
    EXPECT_STREQ(buf, "bc");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, false), 1);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, false), 1);
    EXPECT_STREQ(buf, "last");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, false), 0);
}

TEST_F(ConfigFiles, QuotedLinesLoseTheirFirstAndLastCharacter) {
    char buf[CFG_LINE_MAX];
    EXPECT_EQ(read_line("\"GA6\"\n\"\"\r\nx\nABC\n\"R\"", buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, "GA6");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, ""); /* too short to hold quotes */
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, "B"); /* the quotes aren't looked at */
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, "R");
    EXPECT_EQ(read_line(nullptr, buf, sizeof buf, true), 0);
}

TEST_F(ConfigFiles, AnOverlongLineIsCutAndTheNextOneStands) {
    std::string text = "\"" + std::string(3000, 'A') + "\"\n\"NEXT\"\n";
    char buf[CFG_LINE_MAX];
    ASSERT_EQ(read_line(text.c_str(), buf, sizeof buf, true), 1);
    EXPECT_EQ(std::strlen(buf), CFG_LINE_MAX - 3);
    ASSERT_EQ(read_line(nullptr, buf, sizeof buf, true), 1);
    EXPECT_STREQ(buf, "NEXT");
    /* A small buffer takes what fits. */
    char small[4];
    ASSERT_EQ(read_line("\"ABCDEFG\"\n", small, sizeof small, true), 1);
    EXPECT_STREQ(small, "ABC");
}

TEST_F(ConfigFiles, MissingRobotCfgReadsZero) {
    ASSERT_EQ(zdsetparam("ROBOT", "GA6-1400-12", "1"), 1);
    write("macro.cfg", "1\n\"M\"\n");
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(group_count, 0);
    EXPECT_EQ(macro_count, 1); /* the other files are read all the same */
}

TEST_F(ConfigFiles, SixGroupsIsRefusedAndSetsNothing) {
    std::string robot = "6\n";
    for (int g = 0; g < 6; g++)
        robot += "\"GA6-1400-12\"\n" + nine_axes("");
    write("robot.cfg", robot);
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(group_count, 0);
    write("robot.cfg", "0\n");
    EXPECT_EQ(read(), 0);
    write("robot.cfg", "");
    EXPECT_EQ(read(), 0);
}

TEST_F(ConfigFiles, OneGroupWithTwoExtendedAxes) {
    write("robot.cfg", "1\n\"GA6-1400-12\"\n" + nine_axes("RL"));
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(group_count, 1);
    EXPECT_EQ(scr_grp[0].num_axes, 8);
    EXPECT_EQ(scr_grp[0].num_rob_axes, 6);
    EXPECT_EQ(axis_is_linear[0][6], 0);
    EXPECT_EQ(axis_is_linear[0][7], 1);
}

TEST_F(ConfigFiles, AxisLinesAreJoinedWhereverTheyStand) {
    write("robot.cfg", "1\n\"GA6-1400-12\"\n\"\"\n\"L\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"\"\n\"R\"\n");
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(scr_grp[0].num_axes, 8);
    EXPECT_EQ(axis_is_linear[0][6], 1);
    EXPECT_EQ(axis_is_linear[0][7], 0);
}

TEST_F(ConfigFiles, AGroupTheSetterRefusesIsPassedOver) {
    write("robot.cfg", "2\n\"GA6-1400-12\"\n" + nine_axes("RRRR") + "\"GA5-0900-05\"\n" + nine_axes("L"));
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(group_count, 2);
    EXPECT_EQ(scr_grp[1].num_axes, 6);
    EXPECT_EQ(scr_grp[1].num_rob_axes, 5);
    EXPECT_EQ(axis_is_linear[1][5], 1);
}

TEST_F(ConfigFiles, RunningOutOfLinesReadsZero) {
    write("robot.cfg", "2\n\"GA6-1400-12\"\n" + nine_axes("") + "\"GA5-0900-05\"\n\"\"\n");
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(group_count, 1); /* the first group stands */
}

TEST_F(ConfigFiles, CrLfFilesAndDirectoryForms) {
    std::string robot = "2\r\n\"ARMLESS\"\r\n";
    for (int i = 0; i < 9; i++)
        robot += i < 2 ? "\"L\"\r\n" : "\"\"\r\n";
    robot += "\"SC4-0500-05\"\r\n";
    for (int i = 0; i < 9; i++)
        robot += "\"\"\r\n";
    write("robot.cfg", robot);
    write("arc.cfg", "\"TIG\"\r\n\"WIRE\"\r\n\"CM_MIN\"\r\n");
    for (const char *suffix : {"", "/", "\\"}) {
        zdclearparam();
        EXPECT_EQ(read(suffix), 1) << "'" << suffix << "'";
        EXPECT_EQ(group_count, 2);
        EXPECT_EQ(scr_grp[0].num_axes, 2);
        EXPECT_EQ(scr_grp[0].num_rob_axes, 2);
        EXPECT_EQ(axis_is_linear[0][1], 1);
        EXPECT_EQ(scr_grp[1].num_axes, 4);
        EXPECT_EQ(axis_is_linear[1][2], 1);
        EXPECT_EQ(arc_process, 1);
        EXPECT_EQ(arc_wire_unit, 1);
    }
    EXPECT_EQ(zdreadparam(nullptr), 0);
}

TEST_F(ConfigFiles, MacrosNumberedByTheirLine) {
    write("macro.cfg", "5\n\"WELD_ON\"\n\"\"\n\n\"WELD_OFF\"\n\"A_VERY_LONG_MACRO_NAME\"\n\"AFTER\"\n");
    read();
    ASSERT_EQ(macro_count, 2);
    EXPECT_STREQ(macro_table[0].name, "WELD_ON");
    EXPECT_EQ(macro_table[0].number, 1);
    EXPECT_STREQ(macro_table[1].name, "WELD_OFF");
    EXPECT_EQ(macro_table[1].number, 4);
    /* Line 5 is refused by the setter; line 6 lies beyond the count. */
    EXPECT_EQ(macro_find("AFTER"), -1);
}

TEST_F(ConfigFiles, MacroFileEndingEarlyStopsQuietly) {
    write("macro.cfg", "300\n\"ONE\"\n\"TWO\"");
    read();
    EXPECT_EQ(macro_count, 2);
    EXPECT_EQ(macro_table[1].number, 2);
    write("macro.cfg", "x\n\"ONE\"\n");
    read();
    EXPECT_EQ(macro_count, 0);
}

TEST_F(ConfigFiles, SpotFile) {
    write("spot.cfg", "2\n1\n1\n");
    read();
    EXPECT_EQ(spot_servo_gun, 1);
    EXPECT_EQ(spot_stroke, 1);
    EXPECT_EQ(spot_pressure, 0);
    write("spot.cfg", "3\n5\n1\n");
    read();
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(spot_stroke, 5);
}

TEST_F(ConfigFiles, SpotFileNeedsAllThreeLines) {
    ASSERT_EQ(zdsetparam("SPOT", "STROKE", "1"), 1);
    write("spot.cfg", "2\n1\n");
    read(); /* the clear of zdreadparam empties the spot settings */
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(spot_stroke, 0);
    cfg_source src = {nullptr, "2\n1\n", 4, 0};
    ASSERT_EQ(zdsetparam("SPOT", "STROKE", "1"), 1);
    read_spot_cfg(&src);
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(spot_stroke, 1);
}

TEST_F(ConfigFiles, ArcFile) {
    write("arc.cfg", "\"TIG\"\n\"WIRE\"\n\"IPM\"\n");
    read();
    EXPECT_EQ(arc_process, 1);
    EXPECT_EQ(arc_power, 0);
    EXPECT_EQ(arc_wire_mode, 1);
    EXPECT_EQ(arc_wire_unit, 2);
    /* Any other first and second lines give MIG and CURRENT; an unknown unit
       leaves the default. */
    write("arc.cfg", "\"tig\"\n\"wire\"\n\"FURLONGS\"\n");
    read();
    EXPECT_EQ(arc_process, 0);
    EXPECT_EQ(arc_power, 1);
    EXPECT_EQ(arc_wire_unit, 0);
    EXPECT_EQ(arc_wire_mode, 1);
}

TEST_F(ConfigFiles, ArcDefaultsHoldWithoutAFile) {
    write("arc.cfg", "\"TIG\"\n\"WIRE\"\n\"IPM\"\n");
    read();
    fs::remove(dir / "arc.cfg");
    read();
    EXPECT_EQ(arc_process, 0);
    EXPECT_EQ(arc_power, 1);
    EXPECT_EQ(arc_wire_unit, 0);
    write("arc.cfg", "\"TIG\"\n\"WIRE\"\n");
    ASSERT_EQ(zdsetparam("ARC", "WIRE_UNIT", "IPM"), 1);
    read();
    EXPECT_EQ(arc_process, 0);
    EXPECT_EQ(arc_wire_unit, 0);
}

std::string file_text(const fs::path &p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST_F(ConfigFiles, BuiltinCellIsTheDefaultDirectory) {
    fs::path def = fs::path(VZ_SOURCE_DIR) / "config" / "default";
    for (const char *name : {"robot.cfg", "macro.cfg", "spot.cfg", "arc.cfg"}) {
        ASSERT_NE(config_builtin_text(name), nullptr) << name;
        EXPECT_EQ(file_text(def / name), config_builtin_text(name)) << name;
    }
    EXPECT_EQ(config_builtin_text("paint.cfg"), nullptr);
}

TEST_F(ConfigFiles, BuiltinCellLoads) {
    ASSERT_EQ(zdsetparam("ARC", "PROCESS", "TIG"), 1);
    ASSERT_EQ(zdsetparam("MACRO", "OLD", "1"), 1);
    EXPECT_EQ(config_load_builtin(), 1);
    EXPECT_EQ(group_count, 1);
    EXPECT_STREQ(group_model[0], "GA6-1400-12");
    EXPECT_EQ(scr_grp[0].num_axes, 6);
    EXPECT_EQ(scr_grp[0].config_mask, 0xB0010101u);
    EXPECT_EQ(macro_count, 0);
    EXPECT_EQ(spot_servo_gun, 0);
    EXPECT_EQ(arc_process, 0);
    EXPECT_EQ(arc_power, 1);
    EXPECT_EQ(arc_wire_unit, 0);
    EXPECT_EQ(track_sensor_default, 5);
    scr_group builtin = scr_grp[0];

    zdclearparam();
    EXPECT_EQ(config_load((std::string(VZ_SOURCE_DIR) + "/config/default").c_str()), 1);
    EXPECT_EQ(group_count, 1);
    EXPECT_EQ(scr_grp[0].num_axes, builtin.num_axes);
    EXPECT_EQ(scr_grp[0].config_mask, builtin.config_mask);
    zdclearparam();
    EXPECT_EQ(config_load(""), 1);
    EXPECT_EQ(config_load(nullptr), 1);
    EXPECT_EQ(group_count, 1);
    EXPECT_EQ(config_load(dir.string().c_str()), 0);
}

} // namespace
