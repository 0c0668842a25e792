## Real OPeNDAP server responses, DAP2 and DAP4, read from files by netCDF-C: every variable
## and attribute read here equals what ncdump prints for the same URL. (DAP2 over HTTP:
## remote_http_test.)

%!shared fixtures, urls
%! fixtures = getenv ('NETCDFLIB_REMOTE_FIXTURES');
%! assert (exist (fullfile (fixtures, 'dap4'), 'dir') == 7, ...
%!         'no fixtures at "%s" (NETCDFLIB_REMOTE_FIXTURES)', fixtures);
%! urls = @(kind, suffix, fragment) remote_sample (cellfun (@(f) ['file://' ...
%!   fullfile(fixtures, kind, f(1:end-numel (suffix))) fragment], ...
%!   {dir(fullfile (fixtures, kind, ['*' suffix])).name}, 'UniformOutput', false));

%!test
%! dap2 = urls ('dap2', '.dds', '');
%! counts = ncdump_compare ('DAP2 by file://', dap2);
%! assert (numel (dap2) * remote_sample () >= 40 && counts(1) * remote_sample () > 100);

%!test
%! dap4 = urls ('dap4', '.dap', '#dap4');
%! counts = ncdump_compare ('DAP4 by file://', dap4);
%! assert (numel (dap4) * remote_sample () >= 25 && counts(1) * remote_sample () > 20);
%! ## Enum and opaque variables and attributes are among them, read in their own type.
%! assert (counts(3) * remote_sample () >= 12);
%! ## So are compound and vlen ones, leaf by leaf, and nothing is left uncompared.
%! assert (counts(4) * remote_sample () >= 12 && counts(5) == 0);

## netCDF-C's DAP4 debug line stays out of Octave's output, and only that line: ncdump
## prints it on standard error for the same URL.
%!test
%! url = ['file://' fullfile(fixtures, 'dap4', 'test_atomic_types.nc') '#dap4'];
%! [~, dumped] = system (sprintf ('"%s" "%s" 2>&1 >/dev/null', getenv ('NETCDFLIB_NCDUMP'), url));
%! assert (! isempty (strfind (dumped, 'checksumhack=')));
%! code = sprintf (['nc = netcdflib (''open'', ''%s'', ''NC_NOWRITE'');' ...
%!                  'printf (''%%d\\n'', netcdflib (''getVarInt'', nc, 4));' ...
%!                  'netcdflib (''getVarDouble'', nc, 8); netcdflib (''close'', nc);' ...
%!                  'fprintf (stderr, ''after\\n'');'], url);
%! [status, out] = system (sprintf ('"%s" --no-gui --norc --eval "addpath (''%s''); %s" 2>&1', ...
%!   getenv ('NETCDFLIB_OCTAVE_CLI'), getenv ('NETCDFLIB_OCTAVE_PATH'), code));
%! assert (status, 0);
%! assert (isempty (strfind (out, 'checksumhack')), out);
%! assert (strncmp (out, sprintf ("2147483647\nafter\n"), 17), out);
