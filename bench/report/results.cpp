// The results of the benchmarks and the peers.
#include "bench/report/results.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "bench/case_label.h"

namespace vitrell::report {
namespace {

std::ifstream Open(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path + " cannot be read");
  return file;
}

// "FastBlur/8bit/1080p/r20/threads1" -> {"FastBlur", "r20"}.
CaseName NameOf(const std::string& label) {
  std::vector<std::string> words;
  std::istringstream stream(label);
  for (std::string word; std::getline(stream, word, '/');) words.push_back(word);
  if (words.size() < 4) throw std::runtime_error("not the name of a case: " + label);
  return {words[0], words.size() > 4 ? words[3] : ""};
}

}  // namespace

Results::Results(const std::string& benchmarks, const std::string& peers) {
  std::ifstream file = Open(benchmarks);
  const nlohmann::json all = nlohmann::json::parse(file);
  for (const auto& entry : all.at("benchmarks")) {
    std::string label = entry.at("name");
    label = label.substr(0, label.find("/iterations"));
    if (entry.value("error_occurred", false)) {
      throw std::runtime_error(label + ": " + entry.value("error_message", "failed"));
    }
    for (const auto& [key, value] : entry.items()) {
      if (value.is_number()) counters_[label][key] = value;
    }
    const CaseName name = NameOf(label);
    const bool known = std::any_of(cases_.begin(), cases_.end(), [&](const CaseName& other) {
      return other.name == name.name && other.detail == name.detail;
    });
    if (!known) cases_.push_back(name);
  }
  std::ifstream lines = Open(peers);
  std::string name;
  for (double ms = 0; lines >> name >> ms;) peers_[name] = ms;
}

std::optional<double> Results::Get(const CaseName& what, const Setup& setup,
                                   const std::string& counter) const {
  const auto found = counters_.find(
      bench::CaseLabel(what.name, what.detail, setup.size, setup.deep, setup.threads));
  if (found == counters_.end()) return std::nullopt;
  const auto value = found->second.find(counter);
  if (value == found->second.end()) return std::nullopt;
  return value->second;
}

bool Results::Has(const CaseName& what, const Setup& setup) const {
  return Get(what, setup, "ms").has_value();
}

std::optional<double> Results::Peer(const std::string& name) const {
  const auto found = peers_.find(name);
  if (found == peers_.end()) return std::nullopt;
  return found->second;
}

std::optional<double> Ratio(std::optional<double> a, std::optional<double> b) {
  if (!a || !b || *b == 0) return std::nullopt;
  return *a / *b;
}

}  // namespace vitrell::report
