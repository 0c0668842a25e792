function mode = create_mode (format)
  ## The create mode of a format name.
  p = @(name) netcdflib ('parameter', name);
  switch (lower (format))
    case 'netcdf4'
      mode = p ('NC_NETCDF4');
    case 'netcdf4_classic'
      mode = p ('NC_NETCDF4') + p ('NC_CLASSIC_MODEL');
    case 'classic'
      mode = p ('NC_CLOBBER');
    case '64bit_offset'
      mode = p ('NC_64BIT_OFFSET');
    case '64bit_data'
      mode = 32;                  # NC_64BIT_DATA, which netcdflib does not name
    otherwise
      error ('ncdataset:badArgument', ['ncdataset: ''Format'' must be ''netcdf4'', ' ...
             '''netcdf4_classic'', ''classic'', ''64bit_offset'' or ''64bit_data'', not ''%s'''], format);
  end
end
