#include "evalg/CartesianRelationTableEvalC.h"

#include <cstddef>
#include <new>

#include "collab/ds/FloatPoint2C.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

double const CartesianRelationTableEvalC::zero_value = 0.0;
// The NaN the processor's division produces, not a library constant. Read
// through a volatile so that it is divided when the library is loaded: a
// compiler folding 0/0 may pick other NaN bits than the processor does.
double const CartesianRelationTableEvalC::nan_value = [] {
    double volatile zero = zero_value;
    return zero / zero;
}();

CartesianRelationTableEvalC::CartesianRelationTableEvalC() {}
CartesianRelationTableEvalC::CartesianRelationTableEvalC(CartesianRelationTableEvalC const &) = default;
CartesianRelationTableEvalC &CartesianRelationTableEvalC::operator=(CartesianRelationTableEvalC const &) = default;
CartesianRelationTableEvalC::~CartesianRelationTableEvalC() {}

oss::PointerTC<ds::TableDataSet2C> CartesianRelationTableEvalC::evaluateTable2(
    esb::CartesianRelationServiceIC &service, std::vector<double> const &xs) {
    oss::PointerTC<ds::TableDataSet2C> table(new (std::nothrow) ds::TableDataSet2C());
    if (!table) return table;
    // One working vector, emptied before every query.
    std::vector<double> values;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        double x = xs[i];
        values.clear();
        service.getYValuesAt(x, values);
        double firstY = values.size() >= 1 ? values[0] : nan_value;
        double secondY = values.size() >= 2 ? values[1] : nan_value;
        // A failed allocation passes null, which the table ignores.
        table->addPoint(new (std::nothrow) ds::FloatPoint2C(x, firstY, secondY));
    }
    return table;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
