#ifndef QELT_REL_POWERFUNCTIONDOMAINRESTRICTIONE_H
#define QELT_REL_POWERFUNCTIONDOMAINRESTRICTIONE_H

namespace qelt {
namespace mathapp {
namespace rel {

// Which side of x = h a power function exists on. Any other value means no
// restriction; the fixed underlying type makes every int a valid value.
enum PowerFunctionDomainRestrictionE : int {
    POWER_DOMAIN_UNRESTRICTED = 0,
    POWER_DOMAIN_RIGHT_OF_H = 1, // x >= h only
    POWER_DOMAIN_LEFT_OF_H = 2,  // x <= h only
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif
