## Failures as Octave errors with the library's message identifiers.

%!function id = error_id (varargin)
%!  id = '';
%!  try
%!    netcdflib (varargin{:});
%!  catch err
%!    id = err.identifier;
%!  end
%!endfunction

## Every failure carries the library's full message identifier.
%!test
%! missing = fullfile (tempdir (), 'netcdflib-no-such-file.nc');
%! n = 'QUARNA:imagesci:netcdf:';
%! cases = {
%!   {'nope'},                             [n 'unrecognizedOperation'];
%!   {'inqLibVers', 1},                    'QUARNA:imagesci:validate:wrongNumberOfInputs';
%!   {'parameter', 'NC_NOPE'},             [n 'unrecognizedCharParameter'];
%!   {'open', missing, 'NC_NOWRITE'},      [n 'libraryFailure'];
%!   {'inq', 1e12},                        'QUARNA:imagesci:validate:argumentOutOfBounds';
%!   {},                                   'netcdflib:noOperation';
%!   {3},                                  'netcdflib:badOperation';
%!   {['ab'; 'cd']},                       'netcdflib:badOperation';
%! };
%! for k = 1:rows (cases)
%!   assert (error_id (cases{k, 1}{:}), cases{k, 2});
%! end

## Values the library cannot use are reported by its own argument errors, naming the argument.
%!test
%! for v = {1+2i, single(2i), struct('a', 1), @sin, sparse(1), sparse(true), ...
%!          containers.Map(), {1}, 'abc', true, [1 2]}
%!   try
%!     netcdflib ('inq', v{1});
%!     error ('no error for a %s', class (v{1}));
%!   catch err
%!     assert (err.identifier, 'QUARNA:imagesci:netcdf:badScalarArgument');
%!     assert (! isempty (strfind (err.message, 'ncid')));
%!   end
%! end
%! for v = {struct(), @sin, 3, {'NC_INT'}, int8(65)}
%!   assert (error_id ('parameter', v{1}), 'QUARNA:imagesci:netcdf:argumentWasNotChar');
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
%! try
%!   netcdflib ('open', fullfile (tempdir (), 'netcdflib-no-such-file.nc'), 'NC_NOWRITE');
%! catch err
%!   assert (! isempty (strfind (err.message, '''open''')));
%! end

## A failure leaves Octave's state intact: the next call works.
%!test
%! for k = 1:50
%!   try
%!     netcdflib ('parameter', struct ('x', k));
%!   catch
%!   end
%! end
%! assert (netcdflib ('parameter', 'NC_INT'), 4);
