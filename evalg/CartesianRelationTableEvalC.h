#ifndef QELT_EVALG_CARTESIANRELATIONTABLEEVALC_H
#define QELT_EVALG_CARTESIANRELATIONTABLEEVALC_H

#include <vector>

#include "collab/ds/TableDataSet2C.h"
#include "collab/esb/CartesianRelationServiceIC.h"
#include "collab/oss/PointerTC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// A table of values: one row (x, first y, second y) per x asked for, in
// mathematical units only. A missing y is nan_value; a relation with more than
// two values at x shows its first two.
class CartesianRelationTableEvalC : public oss::RefCountedBC {
public:
    // zero_value is +0.0; nan_value is zero_value / zero_value, worked out
    // when the library is loaded.
    static const double nan_value;
    static const double zero_value;

    CartesianRelationTableEvalC();
    CartesianRelationTableEvalC(CartesianRelationTableEvalC const &other);
    CartesianRelationTableEvalC &operator=(CartesianRelationTableEvalC const &other);
    virtual ~CartesianRelationTableEvalC();

    // Exactly one row per entry of xs, in order; null only when the table
    // cannot be allocated.
    virtual oss::PointerTC<ds::TableDataSet2C> evaluateTable2(esb::CartesianRelationServiceIC &service,
                                                             std::vector<double> const &xs);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
