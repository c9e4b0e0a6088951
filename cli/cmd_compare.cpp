/*
** cmd_compare.cpp - the compare and dump subcommands (not landed yet).
*/
#include "cli/cli.h"

int cmd_compare(cli_options &) { return cli_not_available("compare"); }
int cmd_dump(cli_options &) { return cli_not_available("dump"); }
