/*
** platform.h - small stand-ins for the host platform calls the translator
** relies on: the private profile (ini) reader, the debug trace, the
** double-byte lead test of the Japanese code page and a read probe.
*/
#ifndef VZ_PLATFORM_PLATFORM_H
#define VZ_PLATFORM_PLATFORM_H

#include <cstddef>
#include <cstdint>

/* Reads key from [section] of file; copies the default when any is missing.
   The file is looked up in $VOREX_ZD_INI_DIR when set, else the current
   directory. Returns the number of bytes copied, without the zero. */
size_t platform_profile_string(const char *section, const char *key, const char *def,
                               char *out, size_t out_size, const char *file);

/* Writes text to standard error when VOREX_ZD_TRACE is set, else nowhere. */
void platform_debug_trace(const char *text);

/* Shift-JIS lead bytes: 0x81..0x9F and 0xE0..0xFC. */
inline bool platform_is_lead_byte(unsigned byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/* True when size bytes at p cannot be read; null is the only case we can
   tell without help from the host, so only that one is reported. */
inline bool platform_is_bad_read_ptr(const void *p, size_t size) {
    return p == nullptr && size > 0;
}

#endif
