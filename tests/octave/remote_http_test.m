## OPeNDAP over HTTP from a loopback server the test starts (tests/interop/dap_server.py:
## python3's http.server on 127.0.0.1, stopping by itself): a dataset reads the same as from
## the response files, and each way a remote open or read fails gives the mapped status error
## naming the operation, with nothing left open.

## Each kind of failure: mapped error, the operation named, no descriptor left open; among
## them a server that went away after an open, where the read fails, naming the read, and
## the file still closes. Before it goes, a variable reads as from the response files. The
## server runs without a sanitizer runtime the tests may have preloaded: python would crawl.
%!test
%! dap2 = fullfile (getenv ('NETCDFLIB_REMOTE_FIXTURES'), 'dap2');
%! portfile = fullfile (work_dir (), 'port');
%! script = fullfile (fileparts (file_in_loadpath ('remote_http_test.m')), '..', 'interop', ...
%!                    'dap_server.py');
%! system (sprintf (['env -u LD_PRELOAD /usr/bin/python3 "%s" "%s" "%s" 280 >/dev/null 2>&1 & ' ...
%!                   'for i in $(seq 200); do [ -e "%s" ] && break; sleep 0.05; done'], ...
%!                  script, dap2, portfile, portfile));
%! server = sscanf (fileread (portfile), '%d %d');
%! base = sprintf ('http://127.0.0.1:%d/', server(1));
%! ids = cellfun (@(url) netcdflib ('open', url, 'NC_NOWRITE'), ...
%!               {[base 'test.07'], ['file://' dap2 '/test.07'], [base 'test.07']});
%! age = @(id) netcdflib ('getVarInt', id, netcdflib ('inqVarID', id, 'person.age'));
%! assert (! isempty (age (ids(1))) && isequal (age (ids(1)), age (ids(2))));
%! arrayfun (@(id) netcdflib ('close', id), ids(1:2));
%! ## An unknown host name, in a network namespace with no route anywhere, so that the lookup
%! ## fails at once and sends nothing off this machine; and netCDF-C's HTTP.TIMEOUT key from
%! ## an .ncrc, against a server that does not answer. Each in a session of its own, since
%! ## netCDF-C reads its .ncrc once.
%! report = 'catch err, printf (''%s|%s\n'', err.identifier, err.message); end';
%! rc = fullfile (work_dir (), 'rc');
%! mkdir (rc);
%! fid = fopen (fullfile (rc, '.ncrc'), 'w');
%! fputs (fid, "HTTP.TIMEOUT=2\n");
%! fclose (fid);
%! for c = {'unshare -n', 'http://no-such-host.invalid/x', 'resolve host';
%!          ['NCRCENV_HOME=' rc], [base 'silent/x'], 'Timeout was reached'}'
%!   [~, out] = system (sprintf (['%s "%s" --no-gui --norc --eval "addpath (''%s''); ' ...
%!                                'try, netcdflib (''open'', ''%s'', ''NC_NOWRITE''); %s" 2>&1'], ...
%!     c{1}, getenv ('NETCDFLIB_OCTAVE_CLI'), getenv ('NETCDFLIB_OCTAVE_PATH'), c{2}, report));
%!   assert (! isempty (regexp (out, 'QUARNA:imagesci:netcdf:librarydapFailure\|.*''open''', 'once')) ...
%!           && ! isempty (strfind (out, c{3})), out);
%! end
%! cases = {[base 'nothere.nc'], 'libraryFailure', '(-90)';   # HTTP 404
%!          [base 'garbage/test.07'], 'librarydapFailure', 'NC_EDDS';   # status 200, no DAP
%!          [base 'raw/test.07'], 'librarydapFailure', 'NC_EIO';   # not HTTP
%!          [base 'test.07#dap4'], 'libraryFailure', '(2)';   # DAP4 of a DAP2 server
%!          [base 'test.07.dods#mode=bytes'], 'libraryFailure', '(2)';   # byte ranges: not built
%!          'http:/127.0.0.1 x', 'libraryFailure', '(2)';
%!          'http://[::1', 'libraryFailure', '(2)';
%!          [base 'test.07'], 'librarydapFailure', 'NC_EIO'};   # nothing listening any more
%! before = numel (dir ('/proc/self/fd'));
%! for k = 1:rows (cases)
%!   if (k == rows (cases))
%!     system (sprintf ('kill %d', server(2)));
%!     pause (0.2);
%!     err = failure ('getVarInt', ids(3), netcdflib ('inqVarID', ids(3), 'person.age'));
%!     expect_error (err, 'QUARNA:imagesci:netcdf:librarydapFailure', '''getVarInt''');
%!     netcdflib ('close', ids(3));
%!     before = numel (dir ('/proc/self/fd'));
%!   end
%!   err = failure ('open', cases{k, 1}, 'NC_NOWRITE');
%!   expect_error (err, ['QUARNA:imagesci:netcdf:' cases{k, 2}], '''open''', cases{k, 3});
%!   assert (numel (dir ('/proc/self/fd')), before, cases{k, 1});
%! end
