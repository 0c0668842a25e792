## Octave text on its way to the library and back: UTF-8 is decoded, anything else
## travels byte by byte, so that every byte string comes back as it went.

%!shared work
%! work = scratch_dir ();

%!test
%! ## Well-formed UTF-8 of one to four bytes, then what a decoder must not take as UTF-8:
%! ## a lone continuation or Latin-1 byte, an overlong '/', an encoded surrogate, a code
%! ## point above U+10FFFF, a truncated sequence, and a valid character next to a bad byte.
%! texts = {'a', char([195 169]), char([226 130 172]), char([240 159 152 128]), ...
%!          char(128), char(233), char([192 175]), char([224 128 175]), char([237 160 128]), ...
%!          char([244 144 128 128]), char([226 130]), [char([195 169]) char(255)]};
%! nc = netcdflib ('create', fullfile (work, 'bytes.nc'), 'netcdf4');
%! for k = 1:numel (texts)
%!   name = sprintf ('t%d', k);
%!   netcdflib ('putAttText', nc, -1, name, netcdflib ('parameter', 'NC_CHAR'), texts{k});
%!   got = netcdflib ('getAttText', nc, -1, name);
%!   assert (isequal (double (got), double (texts{k})), '%s came back as [%s]', name, ...
%!           num2str (double (got)));
%! end
%! netcdflib ('close', nc);
