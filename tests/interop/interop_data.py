#!/usr/bin/python3
"""The python3-netcdf4 side of the variable data interop test (interop_data_test.m).

    interop_data.py read FILE     prints every variable of FILE (written by netcdflib)
    interop_data.py write FILE    writes FILE for netcdflib to read, prints what it wrote

Each printed line is "NAME KIND SHAPE CANON": KIND is the numpy dtype string ('<f8', '|i1',
...), 'S1' for NC_CHAR, 'str' for NC_STRING or 'vlen' followed by the base's dtype string;
SHAPE the netCDF shape as "2x3x4" ('-' for a scalar); CANON the elements in netCDF (C)
order, as the hex of their little-endian bytes (strings: UTF-8 bytes), comma-separated for
strings and Vlen elements. "write" also prints, as NAME@SUBSET, the parts that netcdflib's
subset reads are compared with.
"""

import sys

import netCDF4
import numpy as np

NUMERIC = ['<f8', '<f4', '<i8', '<u8', '<i4', '<u4', '<i2', '<u2', '|i1', '|u1']
SUFFIX = {'<f8': 'Double', '<f4': 'Float', '<i8': 'Int64', '<u8': 'Uint64', '<i4': 'Int',
          '<u4': 'Uint', '<i2': 'Short', '<u2': 'Ushort', '|i1': 'Schar', '|u1': 'Uchar',
          'S1': 'Text', 'str': 'String'}
TEXTS = ['', 'plain', '\u00e9t\u00e9', '\u6e29\u5ea6', '\U0001F600', 'tab\tnew\nline']
# Parts read by subset in netcdflib: (host START, COUNT, STRIDE) of getVars on the cube
# is netCDF (start (0, 0, 1), count (2, 2, 2), stride (1, 1, 2)); of the line (1, 2, 2).
CUBE_PART = (slice(0, 2), slice(0, 2), slice(1, 4, 2))
LINE_PART = (slice(1, 5, 2),)


def kind(var):
    if var.dtype == str:
        return 'str'
    if isinstance(var.datatype, netCDF4.VLType):
        return 'vlen' + np.dtype(var.datatype.dtype).str
    return 'S1' if var.dtype == np.dtype('S1') else var.dtype.str


def canon(values, k):
    flat = np.asarray(values, dtype=object if k == 'str' or k.startswith('vlen') else None)
    flat = flat.reshape(-1)
    if k == 'str':
        return ','.join(s.encode('utf-8').hex() for s in flat)
    if k.startswith('vlen'):
        return ','.join(np.asarray(e, k[4:]).tobytes().hex() for e in flat)
    return np.ascontiguousarray(flat, None if k == 'S1' else k).tobytes().hex()


def line(name, k, shape, values):
    shape_text = 'x'.join(str(n) for n in shape) or '-'
    print(name, k, shape_text, canon(values, k) or '-')


def samples(k, shape, seed):
    """Values of kind k with the type's extremes, varied by seed."""
    n = int(np.prod(shape))
    i = np.arange(n) + seed
    if k == 'S1':
        raw = '\u00e9\u20ac'.encode() + bytes(list((i * 37 + 101) % 256))
        return np.frombuffer(raw[:n], 'S1').reshape(shape)
    if k == 'str':
        return np.array([TEXTS[j % len(TEXTS)] + str(j) * (j % 3) for j in i],
                        object).reshape(shape)
    dt = np.dtype(k)
    if dt.kind == 'f':
        v = ((i - n / 2) * 1.25).astype(dt)
        special = np.array([np.finfo(dt).min, np.nan, np.inf, -np.inf, -0.0,
                            np.finfo(dt).tiny, np.finfo(dt).max], dt)
    else:
        v = ((i * 37) % 101 - (50 if dt.kind == 'i' else 0)).astype(dt)
        special = np.array([np.iinfo(dt).min, np.iinfo(dt).max], dt)
    m = min(n, len(special))
    v[(np.arange(m) + seed) % n] = special[:m]
    return v.reshape(shape)


def read(path):
    with netCDF4.Dataset(path) as nc:
        nc.set_auto_maskandscale(False)
        nc.set_auto_chartostring(False)
        for name, var in nc.variables.items():
            line(name, kind(var), var.shape, var[...])


def write(path):
    with netCDF4.Dataset(path, 'w', format='NETCDF4') as nc:
        nc.set_auto_chartostring(False)
        nc.createDimension('z', 2)
        nc.createDimension('y', 3)
        nc.createDimension('x', 4)
        nc.createDimension('n', 5)
        nc.createDimension('t', None)
        for seed, k in enumerate(NUMERIC + ['S1', 'str']):
            suffix = SUFFIX[k]
            nctype = str if k == 'str' else k
            for shape_name, dims in [('cube', ('z', 'y', 'x')), ('line', ('n',)), ('scalar', ())]:
                shape = tuple(len(nc.dimensions[d]) for d in dims)
                values = samples(k, shape, 10 * seed + len(dims))
                var = nc.createVariable(shape_name + suffix, nctype, dims)
                var[...] = values
                line(shape_name + suffix, k, shape, values)
                if shape_name == 'cube':
                    line(shape_name + suffix + '@part', k, (2, 2, 2), values[CUBE_PART])
                    line(shape_name + suffix + '@one', k, (), values[1, 2, 3])
                elif shape_name == 'line':
                    line(shape_name + suffix + '@part', k, (2,), values[LINE_PART])
            if k in NUMERIC:
                vtype = nc.createVLType(k, 'of' + suffix)
                var = nc.createVariable('vlen' + suffix, vtype, ('y',))
                values = np.empty(3, object)
                for j, length in enumerate([3, 0, 1]):
                    values[j] = samples(k, (length,), seed + j) if length else np.array([], k)
                var[:] = values
                line('vlen' + suffix, 'vlen' + k, (3,), values)
        records = nc.createVariable('records', '<i4', ('t', 'x'))
        values = samples('<i4', (3, 4), 7)
        records[0:3, :] = values
        line('records', '<i4', (3, 4), values)


if __name__ == '__main__':
    {'read': read, 'write': write}[sys.argv[1]](sys.argv[2])
