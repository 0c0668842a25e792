// Variable-length data that cannot be converted: refused before netCDF-C sees it, and
// everything converted up to the failure released (the sanitizer build checks that).
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstring>
#include <string>

#include "convert/nc_buffers.hpp"
#include "convert/types.hpp"
#include "convert/vlen.hpp"
#include "qvhost/msgid.hpp"
#include "qvhost/strings.hpp"
#include "test_support.hpp"

namespace {

struct NcFile {
  int ncid = -1;
  explicit NcFile(const std::string& path) {
    if (nc_create(path.c_str(), NC_NETCDF4 | NC_CLOBBER, &ncid) != NC_NOERR)
      throw std::runtime_error(path);
  }
  ~NcFile() { nc_close(ncid); }
};

// A column of n elements of cls whose element k holds k + 1 (in the class's type).
qvArrayPtr numberedColumn(qvClassID cls, std::size_t n) {
  qvArrayPtr a = matrix::detail::do_create_numeric(std::vector<std::uint64_t>{n, 1}, cls, qvREAL);
  auto* bytes = static_cast<unsigned char*>(qvGetData(a.get()));
  const std::size_t width = qvElementSize(cls);
  for (std::size_t k = 0; k < n; ++k) {
    // Small values: the same bit pattern for every integer class; floats get their own.
    if (cls == qvDOUBLE_CLASS) {
      const double v = double(k) + 1.5;
      std::memcpy(bytes + k * width, &v, width);
    } else if (cls == qvSINGLE_CLASS) {
      const float v = float(k) + 1.5f;
      std::memcpy(bytes + k * width, &v, width);
    } else {
      bytes[k * width] = static_cast<unsigned char>(k + 1);
    }
  }
  return a;
}

qvArrayPtr stringColumn(std::initializer_list<std::u16string> texts) {
  qvArrayPtr s = createStringArray(texts.size(), 1);
  std::size_t i = 0;
  for (const auto& t : texts) setStringElement(s.get(), i++, t);
  return s;
}

qvArrayPtr cellColumn(std::vector<qvArrayPtr> elements) {
  qvArrayPtr c = matrix::detail::do_create_cell(std::vector<std::uint64_t>{elements.size(), 1});
  for (std::size_t i = 0; i < elements.size(); ++i) qvSetCell(c.get(), i, std::move(elements[i]));
  return c;
}

// Deep equality of two host arrays: class, dimensions and contents.
std::string raisedId(const std::function<void()>& f) {
  const auto caught = test::catchMsgId(f);
  return caught ? caught->id : "nothing raised";
}

TEST(VlenRecords, RefusesWhatNetcdfWouldMisread) {
  std::vector<qvArrayPtr> narrow;
  narrow.push_back(numberedColumn(qvINT8_CLASS, 4));  // 4 bytes where 4 ints are expected
  const qvArrayPtr narrowCells = cellColumn(std::move(narrow));
  EXPECT_EQ("QUARNA:imagesci:netcdf:argumentHasBadDatatype",
            raisedId([&] { VlenRecords(0, NC_INT, narrowCells.get()); }));

  qvArrayPtr withMissing = stringColumn({u"a", u"b"});
  setStringMissing(withMissing.get(), 1);
  std::vector<qvArrayPtr> strings;
  strings.push_back(std::move(withMissing));
  const qvArrayPtr stringCells = cellColumn(std::move(strings));
  EXPECT_EQ("QUARNA:string:MissingNotSupported",
            raisedId([&] { VlenRecords(0, NC_STRING, stringCells.get()); }));

  std::vector<qvArrayPtr> notStrings;
  notStrings.push_back(test::charRow(u"abc"));
  const qvArrayPtr charCells = cellColumn(std::move(notStrings));
  EXPECT_EQ("QUARNA:imagesci:netcdf:argumentHasBadDatatype",
            raisedId([&] { VlenRecords(0, NC_STRING, charCells.get()); }));
}

// What Octave cannot build: a failure deep in a later record, after earlier records have
// their nested levels and converted texts. The sanitizer build checks that all of it is
// released.
TEST(VlenRecords, PartlyConvertedTreeIsReleasedOnFailure) {
  test::ScratchDir dir;
  NcFile file(dir.file("partial.nc"));
  nc_type texts = 0, ints = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "texts", NC_STRING, &texts));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "ints", NC_INT, &ints));

  qvArrayPtr withMissing = stringColumn({u"d", u"e"});
  setStringMissing(withMissing.get(), 1);
  std::vector<qvArrayPtr> first, second, top;
  first.push_back(stringColumn({u"a", u"b\u00e9"}));
  first.push_back(stringColumn({u"c"}));
  second.push_back(stringColumn({u"x"}));
  second.push_back(std::move(withMissing));
  top.push_back(cellColumn(std::move(first)));
  top.push_back(cellColumn(std::move(second)));
  const qvArrayPtr strings = cellColumn(std::move(top));
  EXPECT_EQ("QUARNA:string:MissingNotSupported",
            raisedId([&] { VlenRecords(file.ncid, texts, strings.get()); }));

  std::vector<qvArrayPtr> good, bad, cells;
  good.push_back(numberedColumn(qvINT32_CLASS, 3));
  bad.push_back(numberedColumn(qvINT32_CLASS, 2));
  bad.push_back(numberedColumn(qvDOUBLE_CLASS, 2));
  cells.push_back(cellColumn(std::move(good)));
  cells.push_back(cellColumn(std::move(bad)));
  const qvArrayPtr numbers = cellColumn(std::move(cells));
  EXPECT_EQ("QUARNA:imagesci:netcdf:argumentHasBadDatatype",
            raisedId([&] { VlenRecords(file.ncid, ints, numbers.get()); }));
}

// A read that fails half way, on a compound type inside the second record, releases the
// cells built for the first and everything netCDF-C allocated.
TEST(VlenToCells, PartlyConvertedReadIsReleasedOnFailure) {
  test::ScratchDir dir;
  NcFile file(dir.file("partial_read.nc"));
  nc_type compound = 0, ofCompound = 0, outer = 0;
  int dim = 0, var = 0;
  ASSERT_EQ(NC_NOERR, nc_def_compound(file.ncid, sizeof(int), "c", &compound));
  ASSERT_EQ(NC_NOERR, nc_insert_compound(file.ncid, compound, "x", 0, NC_INT));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "vc", compound, &ofCompound));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "vvc", ofCompound, &outer));
  ASSERT_EQ(NC_NOERR, nc_def_dim(file.ncid, "n", 2, &dim));
  ASSERT_EQ(NC_NOERR, nc_def_var(file.ncid, "v", outer, 1, &dim, &var));
  int value = 5;
  nc_vlen_t inner{1, &value};
  nc_vlen_t records[2] = {{0, nullptr}, {1, &inner}};
  ASSERT_EQ(NC_NOERR, nc_put_var(file.ncid, var, records));
  const qvArrayPtr ncid = test::scalar<double>(file.ncid), varid = test::scalar<double>(var);
  EXPECT_MSGID(test::call("getVarVlen", {ncid.get(), varid.get()}),
               "QUARNA:imagesci:netcdf:unrecognizedVarDatatype", test::args(compound));
}

}  // namespace
