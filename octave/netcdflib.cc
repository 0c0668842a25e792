// The Octave function netcdflib: the netCDF-C interface, one operation per call.
#include <octave/oct.h>

#include "call.hpp"

// clang-format off
DEFUN_DLD(netcdflib, args, nargout,
R"(-- netcdflib (OPERATION, ARG1, ...)
-- [OUT1, OUT2, ...] = netcdflib (OPERATION, ARG1, ...)

Call the netCDF-C operation OPERATION with its arguments and return its
results.  Ids (ncid, varid, dimid, ...) are doubles; index vectors (START,
COUNT, STRIDE) and data are in Octave's column-major order, the reverse of
netCDF's dimension order.  Errors carry identifiers such as
"QUARNA:imagesci:netcdf:libraryFailure".

Operations (lower camel case forms of the netCDF-C calls):
  files      create, pCreate, open, pOpen, close, abort, sync, redef, endDef,
             pEndDef, setFill, setDefaultFormat, inq, inqFormat, inqLibVers,
             setChunkCache, getChunkCache
  groups     defGrp, inqNcid, inqGrps, inqGrpName, inqGrpNameFull,
             inqGrpParent, inqDimIDs, inqUnlimDims, inqVarIDs
  dims       defDim, inqDim, inqDimID, renameDim
  variables  defVar, inqVar, inqVarID, renameVar, defVarChunking,
             inqVarChunking, defVarDeflate, inqVarDeflate, defVarFletcher32,
             inqVarFletcher32, defVarFill, inqVarFill
  types      defVlen, inqVlen, inqUserType, defEnum, insertEnum, inqEnum,
             inqEnumMember, inqEnumIdent, defCompound, insertCompound,
             insertArrayCompound, inqCompound, inqCompoundField,
             inqCompoundFieldIndex, defOpaque, inqOpaque
  data       getVar<T>, getVar1<T>, getVara<T>, getVars<T> and the same with
             put; <T> is Double, Float, Int64, Uint64, Int, Uint, Short, Ushort,
             Schar, Uchar, Text, String or Vlen, or nothing for data in the
             variable's own type (enum: integers; opaque: uint8 columns;
             compound: a struct of field arrays; vlen: cells)
  attributes getAtt<T>, putAtt<T> (<T> as above, and Ubyte, or nothing), inqAtt,
             inqAttID, inqAttName, copyAtt, renameAtt, delAtt
  constants  netcdflib ('getConstantNames') lists the named constants,
             netcdflib ('parameter', NAME) returns one, e.g. 'NC_NOWRITE'

Example:
  ncid = netcdflib ('open', 'x.nc', 'NC_NOWRITE');
  [ndims, nvars, ngatts, unlimdimid] = netcdflib ('inq', ncid);
  netcdflib ('close', ncid);

Files left open are closed, with a warning, when netcdflib is cleared or
Octave exits.)")
// clang-format on
{
  return octbridge::callNetcdflib(args, nargout);
}
