// Sends the three commands of a frame and checks what the effect must not touch.
#include <algorithm>
#include <chrono>

#include "headless/effect_host.h"
#include "headless/host_state.h"
#include "headless/record_bytes.h"

namespace vitrell::headless {
namespace {

PF_LRect Intersection(const PF_LRect& a, const PF_LRect& b) {
  const PF_LRect both = {std::max(a.left, b.left), std::max(a.top, b.top),
                         std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
  const bool empty = both.right <= both.left || both.bottom <= both.top;
  return empty ? PF_LRect{} : both;
}

// The size in the input record is that at full resolution.
A_long FullSize(A_long size, const PF_RationalScale& scale) {
  if (scale.num <= 0 || scale.den == 0) return size;
  return static_cast<A_long>(std::int64_t{size} * scale.den / scale.num);
}

void FillInData(const WorldBuffer& input, const WorldBuffer& output, const RenderOptions& options,
                PF_InData& in) {
  in.quality = options.quality;
  in.current_time = options.currentTime;
  in.time_step = options.timeStep;
  in.total_time = options.totalTime;
  in.local_time_step = options.timeStep;
  in.time_scale = options.timeScale;
  in.field = PF_Field_FRAME;
  in.width = FullSize(input.Width(), options.downsampleX);
  in.height = FullSize(input.Height(), options.downsampleY);
  in.extent_hint = Intersection(input.Def().extent_hint, output.Def().extent_hint);
  in.downsample_x = options.downsampleX;
  in.downsample_y = options.downsampleY;
  in.pixel_aspect_ratio = options.pixelAspect;
}

// The worlds of one render, with checksums of their pixels from before it.
class PictureWatch {
 public:
  PictureWatch(const WorldBuffer& input, const WorldBuffer& output, const WorldBuffer* custom,
               bool verifyInputs)
      : pictures_{{"input", &input, verifyInputs}, {"output", &output, false}} {
    if (custom != nullptr && custom != &input) {
      pictures_.push_back({"custom", custom, verifyInputs});
    }
    for (Picture& picture : pictures_) {
      if (picture.verifyPixels) picture.checksum = picture.world->Checksum();
    }
  }

  void Judge(HostState& state) const {
    for (const Picture& picture : pictures_) {
      if (const auto damage = picture.world->Damage()) {
        state.Complain(std::string("wrote outside the ") + picture.name + " world. " + *damage);
      }
      if (picture.verifyPixels && picture.checksum != picture.world->Checksum()) {
        state.Complain(std::string("changed pixels of the ") + picture.name +
                       " world, which it may only read");
      }
    }
  }

 private:
  struct Picture {
    const char* name;
    const WorldBuffer* world;
    bool verifyPixels;
    std::uint64_t checksum = 0;
  };
  std::vector<Picture> pictures_;
};

// The effect may change the input's extent hint; everything else must stay as it was.
void JudgeRecords(HostState& state, const std::vector<PF_ParamDef>& before) {
  for (std::size_t i = 0; i < before.size(); ++i) {
    PF_ParamDef after = state.frameRecords[i];
    if (i == 0) after.u.ld.extent_hint = before[i].u.ld.extent_hint;
    if (!SameBytes(before[i], after)) {
      state.Complain("changed the record of parameter " + std::to_string(i));
    }
  }
}

// Sets up the state of a frame and clears it again on every path.
class FrameScope {
 public:
  FrameScope(HostState& state, const WorldBuffer& input, const WorldBuffer& output,
             const WorldBuffer* custom, const RenderOptions& options)
      : state_(state) {
    state.recorder.Start();
    state.worlds.Clear();
    state.worlds.AddBorrowed("input", input);
    state.worlds.AddBorrowed("output", output);
    if (custom != nullptr) state.worlds.AddBorrowed("custom", *custom);
    state.options = &options;
    state.customLayer = custom;
    state.renderDeep = input.Deep();
    state.passes = 0;
  }
  ~FrameScope() {
    state_.options = nullptr;
    state_.customLayer = nullptr;
    state_.renderDeep = false;
    state_.worlds.Clear();
  }
  FrameScope(const FrameScope&) = delete;
  FrameScope& operator=(const FrameScope&) = delete;

 private:
  HostState& state_;
};

void VerifyPictures(const WorldBuffer& input, const WorldBuffer& output) {
  if (input.Deep() != output.Deep()) {
    throw HostError(
        "The input and the output of a render have different depths; give both 8 or both 16 bits.");
  }
  if (&input == &output) {
    throw HostError("The input and the output of a render are one world; give it two.");
  }
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Sends FRAME_SETUP, offering the input's size for the output. A resized output is not supported.
PF_Err SetUpFrame(HostState& state, PF_ParamDef* params[], const WorldBuffer& input) {
  state.out.width = input.Width();
  state.out.height = input.Height();
  state.out.origin = {0, 0};
  const PF_Err error = state.Command(PF_Cmd_FRAME_SETUP, params, nullptr, nullptr);
  const bool same = state.out.width == input.Width() && state.out.height == input.Height() &&
                    state.out.origin.h == 0 && state.out.origin.v == 0;
  if (!same) state.Complain("asked for an output of another size, which this host does not give");
  return error;
}

}  // namespace

RenderResult EffectHost::Render(const WorldBuffer& input, WorldBuffer& output,
                                const WorldBuffer* customLayer, const RenderOptions& options) {
  VerifyPictures(input, output);
  HostState& state = *state_;
  const FrameScope frame(state, input, output, customLayer, options);
  const PictureWatch pictures(input, output, customLayer, options.verifyInputs);
  const std::size_t complaintsBefore = state.complaints.size();
  FillInData(input, output, options, state.in);
  std::vector<PF_ParamDef*> params = MakeFrameRecords(input.Width(), input.Height());
  PF_LayerDef& inputRecord = state.frameRecords[0].u.ld;

  // The input record is complete from the start, except for its pixels.
  inputRecord = input.Def();
  inputRecord.data = nullptr;
  RenderResult result;
  result.error = SetUpFrame(state, params.data(), input);
  inputRecord.data = input.Def().data;
  if (result.error == PF_Err_NONE) {
    PF_LayerDef outputRecord = output.Def();
    outputRecord.world_flags |= PF_WorldFlag_WRITEABLE;
    const PF_LayerDef outputBefore = outputRecord;
    const std::vector<PF_ParamDef> before = state.frameRecords;
    const auto start = std::chrono::steady_clock::now();
    result.error = state.Command(PF_Cmd_RENDER, params.data(), &outputRecord, nullptr);
    result.seconds = SecondsSince(start);
    result.message = state.out.return_msg;
    result.inputRecord = inputRecord;
    if (!SameBytes(outputBefore, outputRecord)) {
      state.Complain("changed the record of the output world");
    }
    JudgeRecords(state, before);
    pictures.Judge(state);
    inputRecord.data = nullptr;
    const PF_Err setDown = state.Command(PF_Cmd_FRAME_SETDOWN, params.data(), nullptr, nullptr);
    if (result.error == PF_Err_NONE) result.error = setDown;
  }
  if (!result.Ok()) result.description = DescribeError(result.error);
  result.calls = state.recorder.Calls();
  result.complaints.assign(state.complaints.begin() + static_cast<std::ptrdiff_t>(complaintsBefore),
                           state.complaints.end());
  return result;
}

}  // namespace vitrell::headless
