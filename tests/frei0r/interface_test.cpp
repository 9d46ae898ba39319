// The module's own declarations of the interface, compared with those of the packaged header.
#include "frei0r/interface.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstddef>
#include <type_traits>

namespace packaged {
#include <frei0r.h>
}  // namespace packaged

namespace vitrell::frei0r {
namespace {

TEST(Frei0rInterfaceTest, NumbersAreThoseOfTheHeader) {
  EXPECT_EQ(kInterfaceVersion, FREI0R_MAJOR_VERSION);
  EXPECT_EQ(kFilterModule, F0R_PLUGIN_TYPE_FILTER);
  EXPECT_EQ(kMixerModule, F0R_PLUGIN_TYPE_MIXER2);
  EXPECT_EQ(kRgba, F0R_COLOR_MODEL_RGBA8888);
  EXPECT_EQ(kSwitchParameter, F0R_PARAM_BOOL);
  EXPECT_EQ(kNumberParameter, F0R_PARAM_DOUBLE);
  EXPECT_EQ(kColourParameter, F0R_PARAM_COLOR);
}

template <typename Own, typename Packaged>
void ExpectSameRecord() {
  EXPECT_EQ(sizeof(Own), sizeof(Packaged));
  EXPECT_EQ(alignof(Own), alignof(Packaged));
}

#define EXPECT_SAME_FIELD(Own, own, Packaged, packagedField)                  \
  EXPECT_EQ(offsetof(Own, own), offsetof(packaged::Packaged, packagedField)); \
  static_assert(std::is_same_v<decltype(Own::own), decltype(packaged::Packaged::packagedField)>)

TEST(Frei0rInterfaceTest, RecordsAreThoseOfTheHeader) {
  ExpectSameRecord<ModuleInfo, packaged::f0r_plugin_info_t>();
  EXPECT_SAME_FIELD(ModuleInfo, name, f0r_plugin_info_t, name);
  EXPECT_SAME_FIELD(ModuleInfo, author, f0r_plugin_info_t, author);
  EXPECT_SAME_FIELD(ModuleInfo, type, f0r_plugin_info_t, plugin_type);
  EXPECT_SAME_FIELD(ModuleInfo, colourModel, f0r_plugin_info_t, color_model);
  EXPECT_SAME_FIELD(ModuleInfo, interfaceVersion, f0r_plugin_info_t, frei0r_version);
  EXPECT_SAME_FIELD(ModuleInfo, majorVersion, f0r_plugin_info_t, major_version);
  EXPECT_SAME_FIELD(ModuleInfo, minorVersion, f0r_plugin_info_t, minor_version);
  EXPECT_SAME_FIELD(ModuleInfo, parameterCount, f0r_plugin_info_t, num_params);
  EXPECT_SAME_FIELD(ModuleInfo, explanation, f0r_plugin_info_t, explanation);
  ExpectSameRecord<ParameterInfo, packaged::f0r_param_info_t>();
  EXPECT_SAME_FIELD(ParameterInfo, name, f0r_param_info_t, name);
  EXPECT_SAME_FIELD(ParameterInfo, type, f0r_param_info_t, type);
  EXPECT_SAME_FIELD(ParameterInfo, explanation, f0r_param_info_t, explanation);
  ExpectSameRecord<Colour, packaged::f0r_param_color_t>();
  EXPECT_SAME_FIELD(Colour, red, f0r_param_color_t, r);
  EXPECT_SAME_FIELD(Colour, green, f0r_param_color_t, g);
  EXPECT_SAME_FIELD(Colour, blue, f0r_param_color_t, b);
}

template <typename Own, typename Packaged>
constexpr bool kSame = std::is_same_v<Own, Packaged>;

// With the header's records in place of the module's own, which the test above compares.
static_assert(kSame<InitFunction, decltype(packaged::f0r_init)>);
static_assert(kSame<DeinitFunction, decltype(packaged::f0r_deinit)>);
static_assert(kSame<GetModuleInfoFunction<packaged::f0r_plugin_info_t>,
                    decltype(packaged::f0r_get_plugin_info)>);
static_assert(kSame<GetParameterInfoFunction<packaged::f0r_param_info_t>,
                    decltype(packaged::f0r_get_param_info)>);
static_assert(kSame<ConstructFunction, decltype(packaged::f0r_construct)>);
static_assert(kSame<DestructFunction, decltype(packaged::f0r_destruct)>);
static_assert(kSame<ParameterFunction, decltype(packaged::f0r_set_param_value)>);
static_assert(kSame<ParameterFunction, decltype(packaged::f0r_get_param_value)>);
static_assert(kSame<FilterFunction, decltype(packaged::f0r_update)>);
static_assert(kSame<MixerFunction, decltype(packaged::f0r_update2)>);

}  // namespace
}  // namespace vitrell::frei0r
