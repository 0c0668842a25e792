## OPeNDAP over HTTP from a loopback server the test starts (tests/interop/dap_server.py:
## python3's http.server on 127.0.0.1, stopping by itself): a dataset reads the same as from
## the response files, and each way a remote open or read fails gives the mapped status error
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

## Each kind of failure: mapped error, the operation named, no descriptor left open; among
## them a server that went away after an open, where the read fails, naming the read, and
## the file still closes. Before it goes, a variable reads as from the response files.
%!test
%! dap2 = fullfile (getenv ('NETCDFLIB_REMOTE_FIXTURES'), 'dap2');
%! server = loopback_server (dap2, 'main', 280);
%! base = sprintf ('http://127.0.0.1:%d/', server(1));
%! gone = loopback_server (dap2, 'gone', 60);
%! closed = sprintf ('http://127.0.0.1:%d/test.07', gone(1));
%! ids = cellfun (@(url) netcdflib ('open', url, 'NC_NOWRITE'), {[base 'test.07'], ['file://' dap2 '/test.07']});
%! ages = arrayfun (@(id) netcdflib ('getVarInt', id, netcdflib ('inqVarID', id, 'person.age')), ...
%!                 ids, 'UniformOutput', false);
%! arrayfun (@(id) netcdflib ('close', id), ids);
%! assert (! isempty (ages{1}) && isequal (ages{:}));
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
%! system (sprintf ('kill %d', server(2)));
