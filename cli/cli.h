/*
** cli.h - the vorex-zd command: shared options and the subcommand table.
** Exit status: 0 success, 1 a file failed, 2 usage or I/O error.
*/
#ifndef VZ_CLI_CLI_H
#define VZ_CLI_CLI_H

#include <string>
#include <vector>

enum cli_exit { cli_ok = 0, cli_failed = 1, cli_usage = 2 };

struct cli_options {
    std::string config_dir;          /* --config DIR; empty: the built-in cell */
    std::string lang = "en";         /* --lang en|ja for messages */
    std::string output;              /* -o PATH where a subcommand takes one */
    std::vector<std::string> args;   /* the remaining operands */
};

struct cli_command {
    const char *name;
    const char *usage;
    const char *summary;
    int (*run)(cli_options &opts);
};

/* Prints "<name>: not available yet" and returns cli_usage. */
int cli_not_available(const char *name);

int cmd_to_bin(cli_options &opts);
int cmd_to_text(cli_options &opts);
int cmd_compare(cli_options &opts);
int cmd_dump(cli_options &opts);
int cmd_compress(cli_options &opts);
int cmd_expand(cli_options &opts);
int cmd_message(cli_options &opts);
int cmd_models(cli_options &opts);

#endif
