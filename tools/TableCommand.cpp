#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "collab/ds/TableDataSet2C.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "Commands.h"
#include "Errors.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "Kinds.h"
#include "Numbers.h"
#include "Output.h"
#include "PlotFormats.h"

namespace evalgtool {

namespace {

// Rows a table may have: the x values and the table are held in memory.
double const maxRows = 1e6;

// Digits after the point of a decimal number; -1 when it has an exponent.
int decimalPlaces(std::string const &number) {
    if (number.find_first_of("eE") != std::string::npos) return -1;
    std::size_t point = number.find('.');
    return point == std::string::npos ? 0 : int(number.size() - point - 1);
}

std::vector<double> tableXs(TableOptions const &o) {
    bool range = !o.from.empty() || !o.to.empty() || !o.step.empty();
    std::string const form = "--x X1,X2,... or --from A --to B --step S";
    if (!o.xs.empty() && range) throw UsageError("give the x values either as --x or as a range, not both: " + form);
    if (!o.xs.empty()) return parseNumberList(o.xs, "--x", 0, "X1,X2,..., e.g. -1,0,2.5");
    if (o.from.empty() || o.to.empty() || o.step.empty()) throw UsageError("the table needs its x values: " + form);
    double from = parseNumber(o.from, "--from"), to = parseNumber(o.to, "--to"), step = parseNumber(o.step, "--step");
    if (!(step > 0)) throw UsageError("--step: " + o.step + " is not positive");
    if (!(from <= to)) throw UsageError("--from must not be above --to: " + form);
    // A hair of slack so that 0 to 1 in steps of 0.1 ends at 1 despite rounding.
    double count = std::floor((to - from) / step + 1e-9) + 1;
    if (!(count <= maxRows))
        throw UsageError("--from " + o.from + " --to " + o.to + " --step " + o.step + " makes more than " +
                         formatNumber(maxRows) + " rows; use a larger --step");
    // Each x is rounded to the decimal places of --from and --step, so that
    // -1 in steps of 0.1 gives -0.4 and not -0.3999999999999999.
    int places = std::max(decimalPlaces(o.from), decimalPlaces(o.step));
    std::vector<double> xs;
    for (long i = 0; i < long(count); ++i) {
        double x = from + double(i) * step;
        if (places >= 0 && places <= 15 && std::fabs(x) < 1e15) {
            char text[64];
            std::snprintf(text, sizeof text, "%.*f", places, x);
            x = std::strtod(text, nullptr);
        }
        xs.push_back(x);
    }
    return xs;
}

} // namespace

void runTable(TableOptions const &o) {
    RelationRequest request = parseRelation(o.relation);
    if (!request.drawnKind->relation)
        throw UsageError(request.kind->name + " has no y values to tabulate; kinds with values: every other");
    std::vector<double> xs = tableXs(o);
    int digits = o.digits.empty() ? 0 : int(parseInteger(o.digits, "--digits", 1, 17));
    Format format = chooseFormat(o.format, o.output, {Format::Text, Format::Csv, Format::Json}, Format::Text);

    qelt::mathapp::esb::CartesianRelationServiceC service(request.drawnKind->relation(request.args));
    qelt::mathapp::evalg::CartesianRelationTableEvalC evaluator;
    qelt::oss::PointerTC<qelt::mathapp::ds::TableDataSet2C> table = evaluator.evaluateTable2(service, xs);
    std::vector<qelt::mathapp::ds::FloatPoint2C *> rows;
    if (table) rows = table->getPoints();
    auto rounded = [digits](double v) { return digits ? roundToDigits(v, digits) : v; };
    // A missing value is a blank cell in text and CSV and null in JSON.
    auto cell = [&rounded](double v) { return std::isnan(v) ? std::string() : formatNumber(rounded(v)); };
    auto value = [&rounded](double v) {
        return std::isnan(v) ? nlohmann::ordered_json() : nlohmann::ordered_json(rounded(v));
    };

    std::ostringstream out;
    if (format == Format::Json) {
        nlohmann::ordered_json doc;
        doc["label"] = request.label;
        doc["kind"] = request.kind->name;
        doc["parameters"] = parametersJson(parameterValues(request));
        doc["rows"] = nlohmann::ordered_json::array();
        for (auto const *r : rows)
            doc["rows"].push_back({{"x", r->getX()}, {"y1", value(r->getY1())}, {"y2", value(r->getY2())}});
        out << doc.dump(1) << "\n";
    } else if (format == Format::Csv) {
        out << "x,y1,y2\n";
        for (auto const *r : rows) out << cell(r->getX()) << ',' << cell(r->getY1()) << ',' << cell(r->getY2()) << '\n';
    } else {
        std::vector<std::vector<std::string>> cells{{"x", "y1", "y2"}};
        std::size_t width[3] = {1, 2, 2};
        for (auto const *r : rows) {
            cells.push_back({cell(r->getX()), cell(r->getY1()), cell(r->getY2())});
            for (int i = 0; i < 3; ++i) width[i] = std::max(width[i], cells.back()[i].size());
        }
        for (auto const &line : cells) {
            std::string text;
            for (int i = 0; i < 3; ++i) text += std::string(width[i] - line[i].size() + (i ? 2 : 0), ' ') + line[i];
            out << text.substr(0, text.find_last_not_of(' ') + 1) << '\n';
        }
    }
    writeOutput(o.output, out.str());
}

} // namespace evalgtool
