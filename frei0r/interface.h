// The records and numbers that a frei0r module and its host exchange: version 1.2 of the interface.
#ifndef VITRELL_FREI0R_INTERFACE_H_
#define VITRELL_FREI0R_INTERFACE_H_

#include <cstdint>

namespace vitrell::frei0r {

constexpr int kInterfaceVersion = 1;

enum ModuleType : int { kFilterModule = 0, kMixerModule = 2 };  // A mixer with two inputs.
enum ColourModel : int { kRgba = 1 };  // Bytes red, green, blue, alpha; rows without padding.
enum ParameterType : int { kSwitchParameter = 0, kNumberParameter = 1, kColourParameter = 2 };

struct ModuleInfo {
  const char* name;
  const char* author;
  int type;
  int colourModel;
  int interfaceVersion;
  int majorVersion;
  int minorVersion;
  int parameterCount;
  const char* explanation;
};

struct ParameterInfo {
  const char* name;
  int type;
  const char* explanation;
};

// Values change hands through a pointer. Switches and numbers are doubles; a switch is on from 0.5.
struct Colour {
  float red;
  float green;
  float blue;
};

using Instance = void*;
using Pixels = const std::uint32_t*;

// The exported functions. The host's own records may bear other names.
using InitFunction = int();
using DeinitFunction = void();
template <typename Info>
using GetModuleInfoFunction = void(Info* info);
template <typename Info>
using GetParameterInfoFunction = void(Info* info, int index);
using ConstructFunction = Instance(unsigned int width, unsigned int height);
using DestructFunction = void(Instance instance);
using ParameterFunction = void(Instance instance, void* value, int index);
using FilterFunction = void(Instance instance, double seconds, Pixels frame, std::uint32_t* result);
using MixerFunction = void(Instance instance, double seconds, Pixels frame, Pixels second,
                           Pixels third, std::uint32_t* result);

}  // namespace vitrell::frei0r

#endif  // VITRELL_FREI0R_INTERFACE_H_
