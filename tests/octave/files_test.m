## File operations from Octave: create, define, inquire, close, open again.

%!shared work
%! work = scratch_dir ();

## Ids are doubles; "inq" counts what was defined and names the unlimited dimension.
%!test
%! file = fullfile (work, 'counts.nc');
%! ncid = netcdflib ('create', file, netcdflib ('parameter', 'NC_NETCDF4'));
%! assert (class (ncid), 'double');
%! netcdflib ('defDim', ncid, 'x', 3);
%! unlim = netcdflib ('defDim', ncid, 'time', netcdflib ('parameter', 'NC_UNLIMITED'));
%! netcdflib ('defGrp', ncid, 'g');
%! [ndims, nvars, ngatts, unlimdimid] = netcdflib ('inq', ncid);
%! assert ([ndims, nvars, ngatts, unlimdimid], [2, 0, 0, unlim]);
%! assert (netcdflib ('inqFormat', ncid), 'FORMAT_NETCDF4');
%! netcdflib ('close', ncid);
%! header = ncdump_text ('-h', file);
%! assert (! isempty (strfind (header, 'time = UNLIMITED ; // (0 currently)')), header);

## A file written by one call sequence reads back through another.
%!test
%! file = fullfile (work, 'classic.nc');
%! ncid = netcdflib ('create', file, 'NC_CLOBBER');
%! netcdflib ('defDim', ncid, 'x', 7);
%! netcdflib ('endDef', ncid);
%! netcdflib ('close', ncid);
%! ncid = netcdflib ('open', file, 'NC_NOWRITE');
%! [ndims, nvars] = netcdflib ('inq', ncid);
%! assert ([ndims, nvars], [1, 0]);
%! assert (netcdflib ('inqFormat', ncid), 'FORMAT_CLASSIC');
%! [name, len] = netcdflib ('inqDim', ncid, 0);
%! assert ({name, len}, {'x', 7});
%! netcdflib ('close', ncid);
%! try
%!   netcdflib ('inq', ncid);
%!   error ('closed id still works');
%! catch err
%!   assert (err.identifier, 'QUARNA:imagesci:netcdf:libraryFailure');
%!   assert (! isempty (strfind (err.message, 'NC_EBADID')));
%! end

## An operation that fails after its work is done still reports the output count.
%!test
%! file = fullfile (work, 'outputs.nc');
%! ncid = netcdflib ('create', file, 'NC_CLOBBER');
%! try
%!   x = netcdflib ('close', ncid);
%!   error ('no error');
%! catch err
%!   assert (err.identifier, 'netcdflib:tooManyOutputs');
%! end
%! assert (! isempty (strfind (ncdump_text ('-h', file), 'netcdf outputs')));

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
