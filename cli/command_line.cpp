// Choosing the command, and the one place where errors become messages.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/options.h"
#include "cli/printable.h"
#include "headless/host_error.h"

namespace vitrell::cli {
namespace {

constexpr const char* kAbout = "Renders pictures through the Vitrell lens effect.";

constexpr const char* kExamples =
    "Examples:\n"
    "  vitrell render in.png out.png\n"
    "  vitrell render in.tif out.tif --set lens.type=triangle --set fast-blur.amount=40\n"
    "  vitrell params\n"
    "\n"
    "Exit codes: 0 done, 1 a file or the effect failed, 2 wrong usage, 130 cancelled.\n"
    "`vitrell COMMAND --help` tells more.";

struct Request {
  RenderArguments render;
  ParamsArguments params;
  EffectArguments about;
};

int TellFailure(int code, const std::string& message) {
  std::fprintf(stderr, "vitrell: %s\n", Printable(message).c_str());
  return code;
}

// Help and version come as exceptions too. The parser itself would not name an unknown command.
int TellParseResult(const CLI::App& app, const CLI::ParseError& error,
                    const std::string& firstArgument) {
  if (error.get_exit_code() == 0) return app.exit(error);
  if (firstArgument.empty()) {
    return TellFailure(
        kWrongUsage,
        "a command is needed: render, params, formats or about. Run `vitrell --help`.");
  }
  if (firstArgument[0] != '-' && app.get_subcommands().empty()) {
    return TellFailure(kWrongUsage, "there is no command \"" + firstArgument +
                                        "\". Use render, params, formats or about.");
  }
  std::string command = "vitrell";
  for (const CLI::App* sub : app.get_subcommands()) command += " " + sub->get_name();
  return TellFailure(kWrongUsage, std::string(error.what()) + ". Run `" + command + " --help`.");
}

int Run(int argc, const char* const* argv) {
  WatchSignals();
  Request request;
  CLI::App app(kAbout, "vitrell");
  app.footer(kExamples);
  app.set_version_flag("--version", "vitrell " VITRELL_VERSION);
  app.require_subcommand(1);
  const CLI::App* render = AddRender(app, request.render);
  const CLI::App* params = AddParams(app, request.params);
  const CLI::App* about = AddAbout(app, request.about);
  const CLI::App* formats = AddFormats(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return TellParseResult(app, error, argc > 1 ? argv[1] : "");
  }
  if (render->parsed()) RunRender(request.render);
  if (params->parsed()) RunParams(request.params);
  if (about->parsed()) RunAbout(request.about);
  if (formats->parsed()) RunFormats();
  if (std::fflush(stdout) != 0) throw Failure(kFailed, "the output cannot be written.");
  return kDone;
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv) noexcept {
  try {
    return Run(argc, argv);
  } catch (const Failure& failure) {
    return TellFailure(static_cast<int>(failure.Kind()), failure.what());
  } catch (const headless::HostError& error) {
    return TellFailure(kFailed, error.what());
  } catch (const std::bad_alloc&) {
    return TellFailure(kFailed, "there is not enough memory. Use a smaller picture.");
  } catch (const std::exception& error) {
    return TellFailure(kFailed, std::string("an unexpected error: ") + error.what());
  } catch (...) {
    return TellFailure(kFailed, "an unexpected error.");
  }
}

}  // namespace vitrell::cli
