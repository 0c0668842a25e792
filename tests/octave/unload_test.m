## Unload: files left open are closed, complete on disk, with one warning. Each case runs
## in its own octave-cli, since unloading is what it tests.

%!shared work
%! work = scratch_dir ();

%!function [status, out] = octave_run (work, code)
%!  script = fullfile (work, 'session.m');
%!  fid = fopen (script, 'w');
%!  fprintf (fid, 'addpath (''%s'');\ncd (''%s'');\n%s\n', getenv ('NETCDFLIB_OCTAVE_PATH'), work, code);
%!  fclose (fid);
%!  [status, out] = system (sprintf ('"%s" --no-gui --no-history --norc --no-window-system "%s" 2>&1', ...
%!                                   getenv ('NETCDFLIB_OCTAVE_CLI'), script));
%!endfunction

%!function s = dump_header (file)
%!  [status, s] = system (sprintf ('"%s" -h "%s" 2>&1', getenv ('NETCDFLIB_NCDUMP'), file));
%!  assert (isequal (status, 0), '%s', s);
%!endfunction

%!function n = count (text, pattern)
%!  n = numel (strfind (text, pattern));
%!endfunction

%!function n = warnings (text)
%!  n = numel (regexp (text, '^warning: (?!called from)', 'lineanchors'));
%!endfunction

## Two files open in define mode, then each way Octave unloads the function.
%!test
%! open_two = ["a = netcdflib ('create', 'a.nc', netcdflib ('parameter', 'NC_NETCDF4'));\n" ...
%!             "netcdflib ('defDim', a, 'x', 3);\n" ...
%!             "b = netcdflib ('create', 'b.nc', 'NC_CLOBBER');\n" ...
%!             "netcdflib ('defDim', b, 'y', 2);\n"];
%! report = "[~, id] = lastwarn (); printf ('last warning: %s\\n', id);";
%! cases = {'clear netcdflib', report;  'clear all', report;  'clear functions', report;
%!          'exit (0)', '';  '', ''};
%! for k = 1:rows (cases)
%!   for f = {'a.nc', 'b.nc'}
%!     [~, ~] = unlink (fullfile (work, f{1}));
%!   end
%!   [status, out] = octave_run (work, [open_two cases{k, 1} "\n" cases{k, 2}]);
%!   where = sprintf ('"%s": %s', cases{k, 1}, out);
%!   assert (isequal (status, 0), '%s', where);
%!   assert (isequal (warnings (out), 1), '%s', where);
%!   assert (isequal (count (out, 'error'), 0), '%s', where);
%!   if (! isempty (cases{k, 2}))
%!     id = 'last warning: QUARNA:imagesci:netcdf:closingFileHandle';
%!     assert (isequal (count (out, id), 1), '%s', where);
%!   end
%!   assert (isequal (count (dump_header (fullfile (work, 'a.nc')), 'x = 3 ;'), 1), '%s', where);
%!   assert (isequal (count (dump_header (fullfile (work, 'b.nc')), 'y = 2 ;'), 1), '%s', where);
%! end

## Nothing open: no warning, neither on clear nor at exit.
%!test
%! [status, out] = octave_run (work, ["a = netcdflib ('create', 'c.nc', 'NC_CLOBBER');\n" ...
%!                                   "netcdflib ('close', a);\nclear netcdflib\n" ...
%!                                   "netcdflib ('inqLibVers');\n"]);
%! assert (isequal (status, 0), '%s', out);
%! assert (isequal (warnings (out), 0), '%s', out);

## After a clear the function loads afresh; its files are closed at the next unload.
%!test
%! [status, out] = octave_run (work, ["a = netcdflib ('create', 'd.nc', 'NC_CLOBBER');\n" ...
%!                                   "clear netcdflib\n" ...
%!                                   "a = netcdflib ('open', 'd.nc', 'NC_WRITE');\n" ...
%!                                   "netcdflib ('redef', a);\n" ...
%!                                   "netcdflib ('defDim', a, 'z', 5);\n" ...
%!                                   "clear all\n"]);
%! assert (isequal (status, 0), '%s', out);
%! assert (isequal (warnings (out), 2), '%s', out);
%! assert (count (dump_header (fullfile (work, 'd.nc')), 'z = 5 ;'), 1);

## A warning Octave is told to turn into an error, or to hide, changes nothing else.
%!test
%! for state = {'error', 'off'}
%!   code = sprintf (["warning ('%s', 'QUARNA:imagesci:netcdf:closingFileHandle');\n" ...
%!                    "a = netcdflib ('create', 'e.nc', 'NC_CLOBBER');\n" ...
%!                    "netcdflib ('defDim', a, 'w', 4);\nclear netcdflib\ndisp ('still here')\n"], ...
%!                   state{1});
%!   [status, out] = octave_run (work, code);
%!   assert (isequal (status, 0), '%s', out);
%!   assert (isequal (count (out, 'still here'), 1), '%s', out);
%!   assert (isequal (warnings (out), 0), '%s', out);
%!   assert (count (dump_header (fullfile (work, 'e.nc')), 'w = 4 ;'), 1);
%! end

## Files held in memory (read from bytes, writable, created) close at unload like the
## others, with the same one warning; a persisted in-memory file reaches the disk then.
%!test
%! code = ["a = netcdflib ('create', 'm.nc', 'NC_CLOBBER');\n" ...
%!         "netcdflib ('defDim', a, 'q', 6);\nnetcdflib ('close', a);\n" ...
%!         "fid = fopen ('m.nc');\nbytes = fread (fid, Inf, '*uint8');\nfclose (fid);\n" ...
%!         "r = netcdflib ('openMem', 'r.nc', 'NC_NOWRITE', bytes);\n" ...
%!         "w = netcdflib ('openMem', 'w.nc', 'NC_WRITE', bytes);\n" ...
%!         "c = netcdflib ('createMem', 'c.nc', netcdflib ('parameter', 'NC_NETCDF4'), 0);\n" ...
%!         "k = netcdflib ('createMem', 'k.nc', 16384, 0);\n" ...
%!         "netcdflib ('defDim', k, 'kept', 2);\n" ...
%!         "clear all\ndisp ('still here')\n"];
%! [~, ~] = unlink (fullfile (work, 'k.nc'));
%! [status, out] = octave_run (work, code);
%! assert (isequal (status, 0), '%s', out);
%! assert (isequal (warnings (out), 1), '%s', out);
%! assert (isequal (count (out, 'still here'), 1), '%s', out);
%! assert (count (dump_header (fullfile (work, 'k.nc')), 'kept = 2 ;'), 1);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
