/* Sizes, values and index sequences of the benchmark files and workloads. The Octave and
 * Python implementations repeat these numbers; the driver compares every implementation's
 * checksum with (a)'s, so a mismatch shows. */
#ifndef NCBENCH_COMMON_H
#define NCBENCH_COMMON_H

#include <math.h>
#include <stddef.h>

#define BENCH_COLUMNS ((size_t)16384) /* innermost extent of the bulk variables */
#define BENCH_SLABS ((size_t)64)      /* getVara reads per whole variable */
#define SMALL_SIDE ((size_t)1000)     /* the small variable is SMALL_SIDE x SMALL_SIDE */
#define ELEMENT_CALLS ((size_t)100000)
#define STRIDED_CALLS ((size_t)10000)
#define STRIDED_COUNT ((size_t)10) /* a 10 x 10 block per strided read */
#define STRIDED_ROW_STEP 3
#define STRIDED_COLUMN_STEP 7
#define META_VARIABLES 2000
#define META_ATTRIBUTES 5

static inline double bigValue(size_t linear) { return (double)(linear % 65536); }
/* A smooth field with noise in its low bits: shuffle and deflate shrink it about as much
 * as they do measured data, not to nothing. */
static inline float deflatedValue(size_t row, size_t column) {
  const size_t noise = ((row * 2654435761u + column * 40503u) >> 7) & 1023;
  return (float)(20.0 * sin((double)row * 0.05) + 10.0 * cos((double)column * 0.01) +
                 (double)noise / 1024.0);
}
/* Whole numbers, so that sums are exact whatever the order of addition. */
static inline double smallValue(size_t row, size_t column) { return (double)(row * 1000 + column); }

/* The compound workload: COMPOUND_RECORDS records of {double, float, int32, int16[4]}. */
#define COMPOUND_RECORDS ((size_t)10000000)
struct BenchRecord {
  double t;
  float v;
  int q;
  short s[4];
};
static inline double compoundT(size_t i) { return (double)(i % 65536); }
static inline float compoundV(size_t i) { return (float)(i % 1000); }
static inline int compoundQ(size_t i) { return (int)i; }
static inline short compoundS(size_t i, size_t k) { return (short)((i + k) % 30000); }

/* netCDF-order index of single-element call k, and start of strided call k. */
static inline size_t elementRow(size_t k) { return (k * 37) % SMALL_SIDE; }
static inline size_t elementColumn(size_t k) { return (k * 101) % SMALL_SIDE; }
static inline size_t stridedRow(size_t k) { return (k * 37) % 970; }
static inline size_t stridedColumn(size_t k) { return (k * 101) % 930; }

#endif
