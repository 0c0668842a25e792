function row = type_row (xtype)
  ## The type_table row of an atomic type number.
  t = type_table ();
  row = t(xtype);
end
