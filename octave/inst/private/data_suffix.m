function s = data_suffix (v, verb)
  ## Suffix of the typed netcdflib operations that read or write (VERB) variable V.
  if (v.xtype >= 1 && v.xtype <= 12)
    s = type_row (v.xtype).suffix;
    return;
  end
  [~, ~, ~, ~, cls] = netcdflib ('inqUserType', v.ncid, v.xtype);
  if (cls == 13)
    s = 'Vlen';
  else
    error ('ncdataset:badType', '"%s" is of %s, which cannot be %s here', ...
           v.name, type_name (v.ncid, v.xtype), verb);
  end
end
