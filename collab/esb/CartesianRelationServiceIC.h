#ifndef QELT_ESB_CARTESIANRELATIONSERVICEIC_H
#define QELT_ESB_CARTESIANRELATIONSERVICEIC_H

#include <vector>

namespace qelt {
namespace mathapp {
namespace esb {

// How an evaluator reaches a relation: a cast by castable identifier, and the
// relation's y values at x.
class CartesianRelationServiceIC {
public:
    virtual ~CartesianRelationServiceIC() {}
    // The relation seen as the class named by id, or null when it is not one.
    // No reference is taken on the result.
    virtual void *lookUpBase(unsigned short const *id) const = 0;
    // Appends every y value of the relation at x, in a stable branch order.
    virtual bool getYValuesAt(double x, std::vector<double> &values) = 0;
};

} // namespace esb
} // namespace mathapp
} // namespace qelt

#endif
