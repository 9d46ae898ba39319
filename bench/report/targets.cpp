// The performance targets of the measured cases.
#include "bench/report/targets.h"

#include <map>
#include <utility>

namespace vitrell::report {
namespace {

// Memory that the realistic blur may use besides the worlds: 64 MB and four floats a pixel.
constexpr double kRealisticMegabytes = 64 + 16 * 1920 * 1080 / 1e6;

// Of both depths; without one the figure is only told.
struct Limits {
  std::optional<double> plain;
  std::optional<double> deep;
};

// 16 bits may take half as long again where nothing else is wanted.
constexpr Limits Usual(double plain) { return {plain, 1.5 * plain}; }
constexpr Limits Both(double limit) { return {limit, limit}; }

using Figure = std::function<std::optional<double>(const Results&, bool deep)>;

Target Of(std::string what, std::string beside, Limits limits, Figure figure) {
  Target target;
  target.what = std::move(what);
  target.beside = std::move(beside);
  target.limit = limits.plain;
  target.deepLimit = limits.deep;
  target.figure = std::move(figure);
  return target;
}

Figure Counter(CaseName name, std::string counter) {
  return [name = std::move(name), counter = std::move(counter)](const Results& results, bool deep) {
    return results.Get(name, {deep}, counter);
  };
}

Target Floor(std::string what, Limits limits, CaseName name) {
  return Of(std::move(what), "its floor", limits, Counter(std::move(name), "x_floor"));
}

Target Beside(std::string what, std::string beside, Limits limits, CaseName name) {
  return Of(std::move(what), std::move(beside), limits, Counter(std::move(name), "x_other"));
}

Target Pass(std::string what, Limits limits, CaseName name) {
  return Of(std::move(what), "a pass of the floor", limits, Counter(std::move(name), "x_pass"));
}

Target Peer(std::string what, std::string beside, Limits limits, CaseName name, std::string peer) {
  return Of(std::move(what), std::move(beside), limits,
            [name = std::move(name), peer = std::move(peer)](const Results& results, bool deep) {
              return Ratio(results.Get(name, {deep}, "ms"), results.Peer(peer));
            });
}

// How much more a pixel costs in a frame of 7680 x 4320 than in one of 1920 x 1080.
Target Growth(std::string what, CaseName name) {
  return Of(std::move(what) + ", a pixel at 4320p : at 1080p", "the floor's own growth", Both(1.1),
            [name = std::move(name)](const Results& results, bool deep) {
              return Ratio(results.Get(name, {deep, "4320p"}, "x_floor"),
                           results.Get(name, {deep, "1080p"}, "x_floor"));
            });
}

Target RealisticMemory() {
  const auto figure = [](const Results& results, bool deep) -> std::optional<double> {
    const CaseName name = {"RealisticBlur", "r100"};
    const auto rise = results.Get(name, {deep}, "rise_mb");
    const auto worlds = results.Get(name, {deep}, "worlds_mb");
    if (!rise || !worlds) return std::nullopt;
    return (*rise - *worlds) / kRealisticMegabytes;
  };
  return Of("Realistic blur, radius 100: memory beside the worlds", "64 MB and 4 floats a pixel",
            Both(1), figure);
}

Target TwoThreads() {
  Target target = Of("Default parameters, two threads: times as fast", "one thread", Both(1.7),
                     [](const Results& results, bool deep) {
                       const Setup setup = {deep, "1080p", 2};
                       return Ratio(results.Get({"WholeDefault", ""}, setup, "other_ms"),
                                    results.Get({"WholeDefault", ""}, setup, "ms"));
                     });
  target.atLeast = true;
  return target;
}

// 1.05 allows for the error of a sum of nine differences, yet would show a stage that costs more
// within the whole than alone.
Target Everything() {
  return Beside("Everything on", "the lens and what each stage adds to it alone", Both(1.05),
                {"Everything", ""});
}

std::vector<Target> FastBlurs() {
  return {
      Beside("Fast blur, radius 500", "radius 5", Usual(1.15), {"FastBlur", "r500"}),
      Beside("Fast blur by the lens, amount 20, feather 50", "the same without the map", Both(2.5),
             {"FastBlurMapped", "r20-feather50"}),
      Beside("Fast blur by the lens, amount 200, feather 50", "amount 20", Usual(2),
             {"FastBlurMapped", "r200-feather50"}),
      Beside("Fast blur by the lens, amount 200, feather 150", "amount 20", Usual(2),
             {"FastBlurMapped", "r200-feather150"}),
  };
}

std::vector<Target> RealisticBlurs() {
  std::vector<Target> targets;
  const std::string blur = "Realistic blur, radius ";
  for (const char* radius : {"20", "50", "100"}) {
    const std::string detail = std::string("r") + radius;
    targets.push_back(Peer(blur + radius, "FFTW", Usual(1), {"RealisticBlur", detail},
                           "fftw/pentagon/" + detail));
  }
  const auto beside = [&](const std::string& radius, double limit) {
    targets.push_back(Peer(blur + radius, "OpenCV's pentagon", Both(limit),
                           {"RealisticBlur", "r" + radius}, "opencv/pentagon/r" + radius));
  };
  beside("20", 0.9);
  beside("50", 0.8);
  beside("100", 0.6);
  targets.push_back(RealisticMemory());
  targets.push_back(Peer("Realistic blur by the lens, radius 20", "GEGL's lens blur by map",
                         Both(2), {"RealisticBlurMapped", "r20"}, "gegl/lens-blur-map/r20"));
  targets.push_back(Peer("Realistic blur by the lens, radius 50", "GEGL's lens blur by map",
                         Both(2.6), {"RealisticBlurMapped", "r50"}, "gegl/lens-blur-map/r50"));
  return targets;
}

std::vector<Target> OtherBlurs() {
  const std::string line = "OpenCV's line of 41";
  const auto directional = [&](const std::string& what, Limits limits, const std::string& detail) {
    return Peer("Directional blur " + what, line, limits, {"DirectionalBlur", detail},
                "opencv/line/41");
  };
  return {
      directional("20", {2, 3}, "20"),
      directional("200, along columns", {4, {}}, "200"),
      directional("200, along rows", {4, {}}, "200-90deg"),
      directional("200, along diagonals", {4, {}}, "200-45deg"),
      Peer("Trail 30", "GEGL's zooming blur 0.05", Usual(1), {"Trail", "30"},
           "gegl/motion-blur-zoom/0.05"),
      Peer("Trail 100", "GEGL's zooming blur 0.2", Usual(1), {"Trail", "100"},
           "gegl/motion-blur-zoom/0.2"),
      Peer("Optical distortion", "OpenCV's remap with ready maps", {4, 5},
           {"OpticalDistortion", "90deg"}, "opencv/remap/bilinear"),
      Peer("Optical distortion", "FFmpeg's lens correction", Usual(1),
           {"OpticalDistortion", "90deg"}, "ffmpeg/lenscorrection/bilinear"),
  };
}

std::vector<Target> Passes() {
  return {
      Pass("Lightness", Usual(1.3), {"Lightness", "40"}),
      Pass("Colour", Usual(1.3), {"Color", "50"}),
      Pass("Chromatic aberration", Usual(2), {"ChromaticAberration", "10"}),
      Pass("Final blend, Normal 100 %", Usual(1.3), {"Blend", "normal-100"}),
      Pass("Final blend, Normal 70 %", {1.5, 2}, {"Blend", "normal-70"}),
      Pass("Final blend, Add 70 %", {1.5, 2}, {"Blend", "add-70"}),
      Pass("Final blend, Screen 70 %", {1.5, 2}, {"Blend", "screen-70"}),
      Pass("Final blend, Multiply 100 %", Usual(1.3), {"Blend", "multiply-100"}),
      Pass("Final blend, Multiply 70 %", {1.5, 2}, {"Blend", "multiply-70"}),
      Pass("Lens", Both(1.5), {"Lens", "feather50"}),
      Pass("Lens mask, circle", Both(1.5), {"LensMask", "circle"}),
      Pass("Lens mask, rectangle", Both(1.5), {"LensMask", "rectangle"}),
      Pass("Lens mask, triangle", Both(4), {"LensMask", "triangle"}),
      Pass("Lens mask, custom", Both(2.5), {"LensMask", "custom"}),
  };
}

}  // namespace

std::vector<Target> AllTargets() {
  std::vector<Target> targets = {Floor("Default parameters", {1.5, 1.8}, {"WholeDefault", ""}),
                                 Floor("All stages off", Usual(1.3), {"AllOff", ""})};
  for (const auto& more : {FastBlurs(), RealisticBlurs(), OtherBlurs(), Passes()}) {
    targets.insert(targets.end(), more.begin(), more.end());
  }
  targets.push_back(Growth("Default parameters", {"WholeDefault", ""}));
  targets.push_back(Growth("Fast blur, radius 20", {"FastBlur", "r20"}));
  targets.push_back(Growth("Realistic blur, radius 20", {"RealisticBlur", "r20"}));
  targets.push_back(TwoThreads());
  targets.push_back(Everything());
  return targets;
}

std::vector<std::string> PeersOf(const CaseName& what) {
  static const std::map<std::string, std::vector<std::string>> kPeers = {
      {"FastBlur/r20",
       {"opencv/blur3/r20", "ffmpeg/boxblur3/r20", "vips/box3/r20", "gegl/box-blur/r20"}},
      {"RealisticBlur/r20", {"fftw/pentagon/r20", "opencv/pentagon/r20", "gegl/lens-blur/r20"}},
      {"RealisticBlur/r50", {"fftw/pentagon/r50", "opencv/pentagon/r50", "gegl/lens-blur/r50"}},
      {"RealisticBlur/r100", {"fftw/pentagon/r100", "opencv/pentagon/r100"}},
      {"RealisticBlurMapped/r20", {"gegl/lens-blur-map/r20"}},
      {"RealisticBlurMapped/r50", {"gegl/lens-blur-map/r50"}},
      {"DirectionalBlur/20", {"opencv/line/41", "gegl/motion-blur-linear/41"}},
      {"Trail/30", {"gegl/motion-blur-zoom/0.05"}},
      {"Trail/100", {"gegl/motion-blur-zoom/0.2"}},
      {"OpticalDistortion/90deg",
       {"opencv/remap/bilinear", "ffmpeg/lenscorrection/bilinear", "gegl/lens-distortion"}},
      {"Lightness/40", {"opencv/lut"}},
      {"Color/50", {"opencv/lut"}},
      {"Blend/normal-70", {"opencv/blend"}},
  };
  const auto found = kPeers.find(what.name + "/" + what.detail);
  return found == kPeers.end() ? std::vector<std::string>{} : found->second;
}

}  // namespace vitrell::report
