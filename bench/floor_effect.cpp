// Parses the log of a render's host calls and replays them.
#include "bench/floor_effect.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "bench/process_clock.h"
#include "host/host_api.h"

namespace vitrell::bench {
namespace {

using headless::CallKind;

// Indices of worlds: 0 is the input, 1 the output, 2 none, 3 the custom layer, 4 world1, and so on.
constexpr std::size_t kInput = 0;
constexpr std::size_t kOutput = 1;
constexpr std::size_t kNone = 2;
constexpr std::size_t kCustom = 3;
constexpr std::size_t kFirstMade = 4;
constexpr std::size_t kMaxWorlds = 64;

struct Step {
  CallKind kind = CallKind::kAny;
  std::size_t first = kNone;   // The world read, made, filled or queried.
  std::size_t second = kNone;  // The world written.
  std::array<A_long, 4> numbers{};
  std::string suite;
  std::int32_t suiteVersion = 0;
};

struct Plan {
  std::shared_ptr<const headless::EffectModule> real;
  std::vector<Step> steps;
};

// Global because an entry point is a plain function: the calls that it replays.
Plan g_plan;

std::size_t WorldNumber(const std::string& name) {
  if (name == "input") return kInput;
  if (name == "output") return kOutput;
  if (name == "none") return kNone;
  if (name == "custom") return kCustom;
  if (name.rfind("world", 0) == 0) {
    const std::size_t number = kFirstMade - 1 + std::stoul(name.substr(5));
    if (number < kMaxWorlds) return number;
  }
  throw std::runtime_error("the floor does not know the world " + name);
}

Step ReadStep(const headless::HostCall& call) {
  Step step;
  step.kind = call.kind;
  std::istringstream words(call.text);
  std::string verb;
  std::string from;
  std::string arrow;
  std::string to;
  words >> verb;
  switch (call.kind) {
    case CallKind::kNewWorld:
      words >> from;
      step.first = WorldNumber(from);
      // "480x270 flags 0"
      words >> step.numbers[0] >> arrow >> to >> step.numbers[2];
      step.numbers[1] = static_cast<A_long>(std::stol(arrow.substr(1)));
      break;
    case CallKind::kDisposeWorld:
    case CallKind::kGetPixelFormat:
    case CallKind::kFill:
    case CallKind::kFill16:
      words >> from;
      step.first = WorldNumber(from);
      break;
    case CallKind::kCopy:
    case CallKind::kIterate8:
    case CallKind::kIterate16:
      words >> from >> arrow >> to;
      step.first = WorldNumber(from);
      step.second = WorldNumber(to);
      // "rows 0..270"
      if (call.kind != CallKind::kCopy) words >> verb >> step.numbers[0] >> arrow;
      if (call.kind != CallKind::kCopy) step.numbers[1] = std::stoi(arrow.substr(2));
      break;
    case CallKind::kAcquireSuite:
    case CallKind::kReleaseSuite: {
      const std::string rest = call.text.substr(verb.size() + 1);
      const std::size_t space = rest.rfind(' ');
      step.suite = rest.substr(0, space);
      step.suiteVersion = std::stoi(rest.substr(space + 1));
      break;
    }
    case CallKind::kCheckoutParam:
    case CallKind::kCheckinParam:
      words >> step.numbers[0];
      break;
    case CallKind::kAbort:
      break;
    default:
      throw std::runtime_error("the floor cannot replay: " + call.text);
  }
  return step;
}

// The copying callbacks from the module that is loaded beside this program.
struct FloorCallbacks {
  PF_IteratePixel8Func copyPixel8 = nullptr;
  PF_IteratePixel16Func copyPixel16 = nullptr;
};

const FloorCallbacks& LoadedCallbacks() {
  static const FloorCallbacks callbacks = [] {
    void* const library = dlopen(VITRELL_FLOOR_PATH, RTLD_NOW | RTLD_LOCAL);
    FloorCallbacks loaded;
    if (library != nullptr) {
      loaded.copyPixel8 = reinterpret_cast<PF_IteratePixel8Func>(dlsym(library, "CopyPixel8"));
      loaded.copyPixel16 = reinterpret_cast<PF_IteratePixel16Func>(dlsym(library, "CopyPixel16"));
    }
    if (loaded.copyPixel8 == nullptr || loaded.copyPixel16 == nullptr) {
      throw std::runtime_error(std::string("the floor's passes cannot be loaded: ") + dlerror());
    }
    return loaded;
  }();
  return callbacks;
}

class Player {
 public:
  Player(PF_InData* in_data, PF_LayerDef* input, PF_LayerDef* output) : in_(in_data) {
    worlds_[kInput] = *input;
    worlds_[kOutput] = *output;
  }

  PF_Err Play(const Step& step) {
    PF_UtilCallbacks& utils = *in_->utils;
    PF_LayerDef* first = &worlds_[step.first];
    PF_LayerDef* second = &worlds_[step.second];
    PF_ProgPtr effect = in_->effect_ref;
    switch (step.kind) {
      case CallKind::kNewWorld:
        return utils.new_world(effect, step.numbers[0], step.numbers[1], step.numbers[2], first);
      case CallKind::kDisposeWorld:
        return utils.dispose_world(effect, first);
      case CallKind::kCopy:
        return utils.copy(effect, first, second, nullptr, nullptr);
      case CallKind::kFill: {
        constexpr PF_Pixel kClear{};
        return utils.fill(effect, &kClear, &first->extent_hint, first);
      }
      case CallKind::kFill16: {
        constexpr PF_Pixel16 kClear{};
        return utils.fill16(effect, &kClear, &first->extent_hint, first);
      }
      case CallKind::kAcquireSuite:
        return in_->pica_basicP->AcquireSuite(step.suite.c_str(), step.suiteVersion, SlotOf(step));
      case CallKind::kReleaseSuite:
        return in_->pica_basicP->ReleaseSuite(step.suite.c_str(), step.suiteVersion);
      case CallKind::kIterate8:
        return static_cast<const PF_Iterate8Suite1*>(iterate8_)->iterate(
            in_, step.numbers[0], step.numbers[1], first, nullptr, this,
            LoadedCallbacks().copyPixel8, second);
      case CallKind::kIterate16:
        return static_cast<const PF_iterate16Suite1*>(iterate16_)
            ->iterate(in_, step.numbers[0], step.numbers[1], first, nullptr, this,
                      LoadedCallbacks().copyPixel16, second);
      case CallKind::kGetPixelFormat: {
        PF_PixelFormat format = 0;
        return static_cast<const PF_WorldSuite2*>(worldSuite_)->PF_GetPixelFormat(first, &format);
      }
      case CallKind::kCheckoutParam:
        return CheckOut(step.numbers[0]);
      case CallKind::kCheckinParam:
        return in_->inter.checkin_param(effect, &layer_);
      case CallKind::kAbort:
        return in_->inter.abort(effect);
      default:
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
  }

 private:
  PF_Err CheckOut(A_long index) {
    const PF_Err error = in_->inter.checkout_param(in_->effect_ref, index, in_->current_time,
                                                   in_->time_step, in_->time_scale, &layer_);
    worlds_[kCustom] = layer_.u.ld;
    return error;
  }

  const void** SlotOf(const Step& step) {
    if (step.suite == kPFIterate8Suite) return &iterate8_;
    if (step.suite == kPFIterate16Suite) return &iterate16_;
    return &worldSuite_;
  }

  PF_InData* in_;
  std::array<PF_LayerDef, kMaxWorlds> worlds_{};
  PF_ParamDef layer_{};
  const void* iterate8_ = nullptr;
  const void* iterate16_ = nullptr;
  const void* worldSuite_ = nullptr;
};

PF_Err FloorEntryPoint(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output, void* extra) {
  if (cmd != PF_Cmd_RENDER) {
    return g_plan.real->EntryPoint()(cmd, in_data, out_data, params, output, extra);
  }
  const RenderClock clock(in_data, params[0]->u.ld);
  Player player(in_data, &params[0]->u.ld, output);
  for (const Step& step : g_plan.steps) {
    const PF_Err error = player.Play(step);
    if (error != PF_Err_NONE) return error;
  }
  return PF_Err_NONE;
}

}  // namespace

std::shared_ptr<const headless::EffectModule> MakeFloorModule(
    std::shared_ptr<const headless::EffectModule> real,
    const std::vector<headless::HostCall>& calls) {
  static_cast<void>(LoadedCallbacks());  // Loads the module now rather than while measuring.
  std::vector<Step> steps;
  std::transform(calls.begin(), calls.end(), std::back_inserter(steps), ReadStep);
  g_plan = {std::move(real), std::move(steps)};
  return std::make_shared<const headless::EffectModule>(&FloorEntryPoint, "floor");
}

}  // namespace vitrell::bench
