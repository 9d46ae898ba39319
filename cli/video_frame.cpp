// Jobs and answers as bytes.
#include "cli/video_frame.h"

#include <nlohmann/json.hpp>

namespace vitrell::cli {
namespace {

using Json = nlohmann::json;

std::string BytesOf(const Json& json) {
  std::string bytes;
  Json::to_cbor(json, bytes);
  return bytes;
}

template <typename Enumeration>
Enumeration Read(const Json& json) {
  return static_cast<Enumeration>(json.get<int>());
}

}  // namespace

std::string Pack(const VideoFrameJob& job) {
  const std::string still = Pack(job.still);
  const media::VideoColours& colours = job.form.colours;
  return BytesOf(Json::array(
      {job.slot, job.number, job.seconds, job.overBlack, static_cast<int>(job.form.format),
       static_cast<int>(colours.matrix), static_cast<int>(colours.range),
       static_cast<int>(colours.primaries), static_cast<int>(colours.transfer),
       static_cast<int>(colours.chromaPlace), Json::binary({still.begin(), still.end()})}));
}

VideoFrameJob UnpackVideoJob(const std::string& bytes) {
  const Json json = Json::from_cbor(bytes);
  VideoFrameJob job{json.at(0), json.at(1), json.at(2), json.at(3), {}, {}};
  const auto& still = json.at(10).get_binary();
  job.still = UnpackJob({still.begin(), still.end()});
  job.form.format = Read<AVPixelFormat>(json.at(4));
  job.form.colours = {Read<AVColorSpace>(json.at(5)), Read<AVColorRange>(json.at(6)),
                      Read<AVColorPrimaries>(json.at(7)),
                      Read<AVColorTransferCharacteristic>(json.at(8)),
                      Read<AVChromaLocation>(json.at(9))};
  return job;
}

std::string Pack(const VideoFrameAnswer& answer) {
  const std::string frame = Pack(answer.frame);
  return BytesOf(
      Json::array({Json::binary({frame.begin(), frame.end()}), answer.endsVideo, answer.transparent,
                   answer.readSeconds, answer.effectSeconds, answer.writeSeconds}));
}

VideoFrameAnswer UnpackVideoAnswer(const std::string& bytes) {
  const Json json = Json::from_cbor(bytes);
  const auto& frame = json.at(0).get_binary();
  return {UnpackAnswer({frame.begin(), frame.end()}),
          json.at(1),
          json.at(2),
          json.at(3),
          json.at(4),
          json.at(5)};
}

}  // namespace vitrell::cli
