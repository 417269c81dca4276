#include "evalg/HyperbolaVertEvalC.h"

#include "evalg/GraphDomainServiceNames.h"
#include "evalg/HyperbolaEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

HyperbolaVertEvalC::HyperbolaVertEvalC() : stepCount(0) {}
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
    HyperbolaEvalC::BranchFrame frame = {relation->get_h(), relation->get_k(), relation->get_a(),
                                         relation->get_b(), leftEdge,          xStep,
                                         int(pixelColumns), bottomEdge,        topEdge,
                                         yStep};
    stepCount = HyperbolaEvalC::plotBranches(frame, *this, &HyperbolaVertEvalC::appendPixelPoints,
                                             &HyperbolaVertEvalC::prependPixelPoints, set);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
