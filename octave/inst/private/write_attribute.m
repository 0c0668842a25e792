function write_attribute (ncid, varid, attname, value, what)
  ## Sets an attribute, its type picked by the class of VALUE.
  ctx = sprintf ('attribute "%s" of %s', attname, what);
  if (! ischar (attname) || isempty (attname))
    error ('ncdataset:badArgument', 'setAttribute: the name of an attribute of %s must be text', what);
  end
  if (ischar (value))
    nccall (ctx, 'putAttText', ncid, varid, attname, 2, value);
  elseif (iscellstr (value))
    nccall (ctx, 'putAttString', ncid, varid, attname, 12, value);
  elseif (isnumeric (value) && isreal (value))
    xtype = find (strcmp (class (value), {type_table().class}), 1);
    if (isempty (xtype))
      xtype = 6;
    end
    row = type_row (xtype);
    nccall (ctx, ['putAtt' row.suffix], ncid, varid, attname, xtype, value);
  else
    error ('ncdataset:badType', ['%s: a value of class %s cannot be stored; use char, ' ...
           'a cell of char rows or a real numeric array'], ctx, class (value));
  end
end
