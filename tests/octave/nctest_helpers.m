1;  % helpers shared by the *_test.m files, loaded by run_test_blocks

function d = work_dir ()
  % The test file's own directory, removed after its tests.
  d = getenv ('NETCDFLIB_WORK');
end

function id = error_id (varargin)
  % The identifier of the error netcdflib (VARARGIN{:}) raises; '' when it raises none.
  id = '';
  try
    netcdflib (varargin{:});
  catch err
    id = err.identifier;
  end
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
  unlink (py);
  assert (status == 0, '%s', out);
end

function out = ncdump (varargin)
  % What ncdump prints for the given options and file; fails when ncdump does.
  [status, out] = system (['"' getenv('NETCDFLIB_NCDUMP') '"' sprintf(' "%s"', varargin{:}) ' 2>&1']);
  assert (status == 0, '%s', out);
end
