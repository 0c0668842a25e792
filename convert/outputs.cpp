#include "convert/outputs.hpp"

#include <array>
#include <cstdint>

qvArrayPtr makeDoubleScalar(double v) {
  constexpr std::array<std::uint64_t, 2> kScalar{1, 1};
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(kScalar, qvDOUBLE_CLASS, qvREAL);
  *static_cast<double*>(qvGetData(a.get())) = v;
  return a;
}

qvArrayPtr makeLogicalScalar(bool v) {
  constexpr std::array<std::uint64_t, 2> kScalar{1, 1};
  qvArrayPtr a = matrix::detail::do_create_numeric(kScalar, qvLOGICAL_CLASS, qvREAL);
  qvGetLogicals(a.get())[0] = v;
  return a;
}

qvArrayPtr makeIdList(const std::vector<int>& ids) {
  const std::array<std::uint64_t, 2> dims{ids.empty() ? 0u : 1u, ids.size()};
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(dims, qvDOUBLE_CLASS, qvREAL);
  auto* out = static_cast<double*>(qvGetData(a.get()));
  for (std::size_t i = 0; i < ids.size(); ++i) {
    out[i] = ids[i];
  }
  return a;
}
