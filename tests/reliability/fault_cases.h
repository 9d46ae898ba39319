// Settings that together reach every branch of a render, for tests that make it fail.
#ifndef VITRELL_RELIABILITY_FAULT_CASES_H_
#define VITRELL_RELIABILITY_FAULT_CASES_H_

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "headless/effect_host.h"

namespace vitrell::reliability {

enum class CustomLayer { kNone, kOfTheRendersDepth, kOfTheOtherDepth };

// One render: every stage that `values` do not switch on is off.
struct FaultCase {
  std::string name;
  std::vector<std::pair<std::string, double>> values;  // By parameter path.
  CustomLayer custom = CustomLayer::kNone;
  headless::NewWorldDepth newWorldDepth = headless::NewWorldDepth::kRenderDepth;
  bool tooSlowTapByTap = false;  // The literal render would take minutes.
};

const std::vector<FaultCase>& FaultCases();

// A host set to one case, and its pictures: 13 x 9 pixels of noise with padded rows.
class FaultRender {
 public:
  FaultRender(std::shared_ptr<const headless::EffectModule> module, const FaultCase& faultCase,
              bool deep);

  headless::EffectHost& Host() { return host_; }
  headless::WorldBuffer& Input() { return input_; }
  headless::WorldBuffer& Output() { return output_; }
  const headless::WorldBuffer* Custom() const { return custom_ ? &*custom_ : nullptr; }
  headless::RenderOptions& Options() { return options_; }

  // Renders into poisoned pixels.
  headless::RenderResult Render();

 private:
  headless::EffectHost host_;
  headless::WorldBuffer input_;
  headless::WorldBuffer output_;
  std::optional<headless::WorldBuffer> custom_;
  headless::RenderOptions options_;
};

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_FAULT_CASES_H_
