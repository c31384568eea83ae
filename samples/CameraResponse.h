// The known response of the imaginary camera: what a merge or a recovery of the series must find again.
//
//     value(H) = 255 x h(min(H, Hmax)) / h(Hmax),    h(H) = H^n / (H^n + k^n),    Hmax = 40
//
// h is the Naka-Rushton (or Hill) function; over log exposure it is the logistic curve: a toe, a straight
// part and a shoulder, like the density of a negative (C. Mees and T. James, "The Theory of the Photographic
// Process", 1966). K. Naka and W. Rushton measured it on retinas (J. Physiol. 185, 1966); E. Reinhard and
// K. Devlin use it for tone reproduction (IEEE TVCG 11(1), 2005). It suits as a known truth because it has an
// exact inverse and rises strictly between black and the full sensor. The slope n and the middle k differ a
// little between the channels, as the layers of a film do, so that their curves can't be mistaken for one.
#pragma once

#include <array>

namespace LS::Samples {

enum class Channel { Red, Green, Blue };

inline constexpr std::array<Channel, 3> kChannels{Channel::Red, Channel::Green, Channel::Blue};

/// Exposure that fills the sensor; everything above it is clipped.
inline constexpr double kFullExposure = 40.0;

/// @param exposure  0 or more; an exposure of about 1 gives a middle grey
/// @return 0..255, not rounded
double Response(Channel channel, double exposure);

/// The exposure that gives a value. @param value  0..255, not necessarily whole
double InverseResponse(Channel channel, double value);

/// The exposures of the 8-bit values. Those of 0 and 255 stand for a range without an end; the entries are
/// the exposures of 0.25 and 254.75, the middles of what rounds to them.
std::array<double, 256> TrueCurve(Channel channel);

} // namespace LS::Samples
