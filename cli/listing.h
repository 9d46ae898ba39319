// The list of controls as text, JSON and Markdown.
#ifndef VITRELL_CLI_LISTING_H_
#define VITRELL_CLI_LISTING_H_

#include <string>

#include "look/settings.h"

namespace vitrell::cli {

// The panel from top to bottom with the settings' values, for people. What is greyed out has "-"
// in front and "greyed out" behind.
std::string ListAsText(const look::Settings& settings);

// {"controls": [...]} with groups nested under "controls" too.
std::string ListAsJson(const look::Settings& settings);

// One table for each group that holds controls.
std::string ListAsMarkdown(const look::Settings& settings);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_LISTING_H_
