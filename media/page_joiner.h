// Picture files of one picture each, put together as the pages of one file.
#ifndef VITRELL_MEDIA_PAGE_JOINER_H_
#define VITRELL_MEDIA_PAGE_JOINER_H_

#include <string_view>

namespace vitrell::media {

// Writes through a sink, which sees every failing write. Functions throw std::runtime_error over
// files that cannot be joined.
class PageJoiner {
 public:
  PageJoiner() = default;
  virtual ~PageJoiner() = default;
  PageJoiner(const PageJoiner&) = delete;
  PageJoiner& operator=(const PageJoiner&) = delete;

  // Appends the picture of a whole file, which is shown for this many hundredths of a second
  // where the format has times.
  virtual void Add(std::string_view file, int delay) = 0;
  // After the last page.
  virtual void Finish() = 0;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PAGE_JOINER_H_
