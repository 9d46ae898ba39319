// Finding the layer of a frame.
#include "cli/layer_frames.h"

#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/sequence_plan.h"
#include "cli/video_checks.h"
#include "media/fingerprint.h"

namespace vitrell::cli {
namespace {

std::string EndText(const std::string& layer, std::int64_t last) {
  return layer + ": the custom layer ends with frame " + std::to_string(last) +
         ", which holds for all after it.";
}

}  // namespace

bool LayerFrames::IsVideo(const std::string& file) {
  if (file != known_) {
    known_ = file;
    isVideo_ = IsVideoFile(file);
    hash_.clear();
  }
  return isVideo_;
}

std::string LayerFrames::HashOf(const std::string& file) {
  if (file.empty()) return {};
  if (!IsVideo(file)) return media::HashOfFile(file);
  if (hash_.empty()) hash_ = media::HashOfFile(file);
  return hash_;
}

media::Picture LayerFrames::Read(const std::string& file, std::int64_t number, Notes& notes) {
  if (!IsVideo(file)) return ReadLayer(arguments_, file);
  if (!video_ || video_->File() != file) {
    video_.emplace(file, media::VideoReadOptions{arguments_.maxPixels, &InterruptFlag()});
  }
  media::Picture picture = video_->At(number);
  if (video_->Last() && *video_->Last() < number) notes.Advise(EndText(file, *video_->Last()));
  return picture;
}

LayerFiles::LayerFiles(const std::string& layer) : layer_(layer) {
  if (layer.empty() || !IsSequenceName(layer)) return;
  sequence_ = media::Sequence::Find(layer);
  frames_ = sequence_->FramesInFolder();
  if (!frames_.IsEmpty()) return;
  throw Failure(kFailed,
                layer + ": there is no frame of this name. Check the name and the folder.");
}

std::string LayerFiles::FileOf(std::int64_t number) const {
  if (!sequence_) return layer_;
  const std::int64_t first = frames_.Smallest();
  return sequence_->FileOf(frames_.AtOrBefore(first + number).value_or(first)).string();
}

std::string LayerFiles::Hash() const {
  if (layer_.empty()) return {};
  if (!sequence_) return media::HashOfFile(layer_);
  std::string text;
  media::FrameCursor cursor(frames_);
  while (const std::optional<std::int64_t> frame = cursor.Next()) {
    text += std::to_string(*frame - frames_.Smallest()) + " " +
            media::HashOfFile(sequence_->FileOf(*frame)) + "\n";
  }
  return media::HashOfText(text);
}

std::string LayerFiles::AdviceFor(std::int64_t framesOfVideo) const {
  if (!sequence_ || frames_.Largest() - frames_.Smallest() + 1 >= framesOfVideo) return {};
  return EndText(layer_, frames_.Largest());
}

}  // namespace vitrell::cli
