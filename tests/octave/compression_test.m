## Compression filters, quantization, byte order and in-memory files against python3-netcdf4
## and ncdump: what is written here they see, what python3-netcdf4 writes reads back here
## bit for bit.

%!shared work, p, bits
%! work = work_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! bits = @(x) typecast (single (x(:)), 'uint32');

## Written here with each setting: the inquiries and python3-netcdf4 agree.
%!test
%! file = fullfile (work, 'here.nc');
%! nc = netcdflib ('create', file, 'netcdf4');
%! x = netcdflib ('defDim', nc, 'x', 1000);
%! defs = {  # name, operation, its arguments
%!   'sz',  'defVarSzip',     {32, 8}   # NN coding;
%!   'bz',  'defVarBzip2',    {5};
%!   'lz',  'defVarFilter',   {32004, []};
%!   'bg',  'defVarQuantize', {'bitgroom', 3};
%!   'gbr', 'defVarQuantize', {'GRANULARBITROUND', 4};
%!   'br',  'defVarQuantize', {3, 10};
%!   'be',  'defVarEndian',   {'big'}};
%! data = single (pi * (1:1000) .^ 1.5);
%! for k = 1:rows (defs)
%!   v(k) = netcdflib ('defVar', nc, defs{k, 1}, p ('NC_FLOAT'), x);
%!   netcdflib (defs{k, 2}, nc, v(k), defs{k, 3}{:});
%! end
%! netcdflib ('defVarDeflate', nc, v(4), true, true, 1);
%! netcdflib ('endDef', nc);
%! for k = 1:rows (defs)
%!   netcdflib ('putVarFloat', nc, v(k), data);
%! end
%! got = cell (1, 6);
%! [got{1:2}] = netcdflib ('inqVarSzip', nc, v(1));
%! [got{3:4}] = netcdflib ('inqVarBzip2', nc, v(2));
%! [got{5:6}] = netcdflib ('inqVarQuantize', nc, v(6));
%! assert (isequal ([got, {netcdflib('inqVarFilterIds', nc, v(3)), netcdflib('inqVarEndian', nc, v(7)), ...
%!   netcdflib('inqVarFilterIds', nc, v(7))}], {32, 8, true, 5, 'BitRound', 10, 32004, 'big', []}), 'inquiries');
%! here = netcdflib ('getVarFloat', nc, v(6));
%! netcdflib ('close', nc);
%! out = python ([
%!   "ds = netCDF4.Dataset(sys.argv[1])\n" ...
%!   "for name, v in ds.variables.items():\n" ...
%!   "    f = v.filters()\n" ...
%!   "    print(name, f['szip'], f['bzip2'], f['complevel'], f['zlib'], v.quantization(), v.endian())\n" ...
%!   "print(ds['br'][:].view('uint32')[:3].tolist())\n"], file);
%! expected = {
%!   "sz {'coding': 'nn', 'pixels_per_block': 8} False 0 False None little"
%!   "bz False True 5 False None little"
%!   "lz False False 0 False None little"
%!   "bg False False 1 True (3, 'BitGroom') little"
%!   "gbr False False 0 False (4, 'GranularBitRound') little"
%!   "br False False 0 False (10, 'BitRound') little"
%!   "be False False 0 False None big"
%!   mat2str(double (bits (here(1:3)))', 12)(2:end-1)};
%! out = strsplit (strtrim (out), "\n")';
%! out{end} = strrep (out{end}(2:end-1), ',', '');
%! assert (out, expected);

## Written by python3-netcdf4 (LZ4 by id through ncgen): settings and values read back
## here exactly as python3-netcdf4 reads them.
%!test
%! file = fullfile (work, 'python.nc');
%! python ([
%!   "import numpy as np\n" ...
%!   "ds = netCDF4.Dataset(sys.argv[1], 'w')\n" ...
%!   "ds.createDimension('x', 500)\n" ...
%!   "data = (np.random.default_rng(7).standard_normal(500) * 1e3).astype('f4')\n" ...
%!   "ds.createVariable('sz', 'f4', ('x',), compression='szip', szip_coding='ec', szip_pixels_per_block=16)[:] = data\n" ...
%!   "ds.createVariable('bz', 'f4', ('x',), compression='bzip2', complevel=7)[:] = data\n" ...
%!   "ds.createVariable('bg', 'f4', ('x',), compression='zlib', significant_digits=3)[:] = data\n" ...
%!   "ds.createVariable('br', 'f4', ('x',), significant_digits=9, quantize_mode='BitRound')[:] = data\n" ...
%!   "ds.close()\n" ...
%!   "ds = netCDF4.Dataset(sys.argv[1])\n" ...
%!   "np.concatenate([np.ma.getdata(ds[n][:]) for n in ('sz', 'bz', 'bg', 'br')]).tofile(sys.argv[2])\n"], ...
%!   file, [file '.raw']);
%! lz4 = fullfile (work, 'lz4.nc');
%! ncgen_file (lz4, 'netcdf l { dimensions: x = 4 ; variables: int v(x) ; v:_Filter = "32004" ; data: v = 1, 2, 3, 4 ; }');
%! fid = fopen ([file '.raw']);
%! theirs = reshape (fread (fid, Inf, '*uint32'), 500, 4);
%! fclose (fid);
%! nc = netcdflib ('open', file, 'nowrite');
%! id = @(name) netcdflib ('inqVarID', nc, name);
%! got = cell (1, 8);
%! [got{1:2}] = netcdflib ('inqVarSzip', nc, id ('sz'));
%! [got{3:4}] = netcdflib ('inqVarBzip2', nc, id ('bz'));
%! [got{5:6}] = netcdflib ('inqVarQuantize', nc, id ('bg'));
%! [got{7:8}] = netcdflib ('inqVarQuantize', nc, id ('br'));
%! got{1} = bitand (got{1}, 36);
%! assert (isequal (got, {4, 16, true, 7, 'BitGroom', 3, 'BitRound', 9}), 'inquiries');
%! ours = arrayfun (@(k) bits (netcdflib ('getVarFloat', nc, k)), 0:3, 'UniformOutput', false);
%! assert (isequal ([ours{:}], theirs), 'values differ');
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', lz4, 'nowrite');
%! assert (isequal ({netcdflib('inqVarFilterIds', nc, 0), netcdflib('getVarInt', nc, 0)}, ...
%!                 {32004, int32([1; 2; 3; 4])}), 'LZ4 file');
%! netcdflib ('close', nc);

## A file's bytes opened in memory; a file created in memory, its bytes written to disk
## and read by ncdump.
%!test
%! file = fullfile (work, 'python.nc');
%! fid = fopen (file);
%! bytes = fread (fid, Inf, '*uint8');
%! fclose (fid);
%! nc = netcdflib ('openMem', 'from-bytes.nc', 'nowrite', bytes);
%! assert (numel (netcdflib ('getVarFloat', nc, 0)), 500);
%! assert (isequal (netcdflib ('closeMem', nc), bytes));
%! for mode = {'netcdf4', 'clobber'}
%!   nc = netcdflib ('createMem', 'made.nc', mode{1}, 0);
%!   v = netcdflib ('defVar', nc, 'v', p ('NC_SHORT'), netcdflib ('defDim', nc, 'x', 3));
%!   netcdflib ('endDef', nc);
%!   netcdflib ('putVarShort', nc, v, int16 ([7 8 9]));
%!   made = netcdflib ('closeMem', nc);
%!   assert (isa (made, 'uint8') && columns (made) == 1);
%!   out = fullfile (work, ['made-' mode{1} '.nc']);
%!   fid = fopen (out, 'w');
%!   fwrite (fid, made);
%!   fclose (fid);
%!   assert (! isempty (strfind (ncdump (out), 'v = 7, 8, 9 ;')), mode{1});
%! end
%! expect_error (failure ('closeMem', nc), 'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EBADID');
