// Control flow statements: labels, jumps, IF, SELECT, WAIT, calls, ends,
// RCV, MESSAGE, remarks, macro calls and condition programs, both ways.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "bin2asc/decode_line.h"
#include "core/error_codes.h"
#include "instructions/control.h"
#include "test_control_util.h"
#include "vorex_zd.h"

namespace {

using vzt::bytes;
using vzt::hex;

class Control : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

struct bytes_case {
    std::string statement;
    std::string want;
};

void expect_bytes(const std::vector<bytes_case> &cases, const std::string &subtype = "") {
    for (const bytes_case &c : cases)
        EXPECT_EQ(hex(ctl::payload(c.statement, subtype)), hex(c.want)) << c.statement;
}

// Text, then its zero.
std::string z(const std::string &text) { return text + std::string(1, '\0'); }

TEST_F(Control, LabelAndJumpBytes) {
    expect_bytes({
        {"JMP LBL[3] ;", bytes({126, 127, 2, 0, 3})},
        {"JMP LBL[R[1]] ;", bytes({126, 127, 2, 0x80, 1})},
        {"JMP LBL[...] ;", bytes({126, 127, 2, 0, 0})},
        {"LBL[5] ;", bytes({128, 2, 0, 5, 0})},
        {"LBL[300] ;", bytes({128, 2, 1, 44, 0})},
        {"LBL[...] ;", bytes({128, 2, 0, 0, 0})},
        {"LBL[0] ;", bytes({128, 2, 0, 0, 0})},
        {"LBL[*7] ;", bytes({128, 2, 0x80, 7, 0})},
        {"LBL[32767] ;", bytes({128, 2, 0x7F, 0xFF, 0})},
        {"LBL[5:loop start] ;", bytes({128, 2, 0, 5}) + z("loop start")},
        {"LBL[5: blank first] ;", bytes({128, 2, 0, 5}) + z(" blank first")},
        // Only 16 characters of a comment are kept.
        {"LBL[5:abcdefghijklmnopqrstu] ;", bytes({128, 2, 0, 5}) + z("abcdefghijklmnop")},
        // A ";" inside the comment stays in it.
        {"LBL[6:a;b] ;", bytes({128, 2, 0, 6}) + z("a;b")},
        {"LBL[6:tab\there]   ;", bytes({128, 2, 0, 6}) + z("tab here")},
    });
}

TEST_F(Control, SecondDefinitionOfALabelIsMarked) {
    auto r = vzt::listing_to_binary(ctl::program("   1:  LBL[1] ;\n   2:  LBL[1:again] ;\n   3:  LBL[2] ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code;
    auto lines = ctl::lines_of(r.tp);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(hex(lines[0]), hex(bytes({128, 2, 0, 1, 0})));
    EXPECT_EQ(hex(lines[1]), hex(bytes({128, 2, 0x80, 1}) + z("again")));
    EXPECT_EQ(hex(lines[2]), hex(bytes({128, 2, 0, 2, 0})));
    auto text = ctl::mn_lines(vzt::binary_to_listing(r.tp));
    ASSERT_EQ(text.size(), 3u);
    EXPECT_EQ(text[0], "   1:  LBL[1] ;");
    EXPECT_EQ(text[1], "   2:  LBL[*1:again] ;");
    EXPECT_EQ(text[2], "   3:  LBL[2] ;");
}

TEST_F(Control, BranchBytes) {
    const std::string r1_eq_1 = bytes({3, 2, 0, 1, 107, 1, 1, 1});
    expect_bytes({
        {"IF R[1]=1,JMP LBL[2] ;", bytes({120}) + r1_eq_1 + bytes({126, 127, 2, 0, 2})},
        {"IF R[1]=1 JMP LBL[2] ;", bytes({120}) + r1_eq_1 + bytes({126, 127, 2, 0, 2})},
        {"IF R[1]=1:,:JMP LBL[2] ;", bytes({120}) + r1_eq_1 + bytes({126, 127, 2, 0, 2})},
        {"IF DI[1]=ON,CALL SUB ;", bytes({120, 10, 2, 0, 1, 107, 50, 1, 129, 130}) + z("SUB")},
        {"IF R[1]=1,... ;", bytes({120}) + r1_eq_1 + bytes({0})},
        {"IF R[1]=1,DO[2]=OFF ;", bytes({120}) + r1_eq_1 + bytes({15, 2, 0, 2, 100, 50, 0})},
        {"IF R[1]=1,IBGN START[1] ;", bytes({120}) + r1_eq_1 + bytes({171, 2, 0, 1})},
        {"IF R[1]=1,R[2]=3 ;", bytes({120}) + r1_eq_1 + bytes({3, 2, 0, 2, 100, 1, 1, 3})},
        {"SELECT R[1]=1,JMP LBL[1] ;", bytes({121}) + r1_eq_1 + bytes({126, 127, 2, 0, 1})},
        {"SELECT R[1]=-2,CALL SUB ;", bytes({121, 3, 2, 0, 1, 107, 1, 1, 0xFE, 129, 130}) + z("SUB")},
        {"=2,CALL SUB ;", bytes({107, 1, 1, 2, 129, 130}) + z("SUB")},
        {"=R[2],JMP LBL[4] ;", bytes({107, 3, 2, 0, 2, 126, 127, 2, 0, 4})},
        {"=AR[1],JMP LBL[4] ;", bytes({107, 62, 2, 0, 1, 126, 127, 2, 0, 4})},
        {"=1000,JMP LBL[4] ;", bytes({107, 1, 2, 0, 0, 3, 0xE8, 126, 127, 2, 0, 4})},
        {"ELSE,JMP LBL[1] ;", bytes({122, 126, 127, 2, 0, 1})},
        {"OTHERWISE,CALL SUB ;", bytes({122, 129, 130}) + z("SUB")},
    });
}

TEST_F(Control, WaitBytes) {
    expect_bytes({
        {"WAIT 1.5sec ;", bytes({123, 2, 0, 150})},
        {"WAIT 1.50(sec) ;", bytes({123, 2, 0, 150})},
        {"WAIT 2sec ;", bytes({123, 2, 0, 200})},
        {"WAIT 327.67sec ;", bytes({123, 2, 0x7F, 0xFF})},
        {"WAIT Constant(sec) ;", bytes({123, 2, 0, 0})},
        {"WAIT R[4] ;", bytes({123, 2, 0x80, 4})},
        {"WAIT R[4] TIMEOUT,LBL[1] ;", bytes({123, 2, 0x80, 4, 125, 127, 2, 0, 1})},
        {"WAIT R[4]=2 ;", bytes({124, 3, 2, 0, 4, 107, 1, 1, 2})},
        {"WAIT DI[1]=ON ;", bytes({124, 10, 2, 0, 1, 107, 50, 1})},
        {"WAIT DI[1]=ON TIMEOUT,LBL[9] ;", bytes({124, 10, 2, 0, 1, 107, 50, 1, 125, 127, 2, 0, 9})},
        {"WAIT DI[1]=ON+ ;", bytes({124, 10, 2, 0, 1, 107, 50, 22})},
        {"WAIT SEMAPHORE[2] ;", bytes({124, 29, 2, 0, 2})},
        {"WAIT SEMAPHORE[2] TIMEOUT,LBL[R[3]] ;", bytes({124, 29, 2, 0, 2, 125, 127, 2, 0x80, 3})},
        {"WAIT (DI[1]) ;", bytes({124, 115, 10, 2, 0, 1, 116})},
    });
}

TEST_F(Control, CallAndNameBytes) {
    expect_bytes({
        {"CALL SUB1 ;", bytes({129, 130}) + z("SUB1")},
        // The name is taken raw: its case and its digits stay.
        {"CALL Abc1 ;", bytes({129, 130}) + z("Abc1")},
        {"CALL CNT100 ;", bytes({129, 130}) + z("CNT100")},
        {"CALL ... ;", bytes({129, 130, 0})},
        {"CALL ABCDEFGHIJKLMNOP ;", bytes({129, 130}) + z("ABCDEFGHIJKL")},
        {"CALL SUB() ;", bytes({129, 130}) + z("SUB") + bytes({61, 0, 64})},
        {"CALL SUB(-3) ;", bytes({129, 130}) + z("SUB") + bytes({61, 1, 1, 1, 0xFD, 64})},
        {"CALL SUB(1,R[2],'hi there',AR[3],...) ;",
         bytes({129, 130}) + z("SUB") + bytes({61, 5, 1, 1, 1, 3, 2, 0, 2, 63}) + z("HITHERE") +
             bytes({62, 2, 0, 3, 0, 64})},
        // A ":" and anything up to the next "," or ")" is passed over.
        {"CALL SUB(1:count,2.5) ;",
         bytes({129, 130}) + z("SUB") + bytes({61, 2, 1, 1, 1, 1, 3, 0x40, 0x20, 0, 0, 64})},
        {"CALL SUB('1.5E3') ;", bytes({129, 130}) + z("SUB") + bytes({61, 1, 63}) + z("1.5E3") + bytes({64})},
        {"RUN PROGX ;", bytes({134, 130}) + z("PROGX")},
        {"RUN abcdefghijk ;", bytes({134, 130}) + z("ABCDEFGHI")},
        {"RUN ... ;", bytes({134, 130, 0})},
        {"ERROR_PROG = ERRP ;", bytes({27, 100, 130}) + z("ERRP")},
        {"RESUME_PROG = ... ;", bytes({28, 100, 130, 0})},
    });
}

TEST_F(Control, SingleWordAndTextBytes) {
    expect_bytes({
        {"END ;", bytes({133})},
        {"ABORT ;", bytes({132})},
        {"PAUSE ;", bytes({131})},
        {"CLEAR_RESUME_PROG ;", bytes({54})},
        {"CONCURRENT ;", bytes({240})},
        {"ENDCONCUR ;", bytes({241})},
        {"RCV R[1],LBL[2] ;", bytes({141, 3, 2, 0, 1, 127, 2, 0, 2})},
        {"RCV R[1] LBL[2] TIMEOUT,LBL[3] ;", bytes({141, 3, 2, 0, 1, 127, 2, 0, 2, 125, 127, 2, 0, 3})},
        {"RCV R[1],LBL[2],TIMEOUT LBL[3] ;", bytes({141, 3, 2, 0, 1, 127, 2, 0, 2, 125, 127, 2, 0, 3})},
        {"MESSAGE[Hello world] ;", bytes({31}) + z("Hello world")},
        {"MESSAGE[] ;", bytes({31, 0})},
        {"MESSAGE[a;b[c]] ;", bytes({31}) + z("a;b[c]")},
        {"MESSAGE[abcdefghijklmnopqrstuvwxyz] ;", bytes({31}) + z("abcdefghijklmnopqrstuvw")},
        {"!say it ;", bytes({30}) + z("say it")},
        {"!0123456789012345678901234567890123456789 ;", bytes({30}) + z("01234567890123456789012345678901")},
    });
}

struct print_case {
    std::string statement;
    std::string printed;
};

void expect_printed(const std::vector<print_case> &cases) {
    for (const print_case &c : cases)
        EXPECT_EQ(ctl::printed_one(c.statement), "   1:  " + c.printed + " ;") << c.statement;
}

TEST_F(Control, PrintedForms) {
    expect_printed({
        {"JMP LBL[3] ;", "JMP LBL[3] "},
        {"JMP LBL[R[1]] ;", "JMP LBL[R[1]] "},
        {"LBL[5:loop start] ;", "LBL[5:loop start]"},
        {"LBL[...] ;", "LBL[...]"},
        {"LBL[*7] ;", "LBL[*7]"},
        {"IF R[1]=1,JMP LBL[2] ;", "IF R[1] = 1,JMP LBL[2] "},
        {"IF DI[1]=ON,CALL SUB ;", "IF DI[1] = ON,CALL SUB"},
        // No "," is printed in front of an output: the value runs into it.
        {"IF R[1]=1,DO[1]=ON ;", "IF R[1] = 1DO[1] = ON"},
        // Behind ")" the item gets its ",".
        {"IF (R[1]=1),DO[1]=ON ;", "IF (R[1] = 1) ,DO[1] = ON"},
        // "..." runs into the value too; behind a number the printed line
        // would read back as a real "1." and two dots.
        {"IF R[4]=1,... ;", "IF R[4] = 1..."},
        {"IF DI[4]=ON,... ;", "IF DI[4] = ON..."},
        // Behind a word the item even joins it: OFFR no longer reads back.
        {"IF DI[2]=OFF,R[3]=4 ;", "IF DI[2] = OFFR[3] = 4"},
        {"SELECT R[1]=1,JMP LBL[1] ;", "SELECT R[1] = 1,JMP LBL[1] "},
        {"=2,CALL SUB ;", "       = 2,CALL SUB"},
        {"ELSE,JMP LBL[3] ;", "        ELSE ,JMP LBL[3] "},
        {"WAIT 1.5sec ;", "WAIT      1.50(sec)"},
        {"WAIT 1.50(sec) ;", "WAIT      1.50(sec)"},
        {"WAIT 12sec ;", "WAIT     12.00(sec)"},
        {"WAIT R[4] ;", "WAIT R[4]"},
        {"WAIT R[4] TIMEOUT,LBL[1] ;", "WAIT R[4] TIMEOUT,LBL[1]"},
        {"WAIT DI[1]=ON TIMEOUT,LBL[9] ;", "WAIT DI[1] = ON TIMEOUT,LBL[9]"},
        {"WAIT SEMAPHORE[2] ;", "WAIT SEMAPHORE[2]"},
        {"CALL SUB1 ;", "CALL SUB1"},
        {"CALL ... ;", "CALL ..."},
        {"CALL SUB(1,R[2],'hi',AR[3],...,-4) ;", "CALL SUB(1,R[2],'HI',AR[3],...,(-4))"},
        {"RUN PROGX ;", "RUN PROGX"},
        {"RUN ... ;", "RUN ..."},
        {"ERROR_PROG = ERRP ;", "ERROR_PROG = ERRP"},
        {"RESUME_PROG = ... ;", "RESUME_PROG = ..."},
        {"END ;", "END"},
        {"ABORT ;", "ABORT"},
        {"PAUSE ;", "PAUSE"},
        {"CLEAR_RESUME_PROG ;", "CLEAR_RESUME_PROG"},
        {"RCV R[1],LBL[2] TIMEOUT,LBL[3] ;", "RCV R[1] LBL[2]  TIMEOUT,LBL[3]"},
        {"MESSAGE[Hello world] ;", "MESSAGE[Hello world]"},
        {"MESSAGE[] ;", "MESSAGE[...]"},
        {"!say it ;", "!say it"},
    });
}

TEST_F(Control, ConcurrentParsesButPrintsAsError) {
    EXPECT_EQ(ctl::printed("   1:  CONCURRENT ;\n   2:  ENDCONCUR ;\n"),
              (std::vector<std::string>{"   1:  ERROR ;", "   2:  ERROR ;"}));
}

TEST_F(Control, DaughterNameOfACallPrintsAsPSps) {
    // A line whose call names "........0007" refers to daughter 7.
    std::string line = bytes({129, 130}) + z("........0007");
    line_cursor cur;
    cursor_setup(&cur, reinterpret_cast<uint8_t *>(line.data()), static_cast<int32_t>(line.size()), 1);
    dict_init(1);
    ASSERT_EQ(print_control(&cur), 0);
    ASSERT_EQ(print_control(&cur), 0);
    EXPECT_STREQ(cur.text, "P-SPS");
    EXPECT_EQ(cur.p_sps_number, 7);
    EXPECT_EQ(cur.pos, line.size());
    // Not the first byte: the "," goes in front, as for CALL.
    std::string behind = bytes({255}) + line;
    cursor_setup(&cur, reinterpret_cast<uint8_t *>(behind.data()), static_cast<int32_t>(behind.size()), 1);
    cur.pos = 1;
    ASSERT_EQ(print_control(&cur), 0);
    EXPECT_STREQ(cur.text, ",P-SPS");
    // Eleven characters are a plain name.
    std::string plain = bytes({129, 130}) + z("........007");
    cursor_setup(&cur, reinterpret_cast<uint8_t *>(plain.data()), static_cast<int32_t>(plain.size()), 1);
    ASSERT_EQ(print_control(&cur), 0);
    ASSERT_EQ(print_control(&cur), 0);
    EXPECT_STREQ(cur.text, "CALL ........007");
    EXPECT_EQ(cur.p_sps_number, 0);
}

TEST_F(Control, DamagedLinesPrintError) {
    struct {
        std::string line;
    } cases[] = {
        {bytes({123, 3, 0, 150})},          // time without its index tag
        {bytes({125, 0})},                  // TIMEOUT without a label
        {bytes({128, 5, 0, 1, 0})},         // label definition without tag
        {bytes({126, 127, 7, 0, 1})},       // label reference with a bad tag
    };
    for (auto &c : cases) {
        line_cursor cur;
        cursor_setup(&cur, reinterpret_cast<uint8_t *>(c.line.data()), static_cast<int32_t>(c.line.size()), 1);
        EXPECT_EQ(decode_line(&cur, 0, 0), 1) << hex(c.line);
    }
}

TEST_F(Control, PrintersKeepToTheLineWhateverFollows) {
    // Every opcode of the family with tails cut short or full of noise:
    // the line decodes or fails, and its text stays in its buffer.
    const uint8_t opcodes[] = {24,  27,  28,  30,  31,  43,  51,  52,  53,  54,  59,  120, 121, 122,
                               123, 124, 125, 126, 127, 128, 129, 130, 131, 132, 133, 134, 135, 139,
                               140, 141, 146, 147, 148, 149, 171, 172, 173, 174, 176, 223, 224, 225, 251};
    uint32_t seed = 12345;
    dict_init(1);
    for (uint8_t op : opcodes) {
        for (int len = 1; len <= 12; len++) {
            for (int round = 0; round < 20; round++) {
                std::string line(1, static_cast<char>(op));
                for (int i = 1; i < len; i++) {
                    seed = seed * 1103515245u + 12345u;
                    line += static_cast<char>((seed >> 16) & (round % 2 ? 0x03 : 0xFF));
                }
                line_cursor cur;
                cursor_setup(&cur, reinterpret_cast<uint8_t *>(line.data()), static_cast<int32_t>(line.size()), 1);
                int32_t rc = decode_line(&cur, 0, 0);
                EXPECT_TRUE(rc == 0 || rc == 1) << hex(line);
                EXPECT_LT(std::strlen(cur.text), static_cast<size_t>(LINE_TEXT_SIZE)) << hex(line);
            }
        }
    }
}

TEST_F(Control, OverlongStatementsAreRefused) {
    std::string args;
    for (int i = 0; i < 90; i++)
        args += i ? ",1000" : "1000";
    // 90 arguments of six bytes: far above 255 bytes and the line buffer.
    auto r = vzt::listing_to_binary(ctl::program("   1:  CALL SUB(" + args + ") ;\n"));
    EXPECT_EQ(r.code, 197);
    EXPECT_FALSE(r.written);
    // A text past the raw statement buffer has lost its closing bracket.
    r = vzt::listing_to_binary(ctl::program("   1:  MESSAGE[" + std::string(300, 'x') + "] ;\n   2:  !x ;\n"));
    EXPECT_EQ(r.code, ctl::code_word(ASC_SYNTAX_ERROR));
    EXPECT_FALSE(r.written);
}

TEST_F(Control, MacroCallsWithAndWithoutArguments) {
    ASSERT_EQ(zdsetparam("MACRO", "MyMac", "3"), 1);
    ASSERT_EQ(zdsetparam("MACRO", "OPEN HAND", "200"), 1);
    auto r = vzt::listing_to_binary(
        ctl::program("   1:  MyMac ;\n   2:  OPEN HAND (1,R[2]) ;\n   3:  !next ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto lines = ctl::lines_of(r.tp);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(hex(lines[0]), hex(bytes({135, 3}) + z("MyMac")));
    EXPECT_EQ(hex(lines[1]), hex(bytes({135, 200}) + z("OPEN HAND") + bytes({61, 2, 1, 1, 1, 3, 2, 0, 2, 64})));
    // The argument list took its ";": the remark is the next line.
    EXPECT_EQ(hex(lines[2]), hex(bytes({30}) + z("next")));
    auto text = ctl::mn_lines(vzt::binary_to_listing(r.tp));
    ASSERT_EQ(text.size(), 3u);
    EXPECT_EQ(text[0], "   1:  MyMac ;");
    EXPECT_EQ(text[1], "   2:  OPEN HAND(1,R[2]) ;");
    macro_number_shown = 1;
    text = ctl::mn_lines(vzt::binary_to_listing(r.tp));
    macro_number_shown = 0;
    ASSERT_EQ(text.size(), 3u);
    EXPECT_EQ(text[0], "   1:  MACRO_3 MyMac ;");
    // Behind a long remark with ";" in it, a macro line without a number
    // still finds its name in the raw text.
    r = vzt::listing_to_binary(ctl::program("   1:  !0123456789012345678901234567890123;x ;\nMyMac ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    lines = ctl::lines_of(r.tp);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(hex(lines[0]), hex(bytes({30}) + z("01234567890123456789012345678901")));
    EXPECT_EQ(hex(lines[1]), hex(bytes({135, 3}) + z("MyMac")));
    // A name that is no macro keeps the statement's own error.
    auto bad = vzt::listing_to_binary(ctl::program("   1:  mymac ;\n   2:  !x ;\n"));
    EXPECT_EQ(bad.code, 161);
}

TEST_F(Control, ConditionProgramLines) {
    expect_bytes({
        {"WHEN DI[1]=ON,CALL SUB ;", bytes({148, 10, 2, 0, 1, 107, 50, 1, 129, 130}) + z("SUB")},
        {"CONDITION R[1]=1 ... ;", bytes({148, 3, 2, 0, 1, 107, 1, 1, 1, 0})},
        {"WHEN DI[1]=OFF-:,... ;", bytes({148, 10, 2, 0, 1, 107, 50, 21, 0})},
    },
                 "Cond");
    auto lines = ctl::printed("   1:  WHEN DI[1]=ON,CALL SUB ;\n   2:  WHEN DI[2]=OFF,... ;\n", ".PE", "Cond");
    EXPECT_EQ(lines, (std::vector<std::string>{"   1:  WHEN DI[1] = ON,CALL SUB ;",
                                                "   2:  WHEN DI[2] = OFF... ;"}));
    std::string eleven;
    for (int i = 1; i <= 11; i++)
        eleven += "   " + std::to_string(i) + ":  WHEN DI[" + std::to_string(i) + "]=ON,CALL A ;\n";
    auto r = vzt::listing_to_binary(ctl::program(eleven, "Cond"));
    EXPECT_EQ(r.ok, 1) << r.code;
    EXPECT_EQ(ctl::lines_of(r.tp).size(), 11u);
    // A twelfth condition is refused, on the line word behind its WHEN.
    r = vzt::listing_to_binary(ctl::program(eleven + "  12:  WHEN DI[12]=ON,CALL A ;\n", "Cond"));
    EXPECT_EQ(r.code, ctl::code_word(ASC_SYNTAX_ERROR));
    EXPECT_EQ(r.line, 15);
}

TEST_F(Control, ErrorsWithTheirLines) {
    // The listing's /MN lines start on line 4. A failed statement is tried
    // once more as a macro call, which reads through its ";": the line
    // word then stands on the next statement's first token.
    const std::string next = "   2:  !next ;\n";
    ctl::expect_errors({
        {"   1:  LBL[32768] ;\n" + next, ASC_OUT_OF_RANGE, 5},
        {"   1:  LBL[1:no close ;\n" + next, ASC_BAD_CHAR, 6},
        {"   1:  LBL[-1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  LBL[1 ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  JMP 3 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  JMP LBL[1]\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  CALL 123 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  CALL 1.5 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  CALL SUB(DI[1]) ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  RUN 7 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  ERROR_PROG ERRP ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  SELECT R[1]=1,R[2]=3 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  SELECT DI[1]=1,JMP LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  ELSE JMP LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  IF R[1]=1,PAUSE ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  IF R[1]=1 AND R[2]=2 OR R[3]=3,JMP LBL[1] ;\n" + next, ASC_BAD_AND_OR, 5},
        {"   1:  IF R[1]=1 AND R[2]=2 AND R[3]=3 AND R[4]=4 AND R[5]=5 AND R[6]=6,JMP LBL[1] ;\n" + next,
         ASC_TOO_MANY_AND_OR, 5},
        {"   1:  IF DI[1]=ON+,JMP LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  WAIT 1.5 ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  WAIT 400sec ;\n" + next, ASC_OUT_OF_RANGE, 5},
        {"   1:  WAIT DI[1]=ON TIMEOUT LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  RCV R[1],LBL[2],LBL[3] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  RCV DI[1],LBL[2] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  MESSAGE[abc ;\n" + next, ASC_BAD_CHAR, 6},
        {"   1:  MESSAGE abc ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  END\n" + next, ASC_SYNTAX_ERROR, 6},
        // WHEN stands only in a condition program, which holds nothing else.
        // These errors come back at once, with no macro try: the line word
        // stands on the failing token.
        {"   1:  WHEN DI[1]=ON,CALL A ;\n" + next, ASC_SYNTAX_ERROR, 4},
        {"   1:  JMP LBL[1] ;\n", ASC_SYNTAX_ERROR, 4, "Cond"},
        {"   1:  WHEN DI[1]=ON,JMP LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 4, "Cond"},
        {"   1:  WHEN R[1]=1 ;\n" + next, ASC_SYNTAX_ERROR, 4, "Cond"},
        {"   1:  IF ERR_NUM=1,JMP LBL[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        // Input ports have no statement of their own.
        {"   1:  DI[1]=ON ;\n" + next, ASC_UNDEF_INSTRUCTION, 5},
    });
}

} // namespace
