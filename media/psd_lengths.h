// A look at a PSD file before its reader opens it.
#ifndef VITRELL_MEDIA_PSD_LENGTHS_H_
#define VITRELL_MEDIA_PSD_LENGTHS_H_

#include <string_view>

namespace vitrell::media {

// Whether every length that a PSD or PSB file gives for its palette, resources and layers lies
// within the file. Its reader allocates memory of these lengths before it reads, so that a damaged
// file of a few kilobytes could cost gigabytes. Whatever else may be wrong is left to the reader.
bool HasSoundPsdLengths(std::string_view file);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PSD_LENGTHS_H_
