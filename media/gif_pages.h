// The frames of a GIF: reading their delays and joining them into one file.
#ifndef VITRELL_MEDIA_GIF_PAGES_H_
#define VITRELL_MEDIA_GIF_PAGES_H_

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "media/file_sink.h"
#include "media/page_joiner.h"

namespace vitrell::media {

struct GifTimes {
  std::optional<int> loops;  // 0: for ever; none: the frames are shown once
  std::vector<int> delays;   // of each frame, in hundredths of a second
};

// Of a whole file's bytes, as far as they go.
GifTimes FindGifTimes(std::string_view file);

// Joins files as the picture library writes them: one frame with colours of its own.
class GifJoiner final : public PageJoiner {
 public:
  // The sink must outlive the object.
  GifJoiner(FileSink& sink, std::optional<int> loops) : sink_(sink), loops_(loops) {}

  void Add(std::string_view file, int delay) override;
  void Finish() override;

 private:
  void Begin(std::string_view head);
  void Write(std::string_view bytes) { sink_.write(bytes.data(), bytes.size()); }
  void ClearBefore(int width, int height);

  FileSink& sink_;
  std::optional<int> loops_;
  int frames_ = 0;
  int width_ = 0;  // of the last frame
  int height_ = 0;
  int mostWidth_ = 0;
  int mostHeight_ = 0;
  std::size_t lastFlags_ = 0;  // where those of the last frame lie
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_GIF_PAGES_H_
