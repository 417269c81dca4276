#ifndef QELT_DS_PIXELPOINTC_H
#define QELT_DS_PIXELPOINTC_H

namespace qelt {
namespace mathapp {
namespace ds {

// Marker bits of a pixel point: where a visible stretch of a curve starts and
// ends. A display joins consecutive points except across these.
class PixelPointC {
public:
    static constexpr unsigned char FIRST_VISIBLE = 0x01;
    static constexpr unsigned char LAST_VISIBLE = 0x02;
    // A pixel that an evaluator of typed expressions could neither exclude
    // nor prove the curve meets (an overflow, an enclosure that would not
    // tighten): drawn, but a display shows it in a lighter shade.
    static constexpr unsigned char UNDECIDED = 0x04;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif
