function out = ncdump_text (varargin)
  % What ncdump prints for the given options and file; fails when ncdump does.
  ncdump = getenv ('NETCDFLIB_NCDUMP');
  if (isempty (ncdump))
    ncdump = 'ncdump';
  end
  [status, out] = system (['"' ncdump '"' sprintf(' "%s"', varargin{:}) ' 2>&1']);
  assert (status == 0, 'ncdump: %s', out);
end
