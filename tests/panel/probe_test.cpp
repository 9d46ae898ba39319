// Numbers of a pixel in the type of its file.
#include "panel/model/probe.h"

#include <gtest/gtest.h>

#include "media/exchange.h"

namespace vitrell::panel {
namespace {

// 2 x 1 pixels with alpha; the second one holds these samples.
template <typename Sample>
SourceFrame FrameOf(std::vector<Sample> second, OIIO::TypeDesc type) {
  auto picture = std::make_shared<media::Picture>();
  picture->spec = OIIO::ImageSpec(2, 1, 4, type);
  picture->layout = {0, 1, 2, 3};
  std::vector<Sample> samples(4, Sample(0));
  samples.insert(samples.end(), second.begin(), second.end());
  picture->samples = samples;
  media::Given given = media::GiveToEffect(*picture, picture->IsDeep());
  return SourceFrame{std::move(given.world), 0, 0, picture};
}

TEST(ProbeTest, BytesAreBytes) {
  const SourceFrame frame = FrameOf<uint8_t>({1, 20, 255, 77}, OIIO::TypeDesc::UINT8);
  EXPECT_EQ(ProbeText(frame, nullptr, 1, 0), "1, 0   R 1  G 20  B 255  A 77");
  headless::WorldBuffer result = frame.world;
  result.At8(1, 0) = {99, 2, 3, 4};
  EXPECT_EQ(ProbeText(frame, &result, 1, 0),
            QString("1, 0   R 1  G 20  B 255  A 77   \u2192   R 2  G 3  B 4  A 99"));
}

TEST(ProbeTest, WordsReachTheirWhite) {
  const SourceFrame frame = FrameOf<uint16_t>({1, 40000, 65535, 65535}, OIIO::TypeDesc::UINT16);
  headless::WorldBuffer result = frame.world;
  result.At16(1, 0) = {32768, 32768, 16384, 0};
  EXPECT_EQ(ProbeText(frame, &result, 1, 0),
            QString("1, 0   R 1  G 40000  B 65535  A 65535   \u2192   "
                    "R 65535  G 32768  B 0  A 65535"));
}

// The effect knows only half as many values as the file.
TEST(ProbeTest, WhatTheEffectLeftKeepsTheFilesNumber) {
  const SourceFrame frame = FrameOf<uint16_t>({47490, 40000, 3, 65534}, OIIO::TypeDesc::UINT16);
  headless::WorldBuffer result = frame.world;
  result.At16(1, 0).green = 16384;
  EXPECT_EQ(ProbeText(frame, &result, 1, 0),
            QString("1, 0   R 47490  G 40000  B 3  A 65534   \u2192   "
                    "R 47490  G 32768  B 3  A 65534"));
}

TEST(ProbeTest, FloatsMayBeBrighterThanWhite) {
  const SourceFrame frame = FrameOf<float>({0.25F, 3.5F, 0, 1}, OIIO::TypeDesc::FLOAT);
  headless::WorldBuffer result = frame.world;
  result.At16(1, 0) = {32768, 16384, 32768, 0};
  EXPECT_EQ(ProbeText(frame, &result, 1, 0),
            QString("1, 0   R 0.2500  G 3.5000  B 0.0000  A 1.0000   \u2192   "
                    "R 0.5000  G 1.0000  B 0.0000  A 1.0000"));
}

TEST(ProbeTest, BesideThePictureThereIsNothing) {
  const SourceFrame frame = FrameOf<uint8_t>({1, 2, 3, 4}, OIIO::TypeDesc::UINT8);
  EXPECT_EQ(ProbeText(frame, nullptr, 2, 0), "");
  EXPECT_EQ(ProbeText(frame, nullptr, 0, -1), "");
}

}  // namespace
}  // namespace vitrell::panel
