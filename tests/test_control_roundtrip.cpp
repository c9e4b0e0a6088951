// Whole programs of control-flow and I/O statements through both
// directions, in English and in Japanese.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_control_util.h"
#include "vorex_zd.h"

namespace {

using vzt::hex;

class ControlRoundTrip : public ::testing::Test {
protected:
    void SetUp() override {
        vzt::load_builtin_cell();
        zdsetparam("MACRO", "HAND OPEN", "4");
    }
};

// Every statement of the two families once or more, as a listing writes
// them. Left out: CONCURRENT and ENDCONCUR, which print as "ERROR", and
// MESSAGE[], which prints as MESSAGE[...] and reads back as that text; the
// Sample statements, which have no Japanese words, are added for English.
const char *const common_body[] = {
    "LBL[1:loop start]",
    "LBL[2]",
    "LBL[*1]",
    "LBL[...]",
    "JMP LBL[2]",
    "JMP LBL[R[3]]",
    "IF R[1]=1,JMP LBL[2]",
    "IF R[1]<>2 AND DI[1]=ON,CALL SUB1",
    "IF (R[1]=1),DO[1]=ON",
    "IF R[2]>=3,DO[2]=PULSE,0.5sec",
    "IF R[2]=1,R[3]=4",
    "IF DI[2]=OFF,IBGN START[2]",
    "IF DI[4]=ON,...",
    "SELECT R[1]=1,JMP LBL[1]",
    "=2,CALL SUB2",
    "=R[5],JMP LBL[2]",
    "ELSE,JMP LBL[2]",
    "WAIT 1.5sec",
    "WAIT 12.25(sec)",
    "WAIT R[4]",
    "WAIT R[4] TIMEOUT,LBL[1]",
    "WAIT DI[1]=ON TIMEOUT,LBL[2]",
    "WAIT DI[1]=ON+ OR DI[2]=OFF-",
    "WAIT SEMAPHORE[3]",
    "WAIT (DI[1] AND DI[2])",
    "CALL SUB1",
    "CALL Sub2(1,R[2],'TEXT',AR[3],...,-4,2.5)",
    "CALL ...",
    "RUN PROGX",
    "ERROR_PROG = ERRP",
    "RESUME_PROG = ...",
    "CLEAR_RESUME_PROG",
    "PAUSE",
    "ABORT",
    "RCV R[1],LBL[2] TIMEOUT,LBL[1]",
    "MESSAGE[Part done]",
    "!a remark",
    "HAND OPEN",
    "HAND OPEN(1,R[2])",
    "DO[1]=ON",
    "RO[2]=OFF",
    "WO[1]=...",
    "SO[3]=R[4]",
    "UO[1]=AR[2]",
    "F[3]=PULSE",
    "M[2]=PULSE,25.4sec",
    "DO[4]=(DI[1] AND DI[2])",
    "AO[1]=(-5)",
    "GO[2]=1000",
    "AO[2]=(R[1]+1)",
    "PAYLOAD[3]",
    "PAYLOAD[GP1:4]",
    "OVERRIDE=50%",
    "OVERRIDE=R[1]",
    "RSR[1]=ENABLE",
    "RSR[2]=DISABLE",
    "SEMAPHORE[1]=ON",
    "SEMAPHORE[2]=...",
    "UALM[1]",
    "LOCK PREG",
    "UNLOCK PREG",
    "MONITOR WRK1",
    "MONITOR END WRK1",
    "TOOL ATTACH[1]",
    "TOOL DETACH[2]",
    "SEND R[1]",
    "OCP START",
    "OCP END",
    "STICK DETECT ON",
    "COL DETECT OFF",
    "Grind START[1]",
    "Grind End",
    "TORQ_LIMIT 50.5%",
    "TORQ_LIMIT R[2]",
    "PS +10mm +0.50sec DO[1]=ON",
    "PS -5mm -1.25sec R[1]=2",
    "PS +0mm +1.00sec IF R[1]=1,JMP LBL[1]",
    "TC_ONLINE ENABLE",
    "TC_ONLINE (DI[1])",
    "IBGN START[1]",
    "IBGN END[1]",
    "IBGN REC START[2]",
    "IBGN REC END[*3]",
    "IBGN START[...]",
    "END",
};

std::string body(bool with_sample) {
    std::string mn;
    int n = 0;
    for (const char *s : common_body)
        mn += "   " + std::to_string(++n) + ":  " + s + " ;\n";
    if (with_sample) {
        mn += "   " + std::to_string(++n) + ":  Sample Start[2] ;\n";
        mn += "   " + std::to_string(++n) + ":  Sample End ;\n";
    }
    return mn;
}

TEST_F(ControlRoundTrip, EnglishProgram) {
    std::string text = ctl::round_trip(vzt::crlf(ctl::program(body(true))), ".PE");
    auto lines = ctl::mn_lines(text);
    ASSERT_EQ(lines.size(), sizeof common_body / sizeof common_body[0] + 2);
    // The listing's forms come back in the printer's layout.
    EXPECT_EQ(lines[0], "   1:  LBL[1:loop start] ;");
    EXPECT_EQ(lines[10], "  11:  IF R[2] = 1R[3] = 4 ;");
    EXPECT_EQ(lines[16], "  17:          ELSE ,JMP LBL[2]  ;");
    EXPECT_EQ(lines[26], "  27:  CALL Sub2(1,R[2],'TEXT',AR[3],...,(-4),2.5) ;");
    EXPECT_EQ(lines.back(), "  87:  Sample End ;");
}

TEST_F(ControlRoundTrip, JapaneseProgramMeetsTheSameBinary) {
    auto english = vzt::listing_to_binary(ctl::program(body(false)), ".PE");
    ASSERT_EQ(english.ok, 1) << english.code << " line " << english.line;
    // Printed in Japanese, read back as Japanese: the same bytes.
    std::string japanese = ctl::round_trip(vzt::binary_to_listing(english.tp, ".PJ"), ".PJ");
    auto again = vzt::listing_to_binary(japanese, ".PJ");
    EXPECT_EQ(hex(again.tp), hex(english.tp));
    auto lines = ctl::mn_lines(japanese);
    ASSERT_EQ(lines.size(), sizeof common_body / sizeof common_body[0]);
    // IF R[1]=1,JMP LBL[2] in the Japanese words.
    EXPECT_EQ(lines[6], "   7:  " + ctl::jp_word(40) + " " + ctl::jp_word(21) + "[1] = 1," + ctl::jp_word(41) +
                            " " + ctl::jp_word(42) + "[2]  ;");
    EXPECT_EQ(lines.back(), "  85:  " + ctl::jp_word(62) + " ;");
}

TEST_F(ControlRoundTrip, JapaneseWordsTypedByHand) {
    // The Japanese reading words, including the ones that print otherwise:
    // the end word, ELSE, WHEN's condition word and the PR word of LOCK.
    struct {
        std::string japanese;
        std::string english;
    } cases[] = {
        {ctl::jp_word(40) + " " + ctl::jp_word(21) + "[1]=1," + ctl::jp_word(41) + " " + ctl::jp_word(42) + "[2] ;",
         "IF R[1]=1,JMP LBL[2] ;"},
        {ctl::jp_word(62) + " ;", "END ;"},
        {"END ;", "END ;"},
        {ctl::jp_word(43) + "," + ctl::jp_word(41) + " " + ctl::jp_word(42) + "[2] ;", "ELSE,JMP LBL[2] ;"},
        {ctl::jp_word(354) + " PR ;", "LOCK PREG ;"},
        {ctl::jp_word(354) + " " + ctl::jp_word(356) + " ;", "LOCK PREG ;"},
        {ctl::jp_word(51) + " 2(sec) ;", "WAIT 2sec ;"},
        {ctl::jp_word(61) + " Abc1 ;", "CALL Abc1 ;"},
        {ctl::jp_word(385) + " WRK1 ;", "MONITOR END WRK1 ;"},
        {ctl::jp_word(38) + "[1]=" + ctl::jp_word(34) + ",1.0sec ;", "DO[1]=PULSE,1.0sec ;"},
        {ctl::jp_word(579) + " " + ctl::jp_word(326) + " ;", "Grind End ;"},
        {"IBGN START[1] ;", "IBGN START[1] ;"},
    };
    for (const auto &c : cases) {
        auto jp = vzt::listing_to_binary(ctl::program("   1:  " + c.japanese + "\n"), ".PJ");
        auto en = vzt::listing_to_binary(ctl::program("   1:  " + c.english + "\n"), ".PE");
        ASSERT_EQ(jp.ok, 1) << c.english << ": code " << jp.code;
        ASSERT_EQ(en.ok, 1) << c.english;
        EXPECT_EQ(hex(ctl::lines_of(jp.tp).at(0)), hex(ctl::lines_of(en.tp).at(0))) << c.english;
    }
}

TEST_F(ControlRoundTrip, ConditionProgramInBothLanguages) {
    const std::string cond = "   1:  WHEN DI[1]=ON,CALL SUB1 ;\n"
                             "   2:  WHEN R[1]>2 AND DI[2]=OFF-,CALL SUB2 ;\n"
                             "   3:  CONDITION DI[3]=ON+,... ;\n"
                             "   4:  WHEN ERR_NUM=5,CALL SUB3 ;\n";
    std::string text = ctl::round_trip(ctl::program(cond, "Cond"), ".PE");
    EXPECT_EQ(ctl::mn_lines(text), (std::vector<std::string>{
                                       "   1:  WHEN DI[1] = ON,CALL SUB1 ;",
                                       "   2:  WHEN R[1] > 2 AND DI[2] = OFF-,CALL SUB2 ;",
                                       "   3:  WHEN DI[3] = ON+... ;",
                                       "   4:  WHEN ERR_NUM = 5,CALL SUB3 ;",
                                   }));
    auto english = vzt::listing_to_binary(ctl::program(cond, "Cond"));
    ASSERT_EQ(english.ok, 1);
    std::string japanese = ctl::round_trip(vzt::binary_to_listing(english.tp, ".PJ"), ".PJ");
    EXPECT_EQ(hex(vzt::listing_to_binary(japanese, ".PJ").tp), hex(english.tp));
}

} // namespace
