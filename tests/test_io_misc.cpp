// I/O and miscellaneous statements: output assignments with PULSE, the
// small statements of the family, PS, TC_ONLINE and IBGN, both ways.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "bin2asc/decode_line.h"
#include "core/error_codes.h"
#include "instructions/control.h"
#include "instructions/io_misc.h"
#include "test_control_util.h"
#include "test_lexer_fixture.h"
#include "text/emit.h"

namespace {

using vzt::bytes;
using vzt::hex;

class IoMisc : public ::testing::Test {
protected:
    void SetUp() override { vzt::load_builtin_cell(); }
};

std::string z(const std::string &text) { return text + std::string(1, '\0'); }

struct bytes_case {
    std::string statement;
    std::string want;
};

void expect_bytes(const std::vector<bytes_case> &cases) {
    for (const bytes_case &c : cases)
        EXPECT_EQ(hex(ctl::payload(c.statement)), hex(c.want)) << c.statement;
}

TEST_F(IoMisc, OutputAssignmentBytes) {
    const std::string do1 = bytes({15, 2, 0, 1, 100});
    expect_bytes({
        {"DO[1]=ON ;", do1 + bytes({50, 1})},
        {"DO[R[1]]=ON ;", bytes({15, 2, 0x80, 1, 100, 50, 1})},
        {"RO[2]=OFF ;", bytes({16, 2, 0, 2, 100, 50, 0})},
        {"SO[3]=R[4] ;", bytes({38, 2, 0, 3, 100, 3, 2, 0, 4})},
        {"UO[1]=AR[2] ;", bytes({39, 2, 0, 1, 100, 62, 2, 0, 2})},
        {"WO[1]=... ;", bytes({18, 2, 0, 1, 100, 0})},
        {"F[3]=PULSE ;", bytes({41, 2, 0, 3, 100, 51, 0})},
        {"M[2]=PULSE,1.0sec ;", bytes({42, 2, 0, 2, 100, 51, 10})},
        {"DO[1]=PULSE,25.4sec ;", do1 + bytes({51, 254})},
        {"DO[1]=PULSE,25sec ;", do1 + bytes({51, 250})},
        {"DO[1]=PULSE,0.05sec ;", do1 + bytes({51, 0})},
        {"DO[1]=PULSE,0.19sec ;", do1 + bytes({51, 1})},
        {"DO[1]=(DI[1]) ;", do1 + bytes({115, 10, 2, 0, 1, 116})},
        {"AO[1]=5 ;", bytes({17, 2, 0, 1, 100, 1, 1, 5})},
        // A bracketed negative number is a constant, not an expression.
        {"AO[1]=(-5) ;", bytes({17, 2, 0, 1, 100, 1, 1, 0xFB})},
        {"AO[1]=(R[1]+1) ;", bytes({17, 2, 0, 1, 100, 115, 3, 2, 0, 1, 101, 1, 1, 1, 116})},
        {"AO[1]=1.5 ;", bytes({17, 2, 0, 1, 100, 1, 3, 0x3F, 0xC0, 0, 0})},
        {"AO[1]=... ;", bytes({17, 2, 0, 1, 100, 0})},
        {"GO[2]=1000 ;", bytes({23, 2, 0, 2, 100, 1, 2, 0, 0, 3, 0xE8})},
        {"GO[2]=R[3] ;", bytes({23, 2, 0, 2, 100, 3, 2, 0, 3})},
        {"GO[2]=AR[3] ;", bytes({23, 2, 0, 2, 100, 62, 2, 0, 3})},
    });
}

TEST_F(IoMisc, StatementBytes) {
    expect_bytes({
        {"PAYLOAD[3] ;", bytes({149, 2, 0, 3})},
        {"PAYLOAD[GP1:3] ;", bytes({149, 242, 1, 2, 0, 3})},
        {"OVERRIDE=50% ;", bytes({24, 100, 1, 1, 50})},
        {"OVERRIDE=100% ;", bytes({24, 100, 1, 1, 100})},
        {"OVERRIDE=0% ;", bytes({24, 100, 1, 1, 0})},
        {"OVERRIDE=R[1] ;", bytes({24, 100, 3, 2, 0, 1})},
        {"OVERRIDE=AR[1] ;", bytes({24, 100, 62, 2, 0, 1})},
        {"RSR[1]=ENABLE ;", bytes({20, 2, 0, 1, 100, 50, 2})},
        {"RSR[4]=DISABLE ;", bytes({20, 2, 0, 4, 100, 50, 3})},
        {"SEMAPHORE[2]=ON ;", bytes({29, 2, 0, 2, 100, 50, 1})},
        {"SEMAPHORE[2]=OFF ;", bytes({29, 2, 0, 2, 100, 50, 0})},
        {"SEMAPHORE[2]=... ;", bytes({29, 2, 0, 2, 100, 0})},
        {"UALM[1] ;", bytes({21, 2, 0, 1})},
        {"LOCK PREG ;", bytes({52})},
        {"LOCK PR ;", bytes({52})},
        {"UNLOCK PREG ;", bytes({53})},
        {"MONITOR WRK1 ;", bytes({147, 0, 130}) + z("WRK1")},
        {"MONITOR Abc12 ;", bytes({147, 0, 130}) + z("Abc12")},
        {"MONITOR END WRK1 ;", bytes({147, 1, 130}) + z("WRK1")},
        {"MONITOR ... ;", bytes({147, 0, 130, 0})},
        {"TOOL ATTACH[1] ;", bytes({176, 0, 2, 0, 1})},
        {"TOOL DETACH[R[2]] ;", bytes({176, 1, 2, 0x80, 2})},
        {"SEND R[1] ;", bytes({140, 3, 2, 0, 1})},
        {"OCP START ;", bytes({139, 1})},
        {"OCP END ;", bytes({139, 2})},
        {"STICK DETECT ON ;", bytes({223, 0})},
        {"STICK DETECT OFF ;", bytes({223, 1})},
        {"COL DETECT ON ;", bytes({224, 0})},
        {"Grind START[1] ;", bytes({225, 1, 2, 0, 1})},
        {"Grind End ;", bytes({225, 2})},
        {"GRIND END ;", bytes({225, 2})},
        {"Sample Start[2] ;", bytes({59, 1, 2, 0, 2})},
        {"Sample End ;", bytes({59, 2})},
        {"CALMATRIX ;", bytes({142})},
        {"TC_ONLINE ENABLE ;", bytes({43, 50, 2})},
        {"TC_ONLINE DISABLE ;", bytes({43, 50, 3})},
        {"TC_ONLINE (DI[1]) ;", bytes({43, 115, 10, 2, 0, 1, 116})},
    });
}

TEST_F(IoMisc, TorqueLimitBytes) {
    expect_bytes({
        {"TORQ_LIMIT 50% ;", bytes({146, 2, 0x01, 0xF4})},
        {"TORQ_LIMIT 50 ;", bytes({146, 2, 0x01, 0xF4})},
        {"TORQ_LIMIT 50.5% ;", bytes({146, 2, 0x01, 0xF9})},
        // The integer 100 passes; a real must stay below it.
        {"TORQ_LIMIT 100 ;", bytes({146, 2, 0x03, 0xE8})},
        {"TORQ_LIMIT 99.99% ;", bytes({146, 2, 0x03, 0xE7})},
        {"TORQ_LIMIT R[2] ;", bytes({146, 2, 0x80, 2})},
        {"TORQ_LIMIT[R[2]] ;", bytes({146, 2, 0x80, 2})},
        {"TORQ_LIMIT[...] ;", bytes({146, 2, 0, 0})},
    });
}

TEST_F(IoMisc, PsPrefixBytes) {
    expect_bytes({
        {"PS +10mm +0.50sec DO[1]=ON ;", bytes({251, 1, 0, 10, 0x01, 0xF4, 15, 2, 0, 1, 100, 50, 1})},
        {"PS -5mm -1.25sec R[1]=2 ;", bytes({251, 1, 0xFF, 0xFB, 0xFB, 0x1E, 3, 2, 0, 1, 100, 1, 1, 2})},
        {"PS 0mm 2sec TC_ONLINE ENABLE ;", bytes({251, 1, 0, 0, 0x07, 0xD0, 43, 50, 2})},
        // Reals round to the nearest thousandth, halves away from zero.
        {"PS 1mm 0.0015sec ...=(R[1]) ;", bytes({251, 1, 0, 1, 0, 2, 0, 100, 115, 3, 2, 0, 1, 116})},
        {"PS 1mm -0.0025sec ...=(R[1]) ;", bytes({251, 1, 0, 1, 0xFF, 0xFD, 0, 100, 115, 3, 2, 0, 1, 116})},
        {"PS +0mm +0sec IF R[1]=1,JMP LBL[1] ;",
         bytes({251, 1, 0, 0, 0, 0, 120, 3, 2, 0, 1, 107, 1, 1, 1, 126, 127, 2, 0, 1})},
    });
}

TEST_F(IoMisc, IbgnBytesAndItsLabelNumbers) {
    expect_bytes({
        {"IBGN START[1] ;", bytes({171, 2, 0, 1})},
        {"IBGN END[2] ;", bytes({172, 2, 0, 2})},
        {"IBGN REC START[3] ;", bytes({173, 2, 0, 3})},
        {"IBGN REC END[...] ;", bytes({174, 2, 0, 0})},
        {"IBGN START[*4] ;", bytes({171, 2, 0x80, 4})},
        {"IBGN START[16] ;", bytes({171, 2, 0, 16})},
    });
    // START n and END n go into the label table as 32500 + n and 32600 + n:
    // a repeat, or a label of that number, marks the later one.
    auto r = vzt::listing_to_binary(ctl::program(
        "   1:  IBGN START[1] ;\n   2:  IBGN END[1] ;\n   3:  IBGN START[1] ;\n"
        "   4:  LBL[32602] ;\n   5:  IBGN END[2] ;\n   6:  IBGN REC START[1] ;\n   7:  IBGN REC START[1] ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code;
    auto lines = ctl::lines_of(r.tp);
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(hex(lines[0]), hex(bytes({171, 2, 0, 1})));
    EXPECT_EQ(hex(lines[1]), hex(bytes({172, 2, 0, 1})));
    EXPECT_EQ(hex(lines[2]), hex(bytes({171, 2, 0x80, 1})));
    EXPECT_EQ(hex(lines[4]), hex(bytes({172, 2, 0x80, 2})));
    // REC forms take no label number.
    EXPECT_EQ(hex(lines[6]), hex(bytes({173, 2, 0, 1})));
}

struct print_case {
    std::string statement;
    std::string printed;
};

TEST_F(IoMisc, PrintedForms) {
    const print_case cases[] = {
        {"DO[1]=PULSE,25.4sec ;", "DO[1] = PULSE,25.4sec"},
        {"DO[1]=PULSE,3sec ;", "DO[1] = PULSE,3.0sec"},
        {"DO[1]=PULSE ;", "DO[1] = PULSE"},
        {"RO[2]=OFF ;", "RO[2] = OFF"},
        {"AO[1]=(-5) ;", "AO[1] = (-5)"},
        {"OVERRIDE=50% ;", "OVERRIDE = 50%"},
        {"OVERRIDE=R[1] ;", "OVERRIDE = R[1]"},
        {"PAYLOAD[3] ;", "PAYLOAD[3]"},
        {"PAYLOAD[GP1:3] ;", "PAYLOAD[GP1:3]"},
        {"RSR[1]=ENABLE ;", "RSR[1] = ENABLE"},
        {"SEMAPHORE[1]=... ;", "SEMAPHORE[1] = ..."},
        {"UALM[1] ;", "UALM[1]"},
        {"LOCK PREG ;", "LOCK PREG "},
        {"UNLOCK PR ;", "UNLOCK PREG "},
        {"MONITOR WRK1 ;", "MONITOR WRK1"},
        {"MONITOR END WRK1 ;", "MONITOR END WRK1"},
        {"TOOL DETACH[2] ;", "TOOL DETACH[2]"},
        {"SEND R[1] ;", "SEND R[1] "},
        {"OCP START ;", "OCP START"},
        {"OCP END ;", "OCP END"},
        {"STICK DETECT ON ;", "STICK DETECT ON"},
        {"COL DETECT OFF ;", "COL DETECT OFF"},
        {"Grind START[1] ;", "Grind START[1]"},
        {"GRIND END ;", "Grind End"},
        {"Sample Start[2] ;", "Sample Start[2]"},
        {"Sample End ;", "Sample End"},
        {"TORQ_LIMIT 100 ;", "TORQ_LIMIT 100.0%"},
        {"TORQ_LIMIT 50.5% ;", "TORQ_LIMIT 50.5%"},
        {"TORQ_LIMIT R[2] ;", "TORQ_LIMIT R[2]"},
        {"PS +10mm +0.50sec DO[1]=ON ;", "PS +10mm +0.50sec DO[1] = ON"},
        {"PS -5mm -1.25sec R[1]=2 ;", "PS -5mm -1.25sec R[1] = 2"},
        {"TC_ONLINE DISABLE ;", "TC_ONLINE DISABLE"},
        {"IBGN START[...] ;", "IBGN START[...]"},
        {"IBGN REC END[*3] ;", "IBGN REC END[*3]"},
        {"IF DI[1]=ON,IBGN START[2] ;", "IF DI[1] = ON,IBGN START[2]"},
    };
    for (const print_case &c : cases)
        EXPECT_EQ(ctl::printed_one(c.statement), "   1:  " + c.printed + " ;") << c.statement;
}

TEST_F(IoMisc, ToolPrinterStepsOverTwoMoreBytes) {
    std::string line = bytes({176, 0, 2, 0, 1, 9, 9, 133});
    line_cursor cur;
    cursor_setup(&cur, reinterpret_cast<uint8_t *>(line.data()), static_cast<int32_t>(line.size()), 1);
    dict_init(1);
    ASSERT_EQ(decode_line(&cur, 0, 0), 0);
    EXPECT_STREQ(cur.text, "TOOL ATTACH[1]END");
}

TEST_F(IoMisc, DamagedLinesPrintError) {
    const std::string cases[] = {
        bytes({139, 3}),            // OCP mode
        bytes({223, 2}),            // DETECT state
        bytes({225, 0}),            // Grind mode
        bytes({59, 7}),             // Sample mode
        bytes({147, 2, 130, 0}),    // MONITOR mode
        bytes({176, 5, 2, 0, 1}),   // TOOL mode
        bytes({251, 0, 0, 0, 0, 0}), // PS kind
        bytes({24, 3, 1, 1, 1}),    // OVERRIDE without its "="
        bytes({146, 9, 0, 1}),      // TORQ_LIMIT without its index tag
        bytes({171, 9, 0, 1}),      // IBGN without its index tag
    };
    for (const std::string &c : cases) {
        std::string line = c;
        line_cursor cur;
        cursor_setup(&cur, reinterpret_cast<uint8_t *>(line.data()), static_cast<int32_t>(line.size()), 1);
        EXPECT_EQ(decode_line(&cur, 0, 0), 1) << hex(c);
    }
}

// The parsers that the time-before clause of a motion option calls: they
// leave the rest of the line, ";" included, to their caller.
struct clause_run : lexer_run {
    explicit clause_run(const std::string &text) : lexer_run(text) {
        ctx->encoding_on = 1;
        ctx->group_mask = 1;
        emit_reset(ctx);
    }
    std::string emitted() const { return std::string(reinterpret_cast<char *>(ctx->line_buf), ctx->line_len); }
};

TEST_F(IoMisc, ClauseParsersLeaveTheSemicolon) {
    struct {
        const char *text;
        int32_t (*parse)(scan_ctx *);
        std::string want;
    } cases[] = {
        {"DO[1]=PULSE,0.5sec ;", parse_output_clause, bytes({15, 2, 0, 1, 100, 51, 5})},
        {"GO[1]=7 ;", parse_output_clause, bytes({23, 2, 0, 1, 100, 1, 1, 7})},
        {"RO[1]=R[2] ;", parse_output_clause, bytes({16, 2, 0, 1, 100, 3, 2, 0, 2})},
        {"AO[1]=... ;", parse_output_clause, bytes({17, 2, 0, 1, 100, 0})},
        {"CALL SUB(1) ;", parse_call_clause, bytes({129, 130}) + z("SUB") + bytes({61, 1, 1, 1, 1, 64})},
    };
    for (const auto &c : cases) {
        clause_run run(c.text);
        EXPECT_EQ(c.parse(run.ctx), 0) << c.text;
        EXPECT_EQ(hex(run.emitted()), hex(c.want)) << c.text;
        EXPECT_EQ(run.peek().code, 132) << c.text;
    }
    for (const char *refused : {"WO[1]=ON ;", "SO[1]=ON ;", "DO[1]=(DI[1]) ;"}) {
        clause_run run(refused);
        EXPECT_EQ(parse_output_clause(run.ctx), ASC_SYNTAX_ERROR) << refused;
    }
}

TEST_F(IoMisc, ErrorsWithTheirLines) {
    // Lines of the body start at line 4; the macro try behind a failure
    // reads through the statement's ";", or the next one's when the failed
    // parser took it already.
    const std::string next = "   2:  !next ;\n";
    ctl::expect_errors({
        {"   1:  DO[1]=PULSE,25.5sec ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  DO[1]=PULSE,26sec ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  DO[1]=PULSE,1.0 ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  DO[1]=PULSE,-1sec ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  DO[1]=1 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  DO[1] ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  AO[1]=ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  OVERRIDE=101% ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  OVERRIDE=50.5% ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  OVERRIDE=50 ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  UFRAME_NUM=16 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  RSR[1]=ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  SEMAPHORE[1]=1 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  LOCK R ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  LOCK PREG\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  MONITOR 12 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  TOOL GRAB[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  SEND DO[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  OCP GO ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  STICK DETECT 1 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  COL ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  Grind MIDDLE ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  Sample Start ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  TORQ_LIMIT 101 ;\n" + next, ASC_OUT_OF_RANGE, 5},
        {"   1:  TORQ_LIMIT 100.0 ;\n" + next, ASC_OUT_OF_RANGE, 5},
        {"   1:  PS 10 +1sec DO[1]=ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  PS 1.5mm 1sec DO[1]=ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  PS 1mm 1sec AO[1]=1 ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  PS 1mm 1sec ... ;\n" + next, ASC_SYNTAX_ERROR, 6},
        {"   1:  TC_ONLINE ON ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  IBGN START[17] ;\n" + next, ASC_OUT_OF_RANGE, 5},
        {"   1:  IBGN MIDDLE[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
        {"   1:  IBGN REC[1] ;\n" + next, ASC_SYNTAX_ERROR, 5},
    });
}

} // namespace
