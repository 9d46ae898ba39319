// What the effect registers: every record of every parameter, as the host received it.
#include "shell/parameters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "host/host_api.h"
#include "shell/parameter_facts.h"

namespace vitrell {
namespace {

using testing::ElementsAre;

constexpr PF_Fixed kFiftyPercent = 0x320000;
const auto kEffectRef = reinterpret_cast<PF_ProgPtr>(0x1234);

// Collects what add_param is given.
struct Registration {
  std::vector<PF_ParamDef> records = {{}};  // The input layer first.
  std::vector<PF_ParamIndex> indices;
  std::vector<PF_ProgPtr> effects;
  int namesCopied = 0;
};
Registration* g_registration = nullptr;

PF_Err AddParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDef* def) {
  g_registration->records.push_back(*def);
  g_registration->indices.push_back(index);
  g_registration->effects.push_back(effectRef);
  return PF_Err_NONE;
}

class ParametersTest : public testing::Test {
 protected:
  ParametersTest() {
    g_registration = &registration_;
    PF_UtilCallbacks utils = {};
    utils.ansi.strcpy = [](A_char* to, const A_char* from) {
      ++g_registration->namesCopied;
      return std::strcpy(to, from);
    };
    PF_InData inData = {};
    inData.inter.add_param = AddParam;
    inData.utils = &utils;
    inData.effect_ref = kEffectRef;
    error_ = AddAllParameters(&inData);
  }

  const PF_ParamDef& At(std::size_t index) const { return registration_.records.at(index); }

  // Indices of the registered parameters for which this holds.
  template <typename Predicate>
  std::vector<std::size_t> Where(const Predicate& predicate) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 1; i < registration_.records.size(); ++i) {
      if (predicate(At(i))) {
        found.push_back(i);
      }
    }
    return found;
  }

  Registration registration_;
  PF_Err error_ = PF_Err_NONE;
};

TEST_F(ParametersTest, RegistersSixtyFourBehindTheInputLayer) {
  EXPECT_EQ(error_, PF_Err_NONE);
  ASSERT_EQ(registration_.records.size(), 65U);
  EXPECT_THAT(registration_.indices, testing::Each(-1));
  EXPECT_THAT(registration_.effects, testing::Each(kEffectRef));
}

// 1 to 24, 23, 26 to 64.
TEST_F(ParametersTest, KeepsTheDuplicateDiskId23) {
  std::vector<A_long> expected;
  for (A_long id = 1; id <= 64; ++id) {
    expected.push_back(id == 25 ? 23 : id);
  }
  std::vector<A_long> ids;
  for (std::size_t i = 1; i < registration_.records.size(); ++i) {
    ids.push_back(At(i).uu.id);
  }
  EXPECT_EQ(ids, expected);
}

TEST_F(ParametersTest, EveryRowIsAsWrittenDown) {
  ASSERT_EQ(registration_.records.size(), 65U);
  for (std::size_t i = 1; i < 65; ++i) {
    const PF_ParamDef& record = At(i);
    EXPECT_EQ(record.uu.id, kParameterFacts[i].id) << i;
    EXPECT_EQ(record.param_type, kParameterFacts[i].type) << i;
    EXPECT_STREQ(record.name, kParameterFacts[i].name) << i;
    EXPECT_LT(std::strlen(record.name), 32U) << i;
  }
}

TEST_F(ParametersTest, Sliders) {
  const auto sliders = Where([](const PF_ParamDef& p) { return p.param_type == kSlider; });
  ASSERT_EQ(sliders.size(), 17U);
  for (const std::size_t i : sliders) {
    const PF_FloatSliderDef& slider = At(i).u.fs_d;
    const ParameterFact& fact = kParameterFacts[i];
    EXPECT_EQ(slider.value, fact.value) << i;
    EXPECT_EQ(slider.dephault, static_cast<float>(fact.value)) << i;
    EXPECT_EQ(slider.valid_min, static_cast<float>(fact.validMin)) << i;
    EXPECT_EQ(slider.valid_max, static_cast<float>(fact.validMax)) << i;
    EXPECT_EQ(slider.slider_min, static_cast<float>(fact.sliderMin)) << i;
    EXPECT_EQ(slider.slider_max, static_cast<float>(fact.sliderMax)) << i;
    EXPECT_EQ(slider.precision, fact.precision) << i;
    EXPECT_EQ(slider.display_flags, fact.percent ? PF_ValueDisplayFlag_PERCENT : 0) << i;
    EXPECT_EQ(slider.fs_flags, PF_FSliderFlag_WANT_PHASE) << i;
    EXPECT_EQ(slider.curve_tolerance, 0.05F) << i;
    EXPECT_EQ(slider.phase, 0) << i;
    EXPECT_EQ(slider.useExponent, 0) << i;
    EXPECT_EQ(slider.exponent, 0) << i;
    EXPECT_EQ(slider.value_desc[0], '\0') << i;
  }
}

TEST_F(ParametersTest, Popups) {
  const auto popups = Where([](const PF_ParamDef& p) { return p.param_type == kPopup; });
  ASSERT_THAT(popups, ElementsAre(2, 4, 22, 64));
  for (const std::size_t i : popups) {
    const PF_PopupDef& popup = At(i).u.pd;
    EXPECT_EQ(popup.value, static_cast<A_long>(kParameterFacts[i].value)) << i;
    EXPECT_EQ(popup.dephault, static_cast<A_short>(kParameterFacts[i].value)) << i;
    EXPECT_EQ(popup.num_choices, kParameterFacts[i].choices) << i;
    EXPECT_STREQ(popup.u.namesptr, kParameterFacts[i].text) << i;
  }
}

TEST_F(ParametersTest, CheckboxesHaveAnEmptyNameAndALabel) {
  const auto boxes = Where([](const PF_ParamDef& p) { return p.param_type == kCheck; });
  ASSERT_EQ(boxes.size(), 13U);
  for (const std::size_t i : boxes) {
    EXPECT_STREQ(At(i).name, "") << i;
    EXPECT_STREQ(At(i).u.bd.u.nameptr, kParameterFacts[i].text) << i;
    EXPECT_EQ(At(i).u.bd.value, static_cast<A_long>(kParameterFacts[i].value)) << i;
    EXPECT_EQ(At(i).u.bd.dephault, static_cast<PF_Boolean>(kParameterFacts[i].value)) << i;
  }
}

TEST_F(ParametersTest, PointsStartAtTheLayersCentre) {
  const auto points = Where([](const PF_ParamDef& p) { return p.param_type == kPoint; });
  ASSERT_THAT(points, ElementsAre(7, 32, 38));
  for (const std::size_t i : points) {
    const PF_PointDef& point = At(i).u.td;
    EXPECT_EQ(point.x_value, kFiftyPercent);
    EXPECT_EQ(point.y_value, kFiftyPercent);
    EXPECT_EQ(point.x_dephault, kFiftyPercent);
    EXPECT_EQ(point.y_dephault, kFiftyPercent);
    EXPECT_EQ(point.restrict_bounds, 0);
  }
}

TEST_F(ParametersTest, AnglesColourAndLayer) {
  for (const std::size_t i : {std::size_t{11}, std::size_t{25}, std::size_t{43}}) {
    EXPECT_EQ(At(i).u.ad.value, 0);
    EXPECT_EQ(At(i).u.ad.dephault, 0);
  }
  for (const PF_Pixel& color : {At(53).u.cd.value, At(53).u.cd.dephault}) {
    EXPECT_EQ(color.alpha, 255);
    EXPECT_EQ(color.red, 255);
    EXPECT_EQ(color.green, 255);
    EXPECT_EQ(color.blue, 255);
  }
  EXPECT_EQ(At(3).u.ld.dephault, PF_LayerDefault_NONE);
}

TEST_F(ParametersTest, Flags) {
  EXPECT_THAT(Where([](const PF_ParamDef& p) { return p.flags == PF_ParamFlag_SUPERVISE; }),
              ElementsAre(2, 17, 26));
  EXPECT_THAT(Where([](const PF_ParamDef& p) { return p.flags == PF_ParamFlag_START_COLLAPSED; }),
              ElementsAre(19, 28, 34, 40, 47, 51, 56));
  EXPECT_EQ(Where([](const PF_ParamDef& p) { return p.flags == 0; }).size(), 64U - 3 - 7);
  EXPECT_THAT(Where([](const PF_ParamDef& p) { return p.ui_flags == PF_PUI_DISABLED; }),
              ElementsAre(3, 4));
  EXPECT_EQ(Where([](const PF_ParamDef& p) { return p.ui_flags == 0; }).size(), 62U);
  EXPECT_EQ(Where([](const PF_ParamDef& p) { return p.ui_width == 0 && p.ui_height == 0; }).size(),
            64U);
}

// Starts and ends nest, and the two top-level controls stand outside.
TEST_F(ParametersTest, GroupsFormTheTree) {
  std::vector<std::size_t> open;
  for (std::size_t i = 1; i < 65; ++i) {
    if (At(i).param_type == kEnd) {
      ASSERT_FALSE(open.empty()) << i;
      open.pop_back();
    }
    if (i == 63 || i == 64) {
      EXPECT_TRUE(open.empty()) << i;
    }
    if (i == 16 || i == 25 || i == 32 || i == 38 || i == 43) {
      EXPECT_EQ(open.size(), 2U) << i;
      EXPECT_EQ(open.front(), 13U) << i;
    }
    if (i == 49 || i == 53 || i == 60) {
      EXPECT_EQ(open.front(), 46U) << i;
    }
    if (At(i).param_type == kGroup) {
      open.push_back(i);
    }
  }
  EXPECT_TRUE(open.empty());
}

TEST_F(ParametersTest, OnlyTheLightnessGoesBelowZero) {
  EXPECT_THAT(
      Where([](const PF_ParamDef& p) { return p.param_type == kSlider && p.u.fs_d.valid_min < 0; }),
      ElementsAre(49));
}

TEST_F(ParametersTest, TwoAmountsAcceptTypedValuesBeyondTheirSliders) {
  EXPECT_EQ(At(16).u.fs_d.valid_max, 32768.0F);
  EXPECT_EQ(At(16).u.fs_d.slider_max, 127.0F);
  EXPECT_EQ(At(42).u.fs_d.valid_max, 65536.0F);
  EXPECT_EQ(At(42).u.fs_d.slider_max, 20.0F);
}

TEST_F(ParametersTest, OnlyTheAspectRatioShowsTwoDecimals) {
  EXPECT_THAT(Where([](const PF_ParamDef& p) {
                return p.param_type == kSlider && p.u.fs_d.precision != 1;
              }),
              ElementsAre(24));
}

// Every name but those of the group ends goes through the host's strcpy.
TEST_F(ParametersTest, NamesAreCopiedByTheHost) {
  const auto ends = Where([](const PF_ParamDef& p) { return p.param_type == kEnd; });
  EXPECT_EQ(ends.size(), 11U);
  EXPECT_EQ(registration_.namesCopied, 64 - 11);
}

using RecordBytes = std::array<unsigned char, sizeof(PF_ParamDef)>;
std::vector<RecordBytes>* g_bytes = nullptr;

PF_Err AddBytes(PF_ProgPtr /*effectRef*/, PF_ParamIndex /*index*/, PF_ParamDef* def) {
  std::memcpy(g_bytes->emplace_back().data(), def, sizeof(*def));
  return PF_Err_NONE;
}

// Fills the stack on which the next call puts its variables with this byte.
[[gnu::noinline]] void PoisonStack(unsigned char byte) {
  volatile unsigned char stack[16384];
  for (volatile unsigned char& place : stack) place = byte;
}

std::vector<RecordBytes> RegisterOnStackOf(unsigned char byte) {
  std::vector<RecordBytes> bytes;
  bytes.reserve(64);
  g_bytes = &bytes;
  PF_UtilCallbacks utils = {};
  utils.ansi.strcpy = std::strcpy;
  PF_InData inData = {};
  inData.inter.add_param = AddBytes;
  inData.utils = &utils;
  PoisonStack(byte);
  EXPECT_EQ(AddAllParameters(&inData), PF_Err_NONE);
  return bytes;
}

// All bytes of all records, padding included, are independent of earlier stack contents; group
// ends, which have neither name nor values, contain nothing but type and id.
TEST_F(ParametersTest, EveryByteThatIsNotFilledIsZero) {
  const std::vector<RecordBytes> bytes = RegisterOnStackOf(0xA5);
  ASSERT_EQ(bytes.size(), 64U);
  EXPECT_EQ(bytes, RegisterOnStackOf(0x5A));
  for (const std::size_t index : Where([](const PF_ParamDef& p) { return p.param_type == kEnd; })) {
    RecordBytes expected = {};
    const PF_ParamDef& record = At(index);
    const auto put = [&](const void* member, std::size_t size) {
      const auto offset = static_cast<const char*>(member) - reinterpret_cast<const char*>(&record);
      std::memcpy(expected.data() + offset, member, size);
    };
    put(&record.param_type, sizeof(record.param_type));
    put(&record.uu.id, sizeof(record.uu.id));
    EXPECT_EQ(bytes[index - 1], expected) << index;
  }
}

TEST_F(ParametersTest, IndicesNameThePositions) {
  EXPECT_EQ(PARAM_TYPE, 2);
  EXPECT_EQ(PARAM_CUSTOM_LAYER, 3);
  EXPECT_EQ(PARAM_FAST_AMOUNT, 16);
  EXPECT_EQ(PARAM_IRIS_ROTATION, 25);
  EXPECT_EQ(PARAM_TRAIL_CENTER, 38);
  EXPECT_EQ(PARAM_DIRECTION, 43);
  EXPECT_EQ(PARAM_COLOR_OPACITY, 54);
  EXPECT_EQ(PARAM_MODE, 64);
  EXPECT_EQ(PARAM_COUNT, 65);
}

}  // namespace
}  // namespace vitrell
