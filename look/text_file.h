// Small text files that users name.
#ifndef VITRELL_LOOK_TEXT_FILE_H_
#define VITRELL_LOOK_TEXT_FILE_H_

#include <filesystem>
#include <string>

namespace vitrell::look {

// The whole file, which may be a pipe or "-" for standard input. `kind` stands in front of its name
// in messages: "preset". Throws Failure, also for more than a mebibyte.
std::string ReadTextFile(const std::filesystem::path& file, const std::string& kind);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_TEXT_FILE_H_
