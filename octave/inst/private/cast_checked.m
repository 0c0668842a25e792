function x = cast_checked (x, cls, name)
  ## X in class CLS for variable NAME; values an integer class cannot hold are an error.
  switch (cls)
    case 'char'
      ok = ischar (x);
    case 'string'
      ok = iscellstr (x);
    otherwise
      ok = (isnumeric (x) || islogical (x)) && isreal (x);
  end
  if (! ok)
    error ('ncdataset:badType', 'data of class %s cannot be written to variable "%s" of %s', ...
           class (x), name, cls);
  end
  if (strcmp (class (x), cls) || ! isnumeric (x) || any (strcmp (cls, {'single', 'double'})))
    if (isnumeric (x) || islogical (x))
      x = cast (x, cls);
    end
    return;
  end
  lo = intmin (cls);
  hi = intmax (cls);
  if (isinteger (x))
    bad = x < lo | x > hi;
  else
    bad = isnan (x) | x < double (lo) | x > double (hi);
    if (any (strcmp (cls, {'int64', 'uint64'})))
      bad = bad | x >= double (hi);     # double (hi) rounds up to 2^63 or 2^64
    end
  end
  if (any (bad(:)))
    k = find (bad, 1);
    error ('ncdataset:outOfRange', ...
           'value %s (element %d) is out of the range of %s of variable "%s"', ...
           num2str (x(k)), k, cls, name);
  end
  x = cast (x, cls);
end
