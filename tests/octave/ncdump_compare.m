function counts = ncdump_compare (label, urls)
  % Reads every variable and attribute of each of URLS here (every k-th URL, k from
  % NETCDFLIB_REMOTE_SAMPLE) and fails unless each equals what ncdump -p 9,17 prints for
  % that URL (every float and double exactly). Enum and opaque values are read in their
  % own type and compared as ncdump prints them (member names, 0X and hex bytes); compound
  % and vlen variables leaf by leaf in print order. Prints and returns the counts
  % [datasets, variables, attributes, enum or opaque among them, compound or vlen among
  % them, not compared], all but the last scaled up by k.
  k = max (1, str2double (getenv ('NETCDFLIB_REMOTE_SAMPLE')));
  counts = [numel(urls(1:k:end)), zeros(1, 5)];
  for u = 1:k:numel (urls)
    counts(2:end) += compare_one (urls{u});
  end
  fprintf (stderr, ['%s: %d datasets, %d variables and %d attributes equal to ncdump''s, %d ' ...
                    'of them enum or opaque, %d compound or vlen; %d not compared\n'], label, counts);
  counts(1:5) *= k;
end

function counts = compare_one (url)
  printed = cdl_values (ncdump ('-p', '9,17', url));
  [counts, seen] = deal (zeros (1, 5), {});
  nc = netcdflib ('open', url, 'NC_NOWRITE');
  groups = {nc};
  while (! isempty (groups))
    gid = groups{1};
    groups = [groups(2:end), num2cell(netcdflib ('inqGrps', gid))];
    path = regexprep (netcdflib ('inqGrpNameFull', gid), '^/$', '');
    [~, ~, natts] = netcdflib ('inq', gid);
    for varid = [-1, netcdflib('inqVarIDs', gid)]
      key = [path '/'];
      if (varid >= 0)
        [name, xtype, ~, natts] = netcdflib ('inqVar', gid, varid);
        key = [path '/' name];
        [v, kind] = value_of (gid, varid, '', xtype);
        ## ncdump prints '_' for the _FillValue attribute's value (enum and opaque: a
        ## cell holding it as printed), else the type's default.
        fill = [];
        if (xtype <= 12)
          fill = netcdflib ('parameter', ['NC_FILL_' upper(regexprep (suffix (xtype), ...
                            {'^Schar$', '^Text$', '^Uchar$'}, {'Byte', 'Char', 'UByte'}))]);
        end
        try
          fill = value_of (gid, varid, '_FillValue', xtype);
        end
        if (! isempty (v) || isKey (printed, key))
          compare (printed, key, v, fill, kind, url);
          counts([1 3 4]) += [1, strcmp(kind, 'user'), strcmp(kind, 'nested')];
          seen{end+1} = key;
        end
      end
      for a = 0:natts-1
        att = netcdflib ('inqAttName', gid, varid, a);
        [v, kind] = value_of (gid, varid, att, netcdflib ('inqAtt', gid, varid, att));
        seen{end+1} = [key ':' att];
        if (strcmp (kind, 'nested'))
          counts(5) += 1;
        else
          compare (printed, seen{end}, v, [], kind, url);
          counts([2 3]) += [1 strcmp(kind, 'user')];
        end
      end
    end
  end
  netcdflib ('close', nc);
  missing = setdiff (keys (printed), seen);
  assert (isempty (missing), '%s: ncdump prints %s, not read here', url, strjoin (missing, ', '));
end

function compare (printed, key, v, fill, kind, url)
  assert (isKey (printed, key), '%s: ncdump prints no %s', url, key);
  tokens = printed(key);
  if (strcmp (kind, 'nested'))
    tokens = tokens(! ismember (tokens, {'{', '}'}));
    same = numel (tokens) == numel (v) ...
           && all (cellfun (@(t, x) equal_tokens ({t}, x, [], 'atomic'), tokens, v));
  else
    same = equal_tokens (tokens, v, fill, kind);
  end
  assert (same, '%s: %s differs', url, key);
end

function same = equal_tokens (tokens, v, fill, kind)
  % Whether ncdump's tokens are the values V (fill: what '_' stands for; KIND 'user': V
  % holds enum or opaque values as printed).
  if (strcmp (kind, 'user'))
    tokens(strcmp (tokens, '_')) = fill;
    same = isequal (tokens(:), v(:));
  elseif (ischar (v))
    ## Text rows lose their trailing NULs in ncdump's print; compare the bytes left.
    strip_nuls = @(s) s(1:find (s != 0, 1, 'last'));
    rows = num2cell (reshape (v, max (size (v, 1), 1), []), 1);
    text = ['' cellfun(@(r) strip_nuls (r'), rows, 'UniformOutput', false){:}];
    printed = cellfun (@(t) t(2:end), tokens, 'UniformOutput', false);
    same = strcmp (strip_nuls (text), strip_nuls ([printed{:}]));
  elseif (iscell (v))
    same = isequal (cellfun (@(t) t(2:end), tokens(:), 'UniformOutput', false), v(:));
  elseif (numel (tokens) != numel (v))
    same = false;
  else
    filled = strcmp (tokens(:), '_');
    v = v(:);
    same = ! any (filled) || isequaln (v(filled), repmat (cast (fill, class (v)), nnz (filled), 1));
    t = tokens(! filled)(:);
    v = v(! filled);
    if (! isempty (v) && isinteger (v))
      ## Exact decimal text (sprintf goes through double above intmax ('int64')).
      same = same && isequal (regexprep (t, '[A-Za-z]+$', ''), ...
                              strtrim (strsplit (strtrim (disp (v)), "\n"))');
    elseif (! isempty (v))
      t = regexprep (t, {'^(-?)Infinityf?$', '^NaNf?$', '(?<=[0-9.])f$'}, {'$1Inf', 'NaN', ''});
      same = same && isequaln (cast (str2double (t), class (v)), v);
    end
  end
end

function [v, kind] = value_of (gid, varid, att, xtype)
  % A variable's data (ATT empty) or an attribute's value, of type XTYPE, and its KIND:
  % 'atomic', 'user' (enum and opaque, V as printed: member names, or 0X and hex bytes) or
  % 'nested' (compound and vlen, V a cell row of leaf values in print order; not read of
  % attributes).
  where = [{{'Var', 'Att'}{1 + ! isempty(att)}, gid, varid}, {att}(! isempty (att))];
  kind = 'atomic';
  if (xtype <= 12)
    v = netcdflib (['get' where{1} suffix(xtype)], where{2:end});
    return;
  end
  [~, n, ~, ~, cls] = netcdflib ('inqUserType', gid, xtype);
  kind = {'nested', 'user'}{1 + any (cls == [14 15])};
  v = [];
  if (strcmp (kind, 'user') || isempty (att))
    v = netcdflib (['get' where{1}], where{2:end});
  end
  if (cls == 15)
    v = arrayfun (@(x) netcdflib ('inqEnumIdent', gid, xtype, double (x)), v(:)', ...
                  'UniformOutput', false);
  elseif (cls == 14)
    v = cellfun (@(b) ['0X' sprintf('%02X', b)], num2cell (reshape (v, n, []), 1), ...
                 'UniformOutput', false);
  elseif (! isempty (v))
    v = [leaves(gid, xtype, v){:}];
  end
end

function per = leaves (gid, xtype, v)
  % The leaf values of each element V holds, a cell per element in the file's order: a
  % compound's fields in order, an array field's elements in row-major order, a vlen's
  % elements in turn.
  if (xtype <= 12)
    if (! iscell (v))
      v = num2cell (v);
    end
    per = cellfun (@(x) {x}, v(:)', 'UniformOutput', false);
    return;
  end
  [~, ~, base, nfields, cls] = netcdflib ('inqUserType', gid, xtype);
  if (cls == 13)
    per = cellfun (@(e) [leaves(gid, base, e){:}], v(:)', 'UniformOutput', false);
    return;
  end
  ## A row of leaf lists per field item, a column per element.
  [names, parts] = deal (fieldnames (v), {});
  for f = 1:nfields
    [~, ~, ftype, dims] = netcdflib ('inqCompoundField', gid, xtype, f - 1);
    ## Array dims come first in host order, so an element's items are adjacent.
    parts = [parts; reshape(leaves (gid, ftype, v.(names{f})), prod (dims), [])];
  end
  per = arrayfun (@(k) [parts{:, k}], 1:columns (parts), 'UniformOutput', false);
end

function s = suffix (xtype)
  s = {'Schar', 'Text', 'Short', 'Int', 'Float', 'Double', 'Uchar', 'Ushort', 'Uint', ...
       'Int64', 'Uint64', 'String'}{xtype};
end
