// Names and sequences' names.
#include "panel/model/layer_file.h"

#include <system_error>
#include <variant>

#include "media/sequence.h"

namespace vitrell::panel {

std::filesystem::path LayerFile(const look::Settings& settings, std::int64_t frame) {
  for (const look::Control& control : settings.GetPanel().controls) {
    if (control.kind != look::ControlKind::kLayer) continue;
    std::filesystem::path file = std::get<look::LayerValue>(settings.ValueOf(control)).path;
    std::error_code ignored;
    if (file.empty() || std::filesystem::exists(file, ignored)) return file;
    const auto sequence = media::Sequence::Find(file);
    return sequence ? sequence->FileOf(frame) : file;
  }
  return {};
}

}  // namespace vitrell::panel
