// An EXR file that is written anew with one of its pictures rendered.
#ifndef VITRELL_MEDIA_EXR_COPY_H_
#define VITRELL_MEDIA_EXR_COPY_H_

#include <OpenImageIO/imageio.h>

#include <vector>

#include "media/exchange.h"
#include "media/file_sink.h"
#include "media/formats.h"
#include "media/picture.h"

namespace vitrell::media {

// Whether the output can be made from the input's file in this way.
bool CanCopyExr(const Picture& input, const Format& format);

// Writes all parts of the input's file. Those that were not rendered are copied as they are stored,
// deep ones too; the rendered one keeps its header and, bit for bit, the channels that were not
// rendered. Its other channels come from `samples`, floats of the data window, interleaved as
// `form` tells, with the names, types and compression of `spec`. It is written in rows, from top
// to bottom, also where it had tiles. Throws Failure, and what the EXR library throws.
void CopyExr(const Picture& input, const OIIO::ImageSpec& spec, const OutputForm& form,
             const std::vector<float>& samples, FileSink& sink, StoppableProgress& progress);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXR_COPY_H_
