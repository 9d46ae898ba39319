// What is measured: settings by name, and what each is measured beside.
#ifndef VITRELL_BENCH_CASES_H_
#define VITRELL_BENCH_CASES_H_

#include <string>
#include <vector>

#include "bench/bench_frame.h"

namespace vitrell::bench {

struct BenchCase {
  std::string name;
  std::string detail;  // Behind the size, such as "r20"; may be empty.
  Settings settings;
  // With a trail the picture depends on the threads' timing: it can only be checked on one.
  bool oneThreadOnly = false;
  bool customLayer = false;
  // Rendered in turn with the case; x_other is the case's time over the other's. The other settings
  // are another case's own, so that their picture is checked there.
  Settings other;
  // Which pass is the stage's own, counted from 0, and how many the render has; x_pass is its time,
  // with what the effect prepares for it, over the floor's same pass. -1: none.
  int pass = -1;
  int passes = 0;
  // x_pass is the time that the lens mask takes, over a pass of the floor.
  bool mask = false;
  // Whether it is also measured at 7680 x 4320.
  bool huge = false;
};

// Every case but the sum of stages.
std::vector<BenchCase> AllCases();

// Every stage at once, the lens alone, and each stage alone in that lens.
Settings EverythingOn();
Settings CircleAlone();
std::vector<Settings> EachAlone();

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_CASES_H_
