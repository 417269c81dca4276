#ifndef QELT_EVALG_CARTESIANRELATIONGRAPHEVALHELPERC_H
#define QELT_EVALG_CARTESIANRELATIONGRAPHEVALHELPERC_H

#include "collab/ds/GraphDataSetWinC.h"
#include "collab/oss/PointerTC.h"
#include "evalg/CartesianRelationGraphEvalC.h"
#include "evalg/SpanEmissionC.h"

namespace qelt {
namespace mathapp {
namespace evalg {

// Pixel emission: turns a span of a curve in one column (or, swapped, in one
// row) into the span's end pixels, clipped to the window, and sets the
// visibility markers. Points are (column, screen row from the top).
//
// Walks push their spans into a buffer bound to the evaluation's set, and the
// buffer turns them into points in batches (SpanEmissionC): when it fills,
// when the axis or the end changes, before any marker is read or set, and at
// the end of the evaluation. The points are those of emitting each span at
// once. The forms that take a set emit at once, for callers that read the set
// straight after.
class CartesianRelationGraphEvalHelperC : public CartesianRelationGraphEvalC {
public:
    CartesianRelationGraphEvalHelperC();
    CartesianRelationGraphEvalHelperC(CartesianRelationGraphEvalHelperC const &other);
    CartesianRelationGraphEvalHelperC &operator=(CartesianRelationGraphEvalHelperC const &other);
    ~CartesianRelationGraphEvalHelperC();

protected:
    using SetP = oss::PointerTC<ds::GraphDataSetWinC>;

    // The axis a walk steps along. COLUMNS: the walk steps x and a span is a
    // vertical run in the column of x; ROWS: it steps y and a span is a
    // horizontal run in the row of y (the XYSwapped forms), clamped to the
    // edges rather than to the outermost centres.
    enum AxisE : unsigned char { COLUMNS = 0, ROWS = 2 };
    // Which end of the set a span's points go to: BACK appends, FRONT
    // prepends (so a span's end point lands in front of its start point).
    enum EndE : unsigned char { BACK = 0, FRONT = 1 };

    // The driver of CartesianRelationGraphEvalC with the span buffer bound to
    // the new set for the calculation and flushed after it.
    template <class RelationT, class CalculateT>
    SetP evaluateWith(esb::CartesianRelationServiceIC &service, oss::PointerTC<ds::GraphicalDomainC> domain,
                      unsigned int first, unsigned int second, CalculateT calculate) {
        return CartesianRelationGraphEvalC::evaluateWith<RelationT>(
            service, domain, first, second, [&](RelationT *relation, SetP set) {
                bindSpans(set.get());
                calculate(relation, set);
                unbindSpans();
            });
    }

    // Spans pushed from now on go to set (the caller keeps it alive until
    // unbindSpans or the next bindSpans); what is pending goes out first.
    void bindSpans(ds::GraphDataSetWinC *set);
    void unbindSpans();
    // The cell of at, from the cell of from to the cell of to, buffered.
    void pushSpan(AxisE axis, EndE end, double at, double from, double to) {
        unsigned char mode = axis | end;
        if (mode != spanMode || spanCount == SpanEmissionC::BatchS::CAPACITY) startBatch(mode);
        spans.at[spanCount] = at;
        spans.from[spanCount] = from;
        spans.to[spanCount] = to;
        ++spanCount;
    }
    // Moves the end of the span pushed last to to, when that span is still
    // pending (false after a flush): for a walk that finds the next point
    // belongs to the same span.
    bool extendLastSpan(double to) {
        if (spanCount == 0) return false;
        spans.to[spanCount - 1] = to;
        return true;
    }
    // For a walk that writes spans itself in a tight loop: the buffer's
    // arrays, the number of spans pending, and how many more fit before a
    // flush. The room is 0 unless the pending spans are of this axis and end
    // (or there are none). The walk writes spans count onwards, at most room
    // of them, then sets the new count with commitSpans.
    struct SpanRoomS {
        double *at, *from, *to;
        unsigned int count, room;
    };
    SpanRoomS spanRoom(AxisE axis, EndE end) {
        unsigned char mode = axis | end;
        unsigned int room = mode == spanMode ? SpanEmissionC::BatchS::CAPACITY - spanCount : 0;
        return SpanRoomS{spans.at, spans.from, spans.to, spanCount, room};
    }
    void commitSpans(unsigned int count) { spanCount = count; }
    // The same, with room for at least one span of this axis and end: what
    // is pending goes out first if it is of another kind or fills the buffer.
    SpanRoomS openSpans(AxisE axis, EndE end) {
        unsigned char mode = axis | end;
        if (mode != spanMode || spanCount == SpanEmissionC::BatchS::CAPACITY) startBatch(mode);
        return spanRoom(axis, end);
    }
    // A walk's cursor into the span buffer, for a loop that keeps its state
    // in registers: put() writes one span (emitting a full buffer first),
    // close() hands the count back and reopen() takes the buffer up again.
    // While open nothing else may push or touch a marker, and values the
    // loop reads should be in locals, not members, since the spans are
    // stored through pointers.
    class SpanCursorC {
    public:
        SpanCursorC(CartesianRelationGraphEvalHelperC &owner, AxisE axis, EndE end)
            : owner(owner), axis(axis), end(end) {
            open();
        }
        void put(double at, double from, double to) {
            if (k == stop) {
                owner.commitSpans(k);
                open();
            }
            room.at[k] = at;
            room.from[k] = from;
            room.to[k] = to;
            ++k;
        }
        void close() { owner.commitSpans(k); }
        void reopen() { open(); }

    private:
        void open() {
            room = owner.openSpans(axis, end);
            k = room.count;
            stop = k + room.room;
        }
        CartesianRelationGraphEvalHelperC &owner;
        AxisE axis;
        EndE end;
        SpanRoomS room;
        unsigned int k, stop;
    };

    // Turns the pending spans into points now.
    void flushSpans() {
        if (spanCount != 0) emitBatch();
    }

    // The stretch markers on the bound set, pending spans emitted first.
    // openStretch: the next point emitted starts a visible stretch.
    // closeStretch: the last point emitted so far ends one (on an empty set,
    // the spare slot in front). The At forms mark the point of an index kept
    // from earlier (markers move as points arrive, indices do not).
    void openStretch() { addStartMarker(boundMarker(long(boundCount()))); }
    void closeStretch() { addEndMarker(boundMarker(long(boundCount()) - 1)); }
    void openStretchAt(long index) { addStartMarker(boundMarker(index)); }
    void closeStretchAt(long index) { addEndMarker(boundMarker(index)); }
    // Points in the bound set, pending spans emitted first.
    unsigned int boundCount() {
        flushSpans();
        return spanTarget ? spanTarget->getCount() : 0;
    }

    // The horizontal line y across every column, one point per column.
    void calculateConstant(double y, SetP set);

    void appendPixelPoint(double x, double y, SetP set);
    void prependPixelPoint(double x, double y, SetP set);
    // The column of x, from the row of y1 to the row of y2.
    void appendPixelPoints(double x, double y1, double y2, SetP set);
    void prependPixelPoints(double x, double y1, double y2, SetP set);
    // The row of y, from the column of x1 to the column of x2.
    void appendPixelPointsXYSwapped(double y, double x1, double x2, SetP set);
    void prependPixelPointsXYSwapped(double y, double x1, double x2, SetP set);

    static void addStartMarker(unsigned char *marker);
    static void addEndMarker(unsigned char *marker);

    // Marker slots of a set, fetched afresh after emitting what is pending:
    // index -1 .. count are writable, so lastMarker of an empty set is the
    // spare slot in front, and nextMarker is the slot that the next appended
    // point takes.
    unsigned char *markerSlot(ds::GraphDataSetWinC &set, long index);
    unsigned char *firstMarker(SetP const &set) { return markerSlot(*set, 0); }
    unsigned char *lastMarker(SetP const &set) {
        flushSpans();
        return markerSlot(*set, long(set->getCount()) - 1);
    }
    unsigned char *nextMarker(SetP const &set) {
        flushSpans();
        return markerSlot(*set, long(set->getCount()));
    }

    void windowSet() override;

private:
    // The numbers of one axis, read off the window.
    SpanEmissionC::FrameS spanFrame(AxisE axis) const;
    void startBatch(unsigned char mode);
    void emitBatch();
    unsigned char *boundMarker(long index) { return spanTarget ? markerSlot(*spanTarget, index) : &unboundMarker; }
    // One span into set at once, point by point.
    void emitNow(AxisE axis, EndE end, double at, double from, double to, ds::GraphDataSetWinC *set);

    // Borrowed for one evaluation; null between evaluations.
    ds::GraphDataSetWinC *spanTarget;
    // Both axes' frames, worked out once per window rather than per flush.
    SpanEmissionC::FrameS batchFrames[2];
    bool framesReady[2];
    unsigned char spanMode;
    unsigned int spanCount;
    // Absorbs a marker set with no set bound.
    unsigned char unboundMarker;
    SpanEmissionC::BatchS spans;
};

} // namespace evalg
} // namespace mathapp
} // namespace qelt

#endif
