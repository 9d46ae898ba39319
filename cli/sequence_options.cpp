// The options of sequences.
#include <CLI/CLI.hpp>

#include "cli/options.h"

namespace vitrell::cli {
namespace {

constexpr const char* kFrames = "Frames";

void AddChoice(CLI::App& command, const char* name, std::string& value,
               const std::vector<std::string>& choices, const char* text) {
  std::string type;
  for (const std::string& choice : choices) type += (type.empty() ? "" : "|") + choice;
  command.add_option(name, value, text)
      ->check(CLI::IsMember(choices).description(""))
      ->type_name(type)
      ->group(kFrames);
}

}  // namespace

void AddFrameOptions(CLI::App& command, FrameArguments& arguments) {
  command
      .add_option("--frames", arguments.frames,
                  "1-100, 1-100x2, 1,5,10-20; of a video: 10-20 (default: all)")
      ->type_name("SET")
      ->group(kFrames);
  command.add_option("--frames-out", arguments.framesOut, "other numbers for OUTPUT: 1-")
      ->type_name("SET")
      ->group(kFrames);
  AddChoice(command, "--missing", arguments.missing, {"fail", "skip", "hold", "black"},
            "frames without a file (default: fail)");
  AddChoice(command, "--existing", arguments.existing, {"fail", "skip", "overwrite"},
            "frames, or a video, that are there already (default: fail)");
  command.add_flag("--keep-going", arguments.keepGoing, "render the others after a failed frame")
      ->group(kFrames);
  command.add_option("--jobs", arguments.jobs, "frames at once (default: one for each thread)")
      ->check(CLI::Range(0, 1024).description(""))
      ->type_name("N")
      ->group(kFrames);
  command
      .add_option("--memory", arguments.memory,
                  "for all frames at once: 8G (default: half of what is free)")
      ->transform(CLI::AsSizeValue(false).description(""))
      ->type_name("SIZE")
      ->group(kFrames);
  AddChoice(command, "--progress", arguments.progress, {"bar", "plain", "json", "none"},
            "on standard error (default: a bar on a terminal)");
  command.add_option("--status", arguments.status, "a file for what --progress json tells")
      ->type_name("FILE")
      ->group(kFrames);
}

CLI::App* AddCheck(CLI::App& app, CheckArguments& arguments) {
  CLI::App* command = app.add_subcommand("check", "tells missing, torn and stale frames");
  command->footer(
      "Examples:\n"
      "  vitrell check out/look.####.exr --frames 1001-1240\n"
      "\n"
      "A frame is stale when its input or layer has changed since, when another version rendered\n"
      "it, or when nothing is known of how it was made. The exit code is 1 if there are any.");
  command->add_option("OUTPUT", arguments.sequence, "of the render: look.####.exr")
      ->required()
      ->type_name("");
  command
      ->add_option("--frames", arguments.frames,
                   "1-100, 1-100x2, 1,5,10-20 (default: all in the folder)")
      ->type_name("SET");
  command
      ->add_option("--effect", arguments.effect.effect,
                   "the effect module; by default the one beside the program")
      ->type_name("MODULE");
  return command;
}

}  // namespace vitrell::cli
