// The controls as a frei0r host sees them: switches, colours, and numbers from 0 to 1.
#ifndef VITRELL_LOOK_FREI0R_MAPPING_H_
#define VITRELL_LOOK_FREI0R_MAPPING_H_

#include <cstddef>
#include <string>
#include <vector>

#include "look/control.h"
#include "look/settings.h"

namespace vitrell::look {

enum class Frei0rKind { kSwitch, kNumber, kColour };

// One parameter. Every control but the layer is one; a position is two, one for each coordinate.
struct Frei0rParameter {
  Frei0rKind kind = Frei0rKind::kNumber;
  std::string name;         // "fast-blur.amount"; "lens.position-x" and "-y"
  std::string explanation;  // the panel's label, and what 0 and 1 stand for
  std::size_t control = 0;  // index in Panel::controls
  bool isY = false;         // the second coordinate of a position
  // What 0 and 1 stand for, in the control's own unit: the ends of the panel's slider, half a turn
  // to either side, the picture's edges in percent, the first and the last choice.
  double zero = 0;
  double one = 1;
};

// In the panel's order, which is the order in which hosts number them.
std::vector<Frei0rParameter> MakeFrei0rParameters(const Panel& panel);

// The control's value for a parameter of kind kNumber: zero + x * (one - zero). Values below 0 and
// above 1 go on in the same measure as far as the control's range, then stay at its end. The result
// is rounded to nine decimals, so that the double of a decimal number, printed by Frei0rText and
// read by a host, comes back with all its bits. A choice is the nearest one. NaN changes nothing.
void SetFrei0rNumber(const Frei0rParameter& parameter, double x, Settings& settings);
// The reverse. Coordinates in pixels count as the middle of the picture.
double Frei0rNumberOf(const Frei0rParameter& parameter, const Settings& settings);

// A colour's channel from 0 to 1, and the reverse.
uint8_t ChannelFromFrei0r(double x);
double Frei0rFromChannel(uint8_t channel);

// The value as FFmpeg reads it: "0.25", "y", "1/0.5/0". The number has no exponent and the fewest
// decimals that give the same value.
std::string Frei0rText(const Frei0rParameter& parameter, const Settings& settings);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_FREI0R_MAPPING_H_
