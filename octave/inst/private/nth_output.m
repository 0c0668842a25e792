function out = nth_output (k, varargin)
  ## Output K of netcdflib (VARARGIN{:}).
  outs = cell (1, k);
  [outs{:}] = netcdflib (varargin{:});
  out = outs{k};
end
