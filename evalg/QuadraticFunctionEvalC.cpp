#include "evalg/QuadraticFunctionEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

QuadraticFunctionEvalC::QuadraticFunctionEvalC() {}
QuadraticFunctionEvalC::QuadraticFunctionEvalC(QuadraticFunctionEvalC const &) = default;
QuadraticFunctionEvalC &QuadraticFunctionEvalC::operator=(QuadraticFunctionEvalC const &) = default;
QuadraticFunctionEvalC::~QuadraticFunctionEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> QuadraticFunctionEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::QuadraticFunctionC>(
        service, domain, 1001, 500,
        [this](rel::QuadraticFunctionC *relation, SetP set) { calculate(relation, set); });
}

void QuadraticFunctionEvalC::calculate(rel::QuadraticFunctionC *relation, SetP set) {
    double a = relation->get_a();
    double h = relation->get_h();
    double k = relation->get_k();
    if (a == 0) {
        calculateConstant(k, set);
        return;
    }
    calculateFromVertex(relation, a, h, k);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
