// Turns the results of the benchmarks and the peers into the tables of docs/performance.md.
#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bench/report/results.h"
#include "bench/report/targets.h"

namespace vitrell::report {
namespace {

const std::map<std::string, double> kPixels = {
    {"1080p", 1920.0 * 1080}, {"2160p", 3840.0 * 2160}, {"4320p", 7680.0 * 4320}};

std::string Number(std::optional<double> value, int digits) {
  if (!value) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", digits, *value);
  return text;
}

std::string Title(const CaseName& what) {
  return what.detail.empty() ? what.name : what.name + " " + what.detail;
}

// A Markdown table whose first column is text and whose others are numbers. Prints nothing if it
// has no rows.
class Table {
 public:
  Table(std::string title, std::vector<std::string> head)
      : title_(std::move(title)), head_(std::move(head)) {}
  void Row(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  void Print() const {
    if (rows_.empty()) return;
    std::printf("\n### %s\n\n", title_.c_str());
    PrintRow(head_);
    std::printf("|---|");
    for (std::size_t i = 1; i < head_.size(); ++i) std::printf("--:|");
    std::printf("\n");
    for (const auto& row : rows_) PrintRow(row);
  }

 private:
  static void PrintRow(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) std::printf("| %s ", cell.c_str());
    std::printf("|\n");
  }

  std::string title_;
  std::vector<std::string> head_;
  std::vector<std::vector<std::string>> rows_;
};

std::string Verdict(const Target& target, std::optional<double> value, bool deep) {
  const auto limit = target.Limit(deep);
  if (!value || !limit) return Number(value, 2);
  const bool reached = target.atLeast ? *value >= *limit : *value <= *limit;
  return Number(value, 2) + (reached ? " reached" : " **not reached**");
}

std::string LimitText(const Target& target, bool deep) {
  const auto limit = target.Limit(deep);
  if (!limit) return "-";
  return (target.atLeast ? ">= " : "<= ") + Number(limit, 2);
}

void TargetTable(const Results& results) {
  Table table("Targets", {"Case", "is a multiple of", "target", "8 bit", "target", "16 bit"});
  for (const Target& target : AllTargets()) {
    const auto plain = target.figure(results, false);
    const auto deep = target.figure(results, true);
    if (!plain && !deep) continue;
    table.Row({target.what, target.beside, LimitText(target, false), Verdict(target, plain, false),
               LimitText(target, true), Verdict(target, deep, true)});
  }
  table.Print();
}

// The stage's own milliseconds: those of its pass or of the mask, or else the difference between
// the frame and the frame with all stages off.
std::optional<double> OwnMs(const Results& results, const CaseName& what, bool deep) {
  const auto part = results.Get(what, {deep}, "pass_ms");
  if (part && *part > 0) return part;
  const auto frame = results.Get(what, {deep}, "ms");
  const auto off = results.Get({"AllOff", ""}, {deep}, "ms");
  if (!frame || !off || what.name == "AllOff") return std::nullopt;
  return *frame - *off;
}

// The same in units of a pass of the floor: that of its own frame if the stage is a pass, otherwise
// that of the frame with all stages off.
std::optional<double> OwnPasses(const Results& results, const CaseName& what, bool deep) {
  const auto part = results.Get(what, {deep}, "x_pass");
  if (part && *part > 0) return part;
  return Ratio(OwnMs(results, what, deep), results.Get({"AllOff", ""}, {deep}, "floor_pass_ms"));
}

std::string PeersText(const Results& results, const CaseName& what) {
  std::string text;
  for (const std::string& peer : PeersOf(what)) {
    const auto ms = results.Peer(peer);
    if (!ms) continue;
    text += (text.empty() ? "" : "; ") + peer + " " + Number(ms, 1) + " (" +
            Number(Ratio(results.Get(what, {}, "ms"), ms), 2) + ", " +
            Number(Ratio(OwnMs(results, what, false), ms), 2) + ")";
  }
  return text;
}

void CaseTable(const Results& results, bool deep) {
  std::vector<std::string> head = {"Case",   "ms",         "floor ms", "x floor",
                                   "own ms", "own passes", "own ns/px"};
  head.emplace_back(deep ? "x 8 bit" : "peers: ms (frame : theirs, own : theirs)");
  Table table(deep ? "16 bit, 1080p, one thread" : "8 bit, 1080p, one thread", head);
  for (const CaseName& what : results.Cases()) {
    const Setup setup = {deep};
    if (!results.Has(what, setup)) continue;
    const auto ms = results.Get(what, setup, "ms");
    table.Row(
        {Title(what), Number(ms, 1), Number(results.Get(what, setup, "floor_ms"), 1),
         Number(results.Get(what, setup, "x_floor"), 2), Number(OwnMs(results, what, deep), 1),
         Number(OwnPasses(results, what, deep), 1),
         Number(Ratio(OwnMs(results, what, deep), kPixels.at("1080p") / 1e6), 1),
         deep ? Number(Ratio(ms, results.Get(what, {}, "ms")), 2) : PeersText(results, what)});
  }
  table.Print();
}

// The two medians and their ratio, and the ratio of the shortest renders.
std::vector<std::string> ThreadCells(const Results& results, const CaseName& what, bool deep) {
  const Setup setup = {deep, "1080p", 2};
  const auto one = results.Get(what, setup, "other_ms");
  const auto two = results.Get(what, setup, "ms");
  const auto best =
      Ratio(results.Get(what, setup, "best_other_ms"), results.Get(what, setup, "best_ms"));
  return {Number(one, 1), Number(two, 1), Number(Ratio(one, two), 2), Number(best, 2)};
}

void ThreadTable(const Results& results) {
  Table table("Two threads, 1080p, time on the wall in ms",
              {"Case", "8 bit: one", "two", "times as fast", "at best", "16 bit: one", "two",
               "times as fast", "at best"});
  for (const CaseName& what : results.Cases()) {
    if (!results.Has(what, {false, "1080p", 2}) && !results.Has(what, {true, "1080p", 2})) continue;
    std::vector<std::string> cells = {Title(what)};
    for (const bool deep : {false, true}) {
      for (const auto& cell : ThreadCells(results, what, deep)) cells.push_back(cell);
    }
    table.Row(cells);
  }
  table.Print();
}

// Nanoseconds per pixel at three sizes, and the ratio of the largest to the smallest size.
std::vector<std::string> SizeCells(const Results& results, const CaseName& what, bool deep,
                                   const std::string& counter) {
  std::vector<std::string> cells;
  std::map<std::string, std::optional<double>> ns;
  for (const auto& [size, pixels] : kPixels) {
    ns[size] = Ratio(results.Get(what, {deep, size}, counter), pixels / 1e6);
    cells.push_back(Number(ns[size], 1));
  }
  cells.push_back(Number(Ratio(ns["4320p"], ns["1080p"]), 2));
  return cells;
}

void SizeTable(const Results& results) {
  Table table("Cost in pixels: nanoseconds a pixel, one thread",
              {"Case", "1080p", "2160p", "4320p", "4320p : 1080p", "floor: 1080p", "2160p", "4320p",
               "4320p : 1080p"});
  for (const bool deep : {false, true}) {
    for (const CaseName& what : results.Cases()) {
      if (!results.Has(what, {deep, "2160p"}) && !results.Has(what, {deep, "4320p"})) continue;
      std::vector<std::string> cells = {Title(what) + (deep ? ", 16 bit" : ", 8 bit")};
      for (const char* counter : {"ms", "floor_ms"}) {
        for (const auto& cell : SizeCells(results, what, deep, counter)) cells.push_back(cell);
      }
      table.Row(cells);
    }
  }
  table.Print();
}

void MemoryTable(const Results& results) {
  Table table("Memory: the most that one render holds",
              {"Case", "size", "8 bit: worlds MB", "own MB", "own bytes a pixel",
               "16 bit: worlds MB", "own MB", "own bytes a pixel"});
  for (const CaseName& what : results.Cases()) {
    for (const auto& [size, pixels] : kPixels) {
      std::vector<std::string> cells = {Title(what), size};
      bool measured = false;
      for (const bool deep : {false, true}) {
        const auto worlds = results.Get(what, {deep, size}, "worlds_mb");
        const auto rise = results.Get(what, {deep, size}, "rise_mb");
        std::optional<double> own;
        if (worlds && rise) own = *rise - *worlds;
        measured = measured || own.has_value();
        cells.push_back(Number(worlds, 1));
        cells.push_back(Number(own, 1));
        cells.push_back(Number(Ratio(own, pixels / 1e6), 1));
      }
      if (measured) table.Row(cells);
    }
  }
  table.Print();
}

}  // namespace
}  // namespace vitrell::report

int main(int argc, char** argv) {
  CLI::App app("Writes the measured tables as Markdown.");
  std::string benchmarks;
  std::string peers;
  app.add_option("BENCHMARKS", benchmarks, "JSON of vitrell_bench")->required();
  app.add_option("PEERS", peers, "Lines of the peer programs")->required();
  CLI11_PARSE(app, argc, argv);
  try {
    const vitrell::report::Results results(benchmarks, peers);
    vitrell::report::TargetTable(results);
    vitrell::report::CaseTable(results, false);
    vitrell::report::CaseTable(results, true);
    vitrell::report::ThreadTable(results);
    vitrell::report::SizeTable(results);
    vitrell::report::MemoryTable(results);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vitrell_bench_report: %s\n", error.what());
    return 1;
  }
}
