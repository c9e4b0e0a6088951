/*
** cmd_message.cpp - the message subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_message(cli_options &) { return cli_not_available("message"); }
