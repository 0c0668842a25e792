## Faults and unload: files holding data, some left in define mode with definitions pending,
## outlive failed calls and every way Octave lets go of netcdflib, and read complete in
## ncdump and python3-netcdf4 afterwards. A write netCDF-C refuses half way (NC_ERANGE)
## leaves the file readable and the session working.

%!shared work
%! work = scratch_dir ();

%!function [status, out] = octave_run (work, code)
%!  script = fullfile (work, 'session.m');
%!  fid = fopen (script, 'w');
%!  fprintf (fid, 'addpath (''%s'');\ncd (''%s'');\n%s\n', getenv ('NETCDFLIB_OCTAVE_PATH'), ...
%!           work, code);
%!  fclose (fid);
%!  [status, out] = system (sprintf (['"%s" --no-gui --no-history --norc --no-window-system ' ...
%!                                    '"%s" 2>&1'], getenv ('NETCDFLIB_OCTAVE_CLI'), script));
%!endfunction

## What python3-netcdf4 prints for CODE, run with the netCDF4 module imported.
%!function out = python (code, varargin)
%!  py = [tempname() '.py'];
%!  fid = fopen (py, 'w');
%!  fprintf (fid, "import netCDF4, sys\n%s\n", code);
%!  fclose (fid);
%!  args = sprintf (' "%s"', varargin{:});
%!  [status, out] = system (sprintf ('/usr/bin/python3 "%s"%s 2>&1', py, args));
%!  unlink (py);
%!  assert (status, 0, out);
%!endfunction

%!function dump = ncdump (file)
%!  [status, dump] = system (sprintf ('"%s" "%s" 2>&1', getenv ('NETCDFLIB_NCDUMP'), file));
%!  assert (status, 0, dump);
%!endfunction

## Four files: data mode and define mode, netCDF-4 and classic, each through failed calls;
## then each way the session lets go of netcdflib, the last an error nobody catches.
%!test
%! session = fileread (fullfile (fileparts (file_in_loadpath ('unload_faults_test.m')), ...
%!                               'unload_faults_session.m'));
%! endings = {'clear netcdflib', 'clear all', 'clear functions', 'exit (0)', ...
%!            "netcdflib ('getVarInt', nc, 99);   # uncaught"};
%! n = 'QUARNA:imagesci:netcdf:';
%! data_mode = @(defvar) {[n 'libraryFailure NC_ENOTVAR'], [n 'argumentHasBadDatatype -'], ...
%!                        [n 'libraryFailure ' defvar]};
%! define_mode = [data_mode('NC_ENAMEINUSE'), ...
%!                {[n 'libraryFailure NC_EBADTYPE'], [n 'libraryFailure NC_ENOTVAR']}];
%! ## netCDF-4 defines in data mode too, the classic formats do not.
%! caught = [data_mode('NC_ENAMEINUSE'), data_mode('NC_ENOTINDEFINE'), define_mode, define_mode];
%! files = {'n4data.nc', 'cldata.nc', 'n4define.nc', 'cldefine.nc'};
%! for k = 1:numel (endings)
%!   for f = files
%!     [~, ~] = unlink (fullfile (work, f{1}));
%!   end
%!   [status, out] = octave_run (work, [session "\n" endings{k} "\ndisp ('session over')\n"]);
%!   where = sprintf ('"%s":\n%s', endings{k}, out);
%!   uncaught = k == numel (endings);
%!   assert (status, double (uncaught), where);
%!   assert (numel (strfind (out, 'session over')), double (k <= 3), where);
%!   assert (numel (regexp (out, '^warning: (?!called from)', 'lineanchors')), 1, where);
%!   assert (regexp (out, '(?<=caught )[^\n]+', 'match'), caught, where);
%!   for f = files
%!     dump = ncdump (fullfile (work, f{1}));
%!     assert (! isempty (regexp (dump, 'v =\s+1, 2, 3,\s+4, 5, 6 ;', 'once')), '%s: %s', ...
%!             f{1}, where);
%!   end
%!   got = python (["for f in sys.argv[1:]:\n" ...
%!                  "  d = netCDF4.Dataset(f)\n" ...
%!                  "  v = d['v']\n" ...
%!                  "  w = d.variables.get('w')\n" ...
%!                  "  if w is not None: w = (w[:].filled(0).tolist(), w.note)\n" ...
%!                  "  print(d.data_model, v[:].tolist(), v.getncattr('scale'), " ...
%!                  "sorted(d.variables), w)"], ...
%!                 fullfile (work, files){:});
%!   v = '[[1, 2, 3], [4, 5, 6]] 0.5';
%!   w = "['v', 'w'] ([0, 0], 'pending')";
%!   want = sprintf (["NETCDF4 %s ['v'] None\nNETCDF3_CLASSIC %s ['v'] None\n" ...
%!                    "NETCDF4 %s %s\nNETCDF3_CLASSIC %s %s\n"], v, v, v, w, v, w);
%!   assert (got, want, where);
%! end

## A block with an out-of-range value in the middle: netCDF-C reports NC_ERANGE and still
## stores the block, the value it could not convert as C's conversion wraps it (or as the
## fill value, where netCDF-C is built to fill); the file and the session carry on.
%!test
%! p = @(name) netcdflib ('parameter', name);
%! for mode = {p('NC_CLOBBER'), p('NC_NETCDF4')}
%!   file = fullfile (work, 'erange.nc');
%!   nc = netcdflib ('create', file, mode{1});
%!   dims = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%!   b = netcdflib ('defVar', nc, 'b', p('NC_BYTE'), dims);
%!   s = netcdflib ('defVar', nc, 's', p('NC_SHORT'), netcdflib ('defDim', nc, 'n', 6));
%!   netcdflib ('endDef', nc);
%!   ## varid, operation, START and COUNT, block, its bad value, what may stand for it
%!   ## (wrapped, fill), what the variable holds then (NaN: the stand-in), where that is.
%!   cases = {b, 'putVarDouble', {}, [1 -128 300; 127 5 6]', 300, [44 -127], ...
%!            [1 -128 NaN 127 5 6]', [2 0];
%!            s, 'putVaraDouble', {1, 3}, [-32768; 40000; 32767], 40000, [-25536 -32767], ...
%!            [-32767 -32768 NaN 32767 -32767 -32767]', 2};
%!   held = {};
%!   for c = cases'
%!     [varid, op, where, block, value, stand_ins, want, at] = c{:};
%!     try
%!       netcdflib (op, nc, varid, where{:}, block);
%!       error ('%s stored %s without complaint', op, mat2str (block));
%!     catch err
%!       assert (err.identifier, 'QUARNA:imagesci:netcdf:libraryFailure');
%!       assert (! isempty (strfind (err.message, 'NC_ERANGE')), err.message);
%!     end
%!     back = netcdflib ('getVarDouble', nc, varid);
%!     bad = isnan (want);
%!     assert (back(! bad), want(! bad));
%!     assert (any (back(bad) == stand_ins), '%s stored %g', op, back(bad));
%!     printf ('%s: NC_ERANGE, %g stored as %g\n', op, value, back(bad));
%!     ## Further calls work, a fix of the bad value among them.
%!     netcdflib ('putVar1Double', nc, varid, at, 100);
%!     back(bad) = 100;
%!     assert (netcdflib ('getVarDouble', nc, varid), back);
%!     held{end+1} = back;
%!   end
%!   netcdflib ('close', nc);
%!   out = python (["d = netCDF4.Dataset(sys.argv[1])\nd.set_auto_mask(False)\n" ...
%!                  "print(d['b'][:].ravel().tolist(), d['s'][:].tolist())"], file);
%!   assert (strtrim (out), sprintf ('[%d, %d, %d, %d, %d, %d] [%d, %d, %d, %d, %d, %d]', held{:}));
%!   ncdump (file);
%! end

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
