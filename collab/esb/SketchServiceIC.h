#ifndef QELT_ESB_SKETCHSERVICEIC_H
#define QELT_ESB_SKETCHSERVICEIC_H

#include <vector>

#include "collab/ds/FloatPointC.h"

namespace qelt {
namespace mathapp {
namespace esb {

// What the sketch evaluator asks of a sketch: its ordered points.
class SketchServiceIC {
public:
    virtual ~SketchServiceIC() {}
    static unsigned short const *getCastableId() {
        static char16_t const id[] = u"qelt::mathapp::esb::SketchServiceIC";
        return reinterpret_cast<unsigned short const *>(id);
    }
    virtual std::vector<ds::FloatPointC *> const &getValues() const = 0;
};

} // namespace esb
} // namespace mathapp
} // namespace qelt

#endif
