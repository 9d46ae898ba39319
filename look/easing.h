// The curves of eased keys.
#ifndef VITRELL_LOOK_EASING_H_
#define VITRELL_LOOK_EASING_H_

namespace vitrell::look {

// The middle control points of a cubic Bezier curve from (0, 0) to (1, 1), as in style sheets: time
// runs along x, the share of the way along y. x1 and x2 are 0 to 1.
struct CubicEasing {
  double x1 = 0;
  double y1 = 0;
  double x2 = 1;
  double y2 = 1;
  bool operator==(const CubicEasing&) const = default;
};

// The share of the way at the share `time`, 0 to 1, of the stretch. The curve's parameter is found
// by 60 halvings, so that it differs from the exact one by less than 2^-52.
double Ease(const CubicEasing& easing, double time);

struct PathPosition {
  double x = 0;
  double y = 0;
  bool operator==(const PathPosition&) const = default;
};

// The tangents of a path between two positions: from the first one on leaving it, and from the
// second one on arriving.
struct PathTangents {
  PathPosition leaving;
  PathPosition arriving;
  bool operator==(const PathTangents&) const = default;
};

// The position at a share of the length of the cubic Bezier curve with these ends and tangents. The
// curve is taken as 512 straight pieces, each of the same step of the parameter.
PathPosition AlongPath(const PathPosition& from, const PathPosition& to,
                       const PathTangents& tangents, double share);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_EASING_H_
