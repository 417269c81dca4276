#include "bench/baseline/PreviousArbitraryEvalC.h"

#include <cmath>
#include <limits>
#include <new>

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

using math::IntervalC;
using math::algexpr::CompiledExpressionC;

PreviousArbitraryEvalC::PreviousArbitraryEvalC() {}
PreviousArbitraryEvalC::PreviousArbitraryEvalC(PreviousArbitraryEvalC const &) = default;
PreviousArbitraryEvalC &PreviousArbitraryEvalC::operator=(PreviousArbitraryEvalC const &) = default;
PreviousArbitraryEvalC::~PreviousArbitraryEvalC() {}

oss::PointerTC<ds::GraphDataSetWinC> PreviousArbitraryEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) {
    return evaluateGraph(service, domain, false);
}

oss::PointerTC<ds::GraphDataSetWinC> PreviousArbitraryEvalC::evaluateGraph(
    esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain, bool pointSampling) {
    return evaluateWith<rel::ArbitraryFunctionC>(
        service, domain, 1000, 0,
        [this, pointSampling](rel::ArbitraryFunctionC *relation, SetP set) { calculate(relation, set, pointSampling); });
}

void PreviousArbitraryEvalC::calculate(rel::ArbitraryFunctionC *relation, SetP set, bool pointSampling) {
    oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression = relation->getExpression();
    if (!expression) return;
    // A one-pixel window has an infinite step: no column to walk.
    if (!(xStep > 0 && std::isfinite(xStep) && yStep > 0 && std::isfinite(yStep))) return;
    try {
        CompiledExpressionC program(expression->getNode());
        unsigned int columns = pixelColumns;
        // Each edge from its index, not by a running sum: the walk's columns
        // then meet exactly, and the edges never drift.
        std::vector<double> edges(columns + 1);
        for (unsigned int c = 0; c <= columns; ++c) edges[c] = leftEdge + xStep * double(c);
        std::vector<double> values(columns + 1);
        program.evaluate(edges.data(), values.data(), columns + 1);
        WalkS walk{&program, set, RunS{false, 0, 0, 0, 0}, false, {}, 0, 0};
        if (pointSampling)
            calculateSampled(walk, values);
        else
            calculateEnclosed(walk, edges, values);
        end_stretch(walk);
    } catch (std::bad_alloc const &) {
        // Out of memory: the points drawn so far are the result.
    }
}

void PreviousArbitraryEvalC::calculateSampled(WalkS &walk, std::vector<double> const &values) {
    for (unsigned int c = 0; c < pixelColumns; ++c) {
        double fa = values[c];
        double fb = values[c + 1];
        bool hasA = std::isfinite(fa);
        bool hasB = std::isfinite(fb);
        if (hasA && hasB) {
            add_to_run(walk.run, fa < fb ? fa : fb, fa < fb ? fb : fa, fa, fb);
            emit_run(walk, c);
            if (!inside(fb)) end_stretch(walk);
            continue;
        }
        // A value at one edge only: a point there, and a break toward the
        // edge without one.
        if (hasA) {
            add_sample(walk.run, fa);
            emit_run(walk, c);
        }
        end_stretch(walk);
        if (hasB) {
            add_sample(walk.run, fb);
            emit_run(walk, c);
        }
    }
}

void PreviousArbitraryEvalC::calculateEnclosed(WalkS &walk, std::vector<double> const &edges,
                                                    std::vector<double> const &values) {
    for (unsigned int c = 0; c < pixelColumns; ++c) {
        walk_column(walk, c, PieceS{edges[c], edges[c + 1], values[c], values[c + 1], 0});
        bool continues = walk.run.any && inside(values[c + 1]);
        emit_run(walk, c);
        // Outside the window (or without a value) at the column's right edge:
        // the visible stretch cannot go on into the next column.
        if (!continues) end_stretch(walk);
    }
}

void PreviousArbitraryEvalC::walk_column(WalkS &walk, unsigned int column, PieceS whole) {
    CompiledExpressionC const &program = *walk.program;
    std::vector<PieceS> &pieces = walk.pieces;
    pieces.clear();
    pieces.push_back(whole);
    unsee(walk);
    see(walk, whole.fa);
    see(walk, whole.fb);
    int budget = EVALUATION_BUDGET;
    // Depth first, left half on top: the pieces come off in x order. Every
    // turn pops one piece and pushes two only while the budget lasts, so the
    // loop ends after at most 2 * budget + 1 turns.
    while (!pieces.empty()) {
        PieceS p = pieces.back();
        pieces.pop_back();
        IntervalC y = program.evaluate(IntervalC(p.a, p.b));
        --budget;
        double mid = p.a + (p.b - p.a) * 0.5;
        bool canSplit = budget > 0 && p.a < mid && mid < p.b;
        bool split = false;
        if (y.empty || y.lo > topEdge || y.hi < bottomEdge) {
            // No value, or none inside the window: the stretch ends here.
            emit_run(walk, column);
            end_stretch(walk);
            unsee(walk);
            continue;
        }
        // Breaks are hunted down to the last bit only beside a value; between
        // two samples without one (x^x left of 0, where values are isolated
        // points) that would spend the budget on nothing.
        unsigned int depthLimit = std::isfinite(p.fa) || std::isfinite(p.fb) ? BREAK_DEPTH : DETAIL_DEPTH;
        if (!y.clean())
            split = canSplit && p.depth < depthLimit;
        else
            split = canSplit && p.depth < DETAIL_DEPTH && too_tall(walk, y);
        if (split) {
            double fm = program.evaluate(mid);
            see(walk, fm);
            pieces.push_back(PieceS{mid, p.b, fm, p.fb, p.depth + 1});
            pieces.push_back(PieceS{p.a, mid, p.fa, fm, p.depth + 1});
            continue;
        }
        if (y.clean()) {
            add_to_run(walk.run, y.lo, y.hi, p.fa, p.fb);
            continue;
        }
        // A piece that may break, as small as it gets. Its end values belong
        // to the stretches on either side; a pole or jump's own enclosure is
        // no picture of the curve. Where only a domain edge is inside, the
        // defined part's enclosure is, and it goes with the side that has a
        // value (with a value at neither end, what is left is a sliver too
        // thin to draw).
        bool hasA = std::isfinite(p.fa);
        bool hasB = std::isfinite(p.fb);
        bool edgeOnly = !y.mayJump;
        if (y.mayJump && budget <= 0 && p.depth < depthLimit && p.a < mid && mid < p.b) {
            // Out of budget with breaks still unresolved (jumps piling up at
            // a pole, as in floor(sin(1/x))): the curve is somewhere in the
            // enclosure, too dense to follow. Drawn as a stretch of its own.
            emit_run(walk, column);
            end_stretch(walk);
            add_to_run(walk.run, y.lo, y.hi, y.lo, y.hi);
            emit_run(walk, column);
            end_stretch(walk);
            unsee(walk);
            continue;
        }
        if (hasA && hasB && inside(p.fa) && inside(p.fb) &&
            std::floor((p.fa - bottomEdge) / yStep) == std::floor((p.fb - bottomEdge) / yStep)) {
            // A jump or gap within one pixel row (x*floor(x) has no jump at 0
            // at all) looks like none: the stretch goes on through it.
            add_to_run(walk.run, p.fa < p.fb ? p.fa : p.fb, p.fa < p.fb ? p.fb : p.fa, p.fa, p.fb);
            if (edgeOnly) add_to_run(walk.run, y.lo, y.hi, p.fa, p.fb);
            continue;
        }
        if (hasA) {
            if (edgeOnly) add_to_run(walk.run, y.lo, y.hi, p.fa, p.fa);
            add_sample(walk.run, p.fa);
        }
        emit_run(walk, column);
        end_stretch(walk);
        // What was sampled before the break vouches for nothing after it.
        unsee(walk);
        if (hasB) {
            if (edgeOnly) add_to_run(walk.run, y.lo, y.hi, p.fb, p.fb);
            add_sample(walk.run, p.fb);
            see(walk, p.fb);
        }
    }
}

bool PreviousArbitraryEvalC::too_tall(WalkS const &walk, IntervalC const &y) const {
    auto clamp = [this](double v) { return v < bottomEdge ? bottomEdge : (v > topEdge ? topEdge : v); };
    // Nothing sampled yet (no finite value): all of the enclosure is unvouched.
    double seenLo = walk.seenLo <= walk.seenHi ? walk.seenLo : y.hi;
    double seenHi = walk.seenLo <= walk.seenHi ? walk.seenHi : y.hi;
    double above = clamp(y.hi) - clamp(seenHi);
    double below = clamp(seenLo) - clamp(y.lo);
    // More than a pixel row of the window that no sample vouches for.
    return (above > 0 ? above : 0) + (below > 0 ? below : 0) > yStep;
}

void PreviousArbitraryEvalC::unsee(WalkS &walk) {
    walk.seenLo = std::numeric_limits<double>::infinity();
    walk.seenHi = -walk.seenLo;
}

void PreviousArbitraryEvalC::see(WalkS &walk, double y) {
    if (!std::isfinite(y)) return;
    if (y < walk.seenLo) walk.seenLo = y;
    if (y > walk.seenHi) walk.seenHi = y;
}

void PreviousArbitraryEvalC::add_to_run(RunS &run, double lo, double hi, double first, double last) {
    if (!run.any) {
        run = RunS{true, lo, hi, first, last};
        return;
    }
    if (lo < run.lo) run.lo = lo;
    if (hi > run.hi) run.hi = hi;
    run.last = last;
}

void PreviousArbitraryEvalC::add_sample(RunS &run, double y) { add_to_run(run, y, y, y, y); }

void PreviousArbitraryEvalC::emit_run(WalkS &walk, unsigned int column) {
    if (!walk.run.any) return;
    RunS run = walk.run;
    walk.run.any = false;
    ds::GraphDataSetWinC &set = *walk.set;
    unsigned int before = set.getCount();
    // From the end where the stretch enters the column to the end where it
    // leaves, so that consecutive columns join end to start.
    bool rising = !(run.last < run.first);
    double xc = xMin + xStep * double(column);
    appendPixelPoints(xc, rising ? run.lo : run.hi, rising ? run.hi : run.lo, walk.set);
    if (set.getCount() == before) {
        // Wholly outside the window: whatever was visible has ended.
        end_stretch(walk);
        return;
    }
    if (!walk.open) {
        // Slot before, not the spare slot: a run that emits nothing must not
        // leave a marker behind for the next point.
        addStartMarker(markerSlot(set, long(before)));
        walk.open = true;
    }
}

void PreviousArbitraryEvalC::end_stretch(WalkS &walk) {
    if (!walk.open) return;
    addEndMarker(lastMarker(walk.set));
    walk.open = false;
}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
