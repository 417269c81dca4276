#include "viewer/PlottedRelation.h"

#include <map>

#include "collab/ds/PixelPointC.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "evalg/ArbitraryFunctionFloat64EvalC.h"
#include "evalg/CircleEvalC.h"
#include "evalg/EllipseEvalC.h"
#include "evalg/ExponentialFunctionEvalC.h"
#include "evalg/HyperbolaEvalC.h"
#include "evalg/HyperbolaVertEvalC.h"
#include "evalg/LinearFunction1EvalC.h"
#include "evalg/LogarithmicFunctionEvalC.h"
#include "evalg/ParabolaEvalC.h"
#include "evalg/ParabolaVertEvalC.h"
#include "evalg/PowerFunctionEvalC.h"
#include "evalg/QuadraticFunctionEvalC.h"
#include "evalg/SinusoidalFunctionEvalC.h"
#include "evalg/TypedRelationEvalC.h"
#include "tools/Errors.h"
#include "tools/Kinds.h"
#include "tools/Words.h"

namespace evalgviewer {

namespace ds = qelt::mathapp::ds;
namespace esb = qelt::mathapp::esb;
namespace evalg = qelt::mathapp::evalg;
namespace rel = qelt::mathapp::rel;
using evalgtool::UsageError;

namespace {

using Evaluate = std::function<GraphP(DomainP const &)>;
using TypedP = qelt::oss::PointerTC<rel::TypedRelationC>;

// The relation drawn by its own evaluator, held by value (the evaluators'
// common base has no virtual destructor). One evaluator per relation: an
// evaluator keeps nothing between calls but the last window.
template <class EvaluatorT>
Evaluate evaluateWith(RelationP relation) {
    return [evaluator = EvaluatorT(), relation](DomainP const &domain) mutable {
        esb::CartesianRelationServiceC service(relation);
        return evaluator.evaluateGraph(service, domain);
    };
}

// The closed-form evaluators by the name the tool's kinds give them, so the
// page gets the library's own data set rather than a copy of its points.
Evaluate evaluatorNamed(std::string const &name, RelationP relation) {
    static std::map<std::string, Evaluate (*)(RelationP)> const table = {
        {"LinearFunction1EvalC", evaluateWith<evalg::LinearFunction1EvalC>},
        {"QuadraticFunctionEvalC", evaluateWith<evalg::QuadraticFunctionEvalC>},
        {"ParabolaVertEvalC", evaluateWith<evalg::ParabolaVertEvalC>},
        {"ParabolaEvalC", evaluateWith<evalg::ParabolaEvalC>},
        {"CircleEvalC", evaluateWith<evalg::CircleEvalC>},
        {"EllipseEvalC", evaluateWith<evalg::EllipseEvalC>},
        {"HyperbolaEvalC", evaluateWith<evalg::HyperbolaEvalC>},
        {"HyperbolaVertEvalC", evaluateWith<evalg::HyperbolaVertEvalC>},
        {"PowerFunctionEvalC", evaluateWith<evalg::PowerFunctionEvalC>},
        {"ExponentialFunctionEvalC", evaluateWith<evalg::ExponentialFunctionEvalC>},
        {"LogarithmicFunctionEvalC", evaluateWith<evalg::LogarithmicFunctionEvalC>},
        {"SinusoidalFunctionEvalC", evaluateWith<evalg::SinusoidalFunctionEvalC>},
        {"ArbitraryFunctionFloat64EvalC", evaluateWith<evalg::ArbitraryFunctionFloat64EvalC>},
    };
    auto it = table.find(name);
    return it == table.end() ? Evaluate() : it->second(relation);
}

// A kind the tool draws through its own code (the sampled and sketch kinds)
// has no markers of its own worth following: its visible stretches are laid
// out one after the other, each opened and closed by the markers, so the page
// joins them exactly as the tool does.
GraphP strokesAsDataSet(evalgtool::Drawing const &drawing, DomainP const &domain) {
    GraphP set(new ds::GraphDataSetWinC(1000, 0, domain));
    for (evalgtool::Stroke const &s : drawing.strokes)
        for (std::size_t i = 0; i < s.size(); ++i) {
            unsigned char marker = 0;
            if (i == 0) marker |= ds::PixelPointC::FIRST_VISIBLE;
            if (i + 1 == s.size()) marker |= ds::PixelPointC::LAST_VISIBLE;
            set->appendPixelPoint(long(s[i].column), long(s[i].row), marker);
        }
    return set;
}

evalgtool::Window windowOf(DomainP const &domain) {
    evalgtool::Window w;
    w.xMin = domain->getXMin();
    w.xMax = domain->getXMax();
    w.yMin = domain->getYMin();
    w.yMax = domain->getYMax();
    w.columns = domain->getM();
    w.rows = domain->getN();
    return w;
}

bool isKindName(std::string const &word) { return evalgtool::findKind(word) != nullptr; }

} // namespace

namespace {

// A typed relation is drawn by the evaluator its reading chose, straight
// from the library; only those with y values have trace values and a table.
PlottedRelation typedPlot(TypedP typed, std::string const &label) {
    PlottedRelation p;
    p.label = label;
    rel::TypedRelationC::FormE form = typed->getForm();
    if (form == rel::TypedRelationC::CLOSED_FORM || form == rel::TypedRelationC::FUNCTION)
        p.relation = typed->getRelation();
    p.chosen = typed->getKind() + " \u00b7 " + typed->getEvaluatorName();
    p.pixelRuns = typed->drawsPixels();
    p.evaluate = [typed](DomainP const &domain) { return evalg::TypedRelationEvalC::evaluateGraph(*typed, domain); };
    return p;
}

PlottedRelation fromWords(std::vector<std::string> const &words, std::string const &label) {
    evalgtool::RelationRequest request = evalgtool::parseRelation(words);
    if (request.typed) return typedPlot(request.typed, label);
    PlottedRelation p;
    p.label = label;
    p.chosen = request.kind->name + " \u00b7 " + request.kind->evaluator;
    if (request.drawnKind->relation) p.relation = request.drawnKind->relation(request.args);
    if (p.relation && !request.kind->wrapsKind) p.evaluate = evaluatorNamed(request.kind->evaluator, p.relation);
    if (p.evaluate) return p;
    evalgtool::KindEntry const *kind = request.kind;
    evalgtool::Arguments args = request.args;
    p.evaluate = [kind, args](DomainP const &domain) {
        return strokesAsDataSet(kind->draw(args, windowOf(domain)), domain);
    };
    return p;
}

// A relation as typed, read once by the library; each redraw only evaluates.
PlottedRelation typedRelation(std::string const &text) {
    // "circel r=3" is a misspelt kind rather than a relation that fails to read.
    std::vector<std::string> words;
    try {
        words = evalgtool::splitWords(text);
    } catch (UsageError const &) {
        // Quotes are no concern of a typed relation; its reader has its say.
    }
    evalgtool::refuseMisspeltKind(words);
    std::string error;
    TypedP typed = rel::TypedRelationC::fromText(text, &error);
    if (!typed) throw UsageError(error);
    return typedPlot(typed, text);
}

} // namespace

PlottedRelation relationFromText(std::string const &text) {
    if (text.find_first_not_of(" \t\n\r") == std::string::npos)
        throw UsageError("type a relation (x^2 + y^2 = 9, y < sin(x), r = 1 + cos(θ)) or a kind and its "
                         "parameters (circle r=3)");
    // Only the first word decides: a typed relation may hold quotes or
    // blanks the word splitter would take apart.
    std::size_t start = text.find_first_not_of(" \t\n\r");
    std::string first = text.substr(start, text.find_first_of(" \t\n\r", start) - start);
    if (isKindName(first)) return fromWords(evalgtool::splitWords(text), text);
    return typedRelation(text);
}

} // namespace evalgviewer
