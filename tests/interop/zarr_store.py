"""python3-zarr's side of the Zarr interop checks.

  zarr_store.py dump STORE         prints every array of a directory store as JSON: path,
                                   dtype, shape, chunks, compressor and the values'
                                   little-endian bytes in C order as hex
  zarr_store.py write STORE CODEC  writes integer arrays in a nested group,
                                   with attributes; CODEC is none or blosc (python3-zarr's
                                   default)
"""

import json
import sys

import numpy as np
import zarr


def dump(path):
    out = []

    def visit(name, node):
        if isinstance(node, zarr.Array):
            try:
                data = node[...]
                raw = data.astype(data.dtype.newbyteorder('<')).tobytes().hex()
            except ValueError as error:
                raw = 'unreadable: %s' % error
            out.append({'path': name, 'dtype': node.dtype.str, 'shape': list(node.shape),
                        'chunks': list(node.chunks), 'compressor': repr(node.compressor),
                        'hex': raw})

    zarr.open_group(path, mode='r').visititems(visit)
    print(json.dumps(out))


def write(path, codec):
    extra = {} if codec == 'blosc' else {'compressor': None}
    root = zarr.open_group(path, mode='w')
    root.attrs.update(title='written by python3-zarr', version=3)
    group = root.create_group('g').create_group('h')
    for dtype in ['i2', 'i4', 'u8']:
        array = group.create_dataset('v_' + dtype, shape=(3, 4), chunks=(2, 3), dtype=dtype,
                                     fill_value=7, **extra)
        # 0, 1, ..., less 4 for signed types: netcdflib's side computes the same.
        array[...] = (np.arange(12) - (0 if dtype[0] == 'u' else 4)).reshape(3, 4)
        array.attrs['scale'] = 0.5
    # Only the first chunk row is written: the rest reads as the fill value.
    root.create_dataset('partial', shape=(4, 2), chunks=(2, 2), dtype='f8', fill_value=-9.5,
                        **extra)[0:2, :] = 1.25


if __name__ == '__main__':
    if sys.argv[1] == 'dump':
        dump(sys.argv[2])
    else:
        write(sys.argv[2], sys.argv[3])
