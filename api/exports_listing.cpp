/*
** exports_listing.cpp - the listing-to-binary export (not landed yet: it returns its failure result).
*/
#include "vorex_zd.h"

extern "C" {

int32_t zdascbin(const char *, uint16_t *error_code, uint16_t *line_no) {
    if (error_code)
        *error_code = 1;
    if (line_no)
        *line_no = 0;
    return 0;
}

} // extern "C"
