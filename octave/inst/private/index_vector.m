function v = index_vector (v, r, what, name, fname)
  ## Checks a START, COUNT or STRIDE of variable NAME of rank R: R whole numbers (COUNT
  ## may hold Inf), in a row.
  if (! isnumeric (v) || ! isreal (v) || numel (v) != r)
    error ('ncdataset:badArgument', '%s: %s of variable "%s" must have %d elements', ...
           fname, what, name, r);
  end
  v = double (v(:)');
  finite = v(isfinite (v));
  low = 1;
  if (strcmp (what, 'COUNT'))
    low = 0;
  end
  if (any (isnan (v)) || any (finite != fix (finite)) || any (v < low) ...
      || (! strcmp (what, 'COUNT') && any (isinf (v))))
    error ('ncdataset:badArgument', '%s: %s of variable "%s" must hold whole numbers >= %d', ...
           fname, what, name, low);
  end
end
