// Rendering several pages of a file into one output.
#ifndef VITRELL_MEDIA_PAGES_H_
#define VITRELL_MEDIA_PAGES_H_

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "headless/world_buffer.h"
#include "media/file_sink.h"
#include "media/output_file.h"
#include "media/page_joiner.h"
#include "media/picture.h"
#include "media/picture_writer.h"

namespace vitrell::media {

// The pages of a file that `wanted` names, counted from 0: "all", or pages and ranges counted from
// 1 and divided by commas, "2,5-7,9-". Throws Failure where the file has no pages or not these.
std::vector<int> FindPages(const std::filesystem::path& file, const std::string& wanted);

// Refuses a target whose format has one page. Throws Failure.
void CheckTakesPages(const std::filesystem::path& target);

// Writes pages beside the target, which is renamed when all are there. Each is encoded in memory as
// a file of its own, then appended, so that there is never more than one. Functions throw Failure,
// and then there is no file.
class PageWriter {
 public:
  // `source` is the file that the pages come from: frames of a GIF keep their times. References
  // must outlive the object.
  PageWriter(const WriteOrder& order, const std::filesystem::path& source);

  // Pages in the order of the output. `clippedPixels` stands for those of the order.
  void Add(const Picture& input, const headless::WorldBuffer& given,
           const headless::WorldBuffer& result, std::int64_t clippedPixels,
           const FileProgress& progress);
  // After the last page. Returns what WritePicture does, each sentence once, with its pages.
  std::vector<std::string> Finish();

 private:
  std::vector<std::string> Notices() const;
  [[noreturn]] void FailToJoin(const std::string& cause) const;
  void FailIfSinkFailed() const;

  const WriteOrder& order_;
  const Format& format_;
  std::vector<int> delays_;  // of the source's pages; none: it has no times
  OutputFile file_;
  FileSink sink_;
  std::unique_ptr<PageJoiner> joiner_;
  OIIO::ImageSpec header_;  // of the first page
  std::vector<int> pages_;
  std::vector<std::pair<std::string, std::vector<int>>> notices_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PAGES_H_
