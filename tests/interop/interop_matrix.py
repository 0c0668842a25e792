#!/usr/bin/python3
"""The python3-netcdf4 side of the interop matrix: interop_matrix.py DIR FORMAT MODEL ...

For each FORMAT reads DIR/oct-FORMAT.nc, written by netcdflib, and prints "FORMAT - model
DATA_MODEL", then "FORMAT KEY ITEM TYPE SHAPE CANON" for each variable (ITEM var) and its
attributes (att: its "a"; gatt: the global "g_KEY"), canonical as interop_matrix_test.m
makes them; then writes what it read, in the same types, to DIR/py-FORMAT.nc of data model
MODEL. The Vlen variable has no attributes: python3-netcdf4 reads and writes none of a Vlen
type.
"""

import ctypes
import ctypes.util
import sys

import netCDF4
import numpy as np

lib = ctypes.CDLL(ctypes.util.find_library('netcdf'))
NAMES = [None, 'NC_BYTE', 'NC_CHAR', 'NC_SHORT', 'NC_INT', 'NC_FLOAT', 'NC_DOUBLE',
         'NC_UBYTE', 'NC_USHORT', 'NC_UINT', 'NC_INT64', 'NC_UINT64', 'NC_STRING']
DTYPES = [None, '<i1', 'S1', '<i2', '<i4', '<f4', '<f8', '<u1', '<u2', '<u4', '<i8', '<u8', str]


def nc(fn, *args):
    status = getattr(lib, fn)(*args)
    if status:
        raise RuntimeError('%s: status %d' % (fn, status))


def base_type(ncid, xtype):
    """The atomic type and None, or a Vlen's base type and the Vlen."""
    if xtype <= 12:
        return xtype, None
    base, cls = ctypes.c_int(), ctypes.c_int()
    nc('nc_inq_user_type', ncid, xtype, None, None, ctypes.byref(base), None, ctypes.byref(cls))
    assert cls.value == 13 and base.value <= 12, 'not a Vlen of an atomic type'
    return base.value, xtype


def canon(v):
    if isinstance(v, (str, bytes)):
        return (v.encode() if isinstance(v, str) else v).hex()
    if isinstance(v, np.ndarray) and v.dtype == object:
        v = list(v.ravel())
    if isinstance(v, list):
        return '(' + ''.join(canon(e) + ',' for e in v) + ')'
    return np.ascontiguousarray(v).tobytes().hex()


def read_items(ds):
    """(key, item, attribute name, base type, whether a Vlen, shape, value) of every item."""
    ncid, items, length, xtype = ds._grpid, [], ctypes.c_size_t(), ctypes.c_int()
    for key, v in ds.variables.items():
        v.set_auto_maskandscale(False)
        v.set_auto_chartostring(False)
        nc('nc_inq_vartype', ncid, v._varid, ctypes.byref(xtype))
        base, vlen = base_type(ncid, xtype.value)
        items.append((key, 'var', None, base, vlen, list(v.shape), v[:]))
        for item, avid, att in () if vlen else (('att', v._varid, 'a'), ('gatt', -1, 'g_' + key)):
            nc('nc_inq_att', ncid, avid, att.encode(), ctypes.byref(xtype), ctypes.byref(length))
            value = (ds if avid < 0 else v).getncattr(att)
            value = {2: lambda t: t.encode(), 12: lambda s: [s] if isinstance(s, str) else
                     list(s)}.get(xtype.value, np.atleast_1d)(value)
            items.append((key, item, att, xtype.value, None, [length.value], value))
    return items


def write_items(path, model, items):
    with netCDF4.Dataset(path, 'w', format=model) as ds:
        ds.createDimension('y', 2)
        ds.createDimension('x', 3)
        vlens = {}
        for key, item, att, base, vlen, shape, value in items:
            if vlen and base not in vlens:
                vlens[base] = ds.createVLType(np.dtype(DTYPES[base]), 'v%d' % base)
            if item == 'var':
                v = ds.createVariable(key, vlens[base] if vlen else DTYPES[base], ('y', 'x'))
                v.set_auto_maskandscale(False)
                v.set_auto_chartostring(False)
                v[:] = value
            else:
                getattr(ds if item == 'gatt' else ds[key],
                        'setncattr_string' if base == 12 else 'setncattr')(att, value)


def main(folder, formats):
    for fmt, model in zip(formats[::2], formats[1::2]):
        with netCDF4.Dataset('%s/oct-%s.nc' % (folder, fmt)) as ds:
            print(fmt, '- model', ds.data_model)
            items = read_items(ds)
        for key, item, _, base, vlen, shape, value in items:
            name = 'vlen(%s)' % NAMES[base] if vlen else NAMES[base]
            print(fmt, key, item, name, 'x'.join(map(str, shape)), canon(value))
        write_items('%s/py-%s.nc' % (folder, fmt), model, items)


if __name__ == '__main__':
    main(sys.argv[1], sys.argv[2:])
