#include "convert/outputs.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "convert/text.hpp"

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

qvArrayPtr makeEmptyDouble() {
  return matrix::detail::do_create_numeric(std::vector<std::uint64_t>{0, 0}, qvDOUBLE_CLASS, qvREAL);
}

qvArrayPtr makeHostOrderRow(std::span<const std::size_t> lengths) {
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(
      std::vector<std::uint64_t>{1, lengths.size()}, qvDOUBLE_CLASS, qvREAL);
  std::transform(lengths.rbegin(), lengths.rend(), static_cast<double*>(qvGetData(a.get())),
                 [](std::size_t c) { return static_cast<double>(c); });
  return a;
}

qvArrayPtr makeTextColumn(std::span<const char* const> texts) {
  qvArrayPtr cells = matrix::detail::do_create_cell(std::vector<std::uint64_t>{texts.size(), 1});
  for (std::size_t i = 0; i < texts.size(); ++i) qvSetCell(cells.get(), i, makeAsciiText(texts[i]));
  return cells;
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
