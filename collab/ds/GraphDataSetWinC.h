#ifndef QELT_DS_GRAPHDATASETWINC_H
#define QELT_DS_GRAPHDATASETWINC_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "collab/ds/GraphicalDomainC.h"
#include "collab/ds/POINT.h"
#include "collab/oss/PointerTC.h"
#include "collab/oss/RefCountedBC.h"

namespace qelt {
namespace mathapp {
namespace ds {

// The pixel points of one graph, in drawing order, each with a marker byte.
//
// Points and markers are two parallel contiguous arrays that can grow at both
// ends in amortised O(1): the storage keeps free room in front of the first
// point for prepending and behind the last for appending, and doubles the
// room it runs out of. The marker array always has one spare slot before the
// first point (index -1) and one after the last (index count), so a marker can
// be set on the point that the next prepend or append will bring; appending
// and prepending OR their marker into whatever that slot already holds.
class GraphDataSetWinC : public oss::RefCountedBC {
public:
    // capacity: initial room for points; frontReserve: how much of it lies in
    // front of the first point. Both are hints; any values work.
    GraphDataSetWinC(unsigned int capacity, unsigned int frontReserve,
                     oss::PointerTC<GraphicalDomainC> domain);
    virtual ~GraphDataSetWinC();

    // Inline while there is room, which is nearly always: emission appends a
    // point or two per pixel column.
    bool appendPixelPoint(long const &x, long const &y, unsigned char const &marker) {
        POINT p;
        p.x = toCoordinate(x);
        p.y = toCoordinate(y);
        return appendPixelPoint(p, marker);
    }
    bool appendPixelPoint(POINT const &point, unsigned char const &marker) {
        if (end_ >= capacity_) return appendGrowing(point, marker);
        points_[end_] = point;
        markers_[end_ + 1] |= marker;
        ++end_;
        return true;
    }
    bool prependPixelPoint(long const &x, long const &y, unsigned char const &marker) {
        if (begin_ == 0) return prependGrowing(x, y, marker);
        --begin_;
        points_[begin_].x = toCoordinate(x);
        points_[begin_].y = toCoordinate(y);
        // The old spare slot -1 becomes the new point's marker.
        markers_[begin_ + 1] |= marker;
        return true;
    }

    // Bulk writes, for emission that knows how many points it may bring:
    // reserveAppend(n) makes room for n points behind the last and returns
    // where the first of them goes; the caller writes up to n points there in
    // order and then commits how many it wrote. reservePrepend(n) makes room
    // for n points in front of the first and returns the current first
    // point's address: the caller writes the point prepended first at [-1],
    // the next at [-2], and so on, then commits their number. Either way the
    // result is that of appending (prepending) the points one by one with
    // marker 0: marker slots that hold no point are 0 save the spare slots,
    // and a marker pending in a spare slot lands on the point that takes it.
    // Null when the room cannot be had; nothing is then written.
    POINT *reserveAppend(std::size_t n) {
        if (capacity_ - end_ < n && !growBack(n)) return nullptr;
        return points_ + end_;
    }
    void commitAppend(std::size_t n) { end_ += n; }
    POINT *reservePrepend(std::size_t n) {
        if (begin_ < n && !growFront(n)) return nullptr;
        return points_ + begin_;
    }
    void commitPrepend(std::size_t n) { begin_ -= n; }

    // Makes room for front more points in front of the first and back more
    // behind the last, in one step, for a caller that knows what is coming
    // (a hint like the constructor's: false only when the room cannot be had).
    bool reserve(std::size_t front, std::size_t back);

    // Empties the set and keeps its storage, with frontReserve of its room
    // (at most all of it) in front, for reuse as scratch.
    void clear(std::size_t frontReserve);

    // Appends the other set's points with their markers. With flag false this
    // is exactly appending them one by one (a marker pending in this set's slot
    // count merges into the first of them; the other set's spare slots are not
    // copied). With flag true the sets are joined as one path: when the other
    // set's first point equals this set's last, it is not repeated and its
    // marker is ORed into the last point instead.
    bool appendPixelPoints(oss::PointerTC<GraphDataSetWinC> other, bool flag);

    // Pointers to element 0, valid until the next append or prepend; count is
    // set to the number of points. markers[-1] and markers[count] are the spare
    // slots and may be written.
    POINT *getPixelPoints(unsigned int &count) const;
    unsigned char *getPixelMarkers(unsigned int &count) const;
    unsigned int getCount() const { return static_cast<unsigned int>(end_ - begin_); }

    oss::PointerTC<GraphicalDomainC> getDomain() { return domain_; }

    // One line per point with its marker bits, on standard error.
    virtual void trace() const;

    // How often the storage has been reallocated (for cost checks).
    unsigned long getReallocationCount() const { return reallocations_; }

private:
    GraphDataSetWinC(GraphDataSetWinC const &) = delete;
    GraphDataSetWinC &operator=(GraphDataSetWinC const &) = delete;

    static bool allocate(std::size_t capacity, std::unique_ptr<unsigned char[]> &storage, POINT *&points,
                         unsigned char *&markers);
    bool appendGrowing(POINT const &point, unsigned char const &marker);
    bool prependGrowing(long const &x, long const &y, unsigned char const &marker);
    // Keeps the low 32 bits in two's complement, as the platform record would.
    static int32_t toCoordinate(long v) {
        uint32_t u = static_cast<uint32_t>(static_cast<unsigned long>(v));
        return u <= 0x7FFFFFFFu ? static_cast<int32_t>(u)
                                : static_cast<int32_t>(static_cast<int64_t>(u) - 4294967296LL);
    }
    bool reserveFront();
    bool reserveBack();
    bool growFront(std::size_t n);
    bool growBack(std::size_t n);
    bool relocate(std::size_t front, std::size_t back);

    // Point i lives at points_[begin_ + i]; its marker at markers_[begin_ + i + 1].
    // Points are left uninitialised until written; markers start at zero.
    // Both live in storage_ (null when none could be had).
    std::unique_ptr<unsigned char[]> storage_;
    POINT *points_;
    unsigned char *markers_;
    std::size_t capacity_;
    std::size_t begin_;
    std::size_t end_;
    unsigned long reallocations_;
    oss::PointerTC<GraphicalDomainC> domain_;
};

} // namespace ds
} // namespace mathapp
} // namespace qelt

#endif
