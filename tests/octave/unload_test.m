## Unload: files left open are closed, complete on disk, with one warning. Each case runs
## in an octave-cli of its own, since unloading is what it tests.

%!function n = warnings (text)
%!  n = numel (regexp (text, '^warning: (?!called from)', 'lineanchors'));
%!endfunction

## Four files holding data, two left in define mode with definitions pending, outlive
## failed calls (unload_faults_session.m) and every way the session lets go of netcdflib,
## the last an error nobody catches; python3-netcdf4 then reads them complete. netCDF-4
## defines in data mode too, the classic formats do not.
%!test
%! session = fileread (file_in_loadpath ('unload_faults_session.m'));
%! report = "[~, id] = lastwarn (); printf ('last warning: %s\\n', id);";
%! endings = {['clear netcdflib;' report], ['clear all;' report], ['clear functions;' report], ...
%!            'exit (0)', "netcdflib ('getVarInt', nc, 99);   # uncaught"};
%! n = 'QUARNA:imagesci:netcdf:';
%! data_mode = @(defvar) {'libraryFailure NC_ENOTVAR', 'argumentHasBadDatatype -', ['libraryFailure ' defvar]};
%! define_mode = [data_mode('NC_ENAMEINUSE'), {'libraryFailure NC_EBADTYPE', 'libraryFailure NC_ENOTVAR'}];
%! caught = strcat (n, [data_mode('NC_ENAMEINUSE'), data_mode('NC_ENOTINDEFINE'), define_mode, define_mode]);
%! files = fullfile (work_dir (), {'n4data.nc', 'cldata.nc', 'n4define.nc', 'cldefine.nc'});
%! v = '[[1, 2, 3], [4, 5, 6]] 0.5';
%! w = "['v', 'w'] ([0, 0], 'pending')";
%! want = sprintf (["NETCDF4 %s ['v'] None\nNETCDF3_CLASSIC %s ['v'] None\n" ...
%!                  "NETCDF4 %s %s\nNETCDF3_CLASSIC %s %s\n"], v, v, v, w, v, w);
%! for k = 1:numel (endings)
%!   [~, ~] = cellfun (@unlink, files, 'UniformOutput', false);
%!   [status, out] = octave_run ([session "\n" endings{k} "\ndisp ('session over')\n"]);
%!   got = {status, numel(strfind (out, 'session over')), warnings(out), ...
%!          numel(strfind (out, ['last warning: ' n 'closingFileHandle'])), ...
%!          regexp(out, '(?<=caught )[^\n]+', 'match')};
%!   expect_same (got, {double(k == 5), double(k <= 3), 1, double(k <= 3), caught}, out);
%!   got = python (["for d in map(netCDF4.Dataset, sys.argv[1:]):\n  v, w = d['v'], d.variables.get('w')\n" ...
%!                  "  print(d.data_model, v[:].tolist(), v.getncattr('scale'), " ...
%!                  "sorted(d.variables), w and (w[:].filled(0).tolist(), w.note))"], files{:});
%!   assert (got, want, endings{k});
%! end

## Files closed before: no warning. After a clear the function loads afresh and closes its
## new files at the next unload. Files held in memory (read from bytes, writable, created)
## close the same way; the persisted one (NC_PERSIST, 16384) reaches the disk then.
## A warning turned into an error, or off, changes nothing else.
%!test
%! warned = ["a = netcdflib ('create', 'e.nc', 'NC_CLOBBER');\n" ...
%!           "netcdflib ('defDim', a, 'w', 4);\nclear netcdflib\n"];
%! cases = {["a = netcdflib ('create', 'c.nc', 'NC_CLOBBER');\nnetcdflib ('close', a);\n" ...
%!           "clear netcdflib\nnetcdflib ('inqLibVers');\n"], 0, 'c.nc', 'netcdf c';
%!          ["a = netcdflib ('create', 'd.nc', 'NC_CLOBBER');\nclear netcdflib\n" ...
%!           "a = netcdflib ('open', 'd.nc', 'NC_WRITE');\nnetcdflib ('redef', a);\n" ...
%!           "netcdflib ('defDim', a, 'z', 5);\nclear all\n"], 2, 'd.nc', 'z = 5 ;';
%!          ["a = netcdflib ('create', 'm.nc', 'NC_CLOBBER');\nnetcdflib ('close', a);\n" ...
%!           "fid = fopen ('m.nc');\nbytes = fread (fid, Inf, '*uint8');\nfclose (fid);\n" ...
%!           "r = netcdflib ('openMem', 'r.nc', 'NC_NOWRITE', bytes);\n" ...
%!           "w = netcdflib ('openMem', 'w.nc', 'NC_WRITE', bytes);\n" ...
%!           "c = netcdflib ('createMem', 'c.nc', netcdflib ('parameter', 'NC_NETCDF4'), 0);\n" ...
%!           "k = netcdflib ('createMem', 'k.nc', 16384, 0);\n" ...
%!           "netcdflib ('defDim', k, 'kept', 2);\nclear all\n"], 1, 'k.nc', 'kept = 2 ;';
%!          ["warning ('error', 'QUARNA:imagesci:netcdf:closingFileHandle');\n" warned], 0, 'e.nc', 'w = 4 ;';
%!          ["warning ('off', 'QUARNA:imagesci:netcdf:closingFileHandle');\n" warned], 0, 'e.nc', 'w = 4 ;'};
%! for c = cases'
%!   [code, nwarnings, file, dump] = c{:};
%!   [status, out] = octave_run ([code "disp ('still here')\n"]);
%!   expect_same ({status, warnings(out), isempty(strfind (out, 'still here'))}, ...
%!                {0, nwarnings, false}, out);
%!   assert (! isempty (strfind (ncdump (fullfile (work_dir (), file)), dump)), out);
%! end
