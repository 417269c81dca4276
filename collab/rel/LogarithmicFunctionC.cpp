#include "collab/rel/LogarithmicFunctionC.h"

#include <cmath>

namespace qelt {
namespace mathapp {
namespace rel {

LogarithmicFunctionC::LogarithmicFunctionC(double a, double b, double h, double k, double base)
    : a_(a), b_(b), h_(h), k_(k), base_(base) {}

LogarithmicFunctionC::~LogarithmicFunctionC() {}

unsigned short const *LogarithmicFunctionC::getCastableId() {
    static char16_t const id[] = u"qelt::mathapp::rel::LogarithmicFunctionC";
    return castableId(id);
}

void *LogarithmicFunctionC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : RelationC::lookUpBase(id);
}

void LogarithmicFunctionC::getYValuesAt(double x, std::vector<double> &values) const {
    addValue(values, valueAt(x));
}

double LogarithmicFunctionC::getBase() const { return base_; }

double LogarithmicFunctionC::valueAt(double x) const {
    double d = x - h_;
    return b_ * (std::log(a_ * d) / std::log(base_)) + k_;
}

} // namespace rel
} // namespace mathapp
} // namespace qelt
