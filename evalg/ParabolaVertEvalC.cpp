#include "evalg/ParabolaVertEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

ParabolaVertEvalC::ParabolaVertEvalC() {}
ParabolaVertEvalC::ParabolaVertEvalC(ParabolaVertEvalC const &) = default;
ParabolaVertEvalC &ParabolaVertEvalC::operator=(ParabolaVertEvalC const &) = default;
ParabolaVertEvalC::~ParabolaVertEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ParabolaVertEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::ParabolaVertC>(
        service, domain, 1001, 500, [this](rel::ParabolaVertC *relation, SetP set) { calculate(relation, set); });
}

void ParabolaVertEvalC::calculate(rel::ParabolaVertC *relation, SetP set) {
    double a = relation->get_a();
    double h = relation->get_h();
    double k = relation->get_k();
    // Tested on the relation's a, before c would become infinite.
    if (a == 0) {
        calculateConstant(k, set);
        return;
    }
    // An infinite a gives c == 0: neither sign test then holds, so the halves
    // run flat along k and the vertex run is not drawn.
    double c = 1.0 / (a * 4.0);
    calculateFromVertex(relation, c, h, k);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
