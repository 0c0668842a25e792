#!/usr/bin/python3
"""Runs the benchmark suite: every workload in four implementations, one process per
workload and implementation, several repetitions timed inside the process.

  (a) C on netCDF-C                          BUILD/bin/ncbench_c
  (b) netcdflib from C++ (substitute host)   BUILD/bin/qvbench
  (c) netcdflib from GNU Octave (bridge)     bench/octave/netcdflib_bench.m
  (d) python3-netcdf4                        bench/python/ncbench.py

and, for the bulk reads, (a) into a buffer touched beforehand (the cost of the read
alone) and into a fresh buffer advised for transparent huge pages (as numpy does).

Two remote workloads: read_dap2 reads every variable of the captured DAP2 responses
(shared/remote-fixtures) over HTTP from a loopback server, (a) against (b) and (c); read_zarr
reads a 256 MiB float variable of an uncompressed Zarr store, where (d) is python3-zarr.

Prints the machine, a table of medians, spreads, ratios to (a) and peak memory, and the
targets met or missed; writes the same figures as JSON next to the build.
"""
import argparse
import datetime
import json
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
MIB = 1 << 20

# name, file, repetitions counted in each process, calls per repetition (0: report seconds
# per repetition), data size for the memory target (whole-variable transfers only)
WORKLOADS = [
    ("read_whole", "big4.nc", 2, 0, "big"),
    ("read_whole", "big3.nc", 2, 0, "big"),
    ("read_slabs", "big4.nc", 2, 0, None),
    ("read_slabs", "big3.nc", 2, 0, None),
    ("read_deflate", "deflate.nc", 1, 0, "deflate"),
    ("read_bzip2", "bzip2.nc", 1, 0, "deflate"),
    ("read_quantize", "quantize.nc", 1, 0, "deflate"),
    ("open_mem", "mem4.nc", 2, 0, "mem"),
    ("write_whole", "write4.nc", 2, 0, "big"),
    ("write_whole", "write3.nc", 2, 0, "big"),
    ("get1", "small.nc", 1, 100_000, None),
    ("put1", "small_write.nc", 1, 100_000, None),
    ("strided", "small.nc", 2, 10_000, None),
    ("meta", "meta.nc", 2, 0, None),
    ("read_compound", "compound.nc", 2, 0, "compound"),
    ("read_dap2", "dap2-urls.txt", 3, 0, None),
    ("read_zarr", "float.zarr", 2, 0, None),
]
# Workloads that run only some implementations: opening from memory is netcdflib's and
# python3-netcdf4's.
ONLY_IMPLS = {"open_mem": {"c", "d"}}
REMOTE_IMPLS = {"read_dap2": ["a", "b", "c"], "read_zarr": ["a", "b", "c", "d"]}
BULK_READS = {"read_whole", "read_slabs", "read_deflate", "read_bzip2", "read_quantize"}
# The dataset interface (ncdataset) beside what it is measured against, in the same rounds:
# name, file, repetitions, (label, implementation) for the interface and the reference.
DATASET_ROWS = [
    ("ds_raw", "big4.nc", 2, ("ds.read, Decode false", "ds"),
     ("netcdflib getVarDouble", "lib")),
    ("ds_packed", "packed.nc", 2, ("ds.read, decoded", "ds"), ("python3-netcdf4 v[:]", "py")),
    ("ds_disp", "meta.nc", 3, ("disp(ds)", "ds"), ("ncdump -h", "ncdump")),
]
DATASET_TARGETS = {"ds_raw": 1.05, "ds_packed": 1.0, "ds_disp": 2.0}
PACKED_ELEMENTS = 128 << 20
# The compound read is held to C reading into a buffer (time) and to the buffer plus the
# result (memory): records are read whole and then split into the field arrays.
COMPOUND_BYTES = 10_000_000 * 24
IMPLS = ["a", "b", "c", "d"]
IMPL_NAMES = {
    "a": "(a) C",
    "b": "(b) C++ host",
    "c": "(c) Octave",
    "d": "(d) Python",
    "touched": "C, touched buffer",
    "thp": "C, fresh + THP",
}


def machine():
    model = "unknown"
    with open("/proc/cpuinfo") as f:
        for line in f:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    with open("/proc/meminfo") as f:
        total_kib = int(f.readline().split()[1])
    return {
        "date": datetime.datetime.now().strftime("%Y-%m-%d %H:%M"),
        "nproc": os.cpu_count(),
        "cpu": model,
        "ram_gib": round(total_kib / (1 << 20), 1),
        "kernel": platform.release(),
    }


def loadavg():
    with open("/proc/loadavg") as f:
        return float(f.read().split()[0])


def warm(path):
    """Reads a file once so that the timed reads find it in the page cache."""
    with open(path, "rb", buffering=0) as f:
        while f.read(16 * MIB):
            pass


def prepare_remote(data, fixtures):
    """The Zarr store (written by python3-zarr, no compressor, so netCDF-C can read it) and
    the list of DAP2 URLs on a loopback server; returns the server process."""
    # In its own process: memory this one touches would count in every child's peak RSS.
    subprocess.run(["/usr/bin/python3", os.path.join(HERE, "python", "ncbench.py"),
                    "prepare_zarr", os.path.join(data, "float.zarr"), "0"], check=True)
    portfile = os.path.join(data, "dap2.port")
    server = subprocess.Popen(
        ["/usr/bin/python3", os.path.join(HERE, "..", "tests", "interop", "dap_server.py"),
         os.path.join(fixtures, "dap2"), portfile, "3600"],
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    for _ in range(200):
        if os.path.exists(portfile):
            break
        time.sleep(0.05)
    with open(portfile) as f:
        port = int(f.read().split()[0])
    names = sorted(n[:-4] for n in os.listdir(os.path.join(fixtures, "dap2")) if n.endswith(".dds"))
    with open(os.path.join(data, "dap2-urls.txt"), "w") as f:
        f.writelines(f"http://127.0.0.1:{port}/{name}\n" for name in names)
    return server


def run(cmd, err_file):
    """Runs one benchmark process; returns its repetition times, checksum and peak RSS in
    KiB. The RSS is the kernel's maximum for the process as wait4 reports it, the same way
    for every implementation (and what /usr/bin/time -v shows)."""
    with open(err_file, "w+") as err:
        proc = subprocess.Popen(cmd, stdout=subprocess.PIPE, stderr=err, text=True)
        out = proc.stdout.read()
        proc.stdout.close()
        _, status, usage = os.wait4(proc.pid, 0)
        proc.returncode = os.waitstatus_to_exitcode(status)
        err.seek(0)
        if proc.returncode != 0:
            raise RuntimeError(f"{' '.join(cmd)} failed ({proc.returncode}):\n{err.read()}{out}")
    reps, check = [], None
    for line in out.splitlines():
        key, _, value = line.partition(" ")
        if key == "rep":
            reps.append(float(value))
        elif key == "check":
            check = value.strip()
    return reps, check, usage.ru_maxrss


class Runner:
    def __init__(self, build, data):
        self.build = build
        self.data = data
        self.octave = shutil.which("octave-cli") or "octave-cli"

    def command(self, impl, workload, path, reps):
        if impl in ("a", "touched", "thp"):
            variant = "" if impl == "a" else "@" + impl
            return [os.path.join(self.build, "bin", "ncbench_c"), workload + variant, path,
                    str(reps)]
        if impl == "b":
            return [os.path.join(self.build, "bin", "qvbench"), workload, path, str(reps)]
        if impl == "c":
            script = (f"addpath('{os.path.join(self.build, 'octave')}', "
                      f"'{os.path.join(HERE, 'octave')}'); "
                      f"netcdflib_bench('{workload}', '{path}', {reps})")
            return [self.octave, "--norc", "--no-history", "--no-window-system", "--eval",
                    script]
        return ["/usr/bin/python3", os.path.join(HERE, "python", "ncbench.py"), workload, path,
                str(reps)]

    def dataset_command(self, impl, workload, path, reps):
        if impl == "ds":
            script = (f"addpath('{os.path.join(self.build, 'octave')}', "
                      f"'{os.path.join(HERE, '..', 'octave', 'inst')}', "
                      f"'{os.path.join(HERE, 'octave')}'); "
                      f"ncdataset_bench('{workload}', '{path}', {reps})")
            return [self.octave, "--norc", "--no-history", "--no-window-system", "--eval",
                    script]
        if impl == "lib":
            return self.command("c", "read_whole", path, reps)
        if impl == "py":
            return ["/usr/bin/python3", os.path.join(HERE, "python", "ncbench.py"), workload,
                    path, str(reps)]
        # ncdump -h, each repetition a process as a user runs it, its output discarded.
        code = ("import subprocess, sys, time\n"
                "for _ in range(int(sys.argv[2])):\n"
                "    t0 = time.perf_counter()\n"
                "    out = subprocess.run(['ncdump', '-h', sys.argv[1]], check=True,\n"
                "                         stdout=subprocess.PIPE).stdout\n"
                "    print('rep %.6f' % (time.perf_counter() - t0))\n"
                "print('check %d' % len(out))\n")
        return ["/usr/bin/python3", "-c", code, path, str(reps)]

    def measure(self, impl, workload, path, reps):
        return run(self.command(impl, workload, path, reps), os.path.join(self.data, "stderr"))


def summarise(times):
    med = statistics.median(times)
    return {"median": med, "min": min(times), "max": max(times), "reps": times}


def fmt_time(stats, calls):
    if calls:
        return f"{stats['median'] / calls * 1e6:.2f} µs"
    return f"{stats['median']:.3f} s"


def fmt_spread(stats):
    med = stats["median"]
    return f"±{(stats['max'] - stats['min']) / (2 * med) * 100:.0f}%" if med > 0 else "-"


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="CMake build dir with NETCDFLIB_BENCH=ON")
    parser.add_argument("--mib", type=int, default=1024, help="size of the big variables")
    parser.add_argument("--rounds", type=int, default=3,
                        help="processes per workload and implementation")
    parser.add_argument("--reps", type=float, default=1.0,
                        help="scale the repetitions each process counts")
    parser.add_argument("--only", default="", help="comma-separated workload names")
    parser.add_argument("--impls", default="a,b,c,d,touched,thp")
    parser.add_argument("--tmp", default=None, help="where the files go (default: the build dir)")
    parser.add_argument("--json", default=None, help="where the figures go")
    parser.add_argument("--fixtures", default=os.path.join(HERE, "..", "..", "shared",
                                                           "remote-fixtures"),
                        help="the captured OPeNDAP responses (dap2/ is served over HTTP)")
    args = parser.parse_args()

    build = os.path.abspath(args.build)
    impls = args.impls.split(",")
    only = set(filter(None, args.only.split(",")))
    info = machine()
    info["load_start"] = loadavg()
    info["mib"] = args.mib
    print(f"machine: {info['nproc']} cores, {info['cpu']}, {info['ram_gib']} GiB RAM, "
          f"Linux {info['kernel']}; {info['date']}; load average {info['load_start']:.2f}",
          flush=True)

    data = tempfile.mkdtemp(prefix="netcdflib-bench-", dir=args.tmp or build)
    results = {"machine": info, "runs": []}
    started = time.monotonic()
    server = None
    try:
        t0 = time.monotonic()
        subprocess.run([os.path.join(build, "bin", "ncbench_c"), "prepare", data, str(args.mib)],
                       check=True)
        # Written back now, so that the flushing does not run under the timed work.
        subprocess.run(["sync"], check=True)
        if not only or only & set(REMOTE_IMPLS):
            server = prepare_remote(data, os.path.abspath(args.fixtures))
        print(f"prepared the files in {time.monotonic() - t0:.0f} s", flush=True)
        runner = Runner(build, data)
        baseline = runner.measure("c", "baseline", os.path.join(data, "small.nc"), 1)[2]
        results["octave_baseline_kib"] = baseline
        for name, file, reps, calls, size in WORKLOADS:
            if only and name not in only:
                continue
            reps = max(1, round(reps * args.reps))
            path = os.path.join(data, file)
            wanted = [i for i in impls if (i in IMPLS or name in BULK_READS)
                      and i in ONLY_IMPLS.get(name, {i})]
            if name in REMOTE_IMPLS:
                wanted = [i for i in impls if i in REMOTE_IMPLS[name]]
            if name == "read_zarr":
                path = f"file://{path}#mode=zarr,file"
            runs = {impl: {"times": [], "first": [], "rss": 0, "checks": set()} for impl in wanted}
            # Rounds through the implementations rather than all repetitions of one after
            # the other: whatever else the machine does for a while then falls on all.
            for _ in range(args.rounds):
                for impl in wanted:
                    if name == "read_zarr":
                        for chunk in os.scandir(os.path.join(data, file, "f")):
                            warm(chunk.path)
                    elif not name.startswith("write") and name != "read_dap2":
                        warm(path)
                    # One more repetition than counted: the first pays for what a process
                    # does once (libraries, caches, memory the kernel has not handed out
                    # yet), the same for every implementation; it is kept apart.
                    times, check, rss = runner.measure(impl, name, path, reps + 1)
                    run = runs[impl]
                    run["first"].append(times[0])
                    run["times"] += times[1:]
                    run["rss"] = max(run["rss"], rss)
                    run["checks"].add(check)
            for impl in wanted:
                run = runs[impl]
                check = " / ".join(sorted(map(str, run["checks"])))
                run_info = {"workload": name, "file": file, "impl": impl, "calls": calls,
                            "size": size, "check": check, "maxrss_kib": run["rss"],
                            "load": loadavg(), "first": run["first"], **summarise(run["times"])}
                results["runs"].append(run_info)
                print(f"  {name:12s} {file:15s} {IMPL_NAMES[impl]:18s} "
                      f"{fmt_time(run_info, calls):>10s} {fmt_spread(run_info):>5s} "
                      f"first {max(run['first']):7.3f} s  peak {run['rss'] / 1024:6.0f} MiB  "
                      f"check {check}", flush=True)
        dataset_rows(runner, data, args, only, results)
    finally:
        if server is not None:
            server.terminate()
            server.wait()
        shutil.rmtree(data, ignore_errors=True)
    info["load_end"] = loadavg()
    info["minutes"] = round((time.monotonic() - started) / 60, 1)
    sizes = {"big": args.mib * MIB, "deflate": args.mib * MIB // 4, "mem": args.mib * MIB // 4}
    print()
    print(report(results, sizes))
    if results.get("dataset"):
        print()
        print(dataset_report(results))
    path = args.json or os.path.join(build, "bench-results.json")
    with open(path, "w") as f:
        json.dump(results, f, indent=1)
    print(f"\nfigures written to {path}; {info['minutes']} min, load average "
          f"{info['load_start']:.2f} at the start and {info['load_end']:.2f} at the end")
    return 0 if all_checks_agree(results) else 1


def dataset_rows(runner, data, args, only, results):
    """The ncdataset rows: each workload's interface and reference processes alternate."""
    rows = [r for r in DATASET_ROWS if not only or r[0] in only]
    if not rows:
        return
    packed = os.path.join(data, "packed.nc")
    if any(r[0] == "ds_packed" for r in rows):
        t0 = time.monotonic()
        subprocess.run(["/usr/bin/python3", os.path.join(HERE, "python", "ncbench.py"),
                        "prepare_packed", packed, str(PACKED_ELEMENTS)], check=True)
        subprocess.run(["sync"], check=True)
        print(f"prepared packed.nc in {time.monotonic() - t0:.0f} s", flush=True)
    err = os.path.join(data, "stderr")
    base = run(runner.dataset_command("ds", "ds_baseline", os.path.join(data, "small.nc"), 1),
               err)[2]
    results["dataset_baseline_kib"] = base
    results["dataset"] = []
    for name, file, reps, mine, ref in rows:
        reps = max(1, round(reps * args.reps))
        path = os.path.join(data, file)
        runs = {impl: {"times": [], "rss": 0, "checks": set()} for _, impl in (mine, ref)}
        for _ in range(args.rounds):
            for _, impl in (mine, ref):
                warm(path)
                times, check, rss = run(runner.dataset_command(impl, name, path, reps + 1), err)
                runs[impl]["times"] += times[1:]
                runs[impl]["rss"] = max(runs[impl]["rss"], rss)
                runs[impl]["checks"].add(check)
        row = {"workload": name, "file": file}
        for side, (label, impl) in (("mine", mine), ("ref", ref)):
            r = runs[impl]
            row[side] = {"label": label, "impl": impl, "maxrss_kib": r["rss"],
                         "checks": sorted(map(str, r["checks"])), **summarise(r["times"])}
            print(f"  {name:10s} {file:11s} {label:24s} {row[side]['median']:8.3f} s "
                  f"{fmt_spread(row[side]):>5s}  peak {r['rss'] / 1024:6.0f} MiB  "
                  f"check {' / '.join(row[side]['checks'])}", flush=True)
        results["dataset"].append(row)


def dataset_report(results):
    lines = ["Dataset interface (ncdataset), each beside its reference in the same rounds:", "",
             "| workload | ncdataset | reference | ratio | target | peak MiB (ncdataset / reference) |",
             "|" + "---|" * 6]
    out = []
    base = results.get("dataset_baseline_kib", 0)
    for row in results["dataset"]:
        mine, ref = row["mine"], row["ref"]
        ratio = mine["median"] / ref["median"]
        limit = DATASET_TARGETS[row["workload"]]
        ok = ratio < limit if row["workload"] == "ds_packed" else ratio <= limit
        word = "faster than" if row["workload"] == "ds_packed" else f"at most {limit}×"
        lines.append(f"| {row['workload']} ({row['file']}) | {mine['label']}: "
                     f"{mine['median']:.3f} s {fmt_spread(mine)} | {ref['label']}: "
                     f"{ref['median']:.3f} s {fmt_spread(ref)} | {ratio:.2f}× | {word}: "
                     f"{'met' if ok else 'MISSED'} | {mine['maxrss_kib'] / 1024:.0f} / "
                     f"{ref['maxrss_kib'] / 1024:.0f} |")
        if mine["checks"] != ref["checks"] and row["workload"] == "ds_packed":
            out.append(f"CHECK MISMATCH {row['workload']}: {mine['checks']} != {ref['checks']}")
        if row["workload"] == "ds_packed":
            stored, result = 2 * PACKED_ELEMENTS, 8 * PACKED_ELEMENTS
            bound = base + (stored + result) / 1024
            out.append(f"- ds_packed peak memory at most baseline + stored block + result = "
                       f"{base / 1024:.0f} + {stored / MIB:.0f} + {result / MIB:.0f} = "
                       f"{bound / 1024:.0f} MiB: {mine['maxrss_kib'] / 1024:.0f} MiB: "
                       f"{'met' if mine['maxrss_kib'] <= bound else 'MISSED'}")
    return "\n".join(lines + [""] + out)


def by_key(results):
    table = {}
    for r in results["runs"]:
        table[(r["workload"], r["file"], r["impl"])] = r
    return table


def all_checks_agree(results):
    ok = True
    table = by_key(results)
    for (name, file, impl), r in table.items():
        ref = table.get((name, file, "a"))
        if ref and r["check"] != ref["check"]:
            print(f"CHECKSUM MISMATCH: {name} {file} {impl}: {r['check']} != {ref['check']}")
            ok = False
    return ok


def report(results, sizes):
    table = by_key(results)
    lines = []
    head = ("| workload | file | (a) C | (b) C++ host | (c) Octave | (d) Python | "
            "C, touched buffer | C, fresh + THP |")
    lines += [head, "|" + "---|" * 8]
    order = []
    for (name, file, _impl) in table:
        if (name, file) not in order:
            order.append((name, file))
    for name, file in order:
        ref = table.get((name, file, "a"))
        cells = []
        for impl in ["a", "b", "c", "d", "touched", "thp"]:
            r = table.get((name, file, impl))
            if r is None:
                cells.append("")
                continue
            text = f"{fmt_time(r, r['calls'])} {fmt_spread(r)}"
            if ref and impl != "a":
                text += f" ({r['median'] / ref['median']:.2f}×)"
            cells.append(text)
        lines.append(f"| {name} | {file} | " + " | ".join(cells) + " |")
    lines += ["", "Peak resident memory (MiB) of each process:", "",
              "| workload | file | (a) C | (b) C++ host | (c) Octave | (d) Python |",
              "|" + "---|" * 6]
    for name, file in order:
        cells = []
        for impl in IMPLS:
            r = table.get((name, file, impl))
            cells.append(f"{r['maxrss_kib'] / 1024:.0f}" if r else "")
        lines.append(f"| {name} | {file} | " + " | ".join(cells) + " |")
    baseline = results.get("octave_baseline_kib")
    if baseline:
        lines.append(f"\nOctave baseline (netcdflib loaded, a file opened and closed): "
                     f"{baseline / 1024:.0f} MiB")
    lines += ["", "Targets:"] + targets(table, baseline, sizes)
    return "\n".join(lines)


def targets(table, baseline, sizes):
    out = []

    def verdict(ok):
        return "met" if ok else "MISSED"

    def noise(x, y):
        # Medians closer than either run's half-range are not told apart by this run.
        half = max(x["max"] - x["min"], y["max"] - y["min"]) / 2
        return " (difference within the spread)" if abs(x["median"] - y["median"]) <= half else ""

    for (name, file, impl), r in sorted(table.items()):
        if name not in BULK_READS or impl not in ("b", "c"):
            continue
        d = table.get((name, file, "d"))
        limit = table.get((name, file, "touched"))
        if d:
            out.append(f"- {name} {file}: {IMPL_NAMES[impl]} faster than (d): "
                       f"{r['median']:.3f} vs {d['median']:.3f} s: "
                       f"{verdict(r['median'] < d['median'])}{noise(r, d)}")
        if limit:
            ratio = r["median"] / limit["median"]
            out.append(f"- {name} {file}: {IMPL_NAMES[impl]} within 1.3× the touched-buffer "
                       f"limit: {ratio:.2f}×: {verdict(ratio <= 1.3)}")
    for (name, file, impl), r in sorted(table.items()):
        a = table.get((name, file, "a"))
        if name == "write_whole" and impl == "b" and a:
            ratio = r["median"] / a["median"]
            out.append(f"- {name} {file}: (b) within 2% of (a): {ratio:.3f}×: "
                       f"{verdict(ratio <= 1.02)}{noise(r, a)}")
        if name == "open_mem" and impl == "c" and baseline:
            # The bytes Octave read plus at most one copy of them.
            bound = baseline + 2.1 * sizes["mem"] / 1024
            out.append(f"- {name} {file}: (c) peak {r['maxrss_kib'] / 1024:.0f} MiB <= "
                       f"baseline + bytes + one copy (+10%) = {bound / 1024:.0f} MiB: "
                       f"{verdict(r['maxrss_kib'] <= bound)}")
            continue
        if impl == "c" and baseline and r.get("size") in sizes:
            bound = baseline + 1.1 * sizes[r["size"]] / 1024
            out.append(f"- {name} {file}: (c) peak {r['maxrss_kib'] / 1024:.0f} MiB <= "
                       f"baseline + 1.1 × data = {bound / 1024:.0f} MiB: "
                       f"{verdict(r['maxrss_kib'] <= bound)}")
    a, c = table.get(("read_compound", "compound.nc", "a")), table.get(("read_compound", "compound.nc", "c"))
    if a and c:
        ratio = c["median"] / a["median"]
        out.append(f"- read_compound: (c) within 1.5× (a): {ratio:.2f}×: {verdict(ratio <= 1.5)}"
                   f"{noise(c, a)}")
        if baseline:
            bound = baseline + 1.1 * 2 * COMPOUND_BYTES / 1024
            out.append(f"- read_compound: (c) peak {c['maxrss_kib'] / 1024:.0f} MiB <= baseline + "
                       f"1.1 × (buffer + result) = {bound / 1024:.0f} MiB: "
                       f"{verdict(c['maxrss_kib'] <= bound)}")
    dap_a = table.get(("read_dap2", "dap2-urls.txt", "a"))
    for impl in ("b", "c"):
        r = table.get(("read_dap2", "dap2-urls.txt", impl))
        if dap_a and r:
            ratio = r["median"] / dap_a["median"]
            out.append(f"- read_dap2: {IMPL_NAMES[impl]} at most 1.05× (a): {ratio:.2f}×: "
                       f"{verdict(ratio <= 1.05)}{noise(r, dap_a)}")
    zarr_d = table.get(("read_zarr", "float.zarr", "d"))
    for impl in ("b", "c"):
        r = table.get(("read_zarr", "float.zarr", impl))
        if r and zarr_d:
            out.append(f"- read_zarr: {IMPL_NAMES[impl]} faster than python3-zarr: "
                       f"{r['median']:.3f} vs {zarr_d['median']:.3f} s "
                       f"({r['median'] / zarr_d['median']:.2f}×): "
                       f"{verdict(r['median'] < zarr_d['median'])}{noise(r, zarr_d)}")
    for name in ("get1", "put1"):
        a, b = table.get((name, "small.nc" if name == "get1" else "small_write.nc", "a")), None
        file = a["file"] if a else None
        b = table.get((name, file, "b"))
        c, d = table.get((name, file, "c")), table.get((name, file, "d"))
        if a and b:
            extra = (b["median"] - a["median"]) / a["calls"] * 1e6
            line = f"- {name}: (b) per-call overhead over (a): {extra:.2f} µs"
            if name == "get1":
                line += f": {verdict(extra < 1.0)}"
            out.append(line)
        if c and d:
            out.append(f"- {name}: (c) faster than (d) per element: "
                       f"{c['median'] / c['calls'] * 1e6:.2f} vs "
                       f"{d['median'] / d['calls'] * 1e6:.2f} µs: "
                       f"{verdict(c['median'] < d['median'])}{noise(c, d)}")
    return out


if __name__ == "__main__":
    sys.exit(main())
