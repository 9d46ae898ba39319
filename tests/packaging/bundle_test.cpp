// The finished bundle: the slice of this processor runs here and renders what the Linux module
// renders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "headless/effect_host.h"
#include "packaging/mapped_image.h"
#include "packaging/processor.h"
#include "vitrell_resource.h"
#include "whole/golden_record.h"
#include "whole/literal_bridge.h"
#include "whole/picture_hash.h"
#include "whole/random_case.h"

namespace vitrell::packaging {
namespace {

constexpr int kDefaultCases = 1500;
constexpr std::uint64_t kDefaultSeed = 51000000;
constexpr int kReportedCases = 3;
constexpr int kShares = 6;

const std::filesystem::path kContents = std::filesystem::path(VITRELL_MACOS_BUNDLE) / "Contents";

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.is_open()) << path;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// One image for all tests; it is never unmapped.
const MappedImage& Image() {
  static const MappedImage image(kContents / "MacOS" / "Vitrell");
  return image;
}

std::shared_ptr<const headless::EffectModule> BundleModule() {
  return std::make_shared<headless::EffectModule>(
      AdaptEntryPoint(
          reinterpret_cast<PF_EntryPoint>(Image().Find(headless::EffectModule::kEntryPointName))),
      std::string("the bundle's slice for ") + kSlice);
}

std::shared_ptr<const headless::EffectModule> LinuxModule() {
  return std::make_shared<headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH));
}

// A host on each of the two, given the same work.
struct Hosts {
  headless::EffectHost bundle{BundleModule()};
  headless::EffectHost linuxModule{LinuxModule()};
};

struct Rendered {
  headless::WorldBuffer input;
  headless::WorldBuffer output;
  headless::RenderResult result;
};

Rendered RenderCase(std::uint64_t seed, headless::EffectHost& host) {
  whole::RandomCase testCase = whole::MakeRandomCase(seed, host);
  headless::RenderResult result =
      host.Render(testCase.input, testCase.output,
                  testCase.custom.has_value() ? &*testCase.custom : nullptr, testCase.options);
  return {testCase.input, testCase.output, std::move(result)};
}

// Whether the two agree in every way a host can see.
bool AgreeOn(std::uint64_t seed, Hosts& hosts) {
  const Rendered expected = RenderCase(seed, hosts.linuxModule);
  const Rendered actual = RenderCase(seed, hosts.bundle);
  SCOPED_TRACE("seed " + std::to_string(seed));
  EXPECT_EQ(actual.result.error, expected.result.error) << actual.result.description;
  EXPECT_EQ(headless::DescribeDifference(expected.output, actual.output), "");
  EXPECT_EQ(actual.output.Damage().value_or(""), "");
  EXPECT_EQ(headless::CallTexts(actual.result.calls), headless::CallTexts(expected.result.calls));
  EXPECT_EQ(actual.result.complaints, expected.result.complaints);
  return actual.result.error == expected.result.error &&
         headless::SamePixels(expected.output, actual.output) &&
         headless::CallTexts(actual.result.calls) == headless::CallTexts(expected.result.calls);
}

TEST(BundleTest, EntryPointLiesInTheMappedImage) {
  EXPECT_TRUE(Image().Contains(Image().Find("EntryPointFunc")));
  EXPECT_THAT(Image().Imports(), testing::Contains("libc++:__cxa_throw"));
}

TEST(BundleTest, AnswersSetupAsTheLinuxModule) {
  Hosts hosts;
  EXPECT_EQ(hosts.bundle.About(), hosts.linuxModule.About());
  ASSERT_EQ(hosts.bundle.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
  ASSERT_EQ(hosts.linuxModule.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
  EXPECT_EQ(hosts.bundle.OutData().my_version, hosts.linuxModule.OutData().my_version);
  EXPECT_EQ(hosts.bundle.OutData().out_flags, hosts.linuxModule.OutData().out_flags);
  EXPECT_EQ(hosts.bundle.OutData().out_flags2, hosts.linuxModule.OutData().out_flags2);
}

// Spread over several tests, which may run at once.
class BundleRenderTest : public testing::TestWithParam<int> {};

TEST_P(BundleRenderTest, RendersWhatTheLinuxModuleRenders) {
  const int count = whole::CaseCount(kDefaultCases);
  ASSERT_GT(count, 0) << "VITRELL_RANDOM_RENDERS must be a positive number";
  const std::uint64_t seed = whole::BaseSeed(kDefaultSeed);
  Hosts hosts;
  int failed = 0;
  int done = 0;
  for (int i = GetParam(); i < count && failed < kReportedCases; i += kShares, ++done) {
    failed += AgreeOn(seed + static_cast<std::uint64_t>(i), hosts) ? 0 : 1;
  }
  std::cout << done << " of " << count << " renders from seed " << seed << " on " << kSlice
            << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Shares, BundleRenderTest, testing::Range(0, kShares));

TEST(BundleTest, RendersTheGoldens) {
  whole::PictureHash hash;
  const auto records = whole::ReadGoldenRecords(VITRELL_GOLDEN_RECORDS);
  for (const whole::GoldenRecord& expected : records) {
    whole::GoldenRecord actual = whole::RenderRecord(expected, BundleModule());
    EXPECT_EQ(headless::DescribeDifference(whole::FromLiteral(expected.output),
                                           whole::FromLiteral(actual.output)),
              "")
        << expected.name;
    EXPECT_EQ(actual.calls, expected.calls) << expected.name;
    whole::CutAtWhite(actual.output);
    hash.Add(actual.output);
  }
  std::cout << "hash of " << records.size() << " goldens: " << std::hex << hash.Value() << std::dec
            << std::endl;
  EXPECT_EQ(hash.Value(), whole::kAllGoldens);
}

// The exception is thrown, unwound and caught within the image.
TEST(BundleTest, MissingSuitesAreReported) {
  Hosts hosts;
  for (const char* const suite :
       {"PF ANSI Suite", "PF Param Utils Suite", "PF Iterate8 Suite", "PF World Suite"}) {
    hosts.bundle.GetFaults().RefuseSuite(suite);
  }
  EXPECT_EQ(hosts.bundle.Send(PF_Cmd_ABOUT), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(hosts.bundle.UpdatePanel(), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(RenderCase(kDefaultSeed, hosts.bundle).result.error, PF_Err_BAD_CALLBACK_PARAM);
  hosts.bundle.GetFaults().Clear();
  EXPECT_EQ(hosts.bundle.Send(PF_Cmd_ABOUT), PF_Err_NONE);
  EXPECT_TRUE(AgreeOn(kDefaultSeed, hosts));
}

TEST(BundleTest, HoldsTheEffectsResource) {
  const Bytes resource = MakeResourceFile(MakePropertyList(DescribeVitrell()));
  EXPECT_EQ(ReadFile(kContents / "Resources" / "Vitrell.rsrc"),
            std::string(resource.begin(), resource.end()));
}

TEST(BundleTest, PropertyListNamesTheVersionAndTheKind) {
  const std::string list = ReadFile(kContents / "Info.plist");
  const auto entry = [](const std::string& key, const std::string& value) {
    return "<key>" + key + "</key>\n\t<string>" + value + "</string>";
  };
  EXPECT_THAT(list, testing::HasSubstr(entry("CFBundlePackageType", "eFKT")));
  EXPECT_THAT(list, testing::HasSubstr(entry("CFBundleSignature", "FXTC")));
  EXPECT_THAT(list, testing::HasSubstr(entry("CFBundleExecutable", "Vitrell")));
  EXPECT_THAT(list, testing::HasSubstr(entry("CFBundleVersion", VITRELL_PROJECT_VERSION)));
  EXPECT_EQ(ReadFile(kContents / "PkgInfo"), "eFKTFXTC");
}

}  // namespace
}  // namespace vitrell::packaging
