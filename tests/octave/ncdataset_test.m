## ncdataset: every method on files of every format, subsets against netcdflib, groups,
## lifetime, disp against ncdump -h, and its errors.

%!shared work, formats
%! work = work_dir ();
%! formats = {'netcdf4', 'netcdf4_classic', 'classic', '64bit_offset', '64bit_data'};

## The netCDF-4 file of tests/interop/header_sample.py, written by python3-netcdf4.
%!function sample_file (file)
%!  script = fullfile (fileparts (file_in_loadpath ('ncdataset_test.m')), '..', 'interop', ...
%!                     'header_sample.py');
%!  [status, out] = system (sprintf ('/usr/bin/python3 "%s" "%s"', script, file));
%!  assert (status, 0, out);
%!endfunction

## A file of each format through the interface alone: definitions (define mode entered and
## left without asking), attributes, whole writes, reads, and the properties that
## describe them; reopened read-only and for appending.
%!test
%! for f = formats
%!   fmt = f{1};
%!   file = fullfile (work, ['all-' fmt '.nc']);
%!   nc4 = strcmp (fmt, 'netcdf4');
%!   ds = ncdataset (file, 'C', 'FORMAT', fmt);
%!   expect_same (ds.Format, fmt, 'Format');
%!   expect_same (ds.Path, file, 'Path');
%!   ds.defineDimension ('x', 3);
%!   ds.defineDimension ('time', Inf);
%!   ds.setAttribute ('', 'title', 'all types');
%!   ds.setAttribute ('', 'version', int16 ([1 2]));
%!   if (nc4)
%!     ds.setAttribute ('', 'names', {'a', char([98 195 169])});
%!   end
%!   types = {'double', 'single', 'int32', 'int16', 'int8'};
%!   if (nc4)
%!     types = [types, {'uint8', 'uint16', 'uint32', 'int64', 'uint64'}];
%!   end
%!   opts = {};
%!   if (! isempty (strfind (fmt, 'netcdf4')))
%!     opts = {'Deflate', 5, 'Shuffle', true, 'Chunks', [3 2]};
%!   end
%!   for t = types
%!     ds.defineVariable (['v_' t{1}], t{1}, {'x', 'time'}, opts{:}, ...
%!                        'Attributes', {'units', 'm', 'kind', cast(7, t{1})});
%!   end
%!   ds.defineVariable ('label', 'char', {'x', 'time'}, 'FillValue', 'z');
%!   ds.defineVariable ('scalar', 'double', {});
%!   data = reshape (1:6, 3, 2);
%!   for t = types
%!     ds.write (['v_' t{1}], cast (data, t{1}));
%!   end
%!   ds.write ('label', ['abc'; 'def']');
%!   ds.write ('scalar', pi);
%!   ## Back in define mode after data were written.
%!   ds.setAttribute ('scalar', 'note', 'late');
%!   ds.defineVariable ('late', 'double', {'x'});
%!   ds.write ('late', [1; 2; 3]);
%!   ds.close ();
%!
%!   ds = ncdataset (file);
%!   for t = types
%!     expect_same (ds.read (['v_' t{1}]), cast (data, t{1}), [fmt ' ' t{1}]);
%!     expect_same (ds.attribute (['v_' t{1}], 'kind'), cast (7, t{1}), [fmt ' kind ' t{1}]);
%!   end
%!   expect_same (ds.read ('label'), ['abc'; 'def']', [fmt ' label']);
%!   expect_same (ds.read ('scalar'), pi, [fmt ' scalar']);
%!   expect_same (ds.attribute ('', 'title'), 'all types', [fmt ' title']);
%!   expect_same (ds.attribute ('scalar', 'note'), 'late', [fmt ' note']);
%!   dims = ds.Dimensions;
%!   expect_same ({dims.Name; dims.Length; dims.Unlimited}, {'x', 'time'; 3, 2; false, true}, ...
%!                [fmt ' Dimensions']);
%!   atts = ds.Attributes;
%!   expect_same ({atts(1:2).Name; atts(1:2).Value}, {'title', 'version'; 'all types', int16([1 2])}, ...
%!                [fmt ' Attributes']);
%!   if (nc4)
%!     expect_same (ds.attribute ('', 'names'), {'a', char([98 195 169])}, 'strings');
%!   end
%!   vars = ds.Variables;
%!   expect_same ({vars.Name}, [strcat('v_', types), {'label', 'scalar', 'late'}], [fmt ' names']);
%!   expect_same ({vars.Datatype}, [types, {'char', 'double', 'double'}], [fmt ' Datatype']);
%!   v = vars(1);
%!   expect_same (v.Dimensions, {'x', 'time'}, [fmt ' var Dimensions']);
%!   expect_same (v.Size, [3 2], [fmt ' Size']);
%!   expect_same ({v.Attributes.Name; v.Attributes.Value}, {'units', 'kind'; 'm', 7}, ...
%!                [fmt ' var Attributes']);
%!   expect_same (vars(end-2).FillValue, 'z', [fmt ' FillValue']);
%!   expect_same (vars(end-1).Size, zeros (1, 0), [fmt ' scalar Size']);
%!   if (! isempty (strfind (fmt, 'netcdf4')))
%!     expect_same ({v.ChunkSize, v.Deflate, v.Shuffle}, {[3 2], 5, true}, [fmt ' storage']);
%!   else
%!     expect_same ({v.ChunkSize, v.Deflate, v.Shuffle}, {[], 0, false}, [fmt ' storage']);
%!   end
%!   expect_same (ds.Groups, {}, [fmt ' Groups']);
%!   ds.close ();
%!
%!   ## Appending: a record past the end grows the unlimited dimension.
%!   ds = ncdataset (file, 'a');
%!   ds.write ('v_double', [7; 8; 9], [1 3]);
%!   expect_same (ds.read ('v_double'), [data, [7; 8; 9]], [fmt ' appended']);
%!   expect_same (ds.Dimensions(2).Length, 3, [fmt ' grown']);
%!   ds.close ();
%! end

## Subsets: START, COUNT (Inf to the end) and STRIDE in Octave's order read what netcdflib
## reads for the same 0-based subset, and what indexing the whole gives; writes put the
## block where indexing would.
%!test
%! for f = {'netcdf4', 'classic'}
%!   file = fullfile (work, ['subset-' f{1} '.nc']);
%!   ds = ncdataset (file, 'c', 'Format', f{1});
%!   cellfun (@(n, l) ds.defineDimension (n, l), {'a', 'b', 'c'}, {4, 5, 6});
%!   ds.defineVariable ('v', 'int32', {'a', 'b', 'c'});
%!   whole = int32 (reshape (1:120, 4, 5, 6));
%!   ds.write ('v', whole);
%!   ds.close ();
%!   ds = ncdataset (file, 'a');
%!   ## start, count, stride
%!   cases = {[1 1 1], [Inf Inf Inf], [];   [2 3 4], [Inf Inf Inf], [];  [4 5 6], [1 1 1], [];
%!            [1 2 3], [2 Inf 1], [];       [1 1 1], [Inf Inf Inf], [2 2 2];
%!            [2 1 6], [Inf 3 Inf], [2 2 5]; [1 5 1], [0 Inf 2], [1 1 3];
%!            [3 1 2], [1 Inf Inf], [1 4 4]};
%!   nc = netcdflib ('open', file, 'NC_NOWRITE');
%!   vid = netcdflib ('inqVarID', nc, 'v');
%!   for k = 1:rows (cases)
%!     [s, c, st] = cases{k, :};
%!     step = st;
%!     if (isempty (step))
%!       step = [1 1 1];
%!     end
%!     n = max (0, ceil (([4 5 6] - s + 1) ./ step));
%!     c(isinf (c)) = n(isinf (c));
%!     expected = whole(s(1):step(1):s(1)+(c(1)-1)*step(1), s(2):step(2):s(2)+(c(2)-1)*step(2), ...
%!                      s(3):step(3):s(3)+(c(3)-1)*step(3));
%!     args = {s, cases{k, 2}, st};
%!     got = ds.read ('v', args{1:2 + ! isempty (st)});
%!     where = sprintf ('%s case %d', f{1}, k);
%!     expect_same (got, expected, where);
%!     expect_same (got, netcdflib ('getVarsInt', nc, vid, s - 1, c, step), [where ' netcdflib']);
%!   end
%!   netcdflib ('close', nc);
%!   ## Writes by START and STRIDE.
%!   block = int32 (-reshape (1:8, 2, 2, 2));
%!   ds.write ('v', block, [2 1 3], [2 3 2]);
%!   whole(2:2:4, 1:3:4, 3:2:5) = block;
%!   ds.write ('v', int32 ([-100; -200]), [1 5 6]);
%!   whole(1:2, 5, 6) = [-100; -200];
%!   expect_same (ds.read ('v'), whole, [f{1} ' after writes']);
%!   ds.close ();
%! end

## Groups: defined and reached by name, each a dataset of the same open file; objects of
## a group keep the file open after the root's object is cleared, and closing any of them
## closes the file for all.
%!test
%! file = fullfile (work, 'groups.nc');
%! ds = ncdataset (file, 'c');
%! ds.defineDimension ('x', 2);
%! g = ds.defineGroup ('obs');
%! g.defineDimension ('y', 3);
%! g.defineVariable ('t', 'double', {'x', 'y'}, 'Attributes', {'units', 'K'});
%! inner = g.defineGroup ('inner');
%! inner.setAttribute ('', 'depth', 2);
%! g.write ('t', magic (3)(1:2, :));
%! expect_same (ds.Groups, {'obs'}, 'Groups');
%! expect_same (g.Groups, {'inner'}, 'inner Groups');
%! clear ds g
%! again = inner;
%! expect_same (again.attribute ('', 'depth'), 2, 'inner attribute');
%! again.close ();
%! try
%!   inner.attribute ('', 'depth');
%!   error ('a closed file answered');
%! catch err
%!   expect_error (err, 'ncdataset:closed');
%! end
%! ds = ncdataset (file);
%! obs = ds.group ('obs');
%! expect_same (obs.read ('t'), magic (3)(1:2, :), 'group data');
%! expect_same (obs.Variables.Dimensions, {'x', 'y'}, 'dimension of the parent');
%! expect_same (obs.group ('inner').Attributes, struct ('Name', 'depth', 'Value', 2), 'inner');
%! clear obs ds
%! ## The last handle gone, the file is closed: creating over it works again.
%! ds = ncdataset (file, 'c', 'Format', 'classic');
%! ds.close ();
%! ds.close ();

## disp prints what ncdump -h prints: files of python3-netcdf4 (attributes of every
## type, escapes, NaN and infinities, strings, nested groups) and of this interface.
%!test
%! file = fullfile (work, 'dump.nc');
%! sample_file (file);
%! ds = ncdataset (file);
%! expect_same (evalc ('disp (ds)'), ncdump ('-h', file), 'python file');
%! shown = evalc ('ds');
%! assert (! isempty (strfind (shown, ncdump ('-h', file))), 'no semicolon: %s', shown);
%! ds.close ();
%! ## The file of the first test, in every format.
%! for f = formats
%!   file = fullfile (work, ['all-' f{1} '.nc']);
%!   ds = ncdataset (file);
%!   expect_same (evalc ('disp (ds)'), ncdump ('-h', file), f{1});
%! end

## Every failure is an error in the interface's namespace naming what failed; netcdflib's
## identifier follows where it raised the failure.
%!test
%! file = fullfile (work, 'errors.nc');
%! ds = ncdataset (file, 'c', 'Format', 'classic');
%! ds.defineDimension ('x', 2);
%! ds.defineVariable ('v', 'double', {'x'}, 'Attributes', {'units', 'm'});
%! ds.write ('v', [1 2]);
%! lib = 'ncdataset:QUARNA:imagesci:netcdf:libraryFailure';
%! ro = ncdataset (fullfile (work, 'all-classic.nc'));
%! cases = {
%!   @() ncdataset (), 'ncdataset:badArgument', {'file name'};
%!   @() ncdataset (fullfile (work, 'missing.nc')), lib, {'missing.nc'};
%!   @() ncdataset (file, 'w'), 'ncdataset:badArgument', {'MODE'};
%!   @() ncdataset (fullfile (work, 'x.nc'), 'c', 'Format', 'cdf9'), 'ncdataset:badArgument', {'cdf9'};
%!   @() ncdataset (fullfile (work, 'x.nc'), 'c', 'Bogus', 1), 'ncdataset:badArgument', {'Bogus'};
%!   @() ds.read ('nope'), lib, {'"nope"', 'NC_ENOTVAR'};
%!   @() ds.read ('v', [1 1], [1 1]), 'ncdataset:badArgument', {'START', '"v"'};
%!   @() ds.read ('v', 0), 'ncdataset:badArgument', {'START'};
%!   @() ds.read ('v', 1, -1), 'ncdataset:badArgument', {'COUNT'};
%!   @() ds.read ('v', 1, 1, 0), 'ncdataset:badArgument', {'STRIDE'};
%!   @() ds.read ('v', 3, 1), lib, {'"v"', 'NC_EINVALCOORDS'};
%!   @() ds.read ('v', 'Decode'), 'ncdataset:badArgument', {'pairs'};
%!   @() ds.read ('v', 'Scale', 1), 'ncdataset:badArgument', {'Scale'};
%!   @() ds.write ('v', 'ab'), 'ncdataset:badType', {'"v"'};
%!   @() ds.write ('v', [1 2 3]), 'ncdataset:QUARNA:imagesci:netcdf:', {'"v"'};
%!   @() ds.write ('v', ones (2, 2)), 'ncdataset:badArgument', {'"v"'};
%!   @() ds.attribute ('v', 'nope'), lib, {'"nope"', 'NC_ENOTATT'};
%!   @() ds.attribute ('nope', 'units'), lib, {'"nope"'};
%!   @() ds.setAttribute ('v', 'flag', true), 'ncdataset:badType', {'"flag"', 'logical'};
%!   @() ds.setAttribute ('v', 'big', uint8 (1)), lib, {'"big"'};
%!   @() ds.defineDimension ('y', -1), 'ncdataset:badArgument', {'"y"'};
%!   @() ds.defineDimension ('x', 3), lib, {'"x"', 'NC_ENAMEINUSE'};
%!   @() ds.defineVariable ('w', 'float32', {'x'}), 'ncdataset:badType', {'float32', '"w"'};
%!   @() ds.defineVariable ('w', 'double', {'nodim'}), lib, {'"nodim"', '"w"'};
%!   @() ds.defineVariable ('w', 'double', {'x'}, 'Attributes', {'a'}), 'ncdataset:badArgument', {'"w"'};
%!   @() ds.defineGroup ('g'), lib, {'"g"'};
%!   @() ds.group ('g'), 'ncdataset:noGroup', {'"g"'};
%!   @() ncdataset (fullfile (work, 'all-netcdf4.nc')).group ('g'), lib, {'"g"', 'NC_ENOGRP'};
%!   @() ro.write ('v_double', ones (3, 1)), lib, {'"v_double"', 'NC_EPERM'};
%!   @() ro.setAttribute ('', 'a', 1), lib, {'NC_EPERM'}};
%! for k = 1:rows (cases)
%!   try
%!     cases{k, 1} ();
%!     error ('case %d (%s): no error', k, func2str (cases{k, 1}));
%!   catch err
%!     if (! strncmp (err.identifier, cases{k, 2}, numel (cases{k, 2})))
%!       error ('case %d (%s): %s: %s', k, func2str (cases{k, 1}), err.identifier, err.message);
%!     end
%!     expect_error (err, err.identifier, cases{k, 3}{:});
%!   end
%! end
%! ds.close ();
%! ro.close ();
%! try
%!   ds.read ('v');
%!   error ('a closed file answered');
%! catch err
%!   expect_error (err, 'ncdataset:closed', 'errors.nc');
%! end

## A URL netCDF-C opens (NCZarr in a directory): created, written, read and shown as
## ncdump shows it.
%!test
%! url = ['file://' fullfile(work, 'store.zarr') '#mode=nczarr,file'];
%! ds = ncdataset (url, 'c');
%! ds.defineDimension ('x', 3);
%! ds.defineVariable ('v', 'int16', {'x'}, 'Attributes', {'scale_factor', 0.5});
%! ds.write ('v', [1 2 NaN]);
%! ds.close ();
%! ds = ncdataset (url);
%! [x, m] = ds.read ('v');
%! expect_same ({x, m}, {[1; 2; NaN], [false; false; true]}, 'zarr');
%! expect_same (evalc ('disp (ds)'), ncdump ('-h', url), 'zarr header');
%! ds.close ();

## Variables of user-defined types: their Datatype names the type; vlen data read as cells.
%!test
%! file = fullfile (work, 'user.nc');
%! sample_file (file);
%! nc = netcdflib ('open', file, 'NC_WRITE');
%! netcdflib ('putVarVlen', nc, netcdflib ('inqVarID', nc, 'r'), {int32([1; 2]); int32([]); int32(3)});
%! netcdflib ('close', nc);
%! ds = ncdataset (file);
%! v = ds.Variables;
%! types = containers.Map ({v.Name}, {v.Datatype});
%! expect_same ({types('r'), types('e'), types('c'), types('str'), types('ch')}, ...
%!              {'vlen:ragged', 'enum:color', 'compound:pair', 'string', 'char'}, 'Datatype');
%! expect_same (ds.read ('r'), {int32([1; 2]); int32([]); int32(3)}, 'vlen');
%! expect_same (ds.read ('r', 2, Inf), {int32([]); int32(3)}, 'vlen subset');
%! ds.close ();
%! ## Variables of the file's user-defined types are defined by Datatype.
%! ds = ncdataset (file, 'a');
%! ds.defineVariable ('r2', 'vlen:ragged', {ds.Variables(strcmp ({ds.Variables.Name}, 'r')).Dimensions{1}});
%! ds.write ('r2', {int32(7); int32([8; 9]); int32([])});
%! expect_same (ds.read ('r2'), {int32(7); int32([8; 9]); int32([])}, 'vlen defined by name');
%! expect_same (ds.Variables(end).Datatype, 'vlen:ragged', 'Datatype of a defined variable');
%! try
%!   ds.defineVariable ('z', 'enum:nothing', {});
%!   error ('no error');
%! catch err
%!   expect_error (err, 'ncdataset:badType', 'enum:nothing');
%! end
%! ds.close ();

## Enum, opaque and compound variables and attributes read in their own form, whole and
## by subset, as netcdflib's untyped rows give them, not decoded; the same forms written.
%!test
%! file = fullfile (work, 'own.nc');
%! ncgen_file (file, ["netcdf own {\ntypes:\n  short enum level_t {low = 1, mid = 5, high = 9} ;\n" ...
%!   "  opaque(3) tag_t ;\n  compound pt_t {\n    double t ;\n    short s(2) ;\n  } ;\n" ...
%!   "dimensions:\n  n = 4 ;\nvariables:\n  level_t lev(n) ;\n    level_t lev:worst = high ;\n" ...
%!   "  tag_t tag(n) ;\n  pt_t pt(n) ;\n  level_t :levels = low, high ;\ndata:\n" ...
%!   " lev = low, mid, high, mid ;\n tag = 0X010203, 0X040506, 0X070809, 0X0A0B0C ;\n" ...
%!   " pt = {1.5, {1, 2}}, {2.5, {3, 4}}, {3.5, {5, 6}}, {4.5, {7, 8}} ;\n}\n"]);
%! same = @(x, y, where) expect_same ([fieldnames(x); struct2cell(x)], ...
%!                                    [fieldnames(y); struct2cell(y)], where);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! id = @(name) netcdflib ('inqVarID', nc, name);
%! lev = netcdflib ('getVar', nc, id ('lev'));
%! tag = netcdflib ('getVar', nc, id ('tag'));
%! pt = netcdflib ('getVar', nc, id ('pt'));
%! pt23 = netcdflib ('getVara', nc, id ('pt'), 1, 2);
%! worst = netcdflib ('getAtt', nc, id ('lev'), 'worst');
%! levels = netcdflib ('getAtt', nc, netcdflib ('parameter', 'NC_GLOBAL'), 'levels');
%! netcdflib ('close', nc);
%! expect_same ({lev, worst, levels, pt.t}, {int16([1; 5; 9; 5]), int16(9), int16([1 9]), ...
%!              [1.5; 2.5; 3.5; 4.5]}, 'netcdflib');
%! ds = ncdataset (file, 'a');
%! v = ds.Variables;
%! expect_same ({v.Datatype}, {'enum:level_t', 'opaque:tag_t', 'compound:pt_t'}, 'Datatype');
%! expect_same ({v(1).Attributes.Value, ds.Attributes.Value}, {worst, levels}, 'Attributes');
%! expect_same (ds.attribute ('lev', 'worst'), worst, 'attribute');
%! [x, m] = ds.read ('lev');
%! expect_same ({x, m}, {lev, false(4, 1)}, 'enum');
%! [x, m] = ds.read ('tag', 2, 3);
%! expect_same ({x, m}, {tag(:, 2:4), false(3, 1)}, 'opaque subset');
%! [x, m] = ds.read ('pt');
%! same (x, pt, 'compound');
%! expect_same (m, false (4, 1), 'compound missing');
%! same (ds.read ('pt', 2, 2), pt23, 'compound subset');
%! ds.write ('pt', struct ('t', [8; 9], 's', int16 ([10 11; 12 13])), 3);
%! ds.write ('tag', uint8 ([7; 7; 7]), 1);
%! ds.write ('lev', int16 (1), 4);
%! pt.t(3:4) = [8; 9];
%! pt.s(:, 3:4) = [10 11; 12 13];
%! same (ds.read ('pt'), pt, 'compound written');
%! tag(:, 1) = 7;
%! lev(4) = 1;
%! expect_same ({ds.read('tag'), ds.read('lev')}, {tag, lev}, 'opaque and enum written');
%! ds.close ();

## A read straight after the definitions of a classic file leaves define mode itself;
## elements never written hold the default fill and read as missing.
%!test
%! ds = ncdataset (fullfile (work, 'fresh.nc'), 'c', 'Format', 'classic');
%! ds.defineDimension ('x', 2);
%! ds.defineVariable ('v', 'single', {'x'});
%! [x, m] = ds.read ('v');
%! expect_same ([x, m], single ([NaN 1; NaN 1]), 'unwritten');
%! ds.defineVariable ('w', 'int16', {'x'});
%! ds.write ('w', int16 (3), 2);
%! [x, m] = ds.read ('w');
%! expect_same ({x, m}, {int16([-32767; 3]), [true; false]}, 'second element');
%! ds.close ();

## help shows the class and each method.
%!test
%! assert (! isempty (strfind (evalc ('help ncdataset'), 'CF decoding')));
%! for m = {'read', 'write', 'attribute', 'setAttribute', 'defineDimension', ...
%!          'defineVariable', 'defineGroup', 'group', 'disp', 'close'}
%!   text = evalc (['help ncdataset.' m{1}]);
%!   assert (! isempty (strfind (text, [m{1} ' ('])), 'help of %s: %s', m{1}, text);
%! end

