function v = sample_values (cls, dims, seed)
  % Data of Octave class CLS ('cell' for strings) and size DIMS that differs with SEED:
  % the class's extremes, NaN and infinities for floats, bytes above 0x7F for char,
  % non-ASCII and empty texts for strings.
  n = prod (dims);
  k = (1:n)' + seed;
  switch cls
    case 'char'
      v = char (mod (k * 37 + 101, 256));
    case 'cell'
      words = {'plain', char([195 169 116 195 169]), char([230 184 169 229 186 166]), ...
               char([240 159 152 128]), "tab\tand newline\n"};
      v = cell (n, 1);
      for i = 1:n
        if (mod (k(i), 4) == 0)
          v{i} = char (zeros (1, 0));   # what reads of an empty string give
        else
          v{i} = sprintf ('%s %d', words{mod(k(i), numel (words)) + 1}, k(i));
        end
      end
    case {'double', 'single'}
      v = cast ((k - n / 2) * 1.25, cls);
      special = cast ([-realmax(cls); NaN; Inf; -Inf; realmin(cls); realmax(cls)], cls);
      m = min (n, numel (special));
      v(mod ((0:m-1) + seed, n) + 1) = special(1:m);
    otherwise
      v = cast (mod (k * 37, 101) - 50, cls);
      v(mod ([0 1] + seed, n) + 1) = [intmin(cls) intmax(cls)];
  end
  v = reshape (v, dims);
end
