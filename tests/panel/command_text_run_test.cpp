// The copied command line, run by a shell, against the frame that the panel shows.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <cstdlib>
#include <string>

#include "media/failure.h"
#include "media/picture_files.h"
#include "media/picture_writer.h"
#include "panel/model/command_text.h"
#include "panel/random_look.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

// A start of the command line costs a tenth of a second; scripts/test.sh --thorough asks for more.
int Commands() {
  const char* wanted = std::getenv("VITRELL_PANEL_COMMANDS");
  return wanted == nullptr ? 20 : std::atoi(wanted);
}

QByteArray Bytes(const fs::path& file) {
  QFile read(QString::fromStdString(file.string()));
  EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << file;
  return read.readAll();
}

class CommandRunTest : public testing::Test {
 protected:
  CommandRunTest() { fs::create_directories(folder_); }
  ~CommandRunTest() override { fs::remove_all(folder_); }

  // With a name that a shell would take apart.
  std::unique_ptr<Source> Picture(OIIO::TypeDesc type, int channels) const {
    const fs::path file = folder_ / "it's a $picture.png";
    media::WritePictureFile(file, media::NoisePicture(96, 54, channels, type, 5));
    return OpenSource(file);
  }
  look::Settings RandomSettings(whole::Dice& dice) const {
    look::Settings settings(panel_);
    for (const look::Control& control : panel_.controls) {
      if (dice.Chance(60)) settings.SetValue(control, RandomValue(dice, control));
    }
    return settings;
  }
  QStringList Arguments(const Source& source, const look::Settings& settings,
                        const fs::path& output) const {
    return RenderArguments({source, 0, settings, output, VITRELL_MODULE_PATH, {}});
  }
  // By a shell in another folder that finds the program on its path.
  static void RunInShell(const QString& line) {
    QProcess shell;
    shell.setWorkingDirectory("/");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", QString(fs::path(VITRELL_TOOL_PATH).parent_path().c_str()) + ":" +
                                   environment.value("PATH"));
    shell.setProcessEnvironment(environment);
    shell.start("sh", {"-c", line});
    ASSERT_TRUE(shell.waitForFinished(60000));
    EXPECT_EQ(shell.exitCode(), 0) << line.toStdString() << "\n"
                                   << shell.readAllStandardError().toStdString();
  }
  // The panel's exact frame, written to a file.
  void WriteShown(const std::shared_ptr<Source>& source, const look::Settings& settings,
                  const fs::path& output) {
    RenderAnswer shown;
    const auto connection = QObject::connect(&renderer_, &Renderer::Answered,
                                             [&](const RenderAnswer& answer) { shown = answer; });
    const std::uint64_t number = renderer_.Request({source, 0, settings, EditPhase::kDone, false});
    ASSERT_TRUE(WaitUntil([&] { return shown.request == number && shown.exact; }));
    QObject::disconnect(connection);
    ASSERT_NE(shown.world, nullptr) << shown.message.toStdString();
    media::WriteOrder order;
    order.target = output;
    order.clippedPixels = shown.frame->clippedPixels;
    media::WritePicture(*shown.frame->picture, shown.frame->world, *shown.world, order, {});
  }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell command " + std::to_string(::getpid()));
  std::shared_ptr<const headless::EffectModule> module_ =
      std::make_shared<const headless::EffectModule>(fs::path(VITRELL_MODULE_PATH));
  headless::EffectHost host_{module_};
  look::Panel panel_ = look::MakePanel(host_.Parameters());
  Renderer renderer_{module_};
};

TEST_F(CommandRunTest, GivesTheBytesOfTheShownFrame) {
  whole::Dice dice(11);
  for (int i = 0; i < Commands(); ++i) {
    const std::shared_ptr<Source> source =
        Picture(i % 2 == 0 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::UINT16, 3 + i / 2 % 2);
    const look::Settings settings = RandomSettings(dice);
    const fs::path byCommand = folder_ / "by command.png";
    const fs::path shown = folder_ / "shown.png";
    const QString line = ShellLine(Arguments(*source, settings, byCommand));
    RunInShell(line);
    WriteShown(source, settings, shown);
    ASSERT_EQ(Bytes(byCommand), Bytes(shown)) << line.toStdString();
    fs::remove(byCommand);
    fs::remove(shown);
  }
}

TEST_F(CommandRunTest, NamesOnlyWhatDiffersFromTheDefaults) {
  const std::unique_ptr<Source> source = Picture(OIIO::TypeDesc::UINT8, 3);
  look::Settings settings(panel_);
  settings.SetValue(*panel_.Find("fast-blur.amount"), 40.0);
  EXPECT_EQ(Arguments(*source, settings, folder_ / "out.png").filter("=").join("|"),
            "fast-blur.amount=40");
}

TEST_F(CommandRunTest, EasedKeysOfAClipNeedAPreset) {
  for (const char* name : {"plate.001.png", "plate.002.png"}) {
    media::WritePictureFile(folder_ / name,
                            media::NoisePicture(16, 9, 3, OIIO::TypeDesc::UINT8, 5));
  }
  const std::unique_ptr<Source> source = OpenSource(folder_ / "plate.###.png");
  look::Settings settings(panel_);
  const look::Key eased{{1, false, false}, 5.0, look::Stretch::kEased, {look::CubicEasing{}}, {}};
  settings.SetKeys(*panel_.Find("fast-blur.amount"), {eased, {{2, false, false}, 50.0}});
  EXPECT_THROW(Arguments(*source, settings, folder_ / "out.###.png"), media::Failure);
  EXPECT_EQ(RenderArguments({*source, 0, settings, folder_ / "out.###.png", {}, "/looks/a.json"})
                .join(' ')
                .section(" --", 1),
            "preset /looks/a.json");
}

TEST(ShellLineTest, QuotesWhatAShellWouldTakeApart) {
  EXPECT_EQ(ShellLine({"render", "a b.png", "it's.png", "--set", "lens.position=50%,50%",
                       "lens.type=Rectangle --", "x;y", "$HOME", ""}),
            "vitrell render 'a b.png' 'it'\\''s.png' --set lens.position=50%,50% "
            "'lens.type=Rectangle --' 'x;y' '$HOME' ''");
}

}  // namespace
}  // namespace vitrell::panel
