// The shared library exports exactly the C names of the interface.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "vorex_zd.h"

namespace {

const char *const export_names[] = {
    "zdascbin", "zdbinasc_file", "zdbinasc_file_dmp", "zdbinasc_line", "zdbinasc_pos",
    "zdbinasc_prog", "zdbinasc_dicinit", "compare_files", "zdcompress", "zduncompress",
    "zdgeterrmsg", "zdgetspotwarnings", "zdgetspotwarningscount", "zdsetzentohan",
    "zdgetzentohan", "zdreadparam", "zdsetparam", "zdclearparam", "zdgetnumrobot",
    "zdgetrobotname", "zdgetrobotnamejpn", "addrobotconfig",
};

TEST(SharedLibrary, ResolvesAllTwentyTwoExports) {
    void *lib = dlopen(VZ_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    EXPECT_EQ(sizeof export_names / sizeof export_names[0], 22u);
    for (const char *name : export_names)
        EXPECT_NE(dlsym(lib, name), nullptr) << name;
    dlclose(lib);
}

TEST(SharedLibrary, HidesInternalNames) {
    void *lib = dlopen(VZ_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(lib, nullptr) << dlerror();
    EXPECT_EQ(dlsym(lib, "dict_word"), nullptr);
    EXPECT_EQ(dlsym(lib, "lmalloc"), nullptr);
    dlclose(lib);
}

TEST(Switches, ZentohanFlagRoundTrips) {
    EXPECT_EQ(zdsetzentohan(7), 7);
    EXPECT_EQ(zdgetzentohan(), 7);
    EXPECT_EQ(zdsetzentohan(0), 0);
    EXPECT_EQ(zdgetzentohan(), 0);
}

} // namespace
