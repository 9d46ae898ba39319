// Starting the program and collecting what it says.
#include "cli/tool_run.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

double SecondsOf(const timeval& time) {
  constexpr double kMicrosecond = 1e-6;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * kMicrosecond;
}

struct Ends {
  int read = -1;
  int write = -1;
};

Ends MakePipe() {
  std::array<int, 2> ends{};
  EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  return {ends[0], ends[1]};
}

// Both ends are -1 where the system gives no terminal.
Ends MakeTerminal() {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master < 0) return {};
  std::array<char, 64> name{};
  const bool usable = ::grantpt(master) == 0 && ::unlockpt(master) == 0 &&
                      ::ptsname_r(master, name.data(), name.size()) == 0;
  const int slave = usable ? ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
  if (slave >= 0) return {master, slave};
  ::close(master);
  return {};
}

// The reading end; -1: the tool shares the test's.
int MakeInput(const fs::path& folder, const ToolOptions& options) {
  if (!options.inputFile.empty()) {
    return ::open((folder / options.inputFile).c_str(), O_RDONLY | O_CLOEXEC);
  }
  if (!options.input) return -1;
  const Ends ends = MakePipe();
  EXPECT_EQ(::write(ends.write, options.input->data(), options.input->size()),
            static_cast<ssize_t>(options.input->size()));
  ::close(ends.write);
  return ends.read;
}

// Only what is allowed between fork and exec.
[[noreturn]] void BecomeTool(char* const* arguments, const char* folder, int in, int out, int err,
                             const ToolOptions& options) {
  if (in >= 0) ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(err, STDERR_FILENO);
  if (options.maxFileBytes) {
    const rlim_t bytes = static_cast<rlim_t>(*options.maxFileBytes);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  if (options.maxProcesses) {
    const rlim_t processes = static_cast<rlim_t>(*options.maxProcesses);
    const rlimit limit{processes, processes};
    ::setrlimit(RLIMIT_NPROC, &limit);
    constexpr uid_t kNobody = 65534;
    if (::geteuid() == 0 && ::setresuid(kNobody, kNobody, kNobody) != 0) ::_exit(98);
  }
  if (::chdir(folder) == 0) ::execv(arguments[0], arguments);
  ::_exit(99);
}

// A terminal whose other side is closed answers an error instead of the end of the file.
bool ReadSome(int file, std::string& text) {
  std::array<char, 4096> block{};
  const ssize_t size = ::read(file, block.data(), block.size());
  if (size > 0) text.append(block.data(), static_cast<std::size_t>(size));
  return size > 0;
}

}  // namespace

std::string WhyNoTerminal() {
  const Ends ends = MakeTerminal();
  if (ends.read < 0) return "this machine gives no terminal (/dev/ptmx, /dev/pts)";
  ::close(ends.read);
  ::close(ends.write);
  return {};
}

RunningTool::RunningTool(const std::vector<std::string>& arguments, const fs::path& folder,
                         const ToolOptions& options) {
  std::vector<std::string> texts = {VITRELL_TOOL_PATH};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  const Ends out = options.terminalOutput ? MakeTerminal() : MakePipe();
  const Ends err = options.terminal ? MakeTerminal() : MakePipe();
  if (err.read < 0 || out.read < 0)
    throw std::runtime_error("a test asks for a terminal without WhyNoTerminal()");
  const int in = MakeInput(folder, options);
  process_ = ::fork();
  if (process_ == 0) {
    BecomeTool(pointers.data(), folder.c_str(), in, out.write, err.write, options);
  }
  if (in >= 0) ::close(in);
  ::close(out.write);
  ::close(err.write);
  out_ = out.read;
  if (options.closedOutput) ::dup3(::open("/dev/null", O_RDONLY | O_CLOEXEC), out_, O_CLOEXEC);
  err_ = err.read;
}

RunningTool::~RunningTool() {
  if (!waited_) {
    ::kill(process_, SIGKILL);
    Wait();
  }
}

void RunningTool::Signal(int signal) const { ::kill(process_, signal); }

void RunningTool::KillAll() const {
  const std::string process = std::to_string(process_);
  std::ifstream children("/proc/" + process + "/task/" + process + "/children");
  Signal(SIGKILL);
  for (pid_t child = 0; children >> child;) ::kill(child, SIGKILL);
}

bool RunningTool::WaitForError(const std::string& text) {
  while (errorSoFar_.find(text) == std::string::npos) {
    if (!ReadSome(err_, errorSoFar_)) return false;
  }
  return true;
}

ToolResult RunningTool::Wait() {
  ToolResult result;
  result.err = errorSoFar_;
  std::array<pollfd, 2> files{{{out_, POLLIN, 0}, {err_, POLLIN, 0}}};
  std::array<std::string*, 2> texts{&result.out, &result.err};
  int open = 2;
  while (open > 0 && ::poll(files.data(), files.size(), -1) > 0) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (files[i].revents == 0 || ReadSome(files[i].fd, *texts[i])) continue;
      files[i].fd = -1;
      --open;
    }
  }
  ::close(out_);
  ::close(err_);
  int status = 0;
  rusage usage{};
  ::wait4(process_, &status, 0, &usage);
  result.maxKilobytes = usage.ru_maxrss;
  result.processorSeconds = SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  waited_ = true;
  return result;
}

ToolTest::ToolTest() {
  std::string pattern = (fs::temp_directory_path() / "vitrell-test-XXXXXX").string();
  folder_ = ::mkdtemp(pattern.data());
}

ToolTest::~ToolTest() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

ToolResult ToolTest::Run(const std::vector<std::string>& arguments,
                         const ToolOptions& options) const {
  return RunningTool(arguments, folder_, options).Wait();
}

void ToolTest::WriteFile(const std::string& name, const std::string& content) const {
  std::ofstream(InFolder(name), std::ios::binary) << content;
}

std::string ToolTest::ReadFile(const std::string& name) const {
  std::ifstream file(InFolder(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> ToolTest::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

void ExpectMessage(const ToolResult& result, int exitCode, const std::vector<std::string>& pieces) {
  EXPECT_EQ(result.exitCode, exitCode) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.find("vitrell: "), 0U) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  for (const std::string& piece : pieces) {
    EXPECT_NE(result.err.find(piece), std::string::npos) << piece << " is not in " << result.err;
  }
}

}  // namespace vitrell::cli
