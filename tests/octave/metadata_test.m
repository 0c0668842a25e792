## Dimensions, groups, variables and user types from Octave, checked against ncdump and
## against types that ncgen made.

%!shared work, p, lib, vlen
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! lib = 'QUARNA:imagesci:netcdf:libraryFailure';
%! vlen = 13;   # netCDF-C's NC_VLEN type class

## Dimensions: fixed and unlimited ones, found by name and listed in definition order, with
## and without the parents' ones.
%!test
%! nc = netcdflib ('create', fullfile (work, 'dims.nc'), p ('NC_NETCDF4'));
%! x = netcdflib ('defDim', nc, 'x', 3);
%! t = netcdflib ('defDim', nc, 'time', 0);
%! u = netcdflib ('defDim', nc, 'u', p ('NC_UNLIMITED'));
%! g = netcdflib ('defGrp', nc, 'g');
%! z = netcdflib ('defDim', g, 'z', 4);
%! for c = {nc, x, 'x', 3;  nc, t, 'time', 0;  nc, u, 'u', 0;  g, z, 'z', 4;  g, x, 'x', 3}'
%!   [name, len] = netcdflib ('inqDim', c{1}, c{2});
%!   expect_same ({name, len}, c(3:4)', ['inqDim ' c{3}]);
%!   expect_same (netcdflib ('inqDimID', c{1}, c{3}), c{2}, ['inqDimID ' c{3}]);
%! end
%! expect_same (netcdflib ('inqUnlimDims', nc), [t u]);
%! expect_same (netcdflib ('inqUnlimDims', g), []);
%! expect_same (netcdflib ('inqDimIDs', nc, false), [x t u]);
%! expect_same (netcdflib ('inqDimIDs', g, false), z);
%! expect_same (sort (netcdflib ('inqDimIDs', g, true)), sort ([x t u z]));
%! netcdflib ('renameDim', nc, x, 'east');
%! expect_same (netcdflib ('inqDimID', g, 'east'), x);
%! expect_error (call_failure ('inqDimID', nc, 'x'), lib, '''inqDimID''', 'NC_EBADDIM');
%! expect_error (call_failure ('defDim', nc, 'time', 2), lib, '''defDim''', 'NC_ENAMEINUSE');
%! expect_error (call_failure ('inqDimIDs', nc, 1), ...
%!               'QUARNA:imagesci:netcdf:expectedLogicalType', '''include_parents flag''');
%! expect_error (call_failure ('inqDimIDs', nc), 'QUARNA:imagesci:validate:wrongNumberOfInputs');
%! netcdflib ('close', nc);
%! ## A classic file has at most one unlimited dimension.
%! nc = netcdflib ('create', fullfile (work, 'dims3.nc'), 'NC_CLOBBER');
%! expect_same (netcdflib ('inqUnlimDims', nc), []);
%! netcdflib ('defDim', nc, 'rec', 0);
%! expect_error (call_failure ('defDim', nc, 'rec2', 0), lib, 'NC_EUNLIMIT');
%! netcdflib ('close', nc);

## Groups three levels deep: names, full names and parents, before and after reopening.
%!test
%! file = fullfile (work, 'groups.nc');
%! ete = char ([195 169 116 195 169]);   # été
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! a = netcdflib ('defGrp', nc, 'a');
%! sibling = netcdflib ('defGrp', nc, 'sibling');
%! b = netcdflib ('defGrp', a, ete);
%! c = netcdflib ('defGrp', b, 'c');
%! netcdflib ('close', nc);
%! nc = netcdflib ('open', file, 'NC_NOWRITE');
%! top = netcdflib ('inqGrps', nc);
%! assert (size (top), [1 2]);
%! a = netcdflib ('inqNcid', nc, 'a');
%! expect_same (top, [a, netcdflib('inqNcid', nc, 'sibling')]);
%! b = netcdflib ('inqNcid', a, ete);
%! c = netcdflib ('inqNcid', b, 'c');
%! expect_same (netcdflib ('inqGrps', a), b);
%! expect_same (netcdflib ('inqGrps', c), []);
%! levels = {nc, '/', '/', [];  a, 'a', '/a', nc;  b, ete, ['/a/' ete], a;
%!           c, 'c', ['/a/' ete '/c'], b};
%! for k = 1:rows (levels)
%!   [id, name, full, parent] = levels{k, :};
%!   expect_same (netcdflib ('inqGrpName', id), name, full);
%!   expect_same (netcdflib ('inqGrpNameFull', id), full, full);
%!   if (! isempty (parent))
%!     expect_same (netcdflib ('inqGrpParent', id), parent, full);
%!   end
%! end
%! expect_error (call_failure ('inqGrpParent', nc), lib, '''inqGrpParent''', 'NC_ENOGRP');
%! expect_error (call_failure ('inqNcid', nc, 'c'), lib, '''inqNcid''', 'NC_ENOGRP');
%! netcdflib ('close', nc);
%! dump = ncdump_text ('-h', file);
%! assert (regexp (dump, ['group: a \{.*group: ' ete ' \{.*group: c \{.*group: sibling']));
%! nc = netcdflib ('create', fullfile (work, 'groups3.nc'), 'NC_CLOBBER');
%! expect_error (call_failure ('defGrp', nc, 'a'), lib, '''defGrp''', 'NC_ENOTNC4');
%! netcdflib ('close', nc);

## Variables keep Octave's dimension order; the file holds netCDF's, the reverse.
%!test
%! file = fullfile (work, 'vars.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! d = [netcdflib('defDim', nc, 'd0', 2), netcdflib('defDim', nc, 'd1', 3), ...
%!      netcdflib('defDim', nc, 'd2', 4)];
%! v = netcdflib ('defVar', nc, 'v', p ('NC_FLOAT'), d(1:2));
%! cube = netcdflib ('defVar', nc, 'cube', p ('NC_SHORT'), d);
%! line = netcdflib ('defVar', nc, 'line', p ('NC_INT64'), d(3));
%! s = netcdflib ('defVar', nc, 's', p ('NC_DOUBLE'), []);
%! netcdflib ('putAttText', nc, cube, 'units', p ('NC_CHAR'), 'K');
%! cases = {v, 'v', p('NC_FLOAT'), d(1:2), 0;  cube, 'cube', p('NC_SHORT'), d, 1;
%!          line, 'line', p('NC_INT64'), d(3), 0;  s, 's', p('NC_DOUBLE'), [], 0};
%! for k = 1:rows (cases)
%!   [name, xtype, dimids, natts] = netcdflib ('inqVar', nc, cases{k, 1});
%!   expect_same ({name, xtype, dimids, natts}, cases(k, 2:5), cases{k, 2});
%!   expect_same (netcdflib ('inqVarID', nc, cases{k, 2}), cases{k, 1}, cases{k, 2});
%! end
%! expect_same (netcdflib ('inqVarIDs', nc), [v cube line s]);
%! netcdflib ('renameVar', nc, s, 'scalar');
%! expect_same (netcdflib ('inqVarID', nc, 'scalar'), s);
%! expect_error (call_failure ('inqVar', nc, -1), 'QUARNA:imagesci:netcdf:inqVarNcGlobal');
%! expect_error (call_failure ('inqVar', nc, 17), lib, '''inqVar''', 'NC_ENOTVAR');
%! expect_error (call_failure ('defVar', nc, 'bad', p ('NC_INT'), [d(1) NaN]), ...
%!               'QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType', '''dimids''');
%! expect_error (call_failure ('defVar', nc, 'bad', p ('NC_INT'), int32 (d(1:2))), ...
%!               'QUARNA:imagesci:netcdf:badRowDatatype', '''dimids''');
%! expect_error (call_failure ('defVar', nc, 'bad', p ('NC_INT'), [d(1) 99]), lib, 'NC_EBADDIM');
%! expect_error (call_failure ('defVar', nc, 'v', p ('NC_INT'), []), lib, 'NC_ENAMEINUSE');
%! expect_same (netcdflib ('inqVarIDs', nc), [v cube line s]);
%! netcdflib ('close', nc);
%! dump = ncdump_text ('-h', file);
%! for decl = {'float v(d1, d0) ;', 'short cube(d2, d1, d0) ;', 'int64 line(d2) ;', ...
%!             'double scalar ;'}
%!   assert (! isempty (strfind (dump, decl{1})), '%s missing from\n%s', decl{1}, dump);
%! end

## Vlen types defined here, nested and in a group, inquired as Vlen and as user types.
%!test
%! file = fullfile (work, 'vlens.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! g = netcdflib ('defGrp', nc, 'g');
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! nested = netcdflib ('defVlen', nc, 'nested', ints);
%! texts = netcdflib ('defVlen', g, 'texts', p ('NC_STRING'));
%! rec = 16;   # sizeof (nc_vlen_t): a length and a pointer
%! for c = {nc, ints, 'ints', p('NC_INT');  nc, nested, 'nested', ints;
%!          g, texts, 'texts', p('NC_STRING')}'
%!   [name, datum, base] = netcdflib ('inqVlen', c{1}, c{2});
%!   expect_same ({name, datum, base}, {c{3}, rec, c{4}}, ['inqVlen ' c{3}]);
%!   [name, sz, base, nfields, cls] = netcdflib ('inqUserType', c{1}, c{2});
%!   expect_same ({name, sz, base, nfields, cls}, {c{3}, rec, c{4}, 0, vlen}, c{3});
%! end
%! expect_error (call_failure ('inqUserType', nc, p ('NC_DOUBLE')), lib, 'NC_EBADTYPE');
%! expect_error (call_failure ('inqVlen', nc, p ('NC_INT')), lib, '''inqVlen''', 'NC_EBADTYPE');
%! expect_error (call_failure ('defVlen', nc, 'ints', p ('NC_SHORT')), lib, '''defVlen''', ...
%!               'NC_ENAMEINUSE');
%! netcdflib ('close', nc);
%! dump = ncdump_text ('-h', file);
%! for decl = {'int(*) ints ;', 'ints(*) nested ;', 'string(*) texts ;'}
%!   assert (! isempty (strfind (dump, decl{1})), '%s missing from\n%s', decl{1}, dump);
%! end
%! nc = netcdflib ('create', fullfile (work, 'vlens3.nc'), 'NC_CLOBBER');
%! expect_error (call_failure ('defVlen', nc, 'ints', p ('NC_INT')), lib, 'NC_ENOTNC4');
%! netcdflib ('close', nc);

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
