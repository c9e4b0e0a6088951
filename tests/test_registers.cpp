// Register statements from listing to line bytes: items, indexes, group
// prefixes, constants, "$" names, arithmetic and mixed expressions, the
// assignment modes, TIMER, TIMER_OVERFLOW, frames and tools, CALMATRIX,
// and the errors of each with their code and line words.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

using vzt::hex;

constexpr uint16_t syntax = 1376345 & 0xFFFF;

// Name record and attribute block stand in front of the line block.
constexpr size_t line_block_at = 20 + 77;

// Payloads of the main program's lines, in order.
std::vector<std::string> line_payloads(const std::string &tp) {
    std::vector<std::string> out;
    if (tp.size() <= line_block_at || tp[line_block_at] != 2)
        return out;
    size_t p = line_block_at + 1;
    while (p + 2 <= tp.size()) {
        size_t len = (static_cast<unsigned char>(tp[p]) << 8) | static_cast<unsigned char>(tp[p + 1]);
        if (len == 0xFFFF || p + 2 + len > tp.size())
            break;
        out.push_back(tp.substr(p + 2, len));
        p += 2 + len;
    }
    return out;
}

std::string hex_of(std::initializer_list<int> v) { return hex(vzt::bytes(v)); }

// Text bytes and a closing zero, for "$" names.
std::string text0(const std::string &s) { return hex(s + std::string(1, '\0')); }

class Registers : public ::testing::Test {
  protected:
    void SetUp() override { vzt::load_builtin_cell(); }

    // The bytes of a one-statement program, or a failure note.
    std::string encode(const std::string &statement, const std::string &attr = "") {
        auto r = vzt::listing_to_binary(vzt::listing("   1:  " + statement + "\n", "", attr));
        if (r.ok != 1)
            return "failed " + std::to_string(r.code) + " line " + std::to_string(r.line);
        auto lines = line_payloads(r.tp);
        if (lines.size() != 1)
            return "lines " + std::to_string(lines.size());
        return hex(lines[0]);
    }
};

struct bytes_case {
    const char *statement;
    std::string want;
};

TEST_F(Registers, IndexFormsAndConstants) {
    const bytes_case cases[] = {
        {"R[1]=R[2]+1 ;", hex_of({3, 2, 0, 1, 100, 3, 2, 0, 2, 101, 1, 1, 1})},
        // A comment behind a direct number is read and lost.
        {"R[1:count]=0 ;", hex_of({3, 2, 0, 1, 100, 1, 1, 0})},
        {"R[R[3]]=(-1) ;", hex_of({3, 2, 0x80, 3, 100, 1, 1, 0xFF})},
        {"R[AR[2]]=AR[3] ;", hex_of({3, 2, 0xC0, 2, 100, 62, 2, 0, 3})},
        {"R[...]=R[...] ;", hex_of({3, 2, 0, 0, 100, 3, 2, 0, 0})},
        {"R[R[...]]=R[AR[...]] ;", hex_of({3, 2, 0x80, 0, 100, 3, 2, 0xC0, 0})},
        {"R[32767]=100 ;", hex_of({3, 2, 0x7F, 0xFF, 100, 1, 1, 100})},
        // Outside a byte the constant takes four bytes.
        {"R[1]=1000 ;", hex_of({3, 2, 0, 1, 100, 1, 2, 0, 0, 3, 0xE8})},
        {"R[1]=-129 ;", hex_of({3, 2, 0, 1, 100, 1, 2, 0xFF, 0xFF, 0xFF, 0x7F})},
        {"R[1]=-128 ;", hex_of({3, 2, 0, 1, 100, 1, 1, 0x80})},
        {"R[1]=1.5 ;", hex_of({3, 2, 0, 1, 100, 1, 3, 0x3F, 0xC0, 0, 0})},
        {"R[1]=(-2.5) ;", hex_of({3, 2, 0, 1, 100, 1, 3, 0xC0, 0x20, 0, 0})},
        {"R[1]=Constant ;", hex_of({3, 2, 0, 1, 100, 1, 0, 0})},
        {"R[1]=... ;", hex_of({3, 2, 0, 1, 100, 0})},
        // R adds 32768 without a limit; AR sets the top two bits.
        {"R[R[40000]]=0 ;", hex_of({3, 2, 0x1C, 0x40, 100, 1, 1, 0})},
        {"R[AR[300]]=0 ;", hex_of({3, 2, 0xC1, 0x2C, 100, 1, 1, 0})},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

TEST_F(Registers, ArithmeticOperandsAndOperators) {
    const bytes_case cases[] = {
        {"R[1]=DI[1]+DO[2]+TIMER[3]+TIMER_OVERFLOW[4] ;",
         hex_of({3, 2, 0, 1, 100, 10, 2, 0, 1, 101, 15, 2, 0, 2, 101, 25, 2, 0, 3, 101, 57, 2, 0, 4})},
        {"R[1]=RI[1]-WI[2]-AI[3]-GI[4]-SI[5]-UI[0] ;",
         hex_of({3, 2, 0, 1, 100, 11, 2, 0, 1, 102, 13, 2, 0, 2, 102, 12, 2, 0, 3, 102, 22, 2, 0, 4, 102,
                 36, 2, 0, 5, 102, 37, 2, 0, 0})},
        {"R[1]=RO[1]*WO[2]/AO[3] DIV GO[4] MOD SO[5]*UO[6] ;",
         hex_of({3, 2, 0, 1, 100, 16, 2, 0, 1, 103, 18, 2, 0, 2, 104, 17, 2, 0, 3, 105, 23, 2, 0, 4, 106,
                 38, 2, 0, 5, 103, 39, 2, 0, 6})},
        {"R[1]=PR[1,2]*... ;", hex_of({3, 2, 0, 1, 100, 4, 2, 0, 1, 2, 0, 2, 103, 0})},
        {"R[1]=AR[1]+Constant-(-3) ;",
         hex_of({3, 2, 0, 1, 100, 62, 2, 0, 1, 101, 1, 0, 0, 102, 1, 1, 0xFD})},
        // An optional ":" may stand in front of an operand.
        {"R[1]=:R[2] ;", hex_of({3, 2, 0, 1, 100, 3, 2, 0, 2})},
        // Five operators are the most.
        {"R[1]=1+2+3+4+5+6 ;",
         hex_of({3, 2, 0, 1, 100, 1, 1, 1, 101, 1, 1, 2, 101, 1, 1, 3, 101, 1, 1, 4, 101, 1, 1, 5, 101, 1,
                 1, 6})},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

TEST_F(Registers, MixedForm) {
    const bytes_case cases[] = {
        // The parenthesised form has neither the class rule nor the count.
        {"R[1]=(1+2*3) ;", hex_of({3, 2, 0, 1, 100, 115, 1, 1, 1, 101, 1, 1, 2, 103, 1, 1, 3, 116})},
        {"R[1]=(1+2+3+4+5+6+7) ;",
         hex_of({3, 2, 0, 1, 100, 115, 1, 1, 1, 101, 1, 1, 2, 101, 1, 1, 3, 101, 1, 1, 4, 101, 1, 1, 5, 101,
                 1, 1, 6, 101, 1, 1, 7, 116})},
        // "(" with "-" behind it is a constant, with its own ")".
        {"R[1]=(R[2]<=(-1)) ;", hex_of({3, 2, 0, 1, 100, 115, 3, 2, 0, 2, 110, 1, 1, 0xFF, 116})},
        {"R[1]=(!DI[1] OR R[2]<>AR[3]) ;",
         hex_of({3, 2, 0, 1, 100, 115, 117, 10, 2, 0, 1, 114, 3, 2, 0, 2, 108, 62, 2, 0, 3, 116})},
        {"R[1]=(F[1]=ON AND M[2]=OFF AND TCP_SPD[3]>=2.5) ;",
         hex_of({3, 2, 0, 1, 100, 115, 41, 2, 0, 1, 107, 50, 1, 113, 42, 2, 0, 2, 107, 50, 0, 113, 66, 2, 0,
                 3, 112, 1, 3, 0x40, 0x20, 0, 0, 116})},
        {"R[1]=(PR[1,2]>TIMER[1] AND TIMER_OVERFLOW[1]<...) ;",
         hex_of({3, 2, 0, 1, 100, 115, 4, 2, 0, 1, 2, 0, 2, 111, 25, 2, 0, 1, 113, 57, 2, 0, 1, 109, 0, 116})},
        {"R[1]=((R[2]) MOD 3) ;",
         hex_of({3, 2, 0, 1, 100, 115, 115, 3, 2, 0, 2, 116, 106, 1, 1, 3, 116})},
        {"... = (R[1]=1 AND DI[2]=ON) ;",
         hex_of({0, 100, 115, 3, 2, 0, 1, 107, 1, 1, 1, 113, 10, 2, 0, 2, 107, 50, 1, 116})},
        {"... ;", hex_of({0})},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

TEST_F(Registers, PositionRegisterModes) {
    const bytes_case cases[] = {
        // PR[i,j] is an element, PR[i] the whole position.
        {"PR[1,2]=R[1]*2 ;", hex_of({4, 2, 0, 1, 2, 0, 2, 100, 3, 2, 0, 1, 103, 1, 1, 2})},
        {"PR[R[1],AR[2]]=(R[3]) ;", hex_of({4, 2, 0x80, 1, 2, 0xC0, 2, 100, 115, 3, 2, 0, 3, 116})},
        {"PR[1]=P[2]+PR[3]-LPOS ;",
         hex_of({4, 2, 0, 1, 100, 5, 2, 0, 2, 101, 4, 2, 0, 3, 102, 50, 7})},
        {"PR[1]=JPOS ;", hex_of({4, 2, 0, 1, 100, 50, 8})},
        {"PR[1]=UFRAME[2] ;", hex_of({4, 2, 0, 1, 100, 33, 2, 0, 2})},
        {"PR[1]=UTOOL[R[2]] ;", hex_of({4, 2, 0, 1, 100, 35, 2, 0x80, 2})},
        {"PR[GP1:1]=P[GP1:2] ;", hex_of({4, 242, 1, 2, 0, 1, 100, 5, 242, 1, 2, 0, 2})},
        {"PR[1]=P[1]+P[2]+P[3]+P[4]+P[5]+P[6] ;",
         hex_of({4, 2, 0, 1, 100, 5, 2, 0, 1, 101, 5, 2, 0, 2, 101, 5, 2, 0, 3, 101, 5, 2, 0, 4, 101, 5, 2, 0,
                 5, 101, 5, 2, 0, 6})},
        {"PR[1]=$POS ;", hex_of({4, 2, 0, 1, 100, 26}) + text0("$POS")},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

TEST_F(Registers, GroupPrefixKeepsOnlyGroupsOfTheProgram) {
    // One group by default: group 2 is dropped without a word.
    EXPECT_EQ(encode("PR[GP1,2:1]=P[1] ;"), hex_of({4, 242, 1, 2, 0, 1, 100, 5, 2, 0, 1}));
    EXPECT_EQ(encode("PR[GP2:1]=P[1] ;"), hex_of({4, 242, 0, 2, 0, 1, 100, 5, 2, 0, 1}));
    const std::string two = "DEFAULT_GROUP = 1,1,*,*,*;\n";
    EXPECT_EQ(encode("PR[GP1,2:1]=P[1] ;", two), hex_of({4, 242, 3, 2, 0, 1, 100, 5, 2, 0, 1}));
    EXPECT_EQ(encode("UTOOL_NUM[GP2]=1 ;", two), hex_of({34, 242, 2, 100, 1, 1, 1}));
}

TEST_F(Registers, SystemVariables) {
    const bytes_case cases[] = {
        // The name is raw text: dots, brackets and a second "$" pass whole.
        {"$MCR.$GENOVERRIDE=100 ;", hex_of({26}) + text0("$MCR.$GENOVERRIDE") + hex_of({100, 1, 1, 100})},
        {"$A[1].B = 5 ;", hex_of({26}) + text0("$A[1].B") + hex_of({100, 1, 1, 5})},
        {"$A=PR[1] ;", hex_of({26}) + text0("$A") + hex_of({100, 4, 2, 0, 1})},
        {"$A=PR[1,2] ;", hex_of({26}) + text0("$A") + hex_of({100, 4, 2, 0, 1, 2, 0, 2})},
        {"$A=LPOS ;", hex_of({26}) + text0("$A") + hex_of({100, 50, 7})},
        {"$A=JPOS ;", hex_of({26}) + text0("$A") + hex_of({100, 50, 8})},
        {"$A=R[2] ;", hex_of({26}) + text0("$A") + hex_of({100, 3, 2, 0, 2})},
        {"$A=AR[2] ;", hex_of({26}) + text0("$A") + hex_of({100, 62, 2, 0, 2})},
        {"$A=(R[1]+1) ;", hex_of({26}) + text0("$A") + hex_of({100, 115, 3, 2, 0, 1, 101, 1, 1, 1, 116})},
        {"$A=(-1.5) ;", hex_of({26}) + text0("$A") + hex_of({100, 1, 3, 0xBF, 0xC0, 0, 0})},
        {"R[1]=$B ;", hex_of({3, 2, 0, 1, 100, 26}) + text0("$B")},
        {"R[1]=($A<$B) ;", hex_of({3, 2, 0, 1, 100, 115, 26}) + text0("$A") + hex_of({109, 26}) + text0("$B") +
                               hex_of({116})},
        // Longer names are cut to 31 characters without a word.
        {"$ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789=1 ;",
         hex_of({26}) + text0("$ABCDEFGHIJKLMNOPQRSTUVWXYZ0123") + hex_of({100, 1, 1, 1})},
        {"$a_b@c*d-e=1 ;", hex_of({26}) + text0("$a_b@c*d-e") + hex_of({100, 1, 1, 1})},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

TEST_F(Registers, TimersFramesAndCalmatrix) {
    const bytes_case cases[] = {
        {"TIMER[1]=START ;", hex_of({25, 2, 0, 1, 100, 50, 4})},
        {"TIMER[R[2]]=STOP ;", hex_of({25, 2, 0x80, 2, 100, 50, 5})},
        {"TIMER[3]=RESET ;", hex_of({25, 2, 0, 3, 100, 50, 6})},
        {"TIMER_OVERFLOW[2]=OFF ;", hex_of({57, 2, 0, 2, 100, 50, 0})},
        {"TIMER_OVERFLOW[2]=ON ;", hex_of({57, 2, 0, 2, 100, 50, 1})},
        {"TIMER_OVERFLOW[2]=R[1] ;", hex_of({57, 2, 0, 2, 100, 3, 2, 0, 1})},
        {"UFRAME[1]=PR[2] ;", hex_of({33, 2, 0, 1, 100, 4, 2, 0, 2})},
        {"UTOOL[GP1:1]=PR[R[2]] ;", hex_of({35, 242, 1, 2, 0, 1, 100, 4, 2, 0x80, 2})},
        {"UFRAME_NUM=3 ;", hex_of({32, 100, 1, 1, 3})},
        {"UFRAME_NUM=0 ;", hex_of({32, 100, 1, 1, 0})},
        {"UTOOL_NUM=15 ;", hex_of({34, 100, 1, 1, 15})},
        {"UTOOL_NUM[GP1]=R[4] ;", hex_of({34, 242, 1, 100, 3, 2, 0, 4})},
        {"UFRAME_NUM[GP1:]=AR[1] ;", hex_of({32, 242, 1, 100, 62, 2, 0, 1})},
        {"CALMATRIX ;", hex_of({142})},
    };
    for (const bytes_case &c : cases)
        EXPECT_EQ(encode(c.statement), c.want) << c.statement;
}

struct error_case {
    const char *statement;
    uint16_t code;
    uint16_t line;
};

// The statement stands on line 5 and /POS on line 6. The line word runs a
// token ahead, and the macro try behind a failed statement reads on from
// where the parser stopped to the next ";": so it is 6, or 8 (the end of
// the file) where the parser took the ";" itself or none was there.
TEST_F(Registers, ErrorsCarryCodeAndLine) {
    const error_case cases[] = {
        {"R[1]=1+2+3+4+5+6+7 ;", 191, 6},
        {"R[1]=1+2*3 ;", 189, 6},
        {"R[1]=R[2]/2-1 ;", 189, 6},
        {"PR[1]=P[1]+P[2]+P[3]+P[4]+P[5]+P[6]+P[7] ;", 191, 6},
        {"PR[1]=P[1]*2 ;", syntax, 6},
        {"R[R[1]:x]=0 ;", syntax, 6},
        {"R[32768]=1 ;", syntax, 6},
        {"R[-1]=1 ;", syntax, 6},
        {"R[1]=2", syntax, 8},
        {"R[1]=R[2] R[3] ;", syntax, 6},
        {"R[1]=(1+) ;", syntax, 6},
        {"R[1]=(R[1] R[2]) ;", syntax, 6},
        {"R[1]=(R[1]=1 AND) ;", syntax, 6},
        {"R[1]=(R[1]=1 ;", syntax, 6},
        {"R[1]=(R[1]) R[2] ;", syntax, 6},
        {"R[1]=(-1 ;", syntax, 8},
        {"$A!B=1 ;", 159, 6},
        {"$A(1)=1 ;", 159, 6},
        {"$A ;", syntax, 8},
        // A "$" name on the right stands only behind R[..]= or in brackets.
        {"$A=$B ;", syntax, 6},
        {"PR[1]=R[1] ;", syntax, 6},
        {"PR[1,2,3]=1 ;", syntax, 6},
        {"UFRAME_NUM=16 ;", syntax, 6},
        {"UFRAME_NUM=-1 ;", syntax, 6},
        {"UFRAME_NUM[1]=1 ;", syntax, 6},
        {"UFRAME[1]=R[1] ;", syntax, 6},
        {"UTOOL[1]=PR[1]", syntax, 8},
        {"TIMER[1]=ON ;", syntax, 6},
        {"TIMER_OVERFLOW[1]=START ;", syntax, 6},
        {"CALMATRIX 1 ;", syntax, 6},
        {"... = ;", syntax, 6},
        {"R[GP1,X:1]=1 ;", syntax, 6},
        {"R[1:comment", syntax, 8},
    };
    for (const error_case &c : cases) {
        auto r = vzt::listing_to_binary(vzt::listing("   1:  " + std::string(c.statement) + "\n"));
        EXPECT_EQ(r.ok, 0) << c.statement;
        EXPECT_EQ(r.code, c.code) << c.statement;
        EXPECT_EQ(r.line, c.line) << c.statement;
        EXPECT_FALSE(r.written) << c.statement;
    }
}

TEST_F(Registers, StatementsFollowOneAnother) {
    // The raw text of a "$" name is cleared behind it: the next statement's
    // name is found again from its own "$".
    auto r = vzt::listing_to_binary(vzt::listing("   1:  $A=1 ;\n   2:  $B.C=R[1] ;\n   3:  R[1]=2 ;\n"));
    ASSERT_EQ(r.ok, 1) << r.code << " line " << r.line;
    auto lines = line_payloads(r.tp);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(hex(lines[0]), hex_of({26}) + text0("$A") + hex_of({100, 1, 1, 1}));
    EXPECT_EQ(hex(lines[1]), hex_of({26}) + text0("$B.C") + hex_of({100, 3, 2, 0, 1}));
    EXPECT_EQ(hex(lines[2]), hex_of({3, 2, 0, 1, 100, 1, 1, 2}));
}

} // namespace
