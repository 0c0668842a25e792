## Enum, compound and opaque types from Octave: definitions and inquiries, data in its own
## type through "getVar"/"putVar" (whole and subsets) and "getAtt"/"putAtt", against ncgen,
## ncdump and python3-netcdf4, and the refusals of wrong data.
## obs: three records of a compound with scalar, array, char-array, nested, string and vlen
## fields, in the form "getVar" returns them; obs_cdl: the same data as ncgen's input.

%!shared work, p, obs, obs_cdl
%! work = work_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! obs = struct ('t', [1.5; 2.5; 3.5], 'v', single ([-1; 0; 1e30]), 'q', int32 ([3; -4; 5]), ...
%!   's', int16 (reshape (1:12, 4, 3)), 'name', char ([97 98 0; 99 0 0; 102 0 0]'), ...
%!   'in', struct ('a', int32 ([7; 17; 27]), 'b', int16 ([8 18 28; 9 19 29])), ...
%!   'lab', {{'x'; 'yy'; char(zeros(1, 0))}}, 'r', {{int32([1; 2]); int32(3); int32([])}});
%! obs_cdl = ["netcdf same {\ntypes:\n  byte enum cloud_t {Clear = 0, Cumulonimbus = 1, " ...
%!   "Stratus = 2} ;\n  opaque(5) blob_t ;\n  int(*) ints_t ;\n" ...
%!   "  compound inner_t {\n    int a ;\n    short b(2) ;\n  }; // inner_t\n" ...
%!   "  compound obs_t {\n    double t ;\n    float v ;\n    int q ;\n    short s(4) ;\n" ...
%!   "    char name(3) ;\n    inner_t in ;\n    string lab ;\n    ints_t r ;\n  }; // obs_t\n" ...
%!   "dimensions:\n  n = 3 ;\nvariables:\n  cloud_t c(n) ;\n  blob_t b(n) ;\n  obs_t o(n) ;\n" ...
%!   "data:\n\n c = Clear, Stratus, Cumulonimbus ;\n\n" ...
%!   " b = 0X0102030405, 0X0A0B0C0D0E, 0XFFFFFFFF00 ;\n\n" ...
%!   " o = {1.5, -1, 3, {1, 2, 3, 4}, {\"ab\"}, {7, {8, 9}}, \"x\", {1, 2}}, \n" ...
%!   "    {2.5, 0, -4, {5, 6, 7, 8}, {\"c\"}, {17, {18, 19}}, \"yy\", {3}}, \n" ...
%!   "    {3.5, 1e+30, 5, {9, 10, 11, 12}, {\"f\"}, {27, {28, 29}}, \"\", {}} ;\n}\n"];

## Defines obs_t and its parts in NC, laid out as a C compiler would, and returns its id.
%!function [obs_t, ints_t] = define_obs (nc)
%!  p = @(name) netcdflib ('parameter', name);
%!  ints_t = netcdflib ('defVlen', nc, 'ints_t', p ('NC_INT'));
%!  inner_t = netcdflib ('defCompound', nc, 'inner_t', 8);
%!  netcdflib ('insertCompound', nc, inner_t, 'a', 0, p ('NC_INT'));
%!  netcdflib ('insertArrayCompound', nc, inner_t, 'b', 4, p ('NC_SHORT'), 2);
%!  obs_t = netcdflib ('defCompound', nc, 'obs_t', 64);
%!  fields = {'t', 0, p('NC_DOUBLE'), []; 'v', 8, p('NC_FLOAT'), []; 'q', 12, p('NC_INT'), [];
%!    's', 16, p('NC_SHORT'), 4; 'name', 24, p('NC_CHAR'), 3; 'in', 28, inner_t, [];
%!    'lab', 40, p('NC_STRING'), []; 'r', 48, ints_t, []};
%!  for k = 1:rows (fields)
%!    array = ! isempty (fields{k, 4});
%!    netcdflib ({'insertCompound', 'insertArrayCompound'}{1 + array}, nc, obs_t, ...
%!               fields{k, 1:3 + array});
%!  end
%!endfunction

## Enum of every integer base: whole and subset data in the base's class, attributes, a
## _FillValue set before endDef; the typed rows still refuse enum data.
%!test
%! bases = {'NC_BYTE', 'int8'; 'NC_UBYTE', 'uint8'; 'NC_SHORT', 'int16'; 'NC_USHORT', 'uint16';
%!          'NC_INT', 'int32'; 'NC_UINT', 'uint32'; 'NC_INT64', 'int64'; 'NC_UINT64', 'uint64'};
%! file = fullfile (work, 'enums.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! d = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%! for k = 1:rows (bases)
%!   t(k) = netcdflib ('defEnum', nc, sprintf ('e%d_t', k), p (bases{k, 1}));
%!   values{k} = [intmin(bases{k, 2}), 1, intmax(bases{k, 2})];
%!   arrayfun (@(m) netcdflib ('insertEnum', nc, t(k), sprintf ('m%d', m), values{k}(m)), 1:3);
%!   netcdflib ('insertEnum', nc, t(k), 'four', 4);
%!   v(k) = netcdflib ('defVar', nc, sprintf ('v%d', k), t(k), d);
%!   f(k) = netcdflib ('defVar', nc, sprintf ('f%d', k), t(k), d(1));
%!   netcdflib ('putAtt', nc, f(k), '_FillValue', t(k), values{k}(3));
%!   netcdflib ('putAtt', nc, -1, sprintf ('a%d', k), t(k), values{k});
%!   [~, top] = netcdflib ('inqEnumMember', nc, t(k), 2);
%!   expect_same (top, values{k}(3), bases{k, 1});
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:rows (bases)
%!   netcdflib ('putVar', nc, v(k), values{k}([1 2 3; 3 1 2])');
%!   netcdflib ('putVara', nc, v(k), [1 1], [1 1], values{k}(2));
%! end
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! for k = 1:rows (bases)
%!   data = values{k}([1 2 3; 3 2 2])';
%!   expect_same ({netcdflib('getVar', nc, v(k)), ...
%!     netcdflib('getVars', nc, v(k), [0 0], [2 1], [2 1]), ...
%!     netcdflib('getVar1', nc, v(k), [1 0]), netcdflib('getVar', nc, f(k)), ...
%!     netcdflib('getAtt', nc, -1, sprintf ('a%d', k)), ...
%!     netcdflib('getAtt', nc, f(k), '_FillValue')}, {data, data([1 3], 1), data(2, 1), ...
%!     repmat(values{k}(3), 3, 1), values{k}, values{k}(3)}, bases{k, 1});
%! end
%! expect_error (failure ('getVarDouble', nc, v(1)), 'QUARNA:imagesci:netcdf:libraryFailure', ...
%!               'NC_EBADTYPE');
%! netcdflib ('close', nc);

## What ncgen wrote reads here as written here, and what is written here ncdump prints as it
## prints ncgen's file; the inquiries of all three classes; then records, blobs, attributes,
## a vlen of compounds and strings written, whole and in parts, and read back.
%!test
%! mkdir (fullfile (work, 'ncgen'));
%! ncgen_file (fullfile (work, 'ncgen', 'same.nc'), obs_cdl);
%! file = fullfile (work, 'same.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! cloud_t = netcdflib ('defEnum', nc, 'cloud_t', p ('NC_BYTE'));
%! arrayfun (@(k, name) netcdflib ('insertEnum', nc, cloud_t, name{1}, k), 0:2, ...
%!          {'Clear', 'Cumulonimbus', 'Stratus'});
%! blob_t = netcdflib ('defOpaque', nc, 'blob_t', 5);
%! [obs_t, ints_t] = define_obs (nc);
%! n = netcdflib ('defDim', nc, 'n', 3);
%! data = {int8([0; 2; 1]), uint8([1:5; 10:14; 255 255 255 255 0]'), obs};
%! arrayfun (@(k, t) netcdflib ('putVar', nc, netcdflib ('defVar', nc, 'cbo'(k), t, n), ...
%!                              data{k}), 1:3, [cloud_t, blob_t, obs_t]);
%! [got{1:4}] = netcdflib ('inqEnum', nc, cloud_t);
%! [got{5:6}] = netcdflib ('inqEnumMember', nc, cloud_t, 2);
%! got{7} = netcdflib ('inqEnumIdent', nc, cloud_t, 1);
%! [got{8:10}] = netcdflib ('inqCompound', nc, obs_t);
%! [got{11:14}] = netcdflib ('inqCompoundField', nc, obs_t, 3);
%! [~, ~, got{15:16}] = netcdflib ('inqCompoundField', nc, obs_t, 7);
%! got{17} = netcdflib ('inqCompoundFieldIndex', nc, obs_t, 'lab');
%! [got{18:19}] = netcdflib ('inqOpaque', nc, blob_t);
%! [~, got{20}, ~, ~, got{21}] = netcdflib ('inqUserType', nc, blob_t);
%! expect_same (got, {'cloud_t', p('NC_BYTE'), 1, 3, 'Stratus', int8(2), 'Cumulonimbus', ...
%!   'obs_t', 64, 8, 's', 16, p('NC_SHORT'), 4, ints_t, zeros(0, 0), 6, 'blob_t', 5, 5, 14}, ...
%!   'inquiries');
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', fullfile (work, 'ncgen', 'same.nc'), 'NC_NOWRITE');
%! expect_same (arrayfun (@(v) netcdflib ('getVar', nc, v), 0:2, 'UniformOutput', false), data);
%! netcdflib ('close', nc);
%! expect_same (ncdump (file), ncdump (fullfile (work, 'ncgen', 'same.nc')), 'ncdump');
%! one = struct ('t', 9, 'v', single (8), 'q', int32 (7), 's', int16 ((1:4)'), 'name', 'xyz'(:), ...
%!   'in', struct ('a', int32 (6), 'b', int16 ([5; 4])), 'lab', {{'z'}}, 'r', {{int32(5)}});
%! nc = netcdflib ('open', file, 'NC_WRITE');
%! netcdflib ('putVar1', nc, 2, 1, one);
%! netcdflib ('putVars', nc, 1, 0, 2, 2, uint8 ([1:5; 6:10]'));
%! netcdflib ('putAtt', nc, 2, 'first', obs_t, obs);
%! netcdflib ('putAtt', nc, 1, 'tag', blob_t, uint8 (1:10)');
%! vv = netcdflib ('defVar', nc, 'ov', netcdflib ('defVlen', nc, 'obsv_t', obs_t), 0);
%! netcdflib ('putVar', nc, vv, {obs; one; one});
%! vs = netcdflib ('defVar', nc, 's', p ('NC_STRING'), 0);
%! netcdflib ('putVar', nc, vs, {'alpha'; ''; 'b'});
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! ends = netcdflib ('getVars', nc, 2, 0, 2, 2);
%! first = netcdflib ('getAtt', nc, 2, 'first');
%! expect_same ({ends.s, ends.lab, netcdflib('getVar1', nc, 2, 1), ...
%!   netcdflib('getVar', nc, 1), netcdflib('getVara', nc, 1, 1, 1), netcdflib('getVar', nc, vv), ...
%!   first.s, first.lab, netcdflib('getAtt', nc, 1, 'tag'), netcdflib('getVar', nc, vs)}, ...
%!   {obs.s(:, [1 3]), obs.lab([1 3]), one, uint8([1:5; 10:14; 6:10]'), uint8(10:14)', ...
%!   {obs; one; one}, reshape(obs.s, 4, 1, 3), obs.lab', reshape(uint8 (1:10), 5, 1, 2), ...
%!   {'alpha'; char(zeros(1, 0)); 'b'}});
%! netcdflib ('close', nc);

## A compound with a field of two dimensions (Octave's order) reads back, and python3-netcdf4
## reads it as written here.
%!test
%! rec = struct ('t', [1.5; -2.5], 's', int16 (reshape (0:11, 3, 2, 2)));
%! nc = netcdflib ('create', fullfile (work, 'ours.nc'), p ('NC_NETCDF4'));
%! rec_t = netcdflib ('defCompound', nc, 'rec_t', 24);
%! netcdflib ('insertCompound', nc, rec_t, 't', 0, p ('NC_DOUBLE'));
%! netcdflib ('insertArrayCompound', nc, rec_t, 's', 8, p ('NC_SHORT'), [3 2]);
%! r = netcdflib ('defVar', nc, 'r', rec_t, netcdflib ('defDim', nc, 'n', 2));
%! netcdflib ('putVar', nc, r, rec);
%! expect_same (netcdflib ('getVar', nc, r), rec, 'read back');
%! netcdflib ('close', nc);
%! out = python (["r = netCDF4.Dataset(sys.argv[1])['r'][:]\n" ...
%!   "print(r['t'].tolist(), r['s'].shape, r['s'].ravel().tolist())"], fullfile (work, 'ours.nc'));
%! expect_same (out, "[1.5, -2.5] (2, 2, 3) [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]\n", ...
%!              'python3-netcdf4');

## Definitions netCDF-C 4.9.0 accepts but nothing can then write, read or close cleanly are
## refused with its own statuses (field dimensions come in Octave's order); data that does
## not fit the type is refused, naming the field and the class expected.
%!test
%! nc = netcdflib ('create', fullfile (work, 'errors.nc'), p ('NC_NETCDF4'));
%! c = netcdflib ('defCompound', nc, 'c_t', 8);
%! cases = {'defEnum', {'e_t', p('NC_DOUBLE')}, 'NC_EBADTYPE';
%!   'insertCompound', {c, 'self', 0, c}, 'NC_EBADTYPE';
%!   'insertCompound', {c, 'cycle', 0, netcdflib('defVlen', nc, 'v_t', c)}, 'NC_EBADTYPE';
%!   'insertCompound', {c, 'late', 6, p('NC_INT')}, 'NC_EINVAL';
%!   'insertArrayCompound', {c, 'none', 0, p('NC_INT'), zeros(1, 0)}, 'NC_EINVAL';
%!   'insertArrayCompound', {c, 'zero', 0, p('NC_INT'), 0}, 'NC_EINVAL';
%!   'insertArrayCompound', {c, 'long', 0, p('NC_INT'), [1 3]}, 'NC_EINVAL'};
%! cellfun (@(op, args, status) expect_error (failure (op, nc, args{:}), ...
%!   'QUARNA:imagesci:netcdf:libraryFailure', status), cases(:, 1), cases(:, 2), cases(:, 3));
%! netcdflib ('insertArrayCompound', nc, c, 'fits', 0, p ('NC_INT'), [1 2]);
%! [~, ~, ~, dims] = netcdflib ('inqCompoundField', nc, c, 0);
%! expect_same (dims, [1 2], 'field dimensions');
%! obs_t = define_obs (nc);
%! blob_t = netcdflib ('defOpaque', nc, 'blob_t', 5);
%! e = netcdflib ('defEnum', nc, 'b_t', p ('NC_BYTE'));
%! netcdflib ('insertEnum', nc, e, 'top', 127);
%! expect_error (failure ('insertEnum', nc, e, 'big', 128), ...
%!               'QUARNA:imagesci:validate:argumentOutOfBounds');
%! n = netcdflib ('defDim', nc, 'n', 3);
%! [vo, vv, vb, ve, vd] = num2cell (cellfun (@(name, t) netcdflib ('defVar', nc, name, t, n), ...
%!   {'o', 'ov', 'b', 'e', 'd'}, {obs_t, netcdflib('defVlen', nc, 'obsv_t', obs_t), blob_t, e, ...
%!   p('NC_DOUBLE')})){:};
%! netcdflib ('endDef', nc);
%! id = @(name) ['QUARNA:imagesci:netcdf:' name];
%! bad = @(field, value) setfield (obs, field, value);
%! cases = {
%!   vo, bad('t', int32(obs.t)), id('dataHasBadClass'), {'data.t', 'double'};
%!   vo, bad('s', obs.s(1:3, :)), id('dataElementCountMismatch'), {'data.s', '12', '9'};
%!   vo, bad('in', setfield(obs.in, 'b', int32(obs.in.b))), id('dataHasBadClass'), ...
%!     {'data.in.b', 'int16'};
%!   vo, bad('lab', {1; 2; 3}), id('dataHasBadClass'), {'data.lab{}', 'char'};
%!   vo, rmfield(obs, 'r'), id('dataFieldsMismatch'), {'obs_t', 't, v, q, s, name, in, lab, r'};
%!   vo, orderfields(obs), id('dataFieldsMismatch'), {'data'};
%!   vo, [obs; obs; obs], id('dataFieldsMismatch'), {'data'};
%!   vo, 1:3, id('dataHasBadClass'), {'struct'};
%!   vv, {obs; bad('q', 1:3); obs}, id('dataHasBadClass'), {'data{}.q', 'int32'};
%!   vb, zeros(5, 3), id('dataHasBadClass'), {'uint8'};
%!   vb, uint8(1:14), id('dataSizeMismatch'), {};
%!   ve, [1; 2; 3], id('dataHasBadClass'), {'int8'};
%!   vd, int8([1; 2; 3]), id('argumentHasBadDatatype'), {}};
%! cellfun (@(v, data, id, texts) expect_error (failure ('putVar', nc, v, data), id, texts{:}), ...
%!          cases(:, 1), cases(:, 2), cases(:, 3), cases(:, 4));
%! expect_error (failure ('putVara', nc, vb, 0, 2, uint8 (1:5)), id('countNotEqualToData'));
%! netcdflib ('close', nc);
