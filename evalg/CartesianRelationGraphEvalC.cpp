#include "evalg/CartesianRelationGraphEvalC.h"

#include "evalg/GraphDomainServiceNames.h"

namespace qelt {
namespace mathapp {
namespace evalg {

CartesianRelationGraphEvalC::CartesianRelationGraphEvalC() {}
CartesianRelationGraphEvalC::CartesianRelationGraphEvalC(CartesianRelationGraphEvalC const &) = default;
CartesianRelationGraphEvalC &CartesianRelationGraphEvalC::operator=(CartesianRelationGraphEvalC const &) = default;
CartesianRelationGraphEvalC::~CartesianRelationGraphEvalC() {}

} // namespace evalg
} // namespace mathapp
} // namespace qelt
