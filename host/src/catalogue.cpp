// The host's English message catalogue and argument substitution. Texts are UTF-8 with
// placeholders {1}, {2}, ... naming the arguments in order.
#include <map>
#include <string_view>

#include "qvhost/msgid.hpp"
#include "qvhost/text.hpp"

namespace {

using Catalogue = std::map<std::string_view, std::string_view, std::less<>>;

const Catalogue& catalogue() {
  static const Catalogue entries = {
      // QUARNA:imagesci:netcdf
      {"QUARNA:imagesci:netcdf:argumentHasBadDatatype",
       "The '{1}' argument has a class this operation cannot take: index arguments must be "
       "numeric, numeric data must be of the class the operation names (double for "
       "putVarDouble, ...), variable-length data a cell, string data a string array."},
      {"QUARNA:imagesci:netcdf:argumentIsEmpty",
       "The '{1}' argument must not be empty: give one index per dimension of the variable."},
      {"QUARNA:imagesci:netcdf:argumentIsEmptySet", "The '{1}' argument must not be empty."},
      {"QUARNA:imagesci:netcdf:argumentWasNotChar",
       "The '{1}' argument must be a character vector."},
      {"QUARNA:imagesci:netcdf:argumentNotOfKind", "The '{1}' argument must be {2}."},
      {"QUARNA:imagesci:netcdf:attemptedChecksumInquiryOnNetcdf3File",
       "Checksum settings cannot be inquired of a variable in a netCDF-3 file: Fletcher-32 "
       "checksums exist only in netCDF-4 files."},
      {"QUARNA:imagesci:netcdf:attemptedChunkingInquiryOnNetcdf3File",
       "Chunking cannot be inquired of a variable in a netCDF-3 file: chunked storage exists "
       "only in netCDF-4 files."},
      {"QUARNA:imagesci:netcdf:badIndexArgumentLength",
       "The {1} argument must have one element per dimension of variable '{2}' ({3} "
       "dimensions; {4} is the length of START when reading, of {1} when writing)."},
      {"QUARNA:imagesci:netcdf:badModeDatatype",
       "The file mode must be a character vector of mode names or a double or int32 mode "
       "value."},
      {"QUARNA:imagesci:netcdf:badRowDatatype",
       "The '{1}' argument must be a row vector of class double."},
      {"QUARNA:imagesci:netcdf:badScalarArgument", "The '{1}' argument must be a {2} scalar."},
      {"QUARNA:imagesci:netcdf:countNotEqualToData",
       "The number of elements requested by COUNT ({1}) does not equal the number of elements "
       "in the data ({2})."},
      {"QUARNA:imagesci:netcdf:dataElementCountMismatch",
       "'{1}' must hold {2} elements for the selection written, found {3}."},
      {"QUARNA:imagesci:netcdf:dataFieldsMismatch",
       "'{1}' must be a 1-by-1 struct with the fields of compound type '{2}', in this order: "
       "{3}."},
      {"QUARNA:imagesci:netcdf:dataHasBadClass",
       "'{1}' must be of class {2}, the class of its netCDF type; convert it first or use a "
       "typed operation."},
      {"QUARNA:imagesci:netcdf:dataSizeMismatch",
       "The number of elements in the data does not match the size of the variable. Give data "
       "with as many elements as the variable, or write a subset with START and COUNT."},
      {"QUARNA:imagesci:netcdf:emptyVariableData",
       "The data to write is empty; give at least one element."},
      {"QUARNA:imagesci:netcdf:expectedLogicalType",
       "The '{1}' argument must be a logical scalar (true or false)."},
      {"QUARNA:imagesci:netcdf:fileCreateErr",
       "The file could not be created. Check that its folder exists and is writable and that "
       "the file name is valid."},
      {"QUARNA:imagesci:netcdf:fileOverwriteErr",
       "The file already exists and the NOCLOBBER mode forbids overwriting it. Choose another "
       "name, delete the file, or create it with the CLOBBER mode."},
      {"QUARNA:imagesci:netcdf:fillValueBadArgument",
       "The fill value must be a numeric scalar (exactly one element)."},
      {"QUARNA:imagesci:netcdf:formatConstraintsViolation",
       "The operation exceeds a size limit of the file's format (for example a variable too "
       "large for a classic or 64-bit offset file). Use a netCDF-4 format for larger "
       "variables."},
      {"QUARNA:imagesci:netcdf:incompleteArgsForUnlimitedDimensions",
       "The variable has a dimension of length zero (an unlimited dimension without records), "
       "so a whole-variable write cannot size it. Write with START and COUNT instead."},
      {"QUARNA:imagesci:netcdf:indexArgumentNotFinite",
       "Index arguments must be finite: NaN and Inf are not valid indices."},
      {"QUARNA:imagesci:netcdf:inqVarNcGlobal",
       "The variable ID is NC_GLOBAL (-1), which stands for the global attributes, not a "
       "variable. Give the ID of a variable."},
      {"QUARNA:imagesci:netcdf:invalidCharErr",
       "The file name contains characters that cannot be represented in the file system's "
       "character encoding."},
      {"QUARNA:imagesci:netcdf:invalidChunkParameter",
       "The number of chunk sizes ({1}) must equal the number of dimensions of the variable "
       "({2})."},
      {"QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType",
       "The '{1}' argument contains NaN or Inf, which cannot be converted to an integer."},
      {"QUARNA:imagesci:netcdf:libraryFailure",
       "The NetCDF library encountered an error during execution of '{1}' operation: {3} "
       "({2})."},
      {"QUARNA:imagesci:netcdf:librarydapFailure",
       "The NetCDF library encountered a remote data access (DAP) error during execution of "
       "'{1}' operation: {3} ({2}). Check the URL and that the server is reachable."},
      {"QUARNA:imagesci:netcdf:nameContainsNul",
       "The '{1}' argument contains a NUL character (char(0)); netCDF-C would end the name "
       "there and use another one."},
      {"QUARNA:imagesci:netcdf:rowLengthOutOfBounds",
       "The '{1}' argument is too long: it may have at most {2} elements."},
      {"QUARNA:imagesci:netcdf:unhandledAttributeOperation",
       "The attribute operation '{1}' is not supported."},
      {"QUARNA:imagesci:netcdf:unhandledFillDatatype",
       "Fill values of netCDF data type {1} are not supported: only atomic and variable-length "
       "types have fill values here."},
      {"QUARNA:imagesci:netcdf:unknownNetCDFFormat",
       "The file has an unknown netCDF format (format code {1})."},
      {"QUARNA:imagesci:netcdf:unrecognizedCharParameter",
       "'{1}' is not the name of a netCDF constant."},
      {"QUARNA:imagesci:netcdf:unrecognizedChunkStorage",
       "The chunking storage setting must be 0 (chunked) or 1 (contiguous)."},
      {"QUARNA:imagesci:netcdf:unrecognizedChunkingCode",
       "The NetCDF library reported storage code {1} for the variable; only chunked and "
       "contiguous storage are supported."},
      {"QUARNA:imagesci:netcdf:unrecognizedFileMode", "'{1}' is not a recognized file mode."},
      {"QUARNA:imagesci:netcdf:unrecognizedFletcher32Setting",
       "The NetCDF library reported checksum setting {1}; expected 0 (NOCHECKSUM) or 1 "
       "(FLETCHER32)."},
      {"QUARNA:imagesci:netcdf:unrecognizedOperation",
       "'{1}' is not a recognized netCDF operation. Operation names are case-sensitive."},
      {"QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
       "The netCDF data type {1} is not supported: compound, opaque and enumeration types "
       "cannot be converted."},
      {"QUARNA:imagesci:netcdf:zarrCodecNotSupported",
       "The '{1}' operation cannot move the data of variable '{2}': its Zarr store encodes "
       "it with {3}, which the NetCDF library cannot apply, so the values would be the "
       "encoded bytes. Store the array without compressor and filters, or use a Zarr "
       "implementation that has these codecs."},
      // Warnings
      {"QUARNA:imagesci:netcdf:closingFileHandle",
       "The netCDF library is being unloaded: closing all files that are still open."},
      // QUARNA:imagesci:validate
      {"QUARNA:imagesci:validate:argumentOutOfBounds",
       "A numeric argument is out of range for the integer type the NetCDF library expects."},
      {"QUARNA:imagesci:validate:tooManyOutputs",
       "Too many output arguments: '{1}' returns {2}."},
      {"QUARNA:imagesci:validate:wrongNumberOfInputs",
       "Wrong number of input arguments for this operation."},
      // QUARNA:string
      {"QUARNA:string:MissingNotSupported",
       "Missing string elements are not supported here; replace them with text first."},
  };
  return entries;
}

std::u16string argumentText(const resource_core::MsgArg& arg) {
  if (const auto* n = std::get_if<long>(&arg)) return utf8_to_ustring(std::to_string(*n).c_str());
  if (const auto* s = std::get_if<std::string>(&arg)) return utf8_to_ustring(s->data(), s->size());
  return std::get<std::u16string>(arg);
}

// Replaces each {k} (k from 1) with argument k; a placeholder without an argument stays.
std::u16string substitute(std::string_view pattern,
                          const std::vector<resource_core::MsgArg>& args) {
  std::u16string out;
  std::size_t pos = 0;
  while (pos < pattern.size()) {
    const std::size_t open = pattern.find('{', pos);
    const std::size_t close = open == std::string_view::npos ? open : pattern.find('}', open);
    if (close == std::string_view::npos) break;
    out += utf8_to_ustring(pattern.data() + pos, open - pos);
    const std::string_view digits = pattern.substr(open + 1, close - open - 1);
    std::size_t k = 0;
    bool numeric = !digits.empty() && digits.size() < 4;
    for (char c : digits) {
      numeric = numeric && c >= '0' && c <= '9';
      k = k * 10 + static_cast<std::size_t>(c - '0');
    }
    if (numeric && k >= 1 && k <= args.size()) {
      out += argumentText(args[k - 1]);
    } else {
      out += utf8_to_ustring(pattern.data() + open, close - open + 1);
    }
    pos = close + 1;
  }
  out += utf8_to_ustring(pattern.data() + pos, pattern.size() - pos);
  return out;
}

std::u16string genericText(const resource_core::BaseMsgID& id) {
  std::u16string out =
      utf8_to_ustring(("Unknown message identifier '" + id.fullIdentifier() + "'").c_str());
  if (id.arguments().empty()) return out + u" (no arguments).";
  out += u" with arguments: ";
  for (std::size_t i = 0; i < id.arguments().size(); ++i) {
    if (i != 0) out += u", ";
    out += argumentText(id.arguments()[i]);
  }
  return out + u".";
}

}  // namespace

namespace resource_core {

std::u16string messageText(const BaseMsgID& id) {
  const auto& entries = catalogue();
  const auto found = entries.find(id.fullIdentifier());
  if (found == entries.end()) return genericText(id);
  return substitute(found->second, id.arguments());
}

bool catalogueHas(const std::string& fullIdentifier) {
  return catalogue().count(fullIdentifier) != 0;
}

}  // namespace resource_core
