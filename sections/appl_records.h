/*
** appl_records.h - the loaded application block of cur_side as the
** /APPL printer, the dump and the families see it: groups by number,
** records by number, and the search of a group by its label.
*/
#ifndef VZ_SECTIONS_APPL_RECORDS_H
#define VZ_SECTIONS_APPL_RECORDS_H

#include <cstdint>

/* Bytes of a label that a search compares: 4 for "MOTN", 7 for "CCBD",
   "CCBA", "CCID" and "CCIA", 5 for all others, so that a label with a
   number in its fifth byte ("PLCG" and its pallet) is found per number. */
int32_t appl_label_compare_length(const uint8_t *label, int32_t length);

/* The first group, from appl_low_group up to appl_high_group, whose
   record 0 starts with the label's compared bytes, or -1. Bytes beyond a
   record's or the label's own length compare as 0. */
int32_t appl_find(const uint8_t *label, int32_t length);

/* Record slots of a group (its highest record + 1); 0 for no such group. */
int32_t appl_record_count(int32_t group);

/* The data of record n of a group and its length, or null (length 0)
   when the group or the record is not there. */
const uint8_t *appl_record(int32_t group, int32_t n, int32_t *length);

/* The four label letters of a group's record 0 into out (zero-padded,
   terminated); 0 when the group has a record 0, else 1. */
int32_t appl_group_label(int32_t group, char out[5]);

/* Byte i of a record's data, or 0 past its length. */
inline uint8_t appl_data_byte(const uint8_t *data, int32_t length, int32_t i) {
    return data != nullptr && i >= 0 && i < length ? data[i] : 0;
}

#endif
