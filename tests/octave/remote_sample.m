function out = remote_sample (list)
  % Every k-th element of LIST, k from NETCDFLIB_REMOTE_SAMPLE (1 when unset); with no
  % argument, k itself.
  k = max (1, str2double (getenv ('NETCDFLIB_REMOTE_SAMPLE')));
  if (nargin == 0)
    out = k;
  else
    out = list(1:k:end);
  end
end
