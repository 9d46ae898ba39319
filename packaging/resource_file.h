// The resource that describes an effect to the host before its code is loaded.
#ifndef VITRELL_PACKAGING_RESOURCE_FILE_H_
#define VITRELL_PACKAGING_RESOURCE_FILE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_api.h"

namespace vitrell::packaging {

using Bytes = std::vector<std::uint8_t>;

// The version of the host's interface that an effect was written for.
struct ApiVersion {
  std::uint16_t major;
  std::uint16_t minor;
};

// The contents of the resource. Texts have at most 31 characters, as in the host's records.
struct EffectDescription {
  std::string name;        // Shown in the effects menu.
  std::string matchName;   // Stored in projects.
  std::string category;    // The submenu.
  std::string entryPoint;  // The exported function, without a leading underscore.
  ApiVersion apiVersion;
  A_u_long version;  // The version word that GLOBAL_SETUP sets too.
  PF_OutFlags outFlags;
  PF_OutFlags2 outFlags2;
};

// The property list alone for macOS: version, count and properties, with all numbers big-endian.
// Throws std::length_error if a text is empty or too long, as does the next one.
Bytes MakePropertyList(const EffectDescription& effect);

// The same for Windows: little-endian, with the four-character codes reversed, behind a leading
// word. There the linker puts it into the module, as a resource of type PiPL with id 16000.
Bytes MakeWindowsPropertyList(const EffectDescription& effect);

// A resource file that holds only the list, as a resource of type PiPL with id 16000.
Bytes MakeResourceFile(const Bytes& propertyList);

}  // namespace vitrell::packaging

#endif  // VITRELL_PACKAGING_RESOURCE_FILE_H_
