#ifndef QELT_EVALG_GENERALEVALC_H
#define QELT_EVALG_GENERALEVALC_H

#include <vector>

#include "collab/esb/CartesianRelationServiceIC.h"
#include "evalg/CartesianRelationGraphEvalHelperC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws any relation that its service can evaluate point by point. It samples
// every column edge once, pairs the i-th y value of one sample with the i-th
// of the next as one branch, and draws each pair as the column's vertical run.
// Where two or more branches begin or end inside a column, the column is
// sampled again at subdivisions fine steps (one level only).
class GeneralEvalC : public CartesianRelationGraphEvalHelperC {
public:
    // A refined column never takes more fine steps than this, whatever
    // subdivisions says (1e300 and +infinity included).
    static constexpr unsigned int MAX_FINE_STEPS = 1u << 20;

    explicit GeneralEvalC(double subdivisions);
    GeneralEvalC();
    GeneralEvalC(GeneralEvalC const &other);
    GeneralEvalC &operator=(GeneralEvalC const &other);
    ~GeneralEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(esb::CartesianRelationServiceIC &service);
    void refine(esb::CartesianRelationServiceIC &service, double xStart);
    // One run per branch between the sample before x and the sample at x.
    void emitBranches(std::vector<double> const &previous, std::vector<double> const &current, double x);

    // Fine steps per refined column; a double, never rounded: 2.5 gives three
    // steps of xStep / 2.5.
    double subdivisions;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
