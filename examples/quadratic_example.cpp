// Draws y = 0.25(x - 1)^2 - 4 on a 161x101 window over [-8, 8] x [-5, 5] and
// prints every pixel point with its marker bits.
#include <cstdio>

#include "collab/ds/PixelPointC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/QuadraticFunctionEvalC.h"

using namespace qelt;
using namespace qelt::mathapp;

int main() {
    oss::PointerTC<ds::GraphicalDomainC> window(new ds::GraphicalDomainC(-8, 8, -5, 5, 161, 101));
    esb::CartesianRelationServiceC service(new rel::QuadraticFunctionC(0.25, 1, -4));
    evalg::QuadraticFunctionEvalC evaluator;
    oss::PointerTC<ds::GraphDataSetWinC> graph = evaluator.evaluateGraph(service, window);

    unsigned int count = 0;
    POINT const *points = graph->getPixelPoints(count);
    unsigned char const *markers = graph->getPixelMarkers(count);
    std::printf("y = 0.25(x - 1)^2 - 4 on [-8, 8] x [-5, 5], 161x101 pixels: %u points\n", count);
    std::printf("column  row  markers\n");
    for (unsigned int i = 0; i < count; ++i) {
        std::printf("%6d %4d  %s%s\n", points[i].x, points[i].y,
                    (markers[i] & ds::PixelPointC::FIRST_VISIBLE) ? "FIRST_VISIBLE " : "",
                    (markers[i] & ds::PixelPointC::LAST_VISIBLE) ? "LAST_VISIBLE" : "");
    }
    return 0;
}
