// Test-only: runs Octave values through the bridge's mapping into host arrays and back,
// and describes the host arrays in between.
#include <octave/oct.h>
#include <octave/ov-struct.h>

#include <vector>

#include "errors.hpp"
#include "from_host.hpp"
#include "octave_blocks.hpp"
#include "octave_types.hpp"
#include "qvhost/strings.hpp"
#include "to_host.hpp"

namespace {

octave_value unitsValue(const char16_t* units, const dim_vector& dv) {
  NDArray out(dv);
  for (octave_idx_type i = 0; i < out.numel(); ++i) out(i) = units[i];
  return octave_value(out);
}

octave_value describe(const qvArray* a) {
  octave_scalar_map info;
  const qvClassID cls = qvGetClassID(a);
  const dim_vector dv = octbridge::octaveDims({qvGetDimensions(a), qvGetNumberOfDimensions(a)});
  info.assign("class", octbridge::hostClassName(cls));
  info.assign("dims", octave_value(dv.as_array()));
  info.assign("complex", qvIsComplex(a));
  info.assign("lent", octbridge::octaveBlockOf(a) != nullptr);
  info.assign("units", Matrix());   // cells alone get "elements"
  if (cls == qvCHAR_CLASS) {
    info.assign("units", unitsValue(static_cast<const char16_t*>(qvGetData(a)), dv));
  } else if (cls == qvSTRING_CLASS) {
    const StringArrayView view = getString(a);
    Cell texts(dv);
    for (std::size_t i = 0; i < view.count; ++i) {
      if (view.isMissing(i)) continue;
      texts(static_cast<octave_idx_type>(i)) = unitsValue(
          view.at(i).data(), dim_vector(1, static_cast<octave_idx_type>(view.at(i).size())));
    }
    info.assign("units", texts);
  } else if (cls == qvCELL_CLASS) {
    Cell parts(dv);
    for (octave_idx_type i = 0; i < parts.numel(); ++i)
      parts(i) = describe(qvGetCell(a, static_cast<std::size_t>(i)));
    info.assign("elements", parts);
  }
  return octave_value(info);
}

}  // namespace

// [BACK, INFO] = qv_roundtrip (OPERATION, ARG1, ...): maps the arguments as a netcdflib call
// would (OPERATION decides the form of the data argument) and back. BACK{k} is args{k} after
// the trip, [] when the host class has no Octave counterpart; INFO{k} describes the host
// array: class, dims, complex, lent (data shared with Octave), units (UTF-16 code units of
// char and string arrays, as doubles), elements (descriptions of cell elements).
DEFUN_DLD(qv_roundtrip, args, , "test only") {
  octbridge::PendingError failure;
  Cell back(1, args.length());
  Cell infos(1, args.length());
  try {
    const std::vector<qvArrayPtr> hosts = octbridge::argumentsToHost(args);
    for (std::size_t k = 0; k < hosts.size(); ++k) {
      const auto i = static_cast<octave_idx_type>(k);
      infos(i) = describe(hosts[k].get());
      const qvClassID cls = qvGetClassID(hosts[k].get());
      if (cls != qvSTRUCT_CLASS && cls != qvFUNCTION_CLASS && cls != qvOBJECT_CLASS)
        back(i) = octbridge::fromHost(hosts[k].get());
    }
  } catch (...) {
    failure.capture(std::current_exception());
  }
  if (failure) failure.raise();
  return ovl(back, infos);
}
