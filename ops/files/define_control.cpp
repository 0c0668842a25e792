// Operations that take an ncid and change the file's state: closing, aborting, define
// mode and syncing.
#include <netcdf.h>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/registry.hpp"
#include "gateway/status.hpp"
#include "ops/files/files.hpp"

void handleClose(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int status = nc_close(ncid);
  // NC_EBADID: netCDF-C did not know the id, so holds nothing of it. Any other failure
  // leaves netCDF-C half-released: the id is remembered and refused from now on.
  if (status == NC_NOERR || status == NC_EBADID) {
    OpenFileRegistry::remove(ncid);
  } else {
    OpenFileRegistry::release(ncid);
  }
  checkStatus(status, row);
}

void handleAbort(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  // netCDF-C 4.9.0 forgets a netCDF-4 file when nc_abort fails on the id of a group the
  // file does not have, yet leaves it open for good; such an id gets the status netCDF-C
  // gives it anywhere else, before nc_abort sees it.
  int attributes = 0;
  checkStatus(nc_inq_natts(ncid, &attributes), row);
  // Kept registered when aborting fails, so that unload still closes it.
  checkStatus(nc_abort(ncid), row);
  OpenFileRegistry::remove(ncid);
}

void handlePEndDef(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const auto hMinfree = getScalar<std::size_t>(inputs[1], "h_minfree");
  const auto vAlign = getScalar<std::size_t>(inputs[2], "v_align");
  const auto vMinfree = getScalar<std::size_t>(inputs[3], "v_minfree");
  const auto rAlign = getScalar<std::size_t>(inputs[4], "r_align");
  checkStatus(nc__enddef(ncid, hMinfree, vAlign, vMinfree, rAlign), row);
}

// "endDef", "redef", "sync": the netCDF-C call on the ncid, picked by the table.
template <int (*call)(int)>
void handleFileCall(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  checkStatus(call(getScalar<int>(inputs[0], "ncid")), row);
}
template void handleFileCall<nc_enddef>(int, qvArrayPtr*, int, const qvArray* const*,
                                        const OperationRow&);
template void handleFileCall<nc_redef>(int, qvArrayPtr*, int, const qvArray* const*,
                                       const OperationRow&);
template void handleFileCall<nc_sync>(int, qvArrayPtr*, int, const qvArray* const*,
                                      const OperationRow&);
