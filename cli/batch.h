/*
** batch.h - translating and checking many files in one command: the walk
** over folders, the per-file job a worker process runs, the pool of worker
** processes, named constructs of later listing revisions, and the text and
** JSON reports. The library keeps its state per process, so the work is
** spread over processes, and results are reported in sorted-path order
** whatever the number of workers.
*/
#ifndef VZ_CLI_BATCH_H
#define VZ_CLI_BATCH_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "cli/cli.h"

/* Codes of the command's own failures. None of them has a row in the
   library's message tables; 1 means what it means to the library: a file
   did not open. */
enum batch_code : int32_t {
    batch_code_unreadable = 1,  /* a file or folder cannot be read */
    batch_code_not_program = 2, /* a .TP file that does not decode */
    batch_code_internal = 3,    /* the worker crashed or ran out of time */
    batch_code_unwritable = 4,  /* the output cannot be written */
};

enum batch_kind : uint8_t { kind_listing = 0, kind_program = 1 };

/* What a batch command takes and makes. */
struct batch_plan {
    const char *command = "check";
    bool take_listings = true;  /* folders give .ls, .pe, .pj files */
    bool take_programs = true;  /* folders give .tp files */
    bool write_outputs = false; /* false: translate into scratch only */
    bool to_stdout = false;     /* listings go to standard output (to-text -o -) */
    bool japanese = false;      /* listings are written in Japanese keywords */
    int language = 1;           /* messages: 1 English, 0 Japanese */
    std::string output_dir;     /* -o DIR, mirrored; empty: beside the source */
    std::string output_file;    /* to-text -o FILE for a single program */
    int jobs = 1;
    double timeout = 60.0;
    bool json = false;
    bool quiet = false;
};

/* One file of the batch, or a path that could not be walked. */
struct batch_item {
    std::string path;     /* as reported and sorted */
    std::string output;   /* where the translation goes; empty for none */
    batch_kind kind = kind_listing;
    bool preset = false;  /* the walk already decided the result */
    int32_t preset_code = 0;
    std::string preset_message;
};

struct batch_warning {
    int32_t line = 0;
    std::string text;
};

struct batch_result {
    bool done = false;
    bool ok = false;
    int32_t code = 0;
    int32_t line = 0;
    std::string message;
    std::string construct; /* empty: none */
    std::vector<batch_warning> warnings;
};

/* ---- batch_walk.cpp ---- */

/* Collects the files of the operands: folders recursively (symbolic links
   to folders are not entered), files named directly whatever their name.
   The items come back sorted by path, with output paths set. Returns false
   (after a message) on a usage error such as an unusable -o DIR. */
bool batch_collect(const batch_plan &plan, const std::vector<std::string> &operands,
                   std::vector<batch_item> &items);
/* 1 listing (.ls .pe .pj), 2 program (.tp), 0 neither; any letter case. */
int batch_file_class(const std::string &name);
/* The path with the extension of its last component replaced by ext. */
std::string batch_replace_extension(const std::string &path, const char *ext);

/* ---- batch_job.cpp (runs inside a worker) ---- */

/* Translates or checks one item; scratch is the worker's own folder. */
batch_result batch_run_item(const batch_plan &plan, const batch_item &item, const std::string &scratch);

/* ---- batch_construct.cpp ---- */

struct construct_hit {
    std::string id;   /* stable id: if-then-block, for-loop, ... */
    std::string what; /* "a FOR ... ENDFOR loop" and the like (UTF-8) */
};

/* Looks at line `line` of the listing text and the lines before it that
   the lexer may have read past. True with hit set when one of them holds
   a construct of a later listing revision. */
bool construct_find(const std::string &text, int32_t line, construct_hit &hit);
/* The message with the construct's note appended. */
std::string construct_note(const std::string &message, const construct_hit &hit);
/* The 1-based line of the listing that holds a statement's source text,
   or 0. */
int32_t statement_line(const std::string &text, const std::string &statement);
/* True when the first bytes hold a zero byte: a binary file. */
bool looks_binary(const std::string &head);
/* True when the text begins, after blanks, with "/PROG". */
bool looks_like_listing(const std::string &head);

/* ---- batch_wire.cpp: results between worker and parent ---- */

void wire_put_result(std::string &out, uint32_t index, const batch_result &r);
/* Takes one whole record from the front of buf. 1 taken, 0 more bytes
   needed, -1 damaged. */
int wire_take_result(std::string &buf, uint32_t &index, batch_result &r);

/* ---- batch_pool.cpp ---- */

/* Runs every item that is not preset in worker processes and hands each
   result to sink in item order, as soon as all before it are known. */
struct batch_sink {
    void (*deliver)(void *ctx, size_t index);
    void *ctx;
};
/* Returns false when interrupted by a signal. */
bool batch_run_pool(const batch_plan &plan, const std::vector<batch_item> &items,
                    std::vector<batch_result> &results, batch_sink sink);

/* ---- batch_report.cpp ---- */

struct batch_report {
    FILE *out = stdout;
    bool json = false;
    size_t files = 0, ok = 0, failed = 0;
    std::vector<std::pair<int32_t, size_t>> by_code; /* code, count */
};

/* Prints one file's lines (text) or object (JSON) and counts it. */
void report_file(batch_report &rep, const batch_item &item, const batch_result &r);
/* The summary line or object. */
void report_summary(batch_report &rep);
/* A JSON string literal of bytes: UTF-8 kept, other bytes as \udcXX. */
std::string json_string(const std::string &bytes);
/* "path:line: error CODE: message" and the warning lines, each ending in
   "\n"; the line part is left out when the line is 0. */
std::string report_text_lines(const batch_item &item, const batch_result &r);
/* The summary text line with the three most frequent codes. */
std::string report_summary_text(const batch_report &rep);

/* Progress on standard error: "done/total files, rate files/s". */
struct batch_progress {
    bool on = false;
    size_t total = 0, done = 0;
    double start = 0, last = 0;
    bool shown = false;
};
void progress_begin(batch_progress &p, size_t total, bool quiet);
void progress_step(batch_progress &p);
/* Takes the progress line off the terminal before other output. */
void progress_clear(batch_progress &p);
double batch_now();

/* ---- batch_cmd.cpp ---- */

/* The options every batch command shares: -j, --timeout, --format,
   --quiet, --lang. */
batch_plan batch_plan_from(const cli_options &opts, const char *command);
/* Runs a whole batch and reports it; returns the exit status. */
int batch_main(const batch_plan &plan, const cli_options &opts);

#endif
