## Unload: files left open are closed, complete on disk, with one warning. Each case runs
## in an octave-cli of its own, since unloading is what it tests.

%!function n = warnings (text)
%!  n = numel (regexp (text, '^warning: (?!called from)', 'lineanchors'));
%!endfunction

## Four files holding data, two left in define mode with definitions pending, outlive
## failed calls (unload_faults_session.m) and every way the session lets go of netcdflib,
## the last an error nobody catches; ncdump and python3-netcdf4 then read them complete.
%!test
%! session = fileread (file_in_loadpath ('unload_faults_session.m'));
%! report = "[~, id] = lastwarn (); printf ('last warning: %s\\n', id);";
%! endings = {['clear netcdflib;' report], ['clear all;' report], ['clear functions;' report], ...
%!            'exit (0)', "netcdflib ('getVarInt', nc, 99);   # uncaught"};
%! n = 'QUARNA:imagesci:netcdf:';
%! data_mode = @(defvar) {[n 'libraryFailure NC_ENOTVAR'], [n 'argumentHasBadDatatype -'], ...
%!                        [n 'libraryFailure ' defvar]};
%! define_mode = [data_mode('NC_ENAMEINUSE'), ...
%!                {[n 'libraryFailure NC_EBADTYPE'], [n 'libraryFailure NC_ENOTVAR']}];
%! ## netCDF-4 defines in data mode too, the classic formats do not.
%! caught = [data_mode('NC_ENAMEINUSE'), data_mode('NC_ENOTINDEFINE'), define_mode, define_mode];
%! files = fullfile (work_dir (), {'n4data.nc', 'cldata.nc', 'n4define.nc', 'cldefine.nc'});
%! for k = 1:numel (endings)
%!   for f = files
%!     [~, ~] = unlink (f{1});
%!   end
%!   [status, out] = octave_run ([session "\n" endings{k} "\ndisp ('session over')\n"]);
%!   where = sprintf ('"%s":\n%s', endings{k}, out);
%!   assert (isequal (status, double (k == numel (endings))), '%s', where);
%!   assert (isequal (numel (strfind (out, 'session over')), double (k <= 3)), '%s', where);
%!   assert (isequal (warnings (out), 1), '%s', where);
%!   assert (isequal (numel (strfind (out, ['last warning: ' n 'closingFileHandle'])), ...
%!                    double (k <= 3)), '%s', where);
%!   assert (isequal (regexp (out, '(?<=caught )[^\n]+', 'match'), caught), '%s', where);
%!   for f = files
%!     assert (! isempty (regexp (ncdump (f{1}), 'v =\s+1, 2, 3,\s+4, 5, 6 ;', 'once')), where);
%!   end
%!   got = python (["for f in sys.argv[1:]:\n" ...
%!                  "  d = netCDF4.Dataset(f)\n" ...
%!                  "  v = d['v']\n" ...
%!                  "  w = d.variables.get('w')\n" ...
%!                  "  if w is not None: w = (w[:].filled(0).tolist(), w.note)\n" ...
%!                  "  print(d.data_model, v[:].tolist(), v.getncattr('scale'), " ...
%!                  "sorted(d.variables), w)"], files{:});
%!   v = '[[1, 2, 3], [4, 5, 6]] 0.5';
%!   w = "['v', 'w'] ([0, 0], 'pending')";
%!   want = sprintf (["NETCDF4 %s ['v'] None\nNETCDF3_CLASSIC %s ['v'] None\n" ...
%!                    "NETCDF4 %s %s\nNETCDF3_CLASSIC %s %s\n"], v, v, v, w, v, w);
%!   assert (isequal (got, want), '%s', where);
%! end

## Files closed before: no warning. After a clear the function loads afresh and closes its
## new files at the next unload. A warning turned into an error, or off, changes nothing else.
%!test
%! cases = {["a = netcdflib ('create', 'c.nc', 'NC_CLOBBER');\nnetcdflib ('close', a);\n" ...
%!           "clear netcdflib\nnetcdflib ('inqLibVers');\n"], 0, 'c.nc', 'netcdf c';
%!          ["a = netcdflib ('create', 'd.nc', 'NC_CLOBBER');\nclear netcdflib\n" ...
%!           "a = netcdflib ('open', 'd.nc', 'NC_WRITE');\nnetcdflib ('redef', a);\n" ...
%!           "netcdflib ('defDim', a, 'z', 5);\nclear all\n"], 2, 'd.nc', 'z = 5 ;';
%!          ## Files held in memory (read from bytes, writable, created) close the same way;
%!          ## the persisted one (NC_PERSIST, 16384) reaches the disk then.
%!          ["a = netcdflib ('create', 'm.nc', 'NC_CLOBBER');\nnetcdflib ('close', a);\n" ...
%!           "fid = fopen ('m.nc');\nbytes = fread (fid, Inf, '*uint8');\nfclose (fid);\n" ...
%!           "r = netcdflib ('openMem', 'r.nc', 'NC_NOWRITE', bytes);\n" ...
%!           "w = netcdflib ('openMem', 'w.nc', 'NC_WRITE', bytes);\n" ...
%!           "c = netcdflib ('createMem', 'c.nc', netcdflib ('parameter', 'NC_NETCDF4'), 0);\n" ...
%!           "k = netcdflib ('createMem', 'k.nc', 16384, 0);\n" ...
%!           "netcdflib ('defDim', k, 'kept', 2);\nclear all\n"], 1, 'k.nc', 'kept = 2 ;'};
%! for state = {'error', 'off'}
%!   cases(end+1, :) = {sprintf(["warning ('%s', 'QUARNA:imagesci:netcdf:closingFileHandle');\n" ...
%!                               "a = netcdflib ('create', 'e.nc', 'NC_CLOBBER');\n" ...
%!                               "netcdflib ('defDim', a, 'w', 4);\nclear netcdflib\n"], state{1}), ...
%!                      0, 'e.nc', 'w = 4 ;'};
%! end
%! for c = cases'
%!   [code, nwarnings, file, dim] = c{:};
%!   [status, out] = octave_run ([code "disp ('still here')\n"]);
%!   assert (isequal ({status, warnings(out), numel(strfind (out, 'still here'))}, {0, nwarnings, 1}), ...
%!           '%s', out);
%!   assert (! isempty (strfind (ncdump ('-h', fullfile (work_dir (), file)), dim)), out);
%! end

## A block with an out-of-range value in the middle: netCDF-C reports NC_ERANGE and still
## stores the block, the value it could not convert as C's conversion wraps it (or as the
## fill value, where netCDF-C is built to fill); the file and the session carry on.
%!test
%! p = @(name) netcdflib ('parameter', name);
%! for mode = {p('NC_CLOBBER'), p('NC_NETCDF4')}
%!   file = fullfile (work_dir (), 'erange.nc');
%!   nc = netcdflib ('create', file, mode{1});
%!   dims = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%!   b = netcdflib ('defVar', nc, 'b', p('NC_BYTE'), dims);
%!   s = netcdflib ('defVar', nc, 's', p('NC_SHORT'), netcdflib ('defDim', nc, 'n', 6));
%!   netcdflib ('endDef', nc);
%!   ## varid, operation, START and COUNT, block, what may stand for its bad value (wrapped,
%!   ## fill), what the variable holds then (NaN: the stand-in), where that is.
%!   cases = {b, 'putVarDouble', {}, [1 -128 300; 127 5 6]', [44 -127], [1 -128 NaN 127 5 6]', [2 0];
%!            s, 'putVaraDouble', {1, 3}, [-32768; 40000; 32767], [-25536 -32767], ...
%!            [-32767 -32768 NaN 32767 -32767 -32767]', 2};
%!   held = {};
%!   for c = cases'
%!     [varid, op, where, block, stand_ins, want, at] = c{:};
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
%! end
