#include "evalg/HyperbolaEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

HyperbolaEvalC::HyperbolaEvalC() {}
HyperbolaEvalC::HyperbolaEvalC(HyperbolaEvalC const &) = default;
HyperbolaEvalC &HyperbolaEvalC::operator=(HyperbolaEvalC const &) = default;
HyperbolaEvalC::~HyperbolaEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> HyperbolaEvalC::evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                                   oss::PointerTC<ds::GraphicalDomainC> domain) {
    stepCount = 0;
    return evaluateWith<rel::HyperbolaC>(service, domain, 1000, 0,
                                         [this](rel::HyperbolaC *relation, SetP set) { calculate(relation, set); });
}

void HyperbolaEvalC::calculate(rel::HyperbolaC *relation, SetP set) {
    // Rows are walked (w = y) and spans run along x.
    BranchFrame frame = {relation->get_k(), relation->get_h(), relation->get_b(), relation->get_a(),
                         bottomEdge,        yStep,             int(pixelRows),    leftEdge,
                         rightEdge,         xStep};
    plotBranches(frame, ROWS, set);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
