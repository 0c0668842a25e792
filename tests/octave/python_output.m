function out = python_output (code, varargin)
  % Runs the python3-netcdf4 script CODE with the given arguments; returns its output and
  % fails when the script does.
  script = [tempname() '.py'];
  fid = fopen (script, 'w');
  fputs (fid, code);
  fclose (fid);
  args = sprintf (' "%s"', varargin{:});
  [status, out] = system (sprintf ('/usr/bin/python3 "%s"%s 2>&1', script, args));
  unlink (script);
  assert (status == 0, '%s', out);
end
