#include "embedded/distributions/StirlingError.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace embedded::distributions {

namespace {

constexpr double kSeriesFrom = 16;

// At 1/2, 1, 3/2, ..., 16.
constexpr std::array<double, 32> kHalves{
    0.153426409720027345,   0.0810614667953272582,  0.0548141210519176539,  0.0413406959554092941,
    0.0331628735199362875,  0.0276779256849983391,  0.023746163656297496,   0.0207906721037650931,
    0.0184884505326731852,  0.0166446911898211922,  0.0151349732219173789,  0.013876128823070748,
    0.0128104652429202269,  0.0118967099458917701,  0.0111045597582069173,  0.0104112652619720965,
    0.0097994161261588033,  0.00925546218271273292, 0.00876870013413938546, 0.00833056343336287126,
    0.00793411456431402055, 0.00757367548795184079, 0.00724455430132038318, 0.00694284010720952987,
    0.00666524703270768244, 0.00640899418800420707, 0.00617171226303945765, 0.00595137011275884774,
    0.00574621651301011568, 0.00555473355196280137, 0.00537559903292683449, 0.00520765591960964044};

// Stirling's series with seven terms; the first one left out is below 2e-19 at 16.
double stirlingSeries(double z) {
  constexpr std::array<double, 7> kCoefficients{
      1.0 / 12, -1.0 / 360, 1.0 / 1260, -1.0 / 1680, 1.0 / 1188, -691.0 / 360360., 1.0 / 156};
  const double square = 1 / (z * z);
  double sum = 0;
  for (std::size_t i = kCoefficients.size(); i-- > 0;) sum = kCoefficients[i] + square * sum;
  return sum / z;
}

// Gamma(z) = Gamma(top) / (z (z + 1) ... (top - 1)) with top = z + whole >= 16.
DoubleDouble stirlingByRecurrence(double z) {
  const double steps = std::ceil(kSeriesFrom - z);
  const DoubleDouble top = DoubleDouble(z) + steps;
  DoubleDouble product = z;
  for (double i = 1; i < steps; ++i) product = product * twoSum(z, i);
  const DoubleDouble leading =
      (top - 0.5) * log(top) - (DoubleDouble(z) - 0.5) * log(z) - log(product) - steps;
  return leading + stirlingSeries(top.hi);
}

}  // namespace

DoubleDouble stirlingError(double z) {
  if (z >= kSeriesFrom) return stirlingSeries(z);
  const double halves = 2 * z;
  if (halves >= 1 && halves == std::floor(halves)) {
    return kHalves[static_cast<std::size_t>(halves) - 1];
  }
  return stirlingByRecurrence(z);
}

}  // namespace embedded::distributions
