"""python3-netcdf4 side of the CF decoding checks of ncdataset.

  cf_reference.py write FILE FORMAT   stored values under CF attributes, written raw
  cf_reference.py dump FILE           every variable as python3-netcdf4 decodes it by default

dump prints a JSON object: for each variable its Octave class, mask and values (%.17g text,
the masked ones 0), elements in C order, which is Octave's column-major order of the
reversed shape."""

import json
import sys

import netCDF4
import numpy as np

# name: (stored dtype, file dims, attributes, raw values). Packed shorts with a fill value
# or a missing_value list, in double and single; _Unsigned bytes, whose fill value's bits
# count; a float missing_value list beside a fill value; valid ranges and bounds, alone
# and with packing.
VARIABLES = {
    'packed': ('i2', ('t', 'x'),
               {'scale_factor': 0.01, 'add_offset': 20.0, '_FillValue': np.int16(-999)},
               [[-999, 0, 1, -1, 32767, -32768], [12345, -999, 7, 100, -100, 2]]),
    'packed32': ('i2', ('t', 'x'),
                 {'scale_factor': np.float32(0.25), 'add_offset': np.float32(-3.5),
                  'missing_value': np.int16([5, 6])},
                 [[5, 6, 7, 8, 9, -4], [0, 1, 2, 3, 4, 5]]),
    'scaled_only': ('i4', ('x',), {'scale_factor': 1e-3}, [1, -2, 300000, 0, 7, 2147483647]),
    'ubytes': ('i1', ('t', 'x'), {'_Unsigned': 'true', '_FillValue': np.int8(-1)},
               [[-1, -128, 127, 0, -2, 5], [1, 2, 3, -3, -1, 100]]),
    'float_missing': ('f4', ('x',),
                      {'_FillValue': np.float32(-1), 'missing_value': np.float32([1e20, 7.5])},
                      [-1, 1e20, 7.5, 0.5, 2.25, 3]),
    'valid_range': ('i2', ('t', 'x'), {'valid_range': np.int16([0, 100])},
                    [[-1, 0, 50, 100, 101, 3], [4, 5, 200, -200, 99, 1]]),
    'valid_min_max': ('f8', ('x',), {'valid_min': -5.0, 'valid_max': 5.0},
                      [-5.0, -5.5, 4.999, 5.0, 5.01, 0]),
    'valid_packed': ('i2', ('x',), {'valid_min': np.int16(-10), 'scale_factor': 2.0,
                                    'add_offset': 1.0, '_FillValue': np.int16(30)},
                     [-11, -10, 30, 29, 31, 0]),
}


def write(path, fmt):
    d = netCDF4.Dataset(path, 'w', format=fmt)
    d.createDimension('t', 2)
    d.createDimension('x', 6)
    for name, (dtype, dims, atts, raw) in VARIABLES.items():
        # Data before the attributes that would make python3-netcdf4 pack or mask it.
        var = d.createVariable(name, dtype, dims, fill_value=atts.pop('_FillValue', None))
        var[...] = np.array(raw).astype(dtype)
        var.setncatts(atts)
    d.close()


def dump(path):
    d = netCDF4.Dataset(path)
    classes = {'float64': 'double', 'float32': 'single'}
    print(json.dumps({name: {'class': classes.get(data.dtype.name, data.dtype.name),
                             'mask': np.ma.getmaskarray(data).ravel().tolist(),
                             'values': ['%.17g' % x for x in np.ma.filled(data, 0).ravel()]}
                      for name, data in ((n, v[...]) for n, v in d.variables.items())}))
    d.close()


if __name__ == '__main__':
    {'dump': dump, 'write': write}[sys.argv[1]](*sys.argv[2:])
