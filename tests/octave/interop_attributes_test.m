## Attributes and storage settings against independent readers and writers: what is written
## here is what python3-netcdf4 and ncdump -hs see, and what python3-netcdf4 writes reads
## back here.

%!shared work, p, e
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! e = char ([195 169]);   # é

## Runs the python3-netcdf4 script CODE with the given arguments and returns its output.
%!function out = python (code, varargin)
%!  script = [tempname() '.py'];
%!  fid = fopen (script, 'w');
%!  fputs (fid, code);
%!  fclose (fid);
%!  args = sprintf (' "%s"', varargin{:});
%!  [status, out] = system (sprintf ('/usr/bin/python3 "%s"%s', script, args));
%!  unlink (script);
%!  assert (status == 0, '%s', out);
%!endfunction

## Written here: python3-netcdf4 sees every attribute with its type and value and every
## variable with its chunking, filters and fill value; ncdump -hs sees the same settings.
%!test
%! file = fullfile (work, 'here.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! dims = [netcdflib('defDim', nc, 'x', 10), netcdflib('defDim', nc, 'y', 6), ...
%!         netcdflib('defDim', nc, 'z', 4)];
%! grid = netcdflib ('defVar', nc, 'grid', p ('NC_FLOAT'), dims);
%! netcdflib ('defVarChunking', nc, grid, p ('NC_CHUNKED'), [5 3 2]);
%! netcdflib ('defVarDeflate', nc, grid, true, true, 4);
%! netcdflib ('defVarFletcher32', nc, grid, p ('NC_FLETCHER32'));
%! netcdflib ('defVarFill', nc, grid, false, single (-1.5));
%! plain = netcdflib ('defVar', nc, 'plain', p ('NC_INT'), dims(1));
%! netcdflib ('defVarChunking', nc, plain, p ('NC_CONTIGUOUS'), []);
%! netcdflib ('defVarDeflate', nc, plain, false, false, 'not read');
%! netcdflib ('defVarFill', nc, plain, false, int32 (-7));
%! nofill = netcdflib ('defVar', nc, 'nofill', p ('NC_DOUBLE'), dims(1));
%! netcdflib ('defVarFill', nc, nofill, true, []);
%! s = netcdflib ('defVar', nc, 's', p ('NC_STRING'), dims(1));
%! netcdflib ('defVarFill', nc, s, false, ['n/' e]);
%! c = netcdflib ('defVar', nc, 'c', p ('NC_CHAR'), dims(1));
%! netcdflib ('defVarFill', nc, c, false, '');
%! u = netcdflib ('defVar', nc, 'u', p ('NC_UINT64'), dims(1));
%! netcdflib ('defVarFill', nc, u, false, intmax ('uint64'));
%! netcdflib ('putAttText', nc, grid, 'units', p ('NC_CHAR'), ['caf' e]);
%! netcdflib ('putAttText', nc, grid, 'zero', p ('NC_CHAR'), char ([97 98 0 99 100]));
%! netcdflib ('putAttDouble', nc, grid, 'scale', p ('NC_INT'), [2.7; -2.7; 3]);
%! netcdflib ('putAttString', nc, grid, 'names', p ('NC_STRING'), {'a', [e 't' e], ''});
%! netcdflib ('putAttDouble', nc, grid, 'empty', p ('NC_DOUBLE'), []);
%! g = p ('NC_GLOBAL');
%! netcdflib ('putAttText', nc, g, 'title', p ('NC_CHAR'), 'written here');
%! netcdflib ('copyAtt', nc, grid, 'units', nc, g);
%! netcdflib ('renameAtt', nc, g, 'units', 'Einheit');
%! netcdflib ('putAttInt', nc, g, 'gone', p ('NC_INT'), int32 (1));
%! netcdflib ('delAtt', nc, g, 'gone');
%! netcdflib ('close', nc);
%!
%! out = python ([
%!   "import sys\nimport numpy as np\nimport netCDF4\n" ...
%!   "ds = netCDF4.Dataset(sys.argv[1])\n" ...
%!   "def show(where, obj):\n" ...
%!   "    for name in obj.ncattrs():\n" ...
%!   "        x = obj.getncattr(name)\n" ...
%!   "        if not isinstance(x, (str, list)):\n" ...
%!   "            x = np.asarray(x)\n" ...
%!   "            x = (x.dtype.name, x.tolist())\n" ...
%!   "        print(where, name, repr(x))\n" ...
%!   "show('global', ds)\n" ...
%!   "for name, v in ds.variables.items():\n" ...
%!   "    f = v.filters()\n" ...
%!   "    print(name, v.dimensions, v.chunking(),\n" ...
%!   "          f['zlib'], f['complevel'], f['shuffle'], f['fletcher32'])\n" ...
%!   "    show(name, v)\n"], file);
%! expected = {
%!   "global title 'written here'"
%!   ["global Einheit 'caf" e "'"]
%!   "grid ('z', 'y', 'x') [2, 3, 5] True 4 True True"
%!   "grid _FillValue ('float32', -1.5)"
%!   ["grid units 'caf" e "'"]
%!   "grid zero 'abcd'"
%!   "grid scale ('int32', [2, -2, 3])"
%!   ["grid names ['a', '" e "t" e "', '']"]
%!   "grid empty ('float64', [])"
%!   "plain ('x',) contiguous False 0 False False"
%!   "plain _FillValue ('int32', -7)"
%!   "nofill ('x',) contiguous False 0 False False"
%!   "s ('x',) contiguous False 0 False False"
%!   ["s _FillValue 'n/" e "'"]
%!   "c ('x',) contiguous False 0 False False"
%!   "c _FillValue ('bytes8', b'')"
%!   "u ('x',) contiguous False 0 False False"
%!   "u _FillValue ('uint64', 18446744073709551615)"
%! };
%! expect_same (strsplit (strtrim (out), "\n")', expected, 'python3-netcdf4');
%!
%! [status, header] = system (sprintf ('"%s" -hs "%s"', getenv ('NETCDFLIB_NCDUMP'), file));
%! assert (status, 0);
%! ## python drops the zero byte of "zero"; ncdump shows the stored bytes.
%! assert (! isempty (strfind (header, "\tfloat grid(z, y, x) ;\n")));
%! for line = {'grid:_ChunkSizes = 2, 3, 5 ;', ...
%!             'grid:_DeflateLevel = 4 ;', 'grid:_Shuffle = "true" ;', ...
%!             'grid:_Fletcher32 = "true" ;', 'grid:_FillValue = -1.5f ;', ...
%!             'plain:_Storage = "contiguous" ;', 'plain:_FillValue = -7 ;', ...
%!             'nofill:_NoFill = "true" ;', ['string s:_FillValue = "n/' e '" ;'], ...
%!             'c:_FillValue = "" ;', 'u:_FillValue = 18446744073709551615ULL ;', ...
%!             'grid:zero = "ab\000cd" ;', ['grid:units = "caf' e '" ;'], ...
%!             'grid:scale = 2, -2, 3 ;'}
%!   assert (! isempty (strfind (header, ["\t\t" line{1} "\n"])), line{1});
%! end
%! for setting = {'_ChunkSizes', '_DeflateLevel', '_Shuffle', '_Fletcher32', '_NoFill'}
%!   assert (numel (strfind (header, setting{1})), 1, setting{1});
%! end

## Written by python3-netcdf4: text attributes, chunking, compression, checksums and fill
## values read here as python set them. (Numeric attributes of every type are compared both
## ways in interop_matrix_test.)
%!test
%! file = fullfile (work, 'python.nc');
%! python ([
%!   "import sys\nimport numpy as np\nimport netCDF4\n" ...
%!   "ds = netCDF4.Dataset(sys.argv[1], 'w', format='NETCDF4')\n" ...
%!   "ds.createDimension('y', 4)\n" ...
%!   "ds.createDimension('x', 6)\n" ...
%!   "v = ds.createVariable('v', 'i4', ('y', 'x'), zlib=True, complevel=7, shuffle=False,\n" ...
%!   "                      fletcher32=True, chunksizes=(2, 3), fill_value=-99)\n" ...
%!   "w = ds.createVariable('w', 'f8', ('x',), contiguous=True, fill_value=np.nan)\n" ...
%!   "n = ds.createVariable('n', 'u2', ('x',), fill_value=False)\n" ...
%!   "s = ds.createVariable('s', str, ('x',), fill_value='n/\\u00e9')\n" ...
%!   "v.setncattr('utf8', 'caf\\u00e9'.encode())\n" ...
%!   "v.setncattr('zero', b'ab\\x00cd')\n" ...
%!   "v.setncattr('empty', np.array([], 'f8'))\n" ...
%!   "v.units = 'caf\\u00e9'\n" ...
%!   "v.setncattr_string('names', ['a', '\\u00e9t\\u00e9', ''])\n" ...
%!   "ds.title = 'written by python'\n" ...
%!   "ds.close()\n"], file);
%!
%! nc = netcdflib ('open', file, p ('NC_NOWRITE'));
%! [v, w, n, s] = deal (netcdflib ('inqVarID', nc, 'v'), netcdflib ('inqVarID', nc, 'w'), ...
%!                      netcdflib ('inqVarID', nc, 'n'), netcdflib ('inqVarID', nc, 's'));
%! texts = {'utf8', ['caf' e], 'NC_CHAR', 5; 'zero', 'ab', 'NC_CHAR', 5; ...
%!          'empty', char(zeros (1, 0)), 'NC_DOUBLE', 0};
%! for k = 1:rows (texts)
%!   [xtype, len] = netcdflib ('inqAtt', nc, v, texts{k, 1});
%!   expect_same ([xtype, len], [p(texts{k, 3}), texts{k, 4}], texts{k, 1});
%! end
%! expect_same (netcdflib ('getAttText', nc, v, 'utf8'), ['caf' e], 'utf8');
%! expect_same (netcdflib ('getAttText', nc, v, 'zero'), 'ab', 'zero');
%! expect_same (netcdflib ('getAttDouble', nc, v, 'empty'), [], 'empty');
%! expect_same (netcdflib ('getAttString', nc, v, 'units'), {['caf' e]}, 'units');
%! expect_same (netcdflib ('getAttString', nc, v, 'names'), ...
%!              {'a', [e 't' e], char(zeros (1, 0))}, 'names');
%! expect_same (netcdflib ('getAttText', nc, p ('NC_GLOBAL'), 'title'), 'written by python');
%!
%! settings = {
%!   v, {'chunked', [3 2]},     {false, true, 7},  'FLETCHER32', {false, int32(-99)};
%!   w, {'contiguous', []},     {false, false, 0}, 'NOCHECKSUM', {false, NaN};
%!   s, {'contiguous', []},     {false, false, 0}, 'NOCHECKSUM', {false, {['n/' e]}};
%! };
%! for k = 1:rows (settings)
%!   id = settings{k, 1};
%!   [storage, sizes] = netcdflib ('inqVarChunking', nc, id);
%!   [shuffle, deflate, level] = netcdflib ('inqVarDeflate', nc, id);
%!   [nofill, fill] = netcdflib ('inqVarFill', nc, id);
%!   expect_same ({{storage, sizes}, {shuffle, deflate, level}, ...
%!                 netcdflib('inqVarFletcher32', nc, id), {nofill, fill}}, settings(k, 2:end), ...
%!                sprintf ('variable %d', id));
%! end
%! [nofill, fill] = netcdflib ('inqVarFill', nc, n);
%! expect_same ({nofill, class(fill)}, {true, 'uint16'}, 'no fill');
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
