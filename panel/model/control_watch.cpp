// Comparing with the settings before.
#include "panel/model/control_watch.h"

#include <algorithm>
#include <utility>

namespace vitrell::panel {

bool ControlWatch::SeesOther(const look::Settings& settings) {
  std::vector<look::Value> values = settings.Values();
  std::set<std::size_t> changed;
  for (std::size_t i = 0; i < std::min(values.size(), seen_.size()); ++i) {
    if (values[i] != seen_[i]) changed.insert(i);
  }
  seen_ = std::move(values);
  if (std::includes(turned_.begin(), turned_.end(), changed.begin(), changed.end())) return false;
  turned_ = std::move(changed);
  return true;
}

}  // namespace vitrell::panel
