## netcdflib demo: first the dataset interface (ncdataset: variables by name, 1-based
## subsets, CF decoding), then the netCDF-C interface beneath it, one operation per call.
## From the repository: octave-cli --no-gui --no-history examples/demo.m (uses build/octave);
## for another build, put the absolute path of its octave/ directory on the path first.

here = fileparts (mfilename ('fullpath'));
if (exist ('netcdflib') != 3)
  addpath (fullfile (here, '..', 'build', 'octave'));
end
if (isempty (which ('ncdataset')))
  addpath (fullfile (here, '..', 'octave', 'inst'));
end

work = tempname ();
mkdir (work);

## ---- The dataset interface -----------------------------------------------------------
printf ('== ncdataset: the dataset interface ==\n\n');
file = fullfile (work, 'sst.nc');
ds = ncdataset (file, 'c', 'Format', 'netcdf4');
ds.defineDimension ('lon', 4);
ds.defineDimension ('lat', 3);
ds.defineDimension ('time', Inf);
ds.setAttribute ('', 'title', 'ncdataset demo');
## Stored as packed shorts: the interface packs on write and unpacks on read.
ds.defineVariable ('sst', 'int16', {'lon', 'lat', 'time'}, 'Deflate', 4, 'Shuffle', true, ...
                   'FillValue', int16 (-32767), 'Attributes', ...
                   {'units', 'K', 'scale_factor', 0.01, 'add_offset', 290});
sst = 290 + reshape (mod ((1:120) * 37, 500), 4, 3, 10) / 100;
sst(2, 2, 3) = NaN;                                   # a missing value
ds.write ('sst', sst);
disp (ds)                                             # the header, as ncdump -h shows it
## The first 3 records of the second latitude, every other longitude from the second to
## the end (count Inf): 1-based, in Octave's order.
[box, missing] = ds.read ('sst', [2 2 1], [Inf 1 3], [2 1 1]);
printf ('sst(2:2:end, 2, 1:3), decoded (%s), NaN where missing:\n', class (box));
disp (squeeze (box));
printf ('missing elements: %d; largest packing error %.1e K\n', nnz (missing), ...
        max (abs (ds.read ('sst')(:) - sst(:))));
raw = ds.read ('sst', [2 2 3], [1 1 1], 'Decode', false);
printf ('element (2,2,3) as stored: %d %s (the _FillValue)\n', raw, class (raw));
v = ds.Variables;
printf ('variable %s: %s %s over {%s}, chunks %s, deflate %d\n', v.Name, v.Datatype, ...
        mat2str (v.Size), strjoin (v.Dimensions, ', '), mat2str (v.ChunkSize), v.Deflate);
try
  ds.read ('salinity');
catch err
  printf ('caught %s:\n  %s\n', err.identifier, err.message);
end
ds.close ();

## ---- Beneath it: netcdflib, netCDF-C one operation per call -----------------------------
printf ('\n== netcdflib: the netCDF-C interface beneath ==\n\n');
p = @(name) netcdflib ('parameter', name);

function name = type_name (xtype)
  types = {'NC_BYTE', 'NC_CHAR', 'NC_SHORT', 'NC_INT', 'NC_FLOAT', 'NC_DOUBLE', 'NC_UBYTE', ...
           'NC_USHORT', 'NC_UINT', 'NC_INT64', 'NC_UINT64', 'NC_STRING'};
  codes = cellfun (@(t) netcdflib ('parameter', t), types);
  name = sprintf ('type %d', xtype);
  if (any (codes == xtype))
    name = types{codes == xtype};
  end
end

function s = ifelse (cond, yes, no)
  if (cond)
    s = yes;
  else
    s = no;
  end
end

printf ('netCDF-C %s, %d named constants\n\n', netcdflib ('inqLibVers'), ...
        numel (netcdflib ('getConstantNames')));

file = fullfile (work, 'demo.nc');

## A netCDF-4 file: a group, an unlimited dimension, variables of several types.
ncid = netcdflib ('create', file, p ('NC_NETCDF4'));
global_id = p ('NC_GLOBAL');
netcdflib ('putAttText', ncid, global_id, 'title', p ('NC_CHAR'), 'netcdflib demo');
netcdflib ('putAttString', ncid, global_id, 'keywords', p ('NC_STRING'), {'demo', 'Grüße'});
time = netcdflib ('defDim', ncid, 'time', p ('NC_UNLIMITED'));
station = netcdflib ('defDim', ncid, 'station', 3);
names = netcdflib ('defVar', ncid, 'station_name', p ('NC_STRING'), station);
## A variable-length type: each station has its own number of samples.
ragged = netcdflib ('defVlen', ncid, 'ragged_int', p ('NC_INT'));
samples = netcdflib ('defVar', ncid, 'samples', ragged, station);
obs = netcdflib ('defGrp', ncid, 'observations');
## Dimensions in Octave's order, the reverse of netCDF's: temperature(time, station).
temp = netcdflib ('defVar', obs, 'temperature', p ('NC_FLOAT'), [station time]);
netcdflib ('putAttText', obs, temp, 'units', p ('NC_CHAR'), 'degC');
netcdflib ('putAttDouble', obs, temp, 'valid_range', p ('NC_FLOAT'), [-50 50]);
## Chunked along both dimensions (Octave's order again), shuffled and deflated.
netcdflib ('defVarChunking', obs, temp, p ('NC_CHUNKED'), [3 2]);
netcdflib ('defVarDeflate', obs, temp, true, true, 4);
count = netcdflib ('defVar', obs, 'count', p ('NC_INT'), [station time]);
netcdflib ('defVarFill', obs, count, false, int32 (-1));
netcdflib ('endDef', ncid);

netcdflib ('putVarString', ncid, names, {'Zürich'; 'Tromsø'; 'Kyōto'});
netcdflib ('putVarVlen', ncid, samples, {int32([4 8 15]'); int32(16); int32([23 42]')});
temperature = single ([11.5 12.25 9.0 8.5; -3.0 -4.5 -2.0 -1.25; 18.0 19.5 21.0 20.75]);
netcdflib ('putVaraFloat', obs, temp, [0 0], size (temperature), temperature);
## One more record: a subset write past the end grows the unlimited dimension.
netcdflib ('putVaraFloat', obs, temp, [0 4], [3 1], single ([7.75; 0.5; 22.25]));
temperature(:, 5) = [7.75; 0.5; 22.25];
netcdflib ('putVaraInt', obs, count, [0 0], [3 4], int32 (reshape (1:12, 3, 4)));
netcdflib ('close', ncid);

## Read it back and describe it through the inquiry operations.
ncid = netcdflib ('open', file, 'NC_NOWRITE');
[ndims, nvars, ngatts, unlimdimid] = netcdflib ('inq', ncid);
printf ('%s: %s; dimensions %d, variables %d, global attributes %d\n', ...
        file, netcdflib ('inqFormat', ncid), ndims, nvars, ngatts);
printf ('  title: "%s"\n', netcdflib ('getAttText', ncid, p ('NC_GLOBAL'), 'title'));
for dimid = netcdflib ('inqDimIDs', ncid, false)
  [name, len] = netcdflib ('inqDim', ncid, dimid);
  printf ('  dimension %-8s %d%s\n', name, len, ifelse (dimid == unlimdimid, ' (unlimited)', ''));
end
station_names = netcdflib ('getVarString', ncid, netcdflib ('inqVarID', ncid, 'station_name'));
printf ('  stations: %s\n', strjoin (station_names', ', '));
for grp = netcdflib ('inqGrps', ncid)
  printf ('  group %s\n', netcdflib ('inqGrpNameFull', grp));
  for varid = netcdflib ('inqVarIDs', grp)
    [name, xtype, dimids] = netcdflib ('inqVar', grp, varid);
    dimnames = arrayfun (@(d) netcdflib ('inqDim', grp, d), fliplr (dimids), 'UniformOutput', false);
    printf ('    variable %s(%s), %s\n', name, strjoin (dimnames, ', '), type_name (xtype));
  end
  tid = netcdflib ('inqVarID', grp, 'temperature');
  t = netcdflib ('getVarFloat', grp, tid);
  printf ('    temperature [%s] read back as %s %s, mean %.2f %s\n', ...
          netcdflib ('getAttText', grp, tid, 'units'), class (t), mat2str (size (t)), ...
          mean (t(:)), ifelse (isequal (t, temperature), '(as written)', '(DIFFERS)'));
  [xtype, len] = netcdflib ('inqAtt', grp, tid, 'valid_range');
  printf ('    valid_range: %s of %d values, %s\n', type_name (xtype), len, ...
          mat2str (netcdflib ('getAttDouble', grp, tid, 'valid_range')));
  [storage, chunks] = netcdflib ('inqVarChunking', grp, tid);
  [shuffle, deflate, level] = netcdflib ('inqVarDeflate', grp, tid);
  printf ('    storage %s %s, shuffle %d, deflate %d at level %d\n', storage, ...
          mat2str (chunks), shuffle, deflate, level);
  every_other = netcdflib ('getVarsFloat', grp, tid, [0 0], [3 3], [1 2]);
  printf ('    records 1, 3, 5 by stride: %s\n', mat2str (every_other));
  [no_fill, fill] = netcdflib ('inqVarFill', grp, netcdflib ('inqVarID', grp, 'count'));
  printf ('    count fill value %d (%s)\n', fill, class (fill));
end
printf ('  keywords: %s\n', strjoin (netcdflib ('getAttString', ncid, p ('NC_GLOBAL'), 'keywords'), ', '));
ragged = netcdflib ('getVarVlen', ncid, netcdflib ('inqVarID', ncid, 'samples'));
printf ('  samples per station: %s\n', strjoin (cellfun (@(c) mat2str (c'), ragged', ...
        'UniformOutput', false), ' | '));

## Failures are Octave errors with the library's message identifiers.
try
  netcdflib ('inqVarID', ncid, 'no_such_variable');
catch err
  printf ('\ncaught %s:\n  %s\n', err.identifier, err.message);
end
netcdflib ('close', ncid);

confirm_recursive_rmdir (false, 'local');
rmdir (work, 's');
