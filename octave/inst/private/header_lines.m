function lines = header_lines (ncid, ind, is_root)
  ## The lines ncdump -h prints for group NCID after its opening line, each led by IND,
  ## the last the closing brace.
  lines = {};
  dimids = netcdflib ('inqDimIDs', ncid, false);
  varids = netcdflib ('inqVarIDs', ncid);
  [~, ~, ngatts] = netcdflib ('inq', ncid);
  nv = numel (varids);
  decl = cell (1, nv);
  xtypes = zeros (1, nv);
  for k = 1:nv
    [name, xtypes(k), vdims, natts] = netcdflib ('inqVar', ncid, varids(k));
    dnames = arrayfun (@(d) netcdflib ('inqDim', ncid, d), vdims(end:-1:1), 'UniformOutput', false);
    shape = '';
    if (! isempty (dnames))
      shape = ['(' strjoin(dnames, ', ') ')'];
    end
    decl{k} = [{sprintf('%s\t%s %s%s ;', ind, cdl_type (ncid, xtypes(k)), name, shape)}, ...
               attribute_lines(ncid, varids(k), name, natts, ind)];
  end
  user = unique (xtypes(xtypes > 12));
  if (! isempty (user))
    lines{end+1} = [ind 'types:'];
    for t = user
      [tname, ~, base, ~, cls] = netcdflib ('inqUserType', ncid, t);
      if (cls == 13)
        lines{end+1} = sprintf ('%s  %s(*) %s ;', ind, cdl_type (ncid, base), tname);
      else
        lines{end+1} = sprintf ('%s  // %s', ind, type_name (ncid, t));
      end
    end
  end
  if (! isempty (dimids))
    lines{end+1} = [ind 'dimensions:'];
    unlim = netcdflib ('inqUnlimDims', ncid);
    for d = dimids
      [name, len] = netcdflib ('inqDim', ncid, d);
      if (any (unlim == d))
        lines{end+1} = sprintf ('%s\t%s = UNLIMITED ; // (%d currently)', ind, name, len);
      else
        lines{end+1} = sprintf ('%s\t%s = %d ;', ind, name, len);
      end
    end
  end
  if (nv)
    lines{end+1} = [ind 'variables:'];
    lines = [lines, decl{:}];
  end
  if (ngatts)
    if (is_root)
      lines(end+1:end+2) = {'', '// global attributes:'};
    else
      lines(end+1:end+2) = {'', [ind '// group attributes:']};
    end
    lines = [lines, attribute_lines(ncid, netcdflib ('parameter', 'NC_GLOBAL'), '', ngatts, ind)];
  end
  try
    grps = netcdflib ('inqGrps', ncid);
  catch
    grps = [];          # not a netCDF-4 file
  end
  for g = grps
    name = netcdflib ('inqGrpName', g);
    sub = header_lines (g, [ind '  '], false);
    sub{end} = sprintf ('%s  } // group %s', ind, name);
    lines = [lines, {'', sprintf('%sgroup: %s {', ind, name)}, sub];
  end
  lines{end+1} = [ind '}'];
end

function lines = attribute_lines (ncid, varid, vname, natts, ind)
  lines = cell (1, natts);
  for k = 1:natts
    name = netcdflib ('inqAttName', ncid, varid, k - 1);
    xtype = netcdflib ('inqAtt', ncid, varid, name);
    lead = '';
    if (xtype == 12 || xtype > 12)
      lead = [cdl_type(ncid, xtype) ' '];
    end
    if (xtype <= 12)
      value = netcdflib (['getAtt' type_row(xtype).suffix], ncid, varid, name);
      text = cdl_values (value, xtype);
    else
      text = '...';
    end
    lines{k} = sprintf ('%s\t\t%s%s:%s = %s ;', ind, lead, vname, name, text);
  end
end

function s = cdl_type (ncid, xtype)
  if (xtype <= 12)
    s = type_row (xtype).cdl;
  else
    s = netcdflib ('inqUserType', ncid, xtype);
  end
end
