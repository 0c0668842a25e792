function d = scratch_dir ()
  % A new, empty directory under the build's test area (or the system's temp directory).
  base = getenv ('NETCDFLIB_TEST_TMP');
  if (isempty (base))
    base = tempdir ();
  elseif (! exist (base, 'dir'))
    mkdir (base);
  end
  d = tempname (base, 'octave-');
  [ok, msg] = mkdir (d);
  if (! ok)
    error ('scratch_dir: %s', msg);
  end
end
