// One row of the operation table and the handler signature every operation shares.
#pragma once

#include <cstdint>
#include <span>

#include "gateway/row_meaning.hpp"
#include "qvhost/array.hpp"

struct OperationRow;

// nlhs: outputs asked for; plhs: output slots; inputs: the inputs after the name.
using OperationHandler = void (*)(int nlhs, qvArrayPtr* plhs, int nInputs,
                                  const qvArray* const* inputs, const OperationRow& row);

struct OperationRow {
  constexpr OperationRow(std::int32_t id, const char* rowName, std::int32_t inputs,
                         OperationHandler rowHandler) noexcept
      : opId(id), name(rowName), nInputs(inputs), handler(rowHandler), meaning(meaningOf(rowName)) {}

  std::int32_t opId;
  const char* name;
  std::int32_t nInputs;
  OperationHandler handler;
  // Derived from the name; see row_meaning.hpp.
  RowMeaning meaning;
};

// Declares or defines a handler: NETCDFLIB_HANDLER(handleSomething) { ... }
#define NETCDFLIB_HANDLER(name)                                                      \
  void name([[maybe_unused]] int nlhs, [[maybe_unused]] qvArrayPtr* plhs,            \
            [[maybe_unused]] int nInputs, [[maybe_unused]] const qvArray* const* inputs, \
            [[maybe_unused]] const OperationRow& row)

// The library's table, in lookup order.
std::span<const OperationRow> operationTable() noexcept;

// First row whose name matches exactly; raises unrecognizedOperation or
// wrongNumberOfInputs. Never returns null.
const OperationRow& lookupOperation(std::span<const OperationRow> table, const char* name,
                                    int nInputs);
