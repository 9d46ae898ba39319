// The built modules: what they export, and their frames beside those of the effect's own module.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "frei0r/loaded_module.h"
#include "headless/effect_host.h"
#include "reliability/process_usage.h"
#include "reliability/sanitizers.h"

namespace vitrell::frei0r {
namespace {

using headless::WorldBuffer;

Frame Noise(int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  Frame frame(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (std::uint32_t& pixel : frame) pixel = static_cast<std::uint32_t>(random());
  return frame;
}

void Fill(const Frame& frame, WorldBuffer& world) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(frame.data());
  for (int y = 0; y < world.Height(); ++y) {
    for (int x = 0; x < world.Width(); ++x, bytes += 4) {
      world.At8(x, y) = {bytes[3], bytes[0], bytes[1], bytes[2]};
    }
  }
}

Frame Show(const WorldBuffer& world) {
  Frame frame(static_cast<std::size_t>(world.Width()) * static_cast<std::size_t>(world.Height()));
  auto* bytes = reinterpret_cast<std::uint8_t*>(frame.data());
  for (int y = 0; y < world.Height(); ++y) {
    for (int x = 0; x < world.Width(); ++x, bytes += 4) {
      const PF_Pixel pixel = world.At8(x, y);
      const std::array<std::uint8_t, 4> rgba = {pixel.red, pixel.green, pixel.blue, pixel.alpha};
      std::copy(rgba.begin(), rgba.end(), bytes);
    }
  }
  return frame;
}

struct Size {
  int width;
  int height;
};

// Lens, feather and a fast blur as the effect's own module draws them.
Frame Expected(Size size, const Frame& frame, double feather, double amount, const Frame* layer) {
  headless::EffectHost host(VITRELL_MODULE_PATH);
  host.SetFloat(host.IndexOf("lens.feather"), feather);
  host.SetFloat(host.IndexOf("fast-blur.amount"), amount);
  WorldBuffer input(size.width, size.height, false);
  WorldBuffer output(size.width, size.height, false);
  WorldBuffer custom(size.width, size.height, false);
  Fill(frame, input);
  if (layer != nullptr) {
    Fill(*layer, custom);
    host.SetPopup(host.IndexOf("lens.type"), 6);
  }
  const auto result = host.Render(input, output, layer != nullptr ? &custom : nullptr);
  EXPECT_TRUE(result.Ok()) << result.description;
  return Show(output);
}

// Feather and amount stand for 0..500 and 0..127.
Frame Filtered(const LoadedModule& module, Size size, const Frame& frame, double feather,
               double amount) {
  const Instance instance =
      module.construct(static_cast<unsigned>(size.width), static_cast<unsigned>(size.height));
  EXPECT_NE(instance, nullptr);
  if (instance == nullptr) return {};
  module.SetNumber(instance, "lens.feather", feather / 500);
  module.SetNumber(instance, "fast-blur.amount", amount / 127);
  Frame result(frame.size());
  module.filter(instance, 0, frame.data(), result.data());
  module.destruct(instance);
  return result;
}

std::string OutputOf(const std::string& command) {
  std::string text;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"),
                                                             &::pclose);
  std::array<char, 256> line{};
  while (std::fgets(line.data(), line.size(), pipe.get()) != nullptr) text += line.data();
  return text;
}

std::set<std::string> ExportsOf(const std::string& path) {
  std::istringstream words(OutputOf("nm -D --defined-only --format=just-symbols " + path));
  std::set<std::string> names;
  for (std::string name; words >> name;) names.insert(name);
  return names;
}

class Frei0rModuleTest : public testing::Test {
 protected:
  LoadedModule filter_{VITRELL_FREI0R_FILTER};
  LoadedModule mixer_{VITRELL_FREI0R_MIXER};
};

TEST_F(Frei0rModuleTest, OnlyTheInterfaceIsExported) {
  std::set<std::string> names = {
      "f0r_init",      "f0r_deinit",   "f0r_get_plugin_info", "f0r_get_param_info",
      "f0r_construct", "f0r_destruct", "f0r_set_param_value", "f0r_get_param_value"};
  std::set<std::string> ofMixer = names;
  names.insert("f0r_update");
  ofMixer.insert("f0r_update2");
  EXPECT_EQ(ExportsOf(VITRELL_FREI0R_FILTER), names);
  EXPECT_EQ(ExportsOf(VITRELL_FREI0R_MIXER), ofMixer);
}

TEST_F(Frei0rModuleTest, OneFileWithoutTextRelocations) {
  for (const std::string path : {VITRELL_FREI0R_FILTER, VITRELL_FREI0R_MIXER}) {
    const std::string dynamic = OutputOf("readelf --dynamic --wide " + path);
    EXPECT_EQ(dynamic.find("TEXTREL"), std::string::npos) << dynamic;
    std::istringstream lines(dynamic);
    int libraries = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find("(NEEDED)") == std::string::npos) continue;
      ++libraries;
      const bool isSystems = line.find("[libstdc++.so.") != std::string::npos ||
                             line.find("[libgcc_s.so.") != std::string::npos ||
                             line.find("[libm.so.") != std::string::npos ||
                             line.find("[libc.so.") != std::string::npos ||
                             line.find("[ld-linux") != std::string::npos;
      EXPECT_TRUE(isSystems) << line;
    }
    EXPECT_GT(libraries, 0);
  }
}

TEST_F(Frei0rModuleTest, TellsOfItselfBeforeItIsSetUp) {
  ModuleInfo info{};
  filter_.getModuleInfo(&info);
  EXPECT_STREQ(info.name, "Vitrell");
  EXPECT_EQ(info.type, kFilterModule);
  EXPECT_EQ(info.colourModel, kRgba);
  EXPECT_EQ(info.interfaceVersion, kInterfaceVersion);
  EXPECT_EQ(info.parameterCount, 44);
  mixer_.getModuleInfo(&info);
  EXPECT_EQ(info.type, kMixerModule);
  EXPECT_EQ(info.parameterCount, 44);
  EXPECT_EQ(filter_.init(), 1);
  EXPECT_EQ(mixer_.init(), 1);
  ParameterInfo parameter{};
  filter_.getParameterInfo(&parameter, filter_.IndexOf("fast-blur.amount"));
  EXPECT_EQ(parameter.type, kNumberParameter);
  EXPECT_STREQ(parameter.explanation, "Amount: 0 is 0, 1 is 127");
  filter_.getParameterInfo(&parameter, filter_.IndexOf("color.color"));
  EXPECT_EQ(parameter.type, kColourParameter);
  filter_.getParameterInfo(&parameter, filter_.IndexOf("fast-blur.visible"));
  EXPECT_EQ(parameter.type, kSwitchParameter);
  filter_.getParameterInfo(&parameter, 44);
  EXPECT_STREQ(parameter.name, "");
}

TEST_F(Frei0rModuleTest, ValuesAreThoseThatWereSet) {
  const Instance instance = filter_.construct(4, 4);
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(filter_.GetNumber(instance, "fast-blur.amount"), 20.0 / 127);
  filter_.SetNumber(instance, "fast-blur.amount", 0.5);
  EXPECT_EQ(filter_.GetNumber(instance, "fast-blur.amount"), 0.5);
  filter_.SetNumber(instance, "fast-blur.visible", 0);
  EXPECT_EQ(filter_.GetNumber(instance, "fast-blur.visible"), 0);
  filter_.SetNumber(instance, "fast-blur.visible", 1);
  EXPECT_EQ(filter_.GetNumber(instance, "fast-blur.visible"), 1);
  filter_.SetNumber(instance, "lens.position-y", 0.25);
  EXPECT_EQ(filter_.GetNumber(instance, "lens.position-x"), 0.5);
  EXPECT_EQ(filter_.GetNumber(instance, "lens.position-y"), 0.25);
  Colour colour{1, 0.5F, 0};
  filter_.setParameter(instance, &colour, filter_.IndexOf("color.color"));
  Colour back{};
  filter_.getParameter(instance, &back, filter_.IndexOf("color.color"));
  EXPECT_EQ(back.red, 1);
  EXPECT_EQ(back.green, 128 / 255.0F);
  EXPECT_EQ(back.blue, 0);
  filter_.destruct(instance);
}

TEST_F(Frei0rModuleTest, FramesOfAnySizeAreThoseOfTheEffect) {
  for (const Size size : {Size{1, 1}, Size{7, 5}, Size{1, 9}, Size{480, 270}, Size{1921, 1081}}) {
    const Frame frame = Noise(size.width, size.height, 5);
    const Frame expected = Expected(size, frame, 12.5, 7, nullptr);
    EXPECT_TRUE(Filtered(filter_, size, frame, 12.5, 7) == expected)
        << size.width << " x " << size.height;
    EXPECT_EQ(frame == expected, size.width == 1 && size.height == 1);
  }
}

TEST_F(Frei0rModuleTest, TheMixersSecondInputIsTheLens) {
  const Size size = {61, 43};
  const Frame frame = Noise(size.width, size.height, 6);
  const Frame layer = Noise(size.width, size.height, 7);
  const Instance instance = mixer_.construct(61, 43);
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(mixer_.GetNumber(instance, "lens.type"), 1);
  mixer_.SetNumber(instance, "fast-blur.amount", 9 / 127.0);
  Frame result(frame.size());
  mixer_.mixer(instance, 0, frame.data(), layer.data(), nullptr, result.data());
  EXPECT_TRUE(result == Expected(size, frame, 0, 9, &layer));
  EXPECT_TRUE(result != frame);
  EXPECT_TRUE(result != Expected(size, frame, 0, 9, nullptr));
  mixer_.destruct(instance);
}

TEST_F(Frei0rModuleTest, TheResultMayTakeTheFramesPlace) {
  const Size size = {64, 48};
  const Frame frame = Noise(size.width, size.height, 8);
  Frame place = frame;
  const Instance instance = filter_.construct(64, 48);
  ASSERT_NE(instance, nullptr);
  filter_.filter(instance, 0, place.data(), place.data());
  filter_.destruct(instance);
  EXPECT_TRUE(place == Expected(size, frame, 0, 20, nullptr));
}

TEST_F(Frei0rModuleTest, FourInstancesAtOnceDisturbNeitherEachOtherNorTheirFrames) {
  std::array<std::thread, 4> threads;
  std::array<int, 4> wrong{};
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([this, i, &wrong] {
      const int number = static_cast<int>(i);
      const Size size = {90 + 7 * number, 60 - 5 * number};
      const Frame frame = Noise(size.width, size.height, 20U + static_cast<unsigned>(i));
      const Frame expected = Expected(size, frame, 20.0 * number, 3.5 * number, nullptr);
      for (int round = 0; round < 12; ++round) {
        wrong[i] += Filtered(filter_, size, frame, 20.0 * number, 3.5 * number) != expected;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

TEST_F(Frei0rModuleTest, AnImpossibleSizeMakesNoInstance) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(filter_.construct(0, 5), nullptr);
  EXPECT_EQ(filter_.construct(5, 0), nullptr);
  EXPECT_EQ(filter_.construct(30001, 5), nullptr);
  EXPECT_EQ(filter_.construct(4000000000U, 4000000000U), nullptr);
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
}

TEST_F(Frei0rModuleTest, MemoryStaysFlatOverTenThousandFrames) {
  const Frame frame = Noise(16, 9, 9);
  Frame result(frame.size());
  const Instance instance = filter_.construct(16, 9);
  ASSERT_NE(instance, nullptr);
  long heapAfterFirst = 0;
  const int frames = reliability::kSanitized ? 400 : 10000;
  for (int i = 0; i < frames; ++i) {
    filter_.SetNumber(instance, "fast-blur.amount", (i % 40) / 127.0);
    filter_.filter(instance, i / 25.0, frame.data(), result.data());
    if (i == frames / 10) heapAfterFirst = reliability::MeasureUsage().heapKb;
  }
  EXPECT_LE(reliability::MeasureUsage().heapKb - heapAfterFirst, 16);
  filter_.destruct(instance);
}

// Ends with 0 when two frames without memory are handed on.
[[noreturn]] void RenderWithoutMemory() {
  const LoadedModule module(VITRELL_FREI0R_FILTER);
  const Instance instance = module.construct(1921, 1081);
  const Frame frame = Noise(1921, 1081, 10);
  Frame result(frame.size());
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  const rlim_t bytes = static_cast<rlim_t>(pages) * 4096 + (4U << 20);
  const rlimit limit{bytes, bytes};
  ::setrlimit(RLIMIT_AS, &limit);
  module.filter(instance, 0, frame.data(), result.data());
  const bool first = result == frame;
  result.assign(result.size(), 0);
  module.filter(instance, 1, frame.data(), result.data());
  std::_Exit(first && result == frame ? 0 : 1);
}

// In a process of its own, whose memory is limited when the instance stands.
TEST(Frei0rModuleMemoryTest, AFrameWithoutMemoryIsHandedOn) {
  if (reliability::kSanitized) GTEST_SKIP() << "A sanitizer needs the address space.";
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(RenderWithoutMemory(), testing::ExitedWithCode(0),
              "^vitrell: a frame of 1921 x 1081 stays as it was: [^\n]*\n$");
}

}  // namespace
}  // namespace vitrell::frei0r
