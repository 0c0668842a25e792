"""Writes a netCDF-4 file whose header exercises ncdump's CDL: attributes of every type,
escapes, NaN and infinities, strings, empty text, user-defined types, names to escape,
nested and empty groups; enum and compound data."""

import sys

import netCDF4
import numpy as np

d = netCDF4.Dataset(sys.argv[1], 'w')
d.createDimension('x', 3)
d.createDimension('t', None)
v = d.createVariable('v', 'i2', ('t', 'x'), fill_value=np.int16(-99))
v.setncatts({'scale_factor': np.float32(0.1), 'add_offset': 273.15, 'units': 'K',
             'long_name': 'a "q"\nline\ttab\\x', 'valid_range': np.array([-100, 100], 'i2'),
             'b': np.int8(-3), 'ub': np.uint8(3), 'us': np.uint16(7), 'ui': np.uint32(9),
             'i64': np.int64(-9223372036854775807), 'u64': np.uint64(18446744073709551615),
             'f': np.float32([1e-7, 3.4e38, 1 / 3., 100, 1.5, -0.0]),
             'dd': np.array([1 / 3., 1e100, 0.1, 2.0, -0.0, 1e-300, 123456789012]),
             'i': np.int32([1, -2]), 's': ['a', 'b\u00e9'], 'nan': np.float32(np.nan),
             'inf': np.float64(np.inf), 'ninf': np.float32(-np.inf), 'empty': ''})
d.title = 'x'
d.createVariable('str', str, ('x',))
d.createVariable('ch', 'S1', ('x',))
g = d.createGroup('sub')
g.createDimension('y', 2)
g.createVariable('w', 'f8', ('y', 'x')).units = 'm'
g.note = 'n'
g.createGroup('deeper').createVariable('z', 'u1', ())
d.createGroup('empty')
color = d.createEnumType(np.int8, 'color', {'red': -1, 'green': 1})
pair = d.createCompoundType(np.dtype([('a', 'f4'), ('b', 'i2', (2, 3))]), 'pair')
d.createVariable('r', d.createVLType(np.int32, 'ragged'), ('x',))
d.createVariable('e', color, ('x',), fill_value=np.int8(1))[:] = np.int8([-1, 1, -1])
c = np.array([(k + 0.5, np.arange(6 * k, 6 * k + 6).reshape(2, 3)) for k in range(3)], pair.dtype)
d.createVariable('c', pair, ('x',))[:] = c
d.createVariable('odd name', 'f8', ('x',)).setncattr('a:b', 1.5)
d.close()
