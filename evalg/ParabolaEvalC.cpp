#include "evalg/ParabolaEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

ParabolaEvalC::ParabolaEvalC() {}
ParabolaEvalC::ParabolaEvalC(ParabolaEvalC const &) = default;
ParabolaEvalC &ParabolaEvalC::operator=(ParabolaEvalC const &) = default;
ParabolaEvalC::~ParabolaEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> ParabolaEvalC::evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                                  oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateWith<rel::ParabolaC>(service, domain, 1001, 500,
                                        [this](rel::ParabolaC *relation, SetP set) { calculate(relation, set); });
}

void ParabolaEvalC::calculate(rel::ParabolaC *relation, SetP set) {
    double a = relation->get_a();
    double h = relation->get_h();
    double k = relation->get_k();
    // The degenerate parabola is the horizontal line y = k, as for the
    // vertical-axis evaluators, although this curve is x as a function of y.
    if (a == 0) {
        calculateConstant(k, set);
        return;
    }
    double c = 1.0 / (a * 4.0);
    // Rows are walked: the vertex's walked coordinate is k, its value h.
    drawFromVertex(
        rowWalk(), c, k, h, [relation](double y) { return relation->f(y); },
        [&](double y0, double x0, double d2) { calculateBottomHalf(y0, x0, d2, c, k); },
        [&](double xFar) { calculateVertex(xFar, c, k, h); },
        [&](double y0, double x0, double d2) { calculateTopHalf(y0, x0, d2, c, k); });
}

void ParabolaEvalC::calculateBottomHalf(double y, double x, double d2, double c, double k) {
    walkHalf(rowWalk(), FRONT, y, x, d2, c, k);
}

void ParabolaEvalC::calculateTopHalf(double y, double x, double d2, double c, double k) {
    walkHalf(rowWalk(), BACK, y, x, d2, c, k);
}

void ParabolaEvalC::calculateVertex(double xFar, double c, double k, double h) {
    emitVertexRun(rowWalk(), xFar, c, k, h);
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
