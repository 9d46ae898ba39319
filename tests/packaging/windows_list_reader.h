// Reads a property list of Windows as its description has it.
#ifndef VITRELL_TESTS_PACKAGING_WINDOWS_LIST_READER_H_
#define VITRELL_TESTS_PACKAGING_WINDOWS_LIST_READER_H_

#include <string>
#include <vector>

namespace vitrell::packaging {

// Vendor and key as people write them, "8BIM" and "kind"; the list has them reversed.
struct WindowsProperty {
  std::string vendor;
  std::string key;
  unsigned id = 0;
  std::string data;  // With its padding.
};

// The properties of a list. Throws std::runtime_error when the leading word is not 1, the version
// not 0, a length no multiple of four, or the list does not end with its last property.
std::vector<WindowsProperty> ReadWindowsList(const std::string& list);

// A number of 1 to 4 bytes, the least significant first.
unsigned ReadLittleEndian(const std::string& bytes);

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_WINDOWS_LIST_READER_H_
