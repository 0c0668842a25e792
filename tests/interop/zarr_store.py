"""python3-zarr's side of the Zarr checks: "dump STORE" prints each array of a directory store
as JSON (path, dtype, shape, chunks, compressor, the values' little-endian bytes in C order
as hex); "write STORE CODEC" writes integer arrays with attributes in a nested group, CODEC
none or blosc (python3-zarr's default)."""

import json
import sys

import numpy as np
import zarr


def dump(path):
    out = []
    for _, node in zarr.open_group(path, mode='r').arrays(recurse=True):
        try:
            data = node[...]
            raw = data.astype(data.dtype.newbyteorder('<')).tobytes().hex()
        except ValueError as error:
            raw = 'unreadable: %s' % error
        out.append({'path': node.path, 'dtype': node.dtype.str, 'shape': list(node.shape),
                    'chunks': list(node.chunks), 'compressor': repr(node.compressor), 'hex': raw})
    print(json.dumps(out))


def write(path, codec):
    extra = {} if codec == 'blosc' else {'compressor': None}
    root = zarr.open_group(path, mode='w')
    root.attrs.update(title='written by python3-zarr', version=3)
    group = root.create_group('g').create_group('h')
    for dtype in ['i2', 'i4', 'u8']:
        # 0, 1, ..., less 4 for signed types: netcdflib's side computes the same.
        data = (np.arange(12) - (0 if dtype[0] == 'u' else 4)).reshape(3, 4)
        group.create_dataset('v_' + dtype, data=data, chunks=(2, 3), dtype=dtype, fill_value=7,
                             **extra).attrs['scale'] = 0.5
    # Only the first chunk row is written: the rest reads as the fill value.
    root.create_dataset('partial', shape=(4, 2), chunks=(2, 2), dtype='f8', fill_value=-9.5,
                        **extra)[0:2, :] = 1.25


if __name__ == '__main__':
    {'dump': dump, 'write': write}[sys.argv[1]](*sys.argv[2:])
