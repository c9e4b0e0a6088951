/*
** cmd_translate.cpp - the to_bin and to_text subcommands (not landed yet).
*/
#include "cli/cli.h"

int cmd_to_bin(cli_options &) { return cli_not_available("to-bin"); }
int cmd_to_text(cli_options &) { return cli_not_available("to-text"); }
