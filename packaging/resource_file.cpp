// Writes the property lists, and the resource file around macOS's.
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

// What differs between the systems' property lists.
struct ListFormat {
  bool littleEndian;
  bool leadingOne;       // Two bytes before the list that hold 1.
  bool paddingCounts;    // A property's length includes its padding to a multiple of four bytes.
  std::size_t infoSize;  // Size of "eINF" in bytes.
};
constexpr ListFormat kMacos = {false, false, false, 2};
constexpr ListFormat kWindows = {true, true, true, 4};

void PutNumber(Bytes& bytes, std::uint32_t value, std::size_t size, bool littleEndian) {
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t place = littleEndian ? i : size - 1 - i;
    bytes.push_back(static_cast<std::uint8_t>(value >> (8 * place) & 0xFF));
  }
}

void Put16(Bytes& bytes, std::uint32_t value) { PutNumber(bytes, value, 2, false); }

void Put32(Bytes& bytes, std::uint32_t value) { PutNumber(bytes, value, 4, false); }

void PutCharacters(Bytes& bytes, std::string_view characters) {
  bytes.insert(bytes.end(), characters.begin(), characters.end());
}

void CheckText(const std::string& text) {
  if (text.empty() || text.size() > kMaxTextLength) {
    throw std::length_error("'" + text + "' must have 1 to 31 characters");
  }
}

// Collects and counts properties.
class PropertyWriter {
 public:
  explicit PropertyWriter(const ListFormat& format) : format_(format) {}

  void AddNumber(std::string_view key, std::uint32_t value, std::size_t size) {
    Bytes data;
    PutNumber(data, value, size, format_.littleEndian);
    Add(key, data);
  }

  // Kept: the major number comes first, although an old note by the host's makers states the
  // reverse.
  void AddVersion(std::string_view key, ApiVersion version) {
    Bytes data;
    PutNumber(data, version.major, 2, format_.littleEndian);
    PutNumber(data, version.minor, 2, format_.littleEndian);
    Add(key, data);
  }

  void AddCode(std::string_view key, std::string_view code) {
    Bytes data;
    PutCode(data, code);
    Add(key, data);
  }

  // The characters, preceded by a length byte.
  void AddText(std::string_view key, const std::string& text) {
    CheckText(text);
    Bytes data{static_cast<std::uint8_t>(text.size())};
    PutCharacters(data, text);
    Add(key, data);
  }

  // The characters, followed by a zero byte.
  void AddTerminatedText(std::string_view key, const std::string& text) {
    CheckText(text);
    Bytes data;
    PutCharacters(data, text);
    data.push_back(0);
    Add(key, data);
  }

  Bytes List() const {
    Bytes list;
    if (format_.leadingOne) PutNumber(list, 1, 2, format_.littleEndian);
    PutNumber(list, 0, 4, format_.littleEndian);  // Version of the list.
    PutNumber(list, count_, 4, format_.littleEndian);
    list.insert(list.end(), properties_.begin(), properties_.end());
    return list;
  }

 private:
  // Four characters as one number, whose most significant byte is the first.
  void PutCode(Bytes& bytes, std::string_view code) const {
    if (format_.littleEndian) {
      bytes.insert(bytes.end(), code.rbegin(), code.rend());
    } else {
      PutCharacters(bytes, code);
    }
  }

  void Add(std::string_view key, const Bytes& data) {
    const std::size_t padded = (data.size() + 3) / 4 * 4;
    PutCode(properties_, "8BIM");
    PutCode(properties_, key);
    PutNumber(properties_, 0, 4, format_.littleEndian);  // Id.
    PutNumber(properties_, static_cast<std::uint32_t>(format_.paddingCounts ? padded : data.size()),
              4, format_.littleEndian);
    properties_.insert(properties_.end(), data.begin(), data.end());
    properties_.resize(properties_.size() + padded - data.size());
    ++count_;
  }

  const ListFormat& format_;
  Bytes properties_;
  std::uint32_t count_ = 0;
};

// The list of either system. `addEntryPoint` adds what names the exported function.
template <typename AddEntryPoint>
Bytes MakeList(const EffectDescription& effect, const ListFormat& format,
               const AddEntryPoint& addEntryPoint) {
  PropertyWriter writer(format);
  writer.AddCode("kind", "eFKT");
  writer.AddText("name", effect.name);
  writer.AddText("catg", effect.category);
  addEntryPoint(writer);
  writer.AddVersion("ePVR", {2, 0});
  writer.AddVersion("eSVR", effect.apiVersion);
  writer.AddNumber("eVER", effect.version, 4);
  writer.AddNumber("eINF", 0, format.infoSize);
  writer.AddNumber("eGLO", static_cast<std::uint32_t>(effect.outFlags), 4);
  writer.AddNumber("eGL2", static_cast<std::uint32_t>(effect.outFlags2), 4);
  writer.AddText("eMNA", effect.matchName);
  writer.AddNumber("aeFL", 0, 4);
  return writer.List();
}

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
  return MakeList(effect, kMacos, [&](PropertyWriter& writer) {
    writer.AddText("mi64", effect.entryPoint);
    writer.AddText("ma64", effect.entryPoint);
  });
}

Bytes MakeWindowsPropertyList(const EffectDescription& effect) {
  return MakeList(effect, kWindows, [&](PropertyWriter& writer) {
    writer.AddTerminatedText("8664", effect.entryPoint);
  });
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
