// Collects what determines a frame.
#include "cli/frame_fingerprint.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "look/animation_json.h"
#include "look/animation_text.h"
#include "look/value_text.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

std::string SeenFrom(const fs::path& frame, const fs::path& file) {
  if (file.empty()) return {};
  std::error_code ignored;
  const fs::path folder = fs::absolute(frame, ignored).lexically_normal().parent_path();
  return fs::absolute(file, ignored).lexically_normal().lexically_relative(folder).string();
}

// All values except the layer's file name, because the layer is identified by its contents.
std::string ValuesAsText(const look::Settings& settings) {
  std::string text;
  for (const look::Control& control : settings.GetPanel().controls) {
    if (control.kind == look::ControlKind::kLayer) continue;
    text += control.name + "=" + look::FormatValue(control, settings.ValueOf(control)) + "\n";
  }
  for (const double width : settings.WidthsMadeFor()) {
    text += "for " + look::FormatNumber(width) + "\n";
  }
  return text;
}

// The values at any time.
std::string KeysAsText(const look::Settings& settings) {
  std::string text;
  for (const look::Control& control : settings.GetPanel().controls) {
    const look::Keys* keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    text += control.name + " moves ";
    text +=
        look::FitsText(*keys) ? look::FormatKeys(control, *keys) : look::JsonFromKeys(*keys).dump();
    text += "\n";
  }
  return text;
}

std::string OptionsAsText(const RenderArguments& arguments, bool black) {
  const media::Encoding& encoding = arguments.encoding;
  std::string text = "depth " + arguments.depth + "\nchannels " + arguments.channels + "\npart " +
                     arguments.part + "\nalpha " + arguments.alpha + "\ncompression " +
                     encoding.compression + "\nquality " +
                     (encoding.quality ? std::to_string(*encoding.quality) : "") + "\n";
  if (encoding.lossless) text += "lossless\n";
  if (arguments.noAutoOrient) text += "as stored\n";
  if (arguments.fit) text += "fit\n";
  if (black) text += "black\n";
  return text;
}

}  // namespace

media::Fingerprint FingerprintOf(const RenderArguments& arguments, const FrameJob& job,
                                 const look::Settings& settings, const std::string& effect) {
  media::Fingerprint fingerprint;
  fingerprint.effect = effect;
  fingerprint.input = media::HashOfFile(job.input);
  fingerprint.settings = media::HashOfText(ValuesAsText(SettingsAt(settings, arguments.effect)) +
                                           OptionsAsText(arguments, job.black));
  fingerprint.inputFile = SeenFrom(job.output, job.input);
  fingerprint.layerFile = SeenFrom(job.output, job.layer);
  return fingerprint;
}

media::Fingerprint VideoFrameFingerprintOf(const RenderArguments& arguments, const FrameJob& job,
                                           const look::Settings& settings, const std::string& video,
                                           const std::string& effect) {
  media::Fingerprint fingerprint;
  fingerprint.effect = effect;
  fingerprint.input = video;
  fingerprint.settings =
      media::HashOfText(ValuesAsText(settings) + OptionsAsText(arguments, job.black) +
                        "frame of a video " + std::to_string(job.frame) + "\n");
  fingerprint.inputFile = SeenFrom(job.output, job.input);
  fingerprint.layerFile = SeenFrom(job.output, job.layer);
  return fingerprint;
}

media::Fingerprint VideoFingerprintOf(const RenderArguments& arguments,
                                      const look::Settings& settings, const VideoContents& contents,
                                      const std::string& effect) {
  media::Fingerprint fingerprint;
  fingerprint.effect = effect;
  fingerprint.input = contents.input;
  fingerprint.layer = contents.layer;
  fingerprint.settings = media::HashOfText(
      ValuesAsText(settings) + KeysAsText(settings) + OptionsAsText(arguments, false) + "codec " +
      arguments.videoCodec + "\npixels " + arguments.pixelFormat + "\nframes " +
      arguments.frames.frames + "\n");
  fingerprint.inputFile = SeenFrom(arguments.output, arguments.input);
  fingerprint.layerFile = SeenFrom(arguments.output, LayerPath(settings));
  return fingerprint;
}

std::string EffectVersion(headless::EffectHost& host) {
  return "vitrell " VITRELL_VERSION " " + media::HashOfText(host.About());
}

}  // namespace vitrell::cli
