#ifndef EVALG_TESTS_PROBEEVALC_H
#define EVALG_TESTS_PROBEEVALC_H

// An evaluator that opens the frame's protected parts to the tests and records
// what the driver hands to its calculation.
#include "collab/rel/LinearFunction1C.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace evalgtest {

class ProbeEvalC : public qelt::mathapp::evalg::CartesianRelationGraphEvalHelperC {
public:
    using GraphDomainEvalC::setDomain;
    using GraphDomainEvalC::round_to_left;
    using GraphDomainEvalC::round_to_right;
    using GraphDomainEvalC::round_to_bottom;
    using GraphDomainEvalC::round_to_top;
    using GraphDomainEvalC::round_to_hcentre;
    using GraphDomainEvalC::round_to_vcentre;
    using GraphDomainEvalC::leftEdge;
    using GraphDomainEvalC::rightEdge;
    using GraphDomainEvalC::bottomEdge;
    using GraphDomainEvalC::topEdge;
    using GraphDomainEvalC::xStep;
    using GraphDomainEvalC::yStep;
    using GraphDomainEvalC::xHalfStep;
    using GraphDomainEvalC::yHalfStep;
    using GraphDomainEvalC::pixelColumns;
    using GraphDomainEvalC::pixelRows;
    using CartesianRelationGraphEvalHelperC::appendPixelPoint;
    using CartesianRelationGraphEvalHelperC::prependPixelPoint;
    using CartesianRelationGraphEvalHelperC::appendPixelPoints;
    using CartesianRelationGraphEvalHelperC::prependPixelPoints;
    using CartesianRelationGraphEvalHelperC::appendPixelPointsXYSwapped;
    using CartesianRelationGraphEvalHelperC::prependPixelPointsXYSwapped;
    using CartesianRelationGraphEvalHelperC::calculateConstant;
    using CartesianRelationGraphEvalHelperC::addStartMarker;
    using CartesianRelationGraphEvalHelperC::addEndMarker;

    // Casts to a line; the calculation records the call and the set's count.
    qelt::oss::PointerTC<qelt::mathapp::ds::GraphDataSetWinC> evaluateGraph(
        qelt::mathapp::esb::CartesianRelationServiceIC &service,
        qelt::oss::PointerTC<qelt::mathapp::ds::GraphicalDomainC> domain) override {
        return evaluateWith<qelt::mathapp::rel::LinearFunction1C>(
            service, domain, 7, 3, [this](qelt::mathapp::rel::LinearFunction1C *relation, SetP set) {
                ++calculations;
                lastRelation = relation;
                setCountDuringCalculation = set->getReferenceCount();
            });
    }

    int calculations = 0;
    qelt::mathapp::rel::LinearFunction1C *lastRelation = nullptr;
    unsigned long setCountDuringCalculation = 0;
};

} // namespace evalgtest

#endif
