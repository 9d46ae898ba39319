// The layer's file is another one once it is written anew, for the frames that are kept, too.
#include "panel/model/layer_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>

#include "media/picture_files.h"
#include "panel/real_module.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

class LayerFileTest : public testing::Test {
 protected:
  LayerFileTest() { fs::create_directories(folder_); }
  ~LayerFileTest() override { fs::remove_all(folder_); }

  void WriteLayer(uint32_t seed) {
    media::WritePictureFile(layer_, media::NoisePicture(64, 36, 4, OIIO::TypeDesc::UINT8, seed));
    // Clocks of file systems are coarse.
    fs::last_write_time(layer_, fs::file_time_type() + std::chrono::seconds(seed));
  }
  look::Settings LayerAsLens(const fs::path& file) const {
    look::Settings settings(panel_);
    settings.SetValue(*panel_.Find("lens.type"), look::ChoiceValue{6});
    settings.SetValue(*panel_.Find("lens.custom-layer"), look::LayerValue{file.string()});
    return settings;
  }
  static RenderAnswer Answer(Renderer& renderer, const std::shared_ptr<Source>& clip,
                             const look::Settings& settings) {
    RenderAnswer last;
    const auto connection = QObject::connect(&renderer, &Renderer::Answered,
                                             [&](const RenderAnswer& answer) { last = answer; });
    const std::uint64_t number = renderer.Request({clip, 0, settings, EditPhase::kDone, false});
    EXPECT_TRUE(WaitUntil([&] { return last.request == number && last.exact; }));
    QObject::disconnect(connection);
    return last;
  }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell-layer-" + std::to_string(::getpid()));
  fs::path layer_ = folder_ / "layer.png";
  std::shared_ptr<const headless::EffectModule> module_ = RealModule();
  headless::EffectHost host_{module_};
  look::Panel panel_ = look::MakePanel(host_.Parameters());
};

TEST_F(LayerFileTest, OfASequenceItIsTheFramesOwn) {
  EXPECT_EQ(LayerFile(look::Settings(panel_), 7), "");
  EXPECT_EQ(LayerFile(LayerAsLens(folder_ / "none.png"), 7), folder_ / "none.png");
  EXPECT_EQ(LayerFile(LayerAsLens(folder_ / "mask.##.png"), 7), folder_ / "mask.07.png");
  // A file of that very name is meant by it.
  std::ofstream(folder_ / "mask.##.png") << "";
  EXPECT_EQ(LayerFile(LayerAsLens(folder_ / "mask.##.png"), 7), folder_ / "mask.##.png");
}

TEST_F(LayerFileTest, WrittenAnewItRenewsTheFramesThatAreKept) {
  const auto clip = std::make_shared<NoiseSource>(64, 36, false, 2);
  const look::Settings settings = LayerAsLens(layer_);
  Renderer renderer(module_);
  WriteLayer(1);
  const RenderAnswer first = Answer(renderer, clip, settings);
  EXPECT_EQ(Answer(renderer, clip, settings).world, first.world) << "it is not kept";
  WriteLayer(2);
  const RenderAnswer second = Answer(renderer, clip, settings);
  EXPECT_NE(headless::DescribeDifference(*first.world, *second.world), "");
  headless::WorldBuffer expected(64, 36, false);
  settings.Apply(host_, 64, 36);
  ASSERT_TRUE(host_.Render(clip->Read(0)->world, expected, &FrameOfPicture(layer_, 0)->world).Ok());
  EXPECT_EQ(headless::DescribeDifference(expected, *second.world), "");
}

}  // namespace
}  // namespace vitrell::panel
