## OPeNDAP over HTTP from a loopback server the test starts (tests/interop/dap_server.py:
## python3's http.server on 127.0.0.1, stopping by itself): DAP2 datasets read the same as
## ncdump prints them, and each way a remote open or read fails gives the mapped status error
## naming the operation, promptly, with nothing left open.

%!shared fixtures, work, server, base
%! fixtures = getenv ('NETCDFLIB_REMOTE_FIXTURES');
%! work = work_dir ();
%! server = loopback_server (fullfile (fixtures, 'dap2'), work, 'main', 280);
%! base = sprintf ('http://127.0.0.1:%d/', server(1));

%!function out = octave_child (prefix, code)
%!  % The output of CODE in a new octave-cli started through the shell PREFIX.
%!  [~, out] = system (sprintf ('%s "%s" --no-gui --norc --eval "addpath (''%s''); %s" 2>&1', ...
%!    prefix, getenv ('NETCDFLIB_OCTAVE_CLI'), getenv ('NETCDFLIB_OCTAVE_PATH'), code));
%!endfunction

%!function n = open_descriptors ()
%!  n = numel (dir ('/proc/self/fd'));
%!endfunction

## Whole variables over HTTP equal ncdump's print of the responses as files. (A static
## server ignores constraint expressions and always sends the whole dataset, so ncdump's own
## row-by-row reads of a large variable over HTTP come back wrong: the reference is its
## print of the same responses read as files.)
%!test
%! files = dir (fullfile (fixtures, 'dap2', '*.dds'));
%! names = remote_sample (regexprep ({files.name}, '\.dds$', ''));
%! counts = ncdump_compare ('DAP2 by http://127.0.0.1', strcat (base, names), ...
%!                          strcat (['file://' fullfile(fixtures, 'dap2') '/'], names));
%! assert (numel (names) * remote_sample () >= 40 && counts(1) * remote_sample () > 100);

## Each kind of failure: mapped error, the operation named, no descriptor left open.
%!test
%! [~, free] = system ('/usr/bin/python3 -c "import socket; s = socket.socket(); s.bind((''127.0.0.1'', 0)); print(s.getsockname()[1])"');
%! closed = sprintf ('http://127.0.0.1:%d/test.07', str2double (free));
%! cases = {'closed port', closed, 'librarydapFailure', 'NC_EIO';
%!          'HTTP 404', [base 'nothere.nc'], 'libraryFailure', '(-90)';
%!          'garbage with status 200', [base 'garbage/test.07'], 'librarydapFailure', 'NC_EDDS';
%!          'bytes that are not HTTP', [base 'raw/test.07'], 'librarydapFailure', 'NC_EIO';
%!          'DAP4 asked of a DAP2 server', [base 'test.07#dap4'], 'libraryFailure', '(2)';
%!          'HTTP byte ranges (not built)', [base 'test.07.dods#mode=bytes'], 'libraryFailure', '(2)';
%!          'malformed URL', 'http:/127.0.0.1 x', 'libraryFailure', '(2)';
%!          'unterminated host', 'http://[::1', 'libraryFailure', '(2)'};
%! before = open_descriptors ();
%! for k = 1:rows (cases)
%!   started = tic;
%!   err = failure ('open', cases{k, 2}, 'NC_NOWRITE');
%!   fprintf (stderr, '%s: %s after %.3f s: %s\n', cases{k, 1}, err.identifier, toc (started), ...
%!            err.message);
%!   expect_error (err, ['QUARNA:imagesci:netcdf:' cases{k, 3}], '''open''', cases{k, 4});
%!   assert (open_descriptors (), before, cases{k, 1});
%! end

## The server goes away after the open: the read fails, naming the read, and the file
## still closes.
%!test
%! gone = loopback_server (fullfile (fixtures, 'dap2'), work, 'gone', 60);
%! nc = netcdflib ('open', sprintf ('http://127.0.0.1:%d/test.07', gone(1)), 'NC_NOWRITE');
%! system (sprintf ('kill %d', gone(2)));
%! pause (0.2);
%! err = failure ('getVarInt', nc, netcdflib ('inqVarID', nc, 'person.age'));
%! expect_error (err, 'QUARNA:imagesci:netcdf:librarydapFailure', '''getVarInt''');
%! fprintf (stderr, 'server gone after open: %s\n', err.message);
%! netcdflib ('close', nc);

## An unknown host name, in a network namespace with no route anywhere, so that the lookup
## fails at once and sends nothing off this machine; and netCDF-C's HTTP.TIMEOUT key from an
## .ncrc, against a server that does not answer.
%!test
%! report = 'catch err, printf (''%s|%s\n'', err.identifier, err.message); end';
%! out = octave_child ('unshare -n', ['try, netcdflib (''open'', ''http://no-such-host.invalid/x'', ' ...
%!                     '''NC_NOWRITE''); ' report]);
%! fprintf (stderr, 'unknown host: %s', out);
%! assert (! isempty (strfind (out, 'QUARNA:imagesci:netcdf:librarydapFailure|')), out);
%! assert (! isempty (strfind (out, '''open''')) && ! isempty (strfind (out, 'resolve host')), out);
%! rc = fullfile (work, 'rc');
%! mkdir (rc);
%! fid = fopen (fullfile (rc, '.ncrc'), 'w');
%! fputs (fid, "HTTP.TIMEOUT=2\n");
%! fclose (fid);
%! out = octave_child (['NCRCENV_HOME=' rc], ['t = tic; try, netcdflib (''open'', ''' base ...
%!                     'silent/x'', ''NC_NOWRITE''); ' strrep(report, '\n', ' %.1f s\n'), ...
%!                     ]);
%! fprintf (stderr, 'HTTP.TIMEOUT=2: %s', out);
%! assert (! isempty (strfind (out, 'Timeout was reached')), out);
%! assert (! isempty (strfind (out, 'QUARNA:imagesci:netcdf:librarydapFailure|')), out);

%!test
%! system (sprintf ('kill %d', server(2)));
