// Presets: whatever is read is saved so that it reads back the same.
#include <unistd.h>

#include <fstream>
#include <string>

#include "fuzz/fuzz_panel.h"
#include "look/failure.h"
#include "look/preset.h"

namespace vitrell::fuzz {
namespace {

// Removed when the process ends as it should.
class Folder {
 public:
  Folder() { std::filesystem::create_directories(path_); }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_ = std::filesystem::temp_directory_path() /
                                ("vitrell-preset-fuzzer-" + std::to_string(::getpid()));
};

bool Load(const std::filesystem::path& file, look::Settings& settings) {
  try {
    look::LoadPreset(file, settings);
    return true;
  } catch (const look::Failure& failure) {
    Require(failure.Kind() == look::kFailed, "another exit code than a failure's");
    Require(std::string(failure.what()).find(file.string()) != std::string::npos,
            "the message does not name the file");
    return false;
  }
}

}  // namespace
}  // namespace vitrell::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace fuzz = vitrell::fuzz;
  static const fuzz::Folder folder;
  const std::filesystem::path given = folder.Path() / "given.json";
  const std::filesystem::path saved = folder.Path() / "saved.json";
  std::ofstream(given, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  vitrell::look::Settings settings(fuzz::ThePanel());
  if (!fuzz::Load(given, settings)) return 0;
  vitrell::look::SavePreset(saved, settings);
  vitrell::look::Settings again(fuzz::ThePanel());
  fuzz::Require(fuzz::Load(saved, again), "a saved preset is refused");
  fuzz::Require(again.Values() == settings.Values(), "a saved preset reads back differently");
  return 0;
}
