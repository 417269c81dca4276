#ifndef QELT_ESB_CARTESIANRELATIONSERVICEC_H
#define QELT_ESB_CARTESIANRELATIONSERVICEC_H

#include "collab/esb/CartesianRelationServiceIC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace esb {

// The service over one relation: both operations forward to it.
class CartesianRelationServiceC : public CartesianRelationServiceIC {
public:
    explicit CartesianRelationServiceC(oss::PointerTC<rel::RelationC> relation);
    ~CartesianRelationServiceC() override;

    void *lookUpBase(unsigned short const *id) const override;
    bool getYValuesAt(double x, std::vector<double> &values) override;

    oss::PointerTC<rel::RelationC> getRelation() const { return relation_; }

private:
    oss::PointerTC<rel::RelationC> relation_;
};

} // namespace esb
} // namespace mathapp
} // namespace qelt

#endif
