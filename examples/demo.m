## netcdflib demo: the netCDF-C interface from GNU Octave, one operation per call.
## From the repository: octave-cli --no-gui --no-history examples/demo.m (uses build/octave);
## for another build, put the absolute path of its octave/ directory on the path first.

if (exist ('netcdflib') != 3)
  addpath (fullfile (fileparts (mfilename ('fullpath')), '..', 'build', 'octave'));
end
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

work = tempname ();
mkdir (work);
file = fullfile (work, 'demo.nc');

## A netCDF-4 file: a group, an unlimited dimension, variables of several types.
ncid = netcdflib ('create', file, p ('NC_NETCDF4'));
netcdflib ('putAttText', ncid, p ('NC_GLOBAL'), 'title', p ('NC_CHAR'), 'netcdflib demo');
time = netcdflib ('defDim', ncid, 'time', p ('NC_UNLIMITED'));
station = netcdflib ('defDim', ncid, 'station', 3);
names = netcdflib ('defVar', ncid, 'station_name', p ('NC_STRING'), station);
obs = netcdflib ('defGrp', ncid, 'observations');
## Dimensions in Octave's order, the reverse of netCDF's: temperature(time, station).
temp = netcdflib ('defVar', obs, 'temperature', p ('NC_FLOAT'), [station time]);
netcdflib ('putAttText', obs, temp, 'units', p ('NC_CHAR'), 'degC');
count = netcdflib ('defVar', obs, 'count', p ('NC_INT'), [station time]);
netcdflib ('endDef', ncid);

netcdflib ('putVarString', ncid, names, {'Zürich'; 'Tromsø'; 'Kyōto'});
temperature = single ([11.5 12.25 9.0 8.5; -3.0 -4.5 -2.0 -1.25; 18.0 19.5 21.0 20.75]);
netcdflib ('putVaraFloat', obs, temp, [0 0], size (temperature), temperature);
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
  t = netcdflib ('getVarFloat', grp, netcdflib ('inqVarID', grp, 'temperature'));
  printf ('    temperature [%s] read back as %s %s, mean %.2f %s\n', ...
          netcdflib ('getAttText', grp, 0, 'units'), class (t), mat2str (size (t)), ...
          mean (t(:)), ifelse (isequal (t, temperature), '(as written)', '(DIFFERS)'));
end

## Failures are Octave errors with the library's message identifiers.
try
  netcdflib ('inqVarID', ncid, 'no_such_variable');
catch err
  printf ('\ncaught %s:\n  %s\n', err.identifier, err.message);
end
netcdflib ('close', ncid);

confirm_recursive_rmdir (false, 'local');
rmdir (work, 's');
