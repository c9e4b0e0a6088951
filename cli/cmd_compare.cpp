/*
** cmd_compare.cpp - the compare subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_compare(cli_options &) { return cli_not_available("compare"); }
