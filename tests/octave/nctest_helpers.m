1;  % helpers shared by the *_test.m files, loaded by run_test_blocks

function d = work_dir ()
  % The test file's own directory, removed after its tests.
  d = getenv ('NETCDFLIB_WORK');
end

function [status, out] = octave_run (code)
  % Runs CODE in an octave-cli of its own, in the work directory, with netcdflib on the path.
  script = fullfile (work_dir (), 'session.m');
  fid = fopen (script, 'w');
  fprintf (fid, 'addpath (''%s'');\ncd (''%s'');\n%s\n', getenv ('NETCDFLIB_OCTAVE_PATH'), ...
           work_dir (), code);
  fclose (fid);
  [status, out] = system (sprintf (['"%s" --no-gui --no-history --norc --no-window-system ' ...
                                    '"%s" 2>&1'], getenv ('NETCDFLIB_OCTAVE_CLI'), script));
end

function out = python (code, varargin)
  % What python3-netcdf4 prints for CODE (netCDF4 and sys imported) with the given arguments.
  py = [tempname(work_dir ()) '.py'];
  fid = fopen (py, 'w');
  fprintf (fid, "import netCDF4, sys\n%s\n", code);
  fclose (fid);
  [status, out] = system (sprintf ('/usr/bin/python3 "%s"%s 2>&1', py, sprintf (' "%s"', varargin{:})));
  assert (status == 0, '%s', out);
end

function out = interop (script, varargin)
  % What the python3 script tests/interop/SCRIPT prints for the given arguments.
  out = python (fileread (fullfile (fileparts (file_in_loadpath ('nctest_helpers.m')), '..', ...
                                    'interop', script)), varargin{:});
end

function out = nctool (name, varargin)
  % What netCDF-C's program NAME (ncdump, ncgen, nccopy), the one beside NETCDFLIB_NCDUMP,
  % prints for the given arguments; fails when the program does.
  tool = fullfile (fileparts (getenv ('NETCDFLIB_NCDUMP')), name);
  [status, out] = system (['"' tool '"' sprintf(' "%s"', varargin{:}) ' 2>&1']);
  assert (status == 0, '%s', out);
end

function out = ncdump (varargin)
  out = nctool ('ncdump', varargin{:});
end

function err = failure (varargin)
  % The error netcdflib (VARARGIN{:}) raises, or a function handle given alone; a call that
  % raises none is an error.
  try
    if (is_function_handle (varargin{1})), varargin{1} (); else, netcdflib (varargin{:}); end
  catch err
    return;
  end
  error ('%s raised no error', strtrim (disp (varargin{1})));
end

function expect_same (observed, expected, varargin)
  % Fails unless OBSERVED has EXPECTED's class, size and values (NaN equal to NaN), also
  % element by element in cells and field by field in structs, which assert compares
  % without their classes; a third argument names the case in the message.
  where = [varargin, {'value'}]{1};
  assert (strcmp (class (observed), class (expected)) && size_equal (observed, expected), ...
          '%s: %s %s observed, %s %s expected', where, class (observed), ...
          mat2str (size (observed)), class (expected), mat2str (size (expected)));
  if (isstruct (expected))
    expect_same (fieldnames (observed), fieldnames (expected), [where ' fields']);
    expect_same (struct2cell (observed(:)), struct2cell (expected(:)), where);
  elseif (iscell (expected))
    for i = 1:numel (expected)
      expect_same (observed{i}, expected{i}, sprintf ('%s{%d}', where, i));
    end
  elseif (! isequaln (observed, expected))
    error ('%s: observed %s, expected %s', where, strtrim (disp (observed)), ...
           strtrim (disp (expected)));
  end
end

function expect_error (err, id, varargin)
  % Fails unless ERR has the identifier ID and a message that contains every text given.
  assert (err.identifier, id);
  missing = varargin(cellfun (@(t) isempty (strfind (err.message, t)), varargin));
  assert (isempty (missing), '"%s" missing from the message: %s', strjoin (missing, '", "'), ...
          err.message);
end

function ncgen_file (file, cdl)
  % Writes the netCDF-4 file FILE from the CDL text with ncgen.
  fid = fopen ([file '.cdl'], 'w');
  fputs (fid, cdl);
  fclose (fid);
  nctool ('ncgen', '-k', 'nc4', '-o', file, [file '.cdl']);
end
