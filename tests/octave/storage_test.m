## Storage settings of variables from Octave: chunking in Octave's dimension order,
## deflate and shuffle, Fletcher-32 checksums and fill values of every type.

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

%!function s = dump_header (file)
%!  [status, s] = system (sprintf ('"%s" -hs "%s"', getenv ('NETCDFLIB_NCDUMP'), file));
%!  assert (status, 0);
%!endfunction

## Chunk sizes go in and come out in Octave's order; the file holds them in netCDF's.
%!test
%! file = fullfile (work, 'chunks.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! dims = [netcdflib('defDim', nc, 'x', 10), netcdflib('defDim', nc, 'y', 6), ...
%!         netcdflib('defDim', nc, 'z', 4)];
%! grid = netcdflib ('defVar', nc, 'grid', p ('NC_FLOAT'), dims);
%! column = netcdflib ('defVar', nc, 'column', p ('NC_INT'), dims(1:2));
%! flat = netcdflib ('defVar', nc, 'flat', p ('NC_DOUBLE'), dims(1:2));
%! netcdflib ('defVarChunking', nc, grid, p ('NC_CHUNKED'), [5 3 2]);
%! netcdflib ('defVarChunking', nc, column, p ('NC_CHUNKED'), [10; 1]);
%! netcdflib ('defVarChunking', nc, flat, p ('NC_CONTIGUOUS'), []);
%! expected = {grid, 'chunked', [5 3 2]; column, 'chunked', [10 1]; flat, 'contiguous', []};
%! for k = 1:rows (expected)
%!   [storage, sizes] = netcdflib ('inqVarChunking', nc, expected{k, 1});
%!   expect_same ({storage, sizes}, expected(k, 2:3), expected{k, 2});
%! end
%! expect_error (call_failure ('defVarChunking', nc, grid, p ('NC_CHUNKED'), [5 3]), ...
%!               'QUARNA:imagesci:netcdf:invalidChunkParameter', '(2)', '(3)');
%! expect_error (call_failure ('defVarChunking', nc, grid, 7, [5 3 2]), ...
%!               'QUARNA:imagesci:netcdf:unrecognizedChunkStorage');
%! expect_error (call_failure ('defVarChunking', nc, grid, p ('NC_CHUNKED'), [5 NaN 2]), ...
%!               'QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType', 'chunk dims');
%! ## A negative size wraps round to one far too big for netCDF-C.
%! for sizes = {[5 7 2], [5 -3 2]}
%!   expect_error (call_failure ('defVarChunking', nc, grid, p ('NC_CHUNKED'), sizes{1}), ...
%!                 'QUARNA:imagesci:netcdf:libraryFailure', '''defVarChunking''', 'NC_EBADCHUNK');
%! end
%! [~, sizes] = netcdflib ('inqVarChunking', nc, grid);
%! expect_same (sizes, [5 3 2]);
%! netcdflib ('close', nc);
%! header = dump_header (file);
%! for line = {'float grid(z, y, x) ;', 'grid:_ChunkSizes = 2, 3, 5 ;', ...
%!             'column:_ChunkSizes = 1, 10 ;', 'flat:_Storage = "contiguous" ;'}
%!   assert (! isempty (strfind (header, line{1})), line{1});
%! end

## Deflate and shuffle; with the deflate flag false the level is never looked at.
%!test
%! file = fullfile (work, 'deflate.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 8);
%! packed = netcdflib ('defVar', nc, 'packed', p ('NC_INT'), x);
%! netcdflib ('defVarDeflate', nc, packed, true, true, 5);
%! [shuffle, deflate, level] = netcdflib ('inqVarDeflate', nc, packed);
%! expect_same ({shuffle, deflate, level}, {true, true, 5});
%! levels = {'any text', struct('a', 1), {}, NaN, -3, [1 2 3], int8(100), true, ''};
%! for k = 1:numel (levels)
%!   v = netcdflib ('defVar', nc, sprintf ('plain%d', k), p ('NC_INT'), x);
%!   netcdflib ('defVarDeflate', nc, v, mod (k, 2) == 1, false, levels{k});
%!   [shuffle, deflate, level] = netcdflib ('inqVarDeflate', nc, v);
%!   expect_same ({shuffle, deflate, level}, {mod(k, 2) == 1, false, 0}, sprintf ('level %d', k));
%! end
%! expect_error (call_failure ('defVarDeflate', nc, packed, true, 1, 5), ...
%!               'QUARNA:imagesci:netcdf:expectedLogicalType', 'deflate flag');
%! expect_error (call_failure ('defVarDeflate', nc, packed, 'yes', true, 5), ...
%!               'QUARNA:imagesci:netcdf:expectedLogicalType', 'shuffle flag');
%! expect_error (call_failure ('defVarDeflate', nc, packed, true, true, 'x'), ...
%!               'QUARNA:imagesci:netcdf:badScalarArgument', 'deflate level');
%! fresh = netcdflib ('defVar', nc, 'fresh', p ('NC_INT'), x);
%! expect_error (call_failure ('defVarDeflate', nc, fresh, false, true, 10), ...
%!               'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EINVAL');
%! netcdflib ('close', nc);
%! header = dump_header (file);
%! for line = {'packed:_DeflateLevel = 5 ;', 'packed:_Shuffle = "true" ;', ...
%!             'plain1:_Shuffle = "true" ;'}
%!   assert (! isempty (strfind (header, line{1})), line{1});
%! end
%! assert (isempty (strfind (header, 'plain2:_Shuffle')));
%! assert (numel (strfind (header, '_DeflateLevel')), 1);

## Fletcher-32 checksums on and off. (netCDF-C 4.9.0 switches them on even when asked
## for NC_NOCHECKSUM, so "off" is a variable left without them.)
%!test
%! file = fullfile (work, 'checksum.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 8);
%! on = netcdflib ('defVar', nc, 'on', p ('NC_SHORT'), x);
%! off = netcdflib ('defVar', nc, 'off', p ('NC_SHORT'), x);
%! netcdflib ('defVarFletcher32', nc, on, p ('NC_FLETCHER32'));
%! expect_same (netcdflib ('inqVarFletcher32', nc, on), 'FLETCHER32', 'on');
%! expect_same (netcdflib ('inqVarFletcher32', nc, off), 'NOCHECKSUM', 'off');
%! expect_error (call_failure ('defVarFletcher32', nc, off, 'on'), ...
%!               'QUARNA:imagesci:netcdf:badScalarArgument', 'checksum setting');
%! expect_same (netcdflib ('inqVarFletcher32', nc, off), 'NOCHECKSUM', 'off');
%! netcdflib ('close', nc);
%! header = dump_header (file);
%! assert (! isempty (strfind (header, 'on:_Fletcher32 = "true" ;')));
%! assert (numel (strfind (header, '_Fletcher32')), 1);

## Files without netCDF-4 storage: the inquiries refuse them before looking at the variable.
%!test
%! formats = {'NC_CLOBBER', 'NC_64BIT_OFFSET', 32};   # 32 is NC_64BIT_DATA (CDF5)
%! for k = 1:numel (formats)
%!   nc = netcdflib ('create', fullfile (work, sprintf ('old%d.nc', k)), formats{k});
%!   x = netcdflib ('defDim', nc, 'x', 3);
%!   v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), x);
%!   for varid = [v, 99]
%!     expect_error (call_failure ('inqVarChunking', nc, varid), ...
%!                   'QUARNA:imagesci:netcdf:attemptedChunkingInquiryOnNetcdf3File');
%!     expect_error (call_failure ('inqVarFletcher32', nc, varid), ...
%!                   'QUARNA:imagesci:netcdf:attemptedChecksumInquiryOnNetcdf3File');
%!   end
%!   for call = {{'defVarChunking', nc, v, p('NC_CHUNKED'), 3}, ...
%!               {'defVarDeflate', nc, v, false, true, 1}, ...
%!               {'defVarFletcher32', nc, v, p('NC_FLETCHER32')}}
%!     expect_error (call_failure (call{1}{:}), 'QUARNA:imagesci:netcdf:libraryFailure', ...
%!                   ['''' call{1}{1} ''''], 'NC_ENOTNC4');
%!   end
%!   netcdflib ('close', nc);
%! end
%! mode = bitor (p ('NC_NETCDF4'), p ('NC_CLASSIC_MODEL'));
%! nc = netcdflib ('create', fullfile (work, 'nc4classic.nc'), mode);
%! v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), netcdflib ('defDim', nc, 'x', 3));
%! netcdflib ('defVarChunking', nc, v, p ('NC_CHUNKED'), 3);
%! [storage, sizes] = netcdflib ('inqVarChunking', nc, v);
%! expect_same ({storage, sizes, netcdflib('inqVarFletcher32', nc, v)}, ...
%!              {'chunked', 3, 'NOCHECKSUM'}, 'netCDF-4 classic model');
%! netcdflib ('close', nc);

## Fill values of every type, set and read back in the variable's class; unwritten data
## reads as the fill.
%!test
%! file = fullfile (work, 'fills.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 2);
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! words = netcdflib ('defVlen', nc, 'words', p ('NC_STRING'));
%! nested = netcdflib ('defVlen', nc, 'nested', ints);
%! e = char ([195 169]);   # é
%! fills = {   # type, fill given, fill read, data read operation
%!   'NC_BYTE',   int8(-5),                  int8(-5),                  'Schar';
%!   'NC_UBYTE',  200,                       uint8(200),                'Uchar';
%!   'NC_SHORT',  -300.7,                    int16(-300),               'Short';
%!   'NC_USHORT', uint16(60000),             uint16(60000),             'Ushort';
%!   'NC_INT',    int32(-700000),            int32(-700000),            'Int';
%!   'NC_UINT',   4e9,                       uint32(4e9),               'Uint';
%!   'NC_INT64',  intmin('int64') + 1,       intmin('int64') + 1,       'Int64';
%!   'NC_UINT64', intmax('uint64') - 1,      intmax('uint64') - 1,      'Uint64';
%!   'NC_FLOAT',  single(-1.5),              single(-1.5),              'Float';
%!   'NC_DOUBLE', NaN,                       NaN,                       'Double';
%!   'NC_DOUBLE', -Inf,                      -Inf,                      'Double';
%!   'NC_CHAR',   'x',                       'x',                       'Text';
%!   'NC_CHAR',   '',                        char(0),                   'Text';
%!   'NC_STRING', ['n/' e],                  {['n/' e]},                'String';
%!   ints,        {int32([1; 2; 3])},        {int32([1; 2; 3])},        'Vlen';
%!   words,       {{'a', e}},                {{'a'; e}},                'Vlen';
%!   nested,      {{int32(5), int32([6; 7])}}, {{int32(5); int32([6; 7])}}, 'Vlen';
%! };
%! for k = 1:rows (fills)
%!   xtype = fills{k, 1};
%!   if (ischar (xtype))
%!     xtype = p (xtype);
%!   end
%!   varid(k) = netcdflib ('defVar', nc, sprintf ('v%d', k), xtype, x);
%!   netcdflib ('defVarFill', nc, varid(k), false, fills{k, 2});
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:rows (fills)
%!   where = sprintf ('row %d', k);
%!   [nofill, value] = netcdflib ('inqVarFill', nc, varid(k));
%!   expect_same ({nofill, value}, {false, fills{k, 3}}, where);
%!   data = netcdflib (['getVar' fills{k, 4}], nc, varid(k));
%!   expect_same (data, [fills{k, 3}; fills{k, 3}], [where ' data']);
%! end
%! netcdflib ('close', nc);

## Fill values that do not fit the variable are refused, each under its own error.
%!test
%! nc = netcdflib ('create', fullfile (work, 'badfills.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 2);
%! c = netcdflib ('defVar', nc, 'c', p ('NC_CHAR'), x);
%! d = netcdflib ('defVar', nc, 'd', p ('NC_DOUBLE'), x);
%! i = netcdflib ('defVar', nc, 'i', p ('NC_INT'), x);
%! cases = {
%!   {c, false, 'ab'},            'netcdf:badScalarArgument',     {'FILLVALUE', '7-bit ASCII char'};
%!   {c, false, char([195 169])}, 'netcdf:badScalarArgument',     {'FILLVALUE'};
%!   {d, false, []},              'netcdf:fillValueBadArgument',  {};
%!   {d, false, [1 2]},           'netcdf:fillValueBadArgument',  {};
%!   {i, false, []},              'netcdf:badScalarArgument',     {'FILLVALUE'};
%!   {i, false, Inf},             'validate:argumentOutOfBounds', {};
%!   {i, false, 'a'},             'netcdf:badScalarArgument',     {'FILLVALUE'};
%!   {i, 0, int32(1)},            'netcdf:expectedLogicalType',   {'FILL FLAG'};
%!   {i, [true true], int32(1)},  'netcdf:expectedLogicalType',   {'FILL FLAG'};
%! };
%! for k = 1:rows (cases)
%!   expect_error (call_failure ('defVarFill', nc, cases{k, 1}{:}), ...
%!                 ['QUARNA:imagesci:' cases{k, 2}], cases{k, 3}{:});
%! end
%! for v = [c d i]
%!   expect_same (netcdflib ('inqVarFill', nc, v), false);
%! end
%! netcdflib ('close', nc);

## A variable without a fill setting reports netCDF's default fill. With no fill asked for,
## netCDF-C hands out its default in a classic file; a netCDF-4 file leaves the value alone,
## so only its class and shape are known. (netCDF-C refuses no fill for NC_STRING.)
%!test
%! nc4 = netcdflib ('create', fullfile (work, 'defaults.nc'), p ('NC_NETCDF4'));
%! nc3 = netcdflib ('create', fullfile (work, 'defaults3.nc'), 'NC_CLOBBER');
%! x = [netcdflib('defDim', nc4, 'x', 2), netcdflib('defDim', nc3, 'x', 2)];
%! types = {'BYTE', 'CHAR', 'SHORT', 'INT', 'FLOAT', 'DOUBLE', 'UBYTE', 'USHORT', 'UINT', ...
%!          'INT64', 'UINT64', 'STRING'};
%! for k = 1:numel (types)
%!   expected = p (['NC_FILL_' types{k}]);
%!   files = [nc4, nc3](1:1 + (k <= 6));
%!   for f = 1:numel (files)
%!     nc = files(f);
%!     for nofill = [false true](1:1 + ! strcmp (types{k}, 'STRING'))
%!       name = sprintf ('%s_%d', types{k}, nofill);
%!       v = netcdflib ('defVar', nc, name, p (['NC_' types{k}]), x(f));
%!       if (nofill)
%!         netcdflib ('defVarFill', nc, v, true, 'never read');
%!       end
%!       [flag, value] = netcdflib ('inqVarFill', nc, v);
%!       where = sprintf ('%s, file %d, no fill %d', types{k}, f, nofill);
%!       if (nofill && nc == nc4)
%!         expect_same ({flag, class(value), size(value)}, {true, class(expected), [1 1]}, where);
%!       else
%!         expect_same ({flag, value}, {nofill, expected}, where);
%!       end
%!     end
%!   end
%! end
%! netcdflib ('close', nc3);
%! netcdflib ('close', nc4);

## No fill for a Vlen variable is refused as for strings: netCDF-C 4.9.0 would accept it
## and then fail to write, close or abort the file.
%!test
%! nc = netcdflib ('create', fullfile (work, 'vlen_nofill.nc'), p ('NC_NETCDF4'));
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! r = netcdflib ('defVar', nc, 'r', ints, netcdflib ('defDim', nc, 'x', 2));
%! expect_error (call_failure ('defVarFill', nc, r, true, struct ()), ...
%!               'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EINVAL');
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
