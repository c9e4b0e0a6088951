/*
** exports_listing.cpp - zdascbin and its run frame: language from the ini,
** dictionary choice from the extension, the image built in memory by the
** section driver, and only then the output file beside the listing.
*/
#include "vorex_zd.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "api/run_reset.h"
#include "asc2bin/section_driver.h"
#include "binfmt/image.h"
#include "binfmt/writer.h"
#include "core/alloc.h"
#include "core/dictionary.h"
#include "core/run_state.h"
#include "platform/platform.h"
#include "text/lexer.h"

namespace {

void read_ini_language() {
    char buf[128];
    platform_profile_string("ZDTS", "LANGUAGE", "0", buf, sizeof buf, "vorex_zd.ini");
    int value = 0;
    if (std::sscanf(buf, "%d", &value) != 1)
        value = 0;
    message_language = value != 0 ? 1 : 0;
}

/* The binary file lies beside the listing with an upper-case extension;
   ".PJ" selects the Japanese reading table, any other extension English. */
void choose_output_name(const char *path) {
    std::snprintf(output_name, sizeof output_name, "%s", path);
    char *dot = std::strrchr(output_name, '.');
    if (dot) {
        for (char *p = dot; *p; p++)
            if (*p >= 'a' && *p <= 'z')
                *p = static_cast<char>(*p - 'a' + 'A');
        dict_select = std::strcmp(dot, ".PJ") == 0 ? 0 : 1;
    } else {
        dot = output_name + std::strlen(output_name);
    }
    size_t room = sizeof output_name - static_cast<size_t>(dot - output_name);
    std::snprintf(dot, room, ".TP");
}

int32_t translate_run(uint16_t *code, uint16_t *line) {
    image_begin();
    input_line_no = 1;
    int32_t rc = parse_listing();
    if (rc != 0) {
        *code = static_cast<uint16_t>(rc);
        *line = static_cast<uint16_t>(input_line_no);
        return 1;
    }
    output_stream = std::fopen(output_name, "wb");
    if (!output_stream) {
        std::fputs("Could not open temporary file\n", stderr);
        *code = 0;
        *line = static_cast<uint16_t>(input_line_no);
        return 1;
    }
    input_line_no = -1;
    rc = write_program();
    std::fclose(output_stream);
    output_stream = nullptr;
    if (rc != 0) {
        *code = static_cast<uint16_t>(rc);
        *line = 65535;
        return 1;
    }
    *code = 0;
    *line = 0;
    return 0;
}

void read_listing_run(const char *path, uint16_t *code, uint16_t *line) {
    if (group_count < 1)
        return;
    run_names_reset();
    source_name[0] = 0;
    std::snprintf(source_name, sizeof source_name, "%s", path);
    source_stream = std::fopen(path, "rb");
    if (!source_stream) {
        *code = 1;
        return;
    }
    choose_output_name(path);
    translate_run(code, line);
    std::fclose(source_stream);
    source_stream = nullptr;
}

} // namespace

extern "C" int32_t zdascbin(const char *listing_path, uint16_t *error_code, uint16_t *line_no) {
    uint16_t code = 0, line = 0;
    dict_reset_reading();
    run_state_reset();
    lmalloc_begin();
    read_ini_language();
    if (listing_path)
        read_listing_run(listing_path, &code, &line);
    image_release();
    lmalloc_end();
    if (error_code)
        *error_code = code;
    if (line_no)
        *line_no = line;
    return code == 0 ? 1 : 0;
}
