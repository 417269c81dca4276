#ifndef QELT_DS_FLOATPOINT2C_H
#define QELT_DS_FLOATPOINT2C_H

namespace qelt {
namespace mathapp {
namespace ds {

// One row of a table of values: x and up to two y values (NaN where absent).
class FloatPoint2C {
public:
    FloatPoint2C(double x, double y1, double y2) : x_(x), y1_(y1), y2_(y2) {}
    virtual ~FloatPoint2C() {}

    double getX() const { return x_; }
    double getY1() const { return y1_; }
    double getY2() const { return y2_; }

private:
    double x_;
    double y1_;
    double y2_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif
