#include <cstring>
#include <string>

#include "gateway/errors.hpp"
#include "gateway/operation.hpp"

const OperationRow& lookupOperation(std::span<const OperationRow> table, const char* name,
                                    int nInputs) {
  // No name at all (no inputs, or a first input that is not text) is an unknown operation
  // whose name is empty.
  if (name == nullptr) {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(std::string()));
  }
  for (const OperationRow& row : table) {
    if (std::strcmp(row.name, name) == 0) {
      // Only the first match counts, even when a later row of that name would fit.
      if (row.nInputs != nInputs) {
        qvErrMsgId(QUARNA::imagesci::validate::wrongNumberOfInputs());
      }
      return row;
    }
  }
  qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(name));
}
