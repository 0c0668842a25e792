function run_test_blocks (name)
  % Runs the %!test blocks of NAME with the shared helpers loaded and a work directory of
  % its own (removed afterwards), then, in a sanitizer build, checks for leaked memory;
  % exits with a status ctest understands. test () leaves failed %!shared and %!function
  % blocks out of its counts, so its log is searched for failures too.
  nctest_helpers;
  work = tempname (getenv ('NETCDFLIB_TEST_TMP'), 'octave-');
  mkdir (work);   # parents too
  setenv ('NETCDFLIB_WORK', work);
  out = evalc ('[passed, total] = test (name, ''quiet'', stdout);');
  system (sprintf ('rm -rf "%s"', work));
  failed = total == 0 || passed != total || ! isempty (strfind (out, '!!!!! '));
  leaked = qv_leak_check ();
  printf ('%s%s: %d of %d passed%s%s\n', out, name, passed, total, ...
          {'', ', a block failed'}{1 + failed}, {'', ', leak check found leaks'}{1 + leaked});
  exit (double (failed || leaked));
end
