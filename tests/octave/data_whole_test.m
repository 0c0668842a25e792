## Whole-variable reads and writes from Octave: every type in every shape on netCDF-4 files
## and the classic types on classic and 64-bit offset files, the checks before a write,
## netCDF-C's conversions, raw text bytes, Unicode strings and Vlen data of every base.

%!shared work, p, lib
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! lib = 'QUARNA:imagesci:netcdf:libraryFailure';

## What a whole read of a variable without elements gives: 0-by-0 of the type's class.
%!function e = empty_of (cls)
%!  if (strcmp (cls, 'cell'))
%!    e = cell (0, 0);
%!  else
%!    e = cast (zeros (0, 0), cls);
%!  end
%!endfunction

## Writes every type of TYPES in every shape to a new file of MODE, closes it and reads it
## back: a cube reads in reversed netCDF shape, a line (written as a row) as a column, a
## scalar as 1-by-1, record variables without records as 0-by-0.
%!function whole_roundtrip (file, mode, types, format)
%!  p = @(name) netcdflib ('parameter', name);
%!  nc = netcdflib ('create', file, mode);
%!  d = [netcdflib('defDim', nc, 'x', 4), netcdflib('defDim', nc, 'y', 3), ...
%!       netcdflib('defDim', nc, 'z', 2)];
%!  t = netcdflib ('defDim', nc, 't', 0);
%!  ## Name, Octave dimension ids, size written, size read (none: not written).
%!  shapes = {'cube', d, [4 3 2], [4 3 2];  'line', d(1), [1 4], [4 1];
%!            'scalar', [], [1 1], [1 1];  'records', [d(1) t], [], [0 0];  'rec1', t, [], [0 0]};
%!  for k = 1:rows (types)
%!    for s = 1:rows (shapes)
%!      netcdflib ('defVar', nc, [shapes{s, 1} types{k, 2}], p (types{k, 1}), shapes{s, 2});
%!    end
%!  end
%!  netcdflib ('endDef', nc);
%!  data = cell (rows (types), rows (shapes));
%!  for k = 1:rows (types)
%!    for s = find (! cellfun (@isempty, shapes(:, 3)))'
%!      data{k, s} = sample_values (types{k, 3}, shapes{s, 3}, 10 * k + s);
%!      varid = netcdflib ('inqVarID', nc, [shapes{s, 1} types{k, 2}]);
%!      netcdflib (['putVar' types{k, 2}], nc, varid, data{k, s});
%!    end
%!  end
%!  netcdflib ('close', nc);
%!  nc = netcdflib ('open', file, 'NC_NOWRITE');
%!  expect_same (netcdflib ('inqFormat', nc), format);
%!  for k = 1:rows (types)
%!    for s = 1:rows (shapes)
%!      name = [shapes{s, 1} types{k, 2}];
%!      back = netcdflib (['getVar' types{k, 2}], nc, netcdflib ('inqVarID', nc, name));
%!      if (isempty (data{k, s}))
%!        expect_same (back, empty_of (types{k, 3}), [format ' ' name]);
%!      else
%!        expect_same (back, reshape (data{k, s}, shapes{s, 4}), [format ' ' name]);
%!      end
%!    end
%!  end
%!  netcdflib ('close', nc);
%!endfunction

%!test
%! whole_roundtrip (fullfile (work, 'netcdf4.nc'), p ('NC_NETCDF4'), data_types (), ...
%!                  'FORMAT_NETCDF4');
%!test
%! whole_roundtrip (fullfile (work, 'classic.nc'), p ('NC_CLOBBER'), data_types ('classic'), ...
%!                  'FORMAT_CLASSIC');
%!test
%! whole_roundtrip (fullfile (work, '64bit.nc'), p ('NC_64BIT_OFFSET'), data_types ('classic'), ...
%!                  'FORMAT_64BIT');

## Checks before a write, in order: no data, no records to size the variable by, a count that
## differs (shapes are not compared), data of another class than the operation's.
%!test
%! nc = netcdflib ('create', fullfile (work, 'checks.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 3);
%! y = netcdflib ('defDim', nc, 'y', 2);
%! t = netcdflib ('defDim', nc, 't', 0);
%! grid = netcdflib ('defVar', nc, 'grid', p ('NC_DOUBLE'), [x y]);
%! records = netcdflib ('defVar', nc, 'records', p ('NC_DOUBLE'), [x t]);
%! one = netcdflib ('defVar', nc, 'one', p ('NC_SHORT'), []);
%! netcdflib ('endDef', nc);
%! id = 'QUARNA:imagesci:netcdf:';
%! cases = {'putVarDouble', 99, zeros(0, 3), 'emptyVariableData';
%!          'putVarString', 99, {}, 'emptyVariableData';
%!          'putVarDouble', records, [1 2 3], 'incompleteArgsForUnlimitedDimensions';
%!          'putVarDouble', grid, 1:5, 'dataSizeMismatch';
%!          'putVarDouble', grid, ones(2, 3, 2), 'dataSizeMismatch';
%!          'putVarShort', one, int16([1 2]), 'dataSizeMismatch';
%!          'putVarDouble', grid, single(1:6), 'argumentHasBadDatatype';
%!          'putVarText', grid, 1:6, 'argumentHasBadDatatype';
%!          'putVarShort', one, 1, 'argumentHasBadDatatype'};
%! for k = 1:rows (cases)
%!   expect_error (call_failure (cases{k, 1}, nc, cases{k, 2}, cases{k, 3}), [id cases{k, 4}]);
%! end
%! expect_error (call_failure ('putVarDouble', nc, 99, 1), lib, '''putVarDouble''', 'NC_ENOTVAR');
%! expect_same (netcdflib ('getVarDouble', nc, records), zeros (0, 0));
%! netcdflib ('putVarDouble', nc, grid, (1:6)');
%! expect_same (netcdflib ('getVarDouble', nc, grid), [1 4; 2 5; 3 6]);
%! netcdflib ('putVarShort', nc, one, int16 (-7));
%! expect_same (netcdflib ('getVarShort', nc, one), int16 (-7));
%! netcdflib ('close', nc);

## netCDF-C converts between the file's type and the operation's, and its conversion and
## range errors come back as status errors naming the operation.
%!test
%! nc = netcdflib ('create', fullfile (work, 'convert.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 3);
%! short = netcdflib ('defVar', nc, 'short', p ('NC_SHORT'), x);
%! text = netcdflib ('defVar', nc, 'text', p ('NC_CHAR'), x);
%! str = netcdflib ('defVar', nc, 'str', p ('NC_STRING'), x);
%! ints = netcdflib ('defVar', nc, 'ints', netcdflib ('defVlen', nc, 'vi', p ('NC_INT')), x);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarDouble', nc, short, [300; -2; 7]);
%! types = data_types ();
%! for k = 1:rows (types)
%!   [~, suffix, cls] = types{k, :};
%!   op = ['getVar' suffix];
%!   if (any (strcmp (cls, {'double', 'single', 'int64', 'int32', 'int16'})))
%!     expect_same (netcdflib (op, nc, short), cast ([300; -2; 7], cls), op);
%!   elseif (strcmp (cls, 'char'))
%!     expect_error (call_failure (op, nc, short), lib, ['''' op ''''], 'NC_ECHAR');
%!   elseif (strcmp (cls, 'cell'))
%!     expect_error (call_failure (op, nc, short), lib, ['''' op ''''], 'NC_EBADTYPE');
%!   else   # unsigned or too narrow for -2 or 300
%!     expect_error (call_failure (op, nc, short), lib, ['''' op ''''], 'NC_ERANGE');
%!   end
%! end
%! cases = {{'putVarDouble', short, [1; 40000; 2]}, 'NC_ERANGE';
%!          {'putVarInt64', short, int64([1; -40000; 2])}, 'NC_ERANGE';
%!          {'putVarDouble', text, [1; 2; 3]}, 'NC_ECHAR';
%!          {'putVarText', short, 'abc'}, 'NC_ECHAR';
%!          {'getVarDouble', text}, 'NC_ECHAR';
%!          {'getVarDouble', str}, 'NC_EBADTYPE';
%!          {'getVarInt', ints}, 'NC_EBADTYPE'};
%! for k = 1:rows (cases)
%!   op = cases{k, 1}{1};
%!   expect_error (call_failure (op, nc, cases{k, 1}{2:end}), lib, ['''' op ''''], cases{k, 2});
%! end
%! for v = [short, text, str]
%!   [~, xtype] = netcdflib ('inqVar', nc, v);
%!   expect_error (call_failure ('getVarVlen', nc, v), ...
%!                 'QUARNA:imagesci:netcdf:unrecognizedVarDatatype', sprintf (' %d ', xtype));
%! end
%! netcdflib ('putVarInt', nc, short, int32 ([32767; -32768; 0]));
%! expect_same (netcdflib ('getVarDouble', nc, short), [32767; -32768; 0]);
%! netcdflib ('close', nc);

## NC_CHAR data is bytes: every byte value, in rows, columns and matrices; UTF-8 text counts
## its bytes and comes back as the same bytes.
%!test
%! nc = netcdflib ('create', fullfile (work, 'text.nc'), 'NC_CLOBBER');
%! n = netcdflib ('defDim', nc, 'n', 256);
%! m = netcdflib ('defDim', nc, 'm', 128);
%! two = netcdflib ('defDim', nc, 'two', 2);
%! temp = ['Temp' char([195 169]) 'rature ' char([226 130 172])];   # 16 bytes
%! len = netcdflib ('defDim', nc, 'len', numel (temp));
%! cases = {'row', n, char(0:255), char(0:255)';
%!          'column', n, char(255:-1:0)', char(255:-1:0)';
%!          'matrix', [m two], reshape(char(0:255), 128, 2), reshape(char(0:255), 128, 2);
%!          'utf8', len, temp, temp';
%!          'one', [], char(233), char(233)};
%! for k = 1:rows (cases)
%!   varid(k) = netcdflib ('defVar', nc, cases{k, 1}, p ('NC_CHAR'), cases{k, 2});
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:rows (cases)
%!   netcdflib ('putVarText', nc, varid(k), cases{k, 3});
%!   expect_same (netcdflib ('getVarText', nc, varid(k)), cases{k, 4}, cases{k, 1});
%! end
%! netcdflib ('close', nc);

## Vlen data of every atomic base and Vlen of Vlen: numeric elements are columns of their
## class, char elements rows, string elements columns of texts; empty ones 0-by-0.
%!test
%! file = fullfile (work, 'vlen.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! dims = [netcdflib('defDim', nc, 'x', 2), netcdflib('defDim', nc, 'y', 3)];
%! t = netcdflib ('defDim', nc, 't', 0);
%! types = data_types ();
%! none = char (zeros (1, 0));   # an empty text as reads give it
%! data = cell (rows (types) + 2, 1);
%! for k = 1:rows (types)
%!   [nctype, suffix, cls] = types{k, :};
%!   base = p (nctype);
%!   switch cls
%!     case 'char'
%!       el = {['caf' char([195 169])], 'x', none, 'abc', none, 'z'};
%!     case 'cell'
%!       el = {sample_values('cell', [3 1], 1), {}, {'one'}, sample_values('cell', [2 1], 5), ...
%!             {}, {char([240 159 152 128])}};
%!     otherwise
%!       el = {sample_values(cls, [3 1], k), cast([], cls), sample_values(cls, [1 1], k), ...
%!             sample_values(cls, [5 1], -k), cast([], cls), sample_values(cls, [2 1], 2)};
%!   end
%!   data{k} = reshape (el, 2, 3);
%!   xtype(k) = netcdflib ('defVlen', nc, ['of' suffix], base);
%! end
%! ## Vlen of Vlen of int, and of Vlen of string.
%! xtype(end+1) = netcdflib ('defVlen', nc, 'ofOfInt', xtype(5));
%! data{end-1} = {{int32([1; 2]); int32([])}, {}, {int32(7)}; {}, {int32([]); int32(-1)}, {}};
%! xtype(end+1) = netcdflib ('defVlen', nc, 'ofOfString', xtype(12));
%! data{end} = {{{'a'; 'bc'}; {}}, {}, {{none}}; {{'d'}}, {}, {{char([195 169])}; {'e'; 'f'}}};
%! for k = 1:numel (data)
%!   varid(k) = netcdflib ('defVar', nc, sprintf ('v%d', k), xtype(k), dims);
%!   records(k) = netcdflib ('defVar', nc, sprintf ('r%d', k), xtype(k), t);
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:numel (data)
%!   netcdflib ('putVarVlen', nc, varid(k), data{k});
%! end
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! for k = 1:numel (data)
%!   expect_same (netcdflib ('getVarVlen', nc, varid(k)), data{k}, sprintf ('v%d', k));
%!   expect_same (netcdflib ('getVarVlen', nc, records(k)), cell (0, 0), sprintf ('r%d', k));
%! end
%! netcdflib ('close', nc);

## Vlen elements whose class is not the base's are refused before netCDF-C sees them.
%!test
%! nc = netcdflib ('create', fullfile (work, 'vlen_bad.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 2);
%! ints = netcdflib ('defVar', nc, 'ints', netcdflib ('defVlen', nc, 'vi', p ('NC_INT')), x);
%! strs = netcdflib ('defVar', nc, 'strs', netcdflib ('defVlen', nc, 'vs', p ('NC_STRING')), x);
%! netcdflib ('endDef', nc);
%! cases = {ints, {int32(1); int8([1 2 3 4])};  ints, {int32(1); [1 2]};  ints, [1 2];
%!          strs, {{'a'}; 'b'};  strs, {{'a'}; {1}}};
%! for k = 1:rows (cases)
%!   expect_error (call_failure ('putVarVlen', nc, cases{k, :}), ...
%!                 'QUARNA:imagesci:netcdf:argumentHasBadDatatype', '''data''');
%! end
%! expect_same (netcdflib ('getVarVlen', nc, ints), {int32([]); int32([])});
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
