// Runs the built `vitrell` as a user does, in a directory of its own.
#ifndef VITRELL_TESTS_CLI_TOOL_RUN_H_
#define VITRELL_TESTS_CLI_TOOL_RUN_H_

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vitrell::cli {

struct ToolResult {
  int exitCode = -1;            // -1: ended by a signal
  long maxKilobytes = 0;        // of memory, at the most
  double processorSeconds = 0;  // with the processes that it started
  std::string out;
  std::string err;
};

struct ToolOptions {
  bool terminal = false;             // standard error is a terminal; see WhyNoTerminal
  bool terminalOutput = false;       // standard output, too
  bool closedOutput = false;         // nobody reads standard output
  std::optional<std::string> input;  // through a pipe, which holds 64 kB
  std::string inputFile;             // redirected
  std::optional<long> maxFileBytes;  // writing more fails
  // Starting more processes and threads fails. Takes the rights of root away, who has no limit.
  std::optional<long> maxProcesses;
};

// Empty where terminals can be had; otherwise the reason to skip a test that needs one.
std::string WhyNoTerminal();

// A started program. Waits for it at the latest in the destructor.
class RunningTool {
 public:
  RunningTool(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
              const ToolOptions& options = {});
  ~RunningTool();
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

  void Signal(int signal) const;
  // SIGKILL, also to the processes that it started.
  void KillAll() const;
  // Reads standard error until it holds the text; false when it ends before.
  bool WaitForError(const std::string& text);
  ToolResult Wait();

 private:
  pid_t process_ = -1;
  int out_ = -1;
  int err_ = -1;
  bool waited_ = false;
  std::string errorSoFar_;
};

// A fresh folder for each test; file names are relative to it.
class ToolTest : public testing::Test {
 protected:
  ToolTest();
  ~ToolTest() override;

  const std::filesystem::path& Folder() const { return folder_; }
  std::filesystem::path InFolder(const std::string& name) const { return folder_ / name; }
  ToolResult Run(const std::vector<std::string>& arguments, const ToolOptions& options = {}) const;
  void WriteFile(const std::string& name, const std::string& content) const;
  std::string ReadFile(const std::string& name) const;
  // All names in the folder, hidden ones too, sorted.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path folder_;
};

// The message is one line of vitrell's and holds every given piece.
void ExpectMessage(const ToolResult& result, int exitCode, const std::vector<std::string>& pieces);

}  // namespace vitrell::cli

#endif  // VITRELL_TESTS_CLI_TOOL_RUN_H_
