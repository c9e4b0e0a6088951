/*
** cmd_models.cpp - the models subcommand (not landed yet).
*/
#include "cli/cli.h"

int cmd_models(cli_options &) { return cli_not_available("models"); }
