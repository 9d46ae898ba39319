// Comparing the files of a render.
#include "cli/render_checks.h"

#include "cli/failure.h"
#include "media/output_file.h"
#include "media/picture_writer.h"

namespace vitrell::cli {
namespace {

void RefuseSame(const std::string& role, const std::string& file, const std::string& otherRole,
                const std::string& other) {
  if (file.empty() || other.empty() || !media::IsSameFile(file, other)) return;
  throw Failure(kWrongUsage, file + ": " + role + " is the same file as " + otherRole +
                                 ", which would be lost. Choose another name.");
}

void RefuseSameFiles(const RenderArguments& arguments, const std::string& layerPath) {
  const std::string& output = arguments.output;
  const std::string& saved = arguments.savePreset;
  RefuseSame("OUTPUT", output, "INPUT", arguments.input);
  RefuseSame("OUTPUT", output, "the custom layer", layerPath);
  RefuseSame("OUTPUT", output, "--preset", arguments.effect.preset);
  RefuseSame("--save-preset", saved, "OUTPUT", output);
  RefuseSame("--save-preset", saved, "INPUT", arguments.input);
  RefuseSame("--save-preset", saved, "the custom layer", layerPath);
}

}  // namespace

void CheckFiles(const RenderArguments& arguments, const std::string& layerPath) {
  RefuseSameFiles(arguments, layerPath);
  media::CheckTarget(arguments.output, arguments.force);
  media::CheckWritable(arguments.output);
  if (!arguments.savePreset.empty()) media::CheckTarget(arguments.savePreset, arguments.force);
}

}  // namespace vitrell::cli
