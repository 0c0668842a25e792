function xtype = user_type_id (ncid, datatype)
  ## The id of the user-defined type whose Datatype (as type_name gives it, 'enum:NAME',
  ## ...) is DATATYPE, or [] when the file has none. netCDF-C numbers the types of a file
  ## consecutively from 32 whatever their group, so the ids are walked until one is missing.
  xtype = [];
  id = 32;
  while (true)
    try
      name = type_name (ncid, id);
    catch
      return;
    end
    if (strcmp (name, datatype))
      xtype = id;
      return;
    end
    id += 1;
  end
end
