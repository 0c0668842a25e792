## CF decoding and encoding of ncdataset against python3-netcdf4: the files it writes read
## here as it reads them, and what is written here reads there as intended.

%!shared work
%! work = work_dir ();

## python3-netcdf4's decoded values by variable name: class, mask, values (masked ones 0) as
## columns; the values come as text since jsondecode may round the last digit.
%!function r = decoded_by_python (file)
%!  r = structfun (@(e) setfield (e, 'values', str2double (e.values)), ...
%!                 jsondecode (interop ('cf_reference.py', file)), 'UniformOutput', false);
%!endfunction

%!function expect_decoded (x, m, e, where)
%!  expect_same ({class(x), m(:), double(x(! m))}, {e.class, e.mask, e.values(! e.mask)}, where);
%!  assert (! isfloat (x) || all (isnan (x(m))), '%s: a missing element is not NaN', where);
%!endfunction

## Files of cf_sample.cdl (packed shorts in double and single, _Unsigned bytes, fill values
## beside missing_value lists, valid ranges and bounds), in every format ncgen writes,
## decode here as in python3-netcdf4; one output gives the same; subsets decode as the same
## part of the whole; without decoding nothing is missing.
%!test
%! for f = {'nc4', 'nc7', 'nc3', 'nc6'}   # netCDF-4, its classic model, classic, 64-bit offset
%!   file = fullfile (work, ['ncgen-' f{1} '.nc']);
%!   nctool ('ncgen', '-k', f{1}, '-o', file, file_in_loadpath ('cf_sample.cdl'));
%!   ref = decoded_by_python (file);
%!   ds = ncdataset (file);
%!   expect_same (sort (fieldnames (ref)), sort ({ds.Variables.Name}'), [f{1} ' variables']);
%!   for name = fieldnames (ref)'
%!     where = [f{1} ' ' name{1}];
%!     [x, m] = ds.read (name{1});
%!     expect_decoded (x, m, ref.(name{1}), where);
%!     [~, none] = ds.read (name{1}, 'decode', false);
%!     n = ndims (x) - isvector (x);
%!     [part, pm] = ds.read (name{1}, [2 1](1:n), [Inf 1](1:n));
%!     expect_same ({ds.read(name{1}), any(none(:)), part, pm}, ...
%!                  {x, false, x(2:end, 1), m(2:end, 1)}, where);
%!   end
%!   ds.close ();
%! end

## Written here with CF attributes, read there: NaN becomes the fill value (or netCDF's
## default fill), values are packed rounding to nearest, _Unsigned bytes keep their bits.
## Packing refuses what the stored type cannot hold, naming the variable, and writes
## nothing; without encoding the values go to the file as they are; without a fill value
## of its own, NaN in an integer variable is the default fill.
## Cases: name, written, python3-netcdf4's values (missing ones 0); bad: refused writes.
%!test
%! for f = {'netcdf4', 'classic'}
%!   file = fullfile (work, ['oct-' f{1} '.nc']);
%!   ds = ncdataset (file, 'c', 'format', f{1});
%!   ds.defineDimension ('x', 6);
%!   ds.defineVariable ('i', 'int32', {'x'});
%!   cases = {'packed', [20 NaN 20.004 20.006 -307.68 347.67], [20 0 20 20.01 -307.68 347.67], ...
%!     'int16', {'FillValue', int16(-999), 'Attributes', {'scale_factor', 0.01, 'add_offset', 20}};
%!     'packed32', single([1 1.5 NaN -2 3.24 3.26]), single([1 1.5 0 -2 3 3.5]), 'int16', ...
%!     {'Attributes', {'scale_factor', single(0.5), 'add_offset', single(1)}};
%!     'ubytes', uint8([0 128 254 200 1 127]), uint8([0 128 254 200 1 127]), 'int8', ...
%!     {'FillValue', int8(-1), 'Attributes', {'_Unsigned', 'true'}};
%!     'floats', single([NaN 1.5 -2 3e38 0 1]), single([0 1.5 -2 3e38 0 1]), 'single', {}};
%!   for k = 1:rows (cases)
%!     ds.defineVariable (cases{k, [1 4]}, {'x'}, cases{k, 5}{:});
%!     ds.write (cases{k, 1:2});
%!   end
%!   bad = {'packed', [1 400], {}; 'packed', [-328 0], {}; 'ubytes', [256 0], {};
%!          'ubytes', [-1 0], {}; 'i', [2^31 0], {}; 'i', [-2^31-1 0], {};
%!          'packed', [-5 40000], {'encode', false}};
%!   for k = 1:rows (bad)
%!     err = struct ('identifier', 'no error', 'message', mat2str (bad{k, 2}));
%!     try, ds.write (bad{k, 1:2}, bad{k, 3}{:}); catch err, end
%!     expect_error (err, 'ncdataset:outOfRange', ['"' bad{k, 1} '"']);
%!   end
%!   ds.close ();
%!   ref = decoded_by_python (file);
%!   ds = ncdataset (file, 'a');
%!   for k = 1:rows (cases)
%!     [name, written, want] = cases{k, 1:3};
%!     e = ref.(name);
%!     expect_same (e.mask, isnan (double (written(:))), [f{1} ' ' name ' python mask']);
%!     assert (max (abs (e.values - double (want(:)))) <= 1e-12 * max (abs (double (want))), ...
%!             '%s: python read %s', name, mat2str (e.values));
%!     [x, m] = ds.read (name);
%!     expect_decoded (x, m, e, [f{1} ' ' name ' read here']);
%!   end
%!   expect_same ({ds.read('packed', 'Decode', false)', ds.read('packed32', 'Decode', false)'}, ...
%!     {int16([0 -999 0 1 -32768 32767]), ...
%!      int16([0 1 netcdflib('parameter', 'NC_FILL_SHORT') -6 4 5])}, 'raw');
%!   ds.write ('packed', [-5 32767], 'encode', false);
%!   ds.write ('i', [NaN 7]);
%!   [x, m] = ds.read ('i', 1, 2);
%!   expect_same ({ds.read('packed', 1, 2, 'Decode', false), ds.read('packed', 1, 2), [x m]}, ...
%!     {int16([-5; 32767]), [19.95; 347.67], [netcdflib('parameter', 'NC_FILL_INT') 1; 7 0]}, ...
%!     'written');
%!   ds.close ();
%! end

## The decode kernel at the edges of its types: 64-bit fill values exactly, attributes of
## the signed twin taken bit for bit, bounds that exclude everything, NaN as missing in
## floating point, a result class kept or made single, the stored array left alone.
## Cases: stored, unsigned, missing, vmin, vmax, scale, offset, result, mask.
%!test
%! big = intmax ('int64') - 1;
%! cases = {
%!   [big; big - 1; 0], false, {big}, [], [], [], [], [big; big - 1; 0], [1; 0; 0];
%!   [intmax('uint64') - 1; 5], false, {intmax('uint64') - 1}, [], [], [], [], ...
%!     [intmax('uint64') - 1; 5], [1; 0];
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
%!   uint16([9; 3]), false, {uint16(9)}, [], [], single(0.5), [], single([NaN; 1.5]), [1; 0];
%!   int8([-56; 1]), true, {}, [], [], 0.5, [], [100; 0.5], [0; 0];
%!   int16([1 2; 3 4]), true, {int16(1)}, [], [], 2, 1, [NaN 5; 7 9], [1 0; 0 0];
%!   zeros(0, 3, 'int16'), false, {int16(0)}, [], [], 2, [], zeros(0, 3), false(0, 3)};
%! for k = 1:rows (cases)
%!   [x, m] = __ncdataset_decode__ (cases{k, 1:7});
%!   expect_same ({x, m, __ncdataset_decode__(cases{k, 1:7})}, ...
%!                {cases{k, 8}, logical(cases{k, 9}), x}, sprintf ('case %d', k));
%! end
