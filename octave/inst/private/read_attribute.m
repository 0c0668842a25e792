function value = read_attribute (ncid, varid, attname, what)
  ## The value of an attribute in the class of its type (text as char, strings as a cell).
  ctx = sprintf ('attribute "%s" of %s', attname, what);
  xtype = nccall (ctx, 'inqAtt', ncid, varid, attname);
  if (xtype >= 1 && xtype <= 12)
    op = ['getAtt' type_row(xtype).suffix];
  else
    op = ['getAtt' data_suffix(struct ('ncid', ncid, 'xtype', xtype, 'name', attname), 'read')];
  end
  value = nccall (ctx, op, ncid, varid, attname);
end
