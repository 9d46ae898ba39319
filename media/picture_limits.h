// What a picture may cost before it is read.
#ifndef VITRELL_MEDIA_PICTURE_LIMITS_H_
#define VITRELL_MEDIA_PICTURE_LIMITS_H_

#include <cstdint>
#include <filesystem>
#include <optional>

#include "media/formats.h"

namespace vitrell::media {

struct PictureLimits {
  std::int64_t maxPixels = 1'000'000'000;
};

struct PictureSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

// The size told by the first bytes of formats whose readers decode the whole picture when they open
// it (GIF, AVIF, HEIC, JPEG 2000). Empty for the others, and where it cannot be found.
std::optional<PictureSize> PeekSize(const std::filesystem::path& file, const Format& format);

// Bytes that this process can still take, as far as the system tells.
std::int64_t AvailableMemory();

// Refuses a picture of more than the pixels allowed, or whose rendering needs more memory than
// there is. `sampleBytes` and `channels` are those of the file. Throws Failure with the estimate.
void CheckCost(const std::filesystem::path& file, const PictureSize& size, int channels,
               int sampleBytes, const PictureLimits& limits);

// What a render of this picture takes, by its header; 0 for a file that cannot be read.
std::int64_t EstimateBytesOf(const std::filesystem::path& file);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PICTURE_LIMITS_H_
