// The measured cases of each stage, defined under the stage's own name.
#ifndef VITRELL_BENCH_STAGE_CASES_H_
#define VITRELL_BENCH_STAGE_CASES_H_

#include <vector>

#include "bench/cases.h"

namespace vitrell::bench {

std::vector<BenchCase> FastBlurCases();
std::vector<BenchCase> RealisticBlurCases();
std::vector<BenchCase> DirectionalBlurCases();
std::vector<BenchCase> TrailCases();
std::vector<BenchCase> OpticalDistortionCases();
std::vector<BenchCase> LightnessCases();
std::vector<BenchCase> ColorEffectCases();
std::vector<BenchCase> ChromaticAberrationCases();
std::vector<BenchCase> BlendCases();
std::vector<BenchCase> LensStageCases();
std::vector<BenchCase> LensMaskCases();

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_STAGE_CASES_H_
