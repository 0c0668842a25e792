#!/usr/bin/python3
"""The python3-netcdf4 side of the interop matrix.

    interop_matrix.py DIR FORMAT...

For each FORMAT reads DIR/oct-FORMAT.nc, which netcdflib wrote, and prints a line for each
variable (those of other shapes, named with '_', aside) and each of its attributes:

    FORMAT KEY ITEM TYPE SHAPE CANON

ITEM is var, att (its attribute "a") or gatt (the global attribute "g_KEY"); TYPE is NC_INT,
vlen(vlen(NC_SHORT)), ...; SHAPE the netCDF shape (2x3) or an attribute's length; CANON the
hex of the bytes of numbers (little-endian, one run) and of text (UTF-8), "(e1,e2,...)" for
strings and Vlen elements (each followed by a comma). Also prints "FORMAT - model DATA_MODEL". Then writes everything
it read, in the same types, to DIR/py-FORMAT.nc for netcdflib to read back.

python3-netcdf4 reads and writes what it can; attribute types, Vlen attributes and Vlen of
Vlen (which it skips) go through netCDF-C directly.
"""

import ctypes
import ctypes.util
import sys
import warnings

import netCDF4
import numpy as np

lib = ctypes.CDLL(ctypes.util.find_library('netcdf'))
NAMES = [None, 'NC_BYTE', 'NC_CHAR', 'NC_SHORT', 'NC_INT', 'NC_FLOAT', 'NC_DOUBLE',
         'NC_UBYTE', 'NC_USHORT', 'NC_UINT', 'NC_INT64', 'NC_UINT64', 'NC_STRING']
DTYPES = [None, '<i1', 'S1', '<i2', '<i4', '<f4', '<f8', '<u1', '<u2', '<u4', '<i8', '<u8', str]
FORMATS = {'classic': 'NETCDF3_CLASSIC', '64bit_offset': 'NETCDF3_64BIT_OFFSET',
           'cdf5': 'NETCDF3_64BIT_DATA', 'netcdf4': 'NETCDF4',
           'netcdf4_classic': 'NETCDF4_CLASSIC'}


class Vlen(ctypes.Structure):
    _fields_ = [('len', ctypes.c_size_t), ('p', ctypes.c_void_p)]


def nc(fn, *args):
    status = getattr(lib, fn)(*args)
    if status:
        raise RuntimeError('%s: status %d' % (fn, status))


def ints(n, ctype=ctypes.c_int):
    return (ctype * max(n, 1))()


def chain(ncid, xtype):
    """The type as a list of ids from the outermost Vlen to its atomic base."""
    if xtype <= 12:
        return [xtype]
    base, cls = ints(1), ints(1)
    nc('nc_inq_user_type', ncid, xtype, None, None, base, None, cls)
    assert cls[0] == 13, 'not a Vlen'
    return [xtype] + chain(ncid, base[0])


def type_name(ch):
    return 'vlen(' * (len(ch) - 1) + NAMES[ch[-1]] + ')' * (len(ch) - 1)


def unpack(records, ch):
    if len(ch) == 2:
        dt = np.dtype(DTYPES[ch[1]])
        return [np.frombuffer(ctypes.string_at(r.p, r.len * dt.itemsize), dt) for r in records]
    return [unpack((Vlen * r.len).from_address(r.p) if r.len else [], ch[1:]) for r in records]


def get_vlen(fn, count, ch, *args):
    records = (Vlen * count)()
    nc(fn, *args, records)
    return unpack(records, ch)


def pack(values, ch, keep):
    records = (Vlen * len(values))()
    keep.append(records)
    for r, v in zip(records, values):
        if len(ch) == 2:
            v = np.ascontiguousarray(v, DTYPES[ch[1]])
            r.p = v.ctypes.data if v.size else None
        else:
            v = pack(v, ch[1:], keep)
            r.p = ctypes.addressof(v) if len(v) else None
        keep.append(v)
        r.len = len(v)
    return records


def canon(v):
    if isinstance(v, str):
        v = v.encode()
    if isinstance(v, bytes):
        return v.hex()
    if isinstance(v, np.ndarray) and v.dtype == object:
        v = list(v.ravel())
    if isinstance(v, list):
        return '(' + ''.join(canon(e) + ',' for e in v) + ')'
    return np.ascontiguousarray(v).tobytes().hex()


def read_items(ds, fmt):
    """(key, item, vid, name, type chain, shape, value) of every item compared."""
    ncid, items = ds._grpid, []
    by_id = {v._varid: v for v in ds.variables.values()}
    nvars, xtype, ndims, dimids, length = ints(1), ints(1), ints(1), ints(8), ints(1, ctypes.c_size_t)
    nc('nc_inq_nvars', ncid, nvars)
    for vid in range(nvars[0]):
        name = ctypes.create_string_buffer(257)
        nc('nc_inq_var', ncid, vid, name, xtype, ndims, dimids, None)
        key = name.value.decode()
        if '_' in key:
            continue
        ch, shape = chain(ncid, xtype[0]), []
        for d in dimids[:ndims[0]]:
            nc('nc_inq_dimlen', ncid, d, length)
            shape.append(length[0])
        if len(ch) > 2:
            value = get_vlen('nc_get_var', int(np.prod(shape)), ch, ncid, vid)
        else:
            v = by_id[vid]
            v.set_auto_maskandscale(False)
            v.set_auto_chartostring(False)
            value = v[:]
        items.append((key, 'var', vid, None, ch, shape, value))
        for item, avid, att in (('att', vid, 'a'), ('gatt', -1, 'g_' + key)):
            nc('nc_inq_att', ncid, avid, att.encode(), xtype, length)
            ach = chain(ncid, xtype[0])
            if len(ach) > 1:
                value = get_vlen('nc_get_att', length[0], ach, ncid, avid, att.encode())
            else:
                value = ds.getncattr(att) if avid < 0 else by_id[vid].getncattr(att)
                value = {2: lambda t: t.encode(), 12: lambda s: [s] if isinstance(s, str) else
                         list(s)}.get(ach[0], np.atleast_1d)(value)
            items.append((key, item, avid, att, ach, [length[0]], value))
    return items


def write_items(path, fmt, items):
    with netCDF4.Dataset(path, 'w', format=FORMATS[fmt]) as ds:
        ds.createDimension('y', 2)
        ds.createDimension('x', 3)
        ncid, types, vids, keep = ds._grpid, {}, {-1: -1}, []

        def xtype(ch):
            if len(ch) == 1:
                return ch[0]
            if tuple(ch) not in types:
                if len(ch) == 2:
                    types[tuple(ch)] = ds.createVLType(np.dtype(DTYPES[ch[1]]), 'v%d' % len(types))
                else:
                    t, base = ints(1), xtype(ch[1:])
                    nc('nc_def_vlen', ncid, b'v%d' % len(types), base, t)
                    types[tuple(ch)] = t[0]
            t = types[tuple(ch)]
            return t if isinstance(t, int) else t._nc_type

        for key, item, vid, att, ch, shape, value in items:
            if item == 'var' and len(ch) > 2:
                dims, vids[vid] = (ctypes.c_int * 2)(0, 1), ints(1)
                nc('nc_def_var', ncid, key.encode(), xtype(ch), 2, dims, vids[vid])
                vids[vid] = vids[vid][0]
                nc('nc_put_var', ncid, vids[vid], pack(list(value), ch, keep))
            elif item == 'var':
                v = ds.createVariable(key, types[tuple(ch)] if xtype(ch) > 12 else DTYPES[ch[0]],
                                      ('y', 'x'))
                v.set_auto_maskandscale(False)
                v.set_auto_chartostring(False)
                v[:] = value
                vids[vid] = v._varid
            elif len(ch) > 1:
                nc('nc_put_att', ncid, vids[vid], att.encode(), xtype(ch),
                   ctypes.c_size_t(len(value)), pack(value, ch, keep))
            else:
                target = ds if vid < 0 else ds.variables[key]
                if ch[0] == 12:
                    target.setncattr_string(att, value)
                else:
                    target.setncattr(att, value)


def main(folder, formats):
    # netCDF4-python skips what it cannot map (Vlen of Vlen); read through netCDF-C instead.
    warnings.filterwarnings('ignore', 'WARNING: .*unsupported VLEN')
    for fmt in formats:
        with netCDF4.Dataset('%s/oct-%s.nc' % (folder, fmt)) as ds:
            print(fmt, '- model', ds.data_model)
            items = read_items(ds, fmt)
        for key, item, _, _, ch, shape, value in items:
            print(fmt, key, item, type_name(ch), 'x'.join(map(str, shape)), canon(value))
        write_items('%s/py-%s.nc' % (folder, fmt), fmt, items)


if __name__ == '__main__':
    main(sys.argv[1], sys.argv[2:])
