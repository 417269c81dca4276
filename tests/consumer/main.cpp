// Builds against the installed package only: proves that the exported
// configuration and the installed headers are complete.
#include <cstdio>

#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/QuadraticFunctionEvalC.h"

using namespace qelt;
using namespace qelt::mathapp;

int main() {
    oss::PointerTC<ds::GraphicalDomainC> window(new ds::GraphicalDomainC(-8, 8, -5, 5, 161, 101));
    esb::CartesianRelationServiceC service(new rel::QuadraticFunctionC(1, 0, -2));
    evalg::QuadraticFunctionEvalC evaluator;
    oss::PointerTC<ds::GraphDataSetWinC> graph = evaluator.evaluateGraph(service, window);
    std::printf("evalg consumer: %u points\n", graph->getCount());
    return graph->getCount() > 0 ? 0 : 1;
}
