#ifndef QELT_MATH_TRIGREDUCTIONC_H
#define QELT_MATH_TRIGREDUCTIONC_H

namespace qelt {
namespace math {

// Reduction of a double argument by pi/2, exact for every finite double.
//
// x is the exact real number a double stands for; x * 2/pi is computed with
// enough bits of 2/pi (1280) that its fraction comes out to about 2^-120
// even for x near 1e308, where a double division by pi would keep none of
// it. The closest a double comes to a multiple of pi/2 is about 2^-62, so
// the reduced argument keeps all its significant bits.
//
// Below moderateLimit a cheaper reduction in doubles alone (pi/2 in four
// parts) gives the same quadrant and the same error bound.
class TrigReductionC {
public:
    static double const moderateLimit;

    // x = (quadrant + t) * pi/2 + a multiple of 2pi, with quadrant in 0..3 and
    // t in [-1/2, 1/2]; reduced is t * pi/2 (|reduced| <= pi/4), within
    // |reduced| * 2^-51 of the true value. x must be finite.
    static void reduce(double x, int &quadrant, double &reduced);

    // The two ways reduce takes, on their own (for checking one against the
    // other): the wide-product reduction for any finite x, and the one in
    // doubles for |x| < moderateLimit. Where t is within the error bound of
    // +-1/2 the latter may take the neighbouring quadrant, with reduced
    // then just beyond the other end of [-pi/4, pi/4].
    static void reduceExact(double x, int &quadrant, double &reduced);
    static void reduceModerate(double x, int &quadrant, double &reduced);
};

} // namespace math
} // namespace qelt

#endif
