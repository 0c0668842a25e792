function values = cdl_values (cdl)
  % The values in ncdump's CDL text, as a map from '/GROUP/VAR' (data), '/GROUP/VAR:ATT'
  % (attributes) and '/GROUP/:ATT' (group attributes) to a cell row of value tokens, in
  % order: numbers as printed, '_' for fill values, quoted text decoded to its bytes, '{'
  % and '}' around compound and vlen values. The root group's path is empty.
  values = containers.Map ();
  [path, section, text] = deal ('');
  ## Statements run on until the next line that opens a group or section or closes a group.
  for line = [strsplit(cdl, "\n"), {'data:'}]
    group = regexp (line{1}, '^\s*group: (.+) \{$', 'tokens', 'once');
    name = regexp (line{1}, '^\s*(types|dimensions|variables|data):$', 'tokens', 'once');
    closing = ! isempty (regexp (line{1}, '^\s*\} // group |^netcdf .* \{$', 'once'));
    if (isempty (group) && isempty (name) && ! closing)
      text = [text "\n" line{1}];
      continue;
    elseif (any (strcmp (section, {'variables', 'data'})))
      add_statements (values, path, section, text);
    end
    [text, section] = deal ('');
    if (! isempty (group))
      path = [path '/' unescape_name(group{1})];
    elseif (! isempty (name))
      section = name{1};
    elseif (line{1}(1) != 'n')   # a group's end, not the header
      path = regexprep (path, '/[^/]*$', '');
    end
  end
end

function add_statements (values, path, section, text)
  % Tokens: quoted text, '{', '}', ';' and runs of anything else but blanks and commas.
  tokens = regexp (text, '"(?:[^"\\]|\\.)*"|[{};]|(?:\\.|[^\s,;{}"\\])+', 'match');
  first = 1;
  for k = find (strcmp (tokens, ';'))
    statement = tokens(first:k-1);
    first = k + 1;
    eq = find (strcmp (statement, '='), 1);
    if (isempty (eq))
      continue;   # a declaration
    end
    ## VAR:ATT in the variables section; a colon in a name is escaped.
    name = strjoin (cellfun (@unescape_name, regexp (statement{eq-1}, '(?<!\\):', 'split'), ...
                             'UniformOutput', false), ':');
    items = statement(eq+1:end);
    quoted = strncmp (items, '"', 1);
    items(quoted) = cellfun (@unescape_text, items(quoted), 'UniformOutput', false);
    values([path '/' name]) = items;
  end
end

function name = unescape_name (name)
  name = regexprep (name, '\\(.)', '$1');
end

function s = unescape_text (q)
  % The bytes of a quoted CDL string, as a char row marked by a leading '"'.
  [pieces, escapes] = regexp (q(2:end-1), '\\([0-7]{1,3}|.)', 'split', 'tokens');
  s = ['"' pieces{1}];
  for k = 1:numel (escapes)
    e = escapes{k}{1};
    if (any (e(1) == '01234567'))
      e = char (base2dec (e, 8));
    elseif (any (e == 'ntrfbva'))
      e = "\n\t\r\f\b\v\a"(e == 'ntrfbva');
    end
    s = [s e pieces{k+1}];
  end
end
