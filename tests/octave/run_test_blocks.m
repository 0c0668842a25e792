function run_test_blocks (name)
  % Runs the %!test blocks of NAME with the shared helpers loaded and a work directory of
  % its own (removed afterwards), then, in a sanitizer build, checks for leaked memory;
  % exits with a status ctest understands. test () leaves failed %!shared and %!function
  % blocks out of its counts, so its log is searched for failures too.
  nctest_helpers;
  base = getenv ('NETCDFLIB_TEST_TMP');
  if (isempty (base))
    base = tempdir ();
  end
  [~, ~] = mkdir (base);
  work = tempname (base, 'octave-');
  mkdir (work);
  setenv ('NETCDFLIB_WORK', work);
  log = fopen ([work '.log'], 'w+');
  [passed, total] = test (name, 'quiet', log);
  frewind (log);
  out = fread (log, Inf, '*char')';
  fclose (log);
  printf ('%s', out);
  confirm_recursive_rmdir (false);
  rmdir (work, 's');
  unlink ([work '.log']);
  failed = total == 0 || passed != total || ! isempty (strfind (out, '!!!!! '));
  printf ('%s: %d of %d passed%s\n', name, passed, total, {'', ', a block failed'}{1 + failed});
  [leaked, checked] = qv_leak_check ();
  if (checked && leaked)
    printf ('%s: leak check found leaks\n', name);
  end
  exit (double (failed || leaked));
end
