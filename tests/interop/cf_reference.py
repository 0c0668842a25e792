"""python3-netcdf4's side of the CF decoding checks of ncdataset: cf_reference.py FILE prints,
as JSON, each variable's Octave class, mask and values (%.17g, masked ones 0) as
python3-netcdf4 decodes them by default."""

import json
import sys

import netCDF4
import numpy as np

d = netCDF4.Dataset(sys.argv[1])
classes = {'float64': 'double', 'float32': 'single'}
# Elements in C order: Octave's column-major order of the reversed shape.
print(json.dumps({name: {'class': classes.get(data.dtype.name, data.dtype.name),
                         'mask': np.ma.getmaskarray(data).ravel().tolist(),
                         'values': ['%.17g' % x for x in np.ma.filled(data, 0).ravel()]}
                  for name, data in ((n, v[...]) for n, v in d.variables.items())}))
d.close()
