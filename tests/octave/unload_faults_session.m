## Session run by unload_test in an octave-cli of its own: four files with data, taken
## through failed calls and left open, two of them in define mode with definitions pending.
## Prints the identifier and netCDF status of each failure it catches; nc is the last
## file's id.
p = @(name) netcdflib ('parameter', name);
for spec = {'n4data.nc', 'NC_NETCDF4', false;  'cldata.nc', 'NC_CLOBBER', false;
            'n4define.nc', 'NC_NETCDF4', true;  'cldefine.nc', 'NC_CLOBBER', true}'
  nc = netcdflib ('create', spec{1}, p (spec{2}));
  dims = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
  v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), dims);
  netcdflib ('putAttDouble', nc, v, 'scale', p ('NC_DOUBLE'), 0.5);
  netcdflib ('endDef', nc);
  netcdflib ('putVarInt', nc, v, reshape (int32 (1:6), 3, 2));
  ## A bad varid, data of the wrong class, a name already in use; in define mode, a type
  ## that does not exist, an attribute of a variable that does not.
  failing = {{'getVarInt', nc, 99}, {'putVarDouble', nc, v, int32(ones (3, 2))}, ...
             {'defVar', nc, 'v', p('NC_INT'), dims}, {'defVar', nc, 'bad', 99, dims}, ...
             {'putAttInt', nc, 42, 'a', p('NC_INT'), int32(1)}}(1:3 + 2 * spec{3});
  if (spec{3})
    netcdflib ('redef', nc);
    w = netcdflib ('defVar', nc, 'w', p ('NC_SHORT'), dims(2));
    netcdflib ('putAttText', nc, w, 'note', p ('NC_CHAR'), 'pending');
  end
  for c = failing
    try
      netcdflib (c{1}{:});
      printf ('not caught %s\n', c{1}{1});
    catch err
      ## The netCDF status the message names, '-' when it names none.
      printf ('caught %s %s\n', err.identifier, ...
              [regexp(err.message, 'NC_\w+(?=\))', 'match', 'once') '-'](1:max (1, end - 1)));
    end
  end
end
