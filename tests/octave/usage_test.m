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
%!   expect_error (err, 'QUARNA:imagesci:validate:tooManyOutputs', "'parameter' returns 1");
%! end
%! try
%!   [a, b, c, d, e, f, g, h, i, j] = netcdflib ('inqLibVers');
%!   error ('no error');
%! catch err
%!   expect_error (err, 'QUARNA:imagesci:validate:tooManyOutputs');
%! end

## Ids are doubles. A call refused for its output count has done nothing: the file stays
## open and in define mode, and no data is written.
%!test
%! work = scratch_dir ();
%! file = fullfile (work, 'outputs.nc');
%! ncid = netcdflib ('create', file, 'NC_NETCDF4');
%! assert (class (ncid), 'double');
%! varid = netcdflib ('defVar', ncid, 'v', 6, netcdflib ('defDim', ncid, 'x', 2));
%! refused = {{'close', ncid}, {'endDef', ncid}, {'putVarDouble', ncid, varid, [1 2]}};
%! for k = 1:numel (refused)
%!   try
%!     x = netcdflib (refused{k}{:});
%!     error ('no error');
%!   catch err
%!     expect_error (err, 'QUARNA:imagesci:validate:tooManyOutputs', 'returns 0');
%!   end
%! end
%! netcdflib ('defDim', ncid, 'still_defining', 1);
%! netcdflib ('endDef', ncid);
%! assert (netcdflib ('getVarDouble', ncid, varid), [9.969209968386869e+36; 9.969209968386869e+36]);
%! netcdflib ('close', ncid);
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');

## An empty operation name is an unknown operation like any other.
%!test
%! for name = {'', char(zeros(1, 0)), char(zeros(0, 3))}
%!   try
%!     netcdflib (name{1});
%!     error ('no error');
%!   catch err
%!     expect_error (err, 'QUARNA:imagesci:netcdf:unrecognizedOperation', "'' is not");
%!   end
%! end

## After a close that fails the id is refused, not passed to netCDF-C (which would crash);
## a file name with a NUL is refused rather than cut short.
%!test
%! work = scratch_dir ();
%! ncid = netcdflib ('create', fullfile (work, 'big.nc'), 'NC_CLOBBER');
%! dim = netcdflib ('defDim', ncid, 'x', 2^30);
%! netcdflib ('defVar', ncid, 'a', 6, dim);
%! netcdflib ('defVar', ncid, 'b', 6, dim);
%! try
%!   netcdflib ('close', ncid);
%!   error ('no error');
%! catch err
%!   expect_error (err, 'QUARNA:imagesci:netcdf:formatConstraintsViolation');
%! end
%! for op = {'close', 'inq', 'sync', 'redef', 'abort', 'endDef', 'inqFormat'}
%!   try
%!     netcdflib (op{1}, ncid);
%!     error ('no error');
%!   catch err
%!     expect_error (err, 'QUARNA:imagesci:netcdf:libraryFailure', 'NC_EBADID');
%!   end
%! end
%! try
%!   netcdflib ('create', fullfile (work, ['x.nc' char(0) 'junk']), 'NC_CLOBBER');
%!   error ('no error');
%! catch err
%!   expect_error (err, 'QUARNA:imagesci:netcdf:nameContainsNul', "'file'");
%! end
%! assert (! exist (fullfile (work, 'x.nc'), 'file'));
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
