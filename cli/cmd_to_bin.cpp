/*
** cmd_to_bin.cpp - the to-bin subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_to_bin(cli_options &) { return cli_not_available("to-bin"); }
