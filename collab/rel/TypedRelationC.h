#ifndef QELT_REL_TYPEDRELATIONC_H
#define QELT_REL_TYPEDRELATIONC_H

#include <string>
#include <vector>

#include "collab/oss/PointerTC.h"
#include "collab/oss/RefCountedBC.h"
#include "collab/rel/ClosedFormRecogniserC.h"
#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// A relation as a person types it, read and routed to what draws it:
//
//   y = 2x + 3, y = 3sin(2(x - 1)) + 1      a closed-form family when it is
//   (x - 1)^2/16 + (y + 2)^2/9 = 1          one (ClosedFormRecogniserC),
//   x^2/4 - y^2/9 = 1, x = y^2              drawn by that family's exact
//                                           evaluator with its parameters
//   y = sin(x)/x, x^2, sin x                any other function of x, drawn
//                                           with proven pixels
//   x^2 + y^3 = 3xy, y < sin(x), x >= 1     an implicit relation: F op G with
//   y > x^2 and y < 4, 0 < y < x            op one of = < <= > >= (also ≤ ≥),
//                                           joined by "and" / "or" ("and"
//                                           first), a chain a < b < c meaning
//                                           a < b and b < c
//   r = 1 + cos(θ)                          a polar curve over a θ range
//   (cos(3t), sin(2t))                      a parametric curve over a t range
//
// Sides are expressions in the notation of AlgebraicExpressionC's infix form;
// an error says what was expected at which character of the whole text.
class TypedRelationC : public oss::RefCountedBC {
public:
    enum FormE { CLOSED_FORM, FUNCTION, IMPLICIT, POLAR, PARAMETRIC };

    // A parameter range for polar and parametric curves.
    struct RangeS {
        bool given = false; // false: chosen from the expression
        double min = 0.0;
        double max = 0.0;
    };
    struct OptionsS {
        RangeS t;
        RangeS theta;
    };

    // At most this many comparisons joined by "and" / "or".
    static unsigned int const MAX_COMPARISONS = 64;

    // The relation, or null with *error saying what is wrong.
    static oss::PointerTC<TypedRelationC> fromText(std::string const &text, std::string *error,
                                                   OptionsS const &options);
    static oss::PointerTC<TypedRelationC> fromText(std::string const &text, std::string *error);
    virtual ~TypedRelationC();

    FormE getForm() const { return form_; }
    // The tool's kind name: a closed-form family ("circle", "sin", ...),
    // "expr", "implicit", "polar" or "parametric".
    std::string const &getKind() const { return family_.name; }
    // The closed form's parameters, in its kind's order; for an expression
    // nothing, for a curve its parameter range ("t" or "θ" min and max).
    std::vector<ClosedFormRecogniserC::ParameterS> const &getParameters() const { return family_.parameters; }
    double getParameter(std::string const &name) const { return family_.parameter(name); }
    // The library evaluator that draws it ("CircleEvalC").
    std::string const &getEvaluatorName() const { return evaluator_; }
    oss::PointerTC<RelationC> getRelation() const { return relation_; }
    // Whether the drawing is a set of pixels (row runs) rather than a path.
    bool drawsPixels() const { return form_ == IMPLICIT; }

private:
    TypedRelationC();
    static std::string evaluatorOf(std::string const &kind);

    FormE form_;
    ClosedFormRecogniserC::FamilyS family_;
    std::string evaluator_;
    oss::PointerTC<RelationC> relation_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif
