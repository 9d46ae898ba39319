// Sets of frames as people write them: "1-100", "1,5,10-20", "1-100x2", "10-1".
//
// A set is stored as ranges, so that a million frames take no more memory than ten.
#ifndef VITRELL_MEDIA_FRAME_SET_H_
#define VITRELL_MEDIA_FRAME_SET_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vitrell::media {

class FrameSet {
 public:
  FrameSet() = default;

  // Frames and ranges, separated by commas. A range is FIRST-LAST or FIRST..LAST, up or down, and
  // may take every Nth frame with xN or :N. Frames may be negative. Throws Failure (wrong usage).
  static FrameSet Parse(std::string_view text);
  // The same, and FIRST- for all frames from there on.
  static FrameSet ParseOpen(std::string_view text);

  // Extends the last range if the frame continues it.
  void Add(std::int64_t frame);

  bool IsEmpty() const { return ranges_.empty(); }
  // Whether no frame is followed by one that is not above it.
  bool IsAscending() const { return ascending_; }
  // A frame that is in several ranges counts once, at its first place.
  std::int64_t Size() const;
  bool Contains(std::int64_t frame) const;
  // Of a set that is not empty.
  std::int64_t Smallest() const;
  std::int64_t Largest() const;
  // The largest frame that is not above this one; nothing if there is none.
  std::optional<std::int64_t> AtOrBefore(std::int64_t frame) const;

  // The Kth of N parts that follow one another, k from 1; some are empty where there are more parts
  // than frames.
  FrameSet Part(std::int64_t k, std::int64_t n) const;
  // What lies between the frames of a set that was added up from the smallest on.
  FrameSet Holes() const;

  // "1001-1010,1013,1020-1030x2", which Parse reads.
  std::string Text() const;

 private:
  friend class FrameCursor;

  // `count` frames from `first` on, `step` apart, which is negative for a range that goes down.
  struct Range {
    std::int64_t first = 0;
    std::int64_t count = 1;
    std::int64_t step = 1;

    std::int64_t Last() const { return first + (count - 1) * step; }
    bool Contains(std::int64_t frame) const;
  };

  static Range ParseRange(std::string_view text);
  static std::string TextOf(const Range& range);
  bool IsInEarlier(std::size_t range, std::int64_t frame) const;
  // The last range that begins at or before the frame, of an ascending set.
  std::vector<Range>::const_iterator RangeAtOrBefore(std::int64_t frame) const;
  void Append(const Range& range);

  std::vector<Range> ranges_;
  // Each range goes up and begins behind the end of the one before.
  bool ascending_ = true;
};

// Walks a set in the order written. The set must outlive it.
class FrameCursor {
 public:
  explicit FrameCursor(const FrameSet& set) : set_(set) {}
  // Nothing after the last frame.
  std::optional<std::int64_t> Next();
  // Skips this many frames.
  void Skip(std::int64_t frames);

 private:
  const FrameSet& set_;
  std::size_t range_ = 0;
  std::int64_t done_ = 0;  // of this range
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FRAME_SET_H_
