#!/usr/bin/python3
"""The python3-netcdf4 side of the interop matrix.

    interop_matrix.py DIR FORMAT...

For each FORMAT (classic, 64bit_offset, cdf5, netcdf4, netcdf4_classic) reads
DIR/oct-FORMAT.nc, written by netcdflib, and writes DIR/py-FORMAT.nc for netcdflib to read.
Prints one line per item read or written:

    read|wrote FORMAT TYPE ITEM NCTYPE SHAPE CANON

ITEM is var (the variable TYPE, netCDF shape (2, 3)), att (its attribute "a") or gatt (the
global attribute "g_TYPE"). CANON lists the elements in linear order, each as the hex of its
little-endian bytes (strings: UTF-8 bytes), a Vlen element as a nested list: "(e1,e2,...)".
Also prints "read FORMAT - model - - DATA_MODEL" for each file read.
"""

import sys
import warnings

import netCDF4
import numpy as np

import nc_raw

FORMATS = {'classic': 'NETCDF3_CLASSIC', '64bit_offset': 'NETCDF3_64BIT_OFFSET',
           'cdf5': 'NETCDF3_64BIT_DATA', 'netcdf4': 'NETCDF4',
           'netcdf4_classic': 'NETCDF4_CLASSIC'}
CLASSIC = ['byte', 'char', 'short', 'int', 'float', 'double']
CDF5 = CLASSIC + ['ubyte', 'ushort', 'uint', 'int64', 'uint64']
ALLOWED = {'classic': CLASSIC, '64bit_offset': CLASSIC, 'netcdf4_classic': CLASSIC,
           'cdf5': CDF5, 'netcdf4': CDF5 + ['string', 'vlen', 'vlen2']}
NCTYPE = {'byte': 'NC_BYTE', 'char': 'NC_CHAR', 'short': 'NC_SHORT', 'int': 'NC_INT',
          'float': 'NC_FLOAT', 'double': 'NC_DOUBLE', 'ubyte': 'NC_UBYTE',
          'ushort': 'NC_USHORT', 'uint': 'NC_UINT', 'int64': 'NC_INT64', 'uint64': 'NC_UINT64',
          'string': 'NC_STRING', 'vlen': ('vlen', 'NC_INT'),
          'vlen2': ('vlen', ('vlen', 'NC_SHORT'))}


def samples(key):
    """Six values of each type, with its extremes; the global attribute gets them reversed
    (text attributes get a text of their own)."""
    whole = {'byte': [-128, 127, 0, -1, 1, 85], 'ubyte': [0, 255, 128, 127, 1, 170],
             'short': [-32768, 32767, 0, -1, 256, -256],
             'ushort': [0, 65535, 32768, 32767, 1, 43690],
             'int': [-2**31, 2**31 - 1, 0, -1, 65536, -65536],
             'uint': [0, 2**32 - 1, 2**31, 2**31 - 1, 1, 2863311530]}
    if key in whole:
        return np.array(whole[key], nc_raw.DTYPE[NCTYPE[key]])
    if key == 'int64':
        return np.array([-2**63, 2**63 - 1, 0, -1, 2**53 + 1, -(2**53 + 1)], '<i8')
    if key == 'uint64':
        return np.array([0, 2**64 - 1, 2**63, 2**63 - 1, 2**53 + 1, 1], '<u8')
    if key == 'float':   # a negative NaN with a payload, infinities, -0, least denormal, max
        bits = [0xFFC00123, 0x7F800000, 0xFF800000, 0x80000000, 0x00000001, 0x7F7FFFFF]
        return np.array(bits, '<u4').view('<f4')
    if key == 'double':
        bits = [0xFFF8000000000123, 0x7FF0000000000000, 0xFFF0000000000000,
                0x8000000000000000, 0x0000000000000001, 0xFFEFFFFFFFFFFFFF]
        return np.array(bits, '<u8').view('<f8')
    if key == 'char':
        return np.frombuffer(bytes([0x41, 0x00, 0x7F, 0x80, 0xE9, 0xFF]), 'S1')
    if key == 'string':
        return ['', 'a', '\u00e9', '\u20acuro', '\U0001F600', 'tab\there']
    if key == 'vlen':
        return [np.array(v, '<i4') for v in
                ([], [-2**31], [1, 2, 3], [2**31 - 1, -1], [], [0])]
    return [[np.array(w, '<i2') for w in v] for v in
            ([], [[]], [[-32768, 32767]], [[1], [2, 3], []], [[0]], [[], [5]])]


def char_attribute(item):
    text = '\u00e9\u20ac\U0001F600 z' if item == 'att' else 'A~\u00f1'
    return text.encode('utf-8')


def canon(value, desc):
    if isinstance(desc, tuple):
        return '(' + ','.join(canon(e, desc[1]) for e in value) + ')'
    if desc == 'NC_STRING':
        return '(' + ','.join(s.encode('utf-8').hex() for s in value) + ')'
    if desc == 'NC_CHAR':
        if not isinstance(value, bytes):
            value = np.ascontiguousarray(value).view('u1').ravel()
        return '(' + ','.join('%02x' % b for b in value) + ')'
    flat = np.ascontiguousarray(value, nc_raw.DTYPE[desc]).ravel()
    return '(' + ','.join(e.tobytes().hex() for e in flat) + ')'


def emit(verb, fmt, key, item, desc, shape, value):
    print(verb, fmt, key, item, nc_raw.type_name(desc), 'x'.join(map(str, shape)),
          canon(value, desc))


def read_var(ds, key, desc, count):
    if key == 'vlen2':
        return nc_raw.get_vlen_var(ds._grpid, nc_raw.varid(ds._grpid, key), count)
    v = ds.variables[key]
    v.set_auto_maskandscale(False)
    if desc == 'NC_CHAR':
        v.set_auto_chartostring(False)
    data = v[:]
    return list(data.ravel()) if isinstance(desc, tuple) or desc == 'NC_STRING' else data


def read_att(ds, by_id, vid, name, desc):
    if isinstance(desc, tuple):
        return nc_raw.get_vlen_att(ds._grpid, vid, name)
    value = ds.getncattr(name) if vid == nc_raw.NC_GLOBAL else by_id[vid].getncattr(name)
    if desc == 'NC_CHAR':
        return value.encode('utf-8')
    if desc == 'NC_STRING':
        return [value] if isinstance(value, str) else list(value)
    return np.atleast_1d(value)


def read_file(path, fmt):
    with netCDF4.Dataset(path) as ds:
        print('read', fmt, '- model - -', ds.data_model)
        ncid = ds._grpid
        by_id = {v._varid: v for v in ds.variables.values()}
        for key in NCTYPE:
            try:
                vid = nc_raw.varid(ncid, key)
            except RuntimeError:
                continue
            desc = nc_raw.describe(ncid, nc_raw.var_type(ncid, vid))
            shape = nc_raw.var_shape(ncid, vid)
            emit('read', fmt, key, 'var', desc, shape, read_var(ds, key, desc, int(np.prod(shape))))
            for item, avid, name in (('att', vid, 'a'), ('gatt', nc_raw.NC_GLOBAL, 'g_' + key)):
                xtype, n = nc_raw.att_info(ncid, avid, name)
                desc = nc_raw.describe(ncid, xtype)
                emit('read', fmt, key, item, desc, [n], read_att(ds, by_id, avid, name, desc))


def write_file(path, fmt):
    with netCDF4.Dataset(path, 'w', format=FORMATS[fmt]) as ds:
        ds.createDimension('y', 2)
        ds.createDimension('x', 3)
        ncid = ds._grpid
        vint = vshort = None
        if fmt == 'netcdf4':
            vint = ds.createVLType(np.int32, 'vint')
            vshort = ds.createVLType(np.int16, 'vshort')
            vvshort = nc_raw.def_vlen(ncid, 'vvshort', vshort._nc_type)
        for key in ALLOWED[fmt]:
            desc, data = NCTYPE[key], samples(key)
            if key == 'vlen2':
                dims = [ds.dimensions[d]._dimid for d in ('y', 'x')]
                vid = nc_raw.def_var(ncid, key, vvshort, dims)
                nc_raw.put_vlen_var(ncid, vid, data)
                nc_raw.put_vlen_att(ncid, vid, 'a', vvshort, data)
                nc_raw.put_vlen_att(ncid, nc_raw.NC_GLOBAL, 'g_' + key, vvshort, data[::-1])
            else:
                dtype = {'char': 'S1', 'string': str, 'vlen': vint}.get(key, nc_raw.DTYPE.get(desc))
                v = ds.createVariable(key, dtype, ('y', 'x'))
                v.set_auto_maskandscale(False)
                if key == 'char':
                    v.set_auto_chartostring(False)
                    v[:] = data.reshape(2, 3)
                    v.setncattr('a', char_attribute('att'))
                    ds.setncattr('g_' + key, char_attribute('gatt'))
                elif isinstance(data, list):
                    block = np.empty(6, object)
                    block[:] = data
                    v[:] = block.reshape(2, 3)
                    if key == 'string':
                        v.setncattr_string('a', data)
                        ds.setncattr_string('g_' + key, data[::-1])
                    else:
                        vid = nc_raw.varid(ncid, key)
                        nc_raw.put_vlen_att(ncid, vid, 'a', vint._nc_type, data)
                        nc_raw.put_vlen_att(ncid, nc_raw.NC_GLOBAL, 'g_' + key, vint._nc_type,
                                            data[::-1])
                else:
                    v[:] = data.reshape(2, 3)
                    v.setncattr('a', data)
                    ds.setncattr('g_' + key, data[::-1].copy())
            for item in ('var', 'att', 'gatt'):
                if key == 'char' and item != 'var':
                    value = char_attribute(item)
                else:
                    value = data[::-1] if item == 'gatt' else data
                shape = [2, 3] if item == 'var' else [len(value)]
                emit('wrote', fmt, key, item, desc, shape, value)


def main(argv):
    # netCDF4-python skips what it cannot map (Vlen of Vlen); nc_raw reads that instead.
    warnings.filterwarnings('ignore', 'WARNING: .*unsupported VLEN')
    folder, formats = argv[1], argv[2:]
    for fmt in formats:
        # What fails to read shows as missing lines in the matrix; the rest still counts.
        try:
            read_file('%s/oct-%s.nc' % (folder, fmt), fmt)
        except Exception as err:  # pylint: disable=broad-except
            print('reading %s: %s' % (fmt, err), file=sys.stderr)
        write_file('%s/py-%s.nc' % (folder, fmt), fmt)


if __name__ == '__main__':
    main(sys.argv)
