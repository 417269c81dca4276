// The table and sketch evaluators: a table has exactly one row per x; a
// sketch maps one point to one pixel; a pixel path becomes at most one point
// per pixel, marked only with the three known marks; nothing leaks.
#include <cstdlib>

#include "GraphFuzzCheck.h"
#include "collab/ds/FloatDataSetC.h"
#include "collab/rel/CircleC.h"
#include "collab/rel/SketchC.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "evalg/SketchEvalC.h"

using namespace qelt;
using namespace qelt::mathapp;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInputC in(data, size);
    auto domain = fuzzcheck::window(in);

    std::vector<double> xs(in.byte());
    for (double &x : xs) x = in.value();
    esb::CartesianRelationServiceC circle(new rel::CircleC(in.value(), in.value(), in.value()));
    evalg::CartesianRelationTableEvalC table;
    auto rows = table.evaluateTable2(circle, xs);
    if (!rows || rows->getPoints().size() != xs.size()) fuzzcheck::fail("table rows", xs.size(), 0);

    oss::PointerTC<ds::FloatDataSetC> points(new ds::FloatDataSetC);
    unsigned n = in.byte();
    for (unsigned i = 0; i < n; ++i) points->addPoint(new ds::FloatPointC(in.value(), in.value(), 0));
    oss::PointerTC<rel::SketchC> sketch(new rel::SketchC(points));
    evalg::SketchEvalC sketcher;
    auto pixels = sketcher.evaluatePixels(*sketch, domain);
    if (!pixels) fuzzcheck::fail("null pixels", 0, 0);
    if (domain->isValid() && pixels->getCount() != n) fuzzcheck::fail("one pixel per point", pixels->getCount(), n);

    // A drawn path of arbitrary pixels back into a sketch.
    oss::PointerTC<ds::GraphDataSetWinC> path(new ds::GraphDataSetWinC(0, 0, domain));
    unsigned m = in.byte();
    for (unsigned i = 0; i < m; ++i) {
        long c = int32_t(uint32_t(in.bits())), r = int32_t(uint32_t(in.bits()));
        path->appendPixelPoint(c, r, 0);
    }
    rel::SketchC *back = sketcher.createSketch(path);
    if (back) {
        oss::PointerTC<rel::SketchC> owned(back);
        auto const &values = back->getValues();
        if (values.size() > m) fuzzcheck::fail("points from pixels", values.size(), m);
        for (ds::FloatPointC const *p : values)
            if (p->getMarks() & ~0x7u) fuzzcheck::fail("unknown mark", p->getMarks(), 0);
    } else if (domain->isValid()) {
        fuzzcheck::fail("no sketch for a valid window", 0, 0);
    }
    return 0;
}
