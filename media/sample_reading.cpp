// Reading rows or tiles, block by block.
#include "media/sample_reading.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "media/picture_checks.h"

namespace vitrell::media {
namespace {

bool IsHalf(const OIIO::ImageSpec& spec) {
  const auto isHalf = [](const OIIO::TypeDesc& type) { return type == OIIO::TypeDesc::HALF; };
  return isHalf(spec.format) &&
         std::all_of(spec.channelformats.begin(), spec.channelformats.end(), isHalf);
}

// About 16 MiB, whole blocks of rows of every format.
int RowsAtOnce(const OIIO::ImageSpec& spec, std::size_t rowBytes) {
  constexpr std::size_t kBytes = 16 << 20;
  constexpr std::size_t kTallestBlock = 256;
  const std::size_t block =
      spec.tile_height > 0 ? static_cast<std::size_t>(spec.tile_height) : kTallestBlock;
  return static_cast<int>(block * std::max<std::size_t>(1, kBytes / (rowBytes * block)));
}

// The picture library unpacks blocks of such files by itself and overlooks those that are damaged;
// asked for one row or tile at a time, it leaves them to the TIFF library.
bool HidesDamage(const Picture& picture) {
  return picture.format->plugin == "tiff" &&
         picture.spec.get_string_attribute("compression") == "zip";
}

struct RowRange {
  int begin;
  int end;
};

bool ReadScanlines(OIIO::ImageInput& input, const Picture& picture, const RowRange& range,
                   const OIIO::TypeDesc& type, char* rows, std::size_t rowBytes) {
  if (!HidesDamage(picture)) {
    return input.read_scanlines(picture.part, 0, range.begin, range.end, 0, 0,
                                picture.spec.nchannels, type, rows);
  }
  for (int y = range.begin; y < range.end; ++y, rows += rowBytes) {
    if (!input.read_scanline(y, 0, type, rows)) return false;
  }
  return true;
}

bool ReadTiles(OIIO::ImageInput& input, const Picture& picture, const RowRange& range,
               const OIIO::TypeDesc& type, char* rows, std::size_t rowBytes) {
  const OIIO::ImageSpec& spec = picture.spec;
  const int width = HidesDamage(picture) ? spec.tile_width : spec.width;
  const int height = HidesDamage(picture) ? spec.tile_height : range.end - range.begin;
  const std::size_t pixelBytes = picture.Channels() * type.size();
  for (int y = range.begin; y < range.end; y += height) {
    for (int left = 0; left < spec.width; left += width) {
      const int x = spec.x + left;
      char* const at = rows + static_cast<std::size_t>(y - range.begin) * rowBytes +
                       static_cast<std::size_t>(left) * pixelBytes;
      if (!input.read_tiles(picture.part, 0, x, std::min(x + width, spec.x + spec.width), y,
                            std::min(y + height, range.end), 0, 1, 0, spec.nchannels, type, at,
                            static_cast<OIIO::stride_t>(pixelBytes),
                            static_cast<OIIO::stride_t>(rowBytes))) {
        return false;
      }
    }
  }
  return true;
}

bool ReadRows(OIIO::ImageInput& input, const Picture& picture, int begin, int end,
              const OIIO::TypeDesc& type, void* rows) {
  const OIIO::ImageSpec& spec = picture.spec;
  const RowRange range{spec.y + begin, spec.y + end};
  const std::size_t rowBytes =
      static_cast<std::size_t>(spec.width) * picture.Channels() * type.size();
  const auto read = spec.tile_width == 0 ? &ReadScanlines : &ReadTiles;
  return read(input, picture, range, type, static_cast<char*>(rows), rowBytes);
}

template <typename Sample>
Samples ReadSamples(OIIO::ImageInput& input, const Picture& picture, OIIO::TypeDesc type,
                    const FileProgress& progress) {
  const OIIO::ImageSpec& spec = picture.spec;
  const std::size_t row = static_cast<std::size_t>(spec.width) * picture.Channels();
  const int rowsAtOnce = RowsAtOnce(spec, row * sizeof(Sample));
  StoppableProgress stoppable(progress);
  std::vector<Sample> samples;
  samples.reserve(row * static_cast<std::size_t>(spec.height));
  for (int begin = 0; begin < spec.height; begin += rowsAtOnce) {
    const int end = std::min(begin + rowsAtOnce, spec.height);
    samples.resize(row * static_cast<std::size_t>(end));
    Sample* const rows = samples.data() + row * static_cast<std::size_t>(begin);
    const bool done = ReadRows(input, picture, begin, end, type, rows);
    stoppable.Tell(static_cast<float>(end) / static_cast<float>(spec.height));
    stoppable.ThrowIfStopped();
    const std::string message = OneLine(input.geterror());
    if (!done || !message.empty()) FailAsDamaged(picture.file, message);
  }
  return samples;
}

}  // namespace

int SampleBytes(const OIIO::ImageSpec& spec) {
  if (spec.format == OIIO::TypeDesc::UINT8) return sizeof(uint8_t);
  return spec.format == OIIO::TypeDesc::UINT16 || IsHalf(spec) ? sizeof(uint16_t) : sizeof(float);
}

Samples ReadAllSamples(OIIO::ImageInput& input, const Picture& picture,
                       const FileProgress& progress) {
  if (picture.spec.format == OIIO::TypeDesc::UINT8) {
    return ReadSamples<uint8_t>(input, picture, OIIO::TypeDesc::UINT8, progress);
  }
  if (picture.spec.format == OIIO::TypeDesc::UINT16) {
    return ReadSamples<uint16_t>(input, picture, OIIO::TypeDesc::UINT16, progress);
  }
  if (IsHalf(picture.spec)) {
    return ReadSamples<half>(input, picture, OIIO::TypeDesc::HALF, progress);
  }
  return ReadSamples<float>(input, picture, OIIO::TypeDesc::FLOAT, progress);
}

}  // namespace vitrell::media
