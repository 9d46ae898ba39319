// The resource file, against a known file and against what the module itself registers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>

#include "headless/effect_host.h"
#include "packaging/resource_reader.h"
#include "vitrell_resource.h"

namespace vitrell::packaging {
namespace {

using std::string_literals::operator""s;

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

// By the system's sha256sum.
std::string Sha256(const Bytes& bytes) {
  const std::string path = (std::filesystem::temp_directory_path() /
                            ("vitrell-resource-" + std::to_string(getpid()) + ".bin"))
                               .string();
  std::ofstream(path, std::ios::binary) << Text(bytes);
  FILE* const pipe = popen(("sha256sum '" + path + "'").c_str(), "r");
  char digest[65] = {};
  const std::size_t size = pipe != nullptr ? std::fread(digest, 1, 64, pipe) : 0;
  if (pipe != nullptr) pclose(pipe);
  std::filesystem::remove(path);
  return {digest, size};
}

EffectDescription KnownEffect() {
  return {.name = "ABI Demo",
          .matchName = "ABI Demo",
          .category = "Test",
          .entryPoint = "EffectMain",
          .apiVersion = {13, 18},
          .version = 0x00080001,
          .outFlags = 0x02000000,
          .outFlags2 = 0};
}

// Vitrell's own properties by key, read back from the whole file.
std::map<std::string, std::string> VitrellProperties() {
  const Bytes file = MakeResourceFile(MakePropertyList(DescribeVitrell()));
  std::map<std::string, std::string> byKey;
  for (const Property& property : ReadProperties(ReadResources(Text(file)).at(0).data)) {
    byKey[property.key] = property.data;
  }
  return byKey;
}

// What the built module answers to GLOBAL_SETUP.
class RegisteredValues {
 public:
  RegisteredValues() { EXPECT_EQ(host_.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE); }
  const PF_OutData& OutData() { return host_.OutData(); }

 private:
  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH),
                             headless::EffectHost::Setup::kSkip};
};

TEST(ResourceFileTest, WritesAKnownFileByteForByte) {
  const Bytes list = MakePropertyList(KnownEffect());
  EXPECT_EQ(list.size(), 304u);
  EXPECT_EQ(Sha256(list), "6ca6d833e20b18fdc38e2a13c692dbe59acb082261978979c6ec9446f2f5ff6c");
  const Bytes file = MakeResourceFile(list);
  EXPECT_EQ(file.size(), 614u);
  EXPECT_EQ(Sha256(file), "e4606570396ff405bd2ba969789fcb86685eaa310524e32f39c5b0127515af45");
}

TEST(ResourceFileTest, RefusesTextsTheHostCannotHold) {
  EffectDescription effect = KnownEffect();
  effect.name = std::string(31, 'n');
  EXPECT_NO_THROW(MakePropertyList(effect));
  effect.name = std::string(32, 'n');
  EXPECT_THROW(MakePropertyList(effect), std::length_error);
  effect.name = "";
  EXPECT_THROW(MakePropertyList(effect), std::length_error);
}

TEST(VitrellResourceTest, HoldsOnePropertyList) {
  const Bytes list = MakePropertyList(DescribeVitrell());
  const std::vector<Resource> resources = ReadResources(Text(MakeResourceFile(list)));
  ASSERT_EQ(resources.size(), 1u);
  EXPECT_EQ(resources[0].type, "PiPL");
  EXPECT_EQ(resources[0].id, 16000u);
  EXPECT_FALSE(resources[0].named);
  EXPECT_EQ(resources[0].attributes, 0u);
  EXPECT_EQ(resources[0].data, Text(list));
}

TEST(VitrellResourceTest, ListsThePropertiesInTheHostsOrder) {
  std::vector<std::string> keys;
  for (const Property& property : ReadProperties(Text(MakePropertyList(DescribeVitrell())))) {
    EXPECT_EQ(property.vendor, "8BIM") << property.key;
    EXPECT_EQ(property.id, 0u) << property.key;
    keys.push_back(property.key);
  }
  EXPECT_THAT(keys, testing::ElementsAre("kind", "name", "catg", "mi64", "ma64", "ePVR", "eSVR",
                                         "eVER", "eINF", "eGLO", "eGL2", "eMNA", "aeFL"));
}

TEST(VitrellResourceTest, NamesTheEffect) {
  const auto properties = VitrellProperties();
  EXPECT_EQ(properties.at("kind"), "eFKT");
  EXPECT_EQ(properties.at("name"), "\7Vitrell");
  EXPECT_EQ(properties.at("catg"), "\16Blur & Sharpen");
  EXPECT_EQ(properties.at("eMNA"), "\14VTRL Vitrell");
  EXPECT_EQ(properties.at("ePVR"), "\0\2\0\0"s);
  EXPECT_EQ(properties.at("eINF"), "\0\0"s);
  EXPECT_EQ(properties.at("aeFL"), "\0\0\0\0"s);
}

TEST(VitrellResourceTest, NamesTheExportedFunction) {
  const auto properties = VitrellProperties();
  const std::string name = headless::EffectModule::kEntryPointName;
  const std::string text = std::string(1, static_cast<char>(name.size())) + name;
  EXPECT_EQ(properties.at("mi64"), text);
  EXPECT_EQ(properties.at("ma64"), text);
}

TEST(VitrellResourceTest, AgreesWithWhatTheModuleRegisters) {
  const auto properties = VitrellProperties();
  RegisteredValues registered;
  EXPECT_EQ(ReadNumber(properties.at("eVER")), registered.OutData().my_version);
  EXPECT_EQ(ReadNumber(properties.at("eGLO")),
            static_cast<unsigned>(registered.OutData().out_flags));
  EXPECT_EQ(ReadNumber(properties.at("eGL2")),
            static_cast<unsigned>(registered.OutData().out_flags2));
}

// The host renders on several threads only what was written for interface 13.25 or a later one.
TEST(VitrellResourceTest, DeclaresAnInterfaceWithThreadedRendering) {
  const auto properties = VitrellProperties();
  RegisteredValues registered;
  EXPECT_NE(registered.OutData().out_flags2 & PF_OutFlag2_SUPPORTS_THREADED_RENDERING, 0);
  EXPECT_EQ(properties.at("eSVR"), "\0\15\0\31"s);
}

// The word holds the three numbers in bits 19 to 21, 15 to 18 and 11 to 14.
TEST(VitrellResourceTest, VersionIsTheProjects) {
  const unsigned word = ReadNumber(VitrellProperties().at("eVER"));
  EXPECT_EQ(std::to_string(word >> 19 & 7) + "." + std::to_string(word >> 15 & 0xF) + "." +
                std::to_string(word >> 11 & 0xF),
            VITRELL_PROJECT_VERSION);
}

}  // namespace
}  // namespace vitrell::packaging
