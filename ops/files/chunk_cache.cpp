// The process-wide chunk cache of netCDF-4 files.
#include <netcdf.h>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/files/files.hpp"

NETCDFLIB_HANDLER(handleGetChunkCache) {
  std::size_t size = 0, nelems = 0;
  float preemption = 0.0f;
  checkStatus(nc_get_chunk_cache(&size, &nelems, &preemption), row);
  plhs[0] = makeDoubleScalar(static_cast<double>(size));
  plhs[1] = makeDoubleScalar(static_cast<double>(nelems));
  plhs[2] = makeDoubleScalar(preemption);
}

NETCDFLIB_HANDLER(handleSetChunkCache) {
  const auto size = getScalar<std::size_t>(inputs[0], "chunkSize");
  const auto nelems = getScalar<std::size_t>(inputs[1], "nelems");
  checkStatus(nc_set_chunk_cache(size, nelems, getRawSingle(inputs[2])), row);
}
