function [pos, opts] = ncoptions (args, opts, fname, all_named)
  ## Splits ARGS into positional arguments and name-value options (names in any case,
  ## from the first char argument on; every argument when ALL_NAMED); OPTS holds the
  ## defaults and gets the values given.
  if (isempty (args))
    pos = {};
    return;
  end
  if (nargin < 4)
    all_named = false;
  end
  first = numel (args) + 1;
  if (all_named)
    first = 1;
  else
    for k = 1:numel (args)
      if (ischar (args{k}))
        first = k;
        break;
      end
    end
  end
  pos = args(1:first-1);
  names = fieldnames (opts);
  rest = args(first:end);
  if (mod (numel (rest), 2))
    error ('ncdataset:badArgument', '%s: options must come in name-value pairs', fname);
  end
  for k = 1:2:numel (rest)
    j = [];
    if (ischar (rest{k}))
      j = find (strcmpi (rest{k}, names), 1);
    end
    if (isempty (j))
      if (ischar (rest{k}))
        error ('ncdataset:badArgument', '%s: unknown option ''%s''', fname, rest{k});
      end
      error ('ncdataset:badArgument', '%s: option names must be character strings', fname);
    end
    opts.(names{j}) = rest{k+1};
  end
end
