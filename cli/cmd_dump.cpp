/*
** cmd_dump.cpp - the dump subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_dump(cli_options &) { return cli_not_available("dump"); }
