#ifndef QELT_REL_CONICRELATIONC_H
#define QELT_REL_CONICRELATIONC_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// Base of the conics: holds the centre (or vertex) (h, k).
class ConicRelationC : public RelationC {
public:
    ConicRelationC(double h, double k) : h_(h), k_(k) {}
    virtual ~ConicRelationC();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;

    double get_h() const { return h_; }
    double get_k() const { return k_; }

private:
    double h_;
    double k_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif
