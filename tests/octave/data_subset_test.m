## Subset reads and writes from Octave (the "1", "a" and "s" forms): every type on netCDF-4
## files and the classic types on classic files, against Octave's own indexing; shapes,
## strides and growth along unlimited dimensions.

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

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

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
