// Reading of resource files.
#include "packaging/resource_reader.h"

#include <stdexcept>

namespace vitrell::packaging {
namespace {

void Require(bool condition, const char* message) {
  if (!condition) throw std::runtime_error(message);
}

std::string Part(const std::string& bytes, std::size_t offset, std::size_t size) {
  Require(offset <= bytes.size() && size <= bytes.size() - offset, "a part leaves its section");
  return bytes.substr(offset, size);
}

unsigned NumberAt(const std::string& bytes, std::size_t offset, std::size_t size) {
  return ReadNumber(Part(bytes, offset, size));
}

Resource ReadReference(const std::string& reference, const std::string& type,
                       const std::string& data) {
  Resource resource;
  resource.type = type;
  resource.id = NumberAt(reference, 0, 2);
  resource.named = NumberAt(reference, 2, 2) != 0xFFFF;
  resource.attributes = NumberAt(reference, 4, 1);
  const std::size_t start = NumberAt(reference, 5, 3);
  resource.data = Part(data, start + 4, NumberAt(data, start, 4));
  return resource;
}

}  // namespace

unsigned ReadNumber(const std::string& bytes) {
  Require(!bytes.empty() && bytes.size() <= 4, "a number has 1 to 4 bytes");
  unsigned number = 0;
  for (const char byte : bytes) number = number * 256 + static_cast<unsigned char>(byte);
  return number;
}

std::vector<Resource> ReadResources(const std::string& file) {
  const std::string data = Part(file, NumberAt(file, 0, 4), NumberAt(file, 8, 4));
  const std::string map = Part(file, NumberAt(file, 4, 4), NumberAt(file, 12, 4));
  Require(Part(map, 0, 16) == Part(file, 0, 16), "the map's header differs from the file's");
  const std::string types = map.substr(NumberAt(map, 24, 2));
  Require(NumberAt(map, 26, 2) <= map.size(), "the name list lies outside the map");

  std::vector<Resource> resources;
  const std::size_t typeCount = NumberAt(types, 0, 2) + 1;
  for (std::size_t i = 0; i < typeCount; ++i) {
    const std::string entry = Part(types, 2 + 8 * i, 8);
    const std::size_t count = NumberAt(entry, 4, 2) + 1;
    const std::size_t references = NumberAt(entry, 6, 2);
    for (std::size_t j = 0; j < count; ++j) {
      resources.push_back(
          ReadReference(Part(types, references + 12 * j, 12), entry.substr(0, 4), data));
    }
  }
  return resources;
}

std::vector<Property> ReadProperties(const std::string& list) {
  Require(NumberAt(list, 0, 4) == 0, "unknown version of the property list");
  std::vector<Property> properties(NumberAt(list, 4, 4));
  std::size_t place = 8;
  for (Property& property : properties) {
    property.vendor = Part(list, place, 4);
    property.key = Part(list, place + 4, 4);
    property.id = NumberAt(list, place + 8, 4);
    const std::size_t size = NumberAt(list, place + 12, 4);
    property.data = Part(list, place + 16, size);
    const std::size_t padding = (4 - size % 4) % 4;
    Require(Part(list, place + 16 + size, padding) == std::string(padding, '\0'),
            "the padding is not zero");
    place += 16 + size + padding;
  }
  Require(place == list.size(), "the list does not end with its last property");
  return properties;
}

}  // namespace vitrell::packaging
