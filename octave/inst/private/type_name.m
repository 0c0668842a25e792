function name = type_name (ncid, xtype)
  ## The Datatype of a variable of type XTYPE: an Octave class, 'char', 'string', or
  ## 'vlen:NAME', 'opaque:NAME', 'enum:NAME', 'compound:NAME' for user-defined types.
  if (xtype >= 1 && xtype <= 12)
    name = type_row (xtype).class;
    return;
  end
  [tname, ~, ~, ~, cls] = netcdflib ('inqUserType', ncid, xtype);
  kinds = {'vlen', 'opaque', 'enum', 'compound'};
  name = [kinds{cls - 12} ':' tname];
end
