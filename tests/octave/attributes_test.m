## Attribute values and management from Octave: every kind on a variable and globally,
## zero-length values, UTF-8 text, conversions made by netCDF-C and the status errors.

%!shared work, p, kinds
%! work = scratch_dir ();
%! p = @(name) netcdflib ('parameter', name);
%! ## Operation suffix, external type, values (written as a 2-by-2 matrix).
%! kinds = {
%!   'Double', 'NC_DOUBLE', [-realmax NaN; pi realmin];
%!   'Float',  'NC_FLOAT',  single([-realmax('single') Inf; 1.5 -0.25]);
%!   'Int64',  'NC_INT64',  [intmin('int64') -1; 0 intmax('int64')];
%!   'Uint64', 'NC_UINT64', [intmin('uint64') 1; 2^53 intmax('uint64')];
%!   'Int',    'NC_INT',    [intmin('int32') -1; 0 intmax('int32')];
%!   'Uint',   'NC_UINT',   [intmin('uint32') 1; 2 intmax('uint32')];
%!   'Short',  'NC_SHORT',  [intmin('int16') -1; 0 intmax('int16')];
%!   'Ushort', 'NC_USHORT', [intmin('uint16') 1; 2 intmax('uint16')];
%!   'Schar',  'NC_BYTE',   [intmin('int8') -1; 0 intmax('int8')];
%!   'Uchar',  'NC_UBYTE',  [intmin('uint8') 1; 2 intmax('uint8')];
%!   'Ubyte',  'NC_UBYTE',  [intmin('uint8') 3; 4 intmax('uint8')];
%! };

## A netCDF-C status error of operation OP with the symbolic name SYMBOL.
%!function status_error (err, op, symbol)
%!  expect_error (err, 'QUARNA:imagesci:netcdf:libraryFailure', ['''' op ''''], symbol);
%!endfunction

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
%!       ## Any numeric kind reads through another operation, netCDF-C converting.
%!       expect_same (netcdflib ('getAttDouble', nc, target, name), double (row), [where name]);
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

## netCDF-C converts between the data's type and the stored type, and reports what does not fit.
%!test
%! nc = netcdflib ('create', fullfile (work, 'convert.nc'), p ('NC_NETCDF4'));
%! g = p ('NC_GLOBAL');
%! netcdflib ('putAttDouble', nc, g, 'd2i', p ('NC_INT'), [2.7 -2.7 3]);
%! [xtype, len] = netcdflib ('inqAtt', nc, g, 'd2i');
%! expect_same ([xtype, len], [p('NC_INT'), 3]);
%! expect_same (netcdflib ('getAttInt', nc, g, 'd2i'), int32 ([2 -2 3]));
%! expect_same (netcdflib ('getAttDouble', nc, g, 'd2i'), [2 -2 3]);
%! netcdflib ('putAttFloat', nc, g, 'f2s', p ('NC_SHORT'), single ([1.9 -1.9]));
%! expect_same (netcdflib ('getAttShort', nc, g, 'f2s'), int16 ([1 -1]));
%! netcdflib ('putAttInt', nc, g, 'i2d', p ('NC_DOUBLE'), int32 ([7 -8]));
%! expect_same (netcdflib ('getAttFloat', nc, g, 'i2d'), single ([7 -8]));
%! netcdflib ('putAttDouble', nc, g, 'big', p ('NC_DOUBLE'), 1e6);
%! netcdflib ('putAttText', nc, g, 'text', p ('NC_CHAR'), 'abc');
%! failing = {
%!   {'putAttDouble', nc, g, 'r1', p('NC_INT'), 3e9},         'NC_ERANGE';
%!   {'putAttInt', nc, g, 'r2', p('NC_BYTE'), int32(300)},    'NC_ERANGE';
%!   {'putAttDouble', nc, g, 'r3', p('NC_FLOAT'), 1e300},     'NC_ERANGE';
%!   {'getAttShort', nc, g, 'big'},                           'NC_ERANGE';
%!   {'getAttText', nc, g, 'big'},                            'NC_ECHAR';
%!   {'getAttDouble', nc, g, 'text'},                         'NC_ECHAR';
%!   {'putAttDouble', nc, g, 'r4', p('NC_CHAR'), 1},          'NC_ECHAR';
%! };
%! for k = 1:rows (failing)
%!   status_error (call_failure (failing{k, 1}{:}), failing{k, 1}{1}, failing{k, 2});
%! end
%! netcdflib ('close', nc);

## A missing attribute is netCDF-C's NC_ENOTATT for every operation that names one.
%!test
%! nc = netcdflib ('create', fullfile (work, 'missing.nc'), p ('NC_NETCDF4'));
%! v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), []);
%! netcdflib ('putAttInt', nc, v, 'here', p ('NC_INT'), int32 (1));
%! ops = [strcat('getAtt', kinds(:, 1)'), {'getAttText', 'getAttString', 'getAttVlen'}];
%! for target = [v, p('NC_GLOBAL')]
%!   elsewhere = setdiff ([v, p('NC_GLOBAL')], target);
%!   calls = [cellfun(@(op) {op, nc, target, 'nope'}, ops, 'UniformOutput', false), ...
%!            {{'inqAtt', nc, target, 'nope'}, {'inqAttID', nc, target, 'nope'}, ...
%!             {'delAtt', nc, target, 'nope'}, {'renameAtt', nc, target, 'nope', 'new'}, ...
%!             {'copyAtt', nc, target, 'nope', nc, elsewhere}, ...
%!             {'inqAttName', nc, target, 1}}];
%!   for k = 1:numel (calls)
%!     status_error (call_failure (calls{k}{:}), calls{k}{1}, 'NC_ENOTATT');
%!   end
%! end
%! status_error (call_failure ('getAttInt', nc, 7, 'here'), 'getAttInt', 'NC_ENOTVAR');
%! expect_same (netcdflib ('getAttInt', nc, v, 'here'), int32 (1));
%! netcdflib ('close', nc);

## Copy, delete and rename, within a file, across files, and onto a name in use.
%!test
%! nc = netcdflib ('create', fullfile (work, 'manage.nc'), p ('NC_NETCDF4'));
%! other = netcdflib ('create', fullfile (work, 'manage2.nc'), p ('NC_NETCDF4'));
%! g = p ('NC_GLOBAL');
%! v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), []);
%! u = netcdflib ('defVar', other, 'u', p ('NC_INT'), []);
%! netcdflib ('putAttText', nc, v, 'units', p ('NC_CHAR'), 'm');
%! netcdflib ('putAttDouble', nc, v, 'scale', p ('NC_FLOAT'), [1 2 3]);
%! netcdflib ('copyAtt', nc, v, 'scale', nc, g);
%! netcdflib ('copyAtt', nc, v, 'scale', other, u);
%! netcdflib ('copyAtt', nc, v, 'units', other, g);
%! expect_same (netcdflib ('getAttFloat', nc, g, 'scale'), single ([1 2 3]));
%! expect_same (netcdflib ('getAttFloat', other, u, 'scale'), single ([1 2 3]));
%! expect_same (netcdflib ('getAttText', other, g, 'units'), 'm');
%! [xtype, len] = netcdflib ('inqAtt', other, u, 'scale');
%! expect_same ([xtype, len], [p('NC_FLOAT'), 3]);
%! status_error (call_failure ('renameAtt', nc, v, 'units', 'scale'), 'renameAtt', 'NC_ENAMEINUSE');
%! expect_same (netcdflib ('getAttText', nc, v, 'units'), 'm');
%! name = char ([69 105 110 104 101 105 116 95 195 169]);   # Einheit_é
%! netcdflib ('renameAtt', nc, v, 'units', name);
%! expect_same (netcdflib ('inqAttName', nc, v, 0), name);
%! expect_same (netcdflib ('inqAttID', nc, v, name), 0);
%! expect_same (netcdflib ('getAttText', nc, v, name), 'm');
%! status_error (call_failure ('inqAtt', nc, v, 'units'), 'inqAtt', 'NC_ENOTATT');
%! netcdflib ('delAtt', nc, v, 'scale');
%! status_error (call_failure ('inqAttName', nc, v, 1), 'inqAttName', 'NC_ENOTATT');
%! expect_same (netcdflib ('getAttFloat', nc, g, 'scale'), single ([1 2 3]));
%! expect_error (call_failure ('renameAtt', nc, v, name, 5), ...
%!               'QUARNA:imagesci:netcdf:argumentWasNotChar', 'attribute');
%! expect_error (call_failure ('copyAtt', nc, v, name, 'other', u), ...
%!               'QUARNA:imagesci:netcdf:badScalarArgument', 'ncid');
%! expect_error (call_failure ('inqAttName', nc, v, 'x'), ...
%!               'QUARNA:imagesci:netcdf:badScalarArgument', 'attid');
%! netcdflib ('close', other);
%! netcdflib ('close', nc);

## A classic file takes new and removed attributes in define mode only.
%!test
%! nc = netcdflib ('create', fullfile (work, 'classic.nc'), 'NC_CLOBBER');
%! g = p ('NC_GLOBAL');
%! netcdflib ('putAttText', nc, g, 'a', p ('NC_CHAR'), 'x');
%! netcdflib ('putAttText', nc, g, 'b', p ('NC_CHAR'), 'y');
%! v = netcdflib ('defVar', nc, 'v', p ('NC_INT'), []);
%! netcdflib ('endDef', nc);
%! status_error (call_failure ('delAtt', nc, g, 'a'), 'delAtt', 'NC_ENOTINDEFINE');
%! status_error (call_failure ('renameAtt', nc, g, 'a', 'longer'), 'renameAtt', 'NC_ENOTINDEFINE');
%! status_error (call_failure ('copyAtt', nc, g, 'a', nc, v), 'copyAtt', 'NC_ENOTINDEFINE');
%! status_error (call_failure ('putAttInt', nc, g, 'c', p ('NC_INT'), int32 (1)), 'putAttInt', ...
%!               'NC_ENOTINDEFINE');
%! netcdflib ('redef', nc);
%! netcdflib ('delAtt', nc, g, 'a');
%! netcdflib ('renameAtt', nc, g, 'b', 'longer');
%! netcdflib ('copyAtt', nc, g, 'longer', nc, v);
%! expect_same (netcdflib ('inqAttName', nc, g, 0), 'longer');
%! expect_same (netcdflib ('getAttText', nc, v, 'longer'), 'y');
%! netcdflib ('close', nc);

## Data of another class than the operation's is refused before netCDF-C sees it.
%!test
%! nc = netcdflib ('create', fullfile (work, 'classes.nc'), p ('NC_NETCDF4'));
%! g = p ('NC_GLOBAL');
%! ragged = netcdflib ('defVlen', nc, 'ragged', p ('NC_INT'));
%! calls = {{'putAttDouble', nc, g, 'x', 6, single(1)}, {'putAttDouble', nc, g, 'x', 6, 1i}, ...
%!          {'putAttText', nc, g, 'x', 2, 65}, {'putAttString', nc, g, 'x', 12, 1}, ...
%!          {'putAttVlen', nc, g, 'x', ragged, int32(1)}};
%! for k = 2:rows (kinds)
%!   calls{end + 1} = {['putAtt' kinds{k, 1}], nc, g, 'x', p(kinds{k, 2}), 1};
%! end
%! for k = 1:numel (calls)
%!   expect_error (call_failure (calls{k}{:}), 'QUARNA:imagesci:netcdf:argumentHasBadDatatype');
%! end
%! [~, ~, ngatts] = netcdflib ('inq', nc);
%! assert (ngatts, 0);
%! netcdflib ('close', nc);

%!test
%! confirm_recursive_rmdir (false, 'local');
%! rmdir (work, 's');
