// The property list for Windows, read back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>

#include "headless/effect_host.h"
#include "packaging/windows_list_reader.h"
#include "vitrell_resource.h"

namespace vitrell::packaging {
namespace {

using std::string_literals::operator""s;

std::string VitrellList() {
  const Bytes bytes = MakeWindowsPropertyList(DescribeVitrell());
  return {bytes.begin(), bytes.end()};
}

std::map<std::string, std::string> Values() {
  std::map<std::string, std::string> byKey;
  for (const WindowsProperty& property : ReadWindowsList(VitrellList())) {
    byKey[property.key] = property.data;
  }
  return byKey;
}

// A leading 1, version 0, twelve properties; then vendor and key reversed, id 0, length, data.
TEST(WindowsListTest, BeginsWithTheKind) {
  EXPECT_EQ(VitrellList().substr(0, 30),
            "\1\0\0\0\0\0\14\0\0\0"
            "MIB8dnik\0\0\0\0\4\0\0\0TKFe"s);
}

TEST(WindowsListTest, ListsThePropertiesInTheHostsOrder) {
  std::vector<std::string> keys;
  for (const WindowsProperty& property : ReadWindowsList(VitrellList())) {
    EXPECT_EQ(property.vendor, "8BIM") << property.key;
    EXPECT_EQ(property.id, 0u) << property.key;
    keys.push_back(property.key);
  }
  EXPECT_THAT(keys, testing::ElementsAre("kind", "name", "catg", "8664", "ePVR", "eSVR", "eVER",
                                         "eINF", "eGLO", "eGL2", "eMNA", "aeFL"));
}

// Texts behind a length byte, padded; the entry point as a C string.
TEST(WindowsListTest, NamesTheEffect) {
  const auto values = Values();
  EXPECT_EQ(values.at("name"), "\7Vitrell");
  EXPECT_EQ(values.at("catg"), "\16Blur & Sharpen\0"s);
  EXPECT_EQ(values.at("eMNA"), "\14VTRL Vitrell\0\0\0"s);
  EXPECT_EQ(values.at("8664"), "EntryPointFunc\0\0"s);
}

TEST(WindowsListTest, HoldsNumbersWithTheLowByteFirst) {
  const auto values = Values();
  EXPECT_EQ(values.at("ePVR"), "\2\0\0\0"s);
  EXPECT_EQ(values.at("eSVR"), "\15\0\31\0"s);
  EXPECT_EQ(values.at("eINF"), "\0\0\0\0"s);
  EXPECT_EQ(values.at("aeFL"), "\0\0\0\0"s);
}

TEST(WindowsListTest, AgreesWithWhatTheModuleRegisters) {
  const auto values = Values();
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH),
                            headless::EffectHost::Setup::kSkip};
  ASSERT_EQ(host.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
  EXPECT_EQ(ReadLittleEndian(values.at("eVER")), host.OutData().my_version);
  EXPECT_EQ(ReadLittleEndian(values.at("eGLO")), static_cast<unsigned>(host.OutData().out_flags));
  EXPECT_EQ(ReadLittleEndian(values.at("eGL2")), static_cast<unsigned>(host.OutData().out_flags2));
}

TEST(WindowsListTest, RefusesTextsTheHostCannotHold) {
  EffectDescription effect = DescribeVitrell();
  effect.entryPoint = std::string(32, 'n');
  EXPECT_THROW(MakeWindowsPropertyList(effect), std::length_error);
}

}  // namespace
}  // namespace vitrell::packaging
