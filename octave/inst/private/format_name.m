function name = format_name (format)
  ## The format name of what netcdflib's inqFormat returns.
  names = {'FORMAT_CLASSIC', 'classic'; 'FORMAT_64BIT', '64bit_offset';
           'FORMAT_NETCDF4', 'netcdf4'; 'FORMAT_NETCDF4_CLASSIC', 'netcdf4_classic'};
  name = names{strcmp (format, names(:, 1)), 2};
end
