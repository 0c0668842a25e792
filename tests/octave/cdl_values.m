function values = cdl_values (cdl)
  % The values in ncdump's CDL text, as a map from '/GROUP/VAR' (data), '/GROUP/VAR:ATT'
  % (attributes) and '/GROUP/:ATT' (group attributes) to a cell row of value tokens, in
  % order: numbers as printed, '_' for fill values, quoted text decoded to its bytes, '{'
  % and '}' around compound and vlen values. The root group's path is empty.
  values = containers.Map ();
  lines = strsplit (cdl, "\n");
  opens = regexp (lines, '^\s*group: (.+) \{$', 'tokens', 'once');
  closes = ! cellfun (@isempty, regexp (lines, '^\s*\} // group ', 'once'));
  names = regexp (lines, '^\s*(types|dimensions|variables|data):$', 'tokens', 'once');
  header = ! cellfun (@isempty, regexp (lines, '^netcdf .* \{$', 'once'));
  boundaries = find (! cellfun (@isempty, opens) | closes | ! cellfun (@isempty, names) | header);
  group = {};
  section = '';
  start = 1;
  for k = [boundaries, numel(lines) + 1]
    if (any (strcmp (section, {'variables', 'data'})))
      path = ['' cellfun(@(g) ['/' g], group, 'UniformOutput', false){:}];
      add_statements (values, path, section, strjoin (lines(start:k-1), "\n"));
    end
    section = '';
    start = k + 1;
    if (k > numel (lines))
      break;
    elseif (! isempty (opens{k}))
      group{end+1} = unescape_name (opens{k}{1});
    elseif (closes(k))
      group(end) = [];
    elseif (! isempty (names{k}))
      section = names{k}{1};
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
    name = unescape_name (statement{eq-1});
    if (strcmp (section, 'variables'))
      colon = regexp (statement{eq-1}, '(?<!\\):', 'once');
      name = [unescape_name(statement{eq-1}(1:colon-1)) ':' ...
              unescape_name(statement{eq-1}(colon+1:end))];
    end
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
