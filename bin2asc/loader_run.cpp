/*
** loader_run.cpp - the read sequence of a whole file and the release of
** what the readers took.
*/
#include "bin2asc/loader.h"
#include "binfmt/tp_format.h"
#include "core/alloc.h"
#include "text/decode_tables.h"
#include "text/put_line.h"

namespace {

const char *const reader_errors[6] = {
    "[zdbinasc_file_sub] progerr\n", "[zdbinasc_file_sub] attrerr\n",
    "[zdbinasc_file_sub] mnerr\n",   "[zdbinasc_file_sub] poserr\n",
    "[zdbinasc_file_sub] applerr\n", "[zdbinasc_file_sub] daughtererr\n",
};

void free_line_list(uint8_t **lines, int32_t count) {
    if (lines == nullptr)
        return;
    for (int32_t i = 0; i < count; i++)
        lfree(lines[i]);
    lfree(lines);
}

} // namespace

int32_t read_program_blocks(int32_t codes[6]) {
    decode_tables_forget(cur_side);
    codes[0] = read_prog_block();
    codes[1] = read_attr_block();
    codes[2] = read_line_block();
    codes[3] = read_pos_block();
    codes[4] = read_appl_block();
    codes[5] = read_daughters();
    bool failed = false;
    for (int i = 0; i < 6; i++)
        failed = failed || codes[i] != 0;
    if (!failed)
        return 0;
    trace("[zdbinasc_file_sub] read NG\n");
    for (int i = 0; i < 6; i++)
        if (codes[i])
            trace("%s", reader_errors[i]);
    return 1;
}

void free_attr_block() {
    int32_t s = cur_side;
    lfree(attr_block[s]);
    attr_block[s] = nullptr;
    attr_block_size[s] = 0;
}

void free_appl_block() {
    int32_t s = cur_side;
    if (appl_groups[s] != nullptr) {
        for (int32_t type = 0; type <= appl_high_group[s]; type++) {
            uint8_t **row = appl_groups[s][type];
            if (row == nullptr)
                continue;
            for (int32_t i = 0; i <= appl_high_record[s][type]; i++)
                lfree(row[i]);
            lfree(row);
        }
    }
    lfree(appl_groups[s]);
    lfree(appl_high_record[s]);
    appl_groups[s] = nullptr;
    appl_high_record[s] = nullptr;
    appl_high_group[s] = appl_low_group[s] = -1;
    appl_loaded[s] = 0;
}

void free_line_blocks() {
    int32_t s = cur_side;
    free_line_list(main_lines[s], main_line_count[s]);
    main_lines[s] = nullptr;
    main_line_count[s] = main_line_capacity[s] = 0;
    for (int32_t slot = 0; slot < TP_DAUGHTER_SLOTS; slot++) {
        free_line_list(daughter_lines[s][slot], daughter_line_count[s][slot]);
        daughter_lines[s][slot] = nullptr;
        daughter_line_count[s][slot] = daughter_line_capacity[s][slot] = 0;
    }
}

void free_pos_block() {
    int32_t s = cur_side;
    if (pos_records[s] != nullptr)
        for (int32_t i = 0; i < pos_count[s]; i++)
            lfree(pos_records[s][i]);
    lfree(pos_records[s]);
    lfree(pos_comments[s]);
    lfree(pos_used[s]);
    pos_records[s] = pos_comments[s] = nullptr;
    pos_used[s] = nullptr;
    pos_count[s] = pos_capacity[s] = 0;
}

void free_program_blocks() {
    free_attr_block();
    free_appl_block();
    free_line_blocks();
    free_pos_block();
}
