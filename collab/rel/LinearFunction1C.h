#ifndef QELT_REL_LINEARFUNCTION1C_H
#define QELT_REL_LINEARFUNCTION1C_H

#include "collab/rel/RelationC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// The line y = m*(x - h) + k.
class LinearFunction1C : public RelationC {
public:
    LinearFunction1C(double m, double h, double k);
    virtual ~LinearFunction1C();

    static unsigned short const *getCastableId();
    void *lookUpBase(unsigned short const *id) const override;
    void getYValuesAt(double x, std::vector<double> &values) const override;

    double get_m() const { return m_; }
    double get_h() const { return h_; }
    double get_k() const { return k_; }

private:
    double m_;
    double h_;
    double k_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif
