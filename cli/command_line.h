// The command line from its arguments to its exit code.
#ifndef VITRELL_CLI_COMMAND_LINE_H_
#define VITRELL_CLI_COMMAND_LINE_H_

namespace vitrell::cli {

// Runs one command and returns its exit code. Nothing is thrown; every error is told on standard
// error as one message.
int RunCommandLine(int argc, const char* const* argv) noexcept;

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_COMMAND_LINE_H_
