// Rows of samples become rows of a frame.
#include "media/still_exchange.h"

#include <cstddef>
#include <cstring>

#include "media/exchange.h"
#include "media/pixel_formats.h"
#include "media/result_rows.h"
#include "media/video_alpha.h"

namespace vitrell::media {
namespace {

OutputForm FormFor(const ChannelLayout& layout, bool deep) {
  OutputForm form;
  form.type = deep ? SampleType::kWord : SampleType::kByte;
  form.straight = true;
  form.wholeFrame = true;
  const OutputChannel alpha{Role::kAlpha, layout.alpha};
  if (!deep) form.channels.push_back(alpha);
  form.channels.push_back({Role::kRed, layout.red});
  form.channels.push_back({Role::kGreen, layout.green});
  form.channels.push_back({Role::kBlue, layout.blue});
  if (deep) form.channels.push_back(alpha);
  return form;
}

}  // namespace

bool TakeStill(const Picture& input, const headless::WorldBuffer& given,
               const headless::WorldBuffer& result, bool overBlack, AVFrame& taken) {
  const bool deep = taken.format == kRgb16;
  const OutputForm form = FormFor(input.layout, deep);
  ResultRows rows(input, given, result, form);
  const std::size_t bytes = static_cast<std::size_t>(taken.width) * (deep ? 8 : 4);
  for (int y = 0; y < taken.height; ++y) {
    std::memcpy(taken.data[0] + std::ptrdiff_t{y} * taken.linesize[0], rows.Take(y, y + 1), bytes);
  }
  const bool transparent = !Inspect(result, {0, 0, taken.width, taken.height}).opaque;
  if (transparent && overBlack) LayOverBlack(taken);
  return transparent;
}

}  // namespace vitrell::media
