// Finding and loading the effect module.
#include "cli/effect_finder.h"

#include <array>
#include <string>

#include "cli/failure.h"

#if defined(__APPLE__)
#include <mach-o/dyld.h>
#endif

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

#if defined(__APPLE__)
constexpr const char* kModuleName = "Vitrell.plugin/Contents/MacOS/Vitrell";
#else
constexpr const char* kModuleName = "Vitrell.so";
#endif

// From the executable's folder.
constexpr std::array<const char*, 3> kPlaces = {".", "../lib/vitrell", "../src"};

fs::path ExecutableFolder() {
  std::error_code error;
#if defined(__APPLE__)
  std::array<char, 4096> buffer{};
  uint32_t size = buffer.size();
  if (_NSGetExecutablePath(buffer.data(), &size) != 0) return {};
  const fs::path executable = fs::canonical(buffer.data(), error);
#else
  const fs::path executable = fs::read_symlink("/proc/self/exe", error);
#endif
  return executable.parent_path();
}

fs::path CheckNamed(const fs::path& named) {
  std::error_code error;
  if (!fs::exists(named, error)) {
    throw Failure(kFailed, named.string() +
                               ": there is no such effect module. Check the name given to "
                               "--effect, or leave the option out.");
  }
  if (fs::is_directory(named, error)) {
    throw Failure(kFailed, named.string() + ": is a folder. Give --effect the module's file.");
  }
  // Without a slash the loader would search the system's library folders instead.
  return fs::absolute(named, error);
}

}  // namespace

fs::path FindEffect(const fs::path& named) {
  if (!named.empty()) return CheckNamed(named);
  const fs::path folder = ExecutableFolder();
  std::string tried;
  for (const char* place : kPlaces) {
    fs::path candidate = (folder / place / kModuleName).lexically_normal();
    std::error_code error;
    if (fs::is_regular_file(candidate, error)) return candidate;
    tried += (tried.empty() ? "" : ", ") + candidate.string();
  }
  throw Failure(kFailed, "the effect module was not found; looked for " + tried +
                             ". Name it with --effect MODULE.");
}

std::unique_ptr<headless::EffectHost> OpenEffect(const fs::path& named) {
  const fs::path module = FindEffect(named);
  try {
    return std::make_unique<headless::EffectHost>(module);
  } catch (const headless::HostError& error) {
    throw Failure(kFailed, module.string() + ": this module cannot be used. " + error.what());
  }
}

}  // namespace vitrell::cli
