## Failures as Octave errors with the library's message identifiers.

## Every failure carries the library's full message identifier; the bridge's own for what
## never reaches the library.
%!test
%! n = 'QUARNA:imagesci:netcdf:';
%! cases = {
%!   {'nope'},                                      [n 'unrecognizedOperation'];
%!   {'inqLibVers', 1},                             'QUARNA:imagesci:validate:wrongNumberOfInputs';
%!   {'parameter', 'NC_NOPE'},                      [n 'unrecognizedCharParameter'];
%!   {'open', fullfile(work_dir (), 'no.nc'), 'NC_NOWRITE'}, [n 'libraryFailure'];
%!   {'inq', 1e12},                                 'QUARNA:imagesci:validate:argumentOutOfBounds';
%!   {},                                            'netcdflib:noOperation';
%!   {3},                                           'netcdflib:badOperation';
%!   {['ab'; 'cd']},                                'netcdflib:badOperation';
%! };
%! for k = 1:rows (cases)
%!   assert (error_id (cases{k, 1}{:}), cases{k, 2});
%! end
%! ## Values the library cannot use get its own argument errors, naming the argument.
%! for v = {1+2i, single(2i), struct('a', 1), @sin, sparse(1), sparse(true), ...
%!          containers.Map(), {1}, 'abc', true, [1 2]}
%!   try
%!     netcdflib ('inq', v{1});
%!     error ('no error for a %s', class (v{1}));
%!   catch err
%!     assert (err.identifier, [n 'badScalarArgument']);
%!     assert (! isempty (strfind (err.message, 'ncid')));
%!   end
%! end
%! for v = {struct(), @sin, 3, {'NC_INT'}, int8(65)}
%!   assert (error_id ('parameter', v{1}), [n 'argumentWasNotChar']);
%! end

## The message is the catalogue text with its arguments, in UTF-8.
%!test
%! name = char ([78 67 95 195 169 240 159 152 128]);   # NC_é and U+1F600
%! try
%!   netcdflib ('parameter', name);
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'QUARNA:imagesci:netcdf:unrecognizedCharParameter');
%!   assert (! isempty (strfind (err.message, ['''' name(4:end) ''''])));
%!   assert (isempty (strfind (err.message, 'QUARNA')));
%! end

## As many outputs as asked for, at least one when the operation makes one; asking for
## more is refused before the operation does anything.
%!test
%! netcdflib ('parameter', 'NC_DOUBLE');
%! assert (ans, 6);
%! try
%!   [a, b] = netcdflib ('parameter', 'NC_INT');
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'QUARNA:imagesci:validate:tooManyOutputs');
%!   assert (! isempty (strfind (err.message, "'parameter' returns 1")), err.message);
%! end
%! file = fullfile (work_dir (), 'outputs.nc');
%! ncid = netcdflib ('create', file, 'NC_CLOBBER');
%! assert (class (ncid), 'double');
%! try
%!   x = netcdflib ('close', ncid);
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'QUARNA:imagesci:validate:tooManyOutputs');
%! end
%! netcdflib ('defDim', ncid, 'still_defining', 1);
%! netcdflib ('close', ncid);
%! assert (! isempty (strfind (ncdump ('-h', file), 'still_defining = 1')));
%! ## The named mode, by name and by value, keeps the file.
%! for mode = {'NC_NOCLOBBER', netcdflib('parameter', 'NC_NOCLOBBER')}
%!   assert (error_id ('create', file, mode{1}), 'QUARNA:imagesci:netcdf:fileOverwriteErr');
%! end
