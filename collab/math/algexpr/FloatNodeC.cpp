#include "collab/math/algexpr/FloatNodeC.h"

#include <charconv>

#include "collab/math/algexpr/Float64ValueC.h"

namespace qelt {
namespace math {
namespace algexpr {

FloatNodeC::FloatNodeC(double value) : value_(new Float64ValueC(value)) {}
FloatNodeC::FloatNodeC(std::unique_ptr<FloatValueABC> value) : value_(std::move(value)) {}
FloatNodeC::~FloatNodeC() {}

unsigned short const *FloatNodeC::getCastableId() {
    static char16_t const id[] = u"qelt::math::algexpr::FloatNodeC";
    return castableId(id);
}

void *FloatNodeC::lookUpBase(unsigned short const *id) const {
    return id == getCastableId() ? self() : NodeABC::lookUpBase(id);
}

double FloatNodeC::evaluateWith(double const *) const { return value_->toDouble(); }

std::unique_ptr<NodeABC> FloatNodeC::clone() const { return std::unique_ptr<NodeABC>(new FloatNodeC(value_->clone())); }

void FloatNodeC::appendPrefix(std::string &out) const {
    char text[64];
    std::to_chars_result r = std::to_chars(text, text + sizeof text, value_->toDouble());
    out.append(text, r.ptr);
}

} // namespace algexpr
} // namespace math
} // namespace qelt
