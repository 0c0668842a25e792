function s = loopback_server (root, work, name, seconds)
  % Starts tests/interop/dap_server.py on ROOT for SECONDS at most; [port, pid].
  portfile = fullfile (work, [name '.port']);
  script = fullfile (fileparts (file_in_loadpath ('loopback_server.m')), '..', 'interop', ...
                     'dap_server.py');
  ## Without a sanitizer runtime the tests may have preloaded: python would crawl under it.
  system (sprintf ('env -u LD_PRELOAD /usr/bin/python3 "%s" "%s" "%s" %d >/dev/null 2>&1 &', ...
                   script, root, portfile, seconds));
  for k = 1:200
    if (exist (portfile, 'file'))
      break;
    end
    pause (0.05);
  end
  s = sscanf (fileread (portfile), '%d %d');
end
