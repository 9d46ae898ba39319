// The program `vitrell`.
#include "cli/command_line.h"

int main(int argc, char** argv) { return vitrell::cli::RunCommandLine(argc, argv); }
