function s = data_suffix (xtype)
  ## Suffix of the netcdflib operations that move data of type XTYPE: the typed rows for
  ## atomic types, the untyped ones (data in the type's own form) for user-defined types.
  s = '';
  if (xtype >= 1 && xtype <= 12)
    s = type_row (xtype).suffix;
  end
end
