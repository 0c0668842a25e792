/* Implementation (a): the workloads written directly against netCDF-C, and the
 * preparation of the files every implementation reads.
 *
 *   ncbench_c prepare DIR MIB        writes the benchmark files into DIR
 *   ncbench_c WORKLOAD FILE REPS      runs a workload; WORKLOAD may carry a buffer
 *                                     variant: read_whole@touched, read_whole@thp, ...
 *
 * Each repetition prints "rep SECONDS"; a workload that reads values prints "check SUM"
 * once, so that the driver can tell that every implementation did the same work. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <netcdf.h>
#include <stddef.h>
#include <netcdf_filter.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

#include "ncbench_common.h"

static void check(int status, const char* what) {
  if (status != NC_NOERR) {
    fprintf(stderr, "%s: %s\n", what, nc_strerror(status));
    exit(2);
  }
}

static double now(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return (double)t.tv_sec + (double)t.tv_nsec * 1e-9;
}

static void* allocOrDie(size_t bytes) {
  void* p = malloc(bytes);
  if (p == NULL) {
    fprintf(stderr, "out of memory (%zu bytes)\n", bytes);
    exit(2);
  }
  return p;
}

/* How a read result is allocated: fresh from malloc (what a caller that gets a new array
 * pays), fresh with transparent huge pages asked for (as numpy does), or one buffer
 * touched before the first repetition (the cost of the read alone). */
enum Buffer { FRESH, THP, TOUCHED };

static void adviseHugePages(void* p, size_t bytes) {
  const uintptr_t huge = (uintptr_t)2 << 20;
  const uintptr_t begin = ((uintptr_t)p + huge - 1) & ~(huge - 1);
  const uintptr_t end = ((uintptr_t)p + bytes) & ~(huge - 1);
  if (end > begin) madvise((void*)begin, end - begin, MADV_HUGEPAGE);
}

static void* resultBuffer(enum Buffer kind, size_t bytes, void* touched) {
  if (kind == TOUCHED) return touched;
  void* p = allocOrDie(bytes);
  if (kind == THP) adviseHugePages(p, bytes);
  return p;
}

/* The one buffer of the TOUCHED variant, written once before the timed region; NULL for
 * the others. */
static void* touchedBuffer(enum Buffer kind, size_t bytes) {
  if (kind != TOUCHED) return NULL;
  void* p = allocOrDie(bytes);
  memset(p, 0, bytes);
  return p;
}

static void releaseResult(enum Buffer kind, void* p) {
  if (kind != TOUCHED) free(p);
}

/* Flushes a written file to disk outside the timed region, so that every repetition
 * starts with a clean page cache. */
static void syncFile(const char* path) {
  int fd = open(path, O_RDWR);
  if (fd >= 0) {
    fsync(fd);
    close(fd);
  }
}

/* ---- preparation --------------------------------------------------------------------- */

static void writeBig(const char* path, int mode, size_t rows) {
  int ncid, dims[2], varid;
  check(nc_create(path, mode | NC_CLOBBER, &ncid), path);
  check(nc_set_fill(ncid, NC_NOFILL, NULL), "set_fill");
  check(nc_def_dim(ncid, "y", rows, &dims[0]), "def_dim");
  check(nc_def_dim(ncid, "x", BENCH_COLUMNS, &dims[1]), "def_dim");
  check(nc_def_var(ncid, "x", NC_DOUBLE, 2, dims, &varid), "def_var");
  if (mode & NC_NETCDF4) check(nc_def_var_chunking(ncid, varid, NC_CONTIGUOUS, NULL), "chunking");
  check(nc_enddef(ncid), "enddef");
  const size_t n = rows * BENCH_COLUMNS;
  double* data = allocOrDie(n * sizeof(double));
  for (size_t i = 0; i < n; ++i) data[i] = bigValue(i);
  check(nc_put_var_double(ncid, varid, data), "put_var");
  free(data);
  check(nc_close(ncid), "close");
}

/* The compressed float files: deflate+shuffle, bzip2, and BitRound quantization (9 bits)
 * before deflate. */
enum Compression { DEFLATE, BZIP2, QUANTIZE };

static void writeCompressed(const char* path, size_t rows, enum Compression compression) {
  int ncid, dims[2], varid;
  const size_t chunks[2] = {64, 4096};
  check(nc_create(path, NC_NETCDF4 | NC_CLOBBER, &ncid), path);
  check(nc_def_dim(ncid, "y", rows, &dims[0]), "def_dim");
  check(nc_def_dim(ncid, "x", BENCH_COLUMNS, &dims[1]), "def_dim");
  check(nc_def_var(ncid, "f", NC_FLOAT, 2, dims, &varid), "def_var");
  check(nc_def_var_chunking(ncid, varid, NC_CHUNKED, chunks), "chunking");
  if (compression == BZIP2) {
    check(nc_def_var_bzip2(ncid, varid, 1), "bzip2");
  } else {
    if (compression == QUANTIZE) check(nc_def_var_quantize(ncid, varid, NC_QUANTIZE_BITROUND, 9), "quantize");
    check(nc_def_var_deflate(ncid, varid, 1, 1, 1), "deflate");
  }
  check(nc_enddef(ncid), "enddef");
  const size_t n = rows * BENCH_COLUMNS;
  float* data = allocOrDie(n * sizeof(float));
  for (size_t i = 0; i < n; ++i) data[i] = deflatedValue(i / BENCH_COLUMNS, i % BENCH_COLUMNS);
  check(nc_put_var_float(ncid, varid, data), "put_var");
  free(data);
  check(nc_close(ncid), "close");
}

static void writeSmall(const char* path) {
  int ncid, dims[2], varid;
  check(nc_create(path, NC_NETCDF4 | NC_CLOBBER, &ncid), path);
  check(nc_def_dim(ncid, "i", SMALL_SIDE, &dims[0]), "def_dim");
  check(nc_def_dim(ncid, "j", SMALL_SIDE, &dims[1]), "def_dim");
  check(nc_def_var(ncid, "s", NC_DOUBLE, 2, dims, &varid), "def_var");
  check(nc_enddef(ncid), "enddef");
  double* data = allocOrDie(SMALL_SIDE * SMALL_SIDE * sizeof(double));
  for (size_t i = 0; i < SMALL_SIDE; ++i) {
    for (size_t j = 0; j < SMALL_SIDE; ++j) data[i * SMALL_SIDE + j] = smallValue(i, j);
  }
  check(nc_put_var_double(ncid, varid, data), "put_var");
  free(data);
  check(nc_close(ncid), "close");
}

static void writeMetadata(const char* path) {
  int ncid, dim, varid;
  char name[32], attName[16], text[64];
  check(nc_create(path, NC_NETCDF4 | NC_CLOBBER, &ncid), path);
  check(nc_def_dim(ncid, "n", 4, &dim), "def_dim");
  for (int v = 0; v < META_VARIABLES; ++v) {
    snprintf(name, sizeof name, "v%04d", v);
    check(nc_def_var(ncid, name, NC_DOUBLE, 1, &dim, &varid), "def_var");
    for (int a = 0; a < META_ATTRIBUTES; ++a) {
      snprintf(attName, sizeof attName, "a%d", a);
      snprintf(text, sizeof text, "attribute %d of variable %04d", a, v);
      check(nc_put_att_text(ncid, varid, attName, strlen(text), text), "put_att");
    }
  }
  check(nc_close(ncid), "close");
}

/* One variable of COMPOUND_RECORDS records, stored contiguously. */
static void writeCompound(const char* path) {
  int ncid, dim, varid;
  nc_type type;
  const int four = 4;
  check(nc_create(path, NC_NETCDF4 | NC_CLOBBER, &ncid), path);
  check(nc_def_compound(ncid, sizeof(struct BenchRecord), "record_t", &type), "def_compound");
  check(nc_insert_compound(ncid, type, "t", offsetof(struct BenchRecord, t), NC_DOUBLE), "t");
  check(nc_insert_compound(ncid, type, "v", offsetof(struct BenchRecord, v), NC_FLOAT), "v");
  check(nc_insert_compound(ncid, type, "q", offsetof(struct BenchRecord, q), NC_INT), "q");
  check(nc_insert_array_compound(ncid, type, "s", offsetof(struct BenchRecord, s), NC_SHORT, 1,
                                 &four),
        "s");
  check(nc_def_dim(ncid, "n", COMPOUND_RECORDS, &dim), "def_dim");
  check(nc_def_var(ncid, "c", type, 1, &dim, &varid), "def_var");
  check(nc_def_var_chunking(ncid, varid, NC_CONTIGUOUS, NULL), "chunking");
  check(nc_enddef(ncid), "enddef");
  struct BenchRecord* data = allocOrDie(COMPOUND_RECORDS * sizeof *data);
  for (size_t i = 0; i < COMPOUND_RECORDS; ++i) {
    data[i].t = compoundT(i);
    data[i].v = compoundV(i);
    data[i].q = compoundQ(i);
    for (size_t k = 0; k < 4; ++k) data[i].s[k] = compoundS(i, k);
  }
  check(nc_put_var(ncid, varid, data), "put_var");
  free(data);
  check(nc_close(ncid), "close");
}

static void prepare(const char* dir, size_t mib) {
  char path[4096];
  const size_t rows = mib * ((size_t)1 << 20) / (BENCH_COLUMNS * sizeof(double));
  const char* names[] = {"big4.nc", "big3.nc", "write4.nc", "write3.nc"};
  for (int k = 0; k < 4; ++k) {
    snprintf(path, sizeof path, "%s/%s", dir, names[k]);
    writeBig(path, k % 2 == 0 ? NC_NETCDF4 : NC_64BIT_OFFSET, rows);
  }
  const char* compressed[] = {"deflate.nc", "bzip2.nc", "quantize.nc"};
  for (int k = 0; k < 3; ++k) {
    snprintf(path, sizeof path, "%s/%s", dir, compressed[k]);
    writeCompressed(path, rows / 2, (enum Compression)k);
  }
  /* A quarter of the big netCDF-4 file, for opening from memory. */
  snprintf(path, sizeof path, "%s/mem4.nc", dir);
  writeBig(path, NC_NETCDF4, rows / 4);
  snprintf(path, sizeof path, "%s/small.nc", dir);
  writeSmall(path);
  snprintf(path, sizeof path, "%s/small_write.nc", dir);
  writeSmall(path);
  snprintf(path, sizeof path, "%s/meta.nc", dir);
  writeMetadata(path);
  snprintf(path, sizeof path, "%s/compound.nc", dir);
  writeCompound(path);
}

/* ---- workloads ----------------------------------------------------------------------- */

struct Variable {
  int ncid, varid;
  size_t rows, columns;
};

static struct Variable openVariable(const char* path, int mode) {
  struct Variable v;
  int dims[2];
  check(nc_open(path, mode, &v.ncid), path);
  check(nc_inq_varid(v.ncid, "x", &v.varid) == NC_NOERR ? NC_NOERR
                                                        : nc_inq_varid(v.ncid, "f", &v.varid),
        "varid");
  check(nc_inq_vardimid(v.ncid, v.varid, dims), "vardimid");
  check(nc_inq_dimlen(v.ncid, dims[0], &v.rows), "dimlen");
  check(nc_inq_dimlen(v.ncid, dims[1], &v.columns), "dimlen");
  return v;
}

/* The whole variable in its own type: double for the big files, float for the deflated
 * one (nc_get_var reads without conversion). */
static void readWhole(const char* path, int reps, enum Buffer kind) {
  const struct Variable v = openVariable(path, NC_NOWRITE);
  nc_type type;
  check(nc_inq_vartype(v.ncid, v.varid, &type), "vartype");
  const size_t size = type == NC_FLOAT ? sizeof(float) : sizeof(double);
  const size_t n = v.rows * v.columns;
  void* touched = touchedBuffer(kind, n * size);
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    const double t0 = now();
    void* data = resultBuffer(kind, n * size, touched);
    check(nc_get_var(v.ncid, v.varid, data), "get_var");
    printf("rep %.6f\n", now() - t0);
    sum = 0;
    for (size_t k = 0; k < 3; ++k) {
      const size_t i = k == 0 ? 0 : k == 1 ? n / 2 : n - 1;
      sum += type == NC_FLOAT ? (double)((float*)data)[i] : ((double*)data)[i];
    }
    releaseResult(kind, data);
  }
  printf("check %.17g\n", sum);
  free(touched);
  check(nc_close(v.ncid), "close");
}

/* The compound variable into a buffer of records, as netCDF-C lays them out. */
static void readCompound(const char* path, int reps, enum Buffer kind) {
  int ncid, varid;
  check(nc_open(path, NC_NOWRITE, &ncid), path);
  check(nc_inq_varid(ncid, "c", &varid), "varid");
  const size_t n = COMPOUND_RECORDS, bytes = n * sizeof(struct BenchRecord);
  void* touched = touchedBuffer(kind, bytes);
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    const double t0 = now();
    struct BenchRecord* data = resultBuffer(kind, bytes, touched);
    check(nc_get_var(ncid, varid, data), "get_var");
    printf("rep %.6f\n", now() - t0);
    sum = data[0].t + (double)data[n / 2].v + (double)data[n - 1].q + (double)data[n - 1].s[3];
    releaseResult(kind, data);
  }
  printf("check %.17g\n", sum);
  free(touched);
  check(nc_close(ncid), "close");
}

static void readSlabs(const char* path, int reps, enum Buffer kind) {
  const struct Variable v = openVariable(path, NC_NOWRITE);
  const size_t slabRows = v.rows / BENCH_SLABS;
  const size_t n = slabRows * v.columns;
  double* touched = touchedBuffer(kind, n * sizeof(double));
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const double t0 = now();
    for (size_t s = 0; s < BENCH_SLABS; ++s) {
      const size_t start[2] = {s * slabRows, 0};
      const size_t count[2] = {slabRows, v.columns};
      double* data = resultBuffer(kind, n * sizeof(double), touched);
      check(nc_get_vara_double(v.ncid, v.varid, start, count, data), "get_vara");
      sum += data[n - 1];
      releaseResult(kind, data);
    }
    printf("rep %.6f\n", now() - t0);
  }
  printf("check %.17g\n", sum);
  free(touched);
  check(nc_close(v.ncid), "close");
}

static void writeWhole(const char* path, int reps) {
  struct Variable v = openVariable(path, NC_NOWRITE);
  check(nc_close(v.ncid), "close");
  const size_t n = v.rows * v.columns;
  double* data = allocOrDie(n * sizeof(double));
  for (size_t i = 0; i < n; ++i) data[i] = 1.0;
  for (int r = 0; r < reps; ++r) {
    check(nc_open(path, NC_WRITE, &v.ncid), path);
    const double t0 = now();
    check(nc_put_var_double(v.ncid, v.varid, data), "put_var");
    check(nc_close(v.ncid), "close");
    printf("rep %.6f\n", now() - t0);
    syncFile(path);
  }
  free(data);
}

static void readElements(const char* path, int reps) {
  int ncid, varid;
  check(nc_open(path, NC_NOWRITE, &ncid), path);
  check(nc_inq_varid(ncid, "s", &varid), "varid");
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const double t0 = now();
    for (size_t k = 0; k < ELEMENT_CALLS; ++k) {
      const size_t index[2] = {elementRow(k), elementColumn(k)};
      double value;
      check(nc_get_var1_double(ncid, varid, index, &value), "get_var1");
      sum += value;
    }
    printf("rep %.6f\n", now() - t0);
  }
  printf("check %.17g\n", sum);
  check(nc_close(ncid), "close");
}

static void writeElements(const char* path, int reps) {
  int ncid, varid;
  check(nc_open(path, NC_WRITE, &ncid), path);
  check(nc_inq_varid(ncid, "s", &varid), "varid");
  for (int r = 0; r < reps; ++r) {
    const double t0 = now();
    for (size_t k = 0; k < ELEMENT_CALLS; ++k) {
      const size_t index[2] = {elementRow(k), elementColumn(k)};
      const double value = (double)k;
      check(nc_put_var1_double(ncid, varid, index, &value), "put_var1");
    }
    printf("rep %.6f\n", now() - t0);
  }
  check(nc_close(ncid), "close");
}

static void readStrided(const char* path, int reps) {
  int ncid, varid;
  check(nc_open(path, NC_NOWRITE, &ncid), path);
  check(nc_inq_varid(ncid, "s", &varid), "varid");
  const size_t count[2] = {STRIDED_COUNT, STRIDED_COUNT};
  const ptrdiff_t stride[2] = {STRIDED_ROW_STEP, STRIDED_COLUMN_STEP};
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const double t0 = now();
    for (size_t k = 0; k < STRIDED_CALLS; ++k) {
      const size_t start[2] = {stridedRow(k), stridedColumn(k)};
      double block[STRIDED_COUNT * STRIDED_COUNT];
      check(nc_get_vars_double(ncid, varid, start, count, stride, block), "get_vars");
      for (size_t e = 0; e < STRIDED_COUNT * STRIDED_COUNT; ++e) sum += block[e];
    }
    printf("rep %.6f\n", now() - t0);
  }
  printf("check %.17g\n", sum);
  check(nc_close(ncid), "close");
}

static void scanMetadata(const char* path, int reps) {
  double chars = 0;
  for (int r = 0; r < reps; ++r) {
    chars = 0;
    const double t0 = now();
    int ncid, nvars;
    check(nc_open(path, NC_NOWRITE, &ncid), path);
    check(nc_inq_nvars(ncid, &nvars), "inq_nvars");
    for (int v = 0; v < nvars; ++v) {
      char name[NC_MAX_NAME + 1];
      nc_type xtype;
      int ndims, natts, dimids[NC_MAX_VAR_DIMS];
      check(nc_inq_var(ncid, v, name, &xtype, &ndims, dimids, &natts), "inq_var");
      for (int a = 0; a < natts; ++a) {
        char attName[NC_MAX_NAME + 1], text[256];
        size_t len;
        check(nc_inq_attname(ncid, v, a, attName), "inq_attname");
        check(nc_inq_att(ncid, v, attName, &xtype, &len), "inq_att");
        if (len > sizeof text) exit(2);
        check(nc_get_att_text(ncid, v, attName, text), "get_att_text");
        chars += (double)len;
      }
    }
    check(nc_close(ncid), "close");
    printf("rep %.6f\n", now() - t0);
  }
  printf("check %.17g\n", chars);
}

/* Every variable of every dataset listed in a file (one URL a line), each read whole in its
 * own type with the typed call netcdflib makes for it; all datasets opened anew in each
 * repetition. The check is the number of elements read. */
static void readRemote(const char* list, int reps) {
  char urls[128][512];
  size_t count = 0;
  FILE* in = fopen(list, "r");
  if (in == NULL) {
    perror(list);
    exit(2);
  }
  while (count < 128 && fscanf(in, "%511s", urls[count]) == 1) ++count;
  fclose(in);
  double elements = 0;
  for (int r = 0; r < reps; ++r) {
    elements = 0;
    const double t0 = now();
    for (size_t u = 0; u < count; ++u) {
      int ncid, nvars;
      check(nc_open(urls[u], NC_NOWRITE, &ncid), urls[u]);
      check(nc_inq_nvars(ncid, &nvars), "nvars");
      for (int v = 0; v < nvars; ++v) {
        nc_type type;
        int ndims, dims[NC_MAX_VAR_DIMS];
        check(nc_inq_var(ncid, v, NULL, &type, &ndims, dims, NULL), "inq_var");
        size_t n = 1, size = 0;
        for (int d = 0; d < ndims; ++d) {
          size_t length;
          check(nc_inq_dimlen(ncid, dims[d], &length), "dimlen");
          n *= length;
        }
        check(nc_inq_type(ncid, type, NULL, &size), "inq_type");
        void* data = allocOrDie(n * size + 1);
        int status;
        switch (type) {
          case NC_BYTE: status = nc_get_var_schar(ncid, v, data); break;
          case NC_CHAR: status = nc_get_var_text(ncid, v, data); break;
          case NC_SHORT: status = nc_get_var_short(ncid, v, data); break;
          case NC_INT: status = nc_get_var_int(ncid, v, data); break;
          case NC_FLOAT: status = nc_get_var_float(ncid, v, data); break;
          case NC_DOUBLE: status = nc_get_var_double(ncid, v, data); break;
          case NC_UBYTE: status = nc_get_var_uchar(ncid, v, data); break;
          case NC_USHORT: status = nc_get_var_ushort(ncid, v, data); break;
          case NC_UINT: status = nc_get_var_uint(ncid, v, data); break;
          case NC_INT64: status = nc_get_var_longlong(ncid, v, data); break;
          case NC_UINT64: status = nc_get_var_ulonglong(ncid, v, data); break;
          default: status = nc_get_var(ncid, v, data);
        }
        check(status, "get_var");
        free(data);
        elements += (double)n;
      }
      check(nc_close(ncid), "close");
    }
    printf("rep %.6f\n", now() - t0);
  }
  printf("check %.17g\n", elements);
}

int main(int argc, char** argv) {
  if (argc == 4 && strcmp(argv[1], "prepare") == 0) {
    prepare(argv[2], (size_t)atol(argv[3]));
    return 0;
  }
  if (argc != 4) {
    fprintf(stderr, "usage: %s prepare DIR MIB | WORKLOAD[@fresh|@thp|@touched] FILE REPS\n",
            argv[0]);
    return 2;
  }
  char workload[64];
  snprintf(workload, sizeof workload, "%s", argv[1]);
  enum Buffer kind = FRESH;
  char* variant = strchr(workload, '@');
  if (variant != NULL) {
    *variant++ = '\0';
    kind = strcmp(variant, "touched") == 0 ? TOUCHED : strcmp(variant, "thp") == 0 ? THP : FRESH;
  }
  const char* path = argv[2];
  const int reps = atoi(argv[3]);
  if (strcmp(workload, "read_whole") == 0) {
    readWhole(path, reps, kind);
  } else if (strcmp(workload, "read_slabs") == 0) {
    readSlabs(path, reps, kind);
  } else if (strcmp(workload, "read_deflate") == 0 || strcmp(workload, "read_zarr") == 0 ||
             strcmp(workload, "read_bzip2") == 0 || strcmp(workload, "read_quantize") == 0) {
    readWhole(path, reps, kind);
  } else if (strcmp(workload, "read_dap2") == 0) {
    readRemote(path, reps);
  } else if (strcmp(workload, "write_whole") == 0) {
    writeWhole(path, reps);
  } else if (strcmp(workload, "get1") == 0) {
    readElements(path, reps);
  } else if (strcmp(workload, "put1") == 0) {
    writeElements(path, reps);
  } else if (strcmp(workload, "strided") == 0) {
    readStrided(path, reps);
  } else if (strcmp(workload, "read_compound") == 0) {
    readCompound(path, reps, kind);
  } else if (strcmp(workload, "meta") == 0) {
    scanMetadata(path, reps);
  } else {
    fprintf(stderr, "unknown workload %s\n", workload);
    return 2;
  }
  return 0;
}
