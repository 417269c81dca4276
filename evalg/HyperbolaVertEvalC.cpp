#include "evalg/HyperbolaVertEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

HyperbolaVertEvalC::HyperbolaVertEvalC() {}
HyperbolaVertEvalC::HyperbolaVertEvalC(HyperbolaVertEvalC const &) = default;
HyperbolaVertEvalC &HyperbolaVertEvalC::operator=(HyperbolaVertEvalC const &) = default;
HyperbolaVertEvalC::~HyperbolaVertEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> HyperbolaVertEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    stepCount = 0;
    return evaluateWith<rel::HyperbolaVertC>(
        service, domain, 1000, 0, [this](rel::HyperbolaVertC *relation, SetP set) { calculate(relation, set); });
}

void HyperbolaVertEvalC::calculate(rel::HyperbolaVertC *relation, SetP set) {
    // Columns are walked (w = x) and spans run along y.
    BranchFrame frame = {relation->get_h(), relation->get_k(), relation->get_a(),
                         relation->get_b(), leftEdge,          xStep,
                         int(pixelColumns), bottomEdge,        topEdge,
                         yStep};
    plotBranches(frame, COLUMNS, set);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
