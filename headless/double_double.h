// Unevaluated sums of two doubles with about 106 significant bits; usable at compile time.
#ifndef VITRELL_HEADLESS_DOUBLE_DOUBLE_H_
#define VITRELL_HEADLESS_DOUBLE_DOUBLE_H_

namespace vitrell::headless {

// hi is hi + lo rounded to double. Only + - * / on doubles are used, rounded to nearest and never
// contracted, so that results are the same everywhere.
struct DoubleDouble {
  double hi = 0;
  double lo = 0;
};

// a + b without error for |a| >= |b| (Dekker 1971).
constexpr DoubleDouble FastTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

// a + b without error (Knuth, The Art of Computer Programming, volume 2, 4.2.2).
constexpr DoubleDouble TwoSum(double a, double b) {
  const double sum = a + b;
  const double bPart = sum - a;
  return {sum, (a - (sum - bPart)) + (b - bPart)};
}

// The upper 26 bits of a and the remainder (Veltkamp 1968). |a| must be below 2^995.
constexpr DoubleDouble Split(double a) {
  constexpr double kSplitter = 0x1p27 + 1;
  const double scaled = kSplitter * a;
  const double upper = scaled - (scaled - a);
  return {upper, a - upper};
}

// a * b without error unless it underflows (Dekker 1971); the limit is that of Split.
constexpr DoubleDouble TwoProduct(double a, double b) {
  const double product = a * b;
  const DoubleDouble x = Split(a);
  const DoubleDouble y = Split(b);
  const double error = ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo;
  return {product, error};
}

// The relative error of each operation below is a few times 2^-104 (Dekker 1971); sums of opposite
// signs lose the bits that cancel.
constexpr DoubleDouble Add(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble high = TwoSum(a.hi, b.hi);
  const DoubleDouble low = TwoSum(a.lo, b.lo);
  const DoubleDouble sum = FastTwoSum(high.hi, high.lo + low.hi);
  return FastTwoSum(sum.hi, sum.lo + low.lo);
}

constexpr DoubleDouble Negate(DoubleDouble a) { return {-a.hi, -a.lo}; }

constexpr DoubleDouble Multiply(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble product = TwoProduct(a.hi, b.hi);
  return FastTwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

constexpr DoubleDouble Divide(DoubleDouble a, DoubleDouble b) {
  const double first = a.hi / b.hi;
  const DoubleDouble back = Multiply(b, {first, 0});
  const DoubleDouble rest = Add(a, Negate(back));
  return FastTwoSum(first, rest.hi / b.hi);
}

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_DOUBLE_DOUBLE_H_
