## Variable data against independent readers and writers: Vlen of Vlen, Vlen of strings,
## Vlen of chars and strings that ncgen wrote read here, and written here ncdump prints them
## as it prints ncgen's. (Every atomic type, whole, is compared with python3-netcdf4 both
## ways in interop_matrix_test; subsets against whole reads in data_subset_test.)

%!shared work, p
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);

## Vlen of Vlen and Vlen of strings that ncgen wrote read here; written here, ncdump prints
## them as it prints ncgen's. Vlen text elements hold one byte per character.
%!test
%! e = char ([195 169]);
%! none = char (zeros (1, 0));
%! schema = ["types:\n  int(*) ints ;\n  ints(*) nested ;\n  string(*) texts ;\n" ...
%!           "  char(*) chars ;\ndimensions:\n  n = 2 ;\nvariables:\n" ...
%!           "  nested nn(n) ;\n  texts tt(n) ;\n  string ss(n) ;\n  chars cc(n) ;\n"];
%! ncgen_file (fullfile (work, 'ncgen.nc'), ["netcdf ncgen {\n" schema "data:\n" ...
%!   "  nn = {{1, 2}, {}, {-3}}, {{2147483647}} ;\n" ...
%!   "  tt = {\"a\", \"" e "t" e "\"}, {} ;\n  ss = \"" e "t" e "\", \"\" ;\n}\n"]);
%! nn = {{int32([1; 2]); int32([]); int32(-3)}; {intmax('int32')}};
%! tt = {{'a'; [e 't' e]}; {}};
%! ss = {[e 't' e]; none};
%! nc = netcdflib ('open', fullfile (work, 'ncgen.nc'), 'NC_NOWRITE');
%! read = @(op, name) netcdflib (op, nc, netcdflib ('inqVarID', nc, name));
%! expect_same (read ('getVarVlen', 'nn'), nn, 'nn');
%! expect_same (read ('getVarVlen', 'tt'), tt, 'tt');
%! expect_same (read ('getVarString', 'ss'), ss, 'ss');
%! netcdflib ('close', nc);
%! file = fullfile (work, 'mine.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! ints = netcdflib ('defVlen', nc, 'ints', p ('NC_INT'));
%! nested = netcdflib ('defVlen', nc, 'nested', ints);
%! texts = netcdflib ('defVlen', nc, 'texts', p ('NC_STRING'));
%! chars = netcdflib ('defVlen', nc, 'chars', p ('NC_CHAR'));
%! n = netcdflib ('defDim', nc, 'n', 2);
%! vars = [netcdflib('defVar', nc, 'nn', nested, n), netcdflib('defVar', nc, 'tt', texts, n), ...
%!         netcdflib('defVar', nc, 'ss', p ('NC_STRING'), n), ...
%!         netcdflib('defVar', nc, 'cc', chars, n)];
%! netcdflib ('endDef', nc);
%! netcdflib ('putVarVlen', nc, vars(1), nn);
%! netcdflib ('putVarVlen', nc, vars(2), tt);
%! netcdflib ('putVarString', nc, vars(3), ss);
%! netcdflib ('putVarVlen', nc, vars(4), {'xyz'; ['a' e]});
%! netcdflib ('close', nc);
%! data = @(dump) dump(strfind (dump, 'data:'):end);
%! ncgen_data = data (ncdump_text (fullfile (work, 'ncgen.nc')));
%! mine = data (ncdump_text (file));
%! ## ncgen cannot write Vlen text; é is the one byte 0xE9 there.
%! cc = [' cc = {x, y, z}, {a, ' char(233) '} ;'];
%! expect_same (mine, strrep (ncgen_data, ' cc = {}, {} ;', cc));

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
