// The commands' options and help texts.
#ifndef VITRELL_CLI_OPTIONS_H_
#define VITRELL_CLI_OPTIONS_H_

#include <string>

#include "cli/arguments.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the library's
class App;
}

namespace vitrell::cli {

// Each adds one command that fills the arguments when it is parsed; they must outlive the app.
CLI::App* AddRender(CLI::App& app, RenderArguments& arguments);
// The part of AddRender that is for sequences.
void AddFrameOptions(CLI::App& command, FrameArguments& arguments);
CLI::App* AddParams(CLI::App& app, ParamsArguments& arguments);
CLI::App* AddKeys(CLI::App& app, KeysArguments& arguments);
CLI::App* AddCheck(CLI::App& app, CheckArguments& arguments);
CLI::App* AddAbout(CLI::App& app, EffectArguments& arguments);
CLI::App* AddFormats(CLI::App& app);
// `about` becomes the name of the command that is asked about; empty for all.
CLI::App* AddHelp(CLI::App& app, std::string& about);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_OPTIONS_H_
