/*
** cmd_message.cpp - the message and models subcommands (not landed yet).
*/
#include "cli/cli.h"

int cmd_message(cli_options &) { return cli_not_available("message"); }
int cmd_models(cli_options &) { return cli_not_available("models"); }
