function name = format_name (ncid)
  ## The format name of open file NCID. netcdflib names the formats it knows; CDF5 it
  ## reports by its format code.
  names = {'FORMAT_CLASSIC', 'classic'; 'FORMAT_64BIT', '64bit_offset';
           'FORMAT_NETCDF4', 'netcdf4'; 'FORMAT_NETCDF4_CLASSIC', 'netcdf4_classic'};
  try
    name = names{strcmp (netcdflib ('inqFormat', ncid), names(:, 1)), 2};
  catch err
    name = 'unknown';
    if (! isempty (regexp (err.message, 'format code 5\)', 'once')))
      name = '64bit_data';
    end
  end
end
