## Zarr stores through the same operations as files: NCZarr and pure Zarr directory stores
## written, reopened and read here; python3-zarr reads the pure Zarr stores value for value,
## netcdflib reads what python3-zarr writes, and arrays it compressed are refused, not
## returned as encoded bytes.

%!shared work, p, url
%! work = work_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! url = @(name, mode) ['file://' fullfile(work, name) '#mode=' mode];

## Values of class CLS that differ with SEED: the class's extremes, NaN and infinities for
## floats, bytes above 0x7F for char; 42 stands where nothing was written.
%!function v = sample_values (cls, seed)
%!  k = reshape (1:12, 4, 3) + seed;
%!  v = cast (mod (k * 37 + 101, 256) - 128 * ! strcmp (cls, 'char'), cls);
%!  if (isfloat (v))
%!    v(1:5) = [-realmax(cls); NaN; Inf; -Inf; realmin(cls)];
%!  elseif (isinteger (v))
%!    v(1:2) = [intmin(cls) intmax(cls)];
%!  end
%!  v(:, 3) = 42;
%!endfunction

## Every atomic type NCZarr has, in a nested group, chunked, with fill values and
## attributes of its own type, its data written as soon as it is defined: reopened and read
## back, then changed in place (pure Zarr keeps no attribute types: netCDF-C infers them
## from the JSON); pure Zarr stores read the same in python3-zarr afterwards
## (netCDF-C 4.9.0 declares chars "<U1", four bytes each, but stores one byte each, so
## python3-zarr cannot read those).
%!test
%! types = {'NC_DOUBLE', 'Double', 'double';  'NC_FLOAT', 'Float', 'single';
%!   'NC_INT64', 'Int64', 'int64';  'NC_UINT64', 'Uint64', 'uint64';  'NC_INT', 'Int', 'int32';
%!   'NC_UINT', 'Uint', 'uint32';  'NC_SHORT', 'Short', 'int16';  'NC_USHORT', 'Ushort', 'uint16';
%!   'NC_BYTE', 'Schar', 'int8';  'NC_UBYTE', 'Uchar', 'uint8';  'NC_CHAR', 'Text', 'char'};
%! for mode = {'nczarr,file', 'zarr,file'}
%!   name = [strtok(mode{1}, ',') '.zarr'];
%!   nc = netcdflib ('create', url (name, mode{1}), p ('NC_NETCDF4'));
%!   x = [netcdflib('defDim', nc, 'x', 4), netcdflib('defDim', nc, 'y', 3)];
%!   h = netcdflib ('defGrp', netcdflib ('defGrp', nc, 'g'), 'h');
%!   for k = 1:rows (types)
%!     [nct, fn, cls] = types{k, :};
%!     v = netcdflib ('defVar', h, ['v' fn], p (nct), x);
%!     netcdflib ('defVarChunking', h, v, p ('NC_CHUNKED'), [2 2]);
%!     netcdflib ('defVarFill', h, v, false, cast (42, cls));
%!     netcdflib (['putAtt' fn], h, v, 'a', p (nct), cast ('abc', cls));
%!     netcdflib (['putAtt' fn], nc, -1, ['g' fn], p (nct), cast (k, cls));
%!     netcdflib ('endDef', nc);
%!     netcdflib (['putVara' fn], h, v, [0 0], [4 2], sample_values (cls, k)(:, 1:2));
%!   end
%!   netcdflib ('close', nc);
%!   nc = netcdflib ('open', url (name, mode{1}), p ('NC_WRITE'));
%!   h = netcdflib ('inqNcid', netcdflib ('inqNcid', nc, 'g'), 'h');
%!   for k = 1:rows (types)
%!     [nct, fn, cls] = types{k, :};
%!     want = sample_values (cls, k);
%!     v = netcdflib ('inqVarID', h, ['v' fn]);
%!     [~, sizes] = netcdflib ('inqVarChunking', h, v);
%!     [nofill, fill] = netcdflib ('inqVarFill', h, v);
%!     [xtype, len] = netcdflib ('inqAtt', h, v, 'a');
%!     expect_same ({netcdflib(['getVar' fn], h, v), ...
%!       netcdflib(['getVara' fn], h, v, [1 0], [2 3]), double(sizes), nofill, fill, ...
%!       double(netcdflib(['getAtt' fn], h, v, 'a')(:)'), ...
%!       double(netcdflib(['getAtt' fn], nc, -1, ['g' fn]))}, {want, want(2:3, :), [2 2], false, ...
%!       cast(42, cls), double('abc'), k}, sprintf ('%s %s', mode{1}, nct));
%!     assert (strcmp (mode{1}, 'zarr,file') || isequal ([xtype len], [p(nct) 3]), nct);
%!     netcdflib (['putVar1' regexprep(fn, '^Ui', 'UI')], h, v, [1 2], want(1, 1));
%!   end
%!   netcdflib ('close', nc);
%! end
%! arrays = jsondecode (interop ('zarr_store.py', 'dump', fullfile (work, 'zarr.zarr')));
%! expect_same (sort ({arrays.path}), sort (strcat ('g/h/v', types(:, 2)')), 'python3-zarr arrays');
%! for k = 1:rows (types) - 1
%!   want = sample_values (types{k, 3}, k);
%!   want(2, 3) = want(1, 1);
%!   a = arrays(strcmp ({arrays.path}, ['g/h/v' types{k, 2}]));
%!   expect_same ({a.shape(:)', a.chunks(:)', a.hex}, ...
%!                {[3 4], [2 2], sprintf('%02x', typecast (want(:), 'uint8'))}, types{k, 1});
%! end

## Stores python3-zarr writes read here, groups and attributes included: without a codec
## value for value, the fill value standing where nothing was written. Arrays it compressed
## (Blosc, its default) are refused with an error naming the operation, the variable and
## the codec, for whole, strided and single-element reads, every time; the
## metadata stays readable, and the next store opened under the same id reads normally.
## Opening such a store for writing is refused: netCDF-C would rewrite its metadata without
## the codecs, and python3-zarr reads it intact afterwards.
%!test
%! calls = {'getVarsDouble', {[0 0], [2 2], [1 2]};  'getVar1Double', {[0 0]};  'getVarDouble', {}};
%! for codec = {'none', 'blosc'}
%!   store = ['py-' codec{1} '.zarr'];
%!   interop ('zarr_store.py', 'write', fullfile (work, store), codec{1});
%!   before = interop ('zarr_store.py', 'dump', fullfile (work, store));
%!   nc = netcdflib ('open', url (store, 'zarr,file'), p ('NC_NOWRITE'));
%!   h = netcdflib ('inqNcid', netcdflib ('inqNcid', nc, 'g'), 'h');
%!   expect_same ({netcdflib('getAttText', nc, -1, 'title'), ...
%!                 double(netcdflib ('getAttDouble', nc, -1, 'version')), ...
%!                 netcdflib('getAttDouble', h, 0, 'scale')}, {'written by python3-zarr', 3, 0.5});
%!   v = netcdflib ('inqVarID', nc, 'partial');
%!   if (strcmp (codec{1}, 'none'))
%!     vk = netcdflib ('inqVarID', h, 'v_u8');
%!     [~, sizes] = netcdflib ('inqVarChunking', h, vk);
%!     expect_same ({netcdflib('getVarShort', h, netcdflib ('inqVarID', h, 'v_i2')), ...
%!       netcdflib('getVarUint64', h, vk), double(sizes), netcdflib('getVarDouble', nc, v)}, ...
%!       {reshape(int16 (-4:7), 4, 3), reshape(uint64 (0:11), 4, 3), [3 2], ...
%!        [1.25 1.25 -9.5 -9.5; 1.25 1.25 -9.5 -9.5]});
%!     netcdflib ('close', nc);
%!     continue;
%!   end
%!   expect_error (failure ('open', url (store, 'zarr,file'), p ('NC_WRITE')), ...
%!                 'QUARNA:imagesci:netcdf:libraryFailure', '''open''', 'NC_EPERM');
%!   for c = 1:rows (calls)
%!     expect_error (failure (calls{c, 1}, nc, v, calls{c, 2}{:}), ...
%!                   'QUARNA:imagesci:netcdf:zarrCodecNotSupported', ['''' calls{c, 1} ''''], ...
%!                   '''partial''', codec{1});
%!   end
%!   netcdflib ('close', nc);
%!   nc2 = netcdflib ('open', url ('py-none.zarr', 'zarr,file'), p ('NC_NOWRITE'));
%!   expect_same ({nc2, netcdflib('getVarDouble', nc2, 0)(1)}, {nc, 1.25}, 'next store');
%!   netcdflib ('close', nc2);
%!   expect_same (interop ('zarr_store.py', 'dump', fullfile (work, store)), before, ...
%!                'python3-zarr afterwards');
%! end

## What NCZarr in Debian's netCDF-C cannot do fails cleanly: zip storage is not built,
## strings would leave a store that cannot be closed (refused before netCDF-C sees them),
## and deflation and checksums (which netCDF-C would drop without a word) are refused before
## netCDF-C sees them, switching them off being allowed; unlimited dimensions and
## user-defined types are refused by netCDF-C.
%!test
%! expect_error (failure ('create', url ('z.zip', 'nczarr,zip'), p ('NC_NETCDF4')), ...
%!               'QUARNA:imagesci:netcdf:fileCreateErr');
%! expect_error (failure ('open', url ('nczarr.zarr', 'nczarr,zip'), p ('NC_NOWRITE')), ...
%!               'QUARNA:imagesci:netcdf:libraryFailure', '''open''', 'NC_ENOTBUILT');
%! nc = netcdflib ('create', url ('limits.zarr', 'nczarr,file'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 2);
%! netcdflib ('defVar', nc, 'v', p ('NC_INT'), x);
%! netcdflib ('defVarDeflate', nc, 0, false, false, 0);
%! netcdflib ('defVarFletcher32', nc, 0, p ('NC_NOCHECKSUM'));
%! cases = {'defVar', {'s', p('NC_STRING'), x}, 'NC_EBADTYPE';
%!          'putAttString', {-1, 's', p('NC_STRING'), {'a'}}, 'NC_EBADTYPE';
%!          'defDim', {'t', p('NC_UNLIMITED')}, 'NC_EDIMSIZE';
%!          'defVarDeflate', {0, false, true, 4}, '(-136)';
%!          'defVarDeflate', {0, true, false, 0}, '(-136)';
%!          'defVarFletcher32', {0, p('NC_FLETCHER32')}, '(-136)';
%!          'defVlen', {'vl', p('NC_INT')}, 'NC_ENOTNC4'};
%! cellfun (@(op, args, status) expect_error (failure (op, nc, args{:}), ...
%!   'QUARNA:imagesci:netcdf:libraryFailure', ['''' op ''''], status), ...
%!   cases(:, 1), cases(:, 2), cases(:, 3));
%! netcdflib ('putAttText', nc, -1, 'ok', p ('NC_CHAR'), 'kept');
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', url ('limits.zarr', 'nczarr,file'), p ('NC_NOWRITE'));
%! assert (netcdflib ('getAttText', nc, -1, 'ok'), 'kept');
%! netcdflib ('close', nc);
