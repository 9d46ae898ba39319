// Writes the effect's resource file: write_resource FILE
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

#include "vitrell_resource.h"

int main(int argc, char** argv) {
  using namespace vitrell::packaging;
  if (argc != 2) {
    std::cerr << "usage: write_resource FILE\n";
    return 2;
  }
  const Bytes file = MakeResourceFile(MakePropertyList(DescribeVitrell()));
  std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
  std::copy(file.begin(), file.end(), std::ostreambuf_iterator<char>(out));
  out.close();
  if (!out) {
    std::cerr << argv[1] << " cannot be written\n";
    return 1;
  }
  return 0;
}
