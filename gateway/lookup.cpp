#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>

#include "gateway/errors.hpp"
#include "gateway/operation.hpp"

namespace {

using NameIndex = std::unordered_map<std::string_view, const OperationRow*>;

NameIndex indexByName(std::span<const OperationRow> table) {
  NameIndex index;
  for (const OperationRow& row : table) index.emplace(row.name, &row);  // keeps the first
  return index;
}

// The first row of that name, or null. The library's own table is looked up through an
// index built once: scanning it with strcmp cost a single-element read more than all the
// rest of the dispatch.
const OperationRow* findRow(std::span<const OperationRow> table, const char* name) {
  const std::span<const OperationRow> library = operationTable();
  if (table.data() == library.data() && table.size() == library.size()) {
    static const NameIndex index = indexByName(library);
    const auto found = index.find(name);
    return found == index.end() ? nullptr : found->second;
  }
  for (const OperationRow& row : table) {
    if (std::strcmp(row.name, name) == 0) return &row;
  }
  return nullptr;
}

}  // namespace

const OperationRow& lookupOperation(std::span<const OperationRow> table, const char* name,
                                    int nInputs) {
  // No name at all (no inputs, or a first input that is not text) is an unknown operation
  // whose name is empty.
  if (name == nullptr) {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(std::string()));
  }
  const OperationRow* row = findRow(table, name);
  if (row == nullptr) qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(name));
  // Only the first match counts, even when a later row of that name would fit.
  if (row->nInputs != nInputs) qvErrMsgId(QUARNA::imagesci::validate::wrongNumberOfInputs());
  return *row;
}
