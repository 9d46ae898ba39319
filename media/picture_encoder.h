// The contents of a picture file, made from the result of the effect.
#ifndef VITRELL_MEDIA_PICTURE_ENCODER_H_
#define VITRELL_MEDIA_PICTURE_ENCODER_H_

#include <OpenImageIO/imageio.h>

#include <filesystem>
#include <string>
#include <vector>

#include "headless/world_buffer.h"
#include "media/formats.h"
#include "media/picture.h"
#include "media/picture_writer.h"

namespace vitrell::media {

struct EncodedPicture {
  OIIO::ImageSpec header;  // as read back from the file
  // What the format cannot hold, in sentences that begin behind the file's name.
  std::vector<std::string> notices;
};

// Writes one picture into `file`, which exists, with the size, metadata and channels of the input.
// Throws Failure, which names the order's target, also when stopped by `progress`.
EncodedPicture EncodePicture(const Picture& input, const headless::WorldBuffer& given,
                             const headless::WorldBuffer& result, const WriteOrder& order,
                             const Format& format, const std::filesystem::path& file,
                             const FileProgress& progress);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PICTURE_ENCODER_H_
