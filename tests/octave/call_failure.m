function err = call_failure (varargin)
  % The error that netcdflib (VARARGIN{:}) raises; a call that raises none is an error.
  try
    netcdflib (varargin{:});
  catch err
    return;
  end
  error ('netcdflib (''%s'', ...) raised no error', varargin{1});
end
