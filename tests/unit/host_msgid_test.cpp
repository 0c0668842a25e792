// The message catalogue, message-ID errors and warnings.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qvhost/qvhost.hpp"

namespace {

using resource_core::BaseMsgID;
using resource_core::MsgArg;

struct CatalogueCase {
  const char* component;
  const char* identifier;
  std::vector<MsgArg> args;
};

// Every identifier the library raises, with distinctive arguments of the right kinds.
const std::vector<CatalogueCase>& allIdentifiers() {
  const char* n = "QUARNA:imagesci:netcdf";
  const char* v = "QUARNA:imagesci:validate";
  static const std::vector<CatalogueCase> cases = {
      {n, "argumentHasBadDatatype", {std::string("START")}},
      {n, "argumentIsEmpty", {std::string("COUNT")}},
      {n, "argumentIsEmptySet", {std::string("MODE")}},
      {v, "argumentOutOfBounds", {}},
      {n, "argumentWasNotChar", {std::string("variable")}},
      {n, "attemptedChecksumInquiryOnNetcdf3File", {}},
      {n, "attemptedChunkingInquiryOnNetcdf3File", {}},
      {n, "badIndexArgumentLength", {std::string("STRIDE"), std::string("Température"), 3L, 7L}},
      {n, "badModeDatatype", {}},
      {n, "badRowDatatype", {std::string("dimids")}},
      {n, "badScalarArgument", {std::string("FILLVALUE"), std::string("7-bit ASCII char")}},
      {n, "countNotEqualToData", {12L, 31L}},
      {n, "dataSizeMismatch", {}},
      {n, "emptyVariableData", {}},
      {n, "expectedLogicalType", {std::string("include_parents flag")}},
      {n, "fileCreateErr", {}},
      {n, "fileOverwriteErr", {}},
      {n, "fillValueBadArgument", {}},
      {n, "formatConstraintsViolation", {}},
      {n, "incompleteArgsForUnlimitedDimensions", {}},
      {n, "indexArgumentNotFinite", {}},
      {n, "inqVarNcGlobal", {}},
      {n, "invalidCharErr", {}},
      {n, "invalidChunkParameter", {2L, 3L}},
      {n, "invalidNaNInfForIntegerType", {std::string("chunk dims")}},
      {n,
       "libraryFailure",
       {std::string("open"), std::string("NC_ENOTNC"), std::string("Unknown file format")}},
      {n,
       "librarydapFailure",
       {std::string("open"), std::string("NC_EDAPSVC"), std::string("DAP server error")}},
      {n, "nameContainsNul", {std::string("file")}},
      {n, "rowLengthOutOfBounds", {std::string("dimids"), 1024L}},
      {n, "unhandledAttributeOperation", {std::string("getAttWeird")}},
      {n, "unhandledFillDatatype", {-13L}},
      {n, "unknownNetCDFFormat", {5L}},
      {n, "unrecognizedCharParameter", {std::string("NC_FOO")}},
      {n, "unrecognizedChunkStorage", {}},
      {n, "unrecognizedChunkingCode", {4L}},
      {n, "unrecognizedFileMode", {std::string("NC_NOCLOBBER ")}},
      {n, "unrecognizedFletcher32Setting", {9L}},
      {n, "unrecognizedOperation", {std::string("Open")}},
      {n, "unrecognizedVarDatatype", {33L}},
      {v, "tooManyOutputs", {std::string("close"), 0L}},
      {v, "wrongNumberOfInputs", {}},
      {"QUARNA:string", "MissingNotSupported", {}},
      {n, "closingFileHandle", {}},
  };
  return cases;
}

std::u16string argText(const MsgArg& a) {
  if (const auto* l = std::get_if<long>(&a)) return utf8_to_ustring(std::to_string(*l).c_str());
  if (const auto* s = std::get_if<std::string>(&a)) return utf8_to_ustring(s->c_str());
  return std::get<std::u16string>(a);
}

TEST(HostCatalogue, EveryIdentifierHasATextWithItsArguments) {
  EXPECT_EQ(allIdentifiers().size(), 43u);
  for (const auto& c : allIdentifiers()) {
    const BaseMsgID id(c.component, c.identifier, c.args);
    SCOPED_TRACE(id.fullIdentifier());
    EXPECT_TRUE(resource_core::catalogueHas(id.fullIdentifier()));
    const std::u16string text = resource_core::messageText(id);
    EXPECT_GT(text.size(), 20u);
    EXPECT_EQ(text.find(u'{'), std::u16string::npos);
    EXPECT_EQ(text.find(u"Unknown message identifier"), std::u16string::npos);
    for (const auto& a : c.args) EXPECT_NE(text.find(argText(a)), std::u16string::npos);
  }
}

TEST(HostCatalogue, ArgumentsLandInTheirPlaces) {
  const BaseMsgID failure(
      "QUARNA:imagesci:netcdf", "libraryFailure",
      {std::string("inqVar"), std::string("NC_ENOTVAR"), std::string("Variable not found")});
  const std::u16string text = resource_core::messageText(failure);
  const auto op = text.find(u"inqVar"), msg = text.find(u"Variable not found"),
             name = text.find(u"NC_ENOTVAR");
  EXPECT_LT(op, msg);
  EXPECT_LT(msg, name);
  const BaseMsgID wide("QUARNA:imagesci:netcdf", "argumentWasNotChar", {std::u16string(u"\u263A")});
  EXPECT_NE(resource_core::messageText(wide).find(u'\u263A'), std::u16string::npos);
}

// Texts true in every use: an index length error says what each number is, a class error
// does not claim numeric data was not numeric.
TEST(HostCatalogue, TextsSayWhatTheirArgumentsAre) {
  const BaseMsgID length("QUARNA:imagesci:netcdf", "badIndexArgumentLength",
                         {std::string("COUNT"), std::string("v"), 2L, 2L});
  const std::u16string lengthText = resource_core::messageText(length);
  EXPECT_EQ(lengthText.find(u"expected 2, found 2"), std::u16string::npos);
  EXPECT_NE(lengthText.find(u"(2 dimensions; 2 is the length of START when reading"),
            std::u16string::npos);
  const BaseMsgID datatype("QUARNA:imagesci:netcdf", "argumentHasBadDatatype", {std::string("data")});
  const std::u16string datatypeText = resource_core::messageText(datatype);
  EXPECT_EQ(datatypeText.find(u"must be numeric;"), std::u16string::npos);
  EXPECT_NE(datatypeText.find(u"of the class the operation names"), std::u16string::npos);
}

TEST(HostCatalogue, UnknownIdentifiersGetAGenericText) {
  EXPECT_FALSE(resource_core::catalogueHas("QUARNA:imagesci:netcdf:noSuchThing"));
  const BaseMsgID id("QUARNA:imagesci:netcdf", "noSuchThing", {std::string("abc"), 42L});
  const std::u16string text = resource_core::messageText(id);
  for (const std::u16string part : {u"QUARNA:imagesci:netcdf:noSuchThing", u"abc", u"42"}) {
    EXPECT_NE(text.find(part), std::u16string::npos);
  }
}

struct BadArg : BaseMsgID {
  explicit BadArg(std::string name)
      : BaseMsgID("QUARNA:imagesci:netcdf", "argumentWasNotChar", {std::move(name)}) {}
};

TEST(HostErrors, QvErrMsgIdThrowsTheIdentifiersException) {
  using foundation::core::except::Exception;
  using foundation::core::except::IMsgIDException;
  try {
    qvErrMsgId(BadArg("ncid"));
    FAIL() << "qvErrMsgId returned";
  } catch (const Exception<BadArg>& e) {
    EXPECT_EQ(e.identifier().arguments().size(), 1u);
  }
  try {
    qvErrMsgId(BadArg("ncid"));
  } catch (const IMsgIDException& e) {
    EXPECT_EQ(e.get_error_id(), "QUARNA:imagesci:netcdf:argumentWasNotChar");
    EXPECT_EQ(e.GetUnicodeMessageTxt(), resource_core::messageText(BadArg("ncid")));
    EXPECT_NE(e.GetUnicodeMessageTxt().find(u"ncid"), std::u16string::npos);
  }
  try {
    qvErrMsgId(BadArg("ncid"));
  } catch (const std::exception& e) {
    const std::string what = e.what();
    EXPECT_EQ(what.rfind("QUARNA:imagesci:netcdf:argumentWasNotChar: ", 0), 0u) << what;
    EXPECT_NE(what.find("ncid"), std::string::npos);
  }
}

TEST(HostWarnings, HandlerSeesIdentifierAndText) {
  std::vector<std::pair<std::string, std::u16string>> seen;
  qvWarningHandler previous =
      qvSetWarningHandler([&seen](const BaseMsgID& id, const std::u16string& text) {
        seen.emplace_back(id.fullIdentifier(), text);
      });
  const BaseMsgID warning("QUARNA:imagesci:netcdf", "closingFileHandle");
  qvWarningMsgId(warning);
  qvWarningHandler mine = qvSetWarningHandler(std::move(previous));
  EXPECT_TRUE(static_cast<bool>(mine));
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].first, "QUARNA:imagesci:netcdf:closingFileHandle");
  EXPECT_EQ(seen[0].second, resource_core::messageText(warning));
  qvWarningMsgId(warning);  // the handler is gone again
  EXPECT_EQ(seen.size(), 1u);
}

TEST(HostWarnings, DefaultGoesToStandardError) {
  qvWarningHandler previous = qvSetWarningHandler(nullptr);
  testing::internal::CaptureStderr();
  const BaseMsgID warning("QUARNA:imagesci:netcdf", "closingFileHandle");
  qvWarningMsgId(warning);
  const std::string err = testing::internal::GetCapturedStderr();
  qvSetWarningHandler(std::move(previous));
  EXPECT_EQ(err.rfind("Warning: ", 0), 0u) << err;
  EXPECT_NE(err.find("closing"), std::string::npos) << err;
}

}  // namespace
