/*
** compress_tree.cpp - the packer's binary search tree over the ring's
** 18-byte strings. It replaces a scan of the ring: each input byte costs one
** delete and one insert, each bounded by the ring's 4096 nodes.
*/
#include "utils/compress.h"

#include <bit>
#include <cstring>

void lzss_tree_init(lzss_state *st) {
    for (int i = lz_ring_size + 1; i <= lz_ring_size + 256; i++)
        st->right[i] = lz_nil;
    for (int i = 0; i < lz_ring_size; i++)
        st->parent[i] = lz_nil;
}

/* Index (1 to 17) of the first byte in which the two 18-byte strings differ
   past their common first byte, or 18 when they match in full. Eight bytes
   at a time: the compare is where packing spends its time. */
static int first_difference(const uint8_t *a, const uint8_t *b) {
    for (int i = 1; i < 17; i += 8) {
        uint64_t x, y;
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        if (x == y)
            continue;
        uint64_t d = x ^ y;
        if constexpr (std::endian::native == std::endian::little)
            return i + std::countr_zero(d) / 8;
        else
            return i + std::countl_zero(d) / 8;
    }
    return a[17] != b[17] ? 17 : 18;
}

/* Puts r where p was: p leaves the tree, r inherits its links. */
static void replace_node(lzss_state *st, int p, int r) {
    uint16_t *left = st->left, *right = st->right, *parent = st->parent;
    parent[r] = parent[p];
    left[r] = left[p];
    right[r] = right[p];
    parent[left[p]] = static_cast<uint16_t>(r);
    parent[right[p]] = static_cast<uint16_t>(r);
    if (right[parent[p]] == p)
        right[parent[p]] = static_cast<uint16_t>(r);
    else
        left[parent[p]] = static_cast<uint16_t>(r);
    parent[p] = lz_nil;
}

void lzss_tree_insert(lzss_state *st, int r) {
    const uint8_t *key = &st->ring[r];
    int cmp = 1;
    int p = lz_ring_size + 1 + key[0];
    st->left[r] = st->right[r] = lz_nil;
    st->match_length = 0;
    for (;;) {
        uint16_t *child = cmp >= 0 ? &st->right[p] : &st->left[p];
        if (*child == lz_nil) {
            *child = static_cast<uint16_t>(r);
            st->parent[r] = static_cast<uint16_t>(p);
            return;
        }
        p = *child;
        const uint8_t *node = &st->ring[p];
        int i = first_difference(key, node);
        if (i < lz_max_match)
            cmp = key[i] - node[i];
        /* Only a strictly longer match moves the position: the first node
           met on the way down keeps ties. */
        if (i > st->match_length) {
            st->match_position = p;
            st->match_length = i;
            if (i >= lz_max_match)
                break;
        }
    }
    replace_node(st, p, r);
}

void lzss_tree_delete(lzss_state *st, int p) {
    uint16_t *left = st->left, *right = st->right, *parent = st->parent;
    if (parent[p] == lz_nil)
        return;
    int q;
    if (right[p] == lz_nil) {
        q = left[p];
    } else if (left[p] == lz_nil) {
        q = right[p];
    } else {
        /* Two children: the rightmost node of the left subtree moves up. */
        q = left[p];
        if (right[q] != lz_nil) {
            do
                q = right[q];
            while (right[q] != lz_nil);
            right[parent[q]] = left[q];
            parent[left[q]] = parent[q];
            left[q] = left[p];
            parent[left[p]] = static_cast<uint16_t>(q);
        }
        right[q] = right[p];
        parent[right[p]] = static_cast<uint16_t>(q);
    }
    parent[q] = parent[p];
    if (right[parent[p]] == p)
        right[parent[p]] = static_cast<uint16_t>(q);
    else
        left[parent[p]] = static_cast<uint16_t>(q);
    parent[p] = lz_nil;
}
