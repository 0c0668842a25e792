function s = cdl_values (value, xtype)
  ## Attribute values as ncdump writes them in CDL.
  switch (xtype)
    case 2
      s = ['"' cdl_escape(value) '"'];
    case 12
      s = strjoin (cellfun (@(t) ['"' cdl_escape(t) '"'], value(:)', 'UniformOutput', false), ', ');
    case {5, 6}
      if (xtype == 5)
        s = sprintf ('%#.7g|', value);
        suffix = 'f';
      else
        s = sprintf ('%#.15g|', value);
        suffix = '';
      end
      s = regexprep (s, '0+(e[-+]\d+)?\|', '$1|');      # trailing zeros of the mantissa
      s = regexprep (s, 'Inf\|', 'Infinity|');
      s = strrep (s(1:end-1), '|', [suffix ', ']);
      s = [s suffix];
    otherwise
      suffix = type_row (xtype).constant;
      if (isa (value, 'int64') || isa (value, 'uint64'))
        s = strjoin (arrayfun (@(x) [exact_int(x) suffix], value(:)', 'UniformOutput', false), ', ');
      else
        s = sprintf (['%d' suffix ', '], value);
        s = s(1:end-2);
      end
  end
end

function t = cdl_escape (t)
  t = strrep (t, '\', '\\');
  t = strrep (t, '"', '\"');
  t = strrep (t, "\n", '\n');
  t = strrep (t, "\t", '\t');
  t = strrep (t, "\r", '\r');
end

## sprintf is exact for one 64-bit integer, but not beyond the int64 range.
function s = exact_int (x)
  if (isa (x, 'uint64') && x > intmax ('int64'))
    m = mod (x, uint64 (10));
    s = sprintf ('%d%d', int64 ((x - m) / uint64 (10)), int64 (m));
  else
    s = sprintf ('%d', x);
  end
end
