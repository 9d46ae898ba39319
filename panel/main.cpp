// `vitrell-panel [FILE]`.
#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <clocale>
#include <exception>

#include "media/video_messages.h"
#include "panel/model/places.h"
#include "panel/window/desktop_colours.h"
#include "panel/window/program_icon.h"
#include "panel/window/window_start.h"

namespace {

// Its look follows the desktop's colours, dark ones too. Qt's own -style chooses another.
constexpr const char* kStyle = "fusion";

struct Wishes {
  QString file;
  QString preset;
  QString effect;
};

Wishes ReadArguments(const QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription("The controls of the Vitrell lens effect, and what they do.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("FILE", "picture, sequence (plate.####.exr) or video to open",
                               "[FILE]");
  const QCommandLineOption preset("preset", "settings to begin with", "FILE.json");
  const QCommandLineOption effect(
      "effect", "the effect module; by default the one beside the program", "MODULE");
  parser.addOptions({preset, effect});
  parser.process(application);
  return {parser.positionalArguments().value(0), parser.value(preset), parser.value(effect)};
}

int Run(const QApplication& application) {
  using vitrell::panel::DesktopColours;
  const Wishes wishes = ReadArguments(application);
  const auto window = vitrell::panel::StartWindow({nullptr, wishes.effect.toStdString(),
                                                   vitrell::panel::Recovery::UsualFolder(),
                                                   vitrell::panel::ShippedPresets()});
  if (window == nullptr) return 1;
  DesktopColours colours;
  colours.Follow();
  window->show();
  window->OfferLostSession();
  if (!wishes.file.isEmpty()) window->Open(wishes.file.toStdString());
  if (!wishes.preset.isEmpty()) window->LoadPreset(wishes.preset.toStdString());
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication::setStyle(kStyle);
  const QApplication application(argc, argv);
  // Qt has taken the desktop's locale, whose decimal comma the libraries of pictures and videos
  // would read and write, too.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setOrganizationName("vitrell");
  QApplication::setApplicationName("vitrell-panel");
  QApplication::setApplicationDisplayName("Vitrell");
  QApplication::setApplicationVersion(VITRELL_VERSION);
  // What a desktop that shows no icons of windows looks it up by.
  QApplication::setDesktopFileName("vitrell-panel");
  QApplication::setWindowIcon(vitrell::panel::ProgramIcon());
  vitrell::media::CollectVideoMessages();
  try {
    return Run(application);
  } catch (const std::exception& error) {
    // Whatever it is, the terminal may not be seen.
    QMessageBox::critical(nullptr, "Vitrell", error.what());
    return 1;
  }
}
