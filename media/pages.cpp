// Choosing pages, and joining what was rendered of them.
#include "media/pages.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "media/failure.h"
#include "media/formats.h"
#include "media/gif_pages.h"
#include "media/mapped_file.h"
#include "media/memory_file.h"
#include "media/picture_encoder.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"
#include "media/tiff_pages.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// Hundredths of a second that a page is shown if its file has no delays.
constexpr int kUsualDelay = 100;

int CountPages(const fs::path& file, const Format& format) {
  // Reading a frame would decode all frames before it.
  if (format.plugin == "gif") {
    return static_cast<int>(FindGifTimes(MappedFile(file).Text()).delays.size());
  }
  const QuietLibraries quiet;
  const auto input = MakeReader(format);
  OIIO::ImageSpec spec;
  if (input == nullptr || !input->open(file.string(), spec, ReaderWishes())) return 0;
  int pages = 1;
  while (input->seek_subimage(pages, 0)) ++pages;
  return pages;
}

// "3", "3-5" or "3-", counted from 1.
struct Range {
  int first = 0;
  int last = 0;
};

std::optional<int> NumberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 1) return std::nullopt;
  return number;
}

std::optional<Range> RangeIn(std::string_view text, int pages) {
  const std::size_t dash = text.find('-');
  const std::optional<int> first = NumberIn(text.substr(0, dash));
  if (!first) return std::nullopt;
  if (dash == std::string_view::npos) return Range{*first, *first};
  const std::string_view rest = text.substr(dash + 1);
  const std::optional<int> last = rest.empty() ? pages : NumberIn(rest);
  if (!last || *last < *first) return std::nullopt;
  return Range{*first, *last};
}

std::optional<std::vector<int>> PagesIn(std::string_view wanted, int pages) {
  std::vector<int> found;
  for (std::size_t begin = 0; begin <= wanted.size();) {
    const std::size_t end = std::min(wanted.find(',', begin), wanted.size());
    const std::optional<Range> range = RangeIn(wanted.substr(begin, end - begin), pages);
    if (!range || range->last > pages) return std::nullopt;
    for (int page = range->first; page <= range->last; ++page) found.push_back(page - 1);
    begin = end + 1;
  }
  return found;
}

// "page 4", "pages 2, 3 and 7"
std::string Named(const std::vector<int>& pages) {
  constexpr std::size_t kMostNamed = 6;
  if (pages.size() > kMostNamed) return std::to_string(pages.size()) + " pages";
  std::string text = pages.size() == 1 ? "page " : "pages ";
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (i > 0) text += i + 1 == pages.size() ? " and " : ", ";
    text += std::to_string(pages[i] + 1);
  }
  return text;
}

}  // namespace

std::vector<int> FindPages(const fs::path& file, const std::string& wanted) {
  const Format* format = FormatOfFile(file);
  if (format == nullptr || !format->pages) {
    throw Failure(kWrongUsage,
                  file.string() +
                      ": --pages is for TIFF and GIF. Leave it out; --part chooses one "
                      "picture of other files.");
  }
  const int pages = CountPages(file, *format);
  if (pages == 0) {
    throw Failure(kFailed, file.string() +
                               ": is damaged or incomplete (no page can be found). Export or copy "
                               "the picture again.");
  }
  const std::string_view set = wanted == "all" ? std::string_view{"1-"} : std::string_view{wanted};
  const std::optional<std::vector<int>> found = PagesIn(set, pages);
  if (found) return *found;
  throw Failure(kWrongUsage, file.string() + ": has no pages \"" + wanted + "\"; it has " +
                                 std::to_string(pages) +
                                 ". Give all, or pages and ranges counted from 1: 2,5-7.");
}

void CheckTakesPages(const fs::path& target) {
  const Format& format = FormatFor(target);
  if (format.pages) return;
  throw Failure(kWrongUsage,
                ShownTarget(target) + ": " + std::string(format.name) +
                    " holds one page. Give OUTPUT the extension .tif or .gif, or render one page "
                    "with --part, which counts from 0.");
}

PageWriter::PageWriter(const WriteOrder& order, const fs::path& source)
    : order_(order),
      format_(FormatFor(order.target)),
      file_(order.target, order.onlyTry ? OutputFile::Purpose::kTry : OutputFile::Purpose::kWrite),
      sink_(file_.TemporaryPath()) {
  std::optional<int> loops = 0;
  const Format* const from = FormatOfFile(source);
  if (from != nullptr && from->plugin == "gif") {
    const GifTimes times = FindGifTimes(MappedFile(source).Text());
    loops = times.loops;
    delays_ = times.delays;
  }
  if (format_.plugin == "gif") {
    joiner_ = std::make_unique<GifJoiner>(sink_, loops);
  } else {
    joiner_ = std::make_unique<TiffJoiner>(sink_);
  }
}

void PageWriter::FailToJoin(const std::string& cause) const {
  throw Failure(kFailed, ShownTarget(order_.target) + ": cannot be written (" + cause + ").");
}

void PageWriter::FailIfSinkFailed() const {
  if (sink_.FirstError().empty()) return;
  throw Failure(kFailed, ShownTarget(order_.target) + ": cannot be written (" + sink_.FirstError() +
                             "). Free some space and try again.");
}

void PageWriter::Add(const Picture& input, const headless::WorldBuffer& given,
                     const headless::WorldBuffer& result, std::int64_t clippedPixels,
                     const FileProgress& progress) {
  WriteOrder order = order_;
  order.clippedPixels = clippedPixels;
  const MemoryFile page;
  const EncodedPicture encoded =
      EncodePicture(input, given, result, order, format_, page.Path(), progress);
  if (pages_.empty()) header_ = encoded.header;
  pages_.push_back(input.part);
  for (const std::string& notice : encoded.notices) {
    auto told = std::find_if(notices_.begin(), notices_.end(),
                             [&](const auto& one) { return one.first == notice; });
    if (told == notices_.end()) told = notices_.insert(notices_.end(), {notice, {}});
    told->second.push_back(input.part);
  }
  const auto part = static_cast<std::size_t>(input.part);
  try {
    joiner_->Add(MappedFile(page.Path()).Text(),
                 part < delays_.size() ? delays_[part] : kUsualDelay);
  } catch (const std::runtime_error& error) {
    FailToJoin(error.what());
  }
  FailIfSinkFailed();
}

std::vector<std::string> PageWriter::Notices() const {
  const std::string prefix = ShownTarget(order_.target) + ": ";
  std::vector<std::string> notices;
  for (const auto& [notice, pages] : notices_) {
    const bool all = pages.size() == pages_.size();
    std::string text = prefix;
    if (!all) text.append(Named(pages)).append(": ");
    notices.push_back(text.append(notice));
  }
  const bool moves = std::any_of(delays_.begin(), delays_.end(), [](int delay) { return delay; });
  if (moves && format_.plugin != "gif") {
    notices.push_back(prefix + "the format stores no times; the frames do not move any more.");
  }
  for (const std::string& notice : file_.Notices()) notices.push_back(prefix + notice);
  return notices;
}

std::vector<std::string> PageWriter::Finish() {
  joiner_->Finish();
  sink_.close();
  FailIfSinkFailed();
  std::vector<std::string> notices = Notices();
  if (order_.agree) order_.agree(header_, format_, notices);
  if (!order_.onlyTry) file_.Commit(order_.force);
  return notices;
}

}  // namespace vitrell::media
