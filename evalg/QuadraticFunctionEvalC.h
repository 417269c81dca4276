#ifndef QELT_EVALG_QUADRATICFUNCTIONEVALC_H
#define QELT_EVALG_QUADRATICFUNCTIONEVALC_H

#include "collab/rel/QuadraticFunctionC.h"
#include "evalg/VerticalParabolaEvalTC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Draws y = a(x - h)^2 + k by forward differences from the vertex outward: the
// left half is walked leftwards and prepended, the vertex column appended, the
// right half walked rightwards and appended, so the set reads left to right.
// Each step costs two additions; f is evaluated once per half, at its start.
class QuadraticFunctionEvalC : public VerticalParabolaEvalTC<rel::QuadraticFunctionC> {
public:
    QuadraticFunctionEvalC();
    QuadraticFunctionEvalC(QuadraticFunctionEvalC const &other);
    QuadraticFunctionEvalC &operator=(QuadraticFunctionEvalC const &other);
    ~QuadraticFunctionEvalC();

    oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(esb::CartesianRelationServiceIC &service,
                                                       oss::PointerTC<ds::GraphicalDomainC> domain) override;

private:
    void calculate(rel::QuadraticFunctionC *relation, SetP set);
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
