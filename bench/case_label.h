// Names of measured cases, under which the benchmarks register them and the report finds them.
#ifndef VITRELL_BENCH_CASE_LABEL_H_
#define VITRELL_BENCH_CASE_LABEL_H_

#include <string>

namespace vitrell::bench {

// "FastBlur/8bit/1080p/r20/threads1"; the detail may be empty.
inline std::string CaseLabel(const std::string& name, const std::string& detail,
                             const std::string& size, bool deep, int threads) {
  return name + (deep ? "/16bit/" : "/8bit/") + size + (detail.empty() ? "" : "/") + detail +
         "/threads" + std::to_string(threads);
}

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_CASE_LABEL_H_
