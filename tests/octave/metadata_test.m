## Names and user types from Octave: non-ASCII names checked against ncdump, and types
## that ncgen made.

%!shared work, p, lib, vlen
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! lib = 'QUARNA:imagesci:netcdf:libraryFailure';
%! vlen = 13;   # netCDF-C's NC_VLEN type class

## Non-ASCII names travel as UTF-8: dimensions, variables, groups and types, also renamed.
%!test
%! file = fullfile (work, 'unicode.nc');
%! e = char ([195 169]);                             # é
%! temp = ['Temp' e 'rature'];
%! wendu = char ([230 184 169 229 186 166]);         # 温度
%! smile = char ([240 159 152 128]);                 # U+1F600, beyond 16 bits
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! dim = netcdflib ('defDim', nc, temp, 2);
%! grp = netcdflib ('defGrp', nc, ['gr' e 'pe']);
%! type = netcdflib ('defVlen', grp, ['t' smile], p ('NC_UBYTE'));
%! var = netcdflib ('defVar', grp, wendu, type, dim);
%! other = netcdflib ('defDim', nc, 'plain', 3);
%! netcdflib ('renameDim', nc, other, [wendu smile]);
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! grp = netcdflib ('inqNcid', nc, ['gr' e 'pe']);
%! var = netcdflib ('inqVarID', grp, wendu);
%! [name, xtype, dimids] = netcdflib ('inqVar', grp, var);
%! expect_same ({name, dimids}, {wendu, netcdflib('inqDimID', nc, temp)});
%! expect_same (netcdflib ('inqDim', nc, dimids), temp);
%! expect_same (netcdflib ('inqDim', nc, netcdflib ('inqDimID', nc, [wendu smile])), [wendu smile]);
%! expect_same (netcdflib ('inqGrpName', grp), ['gr' e 'pe']);
%! expect_same (netcdflib ('inqGrpNameFull', grp), ['/gr' e 'pe']);
%! expect_same (netcdflib ('inqUserType', grp, xtype), ['t' smile]);
%! expect_same (netcdflib ('inqVlen', grp, xtype), ['t' smile]);
%! expect_same (netcdflib ('inqDimIDs', grp, false), []);
%! parents = [dimids, netcdflib('inqDimID', nc, [wendu smile])];
%! expect_same (sort (netcdflib ('inqDimIDs', grp, true)), sort (parents));
%! netcdflib ('close', nc);
%! dump = ncdump_text ('-h', file);
%! for decl = {[temp ' = 2 ;'], [wendu smile ' = 3 ;'], ['group: gr' e 'pe'], ...
%!             ['ubyte(*) t' smile ' ;'], ['t' smile ' ' wendu '(' temp ') ;']}
%!   assert (! isempty (strfind (dump, decl{1})), '%s missing from\n%s', decl{1}, dump);
%! end

## Compound, enum, opaque and Vlen types that ncgen made are inquired here as netCDF-C
## describes them; their data cannot be converted.
%!test
%! file = fullfile (work, 'ncgen.nc');
%! e = char ([195 169]);
%! ncgen_file (file, ["netcdf types {\ntypes:\n" ...
%!   "  compound pair { int a ; double b(2) ; } ;\n" ...
%!   "  ubyte enum temp" e " { cold = 0, hot = 7, warm = 3 } ;\n" ...
%!   "  opaque(11) blob ;\n  int(*) ragged ;\n  ragged(*) ragged2 ;\n" ...
%!   "dimensions:\n  n = 2 ;\nvariables:\n" ...
%!   "  pair p(n) ;\n  temp" e " e(n) ;\n  blob o ;\n  ragged r(n) ;\n  ragged2 r2 ;\n" ...
%!   "group: sub {\n  types:\n    compound inner { short x ; pair y ; } ;\n" ...
%!   "  variables:\n    inner i ;\n  }\n}\n"]);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! sub = netcdflib ('inqNcid', nc, 'sub');
%! ## Group, variable, name, size, base, fields, class (netCDF-C's NC_OPAQUE 14, NC_ENUM 15,
%! ## NC_COMPOUND 16). Sizes are netCDF-C's in memory: pair is an int, padding to 8 and two
%! ## doubles; inner a short, padding and a pair.
%! cases = {nc, 'p', 'pair', 24, 0, 2, 16;
%!          nc, 'e', ['temp' e], 1, p('NC_UBYTE'), 3, 15;
%!          nc, 'o', 'blob', 11, 0, 0, 14;
%!          nc, 'r', 'ragged', 16, p('NC_INT'), 0, vlen;
%!          nc, 'r2', 'ragged2', 16, -1, 0, vlen;
%!          sub, 'i', 'inner', 32, 0, 2, 16};
%! ragged = [];
%! for k = 1:rows (cases)
%!   [grp, var, expected] = deal (cases{k, 1}, cases{k, 2}, cases(k, 3:7));
%!   [~, xtype] = netcdflib ('inqVar', grp, netcdflib ('inqVarID', grp, var));
%!   assert (xtype >= 32, 'variable %s has atomic type %d', var, xtype);
%!   if (strcmp (var, 'r'))
%!     ragged = xtype;
%!   elseif (strcmp (var, 'r2'))
%!     expected{3} = ragged;
%!   end
%!   [name, sz, base, nfields, cls] = netcdflib ('inqUserType', grp, xtype);
%!   expect_same ({name, sz, base, nfields, cls}, expected, ['inqUserType of ' var]);
%!   if (cls != vlen)
%!     expect_error (call_failure ('getVarVlen', grp, netcdflib ('inqVarID', grp, var)), ...
%!                   'QUARNA:imagesci:netcdf:unrecognizedVarDatatype', sprintf (' %d ', xtype));
%!     expect_error (call_failure ('inqVlen', grp, xtype), lib, 'NC_EBADTYPE');
%!   end
%! end
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
