/*
** dump.cpp - the dump driver and the framed dumps of the name record, the
** attribute block, the line and position blocks and the daughters. The
** file is read as for a listing; only the printing step differs.
*/
#include "utils/dump.h"

#include <cstdio>
#include <string>

#include "bin2asc/loader.h"
#include "core/dictionary.h"
#include "core/run_state.h"
#include "platform/platform.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

namespace {

constexpr int32_t row_bytes = 16;
constexpr const char *row_indent = "        ";
constexpr const char *end_mark_row = "        ff ff";

int32_t read_ini_language() {
    char buf[128];
    platform_profile_string("ZDTS", "LANGUAGE", "0", buf, sizeof buf, "vorex_zd.ini");
    int value = 0;
    if (std::sscanf(buf, "%d", &value) != 1)
        value = 0;
    return value;
}

void put_linef(const char *format, int32_t a, int32_t b) {
    char line[128];
    std::snprintf(line, sizeof line, format, a, b);
    put_line(line);
}

void dump_main_lines() {
    int32_t s = cur_side;
    put_line("Line Data Block Begin");
    put_line("        02");
    for (int32_t i = 0; i < main_line_count[s]; i++) {
        const uint8_t *rec = main_lines[s][i];
        put_linef("    Line %d : %d bytes", i + 1, record_length(rec));
        dump_bin(rec + 2, record_length(rec));
    }
    put_line(end_mark_row);
    put_line("Line Data Block End");
    put_line("");
}

/* Each record from its first length byte over as many bytes as its
   payload holds: the length shows and the payload's last two bytes don't.
   The record's guard bytes keep the read inside it. */
void dump_positions() {
    int32_t s = cur_side;
    put_line("Position Data Block Begin");
    put_line("        03");
    for (int32_t i = 0; i < pos_count[s]; i++) {
        const uint8_t *rec = pos_records[s][i];
        int32_t length = record_length(rec);
        put_linef("    Position %d : %d bytes", (rec[2] << 8) | rec[3], length);
        dump_bytes(rec, length);
    }
    put_line(end_mark_row);
    put_line("Position Data Block End");
    put_line("");
}

/* A daughter's lines show as rows, with the ! mark; its positions and
   application records were not kept. */
void dump_daughter(int32_t slot) {
    int32_t s = cur_side;
    put_line("----------------------------------------");
    put_linef("Daughter %d", slot, 0);
    put_line("");
    dump_name_record(daughter_header[s][slot]);
    dump_attr_block(daughter_attr[s][slot]);
    put_line("Line Data Block Begin");
    put_line("        02");
    for (int32_t i = 0; i < daughter_line_count[s][slot]; i++) {
        const uint8_t *rec = daughter_lines[s][slot][i];
        put_linef("    ! Line %d : %d bytes", i + 1, record_length(rec));
        dump_bytes(rec + 2, record_length(rec));
    }
    put_line(end_mark_row);
    put_line("Line Data Block End");
    put_line("");
}

void dump_program() {
    int32_t s = cur_side;
    dump_name_record(prog_header[s]);
    dump_attr_block(attr_block[s]);
    dump_main_lines();
    dump_positions();
    dump_appl_section();
    for (int32_t slot = 1; slot <= daughter_high[s] && slot < TP_DAUGHTER_SLOTS; slot++)
        dump_daughter(slot);
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

void dump_bytes(const uint8_t *bytes, int32_t count) {
    char row[8 + 3 * row_bytes + 1];
    int32_t in_row = 0;
    for (int32_t i = 0; i < count; i++) {
        if (in_row == 0)
            std::snprintf(row, sizeof row, "%s", row_indent);
        std::snprintf(row + 8 + 3 * in_row, sizeof row - 8 - 3 * in_row, "%02x ", bytes[i]);
        if (++in_row == row_bytes) {
            put_line(row);
            in_row = 0;
        }
    }
    if (in_row > 0)
        put_line(row);
}

void dump_bin(const uint8_t *bytes, int32_t count) {
    static const char digits[] = "0123456789ABCDEF";
    std::string line = "        BIN[";
    line.reserve(line.size() + 3 * static_cast<size_t>(count > 0 ? count : 0) + 2);
    for (int32_t i = 0; i < count; i++) {
        if (i > 0)
            line += ',';
        line += digits[bytes[i] >> 4];
        line += digits[bytes[i] & 15];
    }
    line += "];";
    put_line(line.c_str());
}

void dump_name_record(const uint8_t *record) {
    put_line("Prog Data Block Begin");
    dump_bytes(record, 1);
    dump_bytes(record + 1, 17);
    dump_bytes(record + 18, 2);
    put_line("Prog Data Block End");
    put_line("");
}

void dump_attr_block(const uint8_t *block) {
    put_line("Attr Data Block Begin");
    dump_bytes(block, 1);
    dump_bytes(block + 1, 74);
    put_line("        ff ff ");
    put_line("Attr Data Block End");
    put_line("");
}

void default_dump_name(const char *source, char *out, size_t size) {
    const char *base = source;
    for (const char *p = source; *p; p++)
        if (*p == '\\' || *p == '/')
            base = p + 1;
    std::string name = base;
    size_t dot = name.find('.');
    if (dot != std::string::npos)
        name.resize(dot);
    name += ".dmp";
    std::snprintf(out, size, "%s", name.c_str());
}

int32_t dump_file_sub(const char *source, const char *destination) {
    int32_t result = 1;
    cur_side = 0;
    decode_tables_forget(cur_side);
    bin_stream = nullptr;
    list_stream = nullptr;
    message_language = read_ini_language() != 0 ? 1 : 0;
    /* The dump prints no keyword, but the readers run under English. */
    dict_select = 1;
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
                default_dump_name(source, made, sizeof made);
                name = made;
            }
            list_stream = std::fopen(name, "wb");
            if (list_stream == nullptr)
                result = 0;
            else
                dump_program();
        }
    }
    free_program_blocks();
    close_streams();
    return result;
}
