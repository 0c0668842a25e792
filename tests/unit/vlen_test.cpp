// Variable-length data both ways, for every base type, nested two levels deep, through a
// real netCDF-4 file so that netCDF-C itself reads what we build and builds what we read.
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

using test::dimsOf;

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
void expectSameArray(const qvArray* expected, const qvArray* actual, const std::string& where) {
  ASSERT_EQ(expected == nullptr, actual == nullptr) << where;
  if (!expected) return;
  ASSERT_EQ(qvGetClassID(expected), qvGetClassID(actual)) << where;
  ASSERT_EQ(dimsOf(expected), dimsOf(actual)) << where;
  const std::size_t n = qvGetNumberOfElements(expected);
  switch (qvGetClassID(expected)) {
    case qvCELL_CLASS:
      for (std::size_t i = 0; i < n; ++i) {
        expectSameArray(qvGetCell(expected, i), qvGetCell(actual, i),
                        where + "{" + std::to_string(i) + "}");
      }
      break;
    case qvSTRING_CLASS: {
      const StringArrayView e = getString(expected), a = getString(actual);
      for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(e.at(i), a.at(i)) << where;
      break;
    }
    default:
      EXPECT_EQ(0, std::memcmp(qvGetData(expected), qvGetData(actual),
                               n * qvElementSize(qvGetClassID(expected))))
          << where;
  }
}

// Two records of a vlen-of-vlen of base: {{e(3), e(0)}, {e(1)}} where e(n) is an element
// of n values of the base.
qvArrayPtr nestedSample(nc_type base) {
  auto element = [base](std::size_t n) -> qvArrayPtr {
    if (base == NC_CHAR) return test::charRow(std::u16string(u"abc").substr(0, n));
    if (base == NC_STRING) {
      if (n == 0) return createStringArray(std::uint64_t{0}, std::uint64_t{0});
      qvArrayPtr s = createStringArray(n, 1);
      for (std::size_t k = 0; k < n; ++k)
        setStringElement(s.get(), k, u"t\u00e9xt" + std::u16string(k, u'!'));
      return s;
    }
    if (n == 0)
      return matrix::detail::do_create_numeric(std::vector<std::uint64_t>{0, 0}, *hostClassOf(base),
                                               qvREAL);
    return numberedColumn(*hostClassOf(base), n);
  };
  std::vector<qvArrayPtr> first;
  first.push_back(element(3));
  first.push_back(element(0));
  std::vector<qvArrayPtr> second;
  second.push_back(element(1));
  std::vector<qvArrayPtr> top;
  top.push_back(cellColumn(std::move(first)));
  top.push_back(cellColumn(std::move(second)));
  return cellColumn(std::move(top));
}

class VlenRoundTrip : public ::testing::TestWithParam<nc_type> {};

TEST_P(VlenRoundTrip, CellsSurviveNetcdfNestedTwoLevels) {
  const nc_type base = GetParam();
  test::ScratchDir dir;
  NcFile file(dir.file("vlen.nc"));
  nc_type inner = 0, outer = 0;
  int dim = 0, var = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "inner", base, &inner));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(file.ncid, "outer", inner, &outer));
  ASSERT_EQ(NC_NOERR, nc_def_dim(file.ncid, "n", 2, &dim));
  ASSERT_EQ(NC_NOERR, nc_def_var(file.ncid, "v", outer, 1, &dim, &var));

  const qvArrayPtr cells = nestedSample(base);
  {
    VlenRecords records(file.ncid, inner, cells.get());
    ASSERT_EQ(2u, records.size());
    ASSERT_EQ(NC_NOERR, nc_put_var(file.ncid, var, records.data()));
  }
  NetcdfVlenBuffer read(2, file.ncid, outer);
  ASSERT_EQ(NC_NOERR, nc_get_var(file.ncid, var, read.data()));
  read.markFilled();
  const qvArrayPtr back = vlenToCells(file.ncid, inner, read.data(), 2, {2, 1});
  expectSameArray(cells.get(), back.get(), "v");
  EXPECT_EQ(NC_NOERR, read.free());
}

INSTANTIATE_TEST_SUITE_P(EveryBaseType, VlenRoundTrip,
                         ::testing::Values(NC_BYTE, NC_CHAR, NC_SHORT, NC_INT, NC_FLOAT, NC_DOUBLE,
                                           NC_UBYTE, NC_USHORT, NC_UINT, NC_INT64, NC_UINT64,
                                           NC_STRING));

TEST(VlenRecords, NumericElementsAreNotCopied) {
  std::vector<qvArrayPtr> elems;
  elems.push_back(numberedColumn(qvINT32_CLASS, 4));
  elems.push_back(nullptr);
  const qvArrayPtr cells = cellColumn(std::move(elems));
  VlenRecords records(0, NC_INT, cells.get());
  EXPECT_EQ(qvGetData(qvGetCell(cells.get(), 0)), records.data()[0].p);
  EXPECT_EQ(4u, records.data()[0].len);
  EXPECT_EQ(0u, records.data()[1].len);
}

TEST(VlenRecords, CharElementsKeepTheLowByte) {
  std::vector<qvArrayPtr> elems;
  elems.push_back(test::charRow(u"a\u00e9\u0141"));
  const qvArrayPtr cells = cellColumn(std::move(elems));
  VlenRecords records(0, NC_CHAR, cells.get());
  ASSERT_EQ(3u, records.data()[0].len);
  EXPECT_EQ(std::string("a\xE9\x41"),
            std::string(static_cast<const char*>(records.data()[0].p), 3));
}

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

// Nothing is read from an empty element, so any class will do; Octave hands an empty list
// of strings over as an empty cell.
TEST(VlenRecords, EmptyElementsOfAnyClassAreEmptyRecords) {
  for (const nc_type base : {NC_INT, NC_CHAR, NC_STRING}) {
    std::vector<qvArrayPtr> elems;
    elems.push_back(cellColumn({}));
    elems.push_back(test::zeros(qvDOUBLE_CLASS, {0, 0}));
    elems.push_back(createStringArray(std::uint64_t{0}, std::uint64_t{0}));
    const qvArrayPtr cells = cellColumn(std::move(elems));
    VlenRecords records(0, base, cells.get());
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(0u, records.data()[i].len) << base << " " << i;
  }
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
