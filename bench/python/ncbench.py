"""Implementation (d): the workloads through python3-netcdf4 (run with /usr/bin/python3).

    ncbench.py WORKLOAD FILE REPS     prints "rep SECONDS" per repetition and "check SUM"

Masking and scaling are switched off so that every read returns the raw values, as
netcdflib does. Sizes and index sequences are those of bench/c/ncbench_common.h.
"""
import os
import sys
import time

import netCDF4
import numpy as np

SLABS = 64
ELEMENT_CALLS = 100_000
STRIDED_CALLS = 10_000
STRIDED_COUNT = 10
STRIDED_ROW_STEP = 3
STRIDED_COLUMN_STEP = 7


def element_index(k):
    return (k * 37) % 1000, (k * 101) % 1000


def strided_start(k):
    return (k * 37) % 970, (k * 101) % 930


def report(seconds):
    print(f"rep {seconds:.6f}", flush=True)


def open_variable(path, name, mode="r"):
    ds = netCDF4.Dataset(path, mode)
    var = ds.variables[name]
    var.set_auto_maskandscale(False)
    return ds, var


def read_whole(path, reps):
    ds, var = open_variable(path, "x" if os.path.basename(path).startswith("big") else "f")
    check = 0.0
    for _ in range(reps):
        t0 = time.perf_counter()
        data = var[:]
        report(time.perf_counter() - t0)
        flat = data.reshape(-1)
        check = float(flat[0]) + float(flat[flat.size // 2]) + float(flat[-1])
        del data, flat
    print(f"check {check:.17g}")
    ds.close()


def read_slabs(path, reps):
    ds, var = open_variable(path, "x")
    rows = var.shape[0] // SLABS
    check = 0.0
    for _ in range(reps):
        check = 0.0
        t0 = time.perf_counter()
        for s in range(SLABS):
            data = var[s * rows:(s + 1) * rows, :]
            check += float(data[-1, -1])
        report(time.perf_counter() - t0)
        del data
    print(f"check {check:.17g}")
    ds.close()


def write_whole(path, reps):
    ds, var = open_variable(path, "x")
    shape = var.shape
    ds.close()
    data = np.ones(shape)
    for _ in range(reps):
        ds, var = open_variable(path, "x", "a")
        t0 = time.perf_counter()
        var[:] = data
        ds.close()
        report(time.perf_counter() - t0)
        fd = os.open(path, os.O_RDWR)
        os.fsync(fd)
        os.close(fd)


def read_elements(path, reps):
    ds, var = open_variable(path, "s")
    check = 0.0
    for _ in range(reps):
        check = 0.0
        t0 = time.perf_counter()
        for k in range(ELEMENT_CALLS):
            i, j = element_index(k)
            check += float(var[i, j])
        report(time.perf_counter() - t0)
    print(f"check {check:.17g}")
    ds.close()


def write_elements(path, reps):
    ds, var = open_variable(path, "s", "a")
    for _ in range(reps):
        t0 = time.perf_counter()
        for k in range(ELEMENT_CALLS):
            i, j = element_index(k)
            var[i, j] = float(k)
        report(time.perf_counter() - t0)
    ds.close()


def read_strided(path, reps):
    ds, var = open_variable(path, "s")
    n = STRIDED_COUNT
    rows, cols = STRIDED_ROW_STEP, STRIDED_COLUMN_STEP
    check = 0.0
    for _ in range(reps):
        check = 0.0
        t0 = time.perf_counter()
        for k in range(STRIDED_CALLS):
            i, j = strided_start(k)
            block = var[i:i + rows * n:rows, j:j + cols * n:cols]
            check += float(block.sum())
        report(time.perf_counter() - t0)
    print(f"check {check:.17g}")
    ds.close()


def scan_metadata(path, reps):
    chars = 0
    for _ in range(reps):
        chars = 0
        t0 = time.perf_counter()
        ds = netCDF4.Dataset(path)
        for var in ds.variables.values():
            var.name, var.dtype, var.dimensions  # what inqVar returns
            for att in var.ncattrs():
                chars += len(var.getncattr(att))
        ds.close()
        report(time.perf_counter() - t0)
    print(f"check {chars:.17g}")


ZARR_SHAPE = (4096, 16384)  # 256 MiB of float
ZARR_CHUNK_ROWS = 512


def prepare_zarr(path, _reps):
    """Writes the store read_zarr reads: no compressor, so that netCDF-C can read it."""
    import zarr
    rows, columns = ZARR_SHAPE
    array = zarr.open_group(path, mode="w").create_dataset(
        "f", shape=ZARR_SHAPE, chunks=(ZARR_CHUNK_ROWS, columns), dtype="<f4", compressor=None)
    for start in range(0, rows, ZARR_CHUNK_ROWS):
        block = np.arange(start * columns, (start + ZARR_CHUNK_ROWS) * columns) % 65521
        array[start:start + ZARR_CHUNK_ROWS, :] = block.reshape(-1, columns).astype("<f4")


def read_zarr(url, reps):
    """The Zarr store of URL (file:///DIR#mode=...) read whole through python3-zarr."""
    import zarr
    array = zarr.open_group(url[len("file://"):].split("#")[0], mode="r")["f"]
    check = 0.0
    for _ in range(reps):
        t0 = time.perf_counter()
        data = array[...]
        report(time.perf_counter() - t0)
        flat = data.reshape(-1)
        check = float(flat[0]) + float(flat[flat.size // 2]) + float(flat[-1])
        del data, flat
    print(f"check {check:.17g}")


PACKED_COLUMNS = 16384


def prepare_packed(path, elements):
    """A netCDF-4 file with the int16 variable "p" of ELEMENTS elements, packed with
    scale_factor and add_offset, every 97th element its _FillValue."""
    ds = netCDF4.Dataset(path, "w")
    rows = elements // PACKED_COLUMNS
    ds.createDimension("row", rows)
    ds.createDimension("column", PACKED_COLUMNS)
    var = ds.createVariable("p", "i2", ("row", "column"), fill_value=np.int16(-32767))
    var.scale_factor = 0.01
    var.add_offset = 10.0
    var.set_auto_maskandscale(False)
    block = 512
    for first in range(0, rows, block):
        index = np.arange(first * PACKED_COLUMNS, min(rows, first + block) * PACKED_COLUMNS,
                          dtype=np.int64)
        values = (index * 7919 % 60000 - 30000).astype(np.int16)
        values[index % 97 == 0] = -32767
        var[first:first + block, :] = values.reshape(-1, PACKED_COLUMNS)
    ds.close()


def read_packed(path, reps):
    """The decoded read with python3-netcdf4's default masking and scaling."""
    ds = netCDF4.Dataset(path)
    var = ds.variables["p"]
    check = ""
    for _ in range(reps):
        t0 = time.perf_counter()
        data = var[:]
        report(time.perf_counter() - t0)
        flat = data.reshape(-1)
        picks = np.ma.filled(flat[[0, flat.size // 2, -1]].astype(np.float64), np.nan)
        check = " ".join("NaN" if np.isnan(x) else "%.17g" % x for x in picks)
        check += " %d" % np.ma.count_masked(flat)
        del data, flat
    print(f"check {check}")
    ds.close()


def read_compound(path, reps):
    ds, var = open_variable(path, "c")
    check = 0.0
    for _ in range(reps):
        t0 = time.perf_counter()
        data = var[:]
        report(time.perf_counter() - t0)
        n = data.size
        check = (float(data["t"][0]) + float(data["v"][n // 2]) + float(data["q"][n - 1])
                 + float(data["s"][n - 1][3]))
        del data
    print(f"check {check:.17g}")
    ds.close()


def open_memory(path, reps):
    """The file's bytes read into memory, then opened from there and closed."""
    nvars = 0
    for _ in range(reps):
        with open(path, "rb") as f:
            data = f.read()
        t0 = time.perf_counter()
        ds = netCDF4.Dataset("mem.nc", memory=data)
        nvars = len(ds.variables)
        ds.close()
        report(time.perf_counter() - t0)
        del data
    print(f"check {nvars}")


WORKLOADS = {
    "prepare_packed": prepare_packed,
    "ds_packed": read_packed,
    "read_whole": read_whole,
    "read_slabs": read_slabs,
    "read_deflate": read_whole,
    "read_zarr": read_zarr,
    "prepare_zarr": prepare_zarr,
    "read_bzip2": read_whole,
    "read_quantize": read_whole,
    "open_mem": open_memory,
    "write_whole": write_whole,
    "get1": read_elements,
    "put1": write_elements,
    "strided": read_strided,
    "meta": scan_metadata,
    "read_compound": read_compound,
}

if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1] not in WORKLOADS:
        sys.exit(f"usage: {sys.argv[0]} {'|'.join(WORKLOADS)} FILE REPS")
    WORKLOADS[sys.argv[1]](sys.argv[2], int(sys.argv[3]))
