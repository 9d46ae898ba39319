// Writes the property list and the resource file around it.
#include "resource_file.h"

#include <stdexcept>
#include <string_view>

namespace vitrell::packaging {
namespace {

constexpr std::size_t kMaxTextLength = 31;
constexpr std::uint16_t kPropertyListId = 16000;
constexpr std::uint32_t kDataSectionOffset = 256;
constexpr std::uint32_t kMapHeaderSize = 28;
constexpr std::uint16_t kTypeListSize = 10;
constexpr std::uint16_t kReferenceSize = 12;
constexpr std::uint16_t kNoName = 0xFFFF;

void Put16(Bytes& bytes, std::uint32_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

void Put32(Bytes& bytes, std::uint32_t value) {
  Put16(bytes, value >> 16);
  Put16(bytes, value & 0xFFFF);
}

void PutCharacters(Bytes& bytes, std::string_view characters) {
  bytes.insert(bytes.end(), characters.begin(), characters.end());
}

// Collects and counts properties.
class PropertyWriter {
 public:
  void AddWord16(std::string_view key, std::uint32_t value) {
    Bytes data;
    Put16(data, value);
    Add(key, data);
  }

  void AddWord32(std::string_view key, std::uint32_t value) {
    Bytes data;
    Put32(data, value);
    Add(key, data);
  }

  // Kept: the major number comes first, although an old note by the host's makers states the
  // reverse.
  void AddVersion(std::string_view key, ApiVersion version) {
    Bytes data;
    Put16(data, version.major);
    Put16(data, version.minor);
    Add(key, data);
  }

  void AddCode(std::string_view key, std::string_view code) {
    Add(key, Bytes(code.begin(), code.end()));
  }

  // The characters, preceded by a length byte.
  void AddText(std::string_view key, const std::string& text) {
    if (text.empty() || text.size() > kMaxTextLength) {
      throw std::length_error("'" + text + "' must have 1 to 31 characters");
    }
    Bytes data{static_cast<std::uint8_t>(text.size())};
    PutCharacters(data, text);
    Add(key, data);
  }

  Bytes List() const {
    Bytes list;
    Put32(list, 0);  // Version of the list.
    Put32(list, count_);
    list.insert(list.end(), properties_.begin(), properties_.end());
    return list;
  }

 private:
  // The length excludes the padding to a multiple of four bytes.
  void Add(std::string_view key, const Bytes& data) {
    PutCharacters(properties_, "8BIM");
    PutCharacters(properties_, key);
    Put32(properties_, 0);  // Id.
    Put32(properties_, static_cast<std::uint32_t>(data.size()));
    properties_.insert(properties_.end(), data.begin(), data.end());
    properties_.resize((properties_.size() + 3) / 4 * 4);
    ++count_;
  }

  Bytes properties_;
  std::uint32_t count_ = 0;
};

void PutMap(Bytes& file, const Bytes& header) {
  file.insert(file.end(), header.begin(), header.end());
  Put32(file, 0);  // Next map.
  Put16(file, 0);  // File reference, ignored.
  Put16(file, 0);  // Attributes.
  Put16(file, kMapHeaderSize);
  Put16(file, kMapHeaderSize + kTypeListSize + kReferenceSize);  // Name list, empty.
  Put16(file, 0);                                                // Number of types - 1.
  PutCharacters(file, "PiPL");
  Put16(file, 0);  // Number of resources of this type - 1.
  Put16(file, kTypeListSize);
  Put16(file, kPropertyListId);
  Put16(file, kNoName);
  Put32(file, 0);  // Attributes, and the offset in the data section.
  Put32(file, 0);  // Handle, ignored.
}

}  // namespace

Bytes MakePropertyList(const EffectDescription& effect) {
  PropertyWriter writer;
  writer.AddCode("kind", "eFKT");
  writer.AddText("name", effect.name);
  writer.AddText("catg", effect.category);
  writer.AddText("mi64", effect.entryPoint);
  writer.AddText("ma64", effect.entryPoint);
  writer.AddVersion("ePVR", {2, 0});
  writer.AddVersion("eSVR", effect.apiVersion);
  writer.AddWord32("eVER", effect.version);
  writer.AddWord16("eINF", 0);
  writer.AddWord32("eGLO", static_cast<std::uint32_t>(effect.outFlags));
  writer.AddWord32("eGL2", static_cast<std::uint32_t>(effect.outFlags2));
  writer.AddText("eMNA", effect.matchName);
  writer.AddWord32("aeFL", 0);
  return writer.List();
}

Bytes MakeResourceFile(const Bytes& propertyList) {
  const std::uint32_t dataSize = static_cast<std::uint32_t>(4 + propertyList.size());
  Bytes header;
  Put32(header, kDataSectionOffset);
  Put32(header, kDataSectionOffset + dataSize);
  Put32(header, dataSize);
  Put32(header, kMapHeaderSize + kTypeListSize + kReferenceSize);

  Bytes file = header;
  file.resize(kDataSectionOffset);
  Put32(file, static_cast<std::uint32_t>(propertyList.size()));
  file.insert(file.end(), propertyList.begin(), propertyList.end());
  PutMap(file, header);
  return file;
}

}  // namespace vitrell::packaging
