/*
** exports_switches.cpp - the small switch exports: double-byte reduction
** and the printing language of the dictionary.
*/
#include "vorex_zd.h"

#include "core/dictionary.h"
#include "core/run_state.h"

extern "C" {

int32_t zdsetzentohan(int32_t value) {
    zentohan_flag = static_cast<uint32_t>(value);
    return value;
}

int32_t zdgetzentohan(void) { return static_cast<int32_t>(zentohan_flag); }

int32_t zdbinasc_dicinit(int32_t language) {
    dict_init(language);
    return 1;
}

} // extern "C"
