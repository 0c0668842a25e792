// Id lists netCDF-C hands out in two calls: the count, then the ids.
#pragma once

#include <vector>

#include "convert/outputs.hpp"
#include "gateway/status.hpp"

// list(int* count, int* ids) is called with (&n, nullptr), then (nullptr, ids).
template <class List>
qvArrayPtr listIds(List list, const OperationRow& row) {
  int n = 0;
  checkStatus(list(&n, nullptr), row);
  std::vector<int> ids(static_cast<std::size_t>(n), 0);
  checkStatus(list(nullptr, ids.data()), row);
  return makeIdList(ids);
}
