// Listing to .TP and back: a listing in the printer's own layout comes
// back byte for byte, in English and in Japanese.
#include <gtest/gtest.h>

#include <string>

#include "test_decode_tp.h"
#include "test_support.h"
#include "vorex_zd.h"

namespace {

const char *const english_listing =
    "/PROG  ROUND\tJOB\r\n"
    "/ATTR\r\n"
    "OWNER\t        = MNEDITOR;\r\n"
    "COMMENT\t        = \"round trip\";\r\n"
    "PROG_SIZE        = 1234;\r\n"
    "CREATE\t        = DATE 05-01-02  TIME 10:20:30;\r\n"
    "MODIFIED        = DATE 99-12-31  TIME 23:59:30;\r\n"
    "FILE_NAME        = ;\r\n"
    "VERSION        = 3;\r\n"
    "LINE_COUNT        = 4;\r\n"
    "MEMORY_SIZE        = 5678;\r\n"
    "PROTECT\t        = READ;\r\n"
    "TCD:  STACK_SIZE  = 512,\r\n"
    "      TASK_PRIORITY  = 50,\r\n"
    "      TIME_SLICE  = 3,\r\n"
    "      BUSY_LAMP_OFF  = 1,\r\n"
    "      ABORT_REQUEST  = 0,\r\n"
    "      PAUSE_REQUEST  = 2;\r\n"
    "DEFAULT_GROUP        = 1,*,*,*,*;\r\n"
    "CONTROL_CODE        = 00000000 00000001;\r\n"
    "/APPL\r\n"
    "/MN\r\n"
    "   1:  !first remark ;\r\n"
    "   2:   ;\r\n"
    "   3:  !  spaced  out ;\r\n"
    "   4:  ! ;\r\n"
    "   5:  !a remark that is 32 bytes long ;\r\n"
    "/POS\r\n"
    "/END\r\n";

class DecodeRoundTrip : public ::testing::Test {
  protected:
    void SetUp() override {
        vzt::load_builtin_cell();
        zdsetzentohan(0);
    }
    /* Listing file to .TP beside it; the code word of the run. */
    int to_binary(const std::string &listing) {
        uint16_t code = 0xFFFF, line = 0xFFFF;
        zdascbin(listing.c_str(), &code, &line);
        EXPECT_EQ(code, 0) << "line " << line;
        return code;
    }
    tp::scratch_dir dir_;
};

TEST_F(DecodeRoundTrip, EnglishListingComesBackByteForByte) {
    tp::write_text(dir_.file("rt.PE"), english_listing);
    ASSERT_EQ(to_binary(dir_.file("rt.PE")), 0);
    ASSERT_EQ(zdbinasc_file(dir_.file("rt.TP").c_str(), dir_.file("back.PE").c_str()), 1);
    EXPECT_EQ(tp::read_file(dir_.file("back.PE")), english_listing);
}

TEST_F(DecodeRoundTrip, JapaneseListingComesBackByteForByte) {
    tp::write_text(dir_.file("en.PE"), english_listing);
    ASSERT_EQ(to_binary(dir_.file("en.PE")), 0);
    /* The printer's Japanese listing of the program, to .TP and back. */
    ASSERT_EQ(zdbinasc_file(dir_.file("en.TP").c_str(), dir_.file("ja.PJ").c_str()), 1);
    std::string japanese = tp::read_file(dir_.file("ja.PJ"));
    ASSERT_NE(japanese.find("\xBB\xB8\xBE\xB2\xBC\xAC\t        = MNEDITOR;"), std::string::npos);
    ASSERT_EQ(to_binary(dir_.file("ja.PJ")), 0);
    ASSERT_EQ(zdbinasc_file(dir_.file("ja.TP").c_str(), dir_.file("back.PJ").c_str()), 1);
    EXPECT_EQ(tp::read_file(dir_.file("back.PJ")), japanese);
    /* Both languages make the same program. */
    EXPECT_EQ(tp::read_file(dir_.file("ja.TP")), tp::read_file(dir_.file("en.TP")));
}

} // namespace
