// One class per message identifier, in the namespace of its component. Each is made
// from its arguments in catalogue order: texts (UTF-8) and whole numbers.
#pragma once

#include <string>
#include <type_traits>
#include <utility>

#include "qvhost/msgid.hpp"

namespace netcdflib_detail {
template <class T>
resource_core::MsgArg toMsgArg(T&& v) {
  using U = std::decay_t<T>;
  if constexpr (std::is_integral_v<U>) {
    return static_cast<long>(v);
  } else {
    return std::string(std::forward<T>(v));
  }
}
// Keeps the argument constructor from standing in for the copy constructor.
template <class Self, class... Args>
inline constexpr bool isCopyOf = sizeof...(Args) == 1 && (std::is_same_v<std::decay_t<Args>, Self> && ...);
}  // namespace netcdflib_detail

#define NETCDFLIB_MSGID(component, id)                                                   \
  struct id : resource_core::BaseMsgID {                                                 \
    template <class... Args>                                                             \
      requires(!netcdflib_detail::isCopyOf<id, Args...>)                                \
    explicit id(Args&&... args)                                                          \
        : BaseMsgID(component, #id, {netcdflib_detail::toMsgArg(std::forward<Args>(args))...}) {} \
  }

namespace QUARNA::imagesci::netcdf {
#define NC_ID(id) NETCDFLIB_MSGID("QUARNA:imagesci:netcdf", id)
NC_ID(argumentHasBadDatatype);
NC_ID(argumentIsEmpty);
NC_ID(argumentIsEmptySet);
NC_ID(argumentWasNotChar);
NC_ID(argumentNotOfKind);
NC_ID(attemptedChecksumInquiryOnNetcdf3File);
NC_ID(attemptedChunkingInquiryOnNetcdf3File);
NC_ID(badIndexArgumentLength);
NC_ID(badModeDatatype);
NC_ID(badRowDatatype);
NC_ID(badScalarArgument);
NC_ID(countNotEqualToData);
NC_ID(dataElementCountMismatch);
NC_ID(dataFieldsMismatch);
NC_ID(dataHasBadClass);
NC_ID(dataSizeMismatch);
NC_ID(emptyVariableData);
NC_ID(expectedLogicalType);
NC_ID(fileCreateErr);
NC_ID(fileOverwriteErr);
NC_ID(fillValueBadArgument);
NC_ID(formatConstraintsViolation);
NC_ID(incompleteArgsForUnlimitedDimensions);
NC_ID(indexArgumentNotFinite);
NC_ID(inqVarNcGlobal);
NC_ID(invalidCharErr);
NC_ID(invalidChunkParameter);
NC_ID(invalidNaNInfForIntegerType);
NC_ID(libraryFailure);
NC_ID(librarydapFailure);
NC_ID(nameContainsNul);
NC_ID(rowLengthOutOfBounds);
NC_ID(unhandledAttributeOperation);
NC_ID(unhandledFillDatatype);
NC_ID(unknownNetCDFFormat);
NC_ID(unrecognizedCharParameter);
NC_ID(unrecognizedChunkStorage);
NC_ID(unrecognizedChunkingCode);
NC_ID(unrecognizedFileMode);
NC_ID(unrecognizedFletcher32Setting);
NC_ID(unrecognizedOperation);
NC_ID(unrecognizedVarDatatype);
NC_ID(zarrCodecNotSupported);
#undef NC_ID
}  // namespace QUARNA::imagesci::netcdf

namespace QUARNA::imagesci::validate {
NETCDFLIB_MSGID("QUARNA:imagesci:validate", argumentOutOfBounds);
NETCDFLIB_MSGID("QUARNA:imagesci:validate", tooManyOutputs);
NETCDFLIB_MSGID("QUARNA:imagesci:validate", wrongNumberOfInputs);
}  // namespace QUARNA::imagesci::validate

// The warning of unload.
namespace QUARNA::imagesci::netcdf {
NETCDFLIB_MSGID("QUARNA:imagesci:netcdf", closingFileHandle);
}

#undef NETCDFLIB_MSGID
