function counts = ncdump_compare (label, urls, printed_urls)
  % Reads every variable and attribute of each of URLS here and fails unless each equals
  % what ncdump -p 9,17 prints for that URL, or for the same element of PRINTED_URLS
  % when given (every float and double exactly). Prints and
  % returns the counts [variables, attributes, pending, unsupported]: enum and opaque data
  % and attributes wait for untyped reads; compound and vlen-of-compound data cannot be
  % read here.
  if (nargin < 3)
    printed_urls = urls;
  end
  counts = [0 0 0 0 0];
  for k = 1:numel (urls)
    counts += compare_one (urls{k}, printed_urls{k});
  end
  fprintf (stderr, ['%s: %d datasets, %d variables and %d attributes equal to ncdump''s; ' ...
                    '%d pending (enum, opaque), %d not readable here (compound, vlen of ' ...
                    'compound); ncdataset read %d of the variables the same\n'], label, ...
          numel (urls), counts);
end

function counts = compare_one (url, printed_url)
  printed = cdl_values (ncdump ('-p', '9,17', printed_url));
  counts = [0 0 0 0 0];
  seen = {};
  nc = netcdflib ('open', url, 'NC_NOWRITE');
  ds = ncdataset (url);
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
          if (! strcmp (kind, 'atomic'))
            counts(3 + strcmp (kind, 'unsupported')) += 1;
            seen{end+1} = key;
          elseif (! isempty (v) || isKey (printed, key))
            assert (isKey (printed, key), '%s: ncdump prints no data of %s', url, key);
            assert (equal_tokens (printed(key), v, fill), '%s: %s differs', url, key);
            counts(1) += 1;
            if (isempty (path))
              ## The dataset interface, undecoded, reads the same values.
              raw = ds.read (name, 'Decode', false);
              assert (isequaln (raw(:), v(:)) && strcmp (class (raw), class (v)), ...
                      '%s: ncdataset reads %s differently', url, key);
              counts(5) += 1;
            end
            seen{end+1} = key;
          end
        end
        for a = 0:natts-1
          att = netcdflib ('inqAttName', gid, varid, a);
          v = read_att (gid, varid, att);
          akey = [key ':' att];
          if (isempty (v) && ! (ischar (v) || iscell (v)))
            counts(3) += 1;
          else
            assert (isKey (printed, akey), '%s: ncdump prints no %s', url, akey);
            assert (equal_tokens (printed(akey), v, []), '%s: %s differs', url, akey);
            counts(2) += 1;
          end
          seen{end+1} = akey;
        end
      end
    end
  unwind_protect_cleanup
    ds.close ();
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

function same = equal_tokens (tokens, v, fill)
  % Whether ncdump's tokens are the values V (fill: what '_' stands for).
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
  % KIND: 'atomic', or for user types 'pending' (enum and opaque) or 'unsupported'.
  suffix = {'Schar', 'Text', 'Short', 'Int', 'Float', 'Double', 'Uchar', 'Ushort', 'Uint', ...
            'Int64', 'Uint64', 'String'};
  v = [];  fill = [];  kind = 'atomic';
  if (xtype > 12)
    [~, ~, ~, ~, cls] = netcdflib ('inqUserType', gid, xtype);
    kind = ifelse_text (any (cls == [14 15]), 'pending', 'unsupported');
    return;
  end
  v = netcdflib (['getVar' suffix{xtype}], gid, varid);
  ## ncdump prints '_' for the _FillValue attribute's value, else the type's default.
  names = {'BYTE', 'CHAR', 'SHORT', 'INT', 'FLOAT', 'DOUBLE', 'UBYTE', 'USHORT', 'UINT', ...
           'INT64', 'UINT64', 'STRING'};
  try
    fill = read_att (gid, varid, '_FillValue');
  catch
    fill = netcdflib ('parameter', ['NC_FILL_' names{xtype}]);
  end
end

function s = ifelse_text (c, a, b)
  if (c) s = a; else s = b; end
end

function v = read_att (gid, varid, name)
  suffix = {'Schar', 'Text', 'Short', 'Int', 'Float', 'Double', 'Uchar', 'Ushort', 'Uint', ...
            'Int64', 'Uint64', 'String'};
  xtype = netcdflib ('inqAtt', gid, varid, name);
  v = [];
  if (xtype <= 12)
    v = netcdflib (['getAtt' suffix{xtype}], gid, varid, name);
  end
end

