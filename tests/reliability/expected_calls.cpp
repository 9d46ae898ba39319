// The result and the calls that a render must produce when host calls fail, derived from the rules.
#include "reliability/expected_calls.h"

#include <algorithm>
#include <utility>

#include "literal/blur/directional/line_taps.h"
#include "literal/blur/fast/fast_blur.h"

namespace vitrell::reliability {
namespace {

using literal::RenderInputs;
using literal::Settings;

constexpr int kOutOfMemory = 4;
constexpr int kMissing = 516;

// What the effect does not even ask memory for.
constexpr int kLargestIrisRadius = 2000;
constexpr float kLongestLine = 8388607.0F;

constexpr char kWorldSuite[] = "PF World Suite 2";

struct MissingSuite {};

// The host's side: writes down every call and fails those that are planned.
class Script {
 public:
  explicit Script(const std::vector<PlannedFailure>& failures) : failures_(failures) {}

  [[nodiscard]] int Call(const std::string& text) { return Call(text, text); }
  // With another text for the call that fails.
  [[nodiscard]] int Call(const std::string& text, const std::string& failingText) {
    const int number = static_cast<int>(lines_.size()) + 1;
    for (const PlannedFailure& failure : failures_) {
      if (failure.call == number) {
        lines_.push_back(failingText + " fails with " + std::to_string(failure.error));
        return failure.error;
      }
    }
    lines_.push_back(text);
    return 0;
  }
  void Ignored(const std::string& text) { static_cast<void>(Call(text)); }
  int NextWorld() { return worlds_ + 1; }
  void CountWorld() { ++worlds_; }
  std::vector<std::string> TakeLines() { return std::move(lines_); }

 private:
  std::vector<PlannedFailure> failures_;
  std::vector<std::string> lines_;
  int worlds_ = 0;
};

class Suites {
 public:
  explicit Suites(Script& script) : script_(script) {}
  ~Suites() { ReleaseAll(); }
  Suites(const Suites&) = delete;
  Suites& operator=(const Suites&) = delete;

  void Use(const std::string& suite) {
    if (std::find(held_.begin(), held_.end(), suite) != held_.end()) return;
    if (script_.Call("acquire_suite " + suite) != 0) throw MissingSuite();
    held_.push_back(suite);
  }
  void ReleaseAll() {
    for (const std::string& suite : held_) script_.Ignored("release_suite " + suite);
    held_.clear();
  }

 private:
  Script& script_;
  std::vector<std::string> held_;
};

class OwnWorld {
 public:
  explicit OwnWorld(Script& script) : script_(script) {}
  ~OwnWorld() { Dispose(); }
  OwnWorld(const OwnWorld&) = delete;
  OwnWorld& operator=(const OwnWorld&) = delete;

  [[nodiscard]] int Create(int width, int height, int flags) {
    const std::string size =
        std::to_string(width) + "x" + std::to_string(height) + " flags " + std::to_string(flags);
    const std::string name = "world" + std::to_string(script_.NextWorld());
    const int error = script_.Call("new_world " + name + " " + size, "new_world " + size);
    if (error != 0) return error;
    script_.CountWorld();
    name_ = name;
    return 0;
  }
  // A world of the wanted depth, if need be at the second try.
  [[nodiscard]] int CreateOfDepth(int width, int height, int flags, bool deep, bool usualDepth) {
    if (const int error = Create(width, height, flags); error != 0) return error;
    if (literal::NewWorldIsDeep(flags, usualDepth) == deep) return 0;
    Dispose();
    const int secondFlags = deep ? literal::kNewDeepWorld : 0;
    if (Create(width, height, secondFlags) != 0) return kMissing;
    if (literal::NewWorldIsDeep(secondFlags, usualDepth) == deep) return 0;
    Dispose();
    return kMissing;
  }
  void Dispose() {
    if (!name_.empty()) script_.Ignored("dispose_world " + name_);
    name_.clear();
  }
  const std::string& Name() const { return name_; }

 private:
  Script& script_;
  std::string name_;
};

// The stages on the working worlds A and B.
class Stages {
 public:
  Stages(Script& script, const RenderInputs& in, std::string a, std::string b)
      : script_(script),
        in_(in),
        s_(in.settings),
        plan_(literal::MakePlan(in.settings)),
        a_(std::move(a)),
        b_(std::move(b)) {}

  int Run(Suites& driver) {
    if (const int error = UniformPass()) return error;
    if (const int error = PassOrCopy(plan_.lightness, driver, b_, a_)) return error;
    if (const int error = PassOrCopy(plan_.color, driver, a_, b_)) return error;
    if (const int error = PassOrCopy(plan_.chromatic, driver, b_, a_)) return error;
    if (plan_.blendBeforeLens) FinalBlend(a_, b_);
    driver.Use(kWorldSuite);
    if (const int error = script_.Call("get_pixel_format input")) return error;
    if (const int error = PassOrCopy(!plan_.lensIsCopy, driver, b_, a_)) return error;
    if (!plan_.mappedBlurs) return 0;
    if (const int error = LensMappedPass()) return error;
    FinalBlend(b_, a_);
    return 0;
  }

 private:
  [[nodiscard]] int Copy(const std::string& from, const std::string& to) {
    return script_.Call("copy " + from + " -> " + to);
  }
  [[nodiscard]] int Pass(Suites& suites, const std::string& from, const std::string& to) {
    suites.Use(in_.newWorldDeep ? "PF iterate16 Suite 1" : "PF Iterate8 Suite 1");
    return script_.Call(std::string(in_.newWorldDeep ? "iterate16 " : "iterate8 ") + from + " -> " +
                        to + " rows 0.." + std::to_string(in_.input.height));
  }
  [[nodiscard]] int PassOrCopy(bool on, Suites& suites, const std::string& from,
                               const std::string& to) {
    return on ? Pass(suites, from, to) : Copy(from, to);
  }
  [[nodiscard]] int Fill(const std::string& world) {
    return script_.Call(std::string(in_.newWorldDeep ? "fill16 " : "fill ") + world +
                        " 0,0,0,0 in 0,0," + std::to_string(in_.input.width) + "," +
                        std::to_string(in_.input.height));
  }

  void FinalBlend(const std::string& from, const std::string& to) {
    Suites suites(script_);
    suites.Use(kWorldSuite);
    script_.Ignored("get_pixel_format input");
    suites.ReleaseAll();
    static_cast<void>(Pass(suites, from, to));
  }

  [[nodiscard]] int Realistic(const std::string& from, const std::string& to) {
    if (!(static_cast<double>(s_.realisticAmount) > 0.0001)) {
      static_cast<void>(Copy(from, to));
      return 0;
    }
    if (s_.realisticAmount * 100.0F >= static_cast<float>(kLargestIrisRadius + 1)) {
      return kOutOfMemory;
    }
    if (s_.realisticUseLensAsBlurMap == 0) return Fill(to);
    Suites suites(script_);
    return Pass(suites, from, to);
  }

  [[nodiscard]] int FastRound(const std::string& from, const std::string& to, bool lensMap) {
    Suites suites(script_);
    OwnWorld aside(script_);
    const int flags = in_.newWorldExtraFlags | (in_.newWorldDeep ? literal::kDeepWorld : 0);
    const int error = lensMap ? aside.CreateOfDepth(in_.input.width, in_.input.height, flags,
                                                    in_.newWorldDeep, in_.newWorldDeep)
                              : aside.Create(in_.input.width, in_.input.height, flags);
    if (error != 0) return error;
    static_cast<void>(Copy(from, aside.Name()));
    static_cast<void>(Pass(suites, from, to));
    if (const int failed = Pass(suites, to, from)) return failed;
    return Copy(from, to);
  }

  [[nodiscard]] int Fast(const std::string& from, const std::string& to) {
    if (literal::FastBlurIsCopy(s_)) return Copy(from, to);
    const bool lensMap = literal::FastBlurFollowsLens(s_);
    static_cast<void>(FastRound(from, to, lensMap));
    static_cast<void>(FastRound(to, from, lensMap));
    return FastRound(from, to, lensMap);
  }

  [[nodiscard]] int Trail(Suites& suites) {
    if (!(s_.trailAmount > 0 && s_.trailVisible == 1)) return Copy(b_, a_);
    if (const int error = Fill(a_)) return error;
    static_cast<void>(Pass(suites, b_, a_));
    const int error = FastRound(a_, b_, false);
    suites.ReleaseAll();
    return error != 0 ? error : Copy(a_, b_);
  }

  [[nodiscard]] int Directional() {
    const bool on = s_.directionalVisible == 1;
    if (on && s_.directionalAmount > kLongestLine) return kOutOfMemory;
    const bool isLine =
        on &&
        literal::DirectionalTaps(s_.directionalAmount, s_.directionalAngle, in_.maths).size() > 1;
    Suites suites(script_);
    return PassOrCopy(isLine, suites, a_, b_);
  }

  [[nodiscard]] int UniformPass() {
    int pending = 0;
    if (s_.realisticVisible == 1 && s_.realisticUseLensAsBlurMap == 0 && s_.realisticAmount > 0) {
      if (const int error = Realistic(a_, b_)) return error;
    } else {
      pending = Copy(a_, b_);
    }
    if (s_.fastBlurVisible == 1 && s_.fastBlurAmount > 0) {
      if (pending != 0) return pending;
      if (const int error = Fast(b_, a_)) return error;
    } else {
      const int error = Copy(b_, a_);
      if (pending != 0 || error != 0) return pending != 0 ? pending : error;
    }
    Suites suites(script_);
    if (s_.opticalVisible == 1 && s_.opticalAmount > 0) {
      const int error = Pass(suites, a_, b_);
      suites.ReleaseAll();
      if (error != 0) return error;
    } else {
      static_cast<void>(Copy(a_, b_));
    }
    if (const int error = Trail(suites)) return error;
    if (const int error = Directional()) return error;
    return Copy(b_, b_);
  }

  [[nodiscard]] int LensMappedPass() {
    int pending = 0;
    if (s_.realisticVisible == 1 && s_.realisticUseLensAsBlurMap == 1 && s_.realisticAmount > 0) {
      if (const int error = Realistic(a_, b_)) return error;
    } else {
      pending = Copy(a_, b_);
    }
    if (pending != 0) return pending;
    if (s_.fastBlurVisible == 1 && s_.fastBlurUseLensAsBlurMap == 1 && s_.fastBlurAmount > 0) {
      if (const int error = Fast(b_, a_)) return error;
      return Copy(a_, b_);
    }
    if (const int error = Copy(b_, a_)) return error;
    return Copy(b_, b_);
  }

  Script& script_;
  const RenderInputs& in_;
  const Settings& s_;
  const literal::Plan plan_;
  const std::string a_;
  const std::string b_;
};

// The private copy of the custom layer, between the check-out and the check-in.
int TakeCustomLayer(Script& script, const RenderInputs& in, const literal::RenderTime& time,
                    OwnWorld& custom) {
  if (script.Call("checkout_param 3 time " + std::to_string(time.current) + " step " +
                  std::to_string(time.step) + " scale " + std::to_string(time.scale)) != 0) {
    return 0;
  }
  const int abortRequest = script.Call("abort");
  int error = 0;
  if (in.custom != nullptr) {
    error = custom.Create(in.custom->width, in.custom->height, in.customFlags);
    if (error == 0) error = script.Call("copy custom -> " + custom.Name());
  }
  if (abortRequest != 0) return error;
  const int checkIn = script.Call("checkin_param 3");
  return error != 0 ? error : checkIn;
}

int Render(Script& script, const RenderInputs& in, const literal::RenderTime& time) {
  Suites suites(script);
  OwnWorld custom(script);
  OwnWorld b(script);
  OwnWorld a(script);
  if (const int error = TakeCustomLayer(script, in, time, custom)) return error;
  if (const int error = a.Create(in.input.width, in.input.height, 0)) return error;
  if (const int error = b.Create(in.input.width, in.input.height, 0)) return error;
  if (const int error = script.Call("copy input -> " + a.Name())) return error;
  if (const int error = Stages(script, in, a.Name(), b.Name()).Run(suites)) return error;
  return script.Call("copy " + a.Name() + " -> output");
}

}  // namespace

ExpectedOutcome ExpectRender(const literal::RenderInputs& inputs, const literal::RenderTime& time,
                             const std::vector<PlannedFailure>& failures) {
  Script script(failures);
  ExpectedOutcome outcome;
  try {
    outcome.error = Render(script, inputs, time);
  } catch (const MissingSuite&) {
    outcome.error = kMissing;
  }
  outcome.calls = script.TakeLines();
  return outcome;
}

}  // namespace vitrell::reliability
