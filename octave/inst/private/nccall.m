function varargout = nccall (context, varargin)
  ## netcdflib (VARARGIN{:}), its failure raised again in the interface's namespace with
  ## CONTEXT (what was being done, naming the variable or attribute) before its message.
  try
    [varargout{1:nargout}] = netcdflib (varargin{:});
  catch err
    error (['ncdataset:' err.identifier], '%s: %s', context, err.message);
  end
end
