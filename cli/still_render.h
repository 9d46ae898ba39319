// One picture file through a loaded effect into another file.
#ifndef VITRELL_CLI_STILL_RENDER_H_
#define VITRELL_CLI_STILL_RENDER_H_

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/effect_run.h"
#include "cli/notes.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "headless/effect_host.h"
#include "look/settings.h"
#include "media/exchange.h"
#include "media/picture.h"
#include "media/picture_writer.h"

namespace vitrell::cli {

// What --alpha says.
media::AlphaMeaning AlphaOf(const std::string& name);

// Gets what the effect made of a picture.
using StillTaker = std::function<void(const media::Picture& input, const media::Given& given,
                                      const headless::WorldBuffer& result)>;

// Gives the picture to render.
using StillSource = std::function<media::Picture()>;

// Gives the picture of the custom layer that the settings name.
using LayerSource = std::function<media::Picture(const std::string& file, Notes& notes)>;

// What is wanted beside the arguments, for the frames of a sequence.
struct StillWishes {
  bool black = false;            // the input's size and kind, but black and opaque
  std::string fingerprint = {};  // goes into the file, where its format has room; empty: none
  StillTaker take = {};          // in place of the output's file; empty: that is written
  StillSource read = {};         // in place of the input's file; empty: that is read
  LayerSource layer = {};        // empty: the file, or the first frame of a video
};

// The steps of one render, in the order of the functions. The objects given must outlive it; the
// settings are fitted to the picture's width, if the arguments say so.
class StillRender {
 public:
  StillRender(const RenderArguments& arguments, headless::EffectHost& host,
              look::Settings& settings, ProgressBar& bar, Notes& notes, Report& report,
              StillWishes wishes = {});

  // Reads the file, whatever the arguments call it, and writes the output, with the pages that the
  // arguments ask for. Throws Failure. Tells sizes, times and names in the report.
  void Run(const std::filesystem::path& file);

  // Of the first picture that the effect saw; 0 before it was read.
  int Width() const { return width_; }
  int Height() const { return height_; }

 private:
  media::FileProgress FileStage(int stage);
  media::PictureLimits Limits() const { return {.maxPixels = arguments_.maxPixels}; }
  media::ReadChoice Choice() const;
  void RenderPicture(const StillSource& read, const StillTaker& take);
  void RenderPages(media::PictureReader& reader, const std::filesystem::path& file);
  media::Picture ReadInput(const StillSource& read);
  void ReadLayer(bool deep);
  void TellClipping(const media::Picture& picture, const media::Given& given);
  media::WriteOrder Order();
  void Write(const media::Picture& input, const media::Given& given,
             const headless::WorldBuffer& result);
  void TellWritten(const std::vector<std::string>& notices);

  const RenderArguments& arguments_;
  look::Settings& settings_;
  ProgressBar& bar_;
  Notes& notes_;
  Report& report_;
  StillWishes wishes_;
  StepClock clock_;
  EffectRun effect_;
  int width_ = 0;
  int height_ = 0;
  std::optional<media::Given> layer_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_STILL_RENDER_H_
