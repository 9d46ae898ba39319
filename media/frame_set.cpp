// Reading, walking and writing sets of frames.
#include "media/frame_set.h"

#include <algorithm>
#include <charconv>

#include "media/failure.h"

namespace vitrell::media {
namespace {

// Far above any frame number in file names or timecodes, and low enough for sums not to overflow.
constexpr std::int64_t kFarthest = 1'000'000'000'000;

[[noreturn]] void FailOver(std::string_view text) {
  throw Failure(kWrongUsage, "\"" + std::string(text) +
                                 "\" is no set of frames. Write 1-100, 1-100x2 or 1,5,10-20.");
}

// Parses an integer and removes it from the front of the text.
std::optional<std::int64_t> TakeNumber(std::string_view& text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < -kFarthest || number > kFarthest) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool Take(std::string_view& text, std::string_view mark) {
  if (!text.starts_with(mark)) return false;
  text.remove_prefix(mark.size());
  return true;
}

}  // namespace

bool FrameSet::Range::Contains(std::int64_t frame) const {
  const std::int64_t way = frame - first;
  return way % step == 0 && way / step >= 0 && way / step < count;
}

FrameSet::Range FrameSet::ParseRange(std::string_view text) {
  std::string_view rest = text;
  const std::optional<std::int64_t> first = TakeNumber(rest);
  if (!first) FailOver(text);
  if (rest.empty()) return {*first, 1, 1};
  if (!Take(rest, "-") && !Take(rest, "..")) FailOver(text);
  const std::optional<std::int64_t> last = TakeNumber(rest);
  if (!last) FailOver(text);
  const bool down = *last < *first;
  std::int64_t step = down ? -1 : 1;
  if (Take(rest, "x") || Take(rest, ":")) {
    const std::optional<std::int64_t> wanted = TakeNumber(rest);
    if (!wanted || *wanted == 0 || (*wanted < 0 && !down)) FailOver(text);
    step = down ? -std::abs(*wanted) : *wanted;
  }
  if (!rest.empty()) FailOver(text);
  return {*first, (*last - *first) / step + 1, step};
}

FrameSet FrameSet::Parse(std::string_view text) {
  FrameSet set;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    set.Append(ParseRange(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  return set;
}

FrameSet FrameSet::ParseOpen(std::string_view text) {
  if (!text.ends_with('-') || text.size() < 2) return Parse(text);
  return Parse(std::string(text) + std::to_string(kFarthest));
}

void FrameSet::Append(const Range& range) {
  ascending_ =
      ascending_ && range.step > 0 && (ranges_.empty() || range.first > ranges_.back().Last());
  ranges_.push_back(range);
}

void FrameSet::Add(std::int64_t frame) {
  if (ranges_.empty()) {
    Append({frame, 1, 1});
    return;
  }
  Range& before = ranges_.back();
  const std::int64_t way = frame - before.Last();
  ascending_ = ascending_ && way > 0;
  if (before.count == 1 && way != 0) {
    before.step = way;
    before.count = 2;
  } else if (before.count > 1 && way == before.step) {
    ++before.count;
  } else if (before.count == 2 && way == 1) {
    // Of 1, 5, 6 the last two belong together.
    const std::int64_t last = before.Last();
    before = {before.first, 1, 1};
    ranges_.push_back({last, 2, 1});
  } else {
    ranges_.push_back({frame, 1, 1});
  }
}

bool FrameSet::IsInEarlier(std::size_t range, std::int64_t frame) const {
  return std::any_of(ranges_.begin(), ranges_.begin() + static_cast<std::ptrdiff_t>(range),
                     [&](const Range& earlier) { return earlier.Contains(frame); });
}

std::vector<FrameSet::Range>::const_iterator FrameSet::RangeAtOrBefore(std::int64_t frame) const {
  const auto next = std::upper_bound(
      ranges_.begin(), ranges_.end(), frame,
      [](std::int64_t wanted, const Range& range) { return wanted < range.first; });
  return next == ranges_.begin() ? ranges_.end() : std::prev(next);
}

std::int64_t FrameSet::Size() const {
  std::int64_t size = 0;
  if (ascending_) {
    for (const Range& range : ranges_) size += range.count;
    return size;
  }
  for (FrameCursor cursor(*this); cursor.Next();) ++size;
  return size;
}

bool FrameSet::Contains(std::int64_t frame) const {
  if (!ascending_) return IsInEarlier(ranges_.size(), frame);
  const auto range = RangeAtOrBefore(frame);
  return range != ranges_.end() && range->Contains(frame);
}

std::int64_t FrameSet::Smallest() const {
  std::int64_t smallest = ranges_.at(0).first;
  for (const Range& range : ranges_) smallest = std::min({smallest, range.first, range.Last()});
  return smallest;
}

std::int64_t FrameSet::Largest() const {
  std::int64_t largest = ranges_.at(0).first;
  for (const Range& range : ranges_) largest = std::max({largest, range.first, range.Last()});
  return largest;
}

std::optional<std::int64_t> FrameSet::AtOrBefore(std::int64_t frame) const {
  std::optional<std::int64_t> best;
  const auto look = [&](const Range& range) {
    const std::int64_t lowest = std::min(range.first, range.Last());
    if (lowest > frame) return;
    const std::int64_t step = std::abs(range.step);
    const std::int64_t reached = lowest + std::min((frame - lowest) / step, range.count - 1) * step;
    best = std::max(best.value_or(reached), reached);
  };
  if (!ascending_) {
    std::for_each(ranges_.begin(), ranges_.end(), look);
  } else if (const auto range = RangeAtOrBefore(frame); range != ranges_.end()) {
    look(*range);
  }
  return best;
}

FrameSet FrameSet::Part(std::int64_t k, std::int64_t n) const {
  const std::int64_t size = Size();
  // Without a product that could overflow.
  const auto beginOf = [&](std::int64_t part) { return size / n * part + size % n * part / n; };
  FrameSet part;
  FrameCursor cursor(*this);
  cursor.Skip(beginOf(k - 1));
  for (std::int64_t left = beginOf(k) - beginOf(k - 1); left > 0; --left) {
    part.Add(cursor.Next().value_or(0));
  }
  return part;
}

FrameSet FrameSet::Holes() const {
  FrameSet holes;
  // In a sequence with a step of two, every second frame is not a hole.
  if (ranges_.size() < 2) return holes;
  FrameCursor cursor(*this);
  std::optional<std::int64_t> before;
  while (const std::optional<std::int64_t> frame = cursor.Next()) {
    if (before && *frame - *before > 1) holes.Append({*before + 1, *frame - *before - 1, 1});
    before = frame;
  }
  return holes;
}

std::optional<std::int64_t> FrameCursor::Next() {
  while (range_ < set_.ranges_.size()) {
    const FrameSet::Range& range = set_.ranges_[range_];
    if (done_ == range.count) {
      ++range_;
      done_ = 0;
      continue;
    }
    const std::int64_t frame = range.first + done_++ * range.step;
    if (set_.ascending_ || !set_.IsInEarlier(range_, frame)) return frame;
  }
  return std::nullopt;
}

void FrameCursor::Skip(std::int64_t frames) {
  while (set_.ascending_ && frames > 0 && range_ < set_.ranges_.size()) {
    const std::int64_t here = std::min(frames, set_.ranges_[range_].count - done_);
    done_ += here;
    frames -= here;
    if (frames == 0) return;
    ++range_;
    done_ = 0;
  }
  while (frames-- > 0 && Next()) {
  }
}

std::string FrameSet::TextOf(const Range& range) {
  std::string first = std::to_string(range.first);
  if (range.count == 1) return first;
  const std::string last = std::to_string(range.Last());
  const std::int64_t step = std::abs(range.step);
  if (range.count == 2) return first + "," + last;
  return first + "-" + last + (step == 1 ? "" : "x" + std::to_string(step));
}

std::string FrameSet::Text() const {
  std::string text;
  for (const Range& range : ranges_) text += (text.empty() ? "" : ",") + TextOf(range);
  return text;
}

}  // namespace vitrell::media
