function value = read_attribute (ncid, varid, attname, what)
  ## The value of an attribute in the class of its type (text as char, strings as a cell),
  ## user-defined types in their own form.
  ctx = sprintf ('attribute "%s" of %s', attname, what);
  xtype = nccall (ctx, 'inqAtt', ncid, varid, attname);
  value = nccall (ctx, ['getAtt' data_suffix(xtype)], ncid, varid, attname);
end
