// Records the goldens as this system's module renders them: record_goldens INPUT.png FILE
#include <exception>
#include <iostream>
#include <memory>
#include <vector>

#include "whole/golden_case.h"
#include "whole/golden_record.h"

int main(int argc, char** argv) {
  using namespace vitrell;
  if (argc != 3) {
    std::cerr << "usage: record_goldens INPUT.png FILE\n";
    return 2;
  }
  try {
    const whole::FilePicture input = whole::ReadFilePicture(argv[1]);
    const auto module =
        std::make_shared<headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH));
    std::vector<whole::GoldenRecord> records;
    for (const std::string& name : whole::GoldenNames()) {
      records.push_back(whole::RenderRecord(whole::DescribeGolden(name, input), module));
    }
    whole::WriteGoldenRecords(argv[2], records);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
  return 0;
}
