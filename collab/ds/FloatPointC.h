#ifndef QELT_DS_FLOATPOINTC_H
#define QELT_DS_FLOATPOINTC_H

namespace qelt {
namespace mathapp {
namespace ds {

// A point of a sketch in mathematical coordinates, with marks that name what
// the point is (an intercept, a turning point).
class FloatPointC {
public:
    static constexpr unsigned short X_INTERCEPT = 0x01;
    static constexpr unsigned short Y_INTERCEPT = 0x02;
    static constexpr unsigned short TURNING_POINT = 0x04;

    FloatPointC(double x, double y, unsigned short marks) : x_(x), y_(y), marks_(marks) {}
    virtual ~FloatPointC() {}

    double getX() const { return x_; }
    double getY() const { return y_; }
    unsigned short getMarks() const { return marks_; }
    void addMark(unsigned short mark) { marks_ = static_cast<unsigned short>(marks_ | mark); }

private:
    double x_;
    double y_;
    unsigned short marks_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif
