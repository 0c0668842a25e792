function [start, count, stride] = subset (v, pos, fname)
  ## 0-based START, COUNT (Inf resolved to the end) and STRIDE ([] when not given) of a
  ## subset of variable V given 1-based as POS = {start, count, stride}.
  r = numel (v.dimids);
  start = index_vector (pos{1}, r, 'START', v.name, fname) - 1;
  count = inf (1, r);
  if (numel (pos) >= 2)
    count = index_vector (pos{2}, r, 'COUNT', v.name, fname);
  end
  stride = [];
  step = ones (1, r);
  if (numel (pos) >= 3)
    stride = index_vector (pos{3}, r, 'STRIDE', v.name, fname);
    step = stride;
  end
  for k = find (isinf (count))
    [~, len] = netcdflib ('inqDim', v.ncid, v.dimids(k));
    count(k) = max (0, ceil ((len - start(k)) / step(k)));
  end
end
