// Telling files apart by device and inode: one look at each, however many frames there are.
#include "cli/sequence_files.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

// Device and inode.
using FileId = std::pair<dev_t, ino_t>;

// Nothing for a file that does not exist.
std::optional<FileId> IdOf(const std::string& file) {
  struct stat status {};
  if (file.empty() || ::stat(file.c_str(), &status) != 0) return std::nullopt;
  return FileId{status.st_dev, status.st_ino};
}

// What each file is to the render: "INPUT", "--preset".
using Roles = std::map<FileId, std::string>;

struct Target {
  std::string role;
  std::string file;
};

[[noreturn]] void Fail(const Target& target, const std::string& otherRole) {
  throw Failure(kWrongUsage, target.file + ": " + target.role + " is the same file as " +
                                 otherRole + ", which would be lost. Choose another name.");
}

void Add(const std::string& file, const char* role, Roles& roles) {
  if (const std::optional<FileId> id = IdOf(file)) roles.emplace(*id, role);
}

void RefuseOneOf(const Roles& roles, const Target& target) {
  const std::optional<FileId> id = IdOf(target.file);
  if (!id) return;
  const auto found = roles.find(*id);
  if (found != roles.end()) Fail(target, found->second);
}

std::vector<Target> SingleTargets(const RenderArguments& arguments, const std::string& statusFile) {
  std::vector<Target> targets;
  for (const Target& target : {Target{"--status", statusFile},
                               {"--report", arguments.report},
                               {"--save-preset", arguments.savePreset}}) {
    if (!target.file.empty() && !media::IsStandardStream(target.file)) targets.push_back(target);
  }
  return targets;
}

Roles FramesThatAreRead(SequencePlan& plan) {
  Roles roles;
  while (const std::optional<FrameJob> job = plan.Next()) {
    Add(job->input, "INPUT", roles);
    Add(job->layer, "the custom layer", roles);
  }
  plan.Rewind();
  return roles;
}

// Frames need not exist yet, and all lie in one folder.
void RefuseFutureFrame(const Target& target, SequencePlan& plan) {
  const fs::path name = fs::path(target.file).filename();
  std::optional<std::string> frame;
  while (const std::optional<FrameJob> job = plan.Next()) {
    if (fs::path(job->output).filename() == name) frame = job->output;
  }
  plan.Rewind();
  if (frame && media::IsSameFile(*frame, target.file)) Fail(target, "OUTPUT");
}

}  // namespace

void CheckSequenceFiles(const RenderArguments& arguments, const std::string& statusFile,
                        SequencePlan& plan) {
  const Roles frames = FramesThatAreRead(plan);
  Roles presets;
  for (const std::string& preset : arguments.effect.presets) Add(preset, "--preset", presets);
  Roles outputs;
  while (const std::optional<FrameJob> job = plan.Next()) {
    RefuseOneOf(frames, {"OUTPUT", job->output});
    RefuseOneOf(presets, {"OUTPUT", job->output});
    Add(job->output, "OUTPUT", outputs);
  }
  plan.Rewind();
  const std::vector<Target> targets = SingleTargets(arguments, statusFile);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const Target& target = targets[i];
    RefuseOneOf(frames, target);
    RefuseOneOf(outputs, target);
    if (target.role != "--save-preset") RefuseOneOf(presets, target);
    RefuseFutureFrame(target, plan);
    for (std::size_t other = 0; other < i; ++other) {
      if (media::IsSameFile(target.file, targets[other].file)) Fail(target, targets[other].role);
    }
  }
}

}  // namespace vitrell::cli
