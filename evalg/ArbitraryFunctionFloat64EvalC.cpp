#include "evalg/ArbitraryFunctionFloat64EvalC.h"

#include <new>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

ArbitraryFunctionFloat64EvalC::ArbitraryFunctionFloat64EvalC() : ArbitraryFunctionFloat64EvalC(false) {}

ArbitraryFunctionFloat64EvalC::ArbitraryFunctionFloat64EvalC(bool sampling)
    : inner(new (std::nothrow) ArbitraryFunctionInnerEvalC()), pointSampling(sampling) {}

// A fresh inner evaluator rather than a shared or copied one: sharing would
// tie two evaluators' evaluations together, and a copy would carry the
// source's reference count into a new pointer and never be freed.
ArbitraryFunctionFloat64EvalC::ArbitraryFunctionFloat64EvalC(ArbitraryFunctionFloat64EvalC const &other)
    : CartesianRelationGraphEvalC(other), inner(new (std::nothrow) ArbitraryFunctionInnerEvalC()),
      pointSampling(other.pointSampling) {}

// Keeps its own inner evaluator; only the domain state and the flag are taken.
ArbitraryFunctionFloat64EvalC &ArbitraryFunctionFloat64EvalC::operator=(ArbitraryFunctionFloat64EvalC const &other) {
    CartesianRelationGraphEvalC::operator=(other);
    pointSampling = other.pointSampling;
    return *this;
}

ArbitraryFunctionFloat64EvalC::~ArbitraryFunctionFloat64EvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ArbitraryFunctionFloat64EvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    if (!inner) {
        // The inner evaluator could not be allocated: an empty set, as for
        // any evaluation that cannot proceed.
        bool domainSet = false;
        return beginEvaluation(domain, 1000, 0, domainSet);
    }
    return inner->evaluateGraph(service, domain, pointSampling);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
