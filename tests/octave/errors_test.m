## Failures as Octave errors with the library's message identifiers.

## Every failure carries the library's full message identifier (the bridge's own for what
## never reaches the library) and a message that names what went wrong, in UTF-8; asking
## for more outputs than an operation makes is refused before it does anything. Values the
## library cannot use get its own argument errors, naming the argument.
%!test
%! [n, v] = deal ('QUARNA:imagesci:netcdf:', 'QUARNA:imagesci:validate:');
%! name = char ([78 67 95 195 169 240 159 152 128]);   # NC_é and U+1F600
%! file = fullfile (work_dir (), 'outputs.nc');
%! ncid = netcdflib ('create', file, 'NC_CLOBBER');
%! cases = {
%!   {'nope'},                                      [n 'unrecognizedOperation'], {}, 0;
%!   {'inqLibVers', 1},                             [v 'wrongNumberOfInputs'], {}, 0;
%!   {'parameter', name},                           [n 'unrecognizedCharParameter'], {['''' name(4:end) '''']}, 0;
%!   {'open', fullfile(work_dir (), 'no.nc'), 'NC_NOWRITE'}, [n 'libraryFailure'], {}, 0;
%!   {'inq', 1e12},                                 [v 'argumentOutOfBounds'], {}, 0;
%!   {},                                            'netcdflib:noOperation', {}, 0;
%!   {3},                                           'netcdflib:badOperation', {}, 0;
%!   {['ab'; 'cd']},                                'netcdflib:badOperation', {}, 0;
%!   {'create', file, 'NC_NOCLOBBER'},              [n 'fileOverwriteErr'], {}, 0;
%!   {'create', file, netcdflib('parameter', 'NC_NOCLOBBER')}, [n 'fileOverwriteErr'], {}, 0;
%!   {'parameter', 'NC_INT'},                      [v 'tooManyOutputs'], {'''parameter'' returns 1'}, 2;
%!   {'close', ncid},                               [v 'tooManyOutputs'], {}, 1;
%! };
%! bad = {1+2i; struct('a', 1); {1}; 'abc'; true; [1 2]};
%! cases = [cases; cellfun(@(x) {'inq', x}, bad, 'UniformOutput', false), ...
%!          repmat({[n 'badScalarArgument'], {'ncid'}, 0}, numel (bad), 1);
%!          {{'parameter', 3}, [n 'argumentWasNotChar'], {}, 0};
%!          {{'parameter', {'NC_INT'}}, [n 'argumentWasNotChar'], {}, 0}];
%! for k = 1:rows (cases)
%!   out = cell (1, cases{k, 4});
%!   try
%!     [out{:}] = netcdflib (cases{k, 1}{:});
%!     error ('case %d raised no error', k);
%!   catch err
%!     expect_error (err, cases{k, 2}, cases{k, 3}{:});
%!     assert (isempty (strfind (err.message, 'QUARNA')), err.message);
%!   end
%! end
%! netcdflib ('parameter', 'NC_DOUBLE');
%! assert (ans, 6);
%! netcdflib ('defDim', ncid, 'still_defining', 1);
%! netcdflib ('close', ncid);
%! assert (! isempty (strfind (ncdump ('-h', file), 'still_defining = 1')));
