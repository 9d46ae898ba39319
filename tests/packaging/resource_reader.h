// Reads a resource file the way the host does: by the offsets it holds.
#ifndef VITRELL_TESTS_PACKAGING_RESOURCE_READER_H_
#define VITRELL_TESTS_PACKAGING_RESOURCE_READER_H_

#include <string>
#include <vector>

namespace vitrell::packaging {

struct Property {
  std::string vendor;
  std::string key;
  unsigned id = 0;
  std::string data;  // Without the padding.
};

struct Resource {
  std::string type;
  unsigned id = 0;
  bool named = false;
  unsigned attributes = 0;
  std::string data;
};

// All resources of a file, in the order of its map. Throws std::runtime_error when an offset or a
// length leads out of its section, or the two headers differ.
std::vector<Resource> ReadResources(const std::string& file);

// The properties of a list. Throws std::runtime_error when the version is not 0, the padding is not
// zero, or the list does not end with its last property.
std::vector<Property> ReadProperties(const std::string& list);

// A number of 1 to 4 bytes, the most significant first.
unsigned ReadNumber(const std::string& bytes);

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_RESOURCE_READER_H_
