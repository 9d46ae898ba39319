// A file under another name.
#include "panel/model/module_copy.h"

#include <QTemporaryDir>
#include <filesystem>
#include <system_error>

#include "headless/host_error.h"

namespace vitrell::panel {

namespace fs = std::filesystem;

std::shared_ptr<const headless::EffectModule> LoadAgain(
    const std::shared_ptr<const headless::EffectModule>& module) {
  // Removed at the end of this function: what is loaded needs no name any more.
  const QTemporaryDir folder;
  const fs::path file = module->Name();
  const fs::path copy = fs::path(folder.path().toStdString()) / file.filename();
  std::error_code failed;
  if (!folder.isValid() || !fs::copy_file(file, copy, failed)) return module;
  try {
    return std::make_shared<const headless::EffectModule>(copy);
  } catch (const headless::HostError&) {
    return module;
  }
}

}  // namespace vitrell::panel
