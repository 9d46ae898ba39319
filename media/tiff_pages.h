// The pages of a TIFF file: finding them, and joining them into one file.
#ifndef VITRELL_MEDIA_TIFF_PAGES_H_
#define VITRELL_MEDIA_TIFF_PAGES_H_

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "media/file_sink.h"
#include "media/page_joiner.h"

namespace vitrell::media {

// Makes this page, counted from 0, the first one of a whole file's bytes, for readers that look at
// the first only. False where there is no such page, and in files of more than 4 GB.
bool BeginWithPage(std::span<char> file, int page);

// Joins files of the machine's byte order, with offsets of 32 bits, as the picture library writes
// them.
class TiffJoiner final : public PageJoiner {
 public:
  // The sink must outlive the object.
  explicit TiffJoiner(FileSink& sink) : sink_(sink) {}

  void Add(std::string_view file, int delay) override;
  void Finish() override {}

 private:
  struct Directory {
    std::uint32_t place;
    int depth;  // in others; the page's own has 0
  };

  // The page's directory and those within it.
  void MoveDirectories(std::string_view file, std::uint32_t first);
  // Adds the directories that the entry names.
  void MoveEntry(std::string_view file, std::uint32_t entry, int depth,
                 std::vector<Directory>* found);
  // Puts a number in the place of one of the page that is being added.
  void Put(std::uint32_t place, std::uint32_t number);

  FileSink& sink_;
  std::uint64_t end_ = 0;    // of what is written
  std::uint32_t shift_ = 0;  // of the page that is being added
  std::uint64_t link_ = 0;   // where the last page names the next one
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_TIFF_PAGES_H_
