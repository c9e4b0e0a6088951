// The pure pieces of the batch command, tested in-process: named
// constructs on listing text, a spot warning's line, JSON strings, the
// result records between worker and parent, the report lines and the
// file classes. The command's own sources are compiled into this file,
// since the test program links the library but not the command.
#include <gtest/gtest.h>

#include "cli/batch_construct.cpp"
#include "cli/batch_report.cpp"
#include "cli/batch_walk.cpp"
#include "cli/batch_wire.cpp"

namespace {

std::vector<std::string> lines_of_text(const std::string &text) {
    std::vector<std::string> v;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        if (nl == std::string::npos)
            nl = text.size();
        v.push_back(text.substr(pos, nl - pos));
        pos = nl + 1;
    }
    return v;
}

const char *head = "/PROG  T\n/ATTR\nOWNER\t\t= MNEDITOR;\n/APPL\n/MN\n"; // /MN is line 5

struct construct_case {
    const char *name;
    std::string text;
    int32_t line;
    const char *id; // "" for none
    const char *what;
};

TEST(CliBatchConstruct, FoundOnTheReportedLineOrJustBefore) {
    const construct_case cases[] = {
        {"if on its line", std::string(head) + "   1:  IF R[1]=1 THEN ;\n", 6, "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"if, reported one ahead", std::string(head) + "   1:  IF (R[1]>0) THEN ;\n   2:  !x ;\n", 7,
         "if-then-block", "a block IF ... THEN / ELSE / ENDIF"},
        {"else behind a remark", std::string(head) + "   1:  ELSE ;\n   2:  !x ;\n/POS\n", 8, "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"endif", std::string(head) + "   1:  ENDIF ;\n", 6, "if-then-block", "a block IF ... THEN / ELSE / ENDIF"},
        {"japanese if", std::string(head) + "   1:  \xD3\xBC R[1]=1 THEN ;\n", 6, "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"japanese else", std::string(head) + "   1:  \xBF\xC9\xC0 ;\n", 6, "if-then-block",
         "a block IF ... THEN / ELSE / ENDIF"},
        {"for", std::string(head) + "   1:  FOR R[1]=1 TO 5 ;\n", 6, "for-loop", "a FOR ... TO/DOWNTO ... ENDFOR loop"},
        {"for, lower case", std::string(head) + "   1:  for r[1]=5 downto 1 ;\n", 6, "for-loop",
         "a FOR ... TO/DOWNTO ... ENDFOR loop"},
        {"endfor", std::string(head) + "   1:  !a ;\n   2:  ENDFOR ;\n", 7, "for-loop",
         "a FOR ... TO/DOWNTO ... ENDFOR loop"},
        {"comment", std::string(head) + "   1:  //L P[1] 100mm/sec FINE ;\n", 6, "comment-line",
         "a line commented out with //"},
        {"comment without number, CR LF", "/PROG  T\r\n/MN\r\n//J P[2] 50% FINE ;\r\n", 3, "comment-line",
         "a line commented out with //"},
        {"attr field", "/PROG  T\n/ATTR\nOWNER\t\t= MNEDITOR;\nSTORAGE\t\t= SHADOW;\n", 4, "attr-field",
         "the /ATTR field STORAGE"},
        {"appl header", "/PROG  T\n/APPL\n\nAUTO_SINGULARITY_HEADER;\n  ENABLE_SINGULARITY_AVOIDANCE : TRUE;\n", 5,
         "appl-header", "the /APPL header AUTO_SINGULARITY_HEADER"},
        {"print-only appl header", "/PROG  T\n/APPL\nRECIP_ZONE;\n", 3, "appl-header",
         "the /APPL header RECIP_ZONE"},
        /* Nothing to name. */
        {"plain if", std::string(head) + "   1:  IF R[1]=1,JMP LBL[1] ;\n", 6, "", ""},
        {"select branch", std::string(head) + "   1:  ELSE,JMP LBL[2] ;\n", 6, "", ""},
        {"motion", std::string(head) + "   1:  L P[1] 100mm/sec FINE ;\n", 6, "", ""},
        {"known attr fields", "/PROG  T\n/ATTR\nTCD:  STACK_SIZE\t= 0,\n      TASK_PRIORITY\t= 50,\n", 4, "", ""},
        {"japanese attr field", "/PROG  T\n/ATTR\n\xBB\xB8\xBE\xB2\xBC\xAC\t= X;\n", 3, "", ""},
        {"appl header words", "/PROG  T\n/APPL\n  SPOT : TRUE ;\n  SPOT Welding Equipment Number : 1 ;\n", 4, "",
         ""},
        {"word inside a pallet block", "/PROG  T\n/APPL\nPALLETIZING[1];\n  TYPE = PALLET;\n", 4, "", ""},
        {"the /POS section", "/PROG  T\n/MN\n/POS\nFOR R[1]=1 TO 2 ;\n", 4, "", ""},
        {"line 0", std::string(head) + "   1:  FOR R[1]=1 TO 5 ;\n", 0, "", ""},
        {"far behind the reported line", std::string(head) + "   1:  ENDIF ;\n   2:  L P[1] 1% FINE ;\n   3:  ;\n", 8,
         "", ""},
    };
    for (const construct_case &c : cases) {
        construct_hit hit;
        bool found = construct_find(c.text, c.line, hit);
        EXPECT_EQ(found, c.id[0] != 0) << c.name;
        if (found) {
            EXPECT_EQ(hit.id, c.id) << c.name;
            EXPECT_EQ(hit.what, c.what) << c.name;
        }
    }
}

TEST(CliBatchConstruct, EarliestOfTheLooksWins) {
    /* The lexer stopped on the header's next line; the header is named. */
    std::string text = "/PROG  T\n/APPL\nNEW_HEADER;\n  NEW_FIELD : 1;\n";
    construct_hit hit;
    ASSERT_TRUE(construct_find(text, 4, hit));
    EXPECT_EQ(hit.what, "the /APPL header NEW_HEADER");
    ASSERT_TRUE(construct_find(text, 3, hit));
    EXPECT_EQ(hit.what, "the /APPL header NEW_HEADER");
}

TEST(CliBatchConstruct, NoteAndKatakanaNames) {
    EXPECT_EQ(construct_note("Undefined instruction", {"for-loop", "a FOR ... TO/DOWNTO ... ENDFOR loop"}),
              "Undefined instruction (uses a FOR ... TO/DOWNTO ... ENDFOR loop, which this program format does not "
              "define)");
    construct_hit hit;
    ASSERT_TRUE(construct_find("/PROG  T\n/ATTR\n\xB1\xB2 = 1;\n", 3, hit));
    EXPECT_EQ(hit.what, "the /ATTR field ｱｲ");
}

TEST(CliBatchConstruct, StatementLineOfASpotWarning) {
    std::string text = "/PROG  T\r\n/MN\r\n   1:  !a ;\r\n   2:  L P[1] 100mm/sec FINE SPOT[1] ;\r\n"
                       "   3:  L P[2] 100mm/sec FINE SPOT[2] ;\r\n/POS\r\nL P[1] 100mm/sec FINE SPOT[1] ;\r\n";
    EXPECT_EQ(statement_line(text, "L P[1] 100mm/sec FINE SPOT[1] ;"), 4);
    EXPECT_EQ(statement_line(text, "   3:  L P[2] 100mm/sec FINE SPOT[2]"), 5);
    EXPECT_EQ(statement_line(text, "L P[9] 1mm/sec FINE"), 0);
    EXPECT_EQ(statement_line(text, "   "), 0);
}

TEST(CliBatchConstruct, BinaryAndListingHeads) {
    EXPECT_TRUE(looks_binary(std::string("\x00\x14\x01", 3)));
    EXPECT_FALSE(looks_binary("/PROG  A\n"));
    EXPECT_TRUE(looks_like_listing("\r\n  /PROG  A"));
    EXPECT_FALSE(looks_like_listing("/PRO"));
    EXPECT_FALSE(looks_like_listing(std::string("\x00/PROG", 6)));
}

TEST(CliBatchReport, JsonStrings) {
    const struct {
        std::string in;
        const char *out;
    } cases[] = {
        {"plain a/b c.ls", "\"plain a/b c.ls\""},
        {"q\"b\\", "\"q\\\"b\\\\\""},
        {"\n\r\t\b\f\x01\x1f\x7f", "\"\\n\\r\\t\\b\\f\\u0001\\u001f\x7f\""},
        {"\xC3\xBC \xE5\x90\x8D \xF0\x9F\x98\x80", "\"\xC3\xBC \xE5\x90\x8D \xF0\x9F\x98\x80\""},
        {"sj\x83\x65", "\"sj\\udc83e\""},
        {"\xC0\x80", "\"\\udcc0\\udc80\""},             /* overlong */
        {"\xED\xA0\x80", "\"\\udced\\udca0\\udc80\""},   /* a surrogate */
        {"\xE3\x81", "\"\\udce3\\udc81\""},             /* cut short */
        {"\xF4\x90\x80\x80", "\"\\udcf4\\udc90\\udc80\\udc80\""}, /* past U+10FFFF */
        {std::string("\0x", 2), "\"\\u0000x\""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(json_string(c.in), c.out) << c.out;
}

TEST(CliBatchReport, TextLinesAndSummary) {
    batch_item item;
    item.path = "dir/a b.ls";
    batch_result r;
    r.code = 161;
    r.line = 12;
    r.message = "Undefined instruction";
    r.warnings = {{7, "spot position in Cartesian form: L P[1] 1mm/sec FINE"}, {0, "w2"}};
    EXPECT_EQ(report_text_lines(item, r), "dir/a b.ls:12: error 161: Undefined instruction\n"
                                          "dir/a b.ls:7: warning: spot position in Cartesian form: L P[1] 1mm/sec FINE\n"
                                          "dir/a b.ls: warning: w2\n");
    r.line = 0;
    r.warnings.clear();
    EXPECT_EQ(report_text_lines(item, r), "dir/a b.ls: error 161: Undefined instruction\n");
    r.ok = true;
    EXPECT_EQ(report_text_lines(item, r), "");

    batch_report rep;
    rep.out = std::tmpfile();
    ASSERT_NE(rep.out, nullptr);
    EXPECT_EQ(report_summary_text(rep), "0 files: 0 ok, 0 failed\n");
    batch_result f;
    for (int32_t code : {161, 1376345, 4, 1376345, 161, 3, 3, 161}) {
        f.code = code;
        report_file(rep, item, f);
    }
    report_file(rep, item, r);
    EXPECT_EQ(report_summary_text(rep), "9 files: 1 ok, 8 failed (most frequent codes: 161 x3, 3 x2, 1376345 x2)\n");
    rep.json = true;
    report_summary(rep);
    std::rewind(rep.out);
    char buf[4096] = {0};
    size_t n = std::fread(buf, 1, sizeof buf - 1, rep.out);
    std::fclose(rep.out);
    std::string all(buf, n);
    ASSERT_GE(all.size(), 1u);
    std::string last = lines_of_text(all).back();
    EXPECT_EQ(last, "{\"summary\": {\"files\": 9, \"ok\": 1, \"failed\": 8, \"by_code\": "
                    "{\"3\": 2, \"4\": 1, \"161\": 3, \"1376345\": 2}}}");
}

TEST(CliBatchWire, RecordsRoundTripAndDamageIsSeen) {
    batch_result a;
    a.ok = false;
    a.code = 1376345;
    a.line = 65535;
    a.message = "Syntax error in instruction (uses ...)";
    a.construct = "for-loop";
    a.warnings = {{3, "one"}, {0, std::string("t\0wo", 4)}};
    batch_result b;
    b.ok = true;
    std::string buf;
    wire_put_result(buf, 7, a);
    wire_put_result(buf, 8, b);
    std::string whole = buf;

    /* Byte by byte: nothing until a record is whole. */
    std::string part;
    uint32_t index = 0;
    batch_result got;
    size_t taken = 0;
    for (char c : whole) {
        part += c;
        int rc = wire_take_result(part, index, got);
        ASSERT_GE(rc, 0);
        if (rc == 1) {
            taken++;
            if (taken == 1) {
                EXPECT_EQ(index, 7u);
                EXPECT_FALSE(got.ok);
                EXPECT_EQ(got.code, 1376345);
                EXPECT_EQ(got.line, 65535);
                EXPECT_EQ(got.message, a.message);
                EXPECT_EQ(got.construct, "for-loop");
                ASSERT_EQ(got.warnings.size(), 2u);
                EXPECT_EQ(got.warnings[1].text, std::string("t\0wo", 4));
                EXPECT_TRUE(part.empty());
            } else {
                EXPECT_EQ(index, 8u);
                EXPECT_TRUE(got.ok);
                EXPECT_TRUE(got.message.empty());
            }
        }
    }
    EXPECT_EQ(taken, 2u);

    std::string bad = whole;
    bad[3] = 2; /* a record shorter than its fixed fields */
    bad[2] = 0;
    bad[1] = 0;
    bad[0] = 0;
    EXPECT_EQ(wire_take_result(bad, index, got), -1);
    bad = whole;
    bad[0] = 0x7F; /* far too long */
    EXPECT_EQ(wire_take_result(bad, index, got), -1);
    bad = whole;
    bad[11] = 5; /* ok flag neither 0 nor 1 */
    EXPECT_EQ(wire_take_result(bad, index, got), -1);
    bad = whole;
    bad[23] = static_cast<char>(bad[23] + 100); /* message length past the record */
    EXPECT_EQ(wire_take_result(bad, index, got), -1);
}

TEST(CliBatchWalk, ClassesAndOutputNames) {
    const struct {
        const char *name;
        int cls;
    } classes[] = {{"a.ls", 1}, {"A.LS", 1}, {"b.Pe", 1}, {"c.pJ", 1}, {"d.tp", 2}, {"D.TP", 2}, {"e.lsx", 0},
                   {"f.txt", 0}, {"noext", 0}, {"dir.ls/file", 0}, {"dir/.tp", 2}, {"x.tp.bak", 0}};
    for (const auto &c : classes)
        EXPECT_EQ(batch_file_class(c.name), c.cls) << c.name;
    EXPECT_EQ(batch_replace_extension("a/b/prog.ls", ".TP"), "a/b/prog.TP");
    EXPECT_EQ(batch_replace_extension("a.b/prog", ".TP"), "a.b/prog.TP");
    EXPECT_EQ(batch_replace_extension("x.y.pe", ".TP"), "x.y.TP");
    EXPECT_EQ(batch_replace_extension("d/.tp", ".PE"), "d/.tp.PE");
}

} // namespace
