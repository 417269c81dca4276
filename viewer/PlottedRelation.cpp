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
#include "tools/Errors.h"
#include "tools/Kinds.h"

namespace evalgviewer {

namespace ds = qelt::mathapp::ds;
namespace esb = qelt::mathapp::esb;
namespace evalg = qelt::mathapp::evalg;
using evalgtool::UsageError;

namespace {

using Evaluate = std::function<GraphP(DomainP const &)>;

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

std::vector<std::string> splitWords(std::string const &text) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (char c : text) {
        if (quote) {
            if (c == quote)
                quote = 0;
            else
                word += c;
        } else if (c == '\'' || c == '"') {
            quote = c;
            inWord = true;
        } else if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote) throw UsageError(std::string("unmatched ") + quote + " in '" + text + "'");
    if (inWord) words.push_back(word);
    return words;
}

namespace {

PlottedRelation fromWords(std::vector<std::string> const &words, std::string const &label) {
    evalgtool::RelationRequest request = evalgtool::parseRelation(words);
    PlottedRelation p;
    p.label = label;
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

} // namespace

PlottedRelation relationFromText(std::string const &text) {
    std::vector<std::string> words = splitWords(text);
    if (words.empty()) throw UsageError("type a relation: a kind and its parameters (circle r=3) or an expression in x");
    if (isKindName(words[0])) return fromWords(words, text);
    // Anything that does not start with a kind is taken as y = the expression;
    // when that does not parse either, the message names both readings.
    std::string expression = text;
    std::size_t first = expression.find_first_not_of(" \t");
    if (expression[first] == 'y') {
        std::size_t eq = expression.find_first_not_of(" \t", first + 1);
        if (eq != std::string::npos && expression[eq] == '=') expression = expression.substr(eq + 1);
    }
    try {
        return fromWords({"expr", "f=" + expression}, text);
    } catch (UsageError const &e) {
        throw UsageError("'" + words[0] + "' is not a kind (" + evalgtool::kindNames() +
                         "), and as an expression in x: " + e.what());
    }
}

} // namespace evalgviewer
