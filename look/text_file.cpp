// Small text files that users name.
#include "look/text_file.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>

#include "look/failure.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

namespace vitrell::look {
namespace {

// A preset with every control is about 2 KiB, a key in it some 100 bytes.
constexpr std::size_t kMaxBytes = std::size_t{1} << 20;

std::FILE* Open(const std::filesystem::path& file) {
  if (!media::IsStandardStream(file)) return std::fopen(file.c_str(), "rb");
  const int input = ::dup(STDIN_FILENO);
  return input < 0 ? nullptr : ::fdopen(input, "rb");
}

}  // namespace

std::string ReadTextFile(const std::filesystem::path& file, const std::string& kind) {
  const auto fail = [&](const std::string& cause) {
    throw Failure(kFailed, kind + " " + media::ShownSource(file) + ": " + cause);
  };
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) fail("is a folder. Give a file.");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(Open(file), &std::fclose);
  if (stream == nullptr) {
    fail(media::LastSystemError() + ". Check the name and your right to read it.");
  }
  std::string text;
  std::array<char, 4096> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), stream.get())) {
    text.append(block.data(), size);
    if (text.size() > kMaxBytes) fail("is too large for a " + kind + ". Check the name.");
  }
  return text;
}

}  // namespace vitrell::look
