## How netcdflib is called: its help text, the number of outputs and the class of ids.

## help prints the call form, how to list operations and constants, and an example.
%!test
%! text = evalc ('help netcdflib');
%! for part = {'netcdflib (OPERATION, ARG1, ...)', '[OUT1, OUT2, ...] = netcdflib', ...
%!             'getConstantNames', "netcdflib ('parameter', NAME)", 'getVara<T>', 'Example:', ...
%!             "ncid = netcdflib ('open', 'x.nc', 'NC_NOWRITE');"}
%!   assert (! isempty (strfind (text, part{1})), part{1});
%! end

## As many outputs as asked for, at least one when the operation makes one.
%!test
%! netcdflib ('parameter', 'NC_DOUBLE');
%! assert (ans, 6);
%! names = netcdflib ('getConstantNames');
%! assert (size (names), [118 1]);
%! assert (names([1 end]), {'NC_BYTE'; 'NC_FLETCHER32'});
%! assert (class (netcdflib ('inqLibVers')), 'char');

## Asking for more outputs than the operation makes is an error.
%!test
%! try
%!   [a, b] = netcdflib ('parameter', 'NC_INT');
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'netcdflib:tooManyOutputs');
%!   assert (! isempty (strfind (err.message, '"parameter" returns 1 output(s) but 2')));
%! end
%! try
%!   [a, b, c, d, e, f, g, h, i, j] = netcdflib ('inqLibVers');
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'netcdflib:tooManyOutputs');
%! end

## Ids are doubles. An operation that fails on its output count after its work is done
## still did that work.
%!test
%! work = scratch_dir ();
%! file = fullfile (work, 'outputs.nc');
%! ncid = netcdflib ('create', file, 'NC_CLOBBER');
%! assert (class (ncid), 'double');
%! try
%!   x = netcdflib ('close', ncid);
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'netcdflib:tooManyOutputs');
%! end
%! assert (! isempty (strfind (ncdump_text ('-h', file), 'netcdf outputs')));
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
