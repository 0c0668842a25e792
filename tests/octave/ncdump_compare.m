function counts = ncdump_compare (label, urls, printed_urls)
  % Reads every variable and attribute of each of URLS here (every k-th URL, k from
  % NETCDFLIB_REMOTE_SAMPLE) and fails unless each equals what ncdump -p 9,17 prints for
  % that URL, or for the same element of PRINTED_URLS when given (every float and double
  % exactly). Enum and opaque values are read in their own type and compared as ncdump
  % prints them (member names, 0X and hex bytes); compound and vlen variables leaf by leaf in
  % print order. Prints and returns the counts [datasets, variables, attributes, enum or
  % opaque among them, compound or vlen among them, not compared], all but the last scaled
  % up by k.
  if (nargin < 3)
    printed_urls = urls;
  end
  k = max (1, str2double (getenv ('NETCDFLIB_REMOTE_SAMPLE')));
  counts = [numel(urls(1:k:end)), zeros(1, 5)];
  for u = 1:k:numel (urls)
    counts(2:end) += compare_one (urls{u}, printed_urls{u});
  end
  fprintf (stderr, ['%s: %d datasets, %d variables and %d attributes equal to ncdump''s, ' ...
                    '%d of them enum or opaque, %d compound or vlen; %d not compared\n'], ...
           label, counts);
  counts(1:5) *= k;
end

function counts = compare_one (url, printed_url)
  printed = cdl_values (ncdump ('-p', '9,17', printed_url));
  counts = zeros (1, 5);
  seen = {};
  nc = netcdflib ('open', url, 'NC_NOWRITE');
  unwind_protect
    groups = {nc};
    while (! isempty (groups))
      gid = groups{1};
      groups = [groups(2:end), num2cell(netcdflib ('inqGrps', gid))];
      path = regexprep (netcdflib ('inqGrpNameFull', gid), '^/$', '');
      for varid = [-1, netcdflib('inqVarIDs', gid)]
        if (varid < 0)
          [~, ~, natts] = netcdflib ('inq', gid);
          key = [path '/'];
        else
          [name, xtype, ~, natts] = netcdflib ('inqVar', gid, varid);
          key = [path '/' name];
          [v, fill, kind] = read_var (gid, varid, xtype);
          user = strcmp (kind, 'user');
          if (strcmp (kind, 'nested'))
            assert (isKey (printed, key), '%s: ncdump prints no data of %s', url, key);
            tokens = printed(key);
            tokens = tokens(! ismember (tokens, {'{', '}'}));
            assert (numel (tokens) == numel (v) ...
                    && all (cellfun (@(t, x) equal_tokens ({t}, x, [], false), tokens, v)), ...
                    '%s: %s differs', url, key);
            counts([1 4]) += 1;
            seen{end+1} = key;
          elseif (! isempty (v) || isKey (printed, key))
            assert (isKey (printed, key), '%s: ncdump prints no data of %s', url, key);
            assert (equal_tokens (printed(key), v, fill, user), '%s: %s differs', url, key);
            counts([1 3]) += [1 user];
            seen{end+1} = key;
          end
        end
        for a = 0:natts-1
          att = netcdflib ('inqAttName', gid, varid, a);
          [v, user] = read_att (gid, varid, att);
          akey = [key ':' att];
          if (isempty (v) && ! (ischar (v) || iscell (v)))
            counts(5) += 1;
          else
            assert (isKey (printed, akey), '%s: ncdump prints no %s', url, akey);
            assert (equal_tokens (printed(akey), v, [], user), '%s: %s differs', url, akey);
            counts([2 3]) += [1 user];
          end
          seen{end+1} = akey;
        end
      end
    end
  unwind_protect_cleanup
    netcdflib ('close', nc);
  end_unwind_protect
  missing = setdiff (keys (printed), seen);
  assert (isempty (missing), '%s: ncdump prints %s, not read here', url, strjoin (missing, ', '));
end

function s = int_text (v)
  % Exact decimal text of integers, uint64 above intmax ('int64') included.
  s = strsplit (sprintf ('%d\n', v), "\n")(1:end-1);
  for k = find (isa (v, 'uint64') & v > intmax ('int64'))
    high = idivide (v(k), uint64 (1e10), 'floor');
    s{k} = sprintf ('%d%010d', high, v(k) - high * uint64 (1e10));
  end
end

function same = equal_tokens (tokens, v, fill, names)
  % Whether ncdump's tokens are the values V (fill: what '_' stands for; NAMES: V holds
  % enum or opaque values as printed).
  if (names)
    tokens(strcmp (tokens, '_')) = {fill};
    same = isequal (tokens(:), v(:));
    return;
  end
  if (ischar (v))
    ## Text rows lose their trailing NULs in ncdump's print; compare the bytes left.
    rows = reshape (v, max (size (v, 1), 1), []);
    text = '';
    for r = 1:columns (rows)
      text = [text strip_nuls(rows(:, r)')];
    end
    printed = cellfun (@(t) t(2:end), tokens, 'UniformOutput', false);
    same = strcmp (strip_nuls (text), strip_nuls ([printed{:}]));
    return;
  end
  if (iscell (v))
    same = isequal (cellfun (@(t) t(2:end), tokens(:), 'UniformOutput', false), v(:));
    return;
  end
  same = numel (tokens) == numel (v);
  if (! same)
    return;
  end
  tokens = tokens(:)';
  v = v(:)';
  filled = strcmp (tokens, '_');
  if (any (filled))
    same = isequaln (v(filled), repmat (cast (fill, class (v)), 1, nnz (filled)));
  end
  tokens = tokens(! filled);
  v = v(! filled);
  if (isempty (v))
    return;
  elseif (isinteger (v))
    same = same && isequal (regexprep (tokens, '[A-Za-z]+$', ''), int_text (v));
  else
    t = regexprep (regexprep (tokens, '^(-?)Infinityf?$', '$1Inf'), '^NaNf?$', 'NaN');
    got = str2double (regexprep (t, '(?<=[0-9.])f$', ''));
    same = same && isequaln (cast (got, class (v)), v);
  end
end

function s = strip_nuls (s)
  s = s(1:find (s != 0, 1, 'last'));
end

function [v, fill, kind] = read_var (gid, varid, xtype)
  % KIND: 'atomic', 'user' (enum and opaque, V as printed) or 'nested' (compound and vlen,
  % V a cell row of leaf values in print order).
  v = [];  fill = [];  kind = 'atomic';
  if (xtype > 12)
    [~, ~, ~, ~, cls] = netcdflib ('inqUserType', gid, xtype);
    if (! any (cls == [14 15]))
      kind = 'nested';
      v = [leaves(gid, xtype, netcdflib ('getVar', gid, varid)){:}];
    else
      kind = 'user';
      v = printed_values (gid, xtype, netcdflib ('getVar', gid, varid));
      try
        fill = read_att (gid, varid, '_FillValue'){1};
      end
    end
    return;
  end
  v = netcdflib (['getVar' suffix(xtype)], gid, varid);
  ## ncdump prints '_' for the _FillValue attribute's value, else the type's default.
  try
    fill = read_att (gid, varid, '_FillValue');
  catch
    fill = netcdflib ('parameter', ['NC_FILL_' upper(regexprep (suffix (xtype), ...
                                    {'^Schar$', '^Text$', '^Uchar$'}, {'Byte', 'Char', 'UByte'}))]);
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
  names = fieldnames (v);
  for f = 1:nfields
    [~, ~, ftype, dims] = netcdflib ('inqCompoundField', gid, xtype, f - 1);
    ## Array dims come first in host order, so an element's items are adjacent.
    sub = reshape (leaves (gid, ftype, v.(names{f})), prod (dims), []);
    if (f == 1)
      per = cell (1, columns (sub));
    end
    for k = 1:columns (sub)
      per{k} = [per{k}, sub{:, k}];
    end
  end
end

function [v, user] = read_att (gid, varid, name)
  % USER: an enum or opaque attribute, V as printed.
  xtype = netcdflib ('inqAtt', gid, varid, name);
  v = [];
  user = false;
  if (xtype <= 12)
    v = netcdflib (['getAtt' suffix(xtype)], gid, varid, name);
    return;
  end
  [~, ~, ~, ~, cls] = netcdflib ('inqUserType', gid, xtype);
  user = any (cls == [14 15]);
  if (user)
    v = printed_values (gid, xtype, netcdflib ('getAtt', gid, varid, name));
  end
end

function s = suffix (xtype)
  s = {'Schar', 'Text', 'Short', 'Int', 'Float', 'Double', 'Uchar', 'Ushort', 'Uint', ...
       'Int64', 'Uint64', 'String'}{xtype};
end

function names = printed_values (gid, xtype, v)
  % Enum values as ncdump prints them, by member name; opaque ones as 0X and hex bytes.
  [~, n, ~, ~, cls] = netcdflib ('inqUserType', gid, xtype);
  if (cls == 15)
    names = arrayfun (@(x) netcdflib ('inqEnumIdent', gid, xtype, double (x)), v(:)', ...
                      'UniformOutput', false);
  else
    names = cellfun (@(b) ['0X' sprintf('%02X', b)], num2cell (reshape (v, n, []), 1), ...
                     'UniformOutput', false);
  end
end

