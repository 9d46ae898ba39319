// Maths functions that return the same bits on every processor, C library and compiler.
#ifndef VITRELL_HEADLESS_PINNED_MATHS_H_
#define VITRELL_HEADLESS_PINNED_MATHS_H_

// They behave like the functions of the same names in <cmath>, including infinities and signed
// zeros; every NaN returned is the same quiet NaN. Results are within 0.9 units in the last place.
// Only + - * / are used, and functions that IEEE 754 defines to the bit (sqrt, floor, remainder),
// all rounded to nearest; errno and the rounding mode are left alone. Safe to call from any thread.
namespace vitrell::headless::pinned {

// For |x| above 2^20 the argument reduction errs by |x| * 2^-69 radians; results stay in [-1, 1].
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
