// The picture that serves as the lens.
#ifndef VITRELL_CLI_CUSTOM_LAYER_H_
#define VITRELL_CLI_CUSTOM_LAYER_H_

#include <string>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "look/settings.h"
#include "media/picture.h"

namespace vitrell::cli {

// The file that the settings name; empty for none, and for an effect that takes no layer.
std::string LayerPath(const look::Settings& settings);

// Puts another file there; nothing for an effect that takes no layer.
void SetLayerPath(look::Settings& settings, const std::string& path);

// Puts the file of --custom-layer, if there is one, into the settings: it is a short form of the
// layer control's --set, and stronger. Notes a lens without a layer and a layer without a lens.
// Throws Failure.
void PrepareLayer(const std::string& customLayer, look::Settings& settings, Notes& notes);

// Reads it from its file. Throws Failure, also when interrupted.
media::Picture ReadLayer(const RenderArguments& arguments, const std::string& path);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_CUSTOM_LAYER_H_
