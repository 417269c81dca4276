#ifndef QELT_EVALG_CARTESIANRELATIONGRAPHEVALHELPERC_H
#define QELT_EVALG_CARTESIANRELATIONGRAPHEVALHELPERC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/oss/PointerTC.h"
#include "evalg/CartesianRelationGraphEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Pixel emission: turns a span of a curve in one column (or, swapped, in one
// row) into the span's end pixels, clipped to the window, and sets the
// visibility markers. Points are (column, screen row from the top).
class CartesianRelationGraphEvalHelperC : public CartesianRelationGraphEvalC {
public:
    CartesianRelationGraphEvalHelperC();
    CartesianRelationGraphEvalHelperC(CartesianRelationGraphEvalHelperC const &other);
    CartesianRelationGraphEvalHelperC &operator=(CartesianRelationGraphEvalHelperC const &other);
    ~CartesianRelationGraphEvalHelperC();

protected:
    using SetP = oss::PointerTC<ds::GraphDataSetWinC>;

    // The horizontal line y across every column, one point per column.
    void calculateConstant(double y, SetP set);

    void appendPixelPoint(double x, double y, SetP set);
    void prependPixelPoint(double x, double y, SetP set);
    // The column of x, from the row of y1 to the row of y2.
    void appendPixelPoints(double x, double y1, double y2, SetP set);
    void prependPixelPoints(double x, double y1, double y2, SetP set);
    // The row of y, from the column of x1 to the column of x2.
    void appendPixelPointsXYSwapped(double y, double x1, double x2, SetP set);
    void prependPixelPointsXYSwapped(double y, double x1, double x2, SetP set);

    static void addStartMarker(unsigned char *marker);
    static void addEndMarker(unsigned char *marker);

    // Marker slots of a set, fetched afresh: index -1 .. count are writable, so
    // lastMarker of an empty set is the spare slot in front, and nextMarker is
    // the slot that the next appended point takes.
    static unsigned char *markerSlot(ds::GraphDataSetWinC &set, long index);
    static unsigned char *firstMarker(SetP const &set) { return markerSlot(*set, 0); }
    static unsigned char *lastMarker(SetP const &set) { return markerSlot(*set, long(set->getCount()) - 1); }
    static unsigned char *nextMarker(SetP const &set) { return markerSlot(*set, long(set->getCount())); }

private:
    // The set by reference: the public forms hold the caller's reference for
    // the call, so the span needs no further one.
    void addPixelPoints(double x, double y1, double y2, ds::GraphDataSetWinC *set, bool prepend);
    void addPixelPointsXYSwapped(double y, double x1, double x2, ds::GraphDataSetWinC *set, bool prepend);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
