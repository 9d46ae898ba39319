// Sentences about what an output does not keep of its input.
#ifndef VITRELL_MEDIA_LOSS_NOTES_H_
#define VITRELL_MEDIA_LOSS_NOTES_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "headless/world_buffer.h"
#include "media/encoding.h"
#include "media/formats.h"
#include "media/picture.h"
#include "media/picture_writer.h"

namespace vitrell::media {

// Types and metadata: `wished` is the header that was asked for, `actual` the type of the pixels
// and `written` the header that was read back. A resolution among the EXIF data counts as kept.
void TellLosses(const Picture& input, Depth depth, const OIIO::ImageSpec& wished,
                const OIIO::TypeDesc& actual, const OIIO::ImageSpec& written,
                const std::vector<std::string>& lostMetadata, bool resolutionKept,
                std::vector<std::string>& notices);

// Floats outside black to white pass the effect where it leaves a pixel alone; elsewhere, and in
// formats of integers, they do not.
void TellClipping(const Picture& input, const headless::WorldBuffer& given,
                  const headless::WorldBuffer& result, std::int64_t clippedPixels,
                  const OIIO::TypeDesc& actual, std::vector<std::string>& notices);

// Some stages reach beyond the pixels of the file, whose window stays as it is.
void TellCutOff(const Picture& input, const headless::WorldBuffer& result,
                std::vector<std::string>& notices);

// A file with loss that becomes far smaller has lost more than before.
void TellShrinking(const Picture& input, const Format& format, const std::filesystem::path& written,
                   const Encoding& encoding, std::vector<std::string>& notices);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_LOSS_NOTES_H_
