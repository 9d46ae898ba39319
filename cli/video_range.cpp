// Reading two numbers.
#include "cli/video_range.h"

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "cli/failure.h"

namespace vitrell::cli {
namespace {

// More than anybody films, and nothing overflows.

bool TakeNumber(std::string_view& text, std::int64_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0 || number >= kMostVideoFrames) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool TakeRange(std::string_view text, media::VideoRange& range) {
  if (!TakeNumber(text, range.first)) return false;
  range.last = range.first;
  if (text.empty()) return true;
  const std::size_t dash = text.starts_with("..") ? 2 : text.starts_with('-') ? 1 : 0;
  text.remove_prefix(dash);
  if (dash > 0 && text.empty()) {
    range.last = media::VideoRange::kEnd;
    return true;
  }
  return dash > 0 && TakeNumber(text, range.last) && text.empty() && range.last >= range.first;
}

}  // namespace

media::VideoRange ParseVideoRange(const std::string& text) {
  media::VideoRange range;
  if (text.empty() || TakeRange(text, range)) return range;
  throw Failure(kWrongUsage,
                "--frames " + text +
                    ": a video takes frames without a gap, counted from 0. Give 10-20, "
                    "or 10- for all from there on.");
}

}  // namespace vitrell::cli
