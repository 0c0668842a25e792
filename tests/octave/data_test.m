## Data and attributes through a file: every class both ways, raw bytes, Unicode text,
## string arrays and Vlen data, checked against an independent reader where it matters.

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

## Reads FILE with python3-netcdf4 and returns what CODE prints (v is the dataset).
%!function out = python_read (file, code)
%!  script = sprintf ("import netCDF4, sys\nv = netCDF4.Dataset(sys.argv[1])\nv.set_auto_mask(False)\n%s\n", code);
%!  py = [tempname() '.py'];
%!  fid = fopen (py, 'w');
%!  fputs (fid, script);
%!  fclose (fid);
%!  [status, out] = system (sprintf ('/usr/bin/python3 "%s" "%s"', py, file));
%!  unlink (py);
%!  assert (status == 0, '%s', out);
%!endfunction

## Every numeric type, with its extremes, in the class its operations give and take.
%!test
%! types = {'NC_DOUBLE', 'Double', 'double';  'NC_FLOAT', 'Float', 'single';
%!          'NC_INT64', 'Int64', 'int64';  'NC_UINT64', 'Uint64', 'uint64';
%!          'NC_INT', 'Int', 'int32';  'NC_UINT', 'Uint', 'uint32';
%!          'NC_SHORT', 'Short', 'int16';  'NC_USHORT', 'Ushort', 'uint16';
%!          'NC_BYTE', 'Schar', 'int8';  'NC_UBYTE', 'Uchar', 'uint8'};
%! file = fullfile (work, 'numeric.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! dims = [netcdflib('defDim', nc, 'y', 2), netcdflib('defDim', nc, 'x', 3)];
%! data = cell (rows (types), 1);
%! for k = 1:rows (types)
%!   c = types{k, 3};
%!   if (isinteger (cast (0, c)))
%!     data{k} = cast ([intmin(c) 0 1; 2 3 intmax(c)], c);
%!   else
%!     data{k} = cast ([-realmax(c) 0 1; 2 -Inf realmin(c)], c);
%!   end
%!   varid(k) = netcdflib ('defVar', nc, lower (types{k, 2}), p (types{k, 1}), dims);
%! end
%! netcdflib ('endDef', nc);
%! for k = 1:rows (types)
%!   netcdflib (['putVar' types{k, 2}], nc, varid(k), data{k});
%!   back = netcdflib (['getVar' types{k, 2}], nc, varid(k));
%!   assert (class (back), types{k, 3});
%!   assert (back, data{k});
%! end
%! netcdflib ('close', nc);
%! out = python_read (file, "print(v['int64'][0, 0], v['uint64'][2, 1], v['short'][:].tolist())");
%! assert (strtrim (out), '-9223372036854775808 18446744073709551615 [[-32768, 2], [0, 3], [1, 32767]]');

## NC_CHAR data is raw bytes: all 256 of them survive a write and a read.
%!test
%! file = fullfile (work, 'bytes.nc');
%! nc = netcdflib ('create', file, 'NC_CLOBBER');
%! n = netcdflib ('defDim', nc, 'n', 256);
%! row = netcdflib ('defVar', nc, 'row', p ('NC_CHAR'), n);
%! col = netcdflib ('defVar', nc, 'col', p ('NC_CHAR'), n);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarText', nc, row, char (0:255));
%! netcdflib ('putVarText', nc, col, char (255:-1:0)');
%! assert (double (netcdflib ('getVarText', nc, row)), (0:255)');
%! assert (double (netcdflib ('getVarText', nc, col)), (255:-1:0)');
%! netcdflib ('close', nc);
%! out = python_read (file, "print(bytes(v['row'][:]).hex())");
%! assert (strtrim (out), lower (reshape (dec2hex (0:255, 2)', 1, [])));

## Names and attribute text carry any Unicode text; string data round-trips from cells.
%!test
%! file = fullfile (work, 'text.nc');
%! name = char ([84 101 109 112 195 169 114 97 116 117 114 101]);   # Température
%! text = [name ' ' char([240 159 152 128 32 226 130 172])];
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! d = netcdflib ('defDim', nc, 'd', 3);
%! v = netcdflib ('defVar', nc, name, p ('NC_STRING'), d);
%! netcdflib ('putAttText', nc, v, 'long_name', p ('NC_CHAR'), text);
%! netcdflib ('putAttString', nc, v, 'one', p ('NC_STRING'), text);
%! netcdflib ('putAttString', nc, v, 'list', p ('NC_STRING'), {'a', name, ''});
%! netcdflib ('endDef', nc);
%! strings = {text; 'plain'; char([195 169])};
%! netcdflib ('putVarString', nc, v, strings);
%! assert (netcdflib ('inqVarID', nc, name), v);
%! assert (netcdflib ('getAttText', nc, v, 'long_name'), text);
%! assert (netcdflib ('getAttString', nc, v, 'one'), {text});
%! list = netcdflib ('getAttString', nc, v, 'list');
%! assert (list(1:2), {'a', name});
%! assert (isempty (list{3}) && ischar (list{3}));
%! assert (netcdflib ('getVarString', nc, v), strings);
%! netcdflib ('close', nc);
%! out = python_read (file, ["x = v['" name "']\nprint(x.long_name == x.one, x.long_name.encode().hex(), x[0].encode().hex())"]);
%! expected = sprintf ('True %s %s', lower (reshape (dec2hex (double (text), 2)', 1, [])), ...
%!                     lower (reshape (dec2hex (double (text), 2)', 1, [])));
%! assert (strtrim (out), expected);

## Vlen data: cells of numeric columns, and cells of char rows for an NC_STRING base.
%!test
%! file = fullfile (work, 'vlen.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! d = netcdflib ('defDim', nc, 'd', 2);
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! strs = netcdflib ('defVlen', nc, 'strs', p ('NC_STRING'));
%! vi = netcdflib ('defVar', nc, 'vi', ints, d);
%! vs = netcdflib ('defVar', nc, 'vs', strs, d);
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarVlen', nc, vi, {int32([1; 2; 3]); int32(7)});
%! netcdflib ('putVarVlen', nc, vs, {{'x', 'yz'}; {char([195 169])}});
%! assert (netcdflib ('getVarVlen', nc, vi), {int32([1; 2; 3]); int32(7)});
%! assert (netcdflib ('getVarVlen', nc, vs), {{'x'; 'yz'}; {char([195 169])}});
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
