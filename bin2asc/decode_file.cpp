/*
** decode_file.cpp - the file-level order of work of a binary-to-listing
** translation: keyword language, input, the six block reads, the output
** name, the sections in listing order, and the clean-up on every way out.
*/
#include "bin2asc/decode_file.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "bin2asc/decode_line.h"
#include "bin2asc/loader.h"
#include "binfmt/tp_format.h"
#include "core/dictionary.h"
#include "core/run_state.h"
#include "platform/platform.h"
#include "sections/appl_section.h"
#include "sections/attr_print.h"
#include "sections/pos_print.h"
#include "text/decode_helpers.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

namespace {

constexpr int32_t word_slash = 80;
constexpr int32_t word_prog = 216;
constexpr int32_t word_end = 329;

int32_t read_ini_language() {
    char buf[128];
    platform_profile_string("ZDTS", "LANGUAGE", "0", buf, sizeof buf, "vorex_zd.ini");
    int value = 0;
    if (std::sscanf(buf, "%d", &value) != 1)
        value = 0;
    return value;
}

void print_words(int32_t first, int32_t second) {
    char line[128];
    line[0] = 0;
    text_append(line, sizeof line, dict_word(first));
    text_append(line, sizeof line, dict_word(second));
    put_line(line);
}

typedef int32_t (*section_printer)();

/* The sections of a listing, in order. Their results are not looked at:
   a fault inside a section leaves its mark in the text. */
const section_printer listing_sections[] = {
    print_prog_header, print_attr_section, print_appl_section, print_mn_section, print_pos_section,
};

void print_listing() {
    for (section_printer print : listing_sections)
        print();
    print_words(word_slash, word_end);
}

void close_streams() {
    if (bin_stream != nullptr)
        std::fclose(bin_stream);
    if (list_stream != nullptr)
        std::fclose(list_stream);
    bin_stream = nullptr;
    list_stream = nullptr;
}

} // namespace

const char *subtype_word(int32_t subtype) {
    switch (subtype) {
    case TP_SUBTYPE_JOB: return dict_word(339);
    case TP_SUBTYPE_PROCESS: return dict_word(338);
    case TP_SUBTYPE_MACRO: return dict_word(340);
    case TP_SUBTYPE_COND: return dict_word(389);
    default: return nullptr;
    }
}

int32_t print_prog_header() {
    int32_t s = cur_side;
    const uint8_t *rec = prog_header[s];
    int off = prog_has_subtype[s] ? TP_NAME_OFF_TEXT : TP_NAME_OFF_TEXT_SHORT;
    char name[TP_NAME_FIELD_SIZE + 1];
    size_t n = strnlen(reinterpret_cast<const char *>(rec + off), TP_NAME_FIELD_SIZE);
    std::memcpy(name, rec + off, n);
    name[n] = 0;
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, "/%s  %s\t", dict_word(word_prog), name);
    const char *word = subtype_word(prog_subtype[s]);
    if (word != nullptr)
        text_append(line, sizeof line, word);
    put_line(line);
    return 0;
}

void format_prog_line(const char *name, int32_t subtype, char *out, size_t size) {
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, "/PROG  %s\t", name ? name : "");
    const char *word = subtype_word(subtype);
    if (word != nullptr)
        text_append(line, sizeof line, word);
    std::snprintf(out, size, "%s%c%c", line, 13, 10);
}

int32_t listing_keyword_language(const char *destination) {
    std::string name = destination ? destination : "";
    size_t n = name.size();
    for (size_t i = n >= 2 ? n - 2 : n; i < n; i++)
        if (name[i] >= 'a' && name[i] <= 'z')
            name[i] = static_cast<char>(name[i] - 'a' + 'A');
    return name.find(".PJ") != std::string::npos ? 0 : 1;
}

void default_listing_name(const char *source, int32_t english, char *out, size_t size) {
    /* The base name is behind the last separator: a backslash, as the
       controller's tools write paths, or this platform's slash. */
    const char *base = source;
    for (const char *p = source; *p; p++)
        if (*p == '\\' || *p == '/')
            base = p + 1;
    std::string name = base;
    size_t dot = name.find('.');
    if (dot != std::string::npos)
        name.resize(dot);
    name += english ? ".PE" : ".PJ";
    std::snprintf(out, size, "%s", name.c_str());
}

int32_t zdbinasc_file_sub(const char *source, const char *destination) {
    int32_t result = 1;
    cur_side = 0;
    decode_tables_forget(cur_side);
    bin_stream = nullptr;
    list_stream = nullptr;
    message_language = read_ini_language() != 0 ? 1 : 0;
    dict_select = listing_keyword_language(destination);
    if (source != nullptr)
        bin_stream = std::fopen(source, "rb");
    if (bin_stream == nullptr) {
        trace("[zdbinasc_file_sub] fopen source NG");
        result = 0;
    } else {
        dict_init(dict_select);
        int32_t codes[6];
        if (read_program_blocks(codes) != 0) {
            result = 0;
        } else {
            char made[1024];
            const char *name = destination;
            if (name == nullptr || name[0] == 0) {
                default_listing_name(source, message_language, made, sizeof made);
                name = made;
            }
            list_stream = std::fopen(name, "wb");
            if (list_stream == nullptr)
                result = 0;
            else
                print_listing();
        }
    }
    free_program_blocks();
    close_streams();
    return result;
}
