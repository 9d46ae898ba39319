// Matrices, ranges and the conversion.
#include "media/frame_converter.h"

#include <algorithm>
#include <new>
#include <string>

#include "media/failure.h"
#include "media/pixel_formats.h"
#include "media/video_messages.h"
#include "media/video_words.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace vitrell::media {
namespace {

constexpr int kFixedOne = 1 << 16;  // of the converter's contrast and saturation

// 1: full.
int RangeOf(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  if (IsRgb(format) || IsOldFullRange(format)) return 1;
  if (frame.color_range == AVCOL_RANGE_UNSPECIFIED) return IsGrey(format) ? 1 : 0;
  return frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
}

// The converter's own number of a matrix; -1: it does not know it.
int ConverterMatrix(AVColorSpace matrix) {
  switch (matrix) {
    case AVCOL_SPC_BT709:
      return SWS_CS_ITU709;
    case AVCOL_SPC_FCC:
      return SWS_CS_FCC;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
      return SWS_CS_ITU601;
    case AVCOL_SPC_SMPTE240M:
      return SWS_CS_SMPTE240M;
    case AVCOL_SPC_BT2020_NCL:
      return SWS_CS_BT2020;
    default:
      return -1;
  }
}

const int* CoefficientsOf(const AVFrame& frame, const std::filesystem::path& file) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  AVColorSpace matrix = frame.colorspace;
  // RGB as a tag of luma and chroma is a mistake of its writer, as is none.
  if (IsRgb(format) || IsGrey(format) || matrix == AVCOL_SPC_UNSPECIFIED ||
      matrix == AVCOL_SPC_RESERVED || matrix == AVCOL_SPC_RGB) {
    matrix = UsualMatrix(frame.width, frame.height);
  }
  const int known = ConverterMatrix(matrix);
  if (known < 0) {
    const char* name = av_color_space_name(matrix);
    throw Failure(kFailed, file.string() + ": its colour matrix " +
                               (name == nullptr ? "(unknown)" : name) +
                               " cannot be converted to RGB. Convert the video to RGB first.");
  }
  return sws_getCoefficients(known);
}

}  // namespace

FrameConverter::Form FrameConverter::FormOf(const AVFrame& source, const AVFrame& target) {
  return {source.width,  source.height,     source.format,
          target.format, ColoursOf(source), ColoursOf(target)};
}

bool FrameConverter::IsSame(const Form& a, const Form& b) {
  const auto sameColours = [](const VideoColours& x, const VideoColours& y) {
    return x.matrix == y.matrix && x.range == y.range;
  };
  return a.width == b.width && a.height == b.height && a.sourceFormat == b.sourceFormat &&
         a.targetFormat == b.targetFormat && sameColours(a.source, b.source) &&
         sameColours(a.target, b.target);
}

void FrameConverter::Prepare(const AVFrame& source, const AVFrame& target,
                             const std::filesystem::path& file) {
  const Form form = FormOf(source, target);
  if (scaler_ != nullptr && IsSame(form, form_)) return;
  const int* sourceMatrix = CoefficientsOf(source, file);
  const int* targetMatrix = CoefficientsOf(target, file);
  scaler_.reset(sws_alloc_context());
  if (scaler_ == nullptr) throw std::bad_alloc();
  SwsContext* scaler = scaler_.get();
  constexpr int kFlags =
      SWS_BICUBIC | SWS_ACCURATE_RND | SWS_BITEXACT | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;
  av_opt_set_int(scaler, "sws_flags", kFlags, 0);
  av_opt_set_int(scaler, "srcw", source.width, 0);
  av_opt_set_int(scaler, "srch", source.height, 0);
  av_opt_set_int(scaler, "src_format", source.format, 0);
  av_opt_set_int(scaler, "dstw", target.width, 0);
  av_opt_set_int(scaler, "dsth", target.height, 0);
  av_opt_set_int(scaler, "dst_format", target.format, 0);
  av_opt_set_int(scaler, "src_range", RangeOf(source), 0);
  av_opt_set_int(scaler, "dst_range", RangeOf(target), 0);
  av_opt_set_int(scaler, "threads", threads_, 0);
  if (const int error = sws_init_context(scaler, nullptr, nullptr); error < 0) {
    scaler_.reset();
    throw Failure(kFailed, file.string() + ": its pixels (" +
                               DescriptorOf(static_cast<AVPixelFormat>(source.format)).name +
                               ") cannot be converted (" + VideoErrorCause(error) +
                               "). Convert the video to RGB first.");
  }
  // Not before: the contexts of the converter's threads would keep the usual matrix.
  sws_setColorspaceDetails(scaler, sourceMatrix, RangeOf(source), targetMatrix, RangeOf(target), 0,
                           kFixedOne, kFixedOne);
  form_ = form;
}

void FrameConverter::Scale(const AVFrame& source, AVFrame& target,
                           const std::filesystem::path& file) {
  Prepare(source, target, file);
  if (const int error = sws_scale_frame(scaler_.get(), &target, &source); error < 0) {
    throw Failure(kFailed, file.string() + ": a frame cannot be converted (" +
                               VideoErrorCause(error) + "). Use a smaller video or fewer threads.");
  }
}

// Of frames that have another frame's size and colours.
AVFrame& FrameConverter::Between(const AVFrame& like, AVPixelFormat format) {
  if (between_ == nullptr || between_->format != format || between_->width != like.width ||
      between_->height != like.height) {
    between_ = MakeFrame(like.width, like.height, format);
  }
  return *between_;
}

void FrameConverter::Convert(const AVFrame& source, AVFrame& target,
                             const std::filesystem::path& file) {
  const auto from = static_cast<AVPixelFormat>(source.format);
  const auto to = static_cast<AVPixelFormat>(target.format);
  if (to == kRgb16 && IsRgb(from) && !IsDeep(from)) {
    AVFrame& bytes = Between(source, kRgb8);
    Scale(source, bytes, file);
    BytesToWords(bytes, target);
  } else if (to == kRgb16 && !HasExactWords(from)) {
    Scale(source, target, file);
    const AVPixFmtDescriptor& pixels = DescriptorOf(from);
    WidenWords(target,
               HasAlpha(from) ? std::min(16, pixels.comp[pixels.nb_components - 1].depth) : 0);
  } else if (from == kRgb16 && !IsRgb(to)) {
    AVFrame& narrowed = Between(source, kRgb16);
    NarrowWords(source, narrowed);
    Scale(narrowed, target, file);
  } else {
    Scale(source, target, file);
  }
}

}  // namespace vitrell::media
