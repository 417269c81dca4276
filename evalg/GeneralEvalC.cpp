#include "evalg/GeneralEvalC.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "collab/oss/IntegerConversionC.h"
#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

GeneralEvalC::GeneralEvalC(double s) : subdivisions(s) {}
GeneralEvalC::GeneralEvalC() : GeneralEvalC(100.0) {}
GeneralEvalC::GeneralEvalC(GeneralEvalC const &) = default;
GeneralEvalC &GeneralEvalC::operator=(GeneralEvalC const &) = default;
GeneralEvalC::~GeneralEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> GeneralEvalC::evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                                 oss::PointerTC<ds::GraphicalDomainC> domain) {
    // No cast: the relation is only ever asked for its y values.
    bool domainSet = false;
    SetP set = beginEvaluation(domain, 1000, 0, domainSet);
    if (domainSet && set) {
        bindSpans(set.get());
        calculate(service);
        unbindSpans();
    }
    return set;
}

void GeneralEvalC::calculate(esb::CartesianRelationServiceIC &service) {
    std::vector<double> previous;
    std::vector<double> current;
    double x = leftEdge;
    service.getYValuesAt(x, previous);
    if (!(x < xMax)) return;
    do {
        double xNext = x + xStep;
        // A one-column window has an infinite xStep, so xNext is NaN; a window
        // a few ulps wide leaves x where it was. Either walk would never end.
        if (!(xNext > x)) return;
        // Running sum: x is never recomputed from the column index.
        x = xNext;
        current.clear();
        service.getYValuesAt(x, current);
        std::size_t p = previous.size();
        std::size_t q = current.size();
        if ((p > q ? p - q : q - p) <= 1)
            emitBranches(previous, current, x);
        else
            // Two or more branches begin or end here: sample the column again
            // from its left edge, recomputed rather than remembered.
            refine(service, x - xStep);
        previous.swap(current);
    } while (x < xMax);
}

void GeneralEvalC::refine(esb::CartesianRelationServiceIC &service, double xStart) {
    double h = xStep / subdivisions;
    double x = xStart;
    std::vector<double> previous;
    std::vector<double> current;
    // The left edge is asked again although calculate had its values.
    service.getYValuesAt(x, previous);
    if (!(0.0 < subdivisions)) return;
    // ceil(subdivisions) fine steps, as a counter stepped until it reaches
    // subdivisions would take; 2.5 takes three, so the last fine sample lies
    // beyond the column. Capped at MAX_FINE_STEPS so that a huge or infinite
    // value still ends (a 16-bit counter would wrap above 65535 and never stop).
    double wanted = std::ceil(subdivisions);
    uint32_t fineSteps = wanted < double(MAX_FINE_STEPS) ? oss::IntegerConversionC::toUInt32(wanted)
                                                          : uint32_t(MAX_FINE_STEPS);
    for (uint32_t step = 0; step < fineSteps; ++step) {
        x = x + h;
        current.clear();
        service.getYValuesAt(x, current);
        // Placed like calculate's runs, half a column left of the fine
        // sample: the first half of the fine steps lands in the column to the
        // left (column 65535 for column 0). Kept so.
        emitBranches(previous, current, x);
        previous.swap(current);
    }
}

void GeneralEvalC::emitBranches(std::vector<double> const &previous, std::vector<double> const &current,
                                double x) {
    std::size_t p = previous.size();
    std::size_t q = current.size();
    std::size_t m = p > q ? p : q;
    for (std::size_t i = 0; i < m; ++i) {
        // A branch present at one sample only is a run of one height.
        double y1 = i < p ? previous[i] : current[i];
        double y2 = i < q ? current[i] : previous[i];
        pushSpan(COLUMNS, BACK, x - xStep * 0.5, y1, y2);
    }
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
