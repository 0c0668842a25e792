## Compression filters, quantization and byte order: what is written here python3-netcdf4
## sees.

%!shared work, p
%! work = work_dir ();
%! p = @(name) netcdflib ('parameter', name);

## Written here with each setting: the inquiries and python3-netcdf4 agree; the file, closed,
## has no bytes for closeMem to give. defs: name, operation, its arguments.
%!test
%! file = fullfile (work, 'here.nc');
%! nc = netcdflib ('create', file, 'netcdf4');
%! x = netcdflib ('defDim', nc, 'x', 1000);
%! defs = {'sz',  'defVarSzip',     {32, 8}   # NN coding;
%!   'bz',  'defVarBzip2',    {5};
%!   'lz',  'defVarFilter',   {32004, []};
%!   'bg',  'defVarQuantize', {'bitgroom', 3};
%!   'gbr', 'defVarQuantize', {'GRANULARBITROUND', 4};
%!   'br',  'defVarQuantize', {3, 10};
%!   'be',  'defVarEndian',   {'big'}};
%! for k = 1:rows (defs)
%!   v(k) = netcdflib ('defVar', nc, defs{k, 1}, p ('NC_FLOAT'), x);
%!   netcdflib (defs{k, 2}, nc, v(k), defs{k, 3}{:});
%! end
%! netcdflib ('defVarDeflate', nc, v(4), true, true, 1);
%! netcdflib ('endDef', nc);
%! for k = 1:rows (defs)
%!   netcdflib ('putVarFloat', nc, v(k), single (pi * (1:1000) .^ 1.5));
%! end
%! [got{1:2}] = netcdflib ('inqVarSzip', nc, v(1));
%! [got{3:4}] = netcdflib ('inqVarBzip2', nc, v(2));
%! [got{5:6}] = netcdflib ('inqVarQuantize', nc, v(6));
%! got = [got, {netcdflib('inqVarFilterIds', nc, v(3)), netcdflib('inqVarEndian', nc, v(7)), ...
%!              netcdflib('inqVarFilterIds', nc, v(7))}];
%! assert (isequal (got, {32, 8, true, 5, 'BitRound', 10, 32004, 'big', []}), 'inquiries');
%! here = netcdflib ('getVarFloat', nc, v(6));
%! netcdflib ('close', nc);
%! expect_error (failure ('closeMem', nc), 'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EBADID');
%! out = python ([
%!   "ds = netCDF4.Dataset(sys.argv[1])\n" ...
%!   "for name, v in ds.variables.items():\n" ...
%!   "    f = v.filters()\n" ...
%!   "    print(name, f['szip'], f['bzip2'], f['complevel'], f['zlib'], v.quantization(),\n" ...
%!   "          v.endian())\n" ...
%!   "print(*ds['br'][:].view('uint32')[:3])\n"], file);
%! expected = {
%!   "sz {'coding': 'nn', 'pixels_per_block': 8} False 0 False None little"
%!   "bz False True 5 False None little"
%!   "lz False False 0 False None little"
%!   "bg False False 1 True (3, 'BitGroom') little"
%!   "gbr False False 0 False (4, 'GranularBitRound') little"
%!   "br False False 0 False (10, 'BitRound') little"
%!   "be False False 0 False None big"
%!   mat2str(double (typecast (here(1:3), 'uint32'))', 12)(2:end-1)};
%! assert (strsplit (strtrim (out), "\n")', expected);
