/*
** cmd_compress.cpp - the compress and expand subcommands (not landed yet).
*/
#include "cli/cli.h"

int cmd_compress(cli_options &) { return cli_not_available("compress"); }
int cmd_expand(cli_options &) { return cli_not_available("expand"); }
