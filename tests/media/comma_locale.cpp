// With localedef, so that the machine need not have it.
#include "media/comma_locale.h"

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>

namespace vitrell {

CommaLocale::CommaLocale()
    : folder_(std::filesystem::temp_directory_path() /
              ("vitrell-locale-" + std::to_string(::getpid()))),
      before_(std::setlocale(LC_ALL, nullptr)) {
  std::filesystem::create_directories(folder_);
  const std::string command = "localedef -i de_DE -f UTF-8 '" + folder_ + "/de_DE.UTF-8'";
  if (std::system(command.c_str()) != 0) return;
  ::setenv("LOCPATH", folder_.c_str(), 1);
  std::setlocale(LC_ALL, "de_DE.UTF-8");
}

CommaLocale::~CommaLocale() {
  std::setlocale(LC_ALL, before_.c_str());
  ::unsetenv("LOCPATH");
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

bool CommaLocale::Holds() const { return *std::localeconv()->decimal_point == ','; }

}  // namespace vitrell
