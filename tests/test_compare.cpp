// The compare of two programs: results for equal, different and unreadable
// files, the report of program heads, attribute fields and lines, exact to
// the byte, and the report buffer's limit.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_compare_util.h"
#include "test_support.h"

namespace {

using cmpt::bytes;
using cmpt::program_parts;

program_parts remarks(std::initializer_list<const char *> texts) {
    program_parts p;
    for (const char *t : texts)
        p.lines.push_back(tp::remark(t));
    return p;
}

TEST(CompareFiles, EqualProgramsGiveAnEmptyReport) {
    program_parts p = remarks({"one", "two"});
    p.positions.push_back(cmpt::position(1, {cmpt::joint(1, {1, 2, 3, 4, 5, 6})}));
    p.appl.push_back({0, 0, cmpt::label("MUAP")});
    cmpt::outcome o = cmpt::compare(p, p);
    EXPECT_EQ(o.result, 0);
    EXPECT_EQ(o.report, "");
}

TEST(CompareFiles, OwnerCommentDatesAndTaskDataAreNotCompared) {
    program_parts left = remarks({"x"}), right = left;
    right.attr.owner = "SOMEONE";
    right.attr.comment = "another";
    right.attr.create = tp::packed_date(2024, 1, 1, 12, 0, 0);
    right.attr.modified = tp::packed_date(2024, 2, 1, 12, 0, 0);
    right.attr.prog_size = 999;
    right.attr.protect = 2;
    right.attr.stack_size = 7;
    EXPECT_EQ(cmpt::compare(left, right).report, "");
}

TEST(CompareFiles, EachOfTheThreeAttributeFieldsHasItsLine) {
    struct row {
        void (*change)(tp::attr_fields &);
        const char *line;
    };
    const row rows[] = {
        {[](tp::attr_fields &a) { a.line_count = 4; }, "Attr Line Count Error 3 <-> 4\r\n"},
        {[](tp::attr_fields &a) { a.default_group = 3; }, "Attr Default Group Error 1 <-> 3\r\n"},
        {[](tp::attr_fields &a) { a.control_code = 0x100; }, "Attr Control Code Error 0 <-> 256\r\n"},
    };
    for (const row &r : rows) {
        program_parts left = remarks({"x"});
        left.attr.line_count = 3;
        program_parts right = left;
        r.change(right.attr);
        EXPECT_EQ(cmpt::compare(left, right).report, r.line);
    }
    program_parts left = remarks({"x"}), right = left;
    right.attr.line_count = 2;
    right.attr.control_code = 1;
    EXPECT_EQ(cmpt::compare(left, right).report,
              "Attr Line Count Error 0 <-> 2\r\nAttr Control Code Error 0 <-> 1\r\n");
}

TEST(CompareFiles, DifferentNamesPrintBothHeadsAndNameRecords) {
    program_parts left = remarks({"x"}), right = left;
    right.name = "OTHER";
    const char *expect =
        "/PROG  MAIN\t\r\n"
        "Prog Data Block Begin\r\n"
        "        00 \r\n"
        "        00 01 00 4d 41 49 4e 00 00 00 00 00 00 00 00 00 \r\n"
        "        00 \r\n"
        "        ff ff \r\n"
        "Prog Data Block End\r\n"
        "\r\n"
        "/PROG  OTHER\t\r\n"
        "Prog Data Block Begin\r\n"
        "        00 \r\n"
        "        00 01 00 4f 54 48 45 52 00 00 00 00 00 00 00 00 \r\n"
        "        00 \r\n"
        "        ff ff \r\n"
        "Prog Data Block End\r\n"
        "\r\n";
    EXPECT_EQ(cmpt::compare(left, right).report, expect);
}

TEST(CompareFiles, SubtypeAloneCountsAsADifferentHead) {
    program_parts left = remarks({"x"}), right = left;
    right.subtype = 3;
    std::string report = cmpt::compare(left, right).report;
    EXPECT_EQ(report.find("/PROG  MAIN\t\r\n"), 0u) << report;
    EXPECT_NE(report.find("/PROG  MAIN\tMACRO\r\n"), std::string::npos) << report;
    EXPECT_NE(report.find("        00 01 03 4d 41 49 4e"), std::string::npos) << report;
}

TEST(CompareFiles, OneChangedLineIsReportedWithBytesAndText) {
    program_parts left = remarks({"same", "leave", "end"});
    program_parts right = remarks({"same", "stay", "end"});
    // Remark lines lose their closing zero before they are compared.
    const char *expect =
        "Line 2\r\n"
        "1e 6c 65 61 76 65 \r\n"
        "   2:  !leave ;\r\n"
        "1e 73 74 61 79 \r\n"
        "   2:  !stay ;\r\n"
        "\r\n";
    cmpt::outcome o = cmpt::compare(left, right);
    EXPECT_EQ(o.result, 0);
    EXPECT_EQ(o.report, expect);
}

TEST(CompareFiles, LineCountDifferenceAndTheCommonPart) {
    program_parts left = remarks({"a", "b", "c"});
    program_parts right = remarks({"a", "B"});
    const char *expect =
        "Line Count Error 3 <-> 2\r\n"
        "\r\n"
        "Line 2\r\n"
        "1e 62 \r\n"
        "   2:  !b ;\r\n"
        "1e 42 \r\n"
        "   2:  !B ;\r\n"
        "\r\n";
    EXPECT_EQ(cmpt::compare(left, right).report, expect);
}

TEST(CompareFiles, TrimsHideWhatTheDecoderCannotShow) {
    struct row {
        const char *what;
        bytes left, right;
    };
    const row rows[] = {
        {"remark with trailing blanks", {30, 'a', ' ', ' ', 0}, {30, 'a', 0}},
        {"remark with junk behind its zero dropped as the last byte", {30, 'a', 0}, {30, 'a', 7}},
        {"blanks anywhere in a 26 line", {26, ' ', 'a', ' ', 'b', 0}, {26, 'a', 'b', 0}},
        {"macro name with blanks before its zero", {135, 4, 'M', ' ', ' ', 0, 64}, {135, 4, 'M', 0, 64}},
        {"macro name without zero, trimmed as a text", {135, 4, 'M', ' ', 9}, {135, 4, 'M', 9}},
        {"empty line against a lone terminator", {}, {255}},
    };
    for (const row &r : rows) {
        program_parts left, right;
        left.lines = {r.left};
        right.lines = {r.right};
        EXPECT_EQ(cmpt::compare(left, right).report, "") << r.what;
    }
}

TEST(CompareFiles, BlanksOfTheRightLineAreScannedOnlyAsFarAsTheLeftReaches) {
    // The left squeezes to three bytes; only three bytes of the right are
    // scanned, so its tail does not count.
    program_parts left, right;
    left.lines = {{26, 'a', ' ', 'b'}};
    right.lines = {{26, 'a', 'b', 'c', 'd'}};
    EXPECT_EQ(cmpt::compare(left, right).report, "");
}

TEST(CompareFiles, MacroLinesOfDifferentLengthDifferWithoutDecoding) {
    program_parts left, right;
    left.lines = {{135, 4, 'M', 0}};
    right.lines = {{135, 4, 'M', 'M', 0}};
    std::string report = cmpt::compare(left, right).report;
    EXPECT_EQ(report.find("Line 1\r\n87 04 4d 00 \r\n"), 0u) << report;
    EXPECT_NE(report.find("\r\n87 04 4d 4d 00 \r\n"), std::string::npos) << report;
}

TEST(CompareFiles, UndecodableLinesSayWhichLine) {
    program_parts left = remarks({"a", "b"}), right = left;
    left.lines[1] = {2, 1};
    right.lines[1] = {2, 2};
    const char *expect =
        "Line 2\r\n"
        "02 01 \r\n"
        "   2:  ERROR ;\r\n"
        "Error line 2: Unknown mnemonic code\r\n"
        "02 02 \r\n"
        "   2:  ERROR ;\r\n"
        "Error line 2: Unknown mnemonic code\r\n"
        "\r\n";
    EXPECT_EQ(cmpt::compare(left, right).report, expect);
}

TEST(CompareFiles, MissingAndUnreadableFilesAreNamed) {
    tp::scratch_dir dir;
    std::string good = dir.file("GOOD.TP"), cut = dir.file("CUT.TP"), absent = dir.file("NONE.TP");
    bytes program = cmpt::build(remarks({"x"}));
    tp::write_file(good, program);
    tp::write_file(cut, bytes(program.begin(), program.begin() + 30));
    char report[512];
    EXPECT_EQ(compare_files(absent.c_str(), good.c_str(), report, sizeof report), 1);
    EXPECT_EQ(std::string(report), absent + " not found\r\n");
    EXPECT_EQ(compare_files(good.c_str(), absent.c_str(), report, sizeof report), 1);
    EXPECT_EQ(std::string(report), absent + " not found\r\n");
    EXPECT_EQ(compare_files(good.c_str(), cut.c_str(), report, sizeof report), 2);
    EXPECT_EQ(std::string(report), cut + " not found\r\n");
    EXPECT_EQ(compare_files(cut.c_str(), good.c_str(), report, sizeof report), 2);
    EXPECT_EQ(std::string(report), cut + " not found\r\n");
    // The same files compare again afterwards: nothing stale is left.
    EXPECT_EQ(compare_files(good.c_str(), good.c_str(), report, sizeof report), 0);
    EXPECT_EQ(std::string(report), "");
}

TEST(CompareFiles, AFullBufferDropsWholeLinesAndKeepsLaterShortOnes) {
    program_parts left = remarks({"x"}), right = left;
    right.attr.line_count = 1;
    right.attr.control_code = 1;
    // "Attr Line Count Error 0 <-> 1\r\n" is 31 bytes: a buffer of 31 does
    // not hold it with its terminator, one of 32 does; the second line
    // takes 33 more.
    bytes l = cmpt::build(left), r = cmpt::build(right);
    EXPECT_EQ(cmpt::compare(l, r, 31).report, "");
    EXPECT_EQ(cmpt::compare(l, r, 32).report, "Attr Line Count Error 0 <-> 1\r\n");
    EXPECT_EQ(cmpt::compare(l, r, 64).report, "Attr Line Count Error 0 <-> 1\r\n");
    EXPECT_EQ(cmpt::compare(l, r, 65).report,
              "Attr Line Count Error 0 <-> 1\r\nAttr Control Code Error 0 <-> 1\r\n");
    // Long lines that do not fit are dropped, the short ones behind them
    // still go in.
    right.lines[0] = tp::remark("a much longer remark text");
    cmpt::outcome o = cmpt::compare(l, cmpt::build(right), 75);
    EXPECT_EQ(o.report, "Attr Line Count Error 0 <-> 1\r\nAttr Control Code Error 0 <-> 1\r\nLine 1\r\n\r\n");
}

TEST(CompareFiles, NoBufferIsHarmless) {
    tp::scratch_dir dir;
    tp::write_file(dir.file("A.TP"), cmpt::build(remarks({"a"})));
    tp::write_file(dir.file("B.TP"), cmpt::build(remarks({"b"})));
    EXPECT_EQ(compare_files(dir.file("A.TP").c_str(), dir.file("B.TP").c_str(), nullptr, 100), 0);
    char one = 'Q';
    EXPECT_EQ(compare_files(dir.file("A.TP").c_str(), dir.file("B.TP").c_str(), &one, 0), 0);
    EXPECT_EQ(one, 'Q');
}

TEST(CompareFiles, ListingsTranslatedTwiceCompareEqual) {
    vzt::load_builtin_cell();
    std::string text = vzt::listing("   1:  !first ;\n   2:  !second ;\n");
    vzt::asc_result a = vzt::listing_to_binary(text);
    vzt::asc_result b = vzt::listing_to_binary(text);
    ASSERT_TRUE(a.written && b.written);
    bytes left(a.tp.begin(), a.tp.end()), right(b.tp.begin(), b.tp.end());
    EXPECT_EQ(cmpt::compare(left, right).report, "");
    vzt::asc_result c = vzt::listing_to_binary(vzt::listing("   1:  !first ;\n   2:  !other ;\n"));
    ASSERT_TRUE(c.written);
    std::string report = cmpt::compare(left, bytes(c.tp.begin(), c.tp.end())).report;
    EXPECT_EQ(report.find("Line 2\r\n"), 0u) << report;
    EXPECT_NE(report.find("   2:  !other ;\r\n"), std::string::npos) << report;
}

} // namespace
