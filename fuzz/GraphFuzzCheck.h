#ifndef EVALG_FUZZ_GRAPHFUZZCHECK_H
#define EVALG_FUZZ_GRAPHFUZZCHECK_H

// Runs one graph evaluation on fuzzed input and checks what every evaluation
// owes its caller beyond not crashing: a bounded number of points, the same
// points and markers whichever span flush the CPU runs, and every reference
// given back.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "FuzzInputC.h"
#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"
#include "evalg/CartesianRelationGraphEvalC.h"
#include "evalg/SpanEmissionC.h"

namespace fuzzcheck {

using namespace qelt;
using namespace qelt::mathapp;

inline void fail(char const *what, unsigned long a, unsigned long b) {
    std::fprintf(stderr, "fuzz check failed: %s (%lu vs %lu)\n", what, a, b);
    std::abort();
}

// The window comes first in every input: four limits and two sizes.
inline oss::PointerTC<ds::GraphicalDomainC> window(FuzzInputC &in) {
    double xMin = in.value(), xMax = in.value(), yMin = in.value(), yMax = in.value();
    unsigned short m = in.pixels(), n = in.pixels();
    return oss::PointerTC<ds::GraphicalDomainC>(new ds::GraphicalDomainC(xMin, xMax, yMin, yMax, m, n));
}

// Evaluates relation on domain; the result may hold at most
// perEdge * (M + N) + extra points. A walker emits at most two points per
// column or row it steps, but on a window only a few denormal ulps per pixel
// the rounded pixel step can be up to a third short, so it can step past the
// last column: bounds are stated as twice the two points per pixel.
inline void evaluate(evalg::CartesianRelationGraphEvalC &evaluator, rel::RelationC *relation,
                     oss::PointerTC<ds::GraphicalDomainC> const &domain, unsigned long perEdge,
                     unsigned long extra) {
    oss::PointerTC<rel::RelationC> held(relation);
    {
        esb::CartesianRelationServiceC service(held);
        oss::PointerTC<ds::GraphDataSetWinC> set = evaluator.evaluateGraph(service, domain);
        if (!set) fail("null result", 0, 0);
        if (set->getReferenceCount() != 1) fail("result shared", set->getReferenceCount(), 1);
        unsigned long bound = perEdge * (unsigned long)(domain->getM() + domain->getN()) + extra;
        if (set->getCount() > bound) fail("too many points", set->getCount(), bound);
        // Again on each slower flush path: points, markers and the spare
        // marker slots on either side must be the same to the bit.
        unsigned int n = 0;
        POINT const *points = set->getPixelPoints(n);
        unsigned char const *markers = set->getPixelMarkers(n);
        for (evalg::SpanEmissionC::PathE path : {evalg::SpanEmissionC::SCALAR, evalg::SpanEmissionC::SSE2}) {
            evalg::SpanEmissionC::forcePath(path);
            if (evalg::SpanEmissionC::path() == path) {
                oss::PointerTC<ds::GraphDataSetWinC> again = evaluator.evaluateGraph(service, domain);
                unsigned int m = 0;
                POINT const *p = again->getPixelPoints(m);
                unsigned char const *k = again->getPixelMarkers(m);
                if (m != n) fail("flush paths disagree on the count", m, n);
                if (n > 0 && std::memcmp(p, points, n * sizeof(POINT)) != 0) fail("flush paths disagree", path, 0);
                if (std::memcmp(k - 1, markers - 1, n + 2) != 0) fail("flush paths disagree on markers", path, 0);
            }
            evalg::SpanEmissionC::unforcePath();
        }
        // The set holds one reference to its window, the caller the other.
        if (domain->getReferenceCount() != 2) fail("window references", domain->getReferenceCount(), 2);
    }
    if (domain->getReferenceCount() != 1) fail("window reference kept", domain->getReferenceCount(), 1);
    // The service is gone; only this function's pointer holds the relation.
    if (held->getReferenceCount() != 1) fail("relation reference kept", held->getReferenceCount(), 1);
}

} // namespace fuzzcheck

#endif
