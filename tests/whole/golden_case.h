// Renders specified by a settings file, by the command line and by the literal version.
#ifndef VITRELL_WHOLE_GOLDEN_CASE_H_
#define VITRELL_WHOLE_GOLDEN_CASE_H_

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "headless/effect_host.h"
#include "literal/base/types.h"
#include "whole/golden_record.h"

namespace vitrell::whole {

// The folders below tests/golden, each with settings.json and expected.png.
const std::vector<std::string>& GoldenNames();
std::filesystem::path GoldenFolder(const std::string& name);
// The bits that a golden is rendered with are part of its name.
bool IsDeepGolden(const std::string& name);

// The samples of an image file, unconverted.
struct FilePicture {
  int width = 0;
  int height = 0;
  int channels = 0;
  std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>> samples;

  bool operator==(const FilePicture&) const = default;
};

// Adds a test failure and returns an empty image if the file cannot be read.
FilePicture ReadFilePicture(const std::filesystem::path& file);

// A picture of red, green, blue and alpha as the effect sees it in this depth: values of the file's
// depth times white over white, rounded to nearest.
literal::World WorldOf(const FilePicture& picture, bool deep);

// What both renders of one settings file give. The effect's is made by the headless host on one
// thread. Both are cut at white, as a file is.
struct GoldenResults {
  literal::World expected;
  literal::World actual;
};
GoldenResults RenderGolden(const std::filesystem::path& settings, const FilePicture& input,
                           bool deep);

// A golden's values and pictures; output and calls are empty.
GoldenRecord DescribeGolden(const std::string& name, const FilePicture& input);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_GOLDEN_CASE_H_
