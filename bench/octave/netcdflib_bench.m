## Implementation (c): the workloads through netcdflib from GNU Octave.
##
##   netcdflib_bench (WORKLOAD, FILE, REPS)
##
## prints "rep SECONDS" per repetition and "check SUM" once.  WORKLOAD "baseline" only
## opens and closes FILE: the memory of Octave with netcdflib loaded and nothing read.
## Sizes and index sequences are those of bench/c/ncbench_common.h; indices are
## zero-based and in Octave's order, the reverse of netCDF's.
function netcdflib_bench (workload, file, reps)
  switch (workload)
    case "baseline"
      netcdflib ("close", netcdflib ("open", file, "NC_NOWRITE"));
    case {"read_whole", "read_deflate", "read_bzip2", "read_quantize", "read_zarr"}
      read_whole (file, reps);
    case "read_dap2"
      read_remote (file, reps);
    case "open_mem"
      open_memory (file, reps);
    case "read_slabs"
      read_slabs (file, reps);
    case "write_whole"
      write_whole (file, reps);
    case "get1"
      read_elements (file, reps);
    case "put1"
      write_elements (file, reps);
    case "strided"
      read_strided (file, reps);
    case "meta"
      scan_metadata (file, reps);
    case "read_compound"
      read_compound (file, reps);
    otherwise
      error ("netcdflib_bench: unknown workload %s", workload);
  endswitch
endfunction

function report (t)
  printf ("rep %.6f\n", t);
endfunction

function [ncid, varid] = open_variable (file, mode, name)
  ncid = netcdflib ("open", file, mode);
  varid = netcdflib ("inqVarID", ncid, name);
endfunction

## Octave-order extents of the variable: columns, then rows.
function extents = variable_extents (ncid, varid)
  [~, ~, dimids] = netcdflib ("inqVar", ncid, varid);
  extents = zeros (1, numel (dimids));
  for k = 1:numel (dimids)
    [~, extents(k)] = netcdflib ("inqDim", ncid, dimids(k));
  endfor
endfunction

function read_whole (file, reps)
  [~, base] = fileparts (file);
  single_precision = ! strncmp (base, "big", 3);
  if (single_precision)
    [ncid, varid] = open_variable (file, "NC_NOWRITE", "f");
    op = "getVarFloat";
  else
    [ncid, varid] = open_variable (file, "NC_NOWRITE", "x");
    op = "getVarDouble";
  endif
  for r = 1:reps
    t0 = tic ();
    x = netcdflib (op, ncid, varid);
    report (toc (t0));
    n = numel (x);
    check = double (x(1)) + double (x(floor (n / 2) + 1)) + double (x(n));
    clear x;
  endfor
  printf ("check %.17g\n", check);
  netcdflib ("close", ncid);
endfunction

function read_compound (file, reps)
  [ncid, varid] = open_variable (file, "NC_NOWRITE", "c");
  for r = 1:reps
    t0 = tic ();
    x = netcdflib ("getVar", ncid, varid);
    report (toc (t0));
    n = numel (x.t);
    check = x.t(1) + double (x.v(n / 2 + 1)) + double (x.q(n)) + double (x.s(4, n));
    clear x;
  endfor
  printf ("check %.17g\n", check);
  netcdflib ("close", ncid);
endfunction

## Every variable of every dataset listed in FILE (one URL a line), each read whole in its
## own type; all datasets opened anew in each repetition. The check counts the elements.
function read_remote (file, reps)
  urls = strsplit (strtrim (fileread (file)));
  suffix = {"Schar", "Text", "Short", "Int", "Float", "Double", "Uchar", "Ushort", "Uint", ...
            "Int64", "Uint64"};
  for r = 1:reps
    elements = 0;
    t0 = tic ();
    for u = 1:numel (urls)
      ncid = netcdflib ("open", urls{u}, "NC_NOWRITE");
      [~, nvars] = netcdflib ("inq", ncid);
      for v = 0:nvars-1
        [~, xtype] = netcdflib ("inqVar", ncid, v);
        elements += numel (netcdflib (["getVar" suffix{xtype}], ncid, v));
      endfor
      netcdflib ("close", ncid);
    endfor
    report (toc (t0));
  endfor
  printf ("check %.17g\n", elements);
endfunction

function read_slabs (file, reps)
  [ncid, varid] = open_variable (file, "NC_NOWRITE", "x");
  extents = variable_extents (ncid, varid);
  slab_rows = extents(2) / 64;
  count = [extents(1), slab_rows];
  for r = 1:reps
    check = 0;
    t0 = tic ();
    for s = 0:63
      x = netcdflib ("getVaraDouble", ncid, varid, [0, s * slab_rows], count);
      check += x(end);
    endfor
    report (toc (t0));
    clear x;
  endfor
  printf ("check %.17g\n", check);
  netcdflib ("close", ncid);
endfunction

function write_whole (file, reps)
  [ncid, varid] = open_variable (file, "NC_NOWRITE", "x");
  extents = variable_extents (ncid, varid);
  netcdflib ("close", ncid);
  data = ones (extents);
  for r = 1:reps
    ncid = netcdflib ("open", file, "NC_WRITE");
    t0 = tic ();
    netcdflib ("putVarDouble", ncid, varid, data);
    netcdflib ("close", ncid);
    report (toc (t0));
    system ("sync");
  endfor
endfunction

function read_elements (file, reps)
  [ncid, varid] = open_variable (file, "NC_NOWRITE", "s");
  for r = 1:reps
    check = 0;
    t0 = tic ();
    for k = 0:99999
      check += netcdflib ("getVar1Double", ncid, varid, [mod(k * 101, 1000), mod(k * 37, 1000)]);
    endfor
    report (toc (t0));
  endfor
  printf ("check %.17g\n", check);
  netcdflib ("close", ncid);
endfunction

function write_elements (file, reps)
  [ncid, varid] = open_variable (file, "NC_WRITE", "s");
  for r = 1:reps
    t0 = tic ();
    for k = 0:99999
      netcdflib ("putVar1Double", ncid, varid, [mod(k * 101, 1000), mod(k * 37, 1000)], k);
    endfor
    report (toc (t0));
  endfor
  netcdflib ("close", ncid);
endfunction

function read_strided (file, reps)
  [ncid, varid] = open_variable (file, "NC_NOWRITE", "s");
  count = [10, 10];
  stride = [7, 3];
  for r = 1:reps
    check = 0;
    t0 = tic ();
    for k = 0:9999
      block = netcdflib ("getVarsDouble", ncid, varid, [mod(k * 101, 930), mod(k * 37, 970)],
                         count, stride);
      check += sum (block(:));
    endfor
    report (toc (t0));
  endfor
  printf ("check %.17g\n", check);
  netcdflib ("close", ncid);
endfunction

function scan_metadata (file, reps)
  for r = 1:reps
    chars = 0;
    t0 = tic ();
    ncid = netcdflib ("open", file, "NC_NOWRITE");
    [~, nvars] = netcdflib ("inq", ncid);
    for v = 0:nvars - 1
      [~, ~, ~, natts] = netcdflib ("inqVar", ncid, v);
      for a = 0:natts - 1
        name = netcdflib ("inqAttName", ncid, v, a);
        [~, len] = netcdflib ("inqAtt", ncid, v, name);
        chars += numel (netcdflib ("getAttText", ncid, v, name));
      endfor
    endfor
    netcdflib ("close", ncid);
    report (toc (t0));
  endfor
  printf ("check %.17g\n", chars);
endfunction

## The file's bytes read into memory, then opened from there and closed.
function open_memory (file, reps)
  for r = 1:reps
    fid = fopen (file);
    bytes = fread (fid, Inf, "*uint8");
    fclose (fid);
    t0 = tic ();
    ncid = netcdflib ("openMem", "mem.nc", "NC_NOWRITE", bytes);
    [~, nvars] = netcdflib ("inq", ncid);
    netcdflib ("close", ncid);
    report (toc (t0));
    clear bytes
  endfor
  printf ("check %d\n", nvars);
endfunction
