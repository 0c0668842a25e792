"""What python3-netcdf4 cannot do, done through netCDF-C directly: type inquiries of
attributes, Vlen attributes, and Vlen types whose base is itself a Vlen (netCDF4-python
skips those variables). Works on the ids of an open netCDF4.Dataset (its _grpid)."""

import ctypes
import ctypes.util

import numpy as np

NC_GLOBAL = -1
NC_VLEN = 13

ATOMIC = {1: 'NC_BYTE', 2: 'NC_CHAR', 3: 'NC_SHORT', 4: 'NC_INT', 5: 'NC_FLOAT',
          6: 'NC_DOUBLE', 7: 'NC_UBYTE', 8: 'NC_USHORT', 9: 'NC_UINT', 10: 'NC_INT64',
          11: 'NC_UINT64', 12: 'NC_STRING'}
DTYPE = {'NC_BYTE': '<i1', 'NC_SHORT': '<i2', 'NC_INT': '<i4', 'NC_FLOAT': '<f4',
         'NC_DOUBLE': '<f8', 'NC_UBYTE': '<u1', 'NC_USHORT': '<u2', 'NC_UINT': '<u4',
         'NC_INT64': '<i8', 'NC_UINT64': '<u8'}

lib = ctypes.CDLL(ctypes.util.find_library('netcdf') or 'libnetcdf.so')


class Vlen(ctypes.Structure):
    _fields_ = [('len', ctypes.c_size_t), ('p', ctypes.c_void_p)]


def check(status, what):
    if status != 0:
        lib.nc_strerror.restype = ctypes.c_char_p
        raise RuntimeError('%s: %s' % (what, lib.nc_strerror(status).decode()))


def describe(ncid, xtype):
    """A type as 'NC_INT', ('vlen', 'NC_INT'), ('vlen', ('vlen', 'NC_SHORT')), ..."""
    if xtype in ATOMIC:
        return ATOMIC[xtype]
    name = ctypes.create_string_buffer(257)
    size, base, nfields, cls = ctypes.c_size_t(), ctypes.c_int(), ctypes.c_size_t(), ctypes.c_int()
    check(lib.nc_inq_user_type(ncid, xtype, name, ctypes.byref(size), ctypes.byref(base),
                               ctypes.byref(nfields), ctypes.byref(cls)), 'nc_inq_user_type')
    if cls.value != NC_VLEN:
        return 'user%d' % xtype
    return ('vlen', describe(ncid, base.value))


def type_name(desc):
    return desc if isinstance(desc, str) else 'vlen(%s)' % type_name(desc[1])


def varid(ncid, name):
    v = ctypes.c_int()
    check(lib.nc_inq_varid(ncid, name.encode(), ctypes.byref(v)), 'nc_inq_varid ' + name)
    return v.value


def var_type(ncid, vid):
    t = ctypes.c_int()
    check(lib.nc_inq_vartype(ncid, vid, ctypes.byref(t)), 'nc_inq_vartype')
    return t.value


def var_shape(ncid, vid):
    n = ctypes.c_int()
    check(lib.nc_inq_varndims(ncid, vid, ctypes.byref(n)), 'nc_inq_varndims')
    dims = (ctypes.c_int * max(n.value, 1))()
    check(lib.nc_inq_vardimid(ncid, vid, dims), 'nc_inq_vardimid')
    shape = []
    for d in dims[:n.value]:
        length = ctypes.c_size_t()
        check(lib.nc_inq_dimlen(ncid, d, ctypes.byref(length)), 'nc_inq_dimlen')
        shape.append(length.value)
    return shape


def att_info(ncid, vid, name):
    t, n = ctypes.c_int(), ctypes.c_size_t()
    check(lib.nc_inq_att(ncid, vid, name.encode(), ctypes.byref(t), ctypes.byref(n)),
          'nc_inq_att ' + name)
    return t.value, n.value


def _from_records(records, desc):
    out = []
    for r in records:
        if isinstance(desc, str):
            dtype = np.dtype(DTYPE[desc])
            raw = ctypes.string_at(r.p, r.len * dtype.itemsize) if r.len else b''
            out.append(np.frombuffer(raw, dtype))
        else:
            out.append(_from_records((Vlen * r.len).from_address(r.p) if r.len else [], desc[1]))
    return out


def get_vlen_var(ncid, vid, count):
    """A Vlen variable of `count` elements as nested lists of numpy arrays, linear order."""
    records = (Vlen * count)()
    check(lib.nc_get_var(ncid, vid, records), 'nc_get_var')
    return _from_records(records, describe(ncid, var_type(ncid, vid))[1])


def get_vlen_att(ncid, vid, name):
    xtype, n = att_info(ncid, vid, name)
    records = (Vlen * n)()
    check(lib.nc_get_att(ncid, vid, name.encode(), records), 'nc_get_att ' + name)
    return _from_records(records, describe(ncid, xtype)[1])


def _to_records(values, desc, keep):
    records = (Vlen * len(values))()
    keep.append(records)
    for r, v in zip(records, values):
        if isinstance(desc, str):
            block = np.ascontiguousarray(v, DTYPE[desc])
            keep.append(block)
            r.len, r.p = block.size, block.ctypes.data if block.size else None
        else:
            inner = _to_records(v, desc[1], keep)
            r.len, r.p = len(v), ctypes.addressof(inner) if len(v) else None
    return records


def def_vlen(ncid, name, base):
    t = ctypes.c_int()
    check(lib.nc_def_vlen(ncid, name.encode(), base, ctypes.byref(t)), 'nc_def_vlen ' + name)
    return t.value


def def_var(ncid, name, xtype, dimids):
    v = ctypes.c_int()
    ids = (ctypes.c_int * len(dimids))(*dimids)
    check(lib.nc_def_var(ncid, name.encode(), xtype, len(dimids), ids, ctypes.byref(v)),
          'nc_def_var ' + name)
    return v.value


def put_vlen_var(ncid, vid, values):
    keep = []
    records = _to_records(values, describe(ncid, var_type(ncid, vid))[1], keep)
    check(lib.nc_put_var(ncid, vid, records), 'nc_put_var')


def put_vlen_att(ncid, vid, name, xtype, values):
    keep = []
    records = _to_records(values, describe(ncid, xtype)[1], keep)
    check(lib.nc_put_att(ncid, vid, name.encode(), xtype, ctypes.c_size_t(len(values)), records),
          'nc_put_att ' + name)
