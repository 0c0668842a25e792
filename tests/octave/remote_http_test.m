## OPeNDAP over HTTP from a loopback server the test starts (tests/interop/dap_server.py:
## python3's http.server on 127.0.0.1, stopping by itself): DAP2 datasets read the same as
## ncdump prints them, and each way a remote open or read fails gives the mapped status error
## naming the operation, promptly, with nothing left open.

## Starts tests/interop/dap_server.py on ROOT for SECONDS at most; [port, pid].
%!function s = loopback_server (root, name, seconds)
%!  portfile = fullfile (work_dir (), [name '.port']);
%!  script = fullfile (fileparts (file_in_loadpath ('remote_http_test.m')), '..', 'interop', ...
%!                     'dap_server.py');
%!  ## Without a sanitizer runtime the tests may have preloaded: python would crawl under it.
%!  system (sprintf ('env -u LD_PRELOAD /usr/bin/python3 "%s" "%s" "%s" %d >/dev/null 2>&1 &', ...
%!                   script, root, portfile, seconds));
%!  for k = 1:200
%!    if (exist (portfile, 'file'))
%!      break;
%!    end
%!    pause (0.05);
%!  end
%!  s = sscanf (fileread (portfile), '%d %d');
%!endfunction

%!shared fixtures, server, base
%! fixtures = getenv ('NETCDFLIB_REMOTE_FIXTURES');
%! server = loopback_server (fullfile (fixtures, 'dap2'), 'main', 280);
%! base = sprintf ('http://127.0.0.1:%d/', server(1));

## Whole variables over HTTP equal ncdump's print of the responses as files. (A static
## server ignores constraint expressions and always sends the whole dataset, so ncdump's own
## row-by-row reads of a large variable over HTTP come back wrong: the reference is its
## print of the same responses read as files.)
%!test
%! names = regexprep ({dir(fullfile (fixtures, 'dap2', '*.dds')).name}, '\.dds$', '');
%! counts = ncdump_compare ('DAP2 by http://127.0.0.1', strcat (base, names), ...
%!                          strcat (['file://' fullfile(fixtures, 'dap2') '/'], names));
%! assert (counts(1) >= 40 && counts(2) > 100 && counts(6) == 0);

## Each kind of failure: mapped error, the operation named, no descriptor left open; among
## them a server that went away after an open, where the read fails, naming the read, and
## the file still closes.
%!test
%! gone = loopback_server (fullfile (fixtures, 'dap2'), 'gone', 60);
%! closed = sprintf ('http://127.0.0.1:%d/test.07', gone(1));
%! nc = netcdflib ('open', closed, 'NC_NOWRITE');
%! system (sprintf ('kill %d', gone(2)));
%! pause (0.2);
%! err = failure ('getVarInt', nc, netcdflib ('inqVarID', nc, 'person.age'));
%! expect_error (err, 'QUARNA:imagesci:netcdf:librarydapFailure', '''getVarInt''');
%! netcdflib ('close', nc);
%! cases = {closed, 'librarydapFailure', 'NC_EIO';   # nothing listening
%!          [base 'nothere.nc'], 'libraryFailure', '(-90)';   # HTTP 404
%!          [base 'garbage/test.07'], 'librarydapFailure', 'NC_EDDS';   # status 200, no DAP
%!          [base 'raw/test.07'], 'librarydapFailure', 'NC_EIO';   # not HTTP
%!          [base 'test.07#dap4'], 'libraryFailure', '(2)';   # DAP4 of a DAP2 server
%!          [base 'test.07.dods#mode=bytes'], 'libraryFailure', '(2)';   # byte ranges: not built
%!          'http:/127.0.0.1 x', 'libraryFailure', '(2)';
%!          'http://[::1', 'libraryFailure', '(2)'};
%! before = numel (dir ('/proc/self/fd'));
%! for k = 1:rows (cases)
%!   started = tic;
%!   err = failure ('open', cases{k, 1}, 'NC_NOWRITE');
%!   fprintf (stderr, '%s: %s after %.3f s: %s\n', cases{k, 1}, err.identifier, toc (started), ...
%!            err.message);
%!   expect_error (err, ['QUARNA:imagesci:netcdf:' cases{k, 2}], '''open''', cases{k, 3});
%!   assert (numel (dir ('/proc/self/fd')), before, cases{k, 1});
%! end

## An unknown host name, in a network namespace with no route anywhere, so that the lookup
## fails at once and sends nothing off this machine; and netCDF-C's HTTP.TIMEOUT key from an
## .ncrc, against a server that does not answer.
%!test
%! report = 'catch err, printf (''%s|%s\n'', err.identifier, err.message); end';
%! rc = fullfile (work_dir (), 'rc');
%! mkdir (rc);
%! fid = fopen (fullfile (rc, '.ncrc'), 'w');
%! fputs (fid, "HTTP.TIMEOUT=2\n");
%! fclose (fid);
%! for c = {'unshare -n', 'http://no-such-host.invalid/x', 'resolve host';
%!          ['NCRCENV_HOME=' rc], [base 'silent/x'], 'Timeout was reached'}'
%!   [~, out] = system (sprintf ('%s "%s" --no-gui --norc --eval "addpath (''%s''); try, netcdflib (''open'', ''%s'', ''NC_NOWRITE''); %s" 2>&1', ...
%!     c{1}, getenv ('NETCDFLIB_OCTAVE_CLI'), getenv ('NETCDFLIB_OCTAVE_PATH'), c{2}, report));
%!   fprintf (stderr, '%s: %s', c{1}, out);
%!   assert (! isempty (regexp (out, 'QUARNA:imagesci:netcdf:librarydapFailure\|.*''open''', 'once')) ...
%!           && ! isempty (strfind (out, c{3})), out);
%! end
%! system (sprintf ('kill %d', server(2)));
