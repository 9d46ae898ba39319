// Whole renders: records, parameters, pixels, flags and failing host calls, all made of bytes.
#include <cstddef>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/fuzz_records.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/literal_check.h"
#include "shell/parameters.h"

namespace vitrell::fuzz {
namespace {

using reliability::RawHost;

constexpr int kEndOfParameters = 255;
constexpr int kMostChanges = 96;

// One in this many inputs has its output checked.
constexpr int kComparedShare = 4;

// The host of one input. The layout: worlds, failing calls, (control, value) pairs up to a control
// of 255, pixels. The pixel bytes are repeated over all pictures.
class Frame {
 public:
  Frame(const std::uint8_t* data, std::size_t size)
      : bytes_(data, size), host_(&EntryPointFunc, SetupFrom(bytes_)) {
    PlanFaults(bytes_, host_);
    for (int i = 0; i < kMostChanges && !bytes_.AtEnd(); ++i) {
      const int choice = bytes_.Byte();
      if (choice == kEndOfParameters) break;
      SetParameter(bytes_, choice % PARAM_COUNT, host_);
    }
    const std::string_view pixels = bytes_.Rest();
    if (pixels.empty()) return;
    std::size_t position = 0;
    host_.FillPixels([&] { return static_cast<std::byte>(pixels[position++ % pixels.size()]); });
  }

  void DropFaults() { host_.failingCalls.clear(); }
  RawHost& Host() { return host_; }
  PF_Err Render() { return SendChecked(PF_Cmd_RENDER, host_); }

 private:
  ByteReader bytes_;
  RawHost host_;
};

// Without its faults the frame equals the literal render or, where that cannot compute the case, a
// second render of its own.
void CheckPicture(const std::uint8_t* data, std::size_t size) {
  std::optional<literal::RenderOutcome> expected;
  PF_Err error = PF_Err_NONE;
  std::uint64_t checksum = 0;
  {
    Frame frame(data, size);
    frame.DropFaults();
    expected = LiteralRender(frame.Host());
    error = frame.Render();
    checksum = frame.Host().OutputChecksum();
    if (expected.has_value()) {
      Require(error == expected->error, "answers " + std::to_string(error));
      RequirePicture(expected->output, frame.Host());
      return;
    }
  }
  Frame again(data, size);
  again.DropFaults();
  Require(again.Render() == error, "answers differently the second time");
  Require(again.Host().OutputChecksum() == checksum, "differs the second time");
}

}  // namespace
}  // namespace vitrell::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vitrell::fuzz::Frame(data, size).Render();
  if (std::accumulate(data, data + size, 0U) % vitrell::fuzz::kComparedShare == 0) {
    vitrell::fuzz::CheckPicture(data, size);
  }
  return 0;
}
