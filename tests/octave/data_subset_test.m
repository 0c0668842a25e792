## Subset reads and writes from Octave (the "1", "a" and "s" forms): every type on netCDF-4
## files and the classic types on classic and 64-bit offset files, against Octave's own
## indexing; shapes, strides, growth along unlimited dimensions and the index checks.

%!shared work, p, lib
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! lib = 'QUARNA:imagesci:netcdf:libraryFailure';

## Reads and writes parts of a 4-by-3-by-2 variable of every type of TYPES in every form and
## compares with the same indexing in Octave (START is zero-based); a record variable grows
## by strided writes.
%!function subset_roundtrip (file, mode, types)
%!  p = @(name) netcdflib ('parameter', name);
%!  nc = netcdflib ('create', file, mode);
%!  d = [netcdflib('defDim', nc, 'x', 4), netcdflib('defDim', nc, 'y', 3), ...
%!       netcdflib('defDim', nc, 'z', 2)];
%!  t = netcdflib ('defDim', nc, 't', 0);
%!  for k = 1:rows (types)
%!    cube(k) = netcdflib ('defVar', nc, ['cube' types{k, 2}], p (types{k, 1}), d);
%!    rec(k) = netcdflib ('defVar', nc, ['rec' types{k, 2}], p (types{k, 1}), [d(1) t]);
%!  end
%!  netcdflib ('endDef', nc);
%!  for k = 1:rows (types)
%!    [~, suffix, cls] = types{k, :};
%!    get = @(form, varargin) netcdflib (['getVar' form suffix], nc, varargin{:});
%!    put = @(form, varargin) netcdflib (['putVar' form suffix], nc, varargin{:});
%!    put1 = ['putVar1' regexprep(suffix, '^Uint', 'UInt')];   # the table's spelling
%!    whole = sample_values (cls, [4 3 2], k);
%!    put ('', cube(k), whole);
%!    reads = {get('1', cube(k), [3 1 1]),                      whole(4, 2, 2);
%!             get('1', cube(k), [0 2 0]),                      whole(1, 3, 1);
%!             get('a', cube(k), [1 0 1], [2 3 1]),             whole(2:3, 1:3, 2);
%!             get('a', cube(k), [0 0 0], [4 3 2]),             whole;
%!             get('a', cube(k), [0 1 0], [4 0 2]),             whole(:, [], :);
%!             get('s', cube(k), [0 0 0], [2 2 2], [3 2 1]),    whole([1 4], [1 3], :);
%!             get('s', cube(k), [1 2 1], [2 1 1], [2 1 1]),    whole([2 4], 3, 2)};
%!    for r = 1:rows (reads)
%!      expect_same (reads{r, 1}, reads{r, 2}, sprintf ('%s read %d', suffix, r));
%!    end
%!    one = sample_values (cls, [1 1], 100 + k);
%!    netcdflib (put1, nc, cube(k), [2 0 1], one);
%!    whole(3, 1, 2) = one;
%!    block = sample_values (cls, [2 3], 200 + k);
%!    put ('a', cube(k), [1 0 0], [2 3 1], block(:)');   # any shape of the right count
%!    whole(2:3, :, 1) = block;
%!    every = sample_values (cls, [2 2 2], 300 + k);
%!    put ('s', cube(k), [0 0 0], [2 2 2], [2 2 1], every);
%!    whole(1:2:3, 1:2:3, :) = every;
%!    expect_same (netcdflib (['getVar' suffix], nc, cube(k)), whole, [suffix ' after writes']);
%!    ## Records 0, 2 and 4: the unlimited dimension grows to 5.
%!    records = sample_values (cls, [4 3], 400 + k);
%!    put ('s', rec(k), [0 0], [4 3], [1 2], records);
%!    expect_same (get ('s', rec(k), [0 0], [4 3], [1 2]), records, [suffix ' records']);
%!    back = netcdflib (['getVar' suffix], nc, rec(k));
%!    expect_same ({size(back), class(back)}, {[4 5], cls}, [suffix ' grown']);
%!    expect_same (back(:, [1 3 5]), records, [suffix ' grown']);
%!  end
%!  [~, len] = netcdflib ('inqDim', nc, t);
%!  expect_same (len, 5);
%!  netcdflib ('close', nc);
%!endfunction

%!test
%! subset_roundtrip (fullfile (work, 'netcdf4.nc'), p ('NC_NETCDF4'), data_types ());
%!test
%! subset_roundtrip (fullfile (work, 'classic.nc'), p ('NC_CLOBBER'), data_types ('classic'));
%!test
%! subset_roundtrip (fullfile (work, '64bit.nc'), p ('NC_64BIT_OFFSET'), data_types ('classic'));

## Vlen data in the three forms; a Vlen record variable grows by subset writes.
%!test
%! nc = netcdflib ('create', fullfile (work, 'vlen.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 3);
%! t = netcdflib ('defDim', nc, 't', 0);
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! grid = netcdflib ('defVar', nc, 'grid', ints, [x t]);
%! t2 = netcdflib ('defDim', nc, 't2', 0);
%! strs = netcdflib ('defVar', nc, 'strs', netcdflib ('defVlen', nc, 'vstrs', p ('NC_STRING')), t2);
%! deep = netcdflib ('defVar', nc, 'deep', netcdflib ('defVlen', nc, 'vdeep', ints), x);
%! netcdflib ('endDef', nc);
%! block = {int32([1; 2]), int32(3); int32([]), int32([4; 5; 6]); int32(-7), int32([])};
%! netcdflib ('putVaraVlen', nc, grid, [0 1], [3 2], block);
%! expect_same (netcdflib ('getVarVlen', nc, grid), [repmat({int32([])}, 3, 1), block]);
%! expect_same (netcdflib ('getVar1Vlen', nc, grid, [1 2]), block(2, 2));
%! expect_same (netcdflib ('getVarsVlen', nc, grid, [0 1], [2 2], [2 1]), block([1 3], :));
%! netcdflib ('putVarsVlen', nc, grid, [0 4], [2 1], [2 1], {int32(8); int32([9; 10])});
%! expect_same (netcdflib ('getVaraVlen', nc, grid, [0 4], [3 1]), ...
%!              {int32(8); int32([]); int32([9; 10])});
%! netcdflib ('putVar1Vlen', nc, strs, 2, {{'a'; char([195 169])}});
%! expect_same (netcdflib ('getVarVlen', nc, strs), {{}; {}; {'a'; char([195 169])}});
%! netcdflib ('putVar1Vlen', nc, deep, 1, {{int32([1; 2]); {}}});
%! expect_same (netcdflib ('getVarsVlen', nc, deep, 0, 2, 1), {{}; {int32([1; 2]); int32([])}});
%! netcdflib ('close', nc);

## Shapes of subset reads: the counts reversed over at least two extents; zero counts stay.
%!test
%! nc = netcdflib ('create', fullfile (work, 'shapes.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 5);
%! y = netcdflib ('defDim', nc, 'y', 4);
%! line = netcdflib ('defVar', nc, 'line', p ('NC_DOUBLE'), x);
%! grid = netcdflib ('defVar', nc, 'grid', p ('NC_DOUBLE'), [x y]);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarDouble', nc, line, (1:5)');
%! netcdflib ('putVarDouble', nc, grid, reshape (1:20, 5, 4));
%! cases = {'getVaraDouble', line, {1, 3}, [2; 3; 4];
%!          'getVaraDouble', line, {5, 0}, zeros(0, 1);
%!          'getVar1Double', line, {4}, 5;
%!          'getVaraDouble', grid, {[0 0], [5 0]}, zeros(5, 0);
%!          'getVaraDouble', grid, {[0 0], [0 4]}, zeros(0, 4);
%!          'getVaraDouble', grid, {[1 1], [1 3]}, [7 12 17];
%!          'getVarsDouble', grid, {[4 0], [1 4], [1 1]}, [5 10 15 20]};
%! for k = 1:rows (cases)
%!   expect_same (netcdflib (cases{k, 1}, nc, cases{k, 2}, cases{k, 3}{:}), cases{k, 4}, ...
%!                sprintf ('case %d', k));
%! end
%! netcdflib ('close', nc);

## Strides: every n-th element from START; netCDF-C judges zero and negative strides.
%!test
%! nc = netcdflib ('create', fullfile (work, 'strides.nc'), 'NC_CLOBBER');
%! line = netcdflib ('defVar', nc, 'line', p ('NC_INT'), netcdflib ('defDim', nc, 'x', 10));
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarInt', nc, line, int32 (0:9));
%! cases = {{0, 5, 2}, int32([0; 2; 4; 6; 8]);  {1, 3, 3}, int32([1; 4; 7]);
%!          {9, 1, 100}, int32(9);  {int8(2), uint64(2), int64(7)}, int32([2; 9])};
%! for k = 1:rows (cases)
%!   expect_same (netcdflib ('getVarsInt', nc, line, cases{k, 1}{:}), cases{k, 2});
%! end
%! netcdflib ('putVarsInt', nc, line, 1, 3, 4, int32 ([-1 -2 -3]));
%! expect_same (netcdflib ('getVarInt', nc, line), int32 ([0 -1 2 3 4 -2 6 7 8 -3])');
%! for stride = {0, -1, int64(-1)}
%!   expect_error (call_failure ('getVarsInt', nc, line, 0, 2, stride{1}), lib, 'NC_ESTRIDE');
%!   expect_error (call_failure ('putVarsInt', nc, line, 0, 2, stride{1}, int32 ([1 2])), lib, ...
%!                 '''putVarsInt''', 'NC_ESTRIDE');
%! end
%! expect_error (call_failure ('getVarsInt', nc, line, 0, 1, uint64 (2)^63), ...
%!               'QUARNA:imagesci:validate:argumentOutOfBounds');
%! netcdflib ('close', nc);

## START, COUNT and STRIDE are checked, then the data's count; what lies outside the
## variable is netCDF-C's to refuse. Reads report START's length, writes the faulty one's.
%!test
%! nc = netcdflib ('create', fullfile (work, 'checks.nc'), p ('NC_NETCDF4'));
%! dims = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%! grid = netcdflib ('defVar', nc, 'grid', p ('NC_INT'), dims);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarInt', nc, grid, int32 ([1 2 3; 4 5 6]'));
%! id = 'QUARNA:imagesci:netcdf:';
%! length = [id 'badIndexArgumentLength'];
%! one = int32 (1);
%! cases = {
%!   {'getVaraInt', [0 0 0], [1 1]},          length, {'START', '''grid''', 'expected 2, found 3'};
%!   {'getVaraInt', [0 0], 1},                length, {'COUNT', '''grid''', 'expected 2, found 2'};
%!   {'getVarsInt', [0 0], [1 1], [1 1 1]},   length, {'STRIDE', 'expected 2, found 2'};
%!   {'putVar1Int', 0, one},                  length, {'START', 'expected 2, found 1'};
%!   {'putVaraInt', [0 0], [1 1 1], one},     length, {'COUNT', 'expected 2, found 3'};
%!   {'putVarsInt', [0 0], [1 1], 1, one},    length, {'STRIDE', 'expected 2, found 1'};
%!   {'putVar1Int', [0 0], int32([1 2])},     [id 'countNotEqualToData'], {'(1)', '(2)'};
%!   {'putVaraInt', [0 0], [3 2], int32(1:5)}, [id 'countNotEqualToData'], {'(6)', '(5)'};
%!   {'putVaraInt', [0 0], [3 2], int32([])}, [id 'emptyVariableData'], {};
%!   {'getVar1Int', []},                      [id 'argumentIsEmpty'], {'''START'''};
%!   {'getVaraInt', [0 0], zeros(1, 0)},      [id 'argumentIsEmpty'], {'''COUNT'''};
%!   {'getVar1Int', 'ab'},                    [id 'argumentHasBadDatatype'], {'''START'''};
%!   {'getVaraInt', [0 0], {1, 1}},           [id 'argumentHasBadDatatype'], {'''COUNT'''};
%!   {'getVar1Int', [NaN 0]},                 [id 'indexArgumentNotFinite'], {};
%!   {'getVaraInt', [0 0], [1 Inf]},          [id 'indexArgumentNotFinite'], {};
%!   {'getVar1Int', [-1 0]},                  'QUARNA:imagesci:validate:argumentOutOfBounds', {};
%!   {'getVaraInt', [0 0], int8([-1 1])},     'QUARNA:imagesci:validate:argumentOutOfBounds', {};
%!   {'getVar1Int', [3 0]},                   lib, {'''getVar1Int''', 'NC_EINVALCOORDS'};
%!   {'getVaraInt', [2 0], [2 1]},            lib, {'''getVaraInt''', 'NC_EEDGE'};
%!   {'putVar1Int', [0 2], one},              lib, {'''putVar1Int''', 'NC_EINVALCOORDS'};
%!   {'putVaraInt', [1 1], [3 1], int32([1 2 3])}, lib, {'''putVaraInt''', 'NC_EEDGE'};
%!   {'putVar1Int', [0 0], 1},                [id 'argumentHasBadDatatype'], {'''data'''};
%!   {'putVar1Uint64', [0 0], uint64(1)},     [id 'unrecognizedOperation'], {'''putVar1Uint64'''};
%! };
%! for k = 1:rows (cases)
%!   call = cases{k, 1};
%!   expect_error (call_failure (call{1}, nc, grid, call{2:end}), cases{k, 2}, cases{k, 3}{:});
%! end
%! expect_same (netcdflib ('getVarInt', nc, grid), int32 ([1 2 3; 4 5 6]'), 'nothing written');
%! ## Index values are truncated toward zero, whatever their class.
%! cases = {[1.7 1], 5;  [-0.5 1], 4;  [2.99 0.5], 3;  int8([1 1]), 5;  uint64([2 1]), 6;
%!          single([1.2 1.9]), 5};
%! for k = 1:rows (cases)
%!   expect_same (netcdflib ('getVar1Int', nc, grid, cases{k, 1}), int32 (cases{k, 2}));
%! end
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
