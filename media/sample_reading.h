// The samples of an opened file.
#ifndef VITRELL_MEDIA_SAMPLE_READING_H_
#define VITRELL_MEDIA_SAMPLE_READING_H_

#include <OpenImageIO/imageio.h>

#include "media/picture.h"

namespace vitrell::media {

// How large a sample is in memory; see Samples.
int SampleBytes(const OIIO::ImageSpec& spec);

// Reads all rows of the picture's part, to which the reader was set. A header may promise any
// number of pixels: memory is touched only for rows that came. Throws Failure, also when stopped.
Samples ReadAllSamples(OIIO::ImageInput& input, const Picture& picture,
                       const FileProgress& progress);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SAMPLE_READING_H_
