#include "evalg/EllipseEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

EllipseEvalC::EllipseEvalC() {}
EllipseEvalC::EllipseEvalC(EllipseEvalC const &) = default;
EllipseEvalC &EllipseEvalC::operator=(EllipseEvalC const &) = default;
EllipseEvalC::~EllipseEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> EllipseEvalC::evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                                 oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::EllipseC>(service, domain, 1004, 0,
                                       [this](rel::EllipseC *relation, SetP set) { calculate(relation, set); });
}

void EllipseEvalC::calculate(rel::EllipseC *relation, SetP set) {
    plot(relation->get_a(), relation->get_b(), relation->get_h(), relation->get_k(), xStep, yStep, set);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
