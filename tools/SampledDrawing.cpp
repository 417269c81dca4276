#include "SampledDrawing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "collab/esb/CartesianRelationServiceC.h"
#include "evalg/GeneralEvalC.h"

namespace evalgtool {

namespace esb = qelt::mathapp::esb;

namespace {

// Counts the most values the relation has at one sample.
class CountingServiceC : public esb::CartesianRelationServiceIC {
public:
    explicit CountingServiceC(esb::CartesianRelationServiceIC &inner) : inner_(inner) {}
    void *lookUpBase(unsigned short const *id) const override { return inner_.lookUpBase(id); }
    bool getYValuesAt(double x, std::vector<double> &values) override {
        std::size_t before = values.size();
        bool result = inner_.getYValuesAt(x, values);
        most = std::max(most, values.size() - before);
        return result;
    }
    std::size_t most = 0;

private:
    esb::CartesianRelationServiceIC &inner_;
};

// One branch of the relation; every other branch keeps its place in the list
// but lies at +infinity, above any window, where the evaluator draws nothing.
class BranchViewServiceC : public esb::CartesianRelationServiceIC {
public:
    BranchViewServiceC(esb::CartesianRelationServiceIC &inner, std::size_t branch) : inner_(inner), branch_(branch) {}
    void *lookUpBase(unsigned short const *id) const override { return inner_.lookUpBase(id); }
    bool getYValuesAt(double x, std::vector<double> &values) override {
        std::size_t before = values.size();
        bool result = inner_.getYValuesAt(x, values);
        for (std::size_t i = before; i < values.size(); ++i)
            if (i - before != branch_) values[i] = std::numeric_limits<double>::infinity();
        return result;
    }

private:
    esb::CartesianRelationServiceIC &inner_;
    std::size_t branch_;
};

// Branches drawn one by one; a relation with more has them left undrawn.
std::size_t const maxBranches = 16;

} // namespace

Drawing drawSampled(qelt::oss::PointerTC<qelt::mathapp::rel::RelationC> relation, double subdivisions,
                    Window const &w) {
    esb::CartesianRelationServiceC service(relation);
    CountingServiceC counting(service);
    Drawing d;
    d.evaluator = "GeneralEvalC";
    d.points = pixelPoints(qelt::mathapp::evalg::GeneralEvalC(subdivisions).evaluateGraph(counting, makeDomain(w)));
    // The view needs a finite top edge to put the other branches above; a
    // window one pixel high has none, and then the points are joined as they come.
    double yStep = (w.yMax - w.yMin) / double(w.rows - 1);
    bool viewsWork = std::isfinite(yStep * 0.5 + w.yMax);
    if (counting.most <= 1 || !viewsWork) {
        d.strokes = visibleStretches(d.points, w, true);
        return d;
    }
    for (std::size_t branch = 0; branch < std::min(counting.most, maxBranches); ++branch) {
        BranchViewServiceC view(service, branch);
        std::vector<PixelPoint> points =
            pixelPoints(qelt::mathapp::evalg::GeneralEvalC(subdivisions).evaluateGraph(view, makeDomain(w)));
        for (Stroke &s : visibleStretches(points, w, true)) d.strokes.push_back(std::move(s));
    }
    return d;
}

} // namespace evalgtool
