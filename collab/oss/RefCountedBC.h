#ifndef QELT_OSS_REFCOUNTEDBC_H
#define QELT_OSS_REFCOUNTEDBC_H

namespace qelt {
namespace oss {

// Intrusive reference count. A new object holds no reference; the first
// holder takes it. The destructor is deliberately not virtual: counted classes
// declare their own virtual destructor, and holders delete through that type.
// Copying copies the count as well (evaluators copy their whole state).
class RefCountedBC {
public:
    RefCountedBC() : count_(0) {}
    ~RefCountedBC() {}

    void reference() { ++count_; }
    unsigned long dereference() { return count_ == 0 ? 0 : --count_; }
    unsigned long getReferenceCount() const { return count_; }

private:
    unsigned long count_;
};

} // namespace oss
} // namespace qelt

#endif
