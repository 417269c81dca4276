#ifndef QELT_DS_POINT_H
#define QELT_DS_POINT_H

#include <cstdint>

// The platform's pixel point record: column, then screen row from the top.
struct POINT {
    int32_t x;
    int32_t y;
};

#endif
