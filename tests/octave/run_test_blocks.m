function run_test_blocks (name)
  % Runs the %!test blocks of NAME with the shared helpers loaded and a work directory of
  % its own (removed afterwards), then, in a sanitizer build, checks for leaked memory;
  % exits with a status ctest understands.
  nctest_helpers;
  base = getenv ('NETCDFLIB_TEST_TMP');
  if (isempty (base))
    base = tempdir ();
  end
  [~, ~] = mkdir (base);
  work = tempname (base, 'octave-');
  mkdir (work);
  setenv ('NETCDFLIB_WORK', work);
  [passed, total] = test (name, 'quiet', stdout);
  confirm_recursive_rmdir (false);
  rmdir (work, 's');
  printf ('%s: %d of %d passed\n', name, passed, total);
  [leaked, checked] = qv_leak_check ();
  if (checked && leaked)
    printf ('%s: leak check found leaks\n', name);
  end
  exit (double (total == 0 || passed != total || leaked));
end
