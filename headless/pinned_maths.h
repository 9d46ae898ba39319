// Maths functions whose results have the same bits on every processor, C library and compiler.
#ifndef VITRELL_HEADLESS_PINNED_MATHS_H_
#define VITRELL_HEADLESS_PINNED_MATHS_H_

// The functions of <cmath> with these names, including zeros, infinities and signs of zero; every
// NaN that is returned is the same quiet NaN. Results are within 0.9 units in the last place. They
// need nothing but + - * / and what IEEE 754 defines to the bit (sqrt, floor, remainder), rounded
// to nearest, and touch neither errno nor the rounding mode. They may be called from any thread.
namespace vitrell::headless::pinned {

// For |x| above 2^20 the reduction loses |x| * 2^-69 radians; the results stay within -1 to 1.
double Sin(double x);
double Cos(double x);
double Tan(double x);

double Atan(double x);
double Atan2(double y, double x);
double Asin(double x);
double Acos(double x);

double Exp(double x);
double Log(double x);
double Log10(double x);
// Exactly x for y = 1.
double Pow(double x, double y);
double Hypot(double x, double y);

}  // namespace vitrell::headless::pinned

#endif  // VITRELL_HEADLESS_PINNED_MATHS_H_
