function run_test_blocks (name)
  % Runs the %!test blocks of NAME, then, in a sanitizer build, checks for leaked memory;
  % exits with a status ctest understands.
  [passed, total] = test (name, 'quiet', stdout);
  printf ('%s: %d of %d passed\n', name, passed, total);
  [leaked, checked] = qv_leak_check ();
  if (checked)
    printf ('%s: leak check %s\n', name, ifelse_text (leaked, 'found leaks', 'clean'));
  end
  exit (double (total == 0 || passed != total || leaked));
end

function s = ifelse_text (cond, yes, no)
  if (cond)
    s = yes;
  else
    s = no;
  end
end
