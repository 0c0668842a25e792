function [start, count, stride] = subset (v, pos, fname)
  ## 0-based START, COUNT (Inf resolved to the end) and STRIDE ([] when not given) of a
  ## subset of variable V given 1-based as POS = {start, count, stride}.
  r = numel (v.lens);
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
  to_end = isinf (count);
  count(to_end) = max (0, ceil ((v.lens(to_end) - start(to_end)) ./ step(to_end)));
end
