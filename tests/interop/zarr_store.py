"""python3-zarr's side of the Zarr interop checks.

  zarr_store.py dump STORE         prints every array of a directory store as JSON: path,
                                   dtype, shape, chunks, fill value, attributes and the
                                   values' little-endian bytes in C order as hex
  zarr_store.py write STORE CODEC  writes a group of arrays of every numeric dtype with a
                                   nested group and attributes; CODEC is none, blosc
                                   (python3-zarr's default) or zlib
"""

import json
import sys

import numcodecs
import numpy as np
import zarr

DTYPES = ['i1', 'u1', 'i2', 'u2', 'i4', 'u4', 'i8', 'u8', 'f4', 'f8']


def sample(dtype, shape):
    """Values netcdflib's side computes the same way: 0, 1, ..., less a third of the count
    for signed types."""
    n = int(np.prod(shape))
    return (np.arange(n) - (0 if dtype[0] == 'u' else n // 3)).astype(dtype).reshape(shape)


def plain(value):
    if isinstance(value, np.generic):
        value = value.item()
    if isinstance(value, (list, tuple)):
        return [plain(v) for v in value]
    if isinstance(value, float):
        return repr(value)
    return value


def dump(path):
    out = []

    def visit(name, node):
        if isinstance(node, zarr.Array):
            entry = {'path': name, 'dtype': node.dtype.str, 'shape': list(node.shape),
                     'chunks': list(node.chunks), 'fill': plain(node.fill_value),
                     'attrs': {k: plain(v) for k, v in node.attrs.asdict().items()}}
            try:
                data = node[...]
                entry['hex'] = data.astype(data.dtype.newbyteorder('<')).tobytes().hex()
            except ValueError as error:
                entry['hex'] = 'unreadable: %s' % error
            out.append(entry)

    root = zarr.open_group(path, mode='r')
    root.visititems(visit)
    print(json.dumps({'attrs': {k: plain(v) for k, v in root.attrs.asdict().items()},
                      'arrays': out}))


def write(path, codec):
    compressor = {'none': None, 'blosc': 'default', 'zlib': numcodecs.Zlib(level=1)}[codec]
    root = zarr.open_group(path, mode='w')
    root.attrs['title'] = 'written by python3-zarr'
    root.attrs['version'] = 3
    group = root.create_group('g').create_group('h')
    for dtype in DTYPES:
        extra = {} if compressor == 'default' else {'compressor': compressor}
        array = group.create_dataset('v_' + dtype, shape=(3, 4), chunks=(2, 3), dtype=dtype,
                                     fill_value=7, **extra)
        array[...] = sample(dtype, (3, 4))
        array.attrs['scale'] = 0.5
    # Only the first chunk row is written: the rest reads as the fill value.
    part = root.create_dataset('partial', shape=(4, 2), chunks=(2, 2), dtype='f8',
                               fill_value=-9.5, compressor=compressor if codec != 'blosc' else 'default')
    part[0:2, :] = 1.25


if __name__ == '__main__':
    if sys.argv[1] == 'dump':
        dump(sys.argv[2])
    else:
        write(sys.argv[2], sys.argv[3])
