#include "evalg/CircleEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

CircleEvalC::CircleEvalC() {}
CircleEvalC::CircleEvalC(CircleEvalC const &) = default;
CircleEvalC &CircleEvalC::operator=(CircleEvalC const &) = default;
CircleEvalC::~CircleEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> CircleEvalC::evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                                oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::CircleC>(service, domain, 1003, 0,
                                      [this](rel::CircleC *relation, SetP set) { calculate(relation, set); });
}

void CircleEvalC::calculate(rel::CircleC *relation, SetP set) {
    double r = relation->get_r();
    plot(r, r, relation->get_h(), relation->get_k(), xStep, yStep, set);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
