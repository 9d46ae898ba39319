// Writes the effect's resource: write_resource FILE, the resource file of macOS, or
// write_resource --windows FILE, the property list that Windows's resource compiler puts into the
// module.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>

#include "vitrell_resource.h"

int main(int argc, char** argv) {
  using namespace vitrell::packaging;
  const bool windows = argc == 3 && std::string_view(argv[1]) == "--windows";
  if (argc != 2 && !windows) {
    std::cerr << "usage: write_resource [--windows] FILE\n";
    return 2;
  }
  const char* const path = argv[argc - 1];
  const Bytes file = windows ? MakeWindowsPropertyList(DescribeVitrell())
                             : MakeResourceFile(MakePropertyList(DescribeVitrell()));
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  std::copy(file.begin(), file.end(), std::ostreambuf_iterator<char>(out));
  out.close();
  if (!out) {
    std::cerr << path << " cannot be written\n";
    return 1;
  }
  return 0;
}
