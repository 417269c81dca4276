#include "collab/ds/GraphDataSetWinC.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "collab/ds/PixelPointC.h"

namespace qelt {
namespace mathapp {
namespace ds {

namespace {
// Room added when an end runs out: at least this much, else as much as is held.
const std::size_t MIN_GROWTH = 16;
// Hints larger than this are not honoured up front; the storage grows instead.
const std::size_t MAX_HINT = 1u << 24;
// The count is reported as an unsigned int: the set never holds more.
const std::size_t MAX_POINTS = 0xFFFFFFF0u;
} // namespace

GraphDataSetWinC::GraphDataSetWinC(unsigned int capacity, unsigned int frontReserve,
                                   oss::PointerTC<GraphicalDomainC> domain)
    : points_(nullptr), markers_(nullptr), capacity_(0), begin_(0), end_(0), reallocations_(0), domain_(domain) {
    std::size_t cap = capacity < MAX_HINT ? capacity : MAX_HINT;
    std::size_t front = frontReserve < cap ? frontReserve : cap;
    if (!allocate(cap, storage_, points_, markers_)) {
        cap = front = 0;
        // Two marker bytes for the spare slots; if even that fails, the set
        // stays without storage and every append reports failure.
        allocate(0, storage_, points_, markers_);
    }
    capacity_ = markers_ ? cap : 0;
    begin_ = end_ = front;
}

bool GraphDataSetWinC::allocate(std::size_t capacity, std::unique_ptr<unsigned char[]> &storage, POINT *&points,
                                unsigned char *&markers) {
    // One block, the points first (new[] of bytes is aligned for any type
    // that fits), then the markers: one allocation per set, not two. At
    // least one point, so that element 0 has an address even when empty.
    std::size_t slots = capacity > 0 ? capacity : 1;
    if (slots > (SIZE_MAX - 2) / (sizeof(POINT) + 1)) return false;
    std::size_t pointBytes = slots * sizeof(POINT);
    storage.reset(new (std::nothrow) unsigned char[pointBytes + capacity + 2]);
    if (!storage) return false;
    points = reinterpret_cast<POINT *>(storage.get());
    std::uninitialized_default_construct_n(points, slots);
    markers = storage.get() + pointBytes;
    std::fill(markers, markers + capacity + 2, static_cast<unsigned char>(0));
    return true;
}

GraphDataSetWinC::~GraphDataSetWinC() {}

bool GraphDataSetWinC::relocate(std::size_t front, std::size_t back) {
    std::size_t count = end_ - begin_;
    if (!markers_ || front + count + back > MAX_POINTS) return false;
    std::unique_ptr<unsigned char[]> storage;
    POINT *points = nullptr;
    unsigned char *markers = nullptr;
    if (!allocate(front + count + back, storage, points, markers)) return false;
    std::copy(points_ + begin_, points_ + end_, points + front);
    // The points' markers and both spare slots move together.
    std::copy(markers_ + begin_, markers_ + end_ + 2, markers + front);
    storage_.swap(storage);
    points_ = points;
    markers_ = markers;
    capacity_ = front + count + back;
    begin_ = front;
    end_ = front + count;
    ++reallocations_;
    return true;
}

bool GraphDataSetWinC::reserveFront() {
    if (begin_ > 0) return true;
    std::size_t count = end_ - begin_;
    return relocate(count > MIN_GROWTH ? count : MIN_GROWTH, capacity_ - end_);
}

bool GraphDataSetWinC::reserveBack() {
    if (end_ < capacity_) return true;
    std::size_t count = end_ - begin_;
    return relocate(begin_, count > MIN_GROWTH ? count : MIN_GROWTH);
}

// Room for n more at one end: at least n, and at least as much again as is
// held, so that repeated bulk writes stay amortised O(1) per point.
bool GraphDataSetWinC::growFront(std::size_t n) {
    std::size_t count = end_ - begin_;
    std::size_t room = count > MIN_GROWTH ? count : MIN_GROWTH;
    if (n > MAX_POINTS) return false;
    return relocate(room > n ? room : n, capacity_ - end_);
}

bool GraphDataSetWinC::growBack(std::size_t n) {
    std::size_t count = end_ - begin_;
    std::size_t room = count > MIN_GROWTH ? count : MIN_GROWTH;
    if (n > MAX_POINTS) return false;
    return relocate(begin_, room > n ? room : n);
}

bool GraphDataSetWinC::reserve(std::size_t front, std::size_t back) {
    std::size_t haveFront = begin_;
    std::size_t haveBack = capacity_ - end_;
    if (haveFront >= front && haveBack >= back) return true;
    if (front > MAX_HINT || back > MAX_HINT) return false;
    return relocate(haveFront > front ? haveFront : front, haveBack > back ? haveBack : back);
}

void GraphDataSetWinC::clear(std::size_t frontReserve) {
    // Only the points' slots and the two spare slots can be nonzero.
    if (markers_) std::fill(markers_ + begin_, markers_ + end_ + 2, static_cast<unsigned char>(0));
    begin_ = end_ = frontReserve < capacity_ ? frontReserve : capacity_;
}

bool GraphDataSetWinC::appendGrowing(POINT const &point, unsigned char const &marker) {
    POINT p = point; // the argument may live in this set's own storage
    if (!reserveBack()) return false;
    return appendPixelPoint(p, marker);
}

bool GraphDataSetWinC::prependGrowing(long const &x, long const &y, unsigned char const &marker) {
    long px = x, py = y; // the arguments may live in storage that moves
    if (!reserveFront()) return false;
    return prependPixelPoint(px, py, marker);
}

bool GraphDataSetWinC::appendPixelPoints(oss::PointerTC<GraphDataSetWinC> other, bool flag) {
    if (!other) return false;
    std::size_t n = other->getCount();
    std::size_t i = 0;
    if (flag && n > 0 && end_ > begin_) {
        POINT const &last = points_[end_ - 1];
        POINT const &first = other->points_[other->begin_];
        if (last.x == first.x && last.y == first.y) {
            markers_[end_] |= other->markers_[other->begin_ + 1];
            i = 1;
        }
    }
    if (i >= n) return true;
    std::size_t m = n - i;
    // Room first: other may be this set, whose storage moves when it grows.
    if (!reserveAppend(m)) return false;
    POINT const *from = other->points_ + other->begin_ + i;
    unsigned char const *marks = other->markers_ + other->begin_ + i + 1;
    std::copy(from, from + m, points_ + end_);
    // ORed, as appending one by one would: the first slot may hold a pending
    // marker; the others are 0. Spare slots that hold no point stay 0, so
    // reading this set's own markers while writing them gives the same.
    unsigned char *to = markers_ + end_ + 1;
    for (std::size_t j = 0; j < m; ++j) to[j] |= marks[j];
    end_ += m;
    return true;
}

POINT *GraphDataSetWinC::getPixelPoints(unsigned int &count) const {
    count = getCount();
    return points_ + begin_;
}

unsigned char *GraphDataSetWinC::getPixelMarkers(unsigned int &count) const {
    count = getCount();
    // Never null: even a set whose storage could not be had keeps its two
    // spare slots, in a fallback that absorbs writes.
    if (!markers_) {
        static unsigned char none[2];
        none[0] = none[1] = 0;
        return none + 1;
    }
    return markers_ + begin_ + 1;
}

void GraphDataSetWinC::trace() const {
    std::size_t count = end_ - begin_;
    std::fprintf(stderr, "GraphDataSetWinC: %zu points\n", count);
    for (std::size_t i = 0; i < count; ++i) {
        unsigned char m = markers_[begin_ + i + 1];
        std::fprintf(stderr, "%6zu  (%ld, %ld)%s%s\n", i, static_cast<long>(points_[begin_ + i].x),
                     static_cast<long>(points_[begin_ + i].y),
                     (m & PixelPointC::FIRST_VISIBLE) ? " FIRST_VISIBLE" : "",
                     (m & PixelPointC::LAST_VISIBLE) ? " LAST_VISIBLE" : "");
    }
}

} // namespace ds
} // namespace mathapp
} // namespace qelt
