#ifndef QELT_OSS_POINTERTC_H
#define QELT_OSS_POINTERTC_H

#include <cstddef>

namespace qelt {
namespace oss {

// Intrusive smart pointer over objects derived from RefCountedBC. Holding a
// pointer holds one reference; the last holder deletes the object through T's
// destructor, which must be virtual wherever T is a base of the real type.
template <class T>
class PointerTC {
public:
    PointerTC() : p_(nullptr) {}
    PointerTC(std::nullptr_t) : p_(nullptr) {}
    PointerTC(T *p) : p_(p) { acquire(); }
    PointerTC(PointerTC const &o) : p_(o.p_) { acquire(); }
    PointerTC(PointerTC &&o) noexcept : p_(o.p_) { o.p_ = nullptr; }
    template <class U>
    PointerTC(PointerTC<U> const &o) : p_(o.get()) { acquire(); }
    ~PointerTC() { release(); }

    PointerTC &operator=(PointerTC const &o) {
        if (o.p_ != p_) {
            T *old = p_;
            p_ = o.p_;
            acquire();
            drop(old);
        }
        return *this;
    }
    PointerTC &operator=(PointerTC &&o) noexcept {
        if (this != &o) {
            T *old = p_;
            p_ = o.p_;
            o.p_ = nullptr;
            // Re-assigning the pointee already held keeps one reference, not two.
            if (old == p_ && old != nullptr)
                old->dereference();
            else
                drop(old);
        }
        return *this;
    }

    T *get() const { return p_; }
    T *operator->() const { return p_; }
    T &operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }

    void reset() { release(); }

    friend bool operator==(PointerTC const &a, PointerTC const &b) { return a.p_ == b.p_; }
    friend bool operator!=(PointerTC const &a, PointerTC const &b) { return a.p_ != b.p_; }

private:
    void acquire() {
        if (p_) p_->reference();
    }
    void release() {
        T *old = p_;
        p_ = nullptr;
        drop(old);
    }
    static void drop(T *p) {
        if (p && p->dereference() == 0) delete p;
    }

    T *p_;
};

} // namespace oss
} // namespace qelt

#endif
