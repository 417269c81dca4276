#ifndef QELT_REL_RELATIONC_H
#define QELT_REL_RELATIONC_H

#include <string>
#include <vector>

#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace rel {

// Base of every relation. A relation names its type by a castable identifier
// (the address of a per-class constant) and answers lookUpBase with itself,
// seen as the class named, when that class is its own or one of its bases.
class RelationC : public oss::RefCountedBC {
public:
    RelationC() {}
    virtual ~RelationC();

    static unsigned short const *getCastableId();
    virtual void *lookUpBase(unsigned short const *id) const;

    // Appends the relation's y values at x in a stable branch order (k + s
    // before k - s). NaN and infinite values are not values and are left out.
    virtual void getYValuesAt(double x, std::vector<double> &values) const;

    std::u16string const &getLabel() const { return label_; }
    void setLabel(std::u16string const &label) { label_ = label; }
    virtual std::u16string getSourceName() const;

protected:
    // The castable identifier of a class: a unique address, readable as text.
    static unsigned short const *castableId(char16_t const *name) {
        return reinterpret_cast<unsigned short const *>(name);
    }
    void *self() const { return const_cast<void *>(static_cast<void const *>(this)); }
    // Adds v when it is a finite number.
    static void addValue(std::vector<double> &values, double v);
    // Adds k + s and k - s, one value k when s is 0, nothing when s is NaN.
    static void addPair(std::vector<double> &values, double k, double s);

private:
    std::u16string label_;
};

} // namespace rel
} // namespace mathapp
} // namespace qelt

#endif
