#include "viewer/Binding.h"

#include <cmath>
#include <string>
#include <vector>

#include "collab/ds/FloatPoint2C.h"
#include "collab/ds/TableDataSet2C.h"
#include "collab/esb/CartesianRelationServiceC.h"
#include "evalg/CartesianRelationTableEvalC.h"
#include "tools/Errors.h"
#include "tools/GridLines.h"
#include "viewer/PlottedRelation.h"

#ifdef __EMSCRIPTEN__
#include <emscripten/emscripten.h>
#define EXPORTED EMSCRIPTEN_KEEPALIVE
#else
#define EXPORTED
#endif

namespace {

using namespace evalgviewer;

struct Slot {
    bool used = false;
    PlottedRelation relation;
    GraphP graph; // kept so the page can read its arrays in place
};

int const slotCount = 64;
int const maxTableRows = 10000;
Slot slots[slotCount];
std::string message;
std::vector<double> numbers;

Slot *slotAt(int slot) { return slot >= 0 && slot < slotCount ? &slots[slot] : nullptr; }

} // namespace

extern "C" {

EXPORTED int evalg_set(int slot, char const *text) {
    Slot *s = slotAt(slot);
    if (!s || !text) {
        message = "no such relation slot";
        return 0;
    }
    *s = Slot();
    try {
        s->relation = relationFromText(text);
        s->used = true;
        message.clear();
        return 1;
    } catch (evalgtool::UsageError const &e) {
        message = e.what();
    } catch (std::exception const &e) {
        message = std::string("cannot draw this relation: ") + e.what();
    }
    return 0;
}

EXPORTED void evalg_clear(int slot) {
    if (Slot *s = slotAt(slot)) *s = Slot();
}

EXPORTED char const *evalg_chosen(int slot) {
    Slot *s = slotAt(slot);
    return s && s->used ? s->relation.chosen.c_str() : "";
}

EXPORTED int evalg_form(int slot) {
    Slot *s = slotAt(slot);
    if (!s || !s->used) return 0;
    return (s->relation.pixelRuns ? 1 : 0) | (s->relation.relation ? 2 : 0);
}

EXPORTED char const *evalg_message() { return message.c_str(); }

EXPORTED int evalg_draw(int slot, double xMin, double xMax, double yMin, double yMax, int columns, int rows) {
    Slot *s = slotAt(slot);
    if (!s || !s->used) return 0;
    s->graph = GraphP();
    // The library refuses such windows itself; sizes are checked here only
    // because they narrow to 16 bits on the way in.
    if (columns < 1 || rows < 1 || columns > 32767 || rows > 32767) return 0;
    DomainP domain(new qelt::mathapp::ds::GraphicalDomainC(xMin, xMax, yMin, yMax, (unsigned short)columns,
                                                            (unsigned short)rows));
    try {
        s->graph = s->relation.evaluate(domain);
    } catch (std::exception const &e) {
        // A kind that reads a file reads it when drawn.
        message = e.what();
        return -1;
    }
    if (!s->graph) return 0;
    unsigned int count = 0;
    s->graph->getPixelPoints(count);
    return int(count);
}

EXPORTED std::int32_t const *evalg_points(int slot) {
    Slot *s = slotAt(slot);
    if (!s || !s->graph) return nullptr;
    unsigned int count = 0;
    // POINT is two 32-bit integers with nothing between them.
    return reinterpret_cast<std::int32_t const *>(s->graph->getPixelPoints(count));
}

EXPORTED std::uint8_t const *evalg_markers(int slot) {
    Slot *s = slotAt(slot);
    if (!s || !s->graph) return nullptr;
    unsigned int count = 0;
    return s->graph->getPixelMarkers(count);
}

EXPORTED int evalg_values_at(int slot, double x) {
    numbers.clear();
    Slot *s = slotAt(slot);
    if (!s || !s->used || !s->relation.relation) return 0;
    qelt::mathapp::esb::CartesianRelationServiceC service(s->relation.relation);
    service.getYValuesAt(x, numbers);
    return int(numbers.size());
}

EXPORTED int evalg_table(int slot, double from, double step, int count) {
    numbers.clear();
    Slot *s = slotAt(slot);
    if (!s || !s->used || !s->relation.relation || count < 1) return 0;
    if (count > maxTableRows) count = maxTableRows;
    std::vector<double> xs;
    for (int i = 0; i < count; ++i) xs.push_back(from + double(i) * step);
    qelt::mathapp::esb::CartesianRelationServiceC service(s->relation.relation);
    qelt::mathapp::evalg::CartesianRelationTableEvalC table;
    qelt::oss::PointerTC<qelt::mathapp::ds::TableDataSet2C> rows = table.evaluateTable2(service, xs);
    if (!rows) return 0;
    for (qelt::mathapp::ds::FloatPoint2C const *p : rows->getPoints()) {
        numbers.push_back(p->getX());
        numbers.push_back(p->getY1());
        numbers.push_back(p->getY2());
    }
    return int(rows->getPoints().size());
}

EXPORTED int evalg_grid(double xMin, double xMax, double yMin, double yMax, int columns, int rows) {
    numbers.assign(2, 0.0);
    if (!(xMin < xMax && yMin < yMax) || columns < 1 || rows < 1 || columns > 32767 || rows > 32767) return 0;
    evalgtool::Window w;
    w.xMin = xMin, w.xMax = xMax, w.yMin = yMin, w.yMax = yMax, w.columns = columns, w.rows = rows;
    std::vector<evalgtool::GridLine> vertical = evalgtool::verticalGridLines(w);
    std::vector<evalgtool::GridLine> horizontal = evalgtool::horizontalGridLines(w);
    numbers[0] = double(vertical.size());
    numbers[1] = double(horizontal.size());
    for (auto const *lines : {&vertical, &horizontal})
        for (evalgtool::GridLine const &g : *lines) {
            numbers.push_back(double(g.pixel));
            numbers.push_back(g.value);
            numbers.push_back(g.axis ? 1.0 : 0.0);
        }
    return int(vertical.size() + horizontal.size());
}

EXPORTED double const *evalg_numbers() { return numbers.data(); }
}
