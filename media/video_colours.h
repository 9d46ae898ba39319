// Which colours a video's numbers stand for: the tags of frames and files.
#ifndef VITRELL_MEDIA_VIDEO_COLOURS_H_
#define VITRELL_MEDIA_VIDEO_COLOURS_H_

#include "media/video_handles.h"

namespace vitrell::media {

struct VideoColours {
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVChromaLocation chromaPlace = AVCHROMA_LOC_UNSPECIFIED;
};

// The tags of a decoded frame.
VideoColours ColoursOf(const AVFrame& frame);
void SetColours(const VideoColours& colours, AVFrame& frame);
void SetColours(const VideoColours& colours, AVCodecContext& codec);

// The matrix in use where none is told, as players take it: BT.709 from 1280 pixels of width or
// more than 576 rows on, otherwise BT.601.
AVColorSpace UsualMatrix(int width, int height);

// The tags of frames that were read with `source` and are written in another format. Tags that the
// source lacks stay unspecified, unless RGB becomes luma and chroma: then matrix and range are
// told.
VideoColours ColoursForOutput(const VideoColours& source, AVPixelFormat sourceFormat,
                              AVPixelFormat outputFormat, int width, int height);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_COLOURS_H_
