// Telling losses.
#include "media/loss_notes.h"

#include <cstdint>
#include <set>
#include <system_error>

#include "media/exchange.h"
#include "media/output_spec.h"

namespace vitrell::media {
namespace {

std::string NameOf(const OIIO::TypeDesc& type) {
  const std::string bits = std::to_string(8 * type.size());
  return bits + (type.is_floating_point() ? "-bit float" : "-bit integers");
}

}  // namespace

void TellLosses(const Picture& input, Depth depth, const OIIO::ImageSpec& wished,
                const OIIO::TypeDesc& actual, const OIIO::ImageSpec& written,
                const std::vector<std::string>& lostMetadata, bool resolutionKept,
                std::vector<std::string>& notices) {
  const OIIO::TypeDesc& type = input.spec.format;
  const OIIO::TypeDesc& had =
      depth == Depth::kAuto && !type.is_floating_point() ? type : wished.format;
  if (actual.size() < had.size()) {
    notices.push_back("the format stores " + NameOf(actual) + ", the picture has " + NameOf(had) +
                      ".");
  }
  if (input.spec.format.is_floating_point() && !actual.is_floating_point()) {
    notices.emplace_back(
        "the float values are written as they are, without colour conversion; linear light looks "
        "dark in this format.");
  }
  std::set<std::string> all(lostMetadata.begin(), lostMetadata.end());
  all.merge(LostMetadata(wished, written));
  if (resolutionKept) all.erase("resolution");
  for (const std::string& lost : all) {
    notices.push_back("the format does not keep the " + lost + ".");
  }
}

void TellClipping(const Picture& input, const headless::WorldBuffer& given,
                  const headless::WorldBuffer& result, std::int64_t clippedPixels,
                  const OIIO::TypeDesc& actual, std::vector<std::string>& notices) {
  if (clippedPixels == 0) return;
  if (!actual.is_floating_point()) {
    notices.push_back(std::to_string(clippedPixels) +
                      " pixels had values outside black to white, which the format does not "
                      "store, and were clipped.");
    return;
  }
  const std::int64_t changed = CountClippedAndChanged(input, given, result);
  if (changed == 0) return;
  notices.push_back(std::to_string(changed) +
                    " pixels that the effect changed had values outside black to white and were "
                    "clipped.");
}

void TellCutOff(const Picture& input, const headless::WorldBuffer& result,
                std::vector<std::string>& notices) {
  const std::int64_t painted = CountPaintedBeyondData(input, result);
  if (painted == 0) return;
  notices.push_back(std::to_string(painted) +
                    " pixels that the effect painted outside the data window are left out.");
}

void TellShrinking(const Picture& input, const Format& format, const std::filesystem::path& written,
                   const Encoding& encoding, std::vector<std::string>& notices) {
  constexpr std::uintmax_t kTooSmall = 3;
  if (!format.quality || encoding.quality || encoding.lossless || input.format != &format) return;
  std::error_code error;
  const std::uintmax_t before = std::filesystem::file_size(input.file, error);
  const std::uintmax_t after = std::filesystem::file_size(written, error);
  if (error || after == 0 || before / after < kTooSmall) return;
  notices.push_back("is " + std::to_string(before / after) +
                    " times smaller than the input; --quality above " +
                    std::to_string(UsualQuality(format)) + " keeps more.");
}

}  // namespace vitrell::media
