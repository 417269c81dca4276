#ifndef EVALG_TOOL_KINDS_H
#define EVALG_TOOL_KINDS_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "collab/oss/PointerTC.h"
#include "collab/rel/RelationC.h"
#include "collab/rel/TypedRelationC.h"
#include "Picture.h"
#include "Window.h"

namespace evalgtool {

enum class ParamType { Number, Integer, Text };

// One NAME=VALUE parameter of a kind, with its default.
struct ParamDef {
    std::string name;
    ParamType type;
    double number;    // default of a Number or Integer
    std::string text; // default of a Text
    std::string meaning; // what a Text takes ("FILE"); for a number, a note for the help

    double lo, hi;    // accepted range of a Number or Integer
    unsigned rules = 0; // ParamRule bits: values refused although finite and in range
};

// Values that draw nonsense, refused before drawing. The library draws
// whatever it is given; these say where that is not the curve the kind names.
enum ParamRule : unsigned {
    NotZero = 1,        // a zero conic axis, focal distance or log factor
    Positive = 2,       // a log base
    NotOne = 4,         // a log base
    FiniteSquare = 8,   // a radius or axis the rasteriser squares
    NormalSquare = 16,  // with FiniteSquare: the square is not lost to underflow either
};

// What p's rules allow, as a sentence; empty without rules.
std::string allowedValues(ParamDef const &p);
// Why value is refused for p, naming what is allowed; empty when it is not.
std::string ruleViolation(ParamDef const &p, double value);

// The parameters of one relation after validation: every parameter of its
// kind, given or defaulted.
struct Arguments {
    double number(std::string const &name) const;
    std::string const &text(std::string const &name) const;

    std::map<std::string, double> numbers;
    std::map<std::string, std::string> texts;
};

// A relation kind of the tool. Adding a kind is adding one of these to the
// table in Kinds.cpp.
struct KindEntry {
    std::string name;
    std::string curve; // what it draws, for the help text
    std::vector<ParamDef> params;
    std::string evaluator; // the library class that draws it
    // The relation, for drawing and for tables; empty for a kind that has no
    // y values (a sketch).
    std::function<qelt::oss::PointerTC<qelt::mathapp::rel::RelationC>(Arguments const &)> relation;
    std::function<Drawing(Arguments const &, Window const &)> draw;
    std::string galleryArguments; // what the gallery draws, as NAME=VALUE words
    // The kind draws another kind's relation, named by its "of" parameter,
    // whose parameters it then accepts as well.
    bool wrapsKind = false;
};

std::vector<KindEntry> const &kinds();
KindEntry const *findKind(std::string const &name);
std::string kindNames(); // "line, quadratic, ..."

// A relation as written on the command line: KIND NAME=VALUE..., or a
// relation as typed ("x^2 + y^2 = 9"), which is the kind "relation".
struct RelationRequest {
    KindEntry const *kind = nullptr;
    KindEntry const *drawnKind = nullptr; // the kind whose relation is built (differs for a wrapping kind)
    Arguments args;
    std::string label;
    // A typed relation as read, with what it was recognised as.
    qelt::oss::PointerTC<qelt::mathapp::rel::TypedRelationC> typed;
};

// The t and θ ranges a typed curve takes when its words do not say,
// "MIN,MAX" each; empty to choose from the expression.
struct CurveRanges {
    std::string t;
    std::string theta;
};

// Validates the words (unknown kind or parameter, a repeated or malformed
// value, a typed relation that does not read) and fills in the defaults;
// throws UsageError. Words whose first is no kind are one typed relation.
RelationRequest parseRelation(std::vector<std::string> const &words, CurveRanges const &ranges = CurveRanges());

// Throws UsageError when words that name no kind still read as a kind with
// parameters (circel r=3), or are one word of letters that reads as no
// relation (quadratik): a misspelt kind, not a relation as typed.
void refuseMisspeltKind(std::vector<std::string> const &words);

// Every parameter of the relation, given or defaulted, in declaration order.
std::vector<ParamValue> parameterValues(RelationRequest const &request);

// The relation's drawing on the window, with what names it.
Curve drawRelation(RelationRequest const &request, Window const &w);

// The help text's list of kinds with their parameters and defaults.
std::string kindsHelp();

} // namespace evalgtool

#endif
