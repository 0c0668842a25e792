## Storage settings of variables from Octave: chunking of the netCDF-4 classic model and
## fill values of every type. (Chunking and filters are checked against python3-netcdf4
## and ncdump in interop_attributes_test.)

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

## A netCDF-4 file of the classic model has chunking and checksums to inquire.
%!test
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
%!   {c, false, char([195 169])}, 'netcdf:badScalarArgument',     {'FILLVALUE'};
%!   {d, false, [1 2]},           'netcdf:fillValueBadArgument',  {};
%!   {i, false, []},              'netcdf:badScalarArgument',     {'FILLVALUE'};
%!   {i, 0, int32(1)},            'netcdf:expectedLogicalType',   {'FILL FLAG'};
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

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
