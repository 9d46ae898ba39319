// Reading, rendering and writing one picture.
#include "cli/still_render.h"

#include <utility>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/interrupt.h"
#include "cli/layer_frames.h"
#include "cli/preset_width.h"
#include "media/original_rows.h"
#include "media/pages.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

PictureFacts FactsOf(const media::Picture& picture, const std::string& name) {
  return {name, std::string(picture.format->name), picture.spec};
}

media::Depth DepthOf(const std::string& name) {
  if (name == "8") return media::Depth::k8;
  return name == "16" ? media::Depth::k16 : media::Depth::kAuto;
}

}  // namespace

media::AlphaMeaning AlphaOf(const std::string& name) {
  if (name == "straight") return media::AlphaMeaning::kStraight;
  if (name == "premultiplied") return media::AlphaMeaning::kPremultiplied;
  return name == "ignore" ? media::AlphaMeaning::kIgnored : media::AlphaMeaning::kAsInFile;
}

StillRender::StillRender(const RenderArguments& arguments, headless::EffectHost& host,
                         look::Settings& settings, ProgressBar& bar, Notes& notes, Report& report,
                         StillWishes wishes)
    : arguments_(arguments),
      settings_(settings),
      bar_(bar),
      notes_(notes),
      report_(report),
      wishes_(std::move(wishes)),
      effect_(host, arguments, bar, notes) {}

void StillRender::Run(const std::filesystem::path& file) {
  if (!arguments_.dryRun) effect_.Foresee(settings_, !LayerPath(settings_).empty());
  media::PictureReader reader(file, Limits());
  if (!arguments_.pages.empty()) {
    RenderPages(reader, file);
    return;
  }
  const StillSource readFile = [&] { return reader.Read(FileStage(1), Choice()); };
  const StillTaker writeFile = [this](const auto& input, const auto& given, const auto& result) {
    Write(input, given, result);
  };
  RenderPicture(wishes_.read ? wishes_.read : readFile, wishes_.take ? wishes_.take : writeFile);
}

media::Picture StillRender::ReadInput(const StillSource& read) {
  media::Picture input = read();
  if (wishes_.black) media::MakeBlack(input);
  notes_.TellAll(input.notices);
  if (!report_.input) {
    report_.input = FactsOf(input, media::ShownSource(arguments_.input));
    width_ = input.Width();
    height_ = input.Height();
    FitPresets(arguments_.fit, input.Width(), settings_, notes_);
  }
  return input;
}

void StillRender::RenderPicture(const StillSource& read, const StillTaker& take) {
  media::Picture input = ReadInput(read);
  const bool deep = arguments_.depth == "auto" ? input.IsDeep() : arguments_.depth == "16";
  const media::Given given = media::GiveToEffect(input, deep);
  media::ReleaseSamples(input, given.world);
  ReadLayer(deep);
  report_.effectBits = deep ? 16 : 8;
  report_.readSeconds += clock_.Lap();
  notes_.FailIfStrict();
  if (arguments_.dryRun) {
    // The unrendered picture is enough to find out what the format cannot hold.
    take(input, given, given.world);
    return;
  }
  // The effect writes all of it in its last step; left untouched, it takes no memory until then.
  headless::WorldBuffer result(input.Width(), input.Height(), deep,
                               {.fresh = headless::FreshPixels::kUnset});
  const double processorBefore = ProcessorSeconds();
  report_.effectSeconds += effect_.Render(SettingsAt(settings_, arguments_.effect), given.world,
                                          layer_ ? &layer_->world : nullptr, result);
  report_.effectProcessorSeconds += ProcessorSeconds() - processorBefore;
  clock_.Lap();
  notes_.FailIfStrict();
  take(input, given, result);
}

void StillRender::RenderPages(media::PictureReader& reader, const std::filesystem::path& file) {
  const std::vector<int> pages = media::FindPages(file, arguments_.pages);
  const media::WriteOrder order = Order();
  media::PageWriter writer(order, file);
  media::ReadChoice choice = Choice();
  for (std::size_t i = 0; i < pages.size(); ++i) {
    bar_.SetPart(static_cast<int>(i), static_cast<int>(pages.size()));
    choice.page = pages[i];
    const StillSource read = [&] { return reader.Read(FileStage(1), choice); };
    RenderPicture(read, [&](const auto& input, const auto& given, const auto& result) {
      writer.Add(input, given.world, result, given.clippedPixels, FileStage(effect_.Stages()));
      report_.writeSeconds += clock_.Lap();
    });
  }
  report_.pages = static_cast<int>(pages.size());
  TellWritten(writer.Finish());
}

media::FileProgress StillRender::FileStage(int stage) {
  return [this, stage](float done) {
    bar_.Show(stage, static_cast<double>(done));
    return InterruptFlag().load();
  };
}

void StillRender::TellClipping(const media::Picture& picture, const media::Given& given) {
  if (given.clippedPixels == 0) return;
  notes_.Tell(picture.file.string() + ": " + std::to_string(given.clippedPixels) +
              " pixels had values outside black to white and were clipped.");
}

media::ReadChoice StillRender::Choice() const {
  media::ReadChoice choice;
  choice.autoOrient = !arguments_.noAutoOrient;
  choice.channels = arguments_.channels;
  choice.part = arguments_.part;
  choice.alpha = AlphaOf(arguments_.alpha);
  return choice;
}

// Once for all pages of one depth.
void StillRender::ReadLayer(bool deep) {
  const std::string path = LayerPath(settings_);
  if (path.empty() || (layer_ && layer_->world.Deep() == deep)) return;
  const media::Picture picture =
      wishes_.layer ? wishes_.layer(path, notes_) : LayerFrames(arguments_).Read(path, 0, notes_);
  report_.layer = FactsOf(picture, path);
  notes_.TellAll(picture.notices);
  layer_ = media::GiveToEffect(picture, deep);
  TellClipping(picture, *layer_);
}

media::WriteOrder StillRender::Order() {
  media::WriteOrder order;
  order.target = arguments_.output;
  order.force = arguments_.force;
  order.onlyTry = arguments_.dryRun;
  order.encoding = arguments_.encoding;
  order.depth = DepthOf(arguments_.depth);
  order.fingerprint = wishes_.fingerprint;
  order.agree = [this](const OIIO::ImageSpec& written, const media::Format& format,
                       const std::vector<std::string>& notices) {
    report_.output = {media::ShownTarget(arguments_.output), std::string(format.name), written};
    if (!arguments_.strict) return;
    notes_.TellAll(notices);
    notes_.FailIfStrict();
  };
  return order;
}

void StillRender::Write(const media::Picture& input, const media::Given& given,
                        const headless::WorldBuffer& result) {
  media::WriteOrder order = Order();
  order.clippedPixels = given.clippedPixels;
  TellWritten(media::WritePicture(input, given.world, result, order, FileStage(effect_.Stages())));
}

void StillRender::TellWritten(const std::vector<std::string>& notices) {
  // Only now, since standard error is redirected while the file is written.
  if (!arguments_.strict) notes_.TellAll(notices);
  report_.writeSeconds += clock_.Lap();
}

}  // namespace vitrell::cli
