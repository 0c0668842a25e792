function t = data_types (which)
  % The atomic types as {netCDF type, operation suffix, Octave class}: 'all' twelve, or the
  % six 'classic' ones that classic and 64-bit offset files hold.
  t = {'NC_DOUBLE', 'Double', 'double';  'NC_FLOAT', 'Float', 'single';
       'NC_INT64', 'Int64', 'int64';  'NC_UINT64', 'Uint64', 'uint64';
       'NC_INT', 'Int', 'int32';  'NC_UINT', 'Uint', 'uint32';
       'NC_SHORT', 'Short', 'int16';  'NC_USHORT', 'Ushort', 'uint16';
       'NC_BYTE', 'Schar', 'int8';  'NC_UBYTE', 'Uchar', 'uint8';
       'NC_CHAR', 'Text', 'char';  'NC_STRING', 'String', 'cell'};
  if (nargin > 0 && strcmp (which, 'classic'))
    t = t(ismember (t(:, 1), {'NC_DOUBLE', 'NC_FLOAT', 'NC_INT', 'NC_SHORT', 'NC_BYTE', ...
                              'NC_CHAR'}), :);
  end
end
