// Rewrites an EXR file with one of its parts rendered.
#ifndef VITRELL_MEDIA_EXR_COPY_H_
#define VITRELL_MEDIA_EXR_COPY_H_

#include <OpenImageIO/imageio.h>

#include "media/exchange.h"
#include "media/file_sink.h"
#include "media/formats.h"
#include "media/picture.h"
#include "media/result_rows.h"

namespace vitrell::media {

// Whether the output can be made from the input's file in this way.
bool CanCopyExr(const Picture& input, const Format& format);

// Writes all parts of the input's file. Those that were not rendered are copied as they are stored,
// deep ones too; the rendered one keeps its header and, bit for bit, the channels that were not
// rendered. Its other channels come from `rows`, half floats or floats of the data window,
// interleaved as `form` tells, with the names, types and compression of `spec`. It is written
// from top to bottom and keeps its tiles, but not the smaller copies beside it (mip levels). Throws
// Failure, and what the EXR library throws.
void CopyExr(const Picture& input, const OIIO::ImageSpec& spec, const OutputForm& form,
             ResultRows& rows, FileSink& sink, StoppableProgress& progress);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXR_COPY_H_
