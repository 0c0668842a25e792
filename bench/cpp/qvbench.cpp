// Implementation (b): the workloads through netcdflib, called from C++ with host arrays
// of the substitute host. Arguments that do not change between calls are made once, as a
// host keeps its values; index vectors that do change are rewritten in place, so that
// the per-call figures are the gateway's own cost.
//
//   qvbench WORKLOAD FILE REPS     prints "rep SECONDS" per repetition and "check SUM"
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "netcdflib.hpp"
#include "ncbench_common.h"
#include "qvhost/qvhost.hpp"

namespace {

using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

qvArrayPtr text(const std::string& s) { return matrix::create(s.data(), s.size()); }

qvArrayPtr doubles(std::initializer_list<double> values) {
  const std::array<std::uint64_t, 2> dims{1, values.size()};
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(dims, qvDOUBLE_CLASS, qvREAL);
  auto* out = static_cast<double*>(qvGetData(a.get()));
  for (double v : values) *out++ = v;
  return a;
}

double* elements(const qvArrayPtr& a) { return static_cast<double*>(qvGetData(a.get())); }

// One operation with its name made once; call() passes the inputs and returns the outputs.
class Operation {
 public:
  explicit Operation(const std::string& name) : name_(text(name)) {}
  Outputs call(std::initializer_list<const qvArray*> arguments, int nlhs = 1) const {
    std::array<const qvArray*, 8> prhs{};
    prhs[0] = name_.get();
    std::size_t n = 1;
    for (const qvArray* a : arguments) prhs[n++] = a;
    Outputs out;
    netcdflib(nlhs, out.data(), static_cast<int>(n), prhs.data());
    return out;
  }

 private:
  qvArrayPtr name_;
};

double seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

void report(double t) { std::printf("rep %.6f\n", t); }

double number(const qvArrayPtr& a) { return *elements(a); }

// An open file and one of its variables, closed at the end of the scope.
class OpenVariable {
 public:
  OpenVariable(const std::string& path, const char* mode, const char* variable) {
    const auto path_ = text(path), mode_ = text(mode), name = text(variable);
    ncid_ = std::move(Operation("open").call({path_.get(), mode_.get()})[0]);
    varid_ = std::move(Operation("inqVarID").call({ncid_.get(), name.get()})[0]);
  }
  ~OpenVariable() { Operation("close").call({ncid_.get()}, 0); }
  OpenVariable(const OpenVariable&) = delete;
  OpenVariable& operator=(const OpenVariable&) = delete;
  const qvArray* ncid() const { return ncid_.get(); }
  const qvArray* varid() const { return varid_.get(); }
  // Host-order extents: columns first.
  std::pair<double, double> extents() const {
    const auto out = Operation("inqVar").call({ncid_.get(), varid_.get()}, 4);
    const double* dimids = elements(out[2]);
    const Operation inqDim("inqDim");
    const auto rows = inqDim.call({ncid_.get(), doubles({dimids[1]}).get()}, 2);
    const auto columns = inqDim.call({ncid_.get(), doubles({dimids[0]}).get()}, 2);
    return {number(columns[1]), number(rows[1])};
  }

 private:
  qvArrayPtr ncid_, varid_;
};

const char* bulkVariable(const std::string& path) {
  return path.find("/big") != std::string::npos ? "x" : "f";
}

void readWhole(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_NOWRITE", bulkVariable(path));
  const bool single = std::string(bulkVariable(path)) == "f";
  const Operation read(single ? "getVarFloat" : "getVarDouble");
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    const auto t0 = std::chrono::steady_clock::now();
    Outputs out = read.call({v.ncid(), v.varid()});
    report(seconds(t0));
    const std::size_t n = qvGetNumberOfElements(out[0].get());
    if (single) {
      const auto* f = static_cast<const float*>(qvGetData(out[0].get()));
      sum = double(f[0]) + double(f[n / 2]) + double(f[n - 1]);
    } else {
      const double* d = elements(out[0]);
      sum = d[0] + d[n / 2] + d[n - 1];
    }
  }
  std::printf("check %.17g\n", sum);
}

void readCompound(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_NOWRITE", "c");
  const Operation read("getVar");
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    const auto t0 = std::chrono::steady_clock::now();
    Outputs out = read.call({v.ncid(), v.varid()});
    report(seconds(t0));
    const qvArray* s = out[0].get();
    const auto field = [&](std::size_t k) { return qvGetData(qvGetFieldByNumber(s, 0, k)); };
    const std::size_t n = qvGetNumberOfElements(qvGetFieldByNumber(s, 0, 0));
    sum = static_cast<const double*>(field(0))[0] +
          double(static_cast<const float*>(field(1))[n / 2]) +
          double(static_cast<const int*>(field(2))[n - 1]) +
          double(static_cast<const short*>(field(3))[4 * (n - 1) + 3]);
  }
  std::printf("check %.17g\n", sum);
}

void readSlabs(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_NOWRITE", "x");
  const auto [columns, rows] = v.extents();
  const double slabRows = rows / double(BENCH_SLABS);
  const Operation read("getVaraDouble");
  const qvArrayPtr start = doubles({0, 0}), count = doubles({columns, slabRows});
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (std::size_t s = 0; s < BENCH_SLABS; ++s) {
      elements(start)[1] = double(s) * slabRows;
      Outputs out = read.call({v.ncid(), v.varid(), start.get(), count.get()});
      sum += elements(out[0])[qvGetNumberOfElements(out[0].get()) - 1];
    }
    report(seconds(t0));
  }
  std::printf("check %.17g\n", sum);
}

void syncFile(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDWR);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

void writeWhole(const std::string& path, int reps) {
  double columns = 0, rows = 0;
  qvArrayPtr varid;
  {
    const OpenVariable v(path, "NC_NOWRITE", "x");
    std::tie(columns, rows) = v.extents();
    varid = qvShareArray(v.varid());
  }
  const std::array<std::uint64_t, 2> dims{std::uint64_t(columns), std::uint64_t(rows)};
  const qvArrayPtr data = matrix::detail::do_create_uninitnumeric(dims, qvDOUBLE_CLASS, qvREAL);
  std::fill_n(elements(data), qvGetNumberOfElements(data.get()), 1.0);
  const Operation open("open"), write("putVarDouble"), close("close");
  const qvArrayPtr file = text(path), mode = text("NC_WRITE");
  for (int r = 0; r < reps; ++r) {
    const qvArrayPtr ncid = std::move(open.call({file.get(), mode.get()})[0]);
    const auto t0 = std::chrono::steady_clock::now();
    write.call({ncid.get(), varid.get(), data.get()}, 0);
    close.call({ncid.get()}, 0);
    report(seconds(t0));
    syncFile(path);
  }
}

void readElements(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_NOWRITE", "s");
  const Operation read("getVar1Double");
  const qvArrayPtr start = doubles({0, 0});
  double* index = elements(start);
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (std::size_t k = 0; k < ELEMENT_CALLS; ++k) {
      index[0] = double(elementColumn(k));
      index[1] = double(elementRow(k));
      sum += number(read.call({v.ncid(), v.varid(), start.get()})[0]);
    }
    report(seconds(t0));
  }
  std::printf("check %.17g\n", sum);
}

void writeElements(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_WRITE", "s");
  const Operation write("putVar1Double");
  const qvArrayPtr start = doubles({0, 0}), value = doubles({0});
  double* index = elements(start);
  for (int r = 0; r < reps; ++r) {
    const auto t0 = std::chrono::steady_clock::now();
    for (std::size_t k = 0; k < ELEMENT_CALLS; ++k) {
      index[0] = double(elementColumn(k));
      index[1] = double(elementRow(k));
      *elements(value) = double(k);
      write.call({v.ncid(), v.varid(), start.get(), value.get()}, 0);
    }
    report(seconds(t0));
  }
}

void readStrided(const std::string& path, int reps) {
  const OpenVariable v(path, "NC_NOWRITE", "s");
  const Operation read("getVarsDouble");
  const double c = double(STRIDED_COUNT);
  const qvArrayPtr start = doubles({0, 0}), count = doubles({c, c}),
                   stride = doubles({STRIDED_COLUMN_STEP, STRIDED_ROW_STEP});
  double* index = elements(start);
  double sum = 0;
  for (int r = 0; r < reps; ++r) {
    sum = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (std::size_t k = 0; k < STRIDED_CALLS; ++k) {
      index[0] = double(stridedColumn(k));
      index[1] = double(stridedRow(k));
      Outputs out = read.call({v.ncid(), v.varid(), start.get(), count.get(), stride.get()});
      const double* block = elements(out[0]);
      for (std::size_t e = 0; e < STRIDED_COUNT * STRIDED_COUNT; ++e) sum += block[e];
    }
    report(seconds(t0));
  }
  std::printf("check %.17g\n", sum);
}

void scanMetadata(const std::string& path, int reps) {
  const Operation open("open"), close("close"), inq("inq"), inqVar("inqVar"),
      inqAttName("inqAttName"), inqAtt("inqAtt"), getAttText("getAttText");
  const qvArrayPtr file = text(path), mode = text("NC_NOWRITE");
  double chars = 0;
  for (int r = 0; r < reps; ++r) {
    chars = 0;
    const auto t0 = std::chrono::steady_clock::now();
    const qvArrayPtr ncid = std::move(open.call({file.get(), mode.get()})[0]);
    const int nvars = int(number(inq.call({ncid.get()}, 4)[1]));
    for (int v = 0; v < nvars; ++v) {
      const qvArrayPtr varid = doubles({double(v)});
      const auto info = inqVar.call({ncid.get(), varid.get()}, 4);
      const int natts = int(number(info[3]));
      for (int a = 0; a < natts; ++a) {
        const qvArrayPtr attnum = doubles({double(a)});
        const qvArrayPtr name =
            std::move(inqAttName.call({ncid.get(), varid.get(), attnum.get()})[0]);
        inqAtt.call({ncid.get(), varid.get(), name.get()}, 2);
        const auto value = getAttText.call({ncid.get(), varid.get(), name.get()});
        chars += double(qvGetNumberOfElements(value[0].get()));
      }
    }
    close.call({ncid.get()}, 0);
    report(seconds(t0));
  }
  std::printf("check %.17g\n", chars);
}

// Every variable of every dataset listed in the file (one URL a line), each read whole in
// its own type; all datasets opened anew in each repetition. The check counts elements.
void readRemote(const std::string& list, int reps) {
  std::vector<std::string> urls;
  char url[512];
  FILE* in = std::fopen(list.c_str(), "r");
  if (in == nullptr) throw std::runtime_error(list);
  while (std::fscanf(in, "%511s", url) == 1) urls.emplace_back(url);
  std::fclose(in);
  const Operation open("open"), close("close"), inq("inq"), inqVar("inqVar");
  std::vector<Operation> read;
  for (const char* type : {"Schar", "Text", "Short", "Int", "Float", "Double", "Uchar", "Ushort",
                           "Uint", "Int64", "Uint64"}) {
    read.emplace_back(std::string("getVar") + type);
  }
  const qvArrayPtr mode = text("NC_NOWRITE");
  double count = 0;
  for (int r = 0; r < reps; ++r) {
    count = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (const std::string& u : urls) {
      const qvArrayPtr file = text(u);
      const qvArrayPtr ncid = std::move(open.call({file.get(), mode.get()})[0]);
      const int nvars = int(number(inq.call({ncid.get()}, 4)[1]));
      for (int v = 0; v < nvars; ++v) {
        const qvArrayPtr varid = doubles({double(v)});
        const int xtype = int(number(inqVar.call({ncid.get(), varid.get()}, 2)[1]));
        const auto data = read.at(std::size_t(xtype - 1)).call({ncid.get(), varid.get()});
        count += double(qvGetNumberOfElements(data[0].get()));
      }
      close.call({ncid.get()}, 0);
    }
    report(seconds(t0));
  }
  std::printf("check %.17g\n", count);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s WORKLOAD FILE REPS\n", argv[0]);
    return 2;
  }
  const std::map<std::string, std::function<void(const std::string&, int)>> workloads{
      {"read_whole", readWhole},   {"read_slabs", readSlabs},     {"read_deflate", readWhole},
      {"read_bzip2", readWhole},   {"read_quantize", readWhole},  {"read_zarr", readWhole},
      {"read_dap2", readRemote},   {"write_whole", writeWhole},   {"get1", readElements},
      {"put1", writeElements},     {"strided", readStrided},      {"meta", scanMetadata},
      {"read_compound", readCompound}};
  const auto found = workloads.find(argv[1]);
  if (found == workloads.end()) {
    std::fprintf(stderr, "unknown workload %s\n", argv[1]);
    return 2;
  }
  try {
    found->second(argv[2], std::atoi(argv[3]));
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::fprintf(stderr, "netcdflib failed: %s\n", e.get_error_id().c_str());
    return 1;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "failed: %s\n", e.what());
    return 1;
  }
  return 0;
}
