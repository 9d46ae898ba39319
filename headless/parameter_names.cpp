// The paths by which a command line addresses parameters.
#include <algorithm>
#include <cctype>
#include <numeric>

#include "headless/parameters.h"

namespace vitrell::headless {
namespace {

std::string WithoutBrackets(std::string_view title) {
  std::string text;
  int depth = 0;
  for (const char c : title) {
    if (c == '[') ++depth;
    if (depth == 0) text += c;
    if (c == ']' && depth > 0) --depth;
  }
  return text;
}

// "II. BLUR" -> "BLUR". A numeral is a run of Roman numeral letters followed by a full stop.
std::string WithoutRomanNumeral(const std::string& title) {
  const std::size_t end = title.find_first_not_of("IVXLC");
  const bool numeral = end != std::string::npos && end > 0 && title[end] == '.';
  return numeral ? title.substr(end + 1) : title;
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

// A control typed without its group ("feather") is compared with the path's last word as well.
std::size_t Distance(std::string_view path, std::string_view typed) {
  const std::size_t whole = EditDistance(path, typed);
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || typed.find('.') != std::string_view::npos) return whole;
  return std::min(whole, EditDistance(path.substr(dot + 1), typed));
}

}  // namespace

std::string PathWord(std::string_view title) {
  std::string word;
  for (const char c : WithoutRomanNumeral(WithoutBrackets(title))) {
    const auto letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) != 0) {
      word += static_cast<char>(std::tolower(letter));
    } else if (!word.empty() && word.back() != '-') {
      word += '-';
    }
  }
  while (!word.empty() && word.back() == '-') word.pop_back();
  return word;
}

std::vector<std::string> NearestPaths(const std::vector<Parameter>& parameters,
                                      std::string_view path, std::size_t count) {
  std::vector<std::pair<std::size_t, std::string>> ranked;
  for (const Parameter& parameter : parameters) {
    if (!parameter.IsControl()) continue;
    ranked.emplace_back(Distance(parameter.path, path), parameter.path);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (const auto& entry : ranked) {
    if (nearest.size() == count) break;
    nearest.push_back(entry.second);
  }
  return nearest;
}

}  // namespace vitrell::headless
