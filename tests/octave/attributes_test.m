## Attribute values from Octave: every kind on a variable and globally, zero-length values,
## UTF-8 text, and a copy into another file.

%!shared work, p, kinds
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! ## Operation suffix, external type, values (written as a 2-by-2 matrix). Every numeric
%! ## type is compared with python3-netcdf4 in interop_matrix_test.
%! kinds = {
%!   'Double', 'NC_DOUBLE', [-realmax NaN; pi realmin];
%!   'Float',  'NC_FLOAT',  single([-realmax('single') Inf; 1.5 -0.25]);
%!   'Int64',  'NC_INT64',  [intmin('int64') -1; 0 intmax('int64')];
%!   'Ubyte',  'NC_UBYTE',  [intmin('uint8') 3; 4 intmax('uint8')];
%! };

## Every kind, on a variable and globally: class, row shape, values and stored type, before
## closing the file and after opening it again.
%!test
%! file = fullfile (work, 'kinds.nc');
%! nc = netcdflib ('create', file, p ('NC_NETCDF4'));
%! v = netcdflib ('defVar', nc, 'v', p ('NC_DOUBLE'), netcdflib ('defDim', nc, 'x', 2));
%! ragged = netcdflib ('defVlen', nc, 'ragged', p ('NC_SHORT'));
%! words = netcdflib ('defVlen', nc, 'words', p ('NC_STRING'));
%! chars = netcdflib ('defVlen', nc, 'chars', p ('NC_CHAR'));
%! nested = netcdflib ('defVlen', nc, 'nested', netcdflib ('defVlen', nc, 'ints', p ('NC_INT')));
%! cafe = char ([99 97 102 195 169]);   # café
%! for target = [v, p('NC_GLOBAL')]
%!   for k = 1:rows (kinds)
%!     [suffix, xtype, values] = kinds{k, :};
%!     netcdflib (['putAtt' suffix], nc, target, ['a' suffix], p (xtype), values);
%!   end
%!   netcdflib ('putAttText', nc, target, 'aText', p ('NC_CHAR'), cafe);
%!   netcdflib ('putAttString', nc, target, 'aString', p ('NC_STRING'), {'a', 'b'; cafe, ''});
%!   netcdflib ('putAttVlen', nc, target, 'aVlen', ragged, {int16([5; -6]), int16([]), int16(7)});
%!   netcdflib ('putAttVlen', nc, target, 'aWords', words, {{'x', 'yz'}, {cafe}});
%!   netcdflib ('putAttVlen', nc, target, 'aChars', chars, {'abc', 'de', ''});
%!   netcdflib ('putAttVlen', nc, target, 'aNested', nested, {{int32([1; 2]), int32(3)}, {}});
%! end
%! netcdflib ('endDef', nc);
%! for pass = 1:2
%!   for target = [v, p('NC_GLOBAL')]
%!     where = sprintf ('pass %d, varid %d, ', pass, target);
%!     for k = 1:rows (kinds)
%!       name = ['a' kinds{k, 1}];
%!       row = kinds{k, 3}(:)';
%!       expect_same (netcdflib (['getAtt' kinds{k, 1}], nc, target, name), row, [where name]);
%!       [xtype, len] = netcdflib ('inqAtt', nc, target, name);
%!       expect_same ([xtype, len], [p(kinds{k, 2}), 4], [where name]);
%!     end
%!     expect_same (netcdflib ('getAttText', nc, target, 'aText'), cafe, [where 'text']);
%!     expect_same (netcdflib ('getAttString', nc, target, 'aString'), ...
%!                  {'a', cafe, 'b', char(zeros (1, 0))}, [where 'string']);
%!     expect_same (netcdflib ('getAttVlen', nc, target, 'aVlen'), ...
%!                  {int16([5; -6]), int16([]), int16(7)}, [where 'vlen']);
%!     expect_same (netcdflib ('getAttVlen', nc, target, 'aWords'), {{'x'; 'yz'}, {cafe}}, ...
%!                  [where 'vlen of strings']);
%!     expect_same (netcdflib ('getAttVlen', nc, target, 'aChars'), ...
%!                  {'abc', 'de', char(zeros (1, 0))}, [where 'vlen of chars']);
%!     expect_same (netcdflib ('getAttVlen', nc, target, 'aNested'), ...
%!                  {{int32([1; 2]); int32(3)}, {}}, [where 'vlen of vlens']);
%!     [xtypes(1), lens(1)] = netcdflib ('inqAtt', nc, target, 'aText');
%!     [xtypes(2), lens(2)] = netcdflib ('inqAtt', nc, target, 'aString');
%!     [xtypes(3), lens(3)] = netcdflib ('inqAtt', nc, target, 'aVlen');
%!     expect_same ([xtypes; lens], [p('NC_CHAR') p('NC_STRING') ragged; 5 4 3], where);
%!     expect_same (netcdflib ('inqAttName', nc, target, 0), 'aDouble', where);
%!     expect_same (netcdflib ('inqAttID', nc, target, 'aWords'), rows (kinds) + 3, where);
%!   end
%!   [~, ~, ngatts] = netcdflib ('inq', nc);
%!   assert (ngatts, rows (kinds) + 6);
%!   netcdflib ('close', nc);
%!   nc = netcdflib ('open', file, p ('NC_NOWRITE'));
%!   v = netcdflib ('inqVarID', nc, 'v');
%! end
%! netcdflib ('close', nc);

## Zero-length attributes of every kind: 0-by-0 of the kind's class, length 0 in the file.
%!test
%! nc = netcdflib ('create', fullfile (work, 'empty.nc'), p ('NC_NETCDF4'));
%! ragged = netcdflib ('defVlen', nc, 'ragged', p ('NC_INT'));
%! g = p ('NC_GLOBAL');
%! shapes = {[0 0], [1 0], [0 3]};
%! for k = 1:rows (kinds)
%!   name = ['e' kinds{k, 1}];
%!   c = class (kinds{k, 3});
%!   empty = zeros (shapes{mod (k, 3) + 1}, c);
%!   netcdflib (['putAtt' kinds{k, 1}], nc, g, name, p (kinds{k, 2}), empty);
%!   expect_same (netcdflib (['getAtt' kinds{k, 1}], nc, g, name), zeros (0, 0, c), name);
%! end
%! netcdflib ('putAttText', nc, g, 'eText', p ('NC_CHAR'), '');
%! netcdflib ('putAttString', nc, g, 'eString', p ('NC_STRING'), {});
%! netcdflib ('putAttVlen', nc, g, 'eVlen', ragged, {});
%! text = netcdflib ('getAttText', nc, g, 'eText');
%! assert (ischar (text) && isempty (text));
%! expect_same (netcdflib ('getAttString', nc, g, 'eString'), {}, 'string');
%! expect_same (netcdflib ('getAttVlen', nc, g, 'eVlen'), {}, 'vlen');
%! for name = [strcat('e', kinds(:, 1)'), {'eText', 'eString', 'eVlen'}]
%!   [~, len] = netcdflib ('inqAtt', nc, g, name{1});
%!   expect_same (len, 0, name{1});
%! end
%! netcdflib ('close', nc);

## Attribute text is UTF-8 in the file: its length is in bytes, and reading stops at a zero byte.
%!test
%! nc = netcdflib ('create', fullfile (work, 'text.nc'), p ('NC_NETCDF4'));
%! g = p ('NC_GLOBAL');
%! cases = {                                # written, bytes stored, read back
%!   char([195 169]),                         2, char([195 169]);              # é
%!   char([99 97 102 195 169]),               5, char([99 97 102 195 169]);    # café
%!   char([240 159 152 128 97]),              5, char([240 159 152 128 97]);   # U+1F600 a
%!   char([97 98 0 99 100]),                  5, 'ab';
%!   char([0 97]),                            2, char(zeros (1, 0));
%! };
%! for k = 1:rows (cases)
%!   name = sprintf ('t%d', k);
%!   netcdflib ('putAttText', nc, g, name, p ('NC_CHAR'), cases{k, 1});
%!   [xtype, len] = netcdflib ('inqAtt', nc, g, name);
%!   expect_same ([xtype, len], [p('NC_CHAR'), cases{k, 2}], name);
%!   expect_same (netcdflib ('getAttText', nc, g, name), cases{k, 3}, name);
%! end
%! netcdflib ('close', nc);

## Copied into another file and renamed to a non-ASCII name.
%!test
%! nc = netcdflib ('create', fullfile (work, 'manage.nc'), p ('NC_NETCDF4'));
%! other = netcdflib ('create', fullfile (work, 'manage2.nc'), p ('NC_NETCDF4'));
%! v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), []);
%! u = netcdflib ('defVar', other, 'u', p ('NC_INT'), []);
%! netcdflib ('putAttDouble', nc, v, 'scale', p ('NC_FLOAT'), [1 2 3]);
%! netcdflib ('copyAtt', nc, v, 'scale', other, u);
%! expect_same (netcdflib ('getAttFloat', other, u, 'scale'), single ([1 2 3]));
%! name = char ([69 105 110 104 101 105 116 95 195 169]);   # Einheit_é
%! netcdflib ('renameAtt', other, u, 'scale', name);
%! expect_same (netcdflib ('inqAttName', other, u, 0), name);
%! expect_error (call_failure ('inqAtt', other, u, 'scale'), ...
%!               'QUARNA:imagesci:netcdf:libraryFailure', '''inqAtt''', 'NC_ENOTATT');
%! netcdflib ('close', other);
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
