// The resource that tells the host about an effect before its code is loaded.
#ifndef VITRELL_PACKAGING_RESOURCE_FILE_H_
#define VITRELL_PACKAGING_RESOURCE_FILE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_api.h"

namespace vitrell::packaging {

using Bytes = std::vector<std::uint8_t>;

// The host's interface that an effect was written for.
struct ApiVersion {
  std::uint16_t major;
  std::uint16_t minor;
};

// What the host wants to know. The texts hold 31 characters at most, as the host's records do.
struct EffectDescription {
  std::string name;        // Shown in the effects menu.
  std::string matchName;   // Stored in projects.
  std::string category;    // The submenu.
  std::string entryPoint;  // The exported function, without the symbol table's underscore.
  ApiVersion apiVersion;
  A_u_long version;  // The same word that GLOBAL_SETUP answers.
  PF_OutFlags outFlags;
  PF_OutFlags2 outFlags2;
};

// The property list alone: version, count, properties; all numbers big-endian. Throws
// std::length_error when a text is empty or too long.
Bytes MakePropertyList(const EffectDescription& effect);

// A resource file whose one resource, type PiPL and id 16000, is the list.
Bytes MakeResourceFile(const Bytes& propertyList);

}  // namespace vitrell::packaging

#endif  // VITRELL_PACKAGING_RESOURCE_FILE_H_
