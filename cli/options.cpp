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
    "  vitrell render in.png out.png --set \"lens.type=rectangle --\" --save-preset look.json\n"
    "  vitrell render scan.tif out.tif --pages all\n"
    "  other-program | vitrell render - - --preset look.json > out.png\n"
    "  vitrell render plate.####.exr out/look.####.exr --frames 1001-1240 --preset look.json\n"
    "  vitrell render plate.####.exr out.mov --fps 24 --preset look.json\n"
    "  vitrell render in.mp4 out.mov --set fast-blur.amount=\"0=0; 1s=40; 2s=0\"\n"
    "\n"
    "Settings: the defaults, then the presets, then --set. `vitrell params` lists all names.\n"
    "--depth auto takes 8 bits for 8-bit files and 16 for all others, and keeps the file's type;\n"
    "8 and 16 tell the bits of OUTPUT too (16: integers, or half floats in EXR). What the effect\n"
    "leaves as it was keeps its file value.";

constexpr const char* kParamsExamples =
    "Examples:\n"
    "  vitrell params\n"
    "  vitrell params --set lens.type=custom\n"
    "  vitrell params --preset look.json --json\n"
    "  vitrell params --preset look.json --set intensity=60 --save-preset softer.json\n"
    "  vitrell params --preset moving.json --at 50\n"
    "  vitrell params --markdown > parameters.md\n"
    "  ffmpeg -i in.mp4 -vf \"$(vitrell params --frei0r look.json)\" out.mp4\n"
    "  melt in.mp4 $(vitrell params --mlt look.json)";

constexpr const char* kKeysExamples =
    "Examples:\n"
    "  vitrell keys --set fast-blur.amount=\"0=0; 1s=40; 2s=0\" --plot curves.svg\n"
    "  vitrell keys --preset moving.json --length 240\n"
    "  vitrell keys --keys copied.txt --fps 24 --json\n"
    "\n"
    "A value may be keys: TIME=VALUE, divided by \";\". TIME is a frame, seconds (1.5s) or\n"
    "00:00:01.500; with a minus it counts from the end. \"=\" goes straight to the next key, "
    "\"~=\"\n"
    "smoothly, \"|=\" holds.";

constexpr const char* kAboutExamples =
    "Examples:\n"
    "  vitrell about";

// The groups of `vitrell render --help`.
constexpr const char* kLook = "Look";
constexpr const char* kFiles = "Files";
constexpr const char* kWork = "Work";
constexpr const char* kWords = "Words";

void AddEffectOption(CLI::App& command, EffectArguments& arguments) {
  command
      .add_option("--effect", arguments.effect,
                  "the effect module; by default the one beside the program")
      ->type_name("MODULE")
      ->group(kWork);
}

void AddSettingOptions(CLI::App& command, EffectArguments& arguments) {
  command.add_option("--set", arguments.assignments, "a control's value; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->group(kLook);
  command
      .add_option("--preset", arguments.presets,
                  "settings from a file; may be repeated, later ones are stronger")
      ->type_name("FILE.json")
      ->allow_extra_args(false)
      ->group(kLook);
}

void AddKeyOptions(CLI::App& command, EffectArguments& arguments, bool still) {
  command.add_option("--keys", arguments.keys, "keyframes copied from the host into a text file")
      ->type_name("FILE")
      ->group(kLook);
  if (still) {
    command.add_option("--at", arguments.at, "the frame whose values are taken (default: 0)")
        ->type_name("FRAME")
        ->group(kLook);
  }
  command
      .add_option("--fps", arguments.framesPerSecond,
                  "for keys in seconds, and of a sequence as video (default: 25)")
      ->check(CLI::Range(0.001, 1e6).description(""))
      ->type_name("RATE")
      ->group(kLook);
  command.add_option("--length", arguments.length, "for keys that count from the end")
      ->check(CLI::Range(1.0, 1e9).description(""))
      ->type_name("FRAMES")
      ->group(kLook);
}

void AddSavePreset(CLI::App& command, std::string& file) {
  command.add_option("--save-preset", file, "write all settings to a file")
      ->type_name("FILE.json")
      ->group(kLook);
}

void AddLookOptions(CLI::App& command, RenderArguments& arguments) {
  AddSettingOptions(command, arguments.effect);
  AddKeyOptions(command, arguments.effect, true);
  AddSavePreset(command, arguments.savePreset);
  command.add_flag("--fit", arguments.fit, "scale a preset's pixels to the width of INPUT")
      ->group(kLook);
  command
      .add_option("--custom-layer", arguments.customLayer,
                  "for lens.type=custom: a picture, a sequence or a video")
      ->type_name("FILE")
      ->group(kLook);
}

void AddEncodingOptions(CLI::App& command, media::Encoding& encoding) {
  command
      .add_option("--quality", encoding.quality,
                  "of JPEG (default: 98), WebP, AVIF, HEIC (90), mp4, webm (65)")
      ->check(CLI::Range(1, 100).description(""))
      ->type_name("1..100")
      ->group(kFiles);
  command
      .add_option("--compression", encoding.compression,
                  "of PNG, TIFF, EXR, TGA; any other name lists them")
      ->type_name("NAME")
      ->group(kFiles);
  command.add_flag("--lossless", encoding.lossless, "without loss, or not at all")->group(kFiles);
}

void AddVideoOptions(CLI::App& command, RenderArguments& arguments) {
  command
      .add_option("--video-codec", arguments.videoCodec,
                  "another than the extension's: h264, hevc, prores, ffv1, ...")
      ->type_name("NAME")
      ->group(kFiles);
  command.add_option("--pixel-format", arguments.pixelFormat, "of a video, as FFmpeg names it")
      ->type_name("NAME")
      ->group(kFiles);
  command
      .add_option("--video-format", arguments.videoFormat,
                  "of a video on standard output (default: as it came in)")
      ->check(CLI::IsMember({"y4m", "nut"}).description(""))
      ->type_name("y4m|nut")
      ->group(kFiles);
}

void AddFileOptions(CLI::App& command, RenderArguments& arguments) {
  command.add_option("--depth", arguments.depth, "bits the effect works with (default: auto)")
      ->check(CLI::IsMember({"auto", "8", "16"}).description(""))
      ->type_name("auto|8|16")
      ->group(kFiles);
  AddEncodingOptions(command, arguments.encoding);
  AddVideoOptions(command, arguments);
  command
      .add_flag("--no-auto-orient", arguments.noAutoOrient,
                "leave photographs as the camera stored them")
      ->group(kFiles);
  command
      .add_option("--channels", arguments.channels,
                  "what to render of an EXR: a layer, or R,G,B[,A] by name")
      ->type_name("NAMES")
      ->group(kFiles);
  CLI::Option* part =
      command
          .add_option("--part", arguments.parts,
                      "which part of INPUT, by name or from 0; K/N: a part of the frames")
          ->allow_extra_args(false)
          ->type_name("NAME|N|K/N")
          ->group(kFiles);
  command
      .add_option("--pages", arguments.pages, "of a TIFF or GIF, into one: all, or from 1: 1-3,7")
      ->check(CLI::Validator([](const std::string& text) { return text.empty() ? "is empty" : ""; },
                             ""))
      ->type_name("PAGES")
      ->excludes(part)
      ->group(kFiles);
  command.add_option("--alpha", arguments.alpha, "how colours stand to alpha, whatever INPUT says")
      ->check(CLI::IsMember({"straight", "premultiplied", "ignore"}).description(""))
      ->type_name("straight|premultiplied|ignore")
      ->group(kFiles);
  command.add_flag("--force", arguments.force, "replace existing files")->group(kFiles);
  command.add_flag("--dry-run", arguments.dryRun, "check everything, render and write nothing")
      ->group(kFiles);
}

void AddWorkOptions(CLI::App& command, RenderArguments& arguments) {
  command
      .add_option("--threads", arguments.threads,
                  "for all work at once, also of codecs (default: all cores)")
      ->check(CLI::Range(0, 1024).description(""))
      ->type_name("N")
      ->group(kWork);
  command.add_option("--max-pixels", arguments.maxPixels, "largest picture (default: 1000000000)")
      ->check(CLI::PositiveNumber.description(""))
      ->type_name("N")
      ->group(kWork);
  AddEffectOption(command, arguments.effect);
}

void AddWordOptions(CLI::App& command, RenderArguments& arguments) {
  command.add_flag("--strict", arguments.strict, "fail where something would be lost")
      ->group(kWords);
  command.add_option("--report", arguments.report, "write what was done as JSON; - to stdout")
      ->type_name("FILE")
      ->group(kWords);
  CLI::Option* quiet =
      command.add_flag("--quiet", arguments.quiet, "tell errors only")->group(kWords);
  command.add_flag("--verbose", arguments.verbose, "tell stages and times")
      ->excludes(quiet)
      ->group(kWords);
}

// Each may be followed by the preset.
void AddFrei0rOptions(CLI::App& command, ParamsArguments& arguments) {
  CLI::Option* frei0r = command.add_option("--frei0r", arguments.hostsPreset,
                                           "as FFmpeg's filter of the frei0r module");
  CLI::Option* mlt =
      command.add_option("--mlt", arguments.hostsPreset, "as melt's arguments for that module");
  for (CLI::Option* option : {frei0r, mlt}) {
    option->type_name("[FILE.json]")->expected(0, 1)->group(kWords);
  }
  mlt->excludes(frei0r);
  // The animation strings hold all frames.
  mlt->excludes(command.get_option("--at"));
}

}  // namespace

CLI::App* AddRender(CLI::App& app, RenderArguments& arguments) {
  CLI::App* command =
      app.add_subcommand("render", "renders a picture, a sequence of them, or a video");
  command->footer(kRenderExamples);
  command
      ->add_option("INPUT", arguments.input,
                   "PNG, TIFF, JPEG, EXR, DPX, ..., or a video; - reads stdin")
      ->required()
      ->type_name("");
  command
      ->add_option("OUTPUT", arguments.output,
                   "its extension tells the format; - writes PNG (or a video) to stdout")
      ->required()
      ->type_name("");
  AddLookOptions(*command, arguments);
  AddFileOptions(*command, arguments);
  AddFrameOptions(*command, arguments.frames);
  AddWorkOptions(*command, arguments);
  AddWordOptions(*command, arguments);
  return command;
}

CLI::App* AddParams(CLI::App& app, ParamsArguments& arguments) {
  CLI::App* command = app.add_subcommand("params", "lists the controls as the panel shows them");
  command->footer(kParamsExamples);
  AddSettingOptions(*command, arguments.effect);
  AddKeyOptions(*command, arguments.effect, true);
  AddSavePreset(*command, arguments.savePreset);
  AddEffectOption(*command, arguments.effect);
  command->add_flag("--force", arguments.force, "replace an existing preset")->group(kLook);
  CLI::Option* json = command->add_flag("--json", arguments.json, "as JSON")->group(kWords);
  command->add_flag("--markdown", arguments.markdown, "as Markdown tables")
      ->excludes(json)
      ->group(kWords);
  AddFrei0rOptions(*command, arguments);
  return command;
}

CLI::App* AddKeys(CLI::App& app, KeysArguments& arguments) {
  CLI::App* command = app.add_subcommand("keys", "lists and draws the controls that move");
  command->footer(kKeysExamples);
  AddSettingOptions(*command, arguments.effect);
  AddKeyOptions(*command, arguments.effect, false);
  AddEffectOption(*command, arguments.effect);
  command->add_option("--plot", arguments.plot, "draw their curves")
      ->type_name("OUT.svg")
      ->group(kFiles);
  command->add_flag("--force", arguments.force, "replace an existing file")->group(kFiles);
  command->add_flag("--json", arguments.json, "as JSON")->group(kWords);
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

CLI::App* AddHelp(CLI::App& app, std::string& about) {
  CLI::App* command = app.add_subcommand("help", "tells about a command");
  command->add_option("COMMAND", about, "render, check, params, keys, formats or about")
      ->type_name("");
  return command;
}

}  // namespace vitrell::cli
