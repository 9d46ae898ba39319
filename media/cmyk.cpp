// Telling inks by what readers and headers say.
#include "media/cmyk.h"

#include <array>
#include <fstream>
#include <string_view>

namespace vitrell::media {
namespace {

// PSD readers do not say what they converted; the number at this place of the header does.
bool IsCmykPsd(const std::filesystem::path& file) {
  constexpr std::size_t kMode = 25;
  constexpr char kCmyk = 4;
  std::array<char, kMode + 1> head{};
  std::ifstream stream(file, std::ios::binary);
  stream.read(head.data(), static_cast<std::streamsize>(head.size()));
  return stream.good() && head[kMode] == kCmyk;
}

}  // namespace

void TellCmyk(Picture& picture) {
  const OIIO::ImageSpec& spec = picture.spec;
  const std::string_view jpeg = spec.get_string_attribute("jpeg:ColorSpace");
  const bool cmyk = jpeg == "CMYK" || jpeg == "YCbCrK" ||
                    spec.get_string_attribute("tiff:ColorSpace") == "CMYK" ||
                    (picture.format->plugin == "psd" && IsCmykPsd(picture.file));
  if (!cmyk) return;
  picture.spec.erase_attribute("ICCProfile");
  picture.spec.erase_attribute("jpeg:ColorSpace");
  picture.notices.push_back(picture.file.string() +
                            ": is in CMYK; it is converted to RGB without its profile, so that "
                            "colours change. Convert it beforehand to choose how.");
}

}  // namespace vitrell::media
