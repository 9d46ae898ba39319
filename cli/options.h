// The commands' options and help texts.
#ifndef VITRELL_CLI_OPTIONS_H_
#define VITRELL_CLI_OPTIONS_H_

#include "cli/arguments.h"

namespace CLI {
class App;
}

namespace vitrell::cli {

// Each adds one command that fills the arguments when it is parsed; they must outlive the app.
CLI::App* AddRender(CLI::App& app, RenderArguments& arguments);
CLI::App* AddParams(CLI::App& app, ParamsArguments& arguments);
CLI::App* AddAbout(CLI::App& app, EffectArguments& arguments);
CLI::App* AddFormats(CLI::App& app);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_OPTIONS_H_
