// The results of the benchmarks and the peers.
#ifndef VITRELL_BENCH_REPORT_RESULTS_H_
#define VITRELL_BENCH_REPORT_RESULTS_H_

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vitrell::report {

// A case without its depth, size and threads: {"FastBlur", "r20"}.
struct CaseName {
  std::string name;
  std::string detail;
};

// The configuration in which a case was measured.
struct Setup {
  bool deep = false;
  std::string size = "1080p";
  int threads = 1;
};

class Results {
 public:
  // Reads the benchmarks' JSON file and lines of "peer/case <tab> milliseconds", which may be
  // absent. Throws std::runtime_error for a file that cannot be read and for a case whose result
  // was wrong.
  Results(const std::string& benchmarks, const std::string& peers);

  // A counter of a case; empty if the case was not measured.
  [[nodiscard]] std::optional<double> Get(const CaseName& what, const Setup& setup,
                                          const std::string& counter) const;
  [[nodiscard]] bool Has(const CaseName& what, const Setup& setup) const;
  // Milliseconds of a peer's case, such as "fftw/pentagon/r20".
  [[nodiscard]] std::optional<double> Peer(const std::string& name) const;

  // The cases in the order of measurement, without repetitions.
  [[nodiscard]] const std::vector<CaseName>& Cases() const { return cases_; }

 private:
  std::map<std::string, std::map<std::string, double>> counters_;
  std::map<std::string, double> peers_;
  std::vector<CaseName> cases_;
};

// a / b, or nothing if either is unknown or b is 0.
std::optional<double> Ratio(std::optional<double> a, std::optional<double> b);

}  // namespace vitrell::report

#endif  // VITRELL_BENCH_REPORT_RESULTS_H_
