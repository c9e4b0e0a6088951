/*
** vorex_zd.h - the C interface of the vorex_zd translator library.
**
** A host calls one function at a time on its own thread; the library is
** not re-entrant. Texts are zero-terminated byte strings (ASCII or
** Shift-JIS) owned by the caller. Output buffers are the caller's too: text
** outputs need at least 512 bytes unless said otherwise.
*/
#ifndef VOREX_ZD_H
#define VOREX_ZD_H

#include <stdint.h>

#if defined(VOREX_ZD_BUILDING)
#define VZ_EXPORT __attribute__((visibility("default")))
#else
#define VZ_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

VZ_EXPORT int32_t zdascbin(const char *listing_path, uint16_t *error_code, uint16_t *line_no);
VZ_EXPORT int32_t zdbinasc_file(const char *binary_path, const char *listing_path);
VZ_EXPORT int32_t zdbinasc_file_dmp(const char *binary_path, const char *dump_path);
VZ_EXPORT int32_t compare_files(const char *left_path, const char *right_path, char *report, int32_t report_size);
VZ_EXPORT int32_t zdbinasc_line(const uint8_t *bytes, int32_t length, char *text);
VZ_EXPORT int32_t zdbinasc_pos(const uint8_t *record, char *text);
VZ_EXPORT int32_t zdbinasc_prog(const char *name, int32_t subtype, char *text);
VZ_EXPORT int32_t zdbinasc_dicinit(int32_t language);
VZ_EXPORT int32_t zdgeterrmsg(int32_t code, char *text);
VZ_EXPORT int32_t zdgetspotwarningscount(void);
VZ_EXPORT int32_t zdgetspotwarnings(int32_t number, char *text);
VZ_EXPORT int32_t zdsetzentohan(int32_t value);
VZ_EXPORT int32_t zdgetzentohan(void);
VZ_EXPORT int32_t zdreadparam(const char *directory);
VZ_EXPORT int32_t zdsetparam(const char *section, const char *key, const char *value);
VZ_EXPORT void    zdclearparam(void);
VZ_EXPORT int32_t zdgetnumrobot(uint16_t *count);
VZ_EXPORT int32_t zdgetrobotname(uint16_t row, char *key, char *english_name);
VZ_EXPORT int32_t zdgetrobotnamejpn(uint16_t row, char *key, char *japanese_name);
VZ_EXPORT int32_t addrobotconfig(const char *key, const char *japanese_name, const char *english_name,
                                 const char *axis_letters, int32_t turn1, int32_t turn2, int32_t turn3,
                                 int32_t f, int32_t l, int32_t u, int32_t t);
VZ_EXPORT int32_t zdcompress(const char *in_path, const char *out_path);
VZ_EXPORT int32_t zduncompress(const char *in_path, const char *out_path);

#ifdef __cplusplus
}
#endif

#endif /* VOREX_ZD_H */
