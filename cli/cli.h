/*
** cli.h - the vorex-zd command: shared options and the subcommand table.
** to-bin, to-text and check run as batches over files and folders
** (cli/batch.h).
** Exit status: 0 success, 1 a file failed, 2 usage or I/O error.
*/
#ifndef VZ_CLI_CLI_H
#define VZ_CLI_CLI_H

#include <cstdint>
#include <string>
#include <vector>

enum cli_exit { cli_ok = 0, cli_failed = 1, cli_usage = 2 };

struct cli_options {
    std::string config_dir;          /* --config DIR; empty: the built-in cell */
    std::string lang = "en";         /* --lang en|ja for messages */
    std::string output;              /* -o PATH where a subcommand takes one */
    bool check = false;              /* --check: translate, write nothing */
    int jobs = 0;                    /* -j N worker processes; 0: one per core */
    double timeout = 60.0;           /* --timeout SECONDS per file */
    std::string format = "text";     /* --format text|json */
    bool quiet = false;              /* --quiet: no progress line */
    std::vector<std::string> args;   /* the remaining operands */
};

struct cli_command {
    const char *name;
    const char *usage;
    const char *summary;
    int (*run)(cli_options &opts);
};

/* Loads the cell of --config DIR, or the built-in one; false (with a
   message) when it does not load. */
bool cli_load_config(const cli_options &opts, const char *command);
/* Message language of --lang: 1 English, 0 Japanese. */
int cli_language(const cli_options &opts);
/* A listing run delivers its code in 16 bits, losing the upper half
   0x150000 of the syntax family: add it back where only the full code has
   a message. */
int32_t cli_full_code(int32_t code, int32_t language);
/* Message text of a code for a terminal (Japanese as UTF-8), no line end. */
std::string cli_message_text(int32_t code, int32_t language);

/* Prints "<name>: not available yet" and returns cli_usage. */
int cli_not_available(const char *name);

int cmd_to_bin(cli_options &opts);
int cmd_to_text(cli_options &opts);
int cmd_check(cli_options &opts);
int cmd_compare(cli_options &opts);
int cmd_dump(cli_options &opts);
int cmd_compress(cli_options &opts);
int cmd_expand(cli_options &opts);
int cmd_message(cli_options &opts);
int cmd_models(cli_options &opts);

#endif
