## ncdataset: every method on files of every format, subsets against indexing, groups,
## lifetime, disp against ncdump -h, user-defined types, and its errors.

%!shared work
%! work = work_dir ();

## A file of each format through the interface alone (define mode entered and left without
## asking, also after data were written), read back with the properties that describe it,
## shown as ncdump -h shows it, and reopened for appending: a record past the end grows
## the unlimited dimension.
%!test
%! for f = {'netcdf4', 'netcdf4_classic', 'classic', '64bit_offset', '64bit_data'}
%!   fmt = f{1};
%!   file = fullfile (work, ['all-' fmt '.nc']);
%!   nc4 = strcmp (fmt, 'netcdf4');
%!   chunked = strncmp (fmt, 'netcdf4', 7);
%!   types = {'double', 'single', 'int32', 'int16', 'int8', 'uint8', 'uint16', 'uint32', ...
%!            'int64', 'uint64'}(1:5 + 5 * nc4);
%!   opts = {'Deflate', 5, 'Shuffle', true, 'Chunks', [3 2]}(1:6 * chunked);
%!   names = {'a', char([98 195 169])};
%!   ds = ncdataset (file, 'C', 'FORMAT', fmt);
%!   cellfun (@(n, l) ds.defineDimension (n, l), {'x', 'time'}, {3, Inf});
%!   globals = {'title', 'version', 'names'; 'all types', int16([1 2]), names}(:, 1:2 + nc4);
%!   cellfun (@(n, v) ds.setAttribute ('', n, v), globals(1, :), globals(2, :));
%!   for t = types
%!     ds.defineVariable (['v_' t{1}], t{1}, {'x', 'time'}, opts{:}, ...
%!                        'Attributes', {'units', 'm', 'kind', cast(7, t{1})});
%!     ds.write (['v_' t{1}], cast (reshape (1:6, 3, 2), t{1}));
%!   end
%!   ds.defineVariable ('label', 'char', {'x', 'time'}, 'FillValue', 'z');
%!   ds.defineVariable ('scalar', 'double', {});
%!   ds.write ('label', ['abc'; 'def']');
%!   ds.write ('scalar', pi);
%!   ds.setAttribute ('scalar', 'note', 'late');
%!   ds.close ();
%!   ds = ncdataset (file);
%!   for t = types
%!     expect_same ({ds.read(['v_' t{1}]), ds.attribute(['v_' t{1}], 'kind')}, ...
%!                  {cast(reshape (1:6, 3, 2), t{1}), cast(7, t{1})}, [fmt ' ' t{1}]);
%!   end
%!   [vars, dims, atts] = deal (ds.Variables, ds.Dimensions, ds.Attributes);
%!   v = vars(1);
%!   expect_same ({ds.Format, ds.Path, ds.read('label'), ds.read('scalar'), ...
%!     ds.attribute('scalar', 'note'), {dims.Name; dims.Length; dims.Unlimited}, ...
%!     {atts.Name; atts.Value}, {vars.Name}, {vars.Datatype}, v.Dimensions, v.Size, ...
%!     {v.Attributes.Name; v.Attributes.Value}, vars(end-1).FillValue, vars(end).Size, ...
%!     {v.ChunkSize, v.Deflate, v.Shuffle}, ds.Groups}, ...
%!    {fmt, file, ['abc'; 'def']', pi, 'late', {'x', 'time'; 3, 2; false, true}, ...
%!     globals, ...
%!     [strcat('v_', types), {'label', 'scalar'}], [types, {'char', 'double'}], {'x', 'time'}, ...
%!     [3 2], {'units', 'kind'; 'm', 7}, 'z', zeros(1, 0), ...
%!     {{[], 0, false}, {[3 2], 5, true}}{1 + chunked}, {}}, fmt);
%!   expect_same (evalc ('disp (ds)'), ncdump ('-h', file), [fmt ' disp']);
%!   ds.close ();
%!   ds = ncdataset (file, 'a');
%!   ds.write ('v_double', [7; 8; 9], [1 3]);
%!   expect_same ({ds.read('v_double'), ds.Dimensions(2).Length}, ...
%!                {[reshape(1:6, 3, 2), [7; 8; 9]], 3}, [fmt ' appended']);
%!   ds.close ();
%! end

## Subsets: START, COUNT (Inf to the end) and STRIDE in Octave's order read what indexing
## the whole gives; writes put the block where indexing would.
%!test
%! ds = ncdataset (fullfile (work, 'subset.nc'), 'c');
%! cellfun (@(n, l) ds.defineDimension (n, l), {'a', 'b', 'c'}, {4, 5, 6});
%! ds.defineVariable ('v', 'int32', {'a', 'b', 'c'});
%! whole = int32 (reshape (1:120, 4, 5, 6));
%! ds.write ('v', whole);
%! cases = {{[2 3 4], [Inf Inf Inf]}, {2:4, 3:5, 4:6};  {[1 2 3], [2 Inf 1]}, {1:2, 2:5, 3};
%!   {[2 1 6], [Inf 3 Inf], [2 2 5]}, {[2 4], 1:2:5, 6};
%!   {[1 5 1], [0 Inf 2], [1 1 3]}, {[], 5, [1 4]};
%!   {[3 1 2], [1 Inf Inf], [1 4 4]}, {3, [1 5], [2 6]}};
%! for k = 1:rows (cases)
%!   expect_same (ds.read ('v', cases{k, 1}{:}), whole(cases{k, 2}{:}), sprintf ('case %d', k));
%! end
%! ds.write ('v', int32 (-reshape (1:8, 2, 2, 2)), [2 1 3], [2 3 2]);
%! whole(2:2:4, 1:3:4, 3:2:5) = -reshape (1:8, 2, 2, 2);
%! ds.write ('v', int32 ([-100; -200]), [1 5 6]);
%! whole(1:2, 5, 6) = [-100; -200];
%! expect_same (ds.read ('v'), whole, 'after writes');
%! ds.close ();

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
%! expect_same ({ds.Groups, g.Groups}, {{'obs'}, {'inner'}}, 'Groups');
%! clear ds g
%! expect_same (inner.attribute ('', 'depth'), 2, 'inner attribute');
%! inner.close ();
%! expect_error (failure (@() inner.attribute ('', 'depth')), 'ncdataset:closed');
%! obs = ncdataset (file).group ('obs');
%! expect_same ({obs.read('t'), obs.Variables.Dimensions, obs.group('inner').Attributes}, ...
%!              {magic(3)(1:2, :), {'x', 'y'}, struct('Name', 'depth', 'Value', 2)}, 'reopened');

## A file ncgen writes from header_sample.cdl (attributes of every type, escapes, NaN and
## infinities, strings, nested and empty groups, user-defined types): disp prints what
## ncdump -h prints, also without a semicolon; Datatype names user-defined types; enum,
## opaque, compound and vlen data and attributes are read and written in netcdflib's own
## form (not decoded, nothing missing), whole and by subset; variables of the file's types
## are defined by Datatype.
%!test
%! file = fullfile (work, 'sample.nc');
%! nctool ('ncgen', '-k', 'nc4', '-o', file, file_in_loadpath ('header_sample.cdl'));
%! ds = ncdataset (file);
%! expect_same (evalc ('disp (ds)'), ncdump ('-h', file), 'ncgen file');
%! assert (! isempty (strfind (evalc ('ds'), ncdump ('-h', file))), 'no semicolon');
%! ds.close ();
%! nc = netcdflib ('open', file, 'NC_WRITE');
%! [~, color] = netcdflib ('inqVar', nc, netcdflib ('inqVarID', nc, 'e'));
%! netcdflib ('putAtt', nc, -1, 'levels', color, int8 ([-1 1]));
%! tag = netcdflib ('defVar', nc, 'tag', netcdflib ('defOpaque', nc, 'tag_t', 3), 0);
%! netcdflib ('putVar', nc, tag, uint8 (reshape (1:9, 3, 3)));
%! netcdflib ('close', nc);
%! ds = ncdataset (file, 'a');
%! ragged = {int32([1; 2]); int32([]); int32(3)};
%! ds.write ('r', ragged);
%! ds.write ('c', struct ('a', single (9), 'b', int16 ([1 2; 3 4; 5 6])), 3);
%! v = ds.Variables;
%! types = containers.Map ({v.Name}, {v.Datatype});
%! [e, me] = ds.read ('e', 2);
%! [c, mc] = ds.read ('c', 2);
%! [o, mo] = ds.read ('tag', 2, 2);
%! expect_same ({types('r'), types('e'), types('c'), types('tag'), types('str'), types('ch'), ...
%!   ds.read('r'), ds.read('r', 2, Inf), e, me, c.a, c.b, mc, o, mo, ds.attribute('', 'levels')}, ...
%!   {'vlen:ragged', 'enum:color', 'compound:pair', 'opaque:tag_t', 'string', 'char', ragged, ...
%!   ragged(2:3), int8([1; -1]), false(2, 1), single([1.5; 9]), ...
%!   int16(cat (3, reshape (6:11, 3, 2), [1 2; 3 4; 5 6])), false(2, 1), ...
%!   uint8(reshape (4:9, 3, 2)), false(2, 1), int8([-1 1])}, 'Datatype');
%! ds.defineVariable ('r2', 'vlen:ragged', {'x'});
%! ds.write ('r2', ragged([3 1 2]));
%! expect_same ({ds.read('r2'), ds.Variables(end).Datatype}, {ragged([3 1 2]), 'vlen:ragged'}, ...
%!              'defined');
%! expect_error (failure (@() ds.defineVariable ('z', 'enum:nothing', {})), ...
%!               'ncdataset:badType', 'enum:nothing');
%! ds.close ();

## A read straight after the definitions of a classic file leaves define mode itself;
## elements never written hold the default fill and read as missing. Every failure is an
## error in the interface's namespace naming what failed; netcdflib's identifier follows
## where it raised the failure; closing twice does nothing, and a closed dataset refuses
## reads. Cases: call, identifier prefix, texts.
%!test
%! file = fullfile (work, 'errors.nc');
%! ds = ncdataset (file, 'c', 'Format', 'classic');
%! ds.defineDimension ('x', 2);
%! ds.defineVariable ('v', 'double', {'x'}, 'Attributes', {'units', 'm'});
%! [x, m] = ds.read ('v');
%! ds.write ('v', [1 2]);
%! ds.defineVariable ('u', 'int16', {'x'});
%! ds.write ('u', int16 (3), 2);
%! [y, n] = ds.read ('u');
%! expect_same ({x, m, y, n}, {[NaN; NaN], [true; true], int16([-32767; 3]), [true; false]}, ...
%!              'unwritten');
%! [lib, bad] = deal ('ncdataset:QUARNA:imagesci:netcdf:libraryFailure', 'ncdataset:badArgument');
%! ro = ncdataset (fullfile (work, 'all-classic.nc'));
%! cases = {
%!   @() ncdataset (), bad, {'file name'};
%!   @() ncdataset (fullfile (work, 'missing.nc')), lib, {'missing.nc'};
%!   @() ncdataset (file, 'w'), bad, {'MODE'};
%!   @() ncdataset (fullfile (work, 'x.nc'), 'c', 'Format', 'cdf9'), bad, {'cdf9'};
%!   @() ncdataset (fullfile (work, 'x.nc'), 'c', 'Bogus', 1), bad, {'Bogus'};
%!   @() ds.read ('nope'), lib, {'"nope"', 'NC_ENOTVAR'};
%!   @() ds.read ('v', [1 1], [1 1]), bad, {'START', '"v"'};
%!   @() ds.read ('v', 0), bad, {'START'};
%!   @() ds.read ('v', 1, -1), bad, {'COUNT'};
%!   @() ds.read ('v', 3, 1), lib, {'"v"', 'NC_EINVALCOORDS'};
%!   @() ds.read ('v', 'Decode'), bad, {'pairs'};
%!   @() ds.read ('v', 'Scale', 1), bad, {'Scale'};
%!   @() ds.write ('v', 'ab'), 'ncdataset:badType', {'"v"'};
%!   @() ds.write ('v', [1 2 3]), 'ncdataset:QUARNA:imagesci:netcdf:', {'"v"'};
%!   @() ds.write ('v', ones (2, 2)), bad, {'"v"'};
%!   @() ds.attribute ('v', 'nope'), lib, {'"nope"', 'NC_ENOTATT'};
%!   @() ds.setAttribute ('v', 'flag', true), 'ncdataset:badType', {'"flag"', 'logical'};
%!   @() ds.setAttribute ('v', 'big', uint8 (1)), lib, {'"big"'};
%!   @() ds.defineDimension ('y', -1), bad, {'"y"'};
%!   @() ds.defineVariable ('w', 'float32', {'x'}), 'ncdataset:badType', {'float32', '"w"'};
%!   @() ds.defineVariable ('w', 'double', {'nodim'}), lib, {'"nodim"', '"w"'};
%!   @() ds.defineVariable ('w', 'double', {'x'}, 'Attributes', {'a'}), bad, {'"w"'};
%!   @() ds.defineGroup ('g'), lib, {'"g"'};
%!   @() ds.group ('g'), 'ncdataset:noGroup', {'"g"'};
%!   @() ncdataset (fullfile (work, 'all-netcdf4.nc')).group ('g'), lib, {'"g"', 'NC_ENOGRP'};
%!   @() ro.write ('v_double', ones (3, 1)), lib, {'"v_double"', 'NC_EPERM'}};
%! for k = 1:rows (cases)
%!   err = failure (cases{k, 1});
%!   assert (startsWith (err.identifier, cases{k, 2}), '%d: %s', k, err.identifier);
%!   expect_error (err, err.identifier, cases{k, 3}{:});
%! end
%! ds.close ();
%! ds.close ();
%! ro.close ();
%! expect_error (failure (@() ds.read ('v')), 'ncdataset:closed', 'errors.nc');
