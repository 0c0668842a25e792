## Real OPeNDAP server responses, DAP2 and DAP4, read from files by netCDF-C: every variable
## and attribute read here, in its own type, equals what is read here of netCDF-C's own copy
## of the same URL (nccopy): what reading remote data adds, nothing lost or changed; and over
## HTTP from a loopback server.

%!shared fixtures, urls
%! fixtures = getenv ('NETCDFLIB_REMOTE_FIXTURES');
%! assert (exist (fullfile (fixtures, 'dap4'), 'dir') == 7, ...
%!         'no fixtures at "%s" (NETCDFLIB_REMOTE_FIXTURES)', fixtures);
%! urls = @(kind, suffix, fragment) cellfun (@(f) ['file://' ...
%!   fullfile(fixtures, kind, f(1:end-numel (suffix))) fragment], ...
%!   {dir(fullfile (fixtures, kind, ['*' suffix])).name}, 'UniformOutput', false);

## Every variable's data and every attribute's value in URL, with their keys
## ('/GROUP/VAR', '/GROUP/VAR:ATT', '/GROUP/:ATT'); USER counts the variables of
## user-defined types.
%!function [keys, values, user] = everything (url)
%!  [keys, values, user, groups, g] = deal ({}, {}, 0, {netcdflib('open', url, 'NC_NOWRITE')}, 0);
%!  while (g < numel (groups))   # groups at every depth
%!    g += 1;
%!    groups = [groups, num2cell(netcdflib ('inqGrps', groups{g}))];
%!  end
%!  for gid = groups
%!    path = regexprep (netcdflib ('inqGrpNameFull', gid{1}), '/$', '');
%!    [~, ~, natts] = netcdflib ('inq', gid{1});
%!    for varid = [-1, netcdflib('inqVarIDs', gid{1})]
%!      key = [path '/'];
%!      if (varid >= 0)
%!        [name, xtype, ~, natts] = netcdflib ('inqVar', gid{1}, varid);
%!        key = [path '/' name];
%!        [keys{end+1}, values{end+1}, user] = deal (key, netcdflib ('getVar', gid{1}, varid), ...
%!                                                  user + (xtype > 12));
%!      end
%!      for a = 0:natts-1
%!        att = netcdflib ('inqAttName', gid{1}, varid, a);
%!        [keys{end+1}, values{end+1}] = deal ([key ':' att], netcdflib ('getAtt', gid{1}, varid, att));
%!      end
%!    end
%!  end
%!  netcdflib ('close', groups{1});
%!endfunction

## Each captured dataset (every k-th, k from NETCDFLIB_REMOTE_SAMPLE): counts of datasets,
## variables, attributes and variables of user-defined types (enum and opaque, compound
## and vlen-of-compound as DAP4 structures and sequences arrive).
%!test
%! k = max (1, str2double (getenv ('NETCDFLIB_REMOTE_SAMPLE')));
%! for kind = {'DAP2', urls('dap2', '.dds', ''), [45 820 941 0];
%!             'DAP4', urls('dap4', '.dap', '#dap4'), [28 56 20 22]}'
%!   counts = zeros (1, 4);
%!   for url = kind{2}(1:k:end)
%!     copy = fullfile (work_dir (), 'copy.nc');
%!     nctool ('nccopy', '-k', 'nc4', url{1}, copy);
%!     [keys, values, user] = everything (url{1});
%!     [copy_keys, copy_values] = everything (copy);
%!     expect_same ({keys, values}, {copy_keys, copy_values}, url{1});
%!     variables = sum (cellfun (@isempty, strfind (keys, ':')));
%!     counts += [1, variables, numel(keys) - variables, user];
%!   end
%!   printf ('%s: %d datasets, %d variables, %d attributes, %d of user-defined types\n', kind{1}, counts);
%!   assert (k > 1 || isequal (counts, kind{3}), '%s: %s', kind{1}, mat2str (counts));
%! end

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

## Over HTTP from a server on 127.0.0.1 (tests/interop/dap_server.py, stopping by itself; run
## without a sanitizer runtime the tests may have preloaded, since python would crawl): a
## DAP2 dataset reads as its response files do. Failures give the mapped status error naming
## the operation, with no descriptor left open: 404, a 200 that is no DAP response, and, once
## the server is gone, a read of a dataset opened before (which still closes) and an open.
%!test
%! portfile = fullfile (work_dir (), 'port');
%! script = fullfile (fileparts (file_in_loadpath ('nctest_helpers.m')), '..', 'interop', ...
%!                    'dap_server.py');
%! system (sprintf (['env -u LD_PRELOAD /usr/bin/python3 "%s" "%s" "%s" 280 >/dev/null 2>&1 & ' ...
%!                   'for i in $(seq 200); do [ -e "%s" ] && break; sleep 0.05; done'], ...
%!                  script, fullfile (fixtures, 'dap2'), portfile, portfile));
%! server = sscanf (fileread (portfile), '%d %d');
%! base = sprintf ('http://127.0.0.1:%d/', server(1));
%! [keys, values] = everything ([base 'test.07']);
%! [file_keys, file_values] = everything (['file://' fullfile(fixtures, 'dap2', 'test.07')]);
%! expect_same ({keys, values}, {file_keys, file_values}, 'over HTTP');
%! nc = netcdflib ('open', [base 'test.07'], 'NC_NOWRITE');
%! before = numel (dir ('/proc/self/fd'));
%! for c = {'nothere.nc', 'libraryFailure', '(-90)';
%!          'garbage/test.07', 'librarydapFailure', 'NC_EDDS';
%!          'test.07', 'librarydapFailure', 'NC_EIO'}'
%!   if (strcmp (c{1}, 'test.07'))   # the server gone
%!     system (sprintf ('kill %d', server(2)));
%!     pause (0.2);
%!     expect_error (failure ('getVarInt', nc, netcdflib ('inqVarID', nc, 'person.age')), ...
%!                   'QUARNA:imagesci:netcdf:librarydapFailure', '''getVarInt''');
%!     netcdflib ('close', nc);
%!     before = numel (dir ('/proc/self/fd'));
%!   end
%!   expect_error (failure ('open', [base c{1}], 'NC_NOWRITE'), ...
%!                 ['QUARNA:imagesci:netcdf:' c{2}], '''open''', c{3});
%!   assert (numel (dir ('/proc/self/fd')), before, c{1});
%! end
