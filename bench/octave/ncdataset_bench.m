## The dataset interface's workloads (ncdataset, octave/inst) from GNU Octave.
##
##   ncdataset_bench (WORKLOAD, FILE, REPS)
##
## prints "rep SECONDS" per repetition and "check ..." once, like netcdflib_bench.
##   ds_raw     ds.read of the double variable "x", 'Decode' false
##   ds_packed  decoded ds.read of the packed int16 variable "p"
##   ds_disp    open FILE, disp of the dataset (captured), close
##   ds_baseline  open and close FILE, decode one number: the memory of Octave with the
##                interface and its decode kernel loaded, no data
function ncdataset_bench (workload, file, reps)
  switch (workload)
    case "ds_raw"
      ds = ncdataset (file);
      for r = 1:reps
        t0 = tic ();
        x = ds.read ("x", "Decode", false);
        report (toc (t0));
        n = numel (x);
        check = sprintf ("%.17g", double (x(1)) + double (x(floor (n / 2) + 1)) + double (x(n)));
        clear x;
      endfor
      ds.close ();
    case "ds_packed"
      ds = ncdataset (file);
      for r = 1:reps
        t0 = tic ();
        x = ds.read ("p");
        report (toc (t0));
        n = numel (x);
        check = sprintf ("%.17g %.17g %.17g %d", x(1), x(floor (n / 2) + 1), x(n), nnz (isnan (x)));
        clear x;
      endfor
      ds.close ();
    case "ds_baseline"
      ds = ncdataset (file);
      ds.close ();
      __ncdataset_decode__ (int16 (1), false, {}, [], [], 2, []);    # its code loaded too
      check = "0";
    case "ds_disp"
      for r = 1:reps
        t0 = tic ();
        ds = ncdataset (file);
        text = evalc ("disp (ds)");
        ds.close ();
        report (toc (t0));
        check = sprintf ("%d", numel (text));
      endfor
    otherwise
      error ("ncdataset_bench: unknown workload %s", workload);
  endswitch
  printf ("check %s\n", check);
endfunction

function report (t)
  printf ("rep %.6f\n", t);
endfunction
