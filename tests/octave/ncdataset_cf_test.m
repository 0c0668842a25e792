## CF decoding and encoding of ncdataset against python3-netcdf4: the files it writes read
## here as it reads them, and what is written here reads there as intended.

%!shared work, formats
%! work = work_dir ();
%! formats = {'NETCDF4', 'NETCDF4_CLASSIC', 'NETCDF3_CLASSIC', 'NETCDF3_64BIT_OFFSET'};

%!function out = python (varargin)
%!  script = fullfile (fileparts (file_in_loadpath ('ncdataset_cf_test.m')), '..', ...
%!                     'interop', 'cf_reference.py');
%!  [status, out] = system (['/usr/bin/python3 "' script '"' sprintf(' "%s"', varargin{:})]);
%!  assert (status, 0, out);
%!endfunction

## python's decoded values by variable name: Octave class, mask, values (masked ones 0).
%!function r = decoded_by_python (file)
%!  r = struct ();
%!  classes = struct ('float64', 'double', 'float32', 'single');
%!  for line = strsplit (strtrim (python ('dump', file)), "\n")
%!    f = strsplit (line{1}, '|');
%!    cls = f{2};
%!    if (isfield (classes, cls))
%!      cls = classes.(cls);
%!    end
%!    r.(f{1}) = struct ('class', cls, 'mask', str2double (strsplit (f{3}, ' ')) == 1, ...
%!                       'values', str2double (strsplit (f{4}, ' ')));
%!  end
%!  r = orderfields (r);
%!endfunction

%!function expect_decoded (x, m, e, where)
%!  expect_same (class (x), e.class, [where ' class']);
%!  expect_same (m(:)', e.mask, [where ' mask']);
%!  expect_same (double (x(! m))', e.values(! e.mask), [where ' values']);
%!  if (isfloat (x))
%!    assert (all (isnan (x(m))), '%s: a missing element is not NaN', where);
%!  end
%!endfunction

## Files python3-netcdf4 writes (packed shorts in double and single, _Unsigned bytes, fill
## values beside missing_value lists, valid ranges and bounds) decode here as there, in
## every format; subsets decode as the same part of the whole.
%!test
%! for f = formats
%!   file = fullfile (work, ['py-' f{1} '.nc']);
%!   python ('write', file, f{1});
%!   ref = decoded_by_python (file);
%!   ds = ncdataset (file);
%!   names = fieldnames (ref);
%!   expect_same (sort (names), sort ({ds.Variables.Name}'), [f{1} ' variables']);
%!   for k = 1:numel (names)
%!     where = [f{1} ' ' names{k}];
%!     [x, m] = ds.read (names{k});
%!     expect_decoded (x, m, ref.(names{k}), where);
%!     expect_same (ds.read (names{k}), x, [where ' one output']);
%!     ## The stored values, untouched, and a subset of the decoded ones.
%!     [raw, none] = ds.read (names{k}, 'decode', false);
%!     assert (! any (none(:)), '%s: missing without decoding', where);
%!     assert (isinteger (raw) || ! isempty (strfind (names{k}, 'float')) ...
%!             || ! isempty (strfind (names{k}, 'valid_min')), '%s: raw class %s', where, class (raw));
%!     [part, pm] = ds.read (names{k}, [2 ones(1, ndims (x) - 1)](1:numel (size (x)) - isvector (x)), ...
%!                           [Inf ones(1, ndims (x) - 1)](1:numel (size (x)) - isvector (x)));
%!     expect_same (part, x(2:end, 1), [where ' subset']);
%!     expect_same (pm, m(2:end, 1), [where ' subset mask']);
%!   end
%!   ds.close ();
%! end

## Written here with CF attributes, read there: NaN becomes the fill value (or netCDF's
## default fill), values are packed rounding to nearest, _Unsigned bytes keep their bits.
%!test
%! for f = {'netcdf4', 'classic'}
%!   file = fullfile (work, ['oct-' f{1} '.nc']);
%!   ds = ncdataset (file, 'c', 'format', f{1});
%!   ds.defineDimension ('x', 6);
%!   ds.defineVariable ('packed', 'int16', {'x'}, 'FillValue', int16 (-999), ...
%!                      'Attributes', {'scale_factor', 0.01, 'add_offset', 20});
%!   ds.defineVariable ('packed32', 'int16', {'x'}, 'Attributes', ...
%!                      {'scale_factor', single(0.5), 'add_offset', single(1)});
%!   ds.defineVariable ('ubytes', 'int8', {'x'}, 'FillValue', int8 (-1), ...
%!                      'Attributes', {'_Unsigned', 'true'});
%!   ds.defineVariable ('floats', 'single', {'x'});
%!   values.packed = [20 NaN 20.004 20.006 -307.68 347.67];
%!   values.packed32 = single ([1 1.5 NaN -2 3.24 3.26]);
%!   values.ubytes = uint8 ([0 128 254 200 1 127]);
%!   values.floats = single ([NaN 1.5 -2 3e38 0 1]);
%!   for name = fieldnames (values)'
%!     ds.write (name{1}, values.(name{1}));
%!   end
%!   ds.close ();
%!   ref = decoded_by_python (file);
%!   expected = struct ('packed', [20 0 20 20.01 -307.68 347.67], ...
%!                      'packed32', single ([1 1.5 0 -2 3 3.5]), ...
%!                      'ubytes', uint8 ([0 128 254 200 1 127]), 'floats', single ([0 1.5 -2 3e38 0 1]));
%!   ds = ncdataset (file);
%!   for name = fieldnames (values)'
%!     e = ref.(name{1});
%!     where = [f{1} ' ' name{1}];
%!     expect_same (e.mask, isnan (double (values.(name{1}))), [where ' python mask']);
%!     want = double (expected.(name{1}));
%!     assert (max (abs (e.values - want)) <= 1e-12 * max (abs (want)), ...
%!             '%s: python read %s', where, mat2str (e.values));
%!     [x, m] = ds.read (name{1});
%!     expect_decoded (x, m, e, [where ' read here']);
%!   end
%!   expect_same (ds.read ('packed', 'Decode', false)', int16 ([0 -999 0 1 -32768 32767]), 'packed raw');
%!   expect_same (ds.read ('packed32', 'Decode', false)', ...
%!                int16 ([0 1 netcdflib('parameter', 'NC_FILL_SHORT') -6 4 5]), 'default fill');
%!   ds.close ();
%! end

## Packing refuses what the stored type cannot hold, naming the variable; nothing is written.
%!test
%! ds = ncdataset (fullfile (work, 'range.nc'), 'c');
%! ds.defineDimension ('x', 2);
%! ds.defineVariable ('p', 'int16', {'x'}, 'Attributes', {'scale_factor', 0.01, 'add_offset', 20});
%! ds.defineVariable ('u', 'int8', {'x'}, 'Attributes', {'_Unsigned', 'true'});
%! ds.defineVariable ('i', 'int32', {'x'});
%! ds.write ('p', [1 2]);
%! cases = {'p', [1 400], 'p'; 'p', [-328 0], 'p'; 'u', [256 0], 'u'; 'u', [-1 0], 'u';
%!          'i', [2^31 0], 'i'; 'i', [-2^31-1 0], 'i'};
%! for k = 1:rows (cases)
%!   try
%!     ds.write (cases{k, 1}, cases{k, 2});
%!     error ('writing %s to %s: no error', mat2str (cases{k, 2}), cases{k, 1});
%!   catch err
%!     assert (err.identifier, 'ncdataset:outOfRange', err.message);
%!     expect_error (err, 'ncdataset:outOfRange', ['"' cases{k, 3} '"']);
%!   end
%! end
%! assert (max (abs (ds.read ('p') - [1; 2])) < 1e-12);
%! ## Without encoding the values go to the file as they are.
%! ds.write ('p', [-5 32767], 'encode', false);
%! expect_same (ds.read ('p', 'Decode', false), int16 ([-5; 32767]), 'not encoded');
%! expect_same (ds.read ('p'), [19.95; 347.67], 'decoded');
%! try
%!   ds.write ('p', [-5 40000], 'encode', false);
%!   error ('no error for 40000 as int16');
%! catch err
%!   expect_error (err, 'ncdataset:outOfRange', '"p"');
%! end
%! ## Without a fill value of its own, NaN in an integer variable is the default fill.
%! ds.write ('i', [NaN 7]);
%! [x, m] = ds.read ('i');
%! expect_same ([x m], [netcdflib('parameter', 'NC_FILL_INT') 1; 7 0], 'NaN to int');
%! ds.close ();

## The decode kernel at the edges of its types: 64-bit fill values exactly, attributes of
## the signed twin taken bit for bit, bounds that exclude everything, NaN as missing in
## floating point, a result class kept or made single, the stored array left alone.
%!test
%! big = intmax ('int64') - 1;
%! ## stored, unsigned, missing, vmin, vmax, scale, offset, result, mask
%! cases = {
%!   [big; big - 1; 0], false, {big}, [], [], [], [], [big; big - 1; 0], [1; 0; 0];
%!   [intmax('uint64') - 1; 5], false, {intmax('uint64') - 1}, [], [], [], [], [intmax('uint64') - 1; 5], [1; 0];
%!   int16([-1; 1; -2]), true, {int16(-1)}, [], [], [], [], uint16([65535; 1; 65534]), [1; 0; 0];
%!   int32([-1; 7]), true, {}, [], int32(-2), [], [], uint32([2^32 - 1; 7]), [1; 0];
%!   int8([1; 2; 3]), false, {}, 2.5, 2.5, [], [], int8([1; 2; 3]), [1; 1; 1];
%!   int8([1; 2; 3]), false, {}, 1.5, 2.5, [], [], int8([1; 2; 3]), [1; 0; 1];
%!   int8([1; 2; 3]), false, {}, 300, [], [], [], int8([1; 2; 3]), [1; 1; 1];
%!   int8([1; 2; 3]), false, {int8(2), [1000 3.5]}, -300, [], [], [], int8([1; 2; 3]), [0; 1; 0];
%!   single([NaN; 1; 2]), false, {single(2)}, [], [], [], [], single([NaN; 1; NaN]), [1; 0; 1];
%!   [NaN; 0.1; 3], false, {0.1}, [], 2, [], [], [NaN; NaN; NaN], [1; 1; 1];
%!   int16([10; 20]), false, {int16(20)}, [], [], single(0.5), [], single([5; NaN]), [0; 1];
%!   int16([10; 20]), false, {}, [], [], single(0.5), 1, [6; 11], [0; 0];
%!   int8([-1; 2]), true, {}, [], [], [], single(1), single([256; 3]), [0; 0];
%!   [1; 2], false, {}, [], [], single(2), single(1), [3; 5], [0; 0];
%!   zeros(0, 3, 'int16'), false, {int16(0)}, [], [], 2, [], zeros(0, 3), false(0, 3)};
%! for k = 1:rows (cases)
%!   [x, m] = __ncdataset_decode__ (cases{k, 1:7});
%!   expect_same (x, cases{k, 8}, sprintf ('case %d', k));
%!   expect_same (m, logical (cases{k, 9}), sprintf ('case %d mask', k));
%!   expect_same (__ncdataset_decode__ (cases{k, 1:7}), x, sprintf ('case %d one output', k));
%! end
%! stored = int16 ([1 2; 3 4]);
%! x = __ncdataset_decode__ (stored, true, {int16(1)}, [], [], 2, 1);
%! expect_same (stored, int16 ([1 2; 3 4]), 'stored left alone');
%! expect_same (x, [NaN 5; 7 9], 'scaled 2-D');

