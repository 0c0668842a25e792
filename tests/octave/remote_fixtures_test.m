## Real OPeNDAP server responses, DAP2 and DAP4, read from files by netCDF-C: every variable
## and attribute read here equals what ncdump prints for the same URL. (DAP2 over HTTP:
## remote_http_test.)

%!shared fixtures, urls
%! fixtures = getenv ('NETCDFLIB_REMOTE_FIXTURES');
%! assert (exist (fullfile (fixtures, 'dap4'), 'dir') == 7, ...
%!         'no fixtures at "%s" (NETCDFLIB_REMOTE_FIXTURES)', fixtures);
%! urls = @(kind, suffix, fragment) cellfun (@(f) ['file://' ...
%!   fullfile(fixtures, kind, f(1:end-numel (suffix))) fragment], ...
%!   {dir(fullfile (fixtures, kind, ['*' suffix])).name}, 'UniformOutput', false);

## Datasets, variables, enum or opaque ones and compound or vlen ones (read leaf by leaf)
## among them; nothing is left uncompared.
%!test
%! counts = ncdump_compare ('DAP2 by file://', urls ('dap2', '.dds', ''));
%! assert (counts(1) >= 40 && counts(2) > 100 && counts(6) == 0);
%! counts = ncdump_compare ('DAP4 by file://', urls ('dap4', '.dap', '#dap4'));
%! assert (counts(1) >= 25 && counts(2) > 20 && all (counts(4:5) >= 12) && counts(6) == 0);

## netCDF-C's DAP4 debug line stays out of Octave's output, and only that line: ncdump
## prints it on standard error for the same URL.
%!test
%! url = ['file://' fullfile(fixtures, 'dap4', 'test_atomic_types.nc') '#dap4'];
%! [~, dumped] = system (sprintf ('"%s" "%s" 2>&1 >/dev/null', getenv ('NETCDFLIB_NCDUMP'), url));
%! assert (! isempty (strfind (dumped, 'checksumhack=')));
%! [status, out] = octave_run (sprintf (['nc = netcdflib (''open'', ''%s'', ''NC_NOWRITE'');\n' ...
%!   'printf (''%%d\\n'', netcdflib (''getVarInt'', nc, 4));\n' ...
%!   'netcdflib (''getVarDouble'', nc, 8);\nnetcdflib (''close'', nc);\n' ...
%!   'fprintf (stderr, ''after\\n'');'], url));
%! assert (status == 0 && isempty (strfind (out, 'checksumhack')), out);
%! assert (strncmp (out, sprintf ("2147483647\nafter\n"), 17), out);
