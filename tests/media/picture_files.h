// Picture files for tests, written and read with the picture library alone.
#ifndef VITRELL_TESTS_MEDIA_PICTURE_FILES_H_
#define VITRELL_TESTS_MEDIA_PICTURE_FILES_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace vitrell::media {

struct FilePicture {
  OIIO::ImageSpec spec;
  std::vector<uint16_t> samples;  // 8-bit values are held as they are, not scaled
  std::vector<float> floats;      // of float files instead
};

// Samples over the whole range of the type, no two neighbours alike; the same for the same seed.
// With associated true colours never exceed alpha, as files of that kind hold them.
FilePicture NoisePicture(int width, int height, int channels, OIIO::TypeDesc type, uint32_t seed,
                         bool associated = false);

// As its attributes tell: straight where it has oiio:UnassociatedAlpha.
void WritePictureFile(const std::filesystem::path& file, const FilePicture& picture);

// The stored samples, alpha left as it is.
FilePicture ReadPictureFile(const std::filesystem::path& file);

// Every page of a TIFF or frame of a GIF as 16 bits, in the same way.
std::vector<FilePicture> ReadPages(const std::filesystem::path& file);

// The picture that a viewer shows of one whose orientation tag is this, pixel by pixel as EXIF
// defines the tag: the sides of the viewed picture at which the stored first row and column lie.
FilePicture Viewed(const FilePicture& stored, int orientation);

}  // namespace vitrell::media

#endif  // VITRELL_TESTS_MEDIA_PICTURE_FILES_H_
