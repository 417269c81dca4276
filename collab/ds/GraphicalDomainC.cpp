#include "collab/ds/GraphicalDomainC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace ds {

GraphicalDomainC::GraphicalDomainC(double xMin, double xMax, double yMin, double yMax,
                                   unsigned short m, unsigned short n)
    : xMin_(xMin), xMax_(xMax), yMin_(yMin), yMax_(yMax), m_(m), n_(n) {}

GraphicalDomainC::~GraphicalDomainC() {}

bool GraphicalDomainC::isValid() const {
    return std::isfinite(xMin_) && std::isfinite(xMax_) && std::isfinite(yMin_) &&
           std::isfinite(yMax_) && xMin_ < xMax_ && yMin_ < yMax_ && m_ >= 1 && m_ <= MAX_PIXELS &&
           n_ >= 1 && n_ <= MAX_PIXELS;
}

} // namespace ds
} // namespace mathapp
} // namespace qelt
