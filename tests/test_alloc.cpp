// The tracked allocator frees a whole run at once and keeps its list sound.
#include <gtest/gtest.h>

#include <cstring>

#include "core/alloc.h"

TEST(TrackedAllocator, EndFreesEveryBlock) {
    lmalloc_begin();
    for (int i = 0; i < 100; i++)
        ASSERT_NE(lmalloc(static_cast<size_t>(i) * 3 + 1), nullptr);
    EXPECT_EQ(lmalloc_live_blocks(), 100u);
    lmalloc_end();
    EXPECT_EQ(lmalloc_live_blocks(), 0u);
}

TEST(TrackedAllocator, ReallocKeepsContentAndList) {
    lmalloc_begin();
    void *a = lmalloc(8);
    char *b = static_cast<char *>(lmalloc(4));
    void *c = lmalloc(8);
    std::memcpy(b, "abc", 4);
    b = static_cast<char *>(lrealloc(b, 1 << 16));
    ASSERT_NE(b, nullptr);
    EXPECT_STREQ(b, "abc");
    lfree(a);
    lfree(c);
    EXPECT_EQ(lmalloc_live_blocks(), 1u);
    lfree(b);
    EXPECT_EQ(lmalloc_live_blocks(), 0u);
    lfree(nullptr);
    lmalloc_end();
}

TEST(TrackedAllocator, CallocAndEvenSizes) {
    lmalloc_begin();
    unsigned char *z = static_cast<unsigned char *>(lcalloc(3, 5));
    ASSERT_NE(z, nullptr);
    for (int i = 0; i < 19; i++)
        EXPECT_EQ(z[i], 0) << i;
    void *p = nullptr;
    size_t rounded = 0;
    EXPECT_EQ(lalloc_even(&p, 3, &rounded), 0);
    EXPECT_EQ(rounded, 10u);
    EXPECT_EQ(lalloc_even(&p, 11, &rounded), 0);
    EXPECT_EQ(rounded, 12u);
    EXPECT_EQ(lzalloc(&p, 16), 0);
    EXPECT_EQ(static_cast<unsigned char *>(p)[15], 0);
    lmalloc_end();
}

TEST(TrackedAllocator, SecondBeginStartsAnEmptyList) {
    lmalloc_begin();
    ASSERT_NE(lmalloc(8), nullptr);
    lmalloc_begin();
    EXPECT_EQ(lmalloc_live_blocks(), 0u);
    ASSERT_NE(lmalloc(8), nullptr);
    EXPECT_EQ(lmalloc_live_blocks(), 1u);
    lmalloc_end();
}

TEST(TrackedAllocator, ListIdentityChangesPerList) {
    lmalloc_end();
    EXPECT_EQ(lmalloc_list_id(), 0u);
    lmalloc_begin();
    uint64_t first = lmalloc_list_id();
    EXPECT_NE(first, 0u);
    ASSERT_NE(lmalloc(8), nullptr);
    lmalloc_begin();
    uint64_t second = lmalloc_list_id();
    EXPECT_NE(second, first);
    void *mine = lmalloc(8);
    ASSERT_NE(mine, nullptr);
    EXPECT_NE(lrealloc(mine, 64), nullptr);
    EXPECT_EQ(lmalloc_live_blocks(), 1u);
    lmalloc_end();
    EXPECT_EQ(lmalloc_list_id(), 0u);
    /* An allocation with no open list opens one. */
    ASSERT_NE(lmalloc(4), nullptr);
    EXPECT_NE(lmalloc_list_id(), 0u);
    EXPECT_NE(lmalloc_list_id(), second);
    lmalloc_end();
}
