// Comparing the files of a render.
#include "cli/render_checks.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "cli/failure.h"
#include "media/output_file.h"
#include "media/pages.h"
#include "media/picture_writer.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

// The file that a standard stream was redirected to; empty if it is none.
std::string FileBehind(const std::string& name, const char* stream) {
  if (!media::IsStandardStream(name)) return name;
  std::error_code ignored;
  return fs::is_regular_file(stream, ignored) ? stream : std::string();
}

void RefuseSame(const std::string& role, const std::string& target, const std::string& otherRole,
                const std::string& source) {
  const std::string file = FileBehind(target, "/dev/stdout");
  const std::string other = FileBehind(source, "/dev/stdin");
  if (file.empty() || other.empty() || !media::IsSameFile(file, other)) return;
  throw Failure(kWrongUsage, media::ShownTarget(target) + ": " + role + " is the same file as " +
                                 otherRole + ", which would be lost. Choose another name.");
}

// Of what is written.
void RefuseSameTargets(const std::string& role, const std::string& target,
                       const std::string& otherRole, const std::string& other) {
  if (media::IsStandardStream(target) && media::IsStandardStream(other)) {
    throw Failure(kWrongUsage, role + " and " + otherRole +
                                   " cannot both be standard output (-). Give one a file name.");
  }
  RefuseSame(role, target, otherRole, FileBehind(other, "/dev/stdout"));
}

void RefuseSameFiles(const RenderArguments& arguments, const std::string& layerPath) {
  const std::string& output = arguments.output;
  const std::string& saved = arguments.savePreset;
  RefuseSame("OUTPUT", output, "INPUT", arguments.input);
  RefuseSame("OUTPUT", output, "the custom layer", layerPath);
  for (const std::string& preset : arguments.effect.presets) {
    RefuseSame("OUTPUT", output, "--preset", preset);
    RefuseSame("--report", arguments.report, "--preset", preset);
  }
  RefuseSame("--report", arguments.report, "INPUT", arguments.input);
  RefuseSame("--report", arguments.report, "the custom layer", layerPath);
  RefuseSameTargets("--report", arguments.report, "OUTPUT", output);
  RefuseSameTargets("--report", arguments.report, "--save-preset", saved);
  RefuseSameTargets("--save-preset", saved, "OUTPUT", output);
  RefuseSame("--save-preset", saved, "INPUT", arguments.input);
  RefuseSame("--save-preset", saved, "the custom layer", layerPath);
}

}  // namespace

void CheckPresetTarget(const std::string& target, bool force) {
  if (target.empty()) return;
  if (media::IsStandardStream(target)) {
    throw Failure(kWrongUsage, "--save-preset: give the name of a file.");
  }
  media::CheckTarget(target, force);
}

void CheckStandardInput(const std::string& input, const EffectArguments& effect) {
  std::vector<std::string> names = effect.presets;
  names.insert(names.end(), {input, effect.keys});
  if (std::count_if(names.begin(), names.end(), media::IsStandardStream) <= 1) return;
  throw Failure(kWrongUsage, "standard input (-) can be read only once. Give the others as files.");
}

void CheckFiles(const RenderArguments& arguments, const std::string& layerPath) {
  CheckNames(arguments, layerPath);
  media::CheckWritable(arguments.output, arguments.encoding);
  if (!arguments.pages.empty()) media::CheckTakesPages(arguments.output);
}

void CheckNames(const RenderArguments& arguments, const std::string& layerPath) {
  RefuseSameFiles(arguments, layerPath);
  media::CheckTarget(arguments.output, arguments.force);
  CheckPresetTarget(arguments.savePreset, arguments.force);
  if (!arguments.report.empty() && !media::IsStandardStream(arguments.report)) {
    media::CheckTarget(arguments.report, arguments.force);
  }
}

}  // namespace vitrell::cli
