// The host calls that a render must make, as text, in their order.
#include "literal/host_calls.h"

#include <algorithm>
#include <utility>

#include "literal/blur/directional/line_taps.h"
#include "literal/blur/fast/fast_blur.h"

namespace vitrell::literal {
namespace {

constexpr char kWorldSuite[] = "PF World Suite 2";
constexpr char kIterate8Suite[] = "PF Iterate8 Suite 1";
constexpr char kIterate16Suite[] = "PF iterate16 Suite 1";

struct Transcript {
  std::vector<std::string> lines;
  int worlds = 0;  // How many new_world has made.

  void Add(const std::string& line) { lines.push_back(line); }
  void Copy(const std::string& from, const std::string& to) { Add("copy " + from + " -> " + to); }
  std::string NewWorld(std::int32_t width, std::int32_t height, std::int32_t flags) {
    std::string name = "world" + std::to_string(++worlds);
    Add("new_world " + name + " " + std::to_string(width) + "x" + std::to_string(height) +
        " flags " + std::to_string(flags));
    return name;
  }
  void Dispose(const std::string& world) { Add("dispose_world " + world); }
};

// Acquires a suite at its first use and gives all back in the order of acquisition.
class SuiteHandler {
 public:
  explicit SuiteHandler(Transcript& transcript) : transcript_(transcript) {}

  void Use(const std::string& suite) {
    if (std::find(acquired_.begin(), acquired_.end(), suite) == acquired_.end()) {
      acquired_.push_back(suite);
      transcript_.Add("acquire_suite " + suite);
    }
  }
  void ReleaseAll() {
    for (const std::string& suite : acquired_) {
      transcript_.Add("release_suite " + suite);
    }
    acquired_.clear();
  }

 private:
  Transcript& transcript_;
  std::vector<std::string> acquired_;
};

// The calls of one render whose worlds A and B exist.
class Caller {
 public:
  Caller(Transcript& transcript, const RenderInputs& in, std::string a, std::string b)
      : transcript_(transcript),
        in_(in),
        s_(in.settings),
        a_(std::move(a)),
        b_(std::move(b)),
        deep_(in.newWorldDeep) {}

  void Stages(SuiteHandler& driver) {
    const Plan plan = MakePlan(s_);
    UniformPass();
    IterateOrCopy(plan.lightness, driver, b_, a_);
    IterateOrCopy(plan.color, driver, a_, b_);
    IterateOrCopy(plan.chromatic, driver, b_, a_);
    if (plan.blendBeforeLens) {
      RenderEffect(a_, b_);
    }
    driver.Use(kWorldSuite);
    transcript_.Add("get_pixel_format input");
    IterateOrCopy(!plan.lensIsCopy, driver, b_, a_);
    if (plan.mappedBlurs) {
      LensMappedPass();
      RenderEffect(b_, a_);
    }
  }

 private:
  void Iterate(SuiteHandler& handler, const std::string& from, const std::string& to) {
    handler.Use(deep_ ? kIterate16Suite : kIterate8Suite);
    transcript_.Add(std::string(deep_ ? "iterate16 " : "iterate8 ") + from + " -> " + to +
                    " rows 0.." + std::to_string(in_.input.height));
  }

  void IterateOrCopy(bool on, SuiteHandler& handler, const std::string& from,
                     const std::string& to) {
    if (on) {
      Iterate(handler, from, to);
    } else {
      transcript_.Copy(from, to);
    }
  }

  void Fill(const std::string& world) {
    transcript_.Add(std::string(deep_ ? "fill16 " : "fill ") + world + " 0,0,0,0 in 0,0," +
                    std::to_string(in_.input.width) + "," + std::to_string(in_.input.height));
  }

  void RenderEffect(const std::string& from, const std::string& to) {
    SuiteHandler handler(transcript_);
    handler.Use(kWorldSuite);
    transcript_.Add("get_pixel_format input");
    handler.ReleaseAll();
    Iterate(handler, from, to);
    handler.ReleaseAll();
  }

  void Realistic(const std::string& from, const std::string& to) {
    if (!(static_cast<double>(s_.realisticAmount) > 0.0001)) {
      transcript_.Copy(from, to);
    } else if (s_.realisticUseLensAsBlurMap == 0) {
      Fill(to);
    } else {
      SuiteHandler handler(transcript_);
      Iterate(handler, from, to);
      handler.ReleaseAll();
    }
  }

  void FastRound(const std::string& from, const std::string& to, bool lensMap) {
    SuiteHandler handler(transcript_);
    const std::string unblurred = TemporaryWorld(lensMap);
    transcript_.Copy(from, unblurred);
    Iterate(handler, from, to);
    Iterate(handler, to, from);
    transcript_.Copy(from, to);
    transcript_.Dispose(unblurred);
    handler.ReleaseAll();
  }

  // A world's flags are not new_world's: the first try may give the other depth, in which only the
  // lens map could not read it.
  std::string TemporaryWorld(bool lensMap) {
    const std::int32_t flags = in_.newWorldExtraFlags | (deep_ ? kDeepWorld : 0);
    std::string world = transcript_.NewWorld(in_.input.width, in_.input.height, flags);
    if (lensMap && NewWorldIsDeep(flags, in_.newWorldDeep) != deep_) {
      transcript_.Dispose(world);
      world = transcript_.NewWorld(in_.input.width, in_.input.height, deep_ ? kNewDeepWorld : 0);
    }
    return world;
  }

  void Fast(const std::string& from, const std::string& to) {
    if (FastBlurIsCopy(s_)) {
      transcript_.Copy(from, to);
      return;
    }
    const bool lensMap = FastBlurFollowsLens(s_);
    FastRound(from, to, lensMap);
    FastRound(to, from, lensMap);
    FastRound(from, to, lensMap);
  }

  void UniformPass() {
    if (s_.realisticVisible == 1 && s_.realisticUseLensAsBlurMap == 0 && s_.realisticAmount > 0) {
      Realistic(a_, b_);
    } else {
      transcript_.Copy(a_, b_);
    }
    if (s_.fastBlurVisible == 1 && s_.fastBlurAmount > 0) {
      Fast(b_, a_);
    } else {
      transcript_.Copy(b_, a_);
    }
    SuiteHandler handler(transcript_);
    IterateOrCopy(s_.opticalVisible == 1 && s_.opticalAmount > 0, handler, a_, b_);
    handler.ReleaseAll();
    if (s_.trailAmount > 0 && s_.trailVisible == 1) {
      Fill(a_);
      Iterate(handler, b_, a_);
      FastRound(a_, b_, false);
      handler.ReleaseAll();
      transcript_.Copy(a_, b_);
    } else {
      transcript_.Copy(b_, a_);
    }
    const std::size_t taps =
        DirectionalTaps(s_.directionalAmount, s_.directionalAngle, in_.maths).size();
    SuiteHandler lineHandler(transcript_);
    IterateOrCopy(s_.directionalVisible == 1 && taps > 1, lineHandler, a_, b_);
    lineHandler.ReleaseAll();
    transcript_.Copy(b_, b_);
  }

  void LensMappedPass() {
    if (s_.realisticVisible == 1 && s_.realisticUseLensAsBlurMap == 1 && s_.realisticAmount > 0) {
      Realistic(a_, b_);
    } else {
      transcript_.Copy(a_, b_);
    }
    if (s_.fastBlurVisible == 1 && s_.fastBlurUseLensAsBlurMap == 1 && s_.fastBlurAmount > 0) {
      Fast(b_, a_);
      transcript_.Copy(a_, b_);
    } else {
      transcript_.Copy(b_, a_);
      transcript_.Copy(b_, b_);
    }
  }

  Transcript& transcript_;
  const RenderInputs& in_;
  const Settings& s_;
  std::string a_;
  std::string b_;
  bool deep_;
};

// The private copy of the custom layer.
std::string CustomCopy(Transcript& transcript, const RenderInputs& in) {
  const World& layer = *in.custom;
  std::string copy = transcript.NewWorld(layer.width, layer.height, in.customFlags);
  transcript.Copy("custom", copy);
  return copy;
}

}  // namespace

std::vector<std::string> ExpectedHostCalls(const RenderInputs& in, const RenderTime& time) {
  Transcript transcript;
  SuiteHandler driver(transcript);
  transcript.Add("checkout_param 3 time " + std::to_string(time.current) + " step " +
                 std::to_string(time.step) + " scale " + std::to_string(time.scale));
  transcript.Add("abort");
  std::string custom;
  if (in.custom != nullptr) {
    custom = CustomCopy(transcript, in);
  }
  transcript.Add("checkin_param 3");
  const std::string a = transcript.NewWorld(in.input.width, in.input.height, 0);
  const std::string b = transcript.NewWorld(in.input.width, in.input.height, 0);
  transcript.Copy("input", a);
  Caller(transcript, in, a, b).Stages(driver);
  transcript.Copy(a, "output");
  transcript.Dispose(a);
  transcript.Dispose(b);
  if (in.custom != nullptr) {
    transcript.Dispose(custom);
  }
  driver.ReleaseAll();
  return transcript.lines;
}

}  // namespace vitrell::literal
