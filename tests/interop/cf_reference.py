"""python3-netcdf4 side of the CF decoding checks of ncdataset.

  cf_reference.py write FILE FORMAT   stored values under CF attributes, written raw
  cf_reference.py dump FILE           every variable as python3-netcdf4 decodes it by default

dump prints one line per variable: name|dtype|mask (0/1 per element)|values (%.17g, the
masked ones 0), elements in C order, which is Octave's column-major order of the reversed
shape."""

import sys

import netCDF4
import numpy as np


def variables(fmt):
    """(name, stored dtype, file dims, attributes, raw values) of each test variable."""
    classic = fmt.startswith('NETCDF3') or fmt == 'NETCDF4_CLASSIC'
    v = []
    # Packed shorts: fill value, a missing_value list beside it, doubles and singles.
    v.append(('packed', 'i2', ('t', 'x'),
              {'scale_factor': 0.01, 'add_offset': 20.0, '_FillValue': np.int16(-999)},
              [[-999, 0, 1, -1, 32767, -32768], [12345, -999, 7, 100, -100, 2]]))
    v.append(('packed32', 'i2', ('t', 'x'),
              {'scale_factor': np.float32(0.25), 'add_offset': np.float32(-3.5),
               'missing_value': np.int16([5, 6])},
              [[5, 6, 7, 8, 9, -4], [0, 1, 2, 3, 4, 5]]))
    v.append(('scaled_only', 'i4', ('x',), {'scale_factor': 1e-3},
              [1, -2, 300000, 0, 7, 2147483647]))
    # _Unsigned bytes: stored signed, read unsigned; the fill value's bits count.
    v.append(('ubytes', 'i1', ('t', 'x'), {'_Unsigned': 'true', '_FillValue': np.int8(-1)},
              [[-1, -128, 127, 0, -2, 5], [1, 2, 3, -3, -1, 100]]))
    v.append(('ubytes_packed', 'i1', ('x',),
              {'_Unsigned': 'true', 'scale_factor': 0.5, 'valid_max': np.int8(-56)},
              [-56, -55, -1, 0, 10, -128]))
    # missing_value lists and valid ranges.
    v.append(('missing_list', 'i4', ('x',), {'missing_value': np.int32([-1, -2, 99])},
              [-1, -2, 99, 98, 0, 3]))
    v.append(('float_missing', 'f4', ('x',),
              {'_FillValue': np.float32(-1), 'missing_value': np.float32([1e20, 7.5])},
              [-1, 1e20, 7.5, 0.5, 2.25, 3]))
    v.append(('valid_range', 'i2', ('t', 'x'), {'valid_range': np.int16([0, 100])},
              [[-1, 0, 50, 100, 101, 3], [4, 5, 200, -200, 99, 1]]))
    v.append(('valid_min_max', 'f8', ('x',), {'valid_min': -5.0, 'valid_max': 5.0},
              [-5.0, -5.5, 4.999, 5.0, 5.01, 0]))
    v.append(('valid_packed', 'i2', ('x',),
              {'valid_min': np.int16(-10), 'scale_factor': 2.0, 'add_offset': 1.0,
               '_FillValue': np.int16(30)},
              [-11, -10, 30, 29, 31, 0]))
    if not classic:
        v.append(('ushort_fill', 'u2', ('x',), {'_FillValue': np.uint16(65000),
                                                 'scale_factor': np.float32(0.5)},
                  [65000, 65535, 0, 1, 2, 3]))
    return v


def write(path, fmt):
    d = netCDF4.Dataset(path, 'w', format=fmt)
    d.createDimension('t', 2)
    d.createDimension('x', 6)
    for name, dtype, dims, atts, raw in variables(fmt):
        fill = atts.get('_FillValue')
        var = d.createVariable(name, dtype, dims, fill_value=fill)
        for key, value in atts.items():
            if key != '_FillValue':
                var.setncattr(key, value)
        var.set_auto_maskandscale(False)
        var[...] = np.array(raw).astype(dtype)
    d.close()


def dump(path):
    d = netCDF4.Dataset(path)
    for name, var in d.variables.items():
        data = var[...]
        mask = np.ma.getmaskarray(data).ravel()
        values = np.ma.filled(data, 0).ravel()
        print('%s|%s|%s|%s' % (name, values.dtype, ' '.join('1' if m else '0' for m in mask),
                               ' '.join('%.17g' % x for x in values)))
    d.close()


if __name__ == '__main__':
    if sys.argv[1] == 'write':
        write(sys.argv[2], sys.argv[3])
    else:
        dump(sys.argv[2])
