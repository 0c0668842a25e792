## Variable data against independent readers and writers: what is written here through the
## subset and whole writes, python3-netcdf4 and ncdump read with the same values in netCDF
## order; what python3-netcdf4 and ncgen write reads here with the same values in Octave's
## order, whole and in subsets. All twelve atomic types, strings and Vlen data.

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

## Runs tests/interop/interop_data.py MODE FILE; its lines as NAME -> "KIND SHAPE CANON".
%!function lines = python_side (mode, file)
%!  script = fullfile (fileparts (file_in_loadpath ('interop_data_test.m')), '..', ...
%!                     'interop', 'interop_data.py');
%!  [status, out] = system (sprintf ('/usr/bin/python3 "%s" %s "%s" 2>&1', script, mode, file));
%!  assert (status == 0, 'python3: %s', out);
%!  lines = containers.Map ();
%!  for line = strsplit (strtrim (out), "\n")
%!    [name, rest] = strtok (line{1});
%!    lines(name) = strtrim (rest);
%!  endfor
%!endfunction

## "KIND SHAPE CANON" of a value held here for a variable of RANK dimensions, as
## interop_data.py prints it: numpy's type code, the netCDF shape (Octave's reversed) and
## the elements' little-endian bytes in Octave's linear order, which is netCDF's.
%!function s = describe (value, rank)
%!  codes = struct ('double', '<f8', 'single', '<f4', 'int64', '<i8', 'uint64', '<u8', ...
%!                  'int32', '<i4', 'uint32', '<u4', 'int16', '<i2', 'uint16', '<u2', ...
%!                  'int8', '|i1', 'uint8', '|u1', 'char', 'S1');
%!  hex = @(v) sprintf ('%02x', typecast (v(:), 'uint8'));
%!  if (iscellstr (value))
%!    kind = 'str';
%!    canon = strjoin (cellfun (@(e) sprintf ('%02x', uint8 (e)), value(:)', ...
%!                              'UniformOutput', false), ',');
%!  elseif (iscell (value))   # Vlen: each element a column of the base's class, or 0-by-0
%!    kind = ['vlen' codes.(class (value{1}))];
%!    shaped = cellfun (@(e) iscolumn (e) || isequal (size (e), [0 0]), value);
%!    canon = strjoin (cellfun (hex, value(:)', 'UniformOutput', false), ',');
%!    if (! all (shaped(:)))
%!      canon = ['not columns: ' canon];
%!    end
%!  elseif (ischar (value))
%!    kind = 'S1';
%!    canon = sprintf ('%02x', uint8 (value(:)));
%!  else
%!    kind = codes.(class (value));
%!    canon = hex (value);
%!  end
%!  extents = fliplr (size (value)(1:rank));
%!  shape = strjoin (arrayfun (@num2str, extents, 'UniformOutput', false), 'x');
%!  s = sprintf ('%s %s %s', kind, dash_if_empty (shape), dash_if_empty (canon));
%!endfunction

%!function s = dash_if_empty (s)
%!  if (isempty (s))
%!    s = '-';
%!  end
%!endfunction

## Written here by parts, strided and whole; python3-netcdf4 reads every value in netCDF
## order and ncdump prints integers in that order.
%!test
%! file = fullfile (work, 'here.nc');
%! types = data_types ();
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! z = netcdflib ('defDim', nc, 'z', 2);
%! y = netcdflib ('defDim', nc, 'y', 3);
%! x = netcdflib ('defDim', nc, 'x', 4);
%! n = netcdflib ('defDim', nc, 'n', 5);
%! t = netcdflib ('defDim', nc, 't', 0);
%! numeric = ! ismember (types(:, 3), {'char', 'cell'});
%! for k = 1:rows (types)
%!   [nctype, suffix] = types{k, 1:2};
%!   netcdflib ('defVar', nc, ['cube' suffix], p (nctype), [x y z]);
%!   netcdflib ('defVar', nc, ['line' suffix], p (nctype), n);
%!   netcdflib ('defVar', nc, ['scalar' suffix], p (nctype), []);
%!   if (numeric(k))
%!     vlen = netcdflib ('defVlen', nc, ['of' suffix], p (nctype));
%!     netcdflib ('defVar', nc, ['vlen' suffix], vlen, y);
%!   end
%! end
%! netcdflib ('defVar', nc, 'records', p ('NC_INT'), [x t]);
%! netcdflib ('endDef', nc);
%! id = @(name) netcdflib ('inqVarID', nc, name);
%! expected = containers.Map ();
%! for k = 1:rows (types)
%!   [~, suffix, cls] = types{k, :};
%!   cube = sample_values (cls, [4 3 2], k);
%!   for layer = 1:2
%!     netcdflib (['putVara' suffix], nc, id (['cube' suffix]), [0 0 layer-1], [4 3 1], ...
%!                cube(:, :, layer));
%!   end
%!   line = sample_values (cls, [5 1], k + 50);
%!   netcdflib (['putVars' suffix], nc, id (['line' suffix]), 0, 3, 2, line(1:2:5));
%!   netcdflib (['putVars' suffix], nc, id (['line' suffix]), 1, 2, 2, line(2:2:4));
%!   one = sample_values (cls, [1 1], k + 70);
%!   netcdflib (['putVar' suffix], nc, id (['scalar' suffix]), one);
%!   expected(['cube' suffix]) = describe (cube, 3);
%!   expected(['line' suffix]) = describe (line, 1);
%!   expected(['scalar' suffix]) = describe (one, 0);
%!   if (numeric(k))
%!     ragged = {sample_values(cls, [3 1], k); cast([], cls); sample_values(cls, [1 1], -k)};
%!     netcdflib ('putVarVlen', nc, id (['vlen' suffix]), ragged);
%!     expected(['vlen' suffix]) = describe (ragged, 1);
%!   end
%! end
%! records = sample_values ('int32', [4 3], 9);
%! for r = 1:3   # one record at a time: the unlimited dimension grows
%!   netcdflib ('putVaraInt', nc, id ('records'), [0 r-1], [4 1], records(:, r));
%! end
%! expected('records') = describe (records, 2);
%! netcdflib ('close', nc);
%! got = python_side ('read', file);
%! expect_same (sort (got.keys ()), sort (expected.keys ()));
%! for name = expected.keys ()
%!   expect_same (got(name{1}), expected(name{1}), name{1});
%! end
%! dump = ncdump_text ('-v', 'records', file);
%! values = regexp (dump, 'records =([^;]*);', 'tokens', 'once');
%! expect_same (str2num (['[' strrep(values{1}, "\n", ' ') ']']), double (records(:))');

## Written by python3-netcdf4: every variable reads here whole in Octave's order and shape,
## and in parts as python sliced them.
%!test
%! file = fullfile (work, 'python.nc');
%! wrote = python_side ('write', file);
%! types = data_types ();
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! read = @(op, name, varargin) netcdflib (op, nc, netcdflib ('inqVarID', nc, name), varargin{:});
%! for k = 1:rows (types)
%!   [~, suffix, cls] = types{k, :};
%!   cases = {['cube' suffix], 'getVar', {}, 3;
%!            ['cube' suffix '@part'], 'getVars', {[1 0 0], [2 2 2], [2 1 1]}, 3;
%!            ['cube' suffix '@one'], 'getVar1', {[3 2 1]}, 0;
%!            ['line' suffix], 'getVar', {}, 1;
%!            ['line' suffix '@part'], 'getVars', {1, 2, 2}, 1;
%!            ['scalar' suffix], 'getVar', {}, 0};
%!   for c = 1:rows (cases)
%!     [name, op, args, rank] = cases{c, :};
%!     value = read ([op suffix], strtok (name, '@'), args{:});
%!     assert (isa (value, cls), '%s is %s', name, class (value));
%!     expect_same (describe (value, rank), wrote(name), name);
%!   end
%!   if (! ismember (cls, {'char', 'cell'}))
%!     ragged = read ('getVarVlen', ['vlen' suffix]);
%!     expect_same (describe (ragged, 1), wrote(['vlen' suffix]), ['vlen' suffix]);
%!   end
%! end
%! expect_same (describe (read ('getVarInt', 'records'), 2), wrote('records'), 'records');
%! netcdflib ('close', nc);

## Vlen of Vlen and Vlen of strings that ncgen wrote read here; written here, ncdump prints
## them as it prints ncgen's. Vlen text elements hold one byte per character.
%!test
%! e = char ([195 169]);
%! none = char (zeros (1, 0));
%! schema = ["types:\n  int(*) ints ;\n  ints(*) nested ;\n  string(*) texts ;\n" ...
%!           "  char(*) chars ;\ndimensions:\n  n = 2 ;\nvariables:\n" ...
%!           "  nested nn(n) ;\n  texts tt(n) ;\n  string ss(n) ;\n  chars cc(n) ;\n"];
%! ncgen_file (fullfile (work, 'ncgen.nc'), ["netcdf ncgen {\n" schema "data:\n" ...
%!   "  nn = {{1, 2}, {}, {-3}}, {{2147483647}} ;\n" ...
%!   "  tt = {\"a\", \"" e "t" e "\"}, {} ;\n  ss = \"" e "t" e "\", \"\" ;\n}\n"]);
%! nn = {{int32([1; 2]); int32([]); int32(-3)}; {intmax('int32')}};
%! tt = {{'a'; [e 't' e]}; {}};
%! ss = {[e 't' e]; none};
%! nc = netcdflib ('open', fullfile (work, 'ncgen.nc'), 'NC_NOWRITE');
%! read = @(op, name) netcdflib (op, nc, netcdflib ('inqVarID', nc, name));
%! expect_same (read ('getVarVlen', 'nn'), nn, 'nn');
%! expect_same (read ('getVarVlen', 'tt'), tt, 'tt');
%! expect_same (read ('getVarString', 'ss'), ss, 'ss');
%! netcdflib ('close', nc);
%! file = fullfile (work, 'mine.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! nested = netcdflib ('defVlen', nc, 'nested', ints);
%! texts = netcdflib ('defVlen', nc, 'texts', p ('NC_STRING'));
%! chars = netcdflib ('defVlen', nc, 'chars', p ('NC_CHAR'));
%! n = netcdflib ('defDim', nc, 'n', 2);
%! vars = [netcdflib('defVar', nc, 'nn', nested, n), netcdflib('defVar', nc, 'tt', texts, n), ...
%!         netcdflib('defVar', nc, 'ss', p ('NC_STRING'), n), ...
%!         netcdflib('defVar', nc, 'cc', chars, n)];
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarVlen', nc, vars(1), nn);
%! netcdflib ('putVarVlen', nc, vars(2), tt);
%! netcdflib ('putVarString', nc, vars(3), ss);
%! netcdflib ('putVarVlen', nc, vars(4), {'xyz'; ['a' e]});
%! netcdflib ('close', nc);
%! data = @(dump) dump(strfind (dump, 'data:'):end);
%! ncgen_data = data (ncdump_text (fullfile (work, 'ncgen.nc')));
%! mine = data (ncdump_text (file));
%! ## ncgen cannot write Vlen text; é is the one byte 0xE9 there.
%! cc = [' cc = {x, y, z}, {a, ' char(233) '} ;'];
%! expect_same (mine, strrep (ncgen_data, ' cc = {}, {} ;', cc));

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
