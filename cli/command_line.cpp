// Options, help texts and the one place where errors become messages.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
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

constexpr const char* kRenderExamples =
    "Examples:\n"
    "  vitrell render in.png out.png\n"
    "  vitrell render in.png out.png --set fast-blur.amount=35 --set lens.feather=20\n"
    "  vitrell render in.exr out.exr --set lens.position=25%,50% --set color.color=#ff8800\n"
    "  vitrell render in.tif out.tif --set lens.type=custom --custom-layer mask.png\n"
    "  vitrell render in.png out.png --preset look.json --set intensity=60\n"
    "  vitrell render in.png out.png --set mode=screen --save-preset look.json\n"
    "\n"
    "Settings: the defaults, then the preset, then --set. `vitrell params` lists all names.\n"
    "--depth auto takes 8 bits for 8-bit files and 16 for all others, and keeps the file's type;\n"
    "8 and 16 tell the bits of OUTPUT too. What the effect leaves as it was keeps its file value.";

constexpr const char* kParamsExamples =
    "Examples:\n"
    "  vitrell params\n"
    "  vitrell params --set lens.type=custom\n"
    "  vitrell params --preset look.json --json\n"
    "  vitrell params --markdown > parameters.md";

constexpr const char* kAboutExamples =
    "Examples:\n"
    "  vitrell about";

struct Request {
  RenderArguments render;
  ParamsArguments params;
  EffectArguments about;
};

void AddEffectOption(CLI::App& command, EffectArguments& arguments) {
  command
      .add_option("--effect", arguments.effect,
                  "the effect module; by default the one beside the program")
      ->type_name("MODULE");
}

void AddSettingOptions(CLI::App& command, EffectArguments& arguments) {
  command.add_option("--set", arguments.assignments, "a control's value; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command.add_option("--preset", arguments.preset, "settings from a file")->type_name("FILE.json");
  AddEffectOption(command, arguments);
}

CLI::App* AddRender(CLI::App& app, RenderArguments& arguments) {
  CLI::App* command = app.add_subcommand("render", "renders one picture");
  command->footer(kRenderExamples);
  command->add_option("INPUT", arguments.input, "PNG, TIFF, JPEG, EXR, DPX, ...")
      ->required()
      ->type_name("");
  command->add_option("OUTPUT", arguments.output, "its extension tells the format")
      ->required()
      ->type_name("");
  AddSettingOptions(*command, arguments.effect);
  command->add_option("--save-preset", arguments.savePreset, "write all settings to a file")
      ->type_name("FILE.json");
  command->add_option("--custom-layer", arguments.customLayer, "the picture for lens.type=custom")
      ->type_name("IMAGE");
  command->add_option("--depth", arguments.depth, "bits the effect works with (default: auto)")
      ->check(CLI::IsMember({"auto", "8", "16"}).description(""))
      ->type_name("auto|8|16");
  command->add_option("--threads", arguments.threads, "how many (default: all cores)")
      ->check(CLI::Range(0, 1024).description(""))
      ->type_name("N");
  command->add_option("--max-pixels", arguments.maxPixels, "largest picture (default: 1000000000)")
      ->check(CLI::PositiveNumber.description(""))
      ->type_name("N");
  command->add_flag("--force", arguments.force, "replace an existing OUTPUT or preset");
  CLI::Option* quiet = command->add_flag("--quiet", arguments.quiet, "tell errors only");
  command->add_flag("--verbose", arguments.verbose, "tell stages and times")->excludes(quiet);
  return command;
}

CLI::App* AddParams(CLI::App& app, ParamsArguments& arguments) {
  CLI::App* command = app.add_subcommand("params", "lists the controls as the panel shows them");
  command->footer(kParamsExamples);
  AddSettingOptions(*command, arguments.effect);
  CLI::Option* json = command->add_flag("--json", arguments.json, "as JSON");
  command->add_flag("--markdown", arguments.markdown, "as Markdown tables")->excludes(json);
  return command;
}

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
  CLI::App* about = app.add_subcommand("about", "shows the effect's own text");
  about->footer(kAboutExamples);
  AddEffectOption(*about, request.about);
  const CLI::App* formats = app.add_subcommand("formats", "lists the picture formats");
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
