## Enum, compound and opaque types from Octave: definitions and inquiries, data in its own
## type through "getVar"/"putVar" (whole and subsets) and "getAtt"/"putAtt", against ncgen,
## ncdump, python3-netcdf4 and captured DAP4 responses, and the errors of wrong data.

%!shared work, p, obs, obs_cdl
%! work = work_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! ## Three records of a compound with scalar, array, char-array, nested, string and vlen
%! ## fields, in the form "getVar" returns them.
%! obs = struct ('t', [1.5; 2.5; 3.5], 'v', single ([-1; 0; 1e30]), 'q', int32 ([3; -4; 5]), ...
%!   's', int16 (reshape (1:12, 4, 3)), 'name', ['abe'; 'cd '; 'f  '], ...
%!   'in', struct ('a', int32 ([7; 17; 27]), 'b', int16 ([8 18 28; 9 19 29])), ...
%!   'lab', {{'x'; 'yy'; char(zeros(1, 0))}}, 'r', {{int32([1; 2]); int32(3); int32([])}});
%! obs.name(obs.name == ' ') = char (0);
%! obs_cdl = ["netcdf same {\ntypes:\n  byte enum cloud_t {Clear = 0, Cumulonimbus = 1, " ...
%!   "Stratus = 2} ;\n  opaque(5) blob_t ;\n  int(*) ints_t ;\n" ...
%!   "  compound inner_t {\n    int a ;\n    short b(2) ;\n  }; // inner_t\n" ...
%!   "  compound obs_t {\n    double t ;\n    float v ;\n    int q ;\n    short s(4) ;\n" ...
%!   "    char name(3) ;\n    inner_t in ;\n    string lab ;\n    ints_t r ;\n  }; // obs_t\n" ...
%!   "dimensions:\n  n = 3 ;\nvariables:\n  cloud_t c(n) ;\n  blob_t b(n) ;\n  obs_t o(n) ;\n" ...
%!   "data:\n\n c = Clear, Stratus, Cumulonimbus ;\n\n" ...
%!   " b = 0X0102030405, 0X0A0B0C0D0E, 0XFFFFFFFF00 ;\n\n" ...
%!   " o = {1.5, -1, 3, {1, 2, 3, 4}, {\"acf\"}, {7, {8, 9}}, \"x\", {1, 2}}, \n" ...
%!   "    {2.5, 0, -4, {5, 6, 7, 8}, {\"bd\"}, {17, {18, 19}}, \"yy\", {3}}, \n" ...
%!   "    {3.5, 1e+30, 5, {9, 10, 11, 12}, {\"e\"}, {27, {28, 29}}, \"\", {}} ;\n}\n"];

## Fails unless OBSERVED has EXPECTED's class, size and values, element by element in
## cells and field by field in structs; WHERE names the case.
%!function expect_same (observed, expected, where)
%!  if (nargin < 3)
%!    where = 'value';
%!  end
%!  if (! strcmp (class (observed), class (expected)) || ! isequal (size (observed), size (expected)))
%!    error ('%s: %s %s observed, %s %s expected', where, class (observed), ...
%!           mat2str (size (observed)), class (expected), mat2str (size (expected)));
%!  end
%!  if (isstruct (expected))
%!    assert (fieldnames (observed), fieldnames (expected));
%!    for f = fieldnames (expected)'
%!      expect_same (observed.(f{1}), expected.(f{1}), sprintf ('%s.%s', where, f{1}));
%!    end
%!  elseif (iscell (expected))
%!    for i = 1:numel (expected)
%!      expect_same (observed{i}, expected{i}, sprintf ('%s{%d}', where, i));
%!    end
%!  elseif (! isequaln (observed, expected))
%!    error ('%s: observed %s, expected %s', where, disp (observed), disp (expected));
%!  end
%!endfunction

## Fails unless ERR has identifier ID and a message holding every text given.
%!function expect_error (err, id, varargin)
%!  assert (err.identifier, id);
%!  for k = 1:numel (varargin)
%!    assert (! isempty (strfind (err.message, varargin{k})), err.message);
%!  end
%!endfunction

## Defines obs_t and its parts in NC, laid out as a C compiler would, and returns its id.
%!function [obs_t, ints_t] = define_obs (nc)
%!  p = @(name) netcdflib ('parameter', name);
%!  ints_t = netcdflib ('defVlen', nc, 'ints_t', p ('NC_INT'));
%!  inner_t = netcdflib ('defCompound', nc, 'inner_t', 8);
%!  netcdflib ('insertCompound', nc, inner_t, 'a', 0, p ('NC_INT'));
%!  netcdflib ('insertArrayCompound', nc, inner_t, 'b', 4, p ('NC_SHORT'), 2);
%!  obs_t = netcdflib ('defCompound', nc, 'obs_t', 64);
%!  netcdflib ('insertCompound', nc, obs_t, 't', 0, p ('NC_DOUBLE'));
%!  netcdflib ('insertCompound', nc, obs_t, 'v', 8, p ('NC_FLOAT'));
%!  netcdflib ('insertCompound', nc, obs_t, 'q', 12, p ('NC_INT'));
%!  netcdflib ('insertArrayCompound', nc, obs_t, 's', 16, p ('NC_SHORT'), 4);
%!  netcdflib ('insertArrayCompound', nc, obs_t, 'name', 24, p ('NC_CHAR'), 3);
%!  netcdflib ('insertCompound', nc, obs_t, 'in', 28, inner_t);
%!  netcdflib ('insertCompound', nc, obs_t, 'lab', 40, p ('NC_STRING'));
%!  netcdflib ('insertCompound', nc, obs_t, 'r', 48, ints_t);
%!endfunction

## Compound data S of N records with record R replaced by the one record of ONE.
%!function s = set_record (s, r, one, n)
%!  for f = fieldnames (one)'
%!    if (isstruct (one.(f{1})))
%!      s.(f{1}) = set_record (s.(f{1}), r, one.(f{1}), n);
%!    else
%!      x = reshape (s.(f{1}), [], n);
%!      x(:, r) = one.(f{1})(:);
%!      s.(f{1}) = reshape (x, size (s.(f{1})));
%!    end
%!  end
%!endfunction

## The file of obs_cdl, written here: the same ncdump text as ncgen's.
%!function write_same (file, obs)
%!  p = @(name) netcdflib ('parameter', name);
%!  nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%!  cloud_t = netcdflib ('defEnum', nc, 'cloud_t', p ('NC_BYTE'));
%!  names = {'Clear', 'Cumulonimbus', 'Stratus'};
%!  for k = 1:3
%!    netcdflib ('insertEnum', nc, cloud_t, names{k}, k - 1);
%!  end
%!  blob_t = netcdflib ('defOpaque', nc, 'blob_t', 5);
%!  obs_t = define_obs (nc);
%!  n = netcdflib ('defDim', nc, 'n', 3);
%!  v = [netcdflib('defVar', nc, 'c', cloud_t, n), netcdflib('defVar', nc, 'b', blob_t, n), ...
%!       netcdflib('defVar', nc, 'o', obs_t, n)];
%!  netcdflib ('endDef', nc);
%!  netcdflib ('putVar', nc, v(1), int8 ([0; 2; 1]));
%!  netcdflib ('putVar', nc, v(2), uint8 ([1:5; 10:14; 255 255 255 255 0]'));
%!  netcdflib ('putVar', nc, v(3), obs);
%!  netcdflib ('close', nc);
%!endfunction

## Definitions and inquiries of all three classes.
%!test
%! nc = netcdflib ('create', fullfile (work, 'defs.nc'), p ('NC_NETCDF4'));
%! e = netcdflib ('defEnum', nc, 'e_t', p ('NC_USHORT'));
%! netcdflib ('insertEnum', nc, e, 'one', 1);
%! netcdflib ('insertEnum', nc, e, 'top', 65535);
%! [name, base, size, n] = netcdflib ('inqEnum', nc, e);
%! expect_same ({name, base, size, n}, {'e_t', p('NC_USHORT'), 2, 2});
%! [name, value] = netcdflib ('inqEnumMember', nc, e, 1);
%! expect_same ({name, value}, {'top', uint16(65535)});
%! expect_same (netcdflib ('inqEnumIdent', nc, e, 1), 'one');
%! [obs_t, ints_t] = define_obs (nc);
%! [name, size, n] = netcdflib ('inqCompound', nc, obs_t);
%! expect_same ({name, size, n}, {'obs_t', 64, 8});
%! [name, offset, type, dims] = netcdflib ('inqCompoundField', nc, obs_t, 3);
%! expect_same ({name, offset, type, dims}, {'s', 16, p('NC_SHORT'), 4});
%! [~, ~, type, dims] = netcdflib ('inqCompoundField', nc, obs_t, 7);
%! expect_same ({type, dims}, {ints_t, zeros(0, 0)});
%! expect_same (netcdflib ('inqCompoundFieldIndex', nc, obs_t, 'lab'), 6);
%! c = netcdflib ('defCompound', nc, 'grid_t', 24);
%! netcdflib ('insertArrayCompound', nc, c, 'g', 0, p ('NC_SHORT'), [3 4]);
%! [~, ~, ~, dims] = netcdflib ('inqCompoundField', nc, c, 0);
%! expect_same (dims, [3 4]);
%! o = netcdflib ('defOpaque', nc, 'blob_t', 5);
%! [name, size] = netcdflib ('inqOpaque', nc, o);
%! expect_same ({name, size}, {'blob_t', 5});
%! [~, size, ~, ~, cls] = netcdflib ('inqUserType', nc, o);
%! expect_same ([size cls], [5 14]);  # NC_OPAQUE
%! netcdflib ('close', nc);

## Enum of every integer base: whole and subset data in the base's class, attributes, a
## _FillValue set before endDef; the typed rows still refuse enum data.
%!test
%! bases = {'NC_BYTE', 'int8'; 'NC_UBYTE', 'uint8'; 'NC_SHORT', 'int16'; 'NC_USHORT', 'uint16';
%!          'NC_INT', 'int32'; 'NC_UINT', 'uint32'; 'NC_INT64', 'int64'; 'NC_UINT64', 'uint64'};
%! file = fullfile (work, 'enums.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! d = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%! for k = 1:rows (bases)
%!   cls = bases{k, 2};
%!   t(k) = netcdflib ('defEnum', nc, sprintf ('e%d_t', k), p (bases{k, 1}));
%!   values{k} = [intmin(cls), 1, intmax(cls)];
%!   for m = 1:3
%!     netcdflib ('insertEnum', nc, t(k), sprintf ('m%d', m), values{k}(m));
%!   end
%!   v(k) = netcdflib ('defVar', nc, sprintf ('v%d', k), t(k), d);
%!   f(k) = netcdflib ('defVar', nc, sprintf ('f%d', k), t(k), d(1));
%!   netcdflib ('putAtt', nc, f(k), '_FillValue', t(k), values{k}(3));
%!   netcdflib ('putAtt', nc, -1, sprintf ('a%d', k), t(k), values{k});
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:rows (bases)
%!   data{k} = values{k}([1 2 3; 3 1 2])';
%!   netcdflib ('putVar', nc, v(k), data{k});
%!   netcdflib ('putVara', nc, v(k), [1 1], [1 1], values{k}(2));
%!   data{k}(2, 2) = values{k}(2);
%! end
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! for k = 1:rows (bases)
%!   expect_same (netcdflib ('getVar', nc, v(k)), data{k}, bases{k, 1});
%!   expect_same (netcdflib ('getVars', nc, v(k), [0 0], [2 1], [2 1]), data{k}([1 3], 1));
%!   expect_same (netcdflib ('getVar1', nc, v(k), [1 0]), data{k}(2, 1));
%!   expect_same (netcdflib ('getVar', nc, f(k)), repmat (values{k}(3), 3, 1));
%!   expect_same (netcdflib ('getAtt', nc, -1, sprintf ('a%d', k)), values{k});
%!   expect_same (netcdflib ('getAtt', nc, f(k), '_FillValue'), values{k}(3));
%! end
%! try
%!   netcdflib ('getVarDouble', nc, v(1));
%!   error ('typed read of enum data passed');
%! catch err
%!   expect_error (err, 'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EBADTYPE');
%! end
%! netcdflib ('close', nc);

## Compound (every kind of field), opaque and vlen of compound data written here, whole
## and in parts, and read back; atomic types give what their typed rows give.
%!test
%! file = fullfile (work, 'compound.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! obs_t = define_obs (nc);
%! blob_t = netcdflib ('defOpaque', nc, 'blob_t', 5);
%! obsv_t = netcdflib ('defVlen', nc, 'obsv_t', obs_t);
%! n = netcdflib ('defDim', nc, 'n', 3);
%! m = netcdflib ('defDim', nc, 'm', 2);
%! vo = netcdflib ('defVar', nc, 'o', obs_t, n);
%! vb = netcdflib ('defVar', nc, 'b', blob_t, [n m]);
%! vv = netcdflib ('defVar', nc, 'ov', obsv_t, m);
%! vs = netcdflib ('defVar', nc, 's', p ('NC_STRING'), m);
%! vc = netcdflib ('defVar', nc, 'c', p ('NC_CHAR'), n);
%! vd = netcdflib ('defVar', nc, 'd', p ('NC_DOUBLE'), [n m]);
%! netcdflib ('putAtt', nc, vo, 'first', obs_t, obs);
%! netcdflib ('putAtt', nc, vb, 'tag', blob_t, uint8 (1:10)');
%! netcdflib ('endDef', nc);
%! netcdflib ('putVar', nc, vo, obs);
%! blobs = uint8 (reshape (1:30, 5, 3, 2));
%! netcdflib ('putVar', nc, vb, blobs);
%! part = struct ('t', [1.5; 2.5], 'v', single ([-1; 0]), 'q', int32 ([3; -4]), ...
%!   's', int16 (reshape (1:8, 4, 2)), 'name', ['ab'; 'cd'; 'ef'], ...
%!   'in', struct ('a', int32 ([7; 17]), 'b', int16 ([8 18; 9 19])), ...
%!   'lab', {{'x'; 'yy'}}, 'r', {{int32([1; 2]); int32(3)}});
%! one = struct ('t', 9, 'v', single (8), 'q', int32 (7), 's', int16 ((1:4)'), 'name', ['x'; 'y'; 'z'], ...
%!   'in', struct ('a', int32 (6), 'b', int16 ([5; 4])), 'lab', {{'z'}}, 'r', {{int32(5)}});
%! netcdflib ('putVar', nc, vv, {part; one});
%! netcdflib ('putVar', nc, vs, {'alpha'; ''});
%! netcdflib ('putVar', nc, vc, 'abc');
%! netcdflib ('putVar', nc, vd, reshape (1:6, 3, 2));
%! netcdflib ('putVar1', nc, vo, 2, one);
%! netcdflib ('putVars', nc, vb, [0 1], [2 1], [2 1], blobs(:, [1 3], 2) + 100);
%! netcdflib ('close', nc);
%! expected = set_record (obs, 3, one, 3);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! expect_same (netcdflib ('getVar', nc, vo), expected, 'o');
%! expect_same (netcdflib ('getVar1', nc, vo, 2), one, 'o(3)');
%! blobs(:, [1 3], 2) += 100;
%! expect_same (netcdflib ('getVar', nc, vb), blobs, 'b');
%! expect_same (netcdflib ('getVara', nc, vb, [1 1], [1 1]), blobs(:, 2, 2), 'b(2,2)');
%! expect_same (netcdflib ('getVar', nc, vv), {part; one}, 'ov');
%! expect_same (netcdflib ('getVar', nc, vs), {'alpha'; char(zeros (1, 0))}, 's');
%! expect_same (netcdflib ('getVar', nc, vc), ['a'; 'b'; 'c'], 'c');
%! expect_same (netcdflib ('getVar', nc, vd), reshape (1:6, 3, 2), 'd');
%! first = netcdflib ('getAtt', nc, vo, 'first');
%! expect_same (first.s, reshape (obs.s, 4, 1, 3), 'attribute s');
%! expect_same (first.lab, obs.lab', 'attribute lab');
%! expect_same (netcdflib ('getAtt', nc, vb, 'tag'), reshape (uint8 (1:10), 5, 1, 2), 'tag');
%! netcdflib ('close', nc);

## ncgen and ncdump: what ncgen wrote reads here as written here, and what is written here
## ncdump prints as it prints ncgen's file.
%!test
%! mkdir (fullfile (work, 'ncgen'));
%! ncgen_file (fullfile (work, 'ncgen', 'same.nc'), obs_cdl);
%! write_same (fullfile (work, 'same.nc'), obs);
%! nc = netcdflib ('open', fullfile (work, 'ncgen', 'same.nc'), 'NC_NOWRITE');
%! expect_same (netcdflib ('getVar', nc, 0), int8 ([0; 2; 1]), 'c');
%! expect_same (netcdflib ('getVar', nc, 1), uint8 ([1:5; 10:14; 255 255 255 255 0]'), 'b');
%! expect_same (netcdflib ('getVar', nc, 2), obs, 'o');
%! netcdflib ('close', nc);
%! expect_same (ncdump (fullfile (work, 'same.nc')), ...
%!              ncdump (fullfile (work, 'ncgen', 'same.nc')), 'ncdump');

## python3-netcdf4, both ways, on enum and compound data.
%!test
%! file = fullfile (work, 'py.nc');
%! script = [tempname() '.py'];
%! fid = fopen (script, 'w');
%! fputs (fid, ["import sys, numpy as np, netCDF4\n" ...
%!   "dt = np.dtype([('t', 'f8'), ('v', 'f4'), ('q', 'i4'), ('s', 'i2', (2, 3))])\n" ...
%!   "if sys.argv[1] == 'write':\n" ...
%!   "    ds = netCDF4.Dataset(sys.argv[2], 'w')\n" ...
%!   "    ds.createDimension('n', 2)\n" ...
%!   "    ct = ds.createCompoundType(dt, 'rec_t')\n" ...
%!   "    et = ds.createEnumType(np.int16, 'level_t', {'low': -5, 'high': 300})\n" ...
%!   "    r = np.zeros(2, dt)\n" ...
%!   "    r['t'] = [1.5, -2.5]; r['v'] = [0.25, 4]; r['q'] = [7, -8]\n" ...
%!   "    r['s'] = np.arange(12).reshape(2, 2, 3)\n" ...
%!   "    ds.createVariable('r', ct, ('n',))[:] = r\n" ...
%!   "    ds.createVariable('e', et, ('n',))[:] = np.array([300, -5], np.int16)\n" ...
%!   "    ds.close()\n" ...
%!   "else:\n" ...
%!   "    ds = netCDF4.Dataset(sys.argv[2])\n" ...
%!   "    r = ds['r'][:]\n" ...
%!   "    print(r['t'].tolist(), r['v'].tolist(), r['q'].tolist(), r['s'].ravel().tolist())\n" ...
%!   "    print(ds['e'].datatype.enum_dict == {'low': -5, 'high': 300}, ds['e'][:].tolist())\n"]);
%! fclose (fid);
%! [status, out] = system (sprintf ('/usr/bin/python3 "%s" write "%s"', script, file));
%! assert (status == 0, out);
%! rec = struct ('t', [1.5; -2.5], 'v', single ([0.25; 4]), 'q', int32 ([7; -8]), ...
%!               's', int16 (reshape (0:11, 3, 2, 2)));
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! expect_same (netcdflib ('getVar', nc, netcdflib ('inqVarID', nc, 'r')), rec, 'python r');
%! expect_same (netcdflib ('getVar', nc, netcdflib ('inqVarID', nc, 'e')), int16 ([300; -5]));
%! netcdflib ('close', nc);
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! rec_t = netcdflib ('defCompound', nc, 'rec_t', 32);
%! netcdflib ('insertCompound', nc, rec_t, 't', 0, p ('NC_DOUBLE'));
%! netcdflib ('insertCompound', nc, rec_t, 'v', 8, p ('NC_FLOAT'));
%! netcdflib ('insertCompound', nc, rec_t, 'q', 12, p ('NC_INT'));
%! netcdflib ('insertArrayCompound', nc, rec_t, 's', 16, p ('NC_SHORT'), [3 2]);
%! level_t = netcdflib ('defEnum', nc, 'level_t', p ('NC_SHORT'));
%! netcdflib ('insertEnum', nc, level_t, 'low', -5);
%! netcdflib ('insertEnum', nc, level_t, 'high', 300);
%! n = netcdflib ('defDim', nc, 'n', 2);
%! vr = netcdflib ('defVar', nc, 'r', rec_t, n);
%! ve = netcdflib ('defVar', nc, 'e', level_t, n);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVar', nc, vr, rec);
%! netcdflib ('putVar', nc, ve, int16 ([300; -5]));
%! netcdflib ('close', nc);
%! [status, out] = system (sprintf ('/usr/bin/python3 "%s" read "%s"', script, file));
%! unlink (script);
%! assert (status == 0, out);
%! expect_same (out, ["[1.5, -2.5] [0.25, 4.0] [7, -8] [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]\n" ...
%!                    "True [300, -5]\n"], 'python3-netcdf4');

## The enum and opaque variables of DAP4 responses, through netCDF-C's DAP4 client.
%!test
%! dap4 = fullfile (fileparts (which ('run_test_blocks')), '..', 'fixtures', 'dap4');
%! url = @(name) sprintf ('file://%s#dap4', canonicalize_file_name (fullfile (dap4, [name '.dap'])));
%! url = @(name) strrep (url (name), '.dap#', '#');
%! cases = {'test_enum.nc', int8(2); 'test_enum_array.nc', int8([0; 2; 0; 1; 127]);
%!          'test_opaque.nc', uint8([1 35 69 103 137 171 205 239 zeros(1, 8)]');
%!          'test_opaque_array.nc', reshape(uint8([1 35 69 103 137 171 205 239 zeros(1, 8), ...
%!            171 205 239 zeros(1, 13), 254 220 186 152 118 84 50 16 zeros(1, 8), ...
%!            254 220 186 153 153 153 153 153 zeros(1, 8)]), 16, 2, 2)};
%! for k = 1:rows (cases)
%!   nc = netcdflib ('open', url (cases{k, 1}), 'NC_NOWRITE');
%!   expect_same (netcdflib ('getVar', nc, 0), cases{k, 2}, cases{k, 1});
%!   netcdflib ('close', nc);
%! end
%! nc = netcdflib ('open', url ('test_enum.nc'), 'NC_NOWRITE');
%! expect_same (netcdflib ('getAtt', nc, 0, '_FillValue'), int8 (127));
%! [~, type] = netcdflib ('inqVar', nc, 0);
%! expect_same (netcdflib ('inqEnumIdent', nc, type, 2), 'Stratus');
%! netcdflib ('close', nc);

## Data that does not fit the type is refused, naming the field and the class expected.
%!test
%! nc = netcdflib ('create', fullfile (work, 'errors.nc'), p ('NC_NETCDF4'));
%! obs_t = define_obs (nc);
%! obsv_t = netcdflib ('defVlen', nc, 'obsv_t', obs_t);
%! blob_t = netcdflib ('defOpaque', nc, 'blob_t', 5);
%! e = netcdflib ('defEnum', nc, 'e_t', p ('NC_BYTE'));
%! netcdflib ('insertEnum', nc, e, 'top', 127);
%! try
%!   netcdflib ('insertEnum', nc, e, 'big', 128);
%!   error ('out-of-range enum value passed');
%! catch err
%!   expect_error (err, 'QUARNA:imagesci:validate:argumentOutOfBounds');
%! end
%! n = netcdflib ('defDim', nc, 'n', 3);
%! vo = netcdflib ('defVar', nc, 'o', obs_t, n);
%! vv = netcdflib ('defVar', nc, 'ov', obsv_t, n);
%! vb = netcdflib ('defVar', nc, 'b', blob_t, n);
%! ve = netcdflib ('defVar', nc, 'e', e, n);
%! vd = netcdflib ('defVar', nc, 'd', p ('NC_DOUBLE'), n);
%! netcdflib ('endDef', nc);
%! id = @(name) ['QUARNA:imagesci:netcdf:' name];
%! bad = @(field, value) setfield (obs, field, value);
%! inner = obs.in;
%! inner.b = int32 (inner.b);
%! cases = {
%!   vo, bad('t', int32(obs.t)), id('dataHasBadClass'), {'data.t', 'double'};
%!   vo, bad('s', obs.s(1:3, :)), id('dataElementCountMismatch'), {'data.s', '12', '9'};
%!   vo, bad('in', inner), id('dataHasBadClass'), {'data.in.b', 'int16'};
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
%! for k = 1:rows (cases)
%!   try
%!     netcdflib ('putVar', nc, cases{k, 1:2});
%!     error ('case %d passed', k);
%!   catch err
%!     expect_error (err, cases{k, 3}, cases{k, 4}{:});
%!   end
%! end
%! try
%!   netcdflib ('putVara', nc, vb, 0, 2, uint8 (1:5));
%!   error ('short opaque data passed');
%! catch err
%!   expect_error (err, id('countNotEqualToData'));
%! end
%! netcdflib ('close', nc);

## Definitions netCDF-C 4.9.0 accepts but nothing can then write, read or close cleanly
## are refused with netCDF-C's own statuses.
%!test
%! nc = netcdflib ('create', fullfile (work, 'defs_refused.nc'), p ('NC_NETCDF4'));
%! c = netcdflib ('defCompound', nc, 'c_t', 8);
%! v = netcdflib ('defVlen', nc, 'v_t', c);
%! cases = {
%!   @() netcdflib('defEnum', nc, 'e_t', p ('NC_DOUBLE')), 'NC_EBADTYPE';
%!   @() netcdflib('insertCompound', nc, c, 'self', 0, c), 'NC_EBADTYPE';
%!   @() netcdflib('insertCompound', nc, c, 'cycle', 0, v), 'NC_EBADTYPE';
%!   @() netcdflib('insertCompound', nc, c, 'late', 6, p ('NC_INT')), 'NC_EINVAL';
%!   @() netcdflib('insertArrayCompound', nc, c, 'none', 0, p ('NC_INT'), zeros (1, 0)), 'NC_EINVAL';
%!   @() netcdflib('insertArrayCompound', nc, c, 'zero', 0, p ('NC_INT'), 0), 'NC_EINVAL';
%!   @() netcdflib('insertArrayCompound', nc, c, 'long', 0, p ('NC_INT'), [1 3]), 'NC_EINVAL'};
%! for k = 1:rows (cases)
%!   try
%!     cases{k, 1} ();
%!     error ('case %d passed', k);
%!   catch err
%!     expect_error (err, 'QUARNA:imagesci:netcdf:libraryFailure', cases{k, 2});
%!   end
%! end
%! netcdflib ('insertArrayCompound', nc, c, 'fits', 0, p ('NC_INT'), [1 2]);
%! netcdflib ('close', nc);
