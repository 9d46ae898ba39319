// Reads a property list of Windows as its description has it.
#include "packaging/windows_list_reader.h"

#include <algorithm>
#include <stdexcept>

namespace vitrell::packaging {
namespace {

// Takes bytes off the front.
class Source {
 public:
  explicit Source(const std::string& bytes) : rest_(bytes) {}

  std::string Take(std::size_t size) {
    if (size > rest_.size()) throw std::runtime_error("the list is cut off");
    const std::string taken = rest_.substr(0, size);
    rest_.erase(0, size);
    return taken;
  }
  unsigned TakeNumber(std::size_t size) { return ReadLittleEndian(Take(size)); }
  std::string TakeCode() {
    std::string code = Take(4);
    std::reverse(code.begin(), code.end());
    return code;
  }
  bool Empty() const { return rest_.empty(); }

 private:
  std::string rest_;
};

}  // namespace

unsigned ReadLittleEndian(const std::string& bytes) {
  if (bytes.empty() || bytes.size() > 4) throw std::runtime_error("a number has 1 to 4 bytes");
  unsigned number = 0;
  unsigned shift = 0;
  for (const char byte : bytes) {
    number |= static_cast<unsigned>(static_cast<unsigned char>(byte)) << shift;
    shift += 8;
  }
  return number;
}

std::vector<WindowsProperty> ReadWindowsList(const std::string& list) {
  Source source(list);
  if (source.TakeNumber(2) != 1) throw std::runtime_error("the list does not begin with 1");
  if (source.TakeNumber(4) != 0) throw std::runtime_error("unknown version of the list");
  std::vector<WindowsProperty> properties(source.TakeNumber(4));
  for (WindowsProperty& property : properties) {
    property.vendor = source.TakeCode();
    property.key = source.TakeCode();
    property.id = source.TakeNumber(4);
    const unsigned size = source.TakeNumber(4);
    if (size % 4 != 0) throw std::runtime_error("a length leaves out the padding");
    property.data = source.Take(size);
  }
  if (!source.Empty()) throw std::runtime_error("the list does not end with its last property");
  return properties;
}

}  // namespace vitrell::packaging
