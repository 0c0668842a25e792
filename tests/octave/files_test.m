## File operations from Octave: create, define, inquire, close, open again.

%!shared work
%! work = scratch_dir ();

%!function s = dump_header (file)
%!  [status, s] = system (sprintf ('"%s" -h "%s"', getenv ('NETCDFLIB_NCDUMP'), file));
%!  assert (status, 0);
%!endfunction

## Ids are doubles; Unicode names travel as UTF-8 both ways.
%!test
%! file = fullfile (work, 'names.nc');
%! name = char ([84 101 109 112 195 169 114 97 116 117 114 101]);   # Température
%! smile = char ([115 240 159 152 128]);
%! ncid = netcdflib ('create', file, netcdflib ('parameter', 'NC_NETCDF4'));
%! assert (class (ncid), 'double');
%! dimid = netcdflib ('defDim', ncid, name, 3);
%! unlim = netcdflib ('defDim', ncid, 'time', netcdflib ('parameter', 'NC_UNLIMITED'));
%! grp = netcdflib ('defGrp', ncid, smile);
%! [dimname, len] = netcdflib ('inqDim', ncid, dimid);
%! assert ({dimname, len}, {name, 3});
%! assert (netcdflib ('inqDimID', ncid, name), dimid);
%! assert (netcdflib ('inqGrpName', grp), smile);
%! [ndims, nvars, ngatts, unlimdimid] = netcdflib ('inq', ncid);
%! assert ([ndims, nvars, ngatts, unlimdimid], [2, 0, 0, unlim]);
%! assert (netcdflib ('inqFormat', ncid), 'FORMAT_NETCDF4');
%! netcdflib ('close', ncid);
%! header = dump_header (file);
%! assert (! isempty (strfind (header, [name ' = 3 ;'])));
%! assert (! isempty (strfind (header, ['group: ' smile])));

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
%! assert (! isempty (strfind (dump_header (file), 'netcdf outputs')));

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
