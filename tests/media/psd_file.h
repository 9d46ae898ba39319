// PSD files for tests, put together byte by byte: no library at hand writes them.
#ifndef VITRELL_TESTS_MEDIA_PSD_FILE_H_
#define VITRELL_TESTS_MEDIA_PSD_FILE_H_

#include <filesystem>
#include <string>
#include <vector>

#include "media/picture_files.h"

namespace vitrell::media {

// Three channels, or four with alpha; its place is that of its first pixel in the canvas.
struct PsdLayer {
  std::string name;
  int x = 0;
  int y = 0;
  FilePicture picture;
};

// 8 bits, uncompressed.
struct PsdFile {
  FilePicture flat;                   // the canvas as its program shows it; three channels
  int orientation = 0;                // of the EXIF data; 0: there are none
  std::vector<PsdLayer> layers = {};  // from the bottom up
};

void WritePsdFile(const std::filesystem::path& file, const PsdFile& psd);

}  // namespace vitrell::media

#endif  // VITRELL_TESTS_MEDIA_PSD_FILE_H_
