#ifndef QELT_EVALG_CARTESIANRELATIONGRAPHEVALC_H
#define QELT_EVALG_CARTESIANRELATIONGRAPHEVALC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/ds/GraphicalDomainC.h"
#include "collab/esb/CartesianRelationServiceIC.h"
#include "collab/oss/PointerTC.h"
#include "evalg/GraphDomainEvalC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Base of every graph evaluator: one relation and one window in, the pixel
// points of the relation's graph out. Every evaluator's evaluateGraph is the
// same driver, differing only in the relation type and the two numbers handed
// to the new data set; evaluateWith is that driver.
class CartesianRelationGraphEvalC : public GraphDomainEvalC {
public:
    CartesianRelationGraphEvalC();
    CartesianRelationGraphEvalC(CartesianRelationGraphEvalC const &other);
    CartesianRelationGraphEvalC &operator=(CartesianRelationGraphEvalC const &other);
    ~CartesianRelationGraphEvalC();

    // A new data set with the graph's pixels: empty (never null, save for a
    // failed allocation) when the window is invalid or the relation is of
    // another kind.
    virtual oss::PointerTC<ds::GraphDataSetWinC> evaluateGraph(
        esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain) = 0;

protected:
    // The driver: creates the set, takes over the window, casts the relation to
    // RelationT by its castable identifier and, when all went well, runs
    // calculate(RelationT *, PointerTC<GraphDataSetWinC>).
    template <class RelationT, class CalculateT>
    oss::PointerTC<ds::GraphDataSetWinC> evaluateWith(esb::CartesianRelationServiceIC &service,
                                                      oss::PointerTC<ds::GraphicalDomainC> domain,
                                                      unsigned int first, unsigned int second,
                                                      CalculateT calculate) {
        bool domainSet = false;
        oss::PointerTC<ds::GraphDataSetWinC> set = beginEvaluation(domain, first, second, domainSet);
        if (domainSet && set) {
            // The relation is borrowed from the service: no reference is taken.
            void *relation = service.lookUpBase(RelationT::getCastableId());
            if (relation) calculate(static_cast<RelationT *>(relation), set);
        }
        return set;
    }
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
