// Windows: a second process of this program runs the cases. From its environment it learns the
// test, the number of the RunGuarded call within it and the first case; it runs the test up to that
// call, executes the cases there and exits. The address space is not limited, because Wine does not
// enforce a job's limit.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "reliability/guarded_cases.h"

namespace vitrell::reliability {
namespace {

constexpr DWORD kMilliseconds = 60'000;  // Wall-clock time limit per case.
constexpr std::size_t kMostComplaints = 10;
// Environment variables of the second process: call, first case, file for the progress.
constexpr const char* kCall = "VITRELL_GUARDED_CALL";
constexpr const char* kFirst = "VITRELL_GUARDED_FIRST";
constexpr const char* kProgress = "VITRELL_GUARDED_PROGRESS";

// The second process's progress, rewritten before every case and after the last one.
struct Progress {
  std::size_t current = 0;
  std::string complaint;
};

// Written to a new file and renamed, so that it is never read in part.
void WriteProgress(const std::filesystem::path& file, const Progress& progress) {
  const std::filesystem::path fresh = file.string() + ".new";
  std::ofstream(fresh, std::ios::binary) << progress.current << "\n" << progress.complaint;
  // Renaming fails while the other process reads.
  for (int i = 0; MoveFileExW(fresh.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING) == 0; ++i) {
    if (i == 1000) throw std::runtime_error("the progress cannot be written");
    Sleep(1);
  }
}

Progress ReadProgress(const std::filesystem::path& file) {
  Progress progress;
  std::ifstream in(file, std::ios::binary);
  std::ostringstream rest;
  in >> progress.current;
  in.get();
  if (in) rest << in.rdbuf();
  progress.complaint = rest.str();
  return progress;
}

[[noreturn]] void RunAsChild(const std::vector<GuardedCase>& cases) {
  const std::filesystem::path file = std::getenv(kProgress);
  for (auto i = std::strtoull(std::getenv(kFirst), nullptr, 10); i < cases.size(); ++i) {
    WriteProgress(file, {i, ""});
    const std::string complaint = cases[i].run();
    if (!complaint.empty()) {
      WriteProgress(file, {i, complaint});
      std::_Exit(EXIT_SUCCESS);
    }
  }
  WriteProgress(file, {cases.size(), ""});
  std::_Exit(EXIT_SUCCESS);
}

HANDLE StartChild(int call, std::size_t first, const std::filesystem::path& file) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string filter =
      std::string(" --gtest_filter=") + test.test_suite_name() + "." + test.name();
  std::wstring command = L"\"" + std::wstring(program) + L"\"";
  command.append(filter.begin(), filter.end());
  SetEnvironmentVariableA(kCall, std::to_string(call).c_str());
  SetEnvironmentVariableA(kFirst, std::to_string(first).c_str());
  SetEnvironmentVariableA(kProgress, file.string().c_str());
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;  // No handles: its output is suppressed.
  PROCESS_INFORMATION process = {};
  const BOOL started = CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &startup, &process);
  SetEnvironmentVariableA(kCall, nullptr);
  if (started == 0) throw std::runtime_error("no process for the cases");
  CloseHandle(process.hThread);
  return process.hProcess;
}

// Waits until the child exits, or terminates it if one case takes too long.
std::string WaitForChild(HANDLE child, const std::filesystem::path& file) {
  std::size_t current = ReadProgress(file).current;
  ULONGLONG since = GetTickCount64();
  while (WaitForSingleObject(child, 200) == WAIT_TIMEOUT) {
    const std::size_t now = ReadProgress(file).current;
    if (now != current) {
      current = now;
      since = GetTickCount64();
    } else if (GetTickCount64() - since > kMilliseconds) {
      TerminateProcess(child, EXIT_FAILURE);
      WaitForSingleObject(child, INFINITE);
      CloseHandle(child);
      return "takes too long";
    }
  }
  DWORD code = 0;
  GetExitCodeProcess(child, &code);
  CloseHandle(child);
  if (code == EXIT_SUCCESS) return "";
  std::ostringstream text;
  text << "ends the process with 0x" << std::hex << code;
  return text.str();
}

// Counts the calls of each test.
int NumberOfThisCall() {
  static std::map<std::string, int> calls;
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  return calls[std::string(test.test_suite_name()) + "." + test.name()]++;
}

}  // namespace

std::vector<std::string> RunGuarded(const std::vector<GuardedCase>& cases) {
  const int call = NumberOfThisCall();
  if (const char* const wanted = std::getenv(kCall)) {
    if (std::atoi(wanted) == call) RunAsChild(cases);
    return {};
  }
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() /
      ("vitrell-guarded-" + std::to_string(GetCurrentProcessId()) + ".txt");
  std::vector<std::string> complaints;
  std::size_t next = 0;
  while (next < cases.size() && complaints.size() < kMostComplaints) {
    std::fflush(nullptr);
    WriteProgress(file, {next, ""});
    const std::string end = WaitForChild(StartChild(call, next, file), file);
    const Progress progress = ReadProgress(file);
    if (end.empty() && progress.complaint.empty()) {
      if (progress.current != cases.size()) complaints.emplace_back("the process left early");
      break;
    }
    const std::string name =
        progress.current < cases.size() ? cases[progress.current].name : "after the last case";
    complaints.push_back(name + ": " + (end.empty() ? progress.complaint : end));
    next = progress.current + 1;
  }
  std::filesystem::remove(file);
  return complaints;
}

}  // namespace vitrell::reliability
