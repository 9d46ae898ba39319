// Choosing the command, and the one place where errors become messages.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

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
    "Exit codes: 0 done, 1 a file or the effect failed, 2 wrong usage, 130 cancelled; of "
    "sequences\n"
    "and videos also 75 for what may go better later (disk full, memory, a folder gone) and 143\n"
    "for SIGTERM.\n"
    "`vitrell help COMMAND` tells more.";

constexpr const char* kCommands = "render, check, params, keys, formats, about or help";

// Groups one blank line apart, and options without the list of what they exclude.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    std::string text = CLI::Formatter::make_help(app, std::move(name), mode);
    for (std::size_t at = 0; (at = text.find("\n\n\n", at)) != std::string::npos;) {
      text.erase(at, 1);
    }
    return text;
  }

  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string type = option->get_type_size() == 0 ? "" : option->get_type_name();
    return (type.empty() ? "" : " " + type) + (option->get_required() ? " (needed)" : "");
  }
};

struct Request {
  RenderArguments render;
  CheckArguments check;
  ParamsArguments params;
  KeysArguments keys;
  EffectArguments about;
  std::string helpAbout;
};

int TellFailure(int code, const std::string& message) {
  std::fprintf(stderr, "vitrell: %s\n", Printable(message).c_str());
  return code;
}

std::string UnknownCommand(const std::string& name) {
  return "there is no command \"" + name + "\". Use " + kCommands + ".";
}

// An unquoted value with a blank is split by the shell, and its second half is no option.
std::string QuotingHint(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i + 2 < arguments.size(); ++i) {
    const std::string& rest = arguments[i + 2];
    if (arguments[i] != "--set" || rest.empty() || (rest[0] == '-' && rest != "--")) continue;
    std::string hint = " If \"" + arguments[i + 1];
    hint.append(" ").append(rest).append("\" is one value, quote it: --set \"");
    return hint.append(arguments[i + 1]).append(" ").append(rest).append("\".");
  }
  return {};
}

// The parser throws for help and version, too, and its own message does not name an unknown
// command.
int TellParseResult(const CLI::App& app, const CLI::ParseError& error,
                    const std::vector<std::string>& arguments) {
  const std::string firstArgument = arguments.empty() ? "" : arguments[0];
  if (error.get_exit_code() == 0) return app.exit(error);
  if (firstArgument.empty()) {
    return TellFailure(
        kWrongUsage, "a command is needed: " + std::string(kCommands) + ". Run `vitrell --help`.");
  }
  if (firstArgument[0] != '-' && app.get_subcommands().empty()) {
    return TellFailure(kWrongUsage, UnknownCommand(firstArgument));
  }
  std::string command = "vitrell";
  for (const CLI::App* sub : app.get_subcommands()) command += " " + sub->get_name();
  return TellFailure(kWrongUsage, std::string(error.what()) + "." + QuotingHint(arguments) +
                                      " Run `" + command + " --help`.");
}

void TellHelp(CLI::App& app, const std::string& about) {
  if (about.empty()) {
    // App::help would tell about the command `help` itself.
    const std::string text =
        app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    std::fputs(text.c_str(), stdout);
    return;
  }
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (command->get_name() != about) continue;
    std::fputs(command->help("vitrell").c_str(), stdout);
    return;
  }
  throw Failure(kWrongUsage, UnknownCommand(about));
}

int Run(int argc, const char* const* argv) {
  WatchSignals();
  Request request;
  CLI::App app(kAbout, "vitrell");
  app.formatter(std::make_shared<HelpFormatter>());
  app.footer(kExamples);
  app.set_version_flag("-V,--version", "vitrell " VITRELL_VERSION);
  app.require_subcommand(1);
  const CLI::App* render = AddRender(app, request.render);
  const CLI::App* check = AddCheck(app, request.check);
  const CLI::App* params = AddParams(app, request.params);
  const CLI::App* keys = AddKeys(app, request.keys);
  const CLI::App* about = AddAbout(app, request.about);
  const CLI::App* formats = AddFormats(app);
  const CLI::App* help = AddHelp(app, request.helpAbout);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return TellParseResult(app, error, {argv + 1, argv + argc});
  }
  if (render->parsed()) {
    request.render.isRateGiven = render->count("--fps") > 0;
    RunRender(request.render);
  }
  OnlyOnce([&] {
    if (check->parsed()) RunCheck(request.check);
    if (params->parsed()) {
      request.params.frei0r = params->count("--frei0r") > 0;
      request.params.mlt = params->count("--mlt") > 0;
      RunParams(request.params);
    }
    if (keys->parsed()) RunKeys(request.keys);
  });
  if (about->parsed()) RunAbout(request.about);
  if (formats->parsed()) RunFormats();
  if (help->parsed()) TellHelp(app, request.helpAbout);
  if (std::fflush(stdout) != 0) throw Failure(kFailed, "the output cannot be written.");
  return kDone;
}

}  // namespace

void OnlyOnce(const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    if (failure.Kind() != kTryLater) throw;
    throw Failure(kFailed, failure.what());
  }
}

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
