/*
** cmd_to_text.cpp - the to-text subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_to_text(cli_options &) { return cli_not_available("to-text"); }
