/*
** appl_dispense.cpp - the dispense headers, both ways: DISPENSE_PROCESS
** and DISPENSE_JOB with their lines in fixed order, the groups a dispense
** program carries (MNAT, SLAT and the process or job group), and the
** printers of the SLPR and SLJB groups.
*/
#include <cstdint>
#include <cstdio>

#include "core/dictionary.h"
#include "core/error_codes.h"
#include "sections/appl_internal.h"
#include "sections/appl_records.h"
#include "sections/appl_store.h"
#include "text/lexer.h"
#include "text/line_cursor.h"
#include "text/put_line.h"

namespace {

constexpr int32_t process_record_size = 12;
constexpr int32_t job_record_size = 16;
constexpr int32_t fixed_label_size = 8;
constexpr int32_t kind_label_size = 4;
constexpr int32_t uninit_tenths = -1;

/* The groups every dispense header makes; their bytes mean something to
   the controller only. */
const uint8_t process_mnat[fixed_label_size] = {'M', 'N', 'A', 'T', 0, 17, 242, 223};
const uint8_t process_slat[fixed_label_size] = {'S', 'L', 'A', 'T', 0, 0, 0, 1};
const uint8_t job_mnat[fixed_label_size] = {'M', 'N', 'A', 'T', 0, 17, 254, 223};
const uint8_t job_slat[fixed_label_size] = {'S', 'L', 'A', 'T', 0, 0, 0, 0};

/* A real in float, truncated toward zero, held to the 32-bit range. */
int32_t truncate_real(float value) {
    if (!(value > -2147483648.0f))
        return value != value ? 0 : INT32_MIN;
    if (value >= 2147483648.0f)
        return INT32_MAX;
    return static_cast<int32_t>(value);
}

/* "WORD :" of a clause: a wrong word 1376345, a missing ":" 135. */
int32_t clause_head(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != code)
        return ASC_SYNTAX_ERROR;
    next_token(ctx, &tok);
    return tok.code == aw_colon ? 0 : ASC_EXPECT_COLON;
}

int32_t clause_end(scan_ctx *ctx) {
    token_rec tok;
    next_token(ctx, &tok);
    return tok.code == aw_semicolon ? 0 : ASC_EXPECT_SEMICOLON;
}

/* WORD : v ; with v in tenths: n gives n x 10, x gives x x 10 + 0.1
   truncated. */
int32_t tenths_clause(scan_ctx *ctx, int32_t code, int32_t *out) {
    int32_t rc = clause_head(ctx, code);
    if (rc)
        return rc;
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code == tok_integer)
        *out = static_cast<int32_t>(static_cast<uint32_t>(tok.int_value) * 10u);
    else if (tok.code == tok_real)
        *out = truncate_real(tok.real_value * 10.0f + 0.1f);
    else
        return ASC_SYNTAX_ERROR;
    return clause_end(ctx);
}

/* WORD : n ; */
int32_t integer_clause(scan_ctx *ctx, int32_t code, int32_t *out) {
    int32_t rc = clause_head(ctx, code);
    if (rc)
        return rc;
    token_rec tok;
    next_token(ctx, &tok);
    if (tok.code != tok_integer)
        return ASC_SYNTAX_ERROR;
    *out = tok.int_value;
    return clause_end(ctx);
}

/* The head word and its ";", after an optional schedule line. */
int32_t dispense_head(scan_ctx *ctx, int32_t code) {
    token_rec tok;
    peek_token(ctx, &tok);
    int32_t rc = tok.code == aw_smartfollow_schedule ? parse_schedule_clause(ctx) : 0;
    if (rc)
        return rc;
    next_token(ctx, &tok);
    if (tok.code != code)
        return ASC_SYNTAX_ERROR;
    return clause_end(ctx);
}

int32_t optional_schedule(scan_ctx *ctx) {
    token_rec tok;
    peek_token(ctx, &tok);
    return tok.code == aw_smartfollow_schedule ? parse_schedule_clause(ctx) : 0;
}

void put16(uint8_t *at, int32_t value) {
    at[0] = static_cast<uint8_t>(value >> 8);
    at[1] = static_cast<uint8_t>(value);
}

/* The schedule's MOTN group first, then MNAT, SLAT and the kind's group
   with its data record: a dispense program's groups in their fixed
   order. */
int32_t make_dispense_groups(scan_ctx *ctx, const uint8_t *mnat, const uint8_t *slat, const char *kind,
                             const uint8_t *record, int32_t record_size) {
    int32_t rc = 0;
    if (dispense_schedule >= 0) {
        rc = appl_make_motion(dispense_schedule, ctx);
        dispense_schedule = -1;
    }
    if (rc == 0)
        rc = appl_new_group(mnat, fixed_label_size, ctx, nullptr);
    if (rc == 0)
        rc = appl_new_group(slat, fixed_label_size, ctx, nullptr);
    int32_t group = 0;
    if (rc == 0)
        rc = appl_new_group(reinterpret_cast<const uint8_t *>(kind), kind_label_size, ctx, &group);
    return rc ? rc : appl_add_record(group, 1, record, record_size);
}

/* The four times in the order of the text, and their places in a record:
   CYCLE_TIME, LAST_CYCLE_TIME, GUN_ON_TIME, LAST_GUN_ON_TIME. */
const int32_t time_words[4] = {aw_cycle_time, aw_last_cycle_time, aw_gun_on_time, aw_last_gun_on_time};
const int32_t process_time_at[4] = {4, 8, 6, 10};
const int32_t job_time_at[4] = {0, 4, 2, 6};

int32_t read_times(scan_ctx *ctx, uint8_t *record, const int32_t *at) {
    for (int32_t i = 0; i < 4; i++) {
        int32_t value = 0;
        int32_t rc = tenths_clause(ctx, time_words[i], &value);
        if (rc)
            return rc;
        put16(record + at[i], value);
    }
    return 0;
}

/* ---- printing ---------------------------------------------------------- */

int32_t field16(const uint8_t *data, int32_t length, int32_t at) {
    return static_cast<int16_t>((appl_data_byte(data, length, at) << 8) | appl_data_byte(data, length, at + 1));
}

void print_tenths(int32_t word, int32_t tabs, const uint8_t *data, int32_t length, int32_t at) {
    char value[32];
    int32_t tenths = field16(data, length, at);
    if (tenths == uninit_tenths)
        std::snprintf(value, sizeof value, "*uninit*");
    else
        std::snprintf(value, sizeof value, "%.1f", tenths / 10.0);
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, tabs == 2 ? "   %s\t\t%s %s%s" : "   %s\t%s %s%s", dict_word(word),
                  dict_word(aw_colon), value, dict_word(aw_semicolon));
    put_line(line);
}

/* The times in the order of the text, the first and third behind two
   tabs. */
void print_times(const uint8_t *data, int32_t length, const int32_t *at) {
    for (int32_t i = 0; i < 4; i++)
        print_tenths(time_words[i], i % 2 == 0 ? 2 : 1, data, length, at[i]);
}

void print_byte_line(int32_t word, int32_t value) {
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, "   %s\t%s %d%s", dict_word(word), dict_word(aw_colon), value,
                  dict_word(aw_semicolon));
    put_line(line);
}

} // namespace

int32_t parse_schedule_clause(scan_ctx *ctx) {
    int32_t rc = clause_head(ctx, aw_smartfollow_schedule);
    token_rec tok;
    int32_t number = 0;
    if (rc == 0)
        rc = parse_int_range(ctx, &tok, &number, 1, 256);
    if (rc == 0)
        rc = clause_end(ctx);
    if (rc == 0)
        dispense_schedule = number - 1;
    return rc;
}

int32_t parse_dispense_process(scan_ctx *ctx) {
    uint8_t record[process_record_size] = {};
    int32_t rc = dispense_head(ctx, aw_dispense_process);
    if (rc == 0)
        rc = read_times(ctx, record, process_time_at);
    static const int32_t frame_words[3] = {aw_user_frame, aw_tool_frame, aw_equipment_number};
    for (int32_t i = 0; rc == 0 && i < 3; i++) {
        int32_t value = 0;
        rc = integer_clause(ctx, frame_words[i], &value);
        record[i] = static_cast<uint8_t>(value);
    }
    if (rc == 0)
        rc = optional_schedule(ctx);
    if (rc == 0)
        rc = make_dispense_groups(ctx, process_mnat, process_slat, "SLPR", record, process_record_size);
    return rc;
}

int32_t parse_dispense_job(scan_ctx *ctx) {
    uint8_t record[job_record_size] = {};
    int32_t rc = dispense_head(ctx, aw_dispense_job);
    if (rc == 0)
        rc = read_times(ctx, record, job_time_at);
    static const int32_t volume_words[2] = {aw_material_volume, aw_last_mat_volume};
    for (int32_t i = 0; rc == 0 && i < 2; i++) {
        int32_t value = 0;
        rc = tenths_clause(ctx, volume_words[i], &value);
        put16(record + 8 + 2 * i, value);
    }
    int32_t part = 0;
    if (rc == 0)
        rc = integer_clause(ctx, aw_part_id, &part);
    put16(record + 12, part >> 16);
    put16(record + 14, part);
    if (rc == 0)
        rc = optional_schedule(ctx);
    if (rc == 0)
        rc = make_dispense_groups(ctx, job_mnat, job_slat, "SLJB", record, job_record_size);
    return rc;
}

int32_t print_dispense_process(int32_t group) {
    int32_t length = 0;
    const uint8_t *data = appl_record(group, 1, &length);
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, "%s%s", dict_word(aw_dispense_process), dict_word(aw_semicolon));
    put_line(line);
    if (data == nullptr)
        return 1;
    print_times(data, length, process_time_at);
    print_byte_line(aw_user_frame, appl_data_byte(data, length, 0));
    print_byte_line(aw_tool_frame, appl_data_byte(data, length, 1));
    print_byte_line(aw_equipment_number, appl_data_byte(data, length, 2));
    return 0;
}

int32_t print_dispense_job(int32_t group) {
    int32_t length = 0;
    const uint8_t *data = appl_record(group, 1, &length);
    char line[LINE_TEXT_SIZE];
    std::snprintf(line, sizeof line, "   %s%s", dict_word(aw_dispense_job), dict_word(aw_semicolon));
    put_line(line);
    if (data == nullptr)
        return 1;
    print_times(data, length, job_time_at);
    print_tenths(aw_material_volume, 1, data, length, 8);
    print_tenths(aw_last_mat_volume, 1, data, length, 10);
    int32_t part = static_cast<int32_t>((static_cast<uint32_t>(field16(data, length, 12)) << 16) |
                                        static_cast<uint16_t>(field16(data, length, 14)));
    std::snprintf(line, sizeof line, "   %s\t\t%s %ld%s", dict_word(aw_part_id), dict_word(aw_colon),
                  static_cast<long>(part), dict_word(aw_semicolon));
    put_line(line);
    return 0;
}
