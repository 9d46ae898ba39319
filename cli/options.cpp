// Describing the options.
#include "cli/options.h"

#include <CLI/CLI.hpp>

namespace vitrell::cli {
namespace {

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

}  // namespace

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
  command
      ->add_option("--channels", arguments.channels,
                   "what to render of an EXR: a layer, or R,G,B[,A] by name")
      ->type_name("NAMES");
  command->add_option("--part", arguments.part, "which part of INPUT, by name or from 0")
      ->type_name("NAME|N");
  command->add_flag("--no-auto-orient", arguments.noAutoOrient,
                    "leave photographs as the camera stored them");
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

CLI::App* AddAbout(CLI::App& app, EffectArguments& arguments) {
  CLI::App* command = app.add_subcommand("about", "shows the effect's own text");
  command->footer(kAboutExamples);
  AddEffectOption(*command, arguments);
  return command;
}

CLI::App* AddFormats(CLI::App& app) {
  return app.add_subcommand("formats", "lists the picture formats");
}

}  // namespace vitrell::cli
