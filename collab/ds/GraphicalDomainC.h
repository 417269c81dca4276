#ifndef QELT_DS_GRAPHICALDOMAINC_H
#define QELT_DS_GRAPHICALDOMAINC_H

#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace ds {

// A graph window: the x and y ranges spanned by the outermost pixel centres,
// and its size in pixels (m columns, n rows).
class GraphicalDomainC : public oss::RefCountedBC {
public:
    GraphicalDomainC(double xMin, double xMax, double yMin, double yMax, unsigned short m,
                     unsigned short n);
    virtual ~GraphicalDomainC();

    // Finite limits in increasing order and 1..32767 pixels each way. The upper
    // bound keeps every row and column index, and every difference of two,
    // inside the signed 16-bit arithmetic of pixel emission.
    bool isValid() const;

    unsigned short getM() const { return m_; }
    unsigned short getN() const { return n_; }
    double getXMin() const { return xMin_; }
    double getXMax() const { return xMax_; }
    double getYMin() const { return yMin_; }
    double getYMax() const { return yMax_; }

    static constexpr unsigned short MAX_PIXELS = 32767;

private:
    double xMin_, xMax_, yMin_, yMax_;
    unsigned short m_, n_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif
