function expect_same (observed, expected, where)
  % Fails unless OBSERVED has EXPECTED's class, size and values (NaN equal to NaN), also
  % element by element in cells and field by field in structs, which assert compares
  % without their classes; WHERE names the case in the message.
  if (nargin < 3)
    where = 'value';
  end
  if (! strcmp (class (observed), class (expected)) || ! isequal (size (observed), size (expected)))
    error ('%s: %s %s observed, %s %s expected', where, class (observed), ...
           mat2str (size (observed)), class (expected), mat2str (size (expected)));
  end
  if (isstruct (expected))
    if (! isequal (fieldnames (observed), fieldnames (expected)))
      error ('%s: fields %s observed, %s expected', where, strjoin (fieldnames (observed)', ','), ...
             strjoin (fieldnames (expected)', ','));
    end
    for i = 1:numel (expected)
      for f = fieldnames (expected)'
        expect_same (observed(i).(f{1}), expected(i).(f{1}), sprintf ('%s.%s', where, f{1}));
      end
    end
  elseif (iscell (expected))
    for i = 1:numel (expected)
      expect_same (observed{i}, expected{i}, sprintf ('%s{%d}', where, i));
    end
  elseif (! isequaln (observed, expected))
    error ('%s: observed %s, expected %s', where, strtrim (disp (observed)), ...
           strtrim (disp (expected)));
  end
end
