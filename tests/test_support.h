// Shared helpers of the tests: run a listing through zdascbin and a binary
// through zdbinasc_file in a scratch folder, and small byte utilities.
#ifndef VZ_TESTS_TEST_SUPPORT_H
#define VZ_TESTS_TEST_SUPPORT_H

#include <cstdint>
#include <string>

namespace vzt {

struct asc_result {
    int32_t ok = 0;        // zdascbin's result
    uint16_t code = 0;     // its error code word
    uint16_t line = 0;     // its line word
    bool written = false;  // a .TP file exists after the run
    std::string tp;        // the bytes of that file
};

// Loads the built-in robot cell (one group), so that zdascbin runs.
void load_builtin_cell();

// Writes listing (LF line ends are written as they are) to NAME<ext> in a
// fresh scratch folder and translates it.
asc_result listing_to_binary(const std::string &listing, const std::string &ext = ".PE",
                             const std::string &name = "TEST");

// Writes tp to TEST.TP in a fresh scratch folder and prints it to a listing
// with the given extension (".PE" English, ".PJ" Japanese). result gets
// zdbinasc_file's result when not null. Returns the listing text ("" when
// no file was written).
std::string binary_to_listing(const std::string &tp, const std::string &ext = ".PE",
                              int32_t *result = nullptr);

// A minimal listing around /MN and /POS bodies (each line ending in \n).
std::string listing(const std::string &mn, const std::string &pos = "",
                    const std::string &attr = "", const std::string &appl = "");

// LF to CR LF.
std::string crlf(const std::string &text);
// "0A FF ..." for failure messages.
std::string hex(const std::string &bytes);
// Bytes from a brace list, e.g. bytes({0x1E, 0x58, 0}).
std::string bytes(std::initializer_list<int> values);

// A fresh empty scratch folder, removed at exit.
std::string scratch_dir();

} // namespace vzt

#endif
