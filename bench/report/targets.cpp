// The performance targets of the measured cases.
#include "bench/report/targets.h"

#include <map>
#include <utility>

namespace vitrell::report {
namespace {

// Memory that the realistic blur may use besides the worlds: 64 MB and four floats a pixel.
constexpr double kRealisticMegabytes = 64 + 16 * 1920 * 1080 / 1e6;

Target Of(std::string what, std::string beside, double limit, CaseName name, std::string counter) {
  Target target;
  target.what = std::move(what);
  target.beside = std::move(beside);
  target.limit = limit;
  target.figure = [name = std::move(name), counter = std::move(counter)](const Results& results,
                                                                         bool deep) {
    return results.Get(name, {deep}, counter);
  };
  return target;
}

Target Floor(std::string what, double limit, CaseName name) {
  return Of(std::move(what), "its floor", limit, std::move(name), "x_floor");
}

Target Beside(std::string what, std::string beside, double limit, CaseName name) {
  return Of(std::move(what), std::move(beside), limit, std::move(name), "x_other");
}

Target Pass(std::string what, double limit, CaseName name) {
  return Of(std::move(what), "a pass of the floor", limit, std::move(name), "x_pass");
}

Target Peer(std::string what, std::string beside, double limit, CaseName name, std::string peer) {
  Target target;
  target.what = std::move(what);
  target.beside = std::move(beside);
  target.limit = limit;
  target.figure = [name = std::move(name), peer = std::move(peer)](const Results& results,
                                                                   bool deep) {
    return Ratio(results.Get(name, {deep}, "ms"), results.Peer(peer));
  };
  return target;
}

Target RealisticMemory() {
  Target target;
  target.what = "Realistic blur, radius 100: memory beside the worlds";
  target.beside = "64 MB and 4 floats a pixel";
  target.deepSlack = 1;
  target.figure = [](const Results& results, bool deep) -> std::optional<double> {
    const CaseName name = {"RealisticBlur", "r100"};
    const auto rise = results.Get(name, {deep}, "rise_mb");
    const auto worlds = results.Get(name, {deep}, "worlds_mb");
    if (!rise || !worlds) return std::nullopt;
    return (*rise - *worlds) / kRealisticMegabytes;
  };
  return target;
}

Target TwoThreads() {
  Target target;
  target.what = "Default parameters, two threads: times as fast";
  target.beside = "one thread";
  target.limit = 1.7;
  target.deepSlack = 1;
  target.atLeast = true;
  target.figure = [](const Results& results, bool deep) {
    const Setup setup = {deep, "1080p", 2};
    return Ratio(results.Get({"WholeDefault", ""}, setup, "other_ms"),
                 results.Get({"WholeDefault", ""}, setup, "ms"));
  };
  return target;
}

// 1.05 allows for the error of a sum of nine differences, yet would show a stage that costs more
// within the whole than alone.
Target Everything() {
  Target target = Beside("Everything on", "the lens and what each stage adds to it alone", 1.05,
                         {"Everything", ""});
  target.deepSlack = 1;
  return target;
}

std::vector<Target> Blurs() {
  return {
      Beside("Fast blur, radius 500", "radius 5", 1.15, {"FastBlur", "r500"}),
      Beside("Fast blur by the lens, amount 20, feather 50", "the same without the map", 3,
             {"FastBlurMapped", "r20-feather50"}),
      Beside("Fast blur by the lens, amount 200, feather 50", "amount 20", 2,
             {"FastBlurMapped", "r200-feather50"}),
      Beside("Fast blur by the lens, amount 200, feather 150", "amount 20", 2,
             {"FastBlurMapped", "r200-feather150"}),
      Peer("Realistic blur, radius 20", "FFTW", 1, {"RealisticBlur", "r20"}, "fftw/pentagon/r20"),
      Peer("Realistic blur, radius 50", "FFTW", 1, {"RealisticBlur", "r50"}, "fftw/pentagon/r50"),
      Peer("Realistic blur, radius 100", "FFTW", 1, {"RealisticBlur", "r100"},
           "fftw/pentagon/r100"),
      Peer("Realistic blur, radius 20", "OpenCV", 1, {"RealisticBlur", "r20"},
           "opencv/pentagon/r20"),
      Peer("Realistic blur, radius 50", "OpenCV", 1, {"RealisticBlur", "r50"},
           "opencv/pentagon/r50"),
      Peer("Realistic blur, radius 100", "OpenCV", 1, {"RealisticBlur", "r100"},
           "opencv/pentagon/r100"),
      RealisticMemory(),
      Peer("Realistic blur by the lens, radius 20", "GEGL's lens blur by map", 1,
           {"RealisticBlurMapped", "r20"}, "gegl/lens-blur-map/r20"),
      Peer("Realistic blur by the lens, radius 50", "GEGL's lens blur by map", 2,
           {"RealisticBlurMapped", "r50"}, "gegl/lens-blur-map/r50"),
      Peer("Directional blur 20", "OpenCV's line of 41", 1, {"DirectionalBlur", "20"},
           "opencv/line/41"),
      Beside("Directional blur 200", "amount 20", 5, {"DirectionalBlur", "200"}),
      Peer("Trail 30", "GEGL's zooming blur 0.05", 1, {"Trail", "30"},
           "gegl/motion-blur-zoom/0.05"),
      Peer("Trail 100", "GEGL's zooming blur 0.2", 1, {"Trail", "100"},
           "gegl/motion-blur-zoom/0.2"),
      Peer("Optical distortion", "OpenCV's remap with ready maps", 4,
           {"OpticalDistortion", "90deg"}, "opencv/remap/bilinear"),
      Peer("Optical distortion", "FFmpeg's lens correction", 1, {"OpticalDistortion", "90deg"},
           "ffmpeg/lenscorrection/bilinear"),
  };
}

std::vector<Target> Passes() {
  return {
      Pass("Lightness", 1.3, {"Lightness", "40"}),
      Pass("Colour", 1.3, {"Color", "50"}),
      Pass("Chromatic aberration", 2, {"ChromaticAberration", "10"}),
      Pass("Final blend, Normal 100 %", 1.3, {"Blend", "normal-100"}),
      Pass("Final blend, Normal 70 %", 1.3, {"Blend", "normal-70"}),
      Pass("Final blend, Add 70 %", 1.3, {"Blend", "add-70"}),
      Pass("Final blend, Screen 70 %", 1.3, {"Blend", "screen-70"}),
      Pass("Final blend, Multiply 100 %", 1.3, {"Blend", "multiply-100"}),
      Pass("Final blend, Multiply 70 %", 1.3, {"Blend", "multiply-70"}),
      Pass("Lens", 1.3, {"Lens", "feather50"}),
      Pass("Lens mask, circle", 1, {"LensMask", "circle"}),
      Pass("Lens mask, triangle", 2, {"LensMask", "triangle"}),
      Pass("Lens mask, custom", 3, {"LensMask", "custom"}),
  };
}

}  // namespace

std::vector<Target> AllTargets() {
  std::vector<Target> targets = {Floor("Default parameters", 1.6, {"WholeDefault", ""}),
                                 Floor("All stages off", 1.3, {"AllOff", ""})};
  for (const auto& more : {Blurs(), Passes()}) {
    targets.insert(targets.end(), more.begin(), more.end());
  }
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
