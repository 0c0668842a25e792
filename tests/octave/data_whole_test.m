## Whole-variable reads and writes from Octave: every type in every shape on netCDF-4 files
## and the classic types on classic files, raw text bytes, Unicode strings
## and Vlen data of every base.

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

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

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
