#include "embedded/distributions/DoubleDouble.h"

#include <array>
#include <cstddef>

namespace embedded::distributions {

namespace {

constexpr DoubleDouble kLn2{0.6931471805599453, 2.3190468138462996e-17};
constexpr int kHalvings = 8;
constexpr double kSmallForLog = 0x1p-900;
constexpr double kLogLiftBits = 600;
constexpr double kLogLift = 0x1p600;

// e^r - 1 for |r| < 0.0014: Taylor's series, whose later terms a double holds well enough.
DoubleDouble smallExpm1(DoubleDouble r) {
  constexpr std::array<DoubleDouble, 4> kInverseFactorials{{{1.0 / 6, 9.25185853854297e-18},
                                                            {1.0 / 24, 2.3129646346357427e-18},
                                                            {1.0 / 120, 1.1564823173178714e-19},
                                                            {1.0 / 720, -5.300543954373577e-20}}};
  const double h = r.hi;
  const double far = h * (1.0 / 5040 + h * (1.0 / 40320 + h * (1.0 / 362880)));
  DoubleDouble sum = kInverseFactorials[3] + far;
  for (int i = 2; i >= 0; --i) sum = kInverseFactorials[static_cast<std::size_t>(i)] + r * sum;
  const DoubleDouble square = r * r;
  return r + (scaled(square, 0.5) + square * (r * sum));
}

// One Newton step on exp from the double: its error is the cube of the start's.
DoubleDouble logByNewton(double value) {
  const double start = std::log(value);
  const DoubleDouble off = exp(-start) * value - 1.0;
  return DoubleDouble(start) + (off - 0.5 * off.hi * off.hi);
}

// -log(j / 128) for the reciprocals of 0.7 to 1.5.
constexpr int kParts = 128;
constexpr int kFirstPart = 84;
constexpr int kLastPart = 184;
using LogTable = std::array<DoubleDouble, kLastPart - kFirstPart + 1>;

LogTable reciprocalLogs() {
  LogTable table;
  for (int j = kFirstPart; j <= kLastPart; ++j) {
    if (j == kParts) continue;  // exactly 0
    table[static_cast<std::size_t>(j - kFirstPart)] = -logByNewton(static_cast<double>(j) / kParts);
  }
  return table;
}

// log(1 + r) for |r| < 0.006: the first terms in double-double, the others to their own digits.
DoubleDouble smallLog1p(DoubleDouble r) {
  constexpr DoubleDouble kThird{1.0 / 3, 1.850371707708594e-17};
  const double h = r.hi;
  const double far =
      -1.0 / 4 +
      h * (1.0 / 5 +
           h * (-1.0 / 6 + h * (1.0 / 7 + h * (-1.0 / 8 + h * (1.0 / 9 + h * (-0.1 + h / 11))))));
  const DoubleDouble square = r * r;
  return r + (scaled(square, -0.5) + square * (r * (kThird + h * far)));
}

}  // namespace

DoubleDouble exp(DoubleDouble value) {
  const double turns = std::nearbyint(value.hi / kLn2.hi);
  const DoubleDouble rest = value - kLn2 * turns;
  DoubleDouble grown = smallExpm1(scaled(rest, 1.0 / (1 << kHalvings)));
  for (int i = 0; i < kHalvings; ++i) grown = scaled(grown, 2) + grown * grown;
  return scaled(grown + 1.0, std::ldexp(1.0, static_cast<int>(turns)));
}

DoubleDouble log(DoubleDouble value) {
  // Where a power of two that belongs to it is no double any more.
  if (value.hi < kSmallForLog) return log(scaled(value, kLogLift)) - kLn2 * kLogLiftBits;
  static const LogTable kLogs = reciprocalLogs();
  int power = 0;
  double mantissa = std::frexp(value.hi, &power);
  if (mantissa < 0.7) {
    mantissa *= 2;
    --power;
  }
  const double part = std::floor(kParts / mantissa + 0.5);
  // (value / 2^power) (part / 128) = 1 + r, where the factors are short: r = 0 at 1.
  const double shrink = std::ldexp(1.0, -power) / kParts;
  const DoubleDouble r = scaled(value, shrink) * part - 1.0;
  const DoubleDouble whole =
      kLn2 * power + kLogs[static_cast<std::size_t>(part) - static_cast<std::size_t>(kFirstPart)];
  return whole + smallLog1p(r);
}

}  // namespace embedded::distributions
